// What is made up for when notifications, or the registrations for them, are lost.
#include <algorithm>
#include <csignal>
#include <thread>

#include "tests/e2e/walks.h"

namespace e2e {
namespace {

constexpr int kTrapPort = 16200;
constexpr int kRound = 6;  // seconds, in place of a minute

class Sweep : public testing::Test {
  protected:
    Sweep() {
        sim::Fabric fabric = StillFabric();
        SendTrapsTo(*fabric.Find(0), stack_.Address(), kTrapPort);
        stack_.StartSwitch(fabric);
        stack_.StartReceiver(kTrapPort);
        stack_.StartSnmpdOfSwitch();
        stack_.StartAgent({"SNMPMAIN_SWEEP=" + std::to_string(kRound)});
        EXPECT_TRUE(stack_.AwaitAgent());
        Lose(true);
    }

    void Lose(bool all) {
        stack_.Switch().SetFaults({.loseNotices = all ? 1.0 : 0.0});
    }

    void Change(const std::function<void(sim::Fabric&)>& change) {
        stack_.Switch().ChangeAndNotify(change);
    }

    // Without what snmpd says of itself when it has read its settings.
    Words Traps() const {
        Words traps = stack_.Traps(kTrapPort);
        std::erase_if(traps, [](const std::string& trap) { return Has(trap, ".8072.4"); });
        return traps;
    }

    // The traps since the last look, once there are as many; then none comes for another round.
    Words AwaitTraps(std::size_t count) {
        Words traps;
        const auto look = [&] {
            traps = Traps();
            traps.erase(traps.begin(), traps.begin() + static_cast<std::ptrdiff_t>(seen_));
            return traps.size() >= count;
        };
        EXPECT_TRUE(Within(kRound + 2, look)) << traps.size();
        std::this_thread::sleep_for(std::chrono::seconds(kRound + 1));
        look();
        EXPECT_EQ(traps.size(), count) << testing::PrintToString(traps);
        seen_ += traps.size();
        return traps;
    }

    bool Becomes(const std::string& oid, std::size_t count) {
        return Within(kRound + 2, [&] { return stack_.Walk(oid).size() == count; });
    }

    static bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != text.npos;
    }

    Stack stack_;
    std::size_t seen_ = 0;
};

TEST_F(Sweep, ChangesOfPartsAreReportedOnce) {
    Change([](sim::Fabric& fabric) {
        fabric.Find(0)->ports[3].operState = fabric.Find(0)->ports[3].adminState = "Offline";
    });
    const Words port = AwaitTraps(2);
    EXPECT_TRUE(Has(port[0], ".94.0.6") && Has(port[0],
                                               ".10.1.6.16.0.2.0.0.0.1.0.0.0.0.0.0.0.0.0.4 = "
                                               "INTEGER: 3"));
    EXPECT_TRUE(Has(port[1], ".1.3.0.10"));
    // One that was told is not found again.
    Lose(false);
    Change([](sim::Fabric& fabric) { fabric.Find(0)->ports[3].operState = "Online"; });
    AwaitTraps(2);
    Lose(true);
    Change([](sim::Fabric& fabric) { fabric.Find(0)->fans[0] = "Bad"; });
    EXPECT_TRUE(Has(AwaitTraps(1).front(), ".94.0.5"));
    stack_.Switch().TakeCommands();
    Change([](sim::Fabric& fabric) {
        fabric.Find(0)->operState = "Offline";
        fabric.Find(0)->inbandEnable = !fabric.Find(0)->inbandEnable;
    });
    EXPECT_TRUE(Has(AwaitTraps(1).front(), ".94.0.1"));
    Words told;
    for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
        if (command.text.starts_with("Set.Cmd.Snmp.PrivateEvent.[")) {
            told.push_back(std::to_string(command.domain) + " " + command.text.substr(26));
        }
    }
    std::ranges::sort(told);
    EXPECT_EQ(told, (Words{"7 [Fabric update]", "7 [Unit status change][13][2]"}));
}

TEST_F(Sweep, RegistrationsAreRenewed) {
    Lose(false);
    stack_.Switch().Stop();
    stack_.Switch().WithFabric(
        [](sim::Fabric& fabric) { fabric.Find(0)->ports[9].operState = "Offline"; });
    stack_.Switch().Start();
    AwaitTraps(2);
    Change([](sim::Fabric& fabric) { fabric.Find(0)->ports[9].operState = "Online"; });
    EXPECT_TRUE(Within(1, [&] { return Traps().size() == seen_ + 2; }));
}

TEST_F(Sweep, UnitsListsAndSettingsFollowTheFabric) {
    const std::size_t names = stack_.Walk(kNameServer + ".3").size();
    const std::size_t members = stack_.Walk(kZones + ".11").size();
    const sim::Fabric whole = StillFabric();
    Change([](sim::Fabric& fabric) {
        std::erase_if(fabric.switches, [](const sim::Switch& unit) { return unit.domain == 7; });
    });
    EXPECT_TRUE(Has(AwaitTraps(1).front(), ".94.0.3"));
    EXPECT_TRUE(Becomes(kUnits + ".1", 2));
    Change([&](sim::Fabric& fabric) { fabric.switches = whole.switches; });
    EXPECT_TRUE(Becomes(kUnits + ".1", 3));
    EXPECT_TRUE(Becomes(kNameServer + ".3", names));
    Change([](sim::Fabric& fabric) {
        fabric.zones.pop_back();
        fabric.Find(7)->nameServer.pop_back();
    });
    EXPECT_TRUE(Becomes(kNameServer + ".3", names - 1));
    EXPECT_TRUE(Within(kRound + 2, [&] { return stack_.Walk(kZones + ".11").size() < members; }));
}

TEST_F(Sweep, ADestinationThatWasSetAtTheSwitchGetsTheNextTrap) {
    stack_.StartReceiver(kTrapPort + 1);
    Change([this](sim::Fabric& fabric) { fabric.Find(0)->traps[0].port = kTrapPort + 1; });
    EXPECT_TRUE(Within(kRound + 2, [&] {
        return stack_.Walk(kTraps).size() > 0 &&
               Has(stack_.Walk(kTraps).front().first, std::to_string(kTrapPort + 1));
    }));
    Change([](sim::Fabric& fabric) { fabric.Find(0)->location = "another room"; });
    EXPECT_TRUE(Within(
        kRound + 5, [&] { return stack_.GetOne(".1.3.6.1.2.1.1.6.0") == Text("another room"); }));
}

TEST_F(Sweep, AFloodIsMadeUpFor) {
    Lose(false);
    stack_.Signal("snmpmain", SIGSTOP);
    for (int i = 0; i < 600; ++i) {
        stack_.Switch().SendNotification(0, "10;0;0;0;0");  // nothing to report
    }
    Change([](sim::Fabric& fabric) { fabric.Find(0)->ports[9].operState = "Offline"; });
    stack_.Signal("snmpmain", SIGCONT);
    AwaitTraps(2);
}

}  // namespace
}  // namespace e2e
