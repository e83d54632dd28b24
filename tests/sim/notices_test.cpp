// What switches tell unasked: about changes of the fabric, and events that agents pass on.
#include "sim/notices.h"

#include <gtest/gtest.h>

#include "sim/server.h"
#include "tests/sim/client.h"
#include "tests/support/loopback.h"

namespace {

using simtest::Client;
using simtest::Frame;

constexpr std::uint16_t kSet = 1025, kNotification = 1026, kOn = 1027;
constexpr int kShort = 150;  // milliseconds in which nothing is expected

/// "domain: text" of every notice, with TIME for the time, blank-separated.
std::string Told(const std::function<void(sim::Fabric&)>& change) {
    const sim::Fabric before = sim::DefaultFabric();
    sim::Fabric after = before;
    change(after);
    std::string told;
    for (const sim::Notice& notice : sim::FindNotices(before, after)) {
        std::string text = notice.text;
        if (const std::size_t time = text.find('['); time != text.npos) {
            text.replace(time + 1, sim::TimeText().size(), "TIME");
        }
        told += (told.empty() ? "" : " ") + std::to_string(notice.domain) + ": " + text;
    }
    return told;
}

TEST(Notices, TellAChangeWithItsKindAndThePartConcerned) {
    using sim::Fabric;
    const std::pair<void (*)(Fabric&), const char*> cases[] = {
        {[](Fabric&) {}, ""},
        {[](Fabric& f) { f.Find(1)->ports[5].operState = "Down"; }, "1: 28;0;0;0;5"},
        {[](Fabric& f) {
             f.Find(2)->ports[3].adminState = f.Find(2)->ports[3].operState = "Offline";
             f.Find(2)->ports[12].name = "n";
             f.Find(2)->ports[4].syncStatus = "SyncLost";
         },
         "2: 4;0;0;0;12 2: 27;0;0;0;3 2: 28;0;0;0;3 2: 28;0;0;0;4"},
        {[](Fabric& f) { f.Find(2)->ports[0].counters["FBusys"]++; }, ""},
        {[](Fabric& f) {
             sim::Switch& unit = *f.Find(2);
             unit.operState = "Offline";
             unit.symbolicName = unit.comment = "x";
             unit.location = unit.roUser = "x";
             unit.traps[4].port++;
             unit.devLogLevel = "Info";
             unit.nameServer.pop_back();
             unit.uptime = 0;
         },
         "2: 1;0;0;0;0 2: 2;0;0;0;0 2: 9;0;0;0;0 2: 12;0;0;0;0 2: 13;0;0;0;0"},
        {[](Fabric& f) { f.aliases.pop_back(); }, "1: 7;0;0;0;0 2: 7;0;0;0;0 7: 7;0;0;0;0"},
        {[](Fabric& f) { f.switches.pop_back(); }, "1: 5;0;0;0;0 2: 5;0;0;0;0"},
        {[](Fabric& f) {
             f.Find(2)->principal = false;
             f.Find(7)->principal = f.Find(1)->silent = true;
             f.switches.emplace_back().domain = 9;
         },
         "2: 5;0;0;0;0 7: 5;0;0;0;0"},
        {[](Fabric& f) { f.Find(1)->fans.emplace_back("Good"); },
         "1: 36;0;0;0;0[TIME][0][0x0][Switch facts changed]\n"},
    };
    for (const auto& [change, told] : cases) {
        EXPECT_EQ(Told(change), told);
    }
}

TEST(Notices, GoToThoseWhoRegisteredAtTheSwitchUnlessTheChangeIsRefused) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client agent(LoopbackAddress(0).c_str()), last(LoopbackAddress(0).c_str());
    EXPECT_EQ(agent.Ask(kOn, ""), "");
    EXPECT_EQ(agent.Ask(kOn, "", 7), "");
    EXPECT_EQ(last.Get("Oper.Switch.Nop"), "Ok");
    const auto breakPorts = [](sim::Fabric& fabric) {
        for (sim::Switch& unit : fabric.switches) {
            unit.ports[0].diagStatus = "Failed";
        }
    };
    EXPECT_EQ(server.ChangeAndNotify(breakPorts), 2u);
    EXPECT_EQ(agent.Receive(), Frame(kNotification, "28;0;0;0;0", 0, 2));
    EXPECT_EQ(agent.Receive(), Frame(kNotification, "28;0;0;0;0", 7 << 16, 3));
    EXPECT_EQ(agent.Get("Oper.UserPort.0.0.DiagStatus", 1), "Failed");
    EXPECT_EQ(last.Receive(kShort), std::nullopt);

    EXPECT_THROW(server.ChangeAndNotify([](sim::Fabric& fabric) { fabric.switches.clear(); }),
                 sim::FabricError);
    EXPECT_EQ(agent.Get("Oper.Switch.DomainID"), "2");
    EXPECT_EQ(agent.Receive(kShort), std::nullopt);
}

