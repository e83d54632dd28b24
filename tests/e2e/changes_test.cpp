// What a manager reads while the fabric changes, or does not answer.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <thread>

#include "tests/e2e/walks.h"

namespace e2e {
namespace {

// How often switch management was asked for the beginning of the zones, aliases and name servers.
std::vector<std::ptrdiff_t> ListsRead(sim::Server& server) {
    const std::vector<sim::ReceivedCommand> commands = server.TakeCommands();
    std::vector<std::ptrdiff_t> counts;
    for (const char* end : {".ActiveZoneSet.FirstZone", ".FirstAlias", ".FirstNsEntry"}) {
        counts.push_back(std::ranges::count_if(
            commands, [&](const auto& command) { return command.text.ends_with(end); }));
    }
    return counts;
}

TEST(Changes, OfZonesAndNamesShowOnceTheyAreNotified) {
    const std::string kMembers = kZones + ".11", kAliasNames = kAliases + ".4",
                      kPortIds = kNameServer + ".3", kTotal = kFcmgmt + ".5.1.1";
    const Words kCached = {kMembers, kAliasNames, kPortIds, kTotal};
    sim::Fabric changed = StillFabric();
    changed.zones.erase(changed.zones.begin());
    changed.zones.back().members.push_back({"210002000007ff00", "WWN"});
    changed.aliases.push_back({"AliasNew", "Soft", {{"0303", "DomainPort"}}});
    changed.switches[0].nameServer.pop_back();
    changed.switches[2].nameServer[1].portWwn = "2100020000000001";
    Values after;
    {
        Stack fresh(1);
        fresh.StartSwitch(changed);
        fresh.StartAll();
        after = fresh.BulkWalk(kFcmgmt);
    }
    EXPECT_EQ(Below(after, kTotal)[0].second,
              "INTEGER: " + std::to_string(Below(after, kPortIds).size()));

    Stack stack;
    stack.StartSwitch(StillFabric());
    stack.StartSnmpd();
    stack.StartAgent({"SNMPMAIN_SWEEP=600"});  // which would find the changes by itself
    ASSERT_TRUE(stack.AwaitAgent());
    const auto expectRead = [&](const Words& fresh, const std::vector<std::ptrdiff_t>& lists) {
        for (const std::string& below : kCached) {
            const bool isFresh = std::ranges::find(fresh, below) != fresh.end();
            const Values reviewed = Reviewed("builtin", below), now = Below(after, below);
            EXPECT_NE(now, reviewed);
            EXPECT_TRUE(Same(stack.Walk(below), isFresh ? now : reviewed));
        }
        EXPECT_EQ(ListsRead(stack.Switch()), lists);
    };
    stack.Switch().TakeCommands();
    expectRead({}, {1, 1, 3});  // each switch has a name server
    stack.Switch().WithFabric([&](sim::Fabric& fabric) { fabric = changed; });
    expectRead({}, {0, 0, 0});
    stack.Switch().SendNotification(0, "7");
    EXPECT_TRUE(Within(2, [&] { return stack.Walk(kMembers) == Below(after, kMembers); }));
    expectRead({kMembers, kAliasNames}, {1, 1, 0});
    expectRead({kMembers, kAliasNames}, {0, 0, 0});
    stack.Switch().SendNotification(0, "9");
    EXPECT_TRUE(Within(2, [&] { return stack.Walk(kTotal) == Below(after, kTotal); }));
    expectRead(kCached, {0, 0, 3});
    expectRead(kCached, {0, 0, 0});
    EXPECT_TRUE(Same(stack.BulkWalk(kFcmgmt), after));
}

// Its replies come late then, and all at once.
TEST(Changes, SwitchManagementThatStandsStillIsMissingOnlyMeanwhile) {
    Stack stack;
    stack.StartSimulatorProgram({});
    stack.StartAll();
    const Values names = stack.Walk(kUnits + ".20");
    stack.Signal("switchsim", SIGSTOP);
    EXPECT_FALSE(stack.GetOne(names[0].first).starts_with("STRING"));
    EXPECT_NE(stack.GetOne(".1.3.6.1.2.1.1.3.0"), "no answer") << "the daemon is held up, too";
    std::jthread reading([&] { stack.Walk(kUnits + ".20"); });
    std::this_thread::sleep_for(std::chrono::seconds(10));
    stack.Signal("switchsim", SIGCONT);
    reading.join();
    EXPECT_TRUE(Within(25, [&] { return stack.Walk(kUnits + ".20") == names; }));
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
}

}  // namespace
}  // namespace e2e
