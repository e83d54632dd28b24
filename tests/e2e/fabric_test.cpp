// What a manager reads of a fabric.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

// All tables, in the order of the subtree.
const Words kTables = {kUnits, kRevisions, kTraps,   kSensors,    kPorts,     kEvents,
                       kLinks, kZones,     kAliases, kStatistics, kNameServer};

std::string PrintOid(const std::vector<unsigned long>& numbers) {
    std::string oid;
    for (const unsigned long number : numbers) {
        oid.append(".").append(std::to_string(number));
    }
    return oid;
}

TEST(FabricTables, ReadAsTheFabricIsByGetGetNextAndWalks) {
    const sim::Fabric fabric = StillFabric();
    Stack stack;
    stack.StartSwitch(fabric);
    stack.StartAll();
    for (const std::string& table : kTables) {
        const Values expected = Expected(fabric, table);
        EXPECT_TRUE(Same(stack.Walk(table), expected)) << table;
        EXPECT_TRUE(Same(stack.BulkWalk(table), expected)) << table;
    }
    // The whole subtree: objects that do not answer are passed over.
    const Values whole = Expected(fabric);
    EXPECT_TRUE(Same(stack.Walk(kFcmgmt), whole));
    EXPECT_TRUE(Same(stack.BulkWalk(kFcmgmt), whole));
    // Many variables in one request, and each value reached from the one before it.
    const Words oids = OidsOf(whole);
    for (std::size_t first = 1; first < oids.size(); first += 100) {
        const std::size_t count = std::min<std::size_t>(100, oids.size() - first);
        const Values wanted(&whole[first], &whole[first] + count);
        EXPECT_TRUE(Same(stack.Get({&oids[first], &oids[first] + count}), wanted));
        EXPECT_TRUE(Same(stack.GetNext({&oids[first - 1], &oids[first - 1] + count}), wanted));
    }
    EXPECT_TRUE(stack.Switch().Complaints().empty());
}

// Two switches without something each, and what is rare or runs over.
sim::Fabric OddFabric() {
    sim::Fabric fabric = StillFabric();
    sim::Switch& small = fabric.switches[0];
    sim::Switch& local = fabric.switches[1];
    sim::Switch& edge = fabric.switches[2];
    edge.ports.clear();
    edge.links.clear();
    edge.log.clear();
    edge.chassis = 2;
    small.nameServer.clear();
    small.log = {{5, "Mon dec 31 23:59:59 2026", "[A][ids are missing around this one]"},
                 {33, "Mon Foo  7 01:02:03 2027", "[C][no such month]"}};
    small.allow4GPorts = true;
    small.ports[0].linkSpeed = small.ports[1].linkSpeed = local.ports[1].linkSpeed = "8Gb/s";
    small.ports[2].runningType = "TL";
    small.ports[3].name = "";
    local.ports[0].counters = {{"TotalTxWords", 0x3FFFFFFFFFFFFFFF},
                               {"TotalRxWords", 0x4000000000000000}};
    local.ports[6].diagStatus = "Failed";  // with no transceiver
    local.links[0].remoteAgentAddress = "10.1.2.255";
    local.links[0].remoteUnitType = "Switches";
    local.nameServer[0].portType = "NVMe";
    local.nameServer[0].classes = "1,F,3,9";
    local.nameServer[0].symNodeName = "";
    local.nameServer[1].portType = "B";
    local.nameServer[1].fc4Types.replace(0, 6, "A00f91");
    fabric.zones.insert(fabric.zones.begin(), {"EmptyToo", "Soft", {}});
    fabric.zones.push_back({"Last", "None", {{"0a", "Unknown"}}});
    fabric.zones.push_back({"EmptyAtTheEnd", "Soft", {}});
    fabric.aliases.insert(fabric.aliases.begin() + 1, {"EmptyAlias", "Soft", {}});
    fabric.aliases[0].members[0].type = "Other";
    return fabric;
}

sim::Fabric BareFabric() {
    sim::Fabric fabric = StillFabric();
    fabric.zones.clear();
    fabric.aliases.clear();
    for (sim::Switch& unit : fabric.switches) {
        unit.powerSupplies.clear();
        unit.fans.clear();
        unit.blades.clear();
        unit.ports.clear();
        unit.log.clear();
        unit.links.clear();
        unit.nameServer.clear();
    }
    return fabric;
}

TEST(FabricTables, OddAndEmptyFabricsReadAsTheyAreHoweverListsEnd) {
    for (sim::Fabric fabric : {OddFabric(), BareFabric()}) {
        for (const bool endMark : {false, true}) {
            fabric.endMark = endMark;
            Stack stack;
            stack.StartSwitch(fabric);
            stack.StartAll();
            EXPECT_TRUE(Same(stack.BulkWalk(kFcmgmt), Expected(fabric))) << endMark;
        }
    }
}

