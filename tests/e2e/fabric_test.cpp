// What a manager reads of a fabric.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

Words OidsOf(const Values& values) {
    Words oids;
    for (const auto& [name, value] : values) {
        oids.push_back(name);
    }
    return oids;
}

TEST(FabricTables, ReadAsTheFabricIsByGetGetNextAndWalks) {
    const sim::Fabric fabric = StillFabric();
    Stack stack;
    stack.StartSwitch(fabric);
    stack.StartAll();
    for (const auto& [table, expected] : {std::pair(kUnits, ExpectedUnits(fabric)),
                                          std::pair(kRevisions, ExpectedRevisions(fabric))}) {
        EXPECT_EQ(stack.Walk(table), expected);
        EXPECT_EQ(stack.BulkWalk(table), expected);
        const Words oids = OidsOf(expected);
        // Many variables in one request, and each value reached from the one before it.
        for (std::size_t first = 0; first < oids.size(); first += 20) {
            const std::size_t count = std::min<std::size_t>(20, oids.size() - first);
            const Words part(&oids[first], &oids[first] + count);
            const Values wanted(&expected[first], &expected[first] + count);
            EXPECT_EQ(stack.Get(part), wanted);
            if (first > 0) {
                const Words before(&oids[first - 1], &oids[first - 1] + count);
                EXPECT_EQ(stack.GetNext(before), wanted);
            }
        }
    }
    // The whole subtree: the tables that do not answer yet are passed over.
    Values whole = stack.GetNext({kFcmgmt, kFcmgmt + ".1.1.0"});
    for (const Values& part : {ExpectedUnits(fabric), ExpectedRevisions(fabric),
                               stack.Get({kFcmgmt + ".2.1.0", kFcmgmt + ".3.0"})}) {
        whole.insert(whole.end(), part.begin(), part.end());
    }
    EXPECT_EQ(stack.Walk(kFcmgmt), whole);
    EXPECT_EQ(stack.BulkWalk(kFcmgmt), whole);
    EXPECT_TRUE(stack.Switch().Complaints().empty());
}

TEST(FabricTables, ScalarsAndEmptyPlacesOfTheSubtree) {
    Stack stack;
    stack.StartAll();
    EXPECT_EQ(stack.GetOne(kFcmgmt + ".1.1.0"), "INTEGER: 3");
    stack.Switch().TakeCommands();
    EXPECT_EQ(stack.GetOne(kFcmgmt + ".2.1.0"), "INTEGER: 5");
    EXPECT_EQ(stack.GetOne(kFcmgmt + ".3.0"), "Hex-STRING: 30 34 30 30");
    EXPECT_TRUE(stack.Switch().TakeCommands().empty());

    const std::string first = ExpectedUnits(StillFabric())[0].first;
    EXPECT_EQ(stack.GetNext({kFcmgmt + ".1.2.0"})[0].first, first);  // over three that never answer
    for (const char* oid :
         {".1.3.0", ".1.1", ".1.1.1", ".5.1.2.0", ".5.2.2.1.1.1", ".1.10.1.1.1"}) {
        EXPECT_TRUE(stack.GetOne(kFcmgmt + oid).starts_with("No Such")) << oid;
    }
    EXPECT_EQ(stack.GetOne(first + ".1"), kNoInstance);
    EXPECT_EQ(stack.GetOne(first.substr(0, first.rfind('.'))), kNoInstance);
    EXPECT_EQ(stack.GetOne(first.substr(0, first.rfind('.')) + ".1"),
              kNoInstance);  // between units
    const std::string revision = ExpectedRevisions(StillFabric())[0].first;
    for (const char* number : {"0", "4", "65537", "4294967295"}) {
        EXPECT_EQ(stack.GetOne(revision.substr(0, revision.rfind('.') + 1) + number), kNoInstance)
            << number;
    }
    for (const std::string& oid :
         {kFcmgmt + ".1.2.0", kUnits + ".10" + first.substr(kUnits.size() + 2)}) {
        const Finished set = stack.Set({oid, "s", "http://10.0.0.1"});
        EXPECT_NE(set.status, 0);
        EXPECT_NE(set.output.find("notWritable"), std::string::npos) << set.output;
    }
}

TEST(FabricTables, FailedQueryHidesTheValueAndOnlyThat) {
    Stack stack;
    stack.StartAll();
    const Values names = stack.Walk(kUnits + ".20");
    ASSERT_EQ(names.size(), 3u);
    stack.Switch().SetValue(7, "Config.Switch.SymName", std::nullopt);
    EXPECT_EQ(stack.GetOne(names[1].first), kNoInstance);
    EXPECT_EQ(stack.GetOne(names[0].first), names[0].second);
    EXPECT_EQ(stack.GetOne(names[2].first), names[2].second);
    // A walk leaves the column there, as with any object that has no further instance.
    EXPECT_TRUE(stack.GetNext({names[0].first})[0].first.starts_with(kUnits + ".21"));
}

TEST(FabricTables, LargestFabricIsCompleteAndInOrder) {
    Stack stack;
    const sim::Fabric fabric = sim::GenerateFabric(239);
    stack.StartSwitch(fabric);
    stack.StartSnmpd();
    stack.StartAgent();
    ASSERT_TRUE(stack.AwaitAgent(60));
    EXPECT_EQ(stack.GetOne(kFcmgmt + ".1.1.0"), "INTEGER: 239");
    Values expected = ExpectedUnits(fabric);
    Values walked = stack.BulkWalk(kUnits);
    const auto isUptime = [](const Value& value) {
        return value.first.starts_with(kUnits + ".9.");
    };
    EXPECT_EQ(std::erase_if(walked, isUptime), 239u);
    std::erase_if(expected, isUptime);
    EXPECT_EQ(walked, expected);
    EXPECT_EQ(stack.BulkWalk(kRevisions), ExpectedRevisions(fabric));
}

TEST(FabricTables, ChangeOfTheFabricShowsAtOnce) {
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

}  // namespace
}  // namespace e2e
