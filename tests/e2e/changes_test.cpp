// What a manager reads while the fabric changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

TEST(Changes, OfTheUnitsShowAtOnce) {
    Stack stack;
    stack.StartAll();
    // Once the units' statuses are read, nothing but the notification can wake the agent.
    ASSERT_EQ(stack.Walk(kUnits).size(), ExpectedUnits(StillFabric()).size());
    for (const int count : {2, 3}) {
        stack.Switch().WithFabric([&](sim::Fabric& fabric) {
            if (count == 2) {
                fabric.switches.erase(fabric.switches.begin());
            } else {
                fabric = sim::DefaultFabric();
            }
        });
        stack.Switch().TakeCommands();
        stack.Switch().SendNotification(0, "5");
        EXPECT_TRUE(Within(0.5, [&] {
            return std::ranges::any_of(stack.Switch().TakeCommands(), [](const auto& command) {
                return command.text == "Get.Oper.Fabric.FirstDomainID";
            });
        })) << "the main loop slept on a queued notification";
        EXPECT_TRUE(Within(2, [&] {
            return stack.GetOne(kFcmgmt + ".1.1.0") == "INTEGER: " + std::to_string(count);
        }));
        EXPECT_EQ(stack.Walk(kUnits + ".1").size(), static_cast<std::size_t>(count));
    }
}

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
    const sim::Fabric before = StillFabric();
    sim::Fabric after = before;
    after.zones.erase(after.zones.begin());
    after.zones.back().members.push_back({"210002000007ff00", "WWN"});
    after.aliases.push_back({"AliasNew", "Soft", {{"0303", "DomainPort"}}});
    after.switches[0].nameServer.pop_back();
    after.switches[2].nameServer[1].portWwn = "2100020000000001";

    Stack stack;
    stack.StartSwitch(before);
    stack.StartAll();
    const auto expectRead = [&](const Words& changed, const std::vector<std::ptrdiff_t>& lists) {
        for (const std::string& below : kCached) {
            const bool isChanged = std::ranges::find(changed, below) != changed.end();
            EXPECT_TRUE(Same(stack.Walk(below), Expected(isChanged ? after : before, below)));
        }
        EXPECT_EQ(ListsRead(stack.Switch()), lists);
    };
    stack.Switch().TakeCommands();
    expectRead({}, {1, 1, 3});  // each switch has a name server
    stack.Switch().WithFabric([&](sim::Fabric& fabric) { fabric = after; });
    expectRead({}, {0, 0, 0});
    stack.Switch().SendNotification(0, "7");
    EXPECT_TRUE(Within(2, [&] { return stack.Walk(kMembers) == Expected(after, kMembers); }));
    expectRead({kMembers, kAliasNames}, {1, 1, 0});
    expectRead({kMembers, kAliasNames}, {0, 0, 0});
    stack.Switch().SendNotification(0, "9");
    EXPECT_TRUE(Within(2, [&] { return stack.Walk(kTotal) == Expected(after, kTotal); }));
    expectRead(kCached, {0, 0, 3});
    expectRead(kCached, {0, 0, 0});
    EXPECT_TRUE(Same(stack.BulkWalk(kFcmgmt), Expected(after)));
}

// One of 32 fabrics. Switches leave the list of domains, but go on answering: silence would only
// slow the walks.
sim::Fabric Variant(unsigned number) {
    sim::Fabric fabric = StillFabric();
    std::vector<sim::Switch>& switches = fabric.switches;
    if (number & 1) {
        switches[1].values["Oper.Fabric.FirstDomainID"] = "2";
    }
    if (number & 2) {
        switches[1].values["Oper.Fabric.NextDomainID.2"] = std::nullopt;
    }
    if (number & 4) {
        fabric.zones.erase(fabric.zones.begin(), fabric.zones.end() - 1);
        fabric.aliases.clear();
    }
    if (number & 8) {
        switches[0].nameServer.clear();
        switches[2].nameServer.erase(switches[2].nameServer.begin());
    }
    if (number & 16) {
        switches[0].ports.clear();
        switches[2].ports.resize(5);
        switches[2].links.resize(1);
        switches[1].log.erase(switches[1].log.begin() + 20, switches[1].log.end());
    }
    return fabric;
}

void ExpectAscending(const Values& values) {
    for (std::size_t i = 1; i < values.size(); ++i) {
        EXPECT_GT(SubIds(values[i].first), SubIds(values[i - 1].first)) << values[i].first;
    }
}

TEST(Changes, NeverMakeAWalkGoBackOrStay) {
    const Values whole = Expected(StillFabric());
    Stack stack;
    stack.StartSwitch(StillFabric());
    stack.StartAll();
    std::jthread changing([&](const std::stop_token& stop) {
        for (unsigned round = 0; !stop.stop_requested(); ++round) {
            stack.Switch().WithFabric(
                [&](sim::Fabric& fabric) { fabric = Variant(round * 7 % 32); });
            stack.Switch().SendNotification(0, round % 3 == 0 ? "5" : round % 3 == 1 ? "7" : "9");
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(6);
    constexpr std::size_t kStep = 61;
    for (std::size_t start = 0; std::chrono::steady_clock::now() < end; ++start) {
        const Values walked = stack.BulkWalk(kFcmgmt);
        ExpectAscending(walked);
        ASSERT_TRUE(!walked.empty() && walked.back().first.starts_with(kFcmgmt + ".5."));
        // The tool ends a walk that does not ascend with an error.
        ASSERT_EQ(walked.back().second.find("Error"), std::string::npos) << walked.back().second;

        Words asked;
        for (std::size_t i = start % kStep; i < whole.size(); i += kStep) {
            asked.push_back(whole[i].first);
        }
        const Values next = stack.GetNext(asked);
        ASSERT_EQ(next.size(), asked.size());
        for (std::size_t i = 0; i < asked.size(); ++i) {
            EXPECT_GT(SubIds(next[i].first), SubIds(asked[i])) << next[i].first;
        }
    }
    changing.request_stop();
    changing.join();
    stack.Switch().WithFabric([](sim::Fabric& fabric) { fabric = StillFabric(); });
    for (const char* kind : {"5", "7", "9"}) {
        stack.Switch().SendNotification(0, kind);
    }
    EXPECT_TRUE(Within(20, [&] { return stack.BulkWalk(kFcmgmt) == whole; }))
        << Same(stack.BulkWalk(kFcmgmt), whole);
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
}

}  // namespace
}  // namespace e2e