// OIDs near those of a column, none of them an instance's.
Words Neighbours(const std::string& table, const Values& column) {
    const std::vector<unsigned long> first = SubIds(column.front().first);
    const std::vector<unsigned long> last = SubIds(column.back().first);
    const auto with = [](std::vector<unsigned long> oid, std::size_t at, unsigned long number) {
        oid[at] = number & 0xFFFFFFFF;
        return PrintOid(oid);
    };
    const std::size_t end = first.size() - 1;
    Words oids = {column.front().first + ".1",      PrintOid({first.begin(), first.end() - 1}),
                  with(first, end, first[end] - 1), with(first, end, first[end] + 65536),
                  with(first, end, 0xFFFFFFFF),     with(last, end, last[end] + 1)};
    const std::size_t lastOfWwn = SubIds(table).size() + 8;
    for (const unsigned long octet : {1UL, 256UL, 0xFFFFFFFFUL}) {  // between units, and no octets
        if (lastOfWwn < end) {
            oids.push_back(with(first, lastOfWwn, octet));
        }
    }
    return oids;
}

TEST(FabricTables, IndicesOfNoRowHaveNoInstanceAndLeadOn) {
    const sim::Fabric fabric = StillFabric();
    Stack stack;
    stack.StartSwitch(fabric);
    stack.StartAll();
    // In columns that depend on the row.
    for (const auto& [table, column] :
         {std::pair(kUnits, ".1"), std::pair(kRevisions, ".2"), std::pair(kSensors, ".2"),
          std::pair(kPorts, ".2"), std::pair(kEvents, ".2"), std::pair(kLinks, ".3"),
          std::pair(kZones, ".1"), std::pair(kAliases, ".1"), std::pair(kStatistics, ".2"),
          std::pair(kStatistics, ".8"), std::pair(kNameServer, ".5")}) {
        const Words oids = Neighbours(table, Expected(fabric, table + column));
        for (const auto& [oid, value] : stack.Get(oids)) {
            EXPECT_EQ(value, kNoInstance) << oid;
        }
        const Words next = OidsOf(stack.GetNext(oids));
        ASSERT_EQ(next.size(), oids.size()) << table;
        for (std::size_t i = 0; i < oids.size(); ++i) {
            EXPECT_GT(SubIds(next[i]), SubIds(oids[i])) << next[i];
        }
    }
    // Columns that no row answers.
    for (const auto& [table, columns] :
         {std::pair(kSensors, Words{"5"}), std::pair(kPorts, Words{"12", "13", "14", "21"}),
          std::pair(kEvents, Words{"3", "5", "6", "8"}), std::pair(kZones, Words{"8"}),
          std::pair(kNameServer, Words{"7", "8", "11", "13"})}) {
        const std::string first = Expected(fabric, table)[0].first;
        for (const std::string& column : columns) {
            const std::string oid = table + "." + column + first.substr(table.size() + 2);
            EXPECT_EQ(stack.GetOne(oid), kNoInstance) << oid;
        }
    }
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
    for (const char* oid : {".1.3.0", ".1.1", ".1.1.1", ".2.3.1.1.127.0.0.1.162", ".5.1.2.0",
                            ".5.2.2.1.1.1", ".1.10.1.1.1"}) {
        EXPECT_TRUE(stack.GetOne(kFcmgmt + oid).starts_with("No Such")) << oid;
    }
    for (const std::string& oid :
         {kFcmgmt + ".1.2.0", kUnits + ".10" + first.substr(kUnits.size() + 2)}) {
        const Finished set = stack.Set({oid, "s", "http://10.0.0.1"});
        EXPECT_NE(set.status, 0);
        EXPECT_NE(set.output.find("notWritable"), std::string::npos) << set.output;
    }
}

TEST(FabricTables, FailedQueryHidesNoOtherRow) {
    Stack stack;
    stack.StartSwitch(StillFabric());
    stack.StartAll();
    const Values names = Expected(StillFabric(), kPorts + ".17");
    const struct {
        std::uint16_t domain;
        const char* port;
        std::size_t row;
    } kFailures[] = {{2, "0", 0}, {7, "5", 16 + 5}, {1, "7", names.size() - 1}};
    for (const auto& [domain, port, row] : kFailures) {
        stack.Switch().WithFabric([](sim::Fabric& fabric) { fabric = StillFabric(); });
        stack.Switch().SetValue(domain, std::string("Oper.UserPort.0.") + port + ".SymPortName",
                                std::nullopt);
        Values expected = names;
        expected[row].second = kNoInstance;
        EXPECT_TRUE(Same(stack.Get(OidsOf(names)), expected));
        Values walked = Expected(StillFabric(), kPorts);
        std::erase(walked, names[row]);
        EXPECT_TRUE(Same(stack.Walk(kPorts), walked));
    }
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
    for (const std::string& column : {kStatistics + ".3", kNameServer + ".3"}) {
        EXPECT_TRUE(Same(stack.BulkWalk(column), Expected(fabric, column)));
    }
}

}  // namespace
}  // namespace e2e
