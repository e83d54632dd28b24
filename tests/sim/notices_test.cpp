// What switches tell unasked about changes of the fabric, and what they log.
#include "sim/notices.h"

#include <gtest/gtest.h>

#include "sim/server.h"
#include "tests/sim/client.h"
#include "tests/support/loopback.h"

namespace {

using simtest::Client;

constexpr std::uint16_t kSet = 1025;

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