TEST(Events, OfOtherAgentsAreHandedOnUnchangedToTheSwitchsOwnAgent) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client own(LoopbackAddress(0).c_str()), other(LoopbackAddress(0).c_str());
    for (const std::uint32_t domain : {0u, 1u, 7u}) {
        EXPECT_EQ(own.Ask(kOn, "", domain), "");
    }
    const std::string event = "[Event change][1][7][\xb1\xbb\xdb\x8a";
    EXPECT_EQ(other.Ask(kSet, "Cmd.Snmp.PrivateEvent." + event, 2), "");
    EXPECT_EQ(own.Receive(), Frame(kNotification, "32;0;0;0;0" + event, 0, 1));
    EXPECT_EQ(other.Ask(kSet, "Cmd.Snmp.PrivateEvent." + event, 1), "#6");
    EXPECT_EQ(other.Ask(kSet, "Cmd.Snmp.PrivateEvent." + event, 7), "");
    EXPECT_EQ(other.Ask(kSet, "Cmd.Snmp.PrivateEvent.Hello"), "");
    EXPECT_EQ(own.Receive(kShort), std::nullopt);
}

TEST(Agents, EachSeeTheSwitchOfTheirAddressAsTheLocalOne) {
    sim::Fabric fabric = sim::DefaultFabric();
    fabric.Find(7)->agentAddress = LoopbackAddress(1);
    sim::Server server(fabric, LoopbackAddress(0));
    Client core(LoopbackAddress(0).c_str()), edge(LoopbackAddress(1).c_str());
    for (Client* agent : {&core, &edge}) {
        EXPECT_EQ(agent->Get("Oper.Switch.DomainID"), agent == &core ? "2" : "7");
        EXPECT_EQ(agent->Get("Oper.Switch.DomainID", 7), "7");
        EXPECT_EQ(agent->Sender(), LoopbackAddress(agent == &core ? 0 : 1));
        EXPECT_EQ(agent->Ask(kOn, ""), "");
        EXPECT_EQ(agent->Ask(kOn, "", agent == &core ? 7 : 2), "");
    }
    EXPECT_EQ(server.TakeCommands().back().local, 7);

    server.ChangeAndNotify([](sim::Fabric& f) { f.Find(7)->ports[6].operState = "Online"; });
    EXPECT_EQ(core.Receive(), Frame(kNotification, "28;0;0;0;6", 7 << 16, 1));
    EXPECT_EQ(edge.Receive(), Frame(kNotification, "28;0;0;0;6", 0, 1));
    EXPECT_EQ(edge.Sender(), LoopbackAddress(1));
    EXPECT_EQ(core.Ask(kSet, "Cmd.Snmp.PrivateEvent.[Fabric update]", 7), "");
    EXPECT_EQ(edge.Receive(), Frame(kNotification, "32;0;0;0;0[Fabric update]", 0, 2));
    server.SendNotification(0, "raw");
    EXPECT_EQ(core.Receive(), Frame(kNotification, "raw", 0, 3));
    EXPECT_EQ(edge.Receive(), Frame(kNotification, "raw", 2 << 16, 3));
    EXPECT_EQ(core.Receive(kShort), std::nullopt);

    server.ChangeAndNotify([](sim::Fabric& f) { f.switches.pop_back(); });
    EXPECT_EQ(edge.Receive(), Frame(kNotification, "5;0;0;0;0", 2 << 16, 5));
    EXPECT_EQ(edge.Ask(1024, "Oper.Switch.DomainID", 0, kShort), "(none)");
    server.WithFabric([&](sim::Fabric& f) { f = fabric; });
    server.Stop();
    server.Start();
    EXPECT_EQ(edge.Get("Oper.Switch.DomainID"), "7");
}

TEST(Events, AreAppendedToTheLog) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client agent(LoopbackAddress(0).c_str());
    const std::string command = "Cmd.Switch.GenericEvent.";
    const std::string event = "[Wed Nov 14 21:38:13 UTC 2026][0][0x0][Port HW. Port:3]";
    EXPECT_EQ(agent.Ask(kSet, command + event), "");
    EXPECT_EQ(agent.Get("Oper.Switch.NextLogEntry.105"), "[106]" + event);
    EXPECT_EQ(agent.Get("Oper.Switch.LogEntries"), "46");
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->log.clear(); });
    EXPECT_EQ(agent.Ask(kSet, command + "no brackets", 7), "");
    const std::string entry = agent.Get("Oper.Switch.LastLogEntry", 7);
    EXPECT_TRUE(entry.starts_with("[1][") && entry.ends_with("]no brackets")) << entry;
}

}  // namespace
