// What a manager reads of a fabric.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/e2e/walks.h"

namespace e2e {
namespace {

const Words kTables = {kUnits, kRevisions, kTraps,   kSensors,    kPorts,      kEvents,
                       kLinks, kZones,     kAliases, kStatistics, kNameServer, kLogins};

std::string PrintOid(const std::vector<unsigned long>& numbers) {
    std::string oid;
    for (const unsigned long number : numbers) {
        oid.append(".").append(std::to_string(number));
    }
    return oid;
}

class FabricTables : public testing::Test {
  protected:
    void Start(const sim::Fabric& fabric = StillFabric()) {
        stack_.StartSwitch(fabric);
        stack_.StartAll();
    }

    // In requests for many variables each; values that follow on each other also by GETNEXT.
    void ExpectGets(const Values& expected, bool isWalk = true) {
        const Words oids = OidsOf(expected);
        for (std::size_t first = 0; first < oids.size(); first += 100) {
            const std::size_t end = std::min(first + 100, oids.size());
            const Values wanted(&expected[first], &expected[0] + end);
            EXPECT_TRUE(Same(stack_.Get({&oids[first], &oids[0] + end}), wanted));
            if (isWalk) {
                const Values next = stack_.GetNext({&oids[first], &oids[0] + end - 1});
                EXPECT_TRUE(Same(next, {wanted.begin() + 1, wanted.end()}));
            }
        }
    }

    void ExpectNoInstances(const Words& all) {
        for (std::size_t first = 0; first < all.size(); first += 100) {
            const Words oids(&all[first], &all[0] + std::min(first + 100, all.size()));
            for (const auto& [oid, value] : stack_.Get(oids)) {
                EXPECT_EQ(value, kNoInstance) << oid;
            }
            const Words next = OidsOf(stack_.GetNext(oids));
            ASSERT_EQ(next.size(), oids.size()) << oids[0];
            for (std::size_t i = 0; i < oids.size(); ++i) {
                EXPECT_GT(SubIds(next[i]), SubIds(oids[i])) << next[i];
            }
        }
    }

    Stack stack_;
};

TEST_F(FabricTables, ReadAsReviewedByGetGetNextAndWalks) {
    Start();
    EXPECT_TRUE(ReadsAsReviewed(stack_, "builtin"));
    for (const std::string& table : kTables) {
        EXPECT_TRUE(Same(stack_.BulkWalk(table), Reviewed("builtin", table))) << table;
    }
    for (const std::string& subtree : {kFe, kFcmgmt, kVendorMib}) {
        ExpectGets(Reviewed("builtin", subtree));
    }
    // The agent's values among all that the daemon serves.
    Values walked = stack_.Walk(".1.3.6.1");
    std::erase_if(walked, [](const Value& value) {
        return std::ranges::none_of(Words{kFe, kFcmgmt, kVendorMib}, [&](const std::string& oid) {
            return value.first.starts_with(oid + ".");
        });
    });
    EXPECT_TRUE(Same(walked, Reviewed("builtin", ".1")));
    EXPECT_TRUE(stack_.IsRunning("snmpmain"));
    EXPECT_TRUE(stack_.Switch().Complaints().empty());
}

TEST(OddFabrics, ReadAsReviewedHoweverListsEnd) {
    for (auto [name, fabric] : {std::pair("odd", OddFabric()), std::pair("bare", BareFabric())}) {
        for (const bool endMark : {false, true}) {
            fabric.endMark = endMark;
            Stack stack;
            stack.StartSwitch(fabric);
            stack.StartAll();
            EXPECT_TRUE(ReadsAsReviewed(stack, name)) << name << endMark;
            if (const Values logins = Reviewed(name, kLogins); !logins.empty()) {
                EXPECT_TRUE(Same(stack.Get(OidsOf(logins)), logins));
            }
        }
    }
}

// OIDs near those of a column's first and last row, none of them an instance's.
Words Neighbours(const std::string& column) {
    const Values rows = Reviewed("builtin", column);
    // A module's or port's number counts with its low 16 bits.
    const bool isWide = column.starts_with(kFcmgmt);
    std::set<std::vector<unsigned long>> near;
    for (const Value& row : {rows.front(), rows.back()}) {
        std::vector<unsigned long> oid = SubIds(row.first);
        near.insert({oid.begin(), oid.end() - 1});
        for (std::size_t i = SubIds(column).size(); i < oid.size(); ++i) {
            const unsigned long number = oid[i];
            for (const unsigned long other : {0UL, number + 1, number - 1, number + 256,
                                              isWide ? number + 65536 : 65536, 0xFFFFFFFFUL}) {
                oid[i] = other & 0xFFFFFFFF;
                near.insert(oid);
            }
            oid[i] = number;
        }
        oid.push_back(1);
        near.insert(oid);
    }
    for (const Value& row : rows) {
        near.erase(SubIds(row.first));
    }
    Words oids;
    std::ranges::transform(near, std::back_inserter(oids), PrintOid);
    return oids;
}

TEST_F(FabricTables, IndicesOfNoRowAndSilentColumnsHaveNoInstanceAndLeadOn) {
    Start();
    // Columns that depend on the row.
    for (const std::string& column :
         {kUnits + ".1",      kRevisions + ".2",  kSensors + ".2",
          kPorts + ".2",      kEvents + ".2",     kLinks + ".3",
          kZones + ".1",      kAliases + ".1",    kStatistics + ".2",
          kStatistics + ".8", kNameServer + ".5", kFe + ".1.4.1.2",
          kFe + ".1.4.1.7",   kFe + ".1.5.1.5",   kFe + ".2.2.1.1",
          kFe + ".3.1.1.1",   kFe + ".5.1.1.1",   kVendorMib + ".10.1.1.3",
          kLogins + ".6",     kLogins + ".10"}) {
        ExpectNoInstances(Neighbours(column));
    }
    // Columns that no row answers, at the index of the table's first row.
    for (const auto& [table, columns] :
         {std::pair(kSensors, Words{"5"}), std::pair(kPorts, Words{"12", "13", "14", "21"}),
          std::pair(kEvents, Words{"3", "5", "6", "8"}), std::pair(kZones, Words{"8"}),
          std::pair(kNameServer, Words{"7", "8", "11", "13"}),
          std::pair(kLogins, Words{"2", "3", "4", "11"}), std::pair(kFe + ".1.4.1", Words{"5"}),
          std::pair(kFe + ".2.1.1", Words{"2", "4"}), std::pair(kFe + ".2.2.1", Words{"3"}),
          std::pair(kFe + ".3.1.1", Words{"3", "7"})}) {
        const std::string first = Reviewed("builtin", table)[0].first;
        const std::string index = first.substr(first.find('.', table.size() + 1));
        for (const std::string& column : columns) {
            ExpectNoInstances({table + "." + column + index});
        }
    }
    for (const char* class1 : {".4.1.1.1.1.1", ".4.1.1.5.3.8", ".4.1.1.10.1.1"}) {
        ExpectNoInstances({kFe + class1});
    }
    for (const char* oid : {".1.3.0", ".1.1", ".1.1.1", ".2.3.1.1.127.0.0.1.162", ".5.1.2.0",
                            ".5.2.2.1.1.1", ".1.10.1.1.1"}) {
        EXPECT_TRUE(stack_.GetOne(kFcmgmt + oid).starts_with("No Such")) << oid;
    }
}

TEST_F(FabricTables, FailedQueryHidesNothingElse) {
    Start();
    const std::string names = kPorts + ".17";
    Values all = Reviewed("builtin", kFe);
    const Values ports = Reviewed("builtin", names);
    all.insert(all.end(), ports.begin(), ports.end());
    const struct {
        std::uint16_t domain;
        const char* path;
        std::string oid;
    } kFailures[] = {
        {2, "Oper.Switch.WhoIsPrincipal", kFe + ".1.1.0"},
        {7, "Config.Snmp.SysObjectID", kFe + ".1.4.1.3.2"},
        {2, "Oper.UserPort.0.3.MaxCredit", kFe + ".1.5.1.5.1.4"},
        {7, "Oper.Topology.0.0.LocalPortID", kFe + ".2.1.1.1.2.1"},
        {1, "Config.UserPort.0.7.AdminState", kFe + ".2.2.1.1.3.8"},
        {7, "Oper.NameServer.Entry.07012a.COSList", kLogins + ".5.2.2.2"},
        {7, "Oper.UserPort.0.1.DecodeErrors", kFe + ".3.1.1.5.2.2"},
        {2, "Oper.UserPort.0.15.FRejects", kFe + ".4.2.1.7.1.16"},
        {7, "UpperRange.UserPort.0.23.BBCredit", kFe + ".5.1.1.3.2.24"},
        {2, "Oper.UserPort.0.0.SymPortName", At(names, 2, 1)},
        {7, "Oper.UserPort.0.5.SymPortName", At(names, 7, 6)},
        {1, "Oper.UserPort.0.7.SymPortName", At(names, 1, 8)},
    };
    Values walked = all;
    for (const auto& [domain, path, oid] : kFailures) {
        stack_.Switch().SetValue(domain, path, std::nullopt);
        const auto failed = std::ranges::find(all, oid, &Value::first);
        ASSERT_NE(failed, all.end()) << oid;
        failed->second = kNoInstance;
        std::erase_if(walked, [&](const Value& value) { return value.first == oid; });
    }
    ExpectGets(all, false);
    Values actual = stack_.Walk(kFe);
    for (const Value& value : stack_.Walk(names)) {
        actual.push_back(value);
    }
    EXPECT_TRUE(Same(actual, walked));
}

TEST_F(FabricTables, LoginsCostFewCommandsEach) {
    Start();
    stack_.Switch().TakeCommands();
    const std::size_t logins = stack_.Walk(kLogins).size();
    EXPECT_LE(stack_.Switch().TakeCommands().size(), 5 * logins / 2);
}

TEST_F(FabricTables, LargestFabricIsCompleteAndInOrder) {
    const sim::Fabric fabric = sim::GenerateFabric(239);
    stack_.StartSwitch(fabric);
    stack_.StartSnmpd();
    stack_.StartAgent();
    ASSERT_TRUE(stack_.AwaitAgent(60));
    EXPECT_EQ(stack_.GetOne(kFcmgmt + ".1.1.0"), "INTEGER: 239");
    std::map<std::vector<unsigned long>, std::string> names;  // by the units' indices
    std::size_t ports = 0, devices = 0, revisions = 0;
    for (const sim::Switch& unit : fabric.switches) {
        names[SubIds(kUnits + ".20" + UnitIndex(unit.wwn))] = Text(unit.symbolicName);
        ports += unit.ports.size();
        devices += unit.nameServer.size();
        revisions += unit.blades.size() + 2;
    }
    Values expected;
    for (const auto& [oid, name] : names) {
        expected.emplace_back(PrintOid(oid), name);
    }
    EXPECT_TRUE(Same(stack_.BulkWalk(kUnits + ".20"), expected));
    const Values units = stack_.BulkWalk(kUnits);
    EXPECT_EQ(units.size(), Reviewed("builtin", kUnits).size() / 3 * 239);
    for (const auto& [column, count] :
         {std::pair(kRevisions + ".3", revisions), std::pair(kStatistics + ".3", ports),
          std::pair(kNameServer + ".3", devices)}) {
        EXPECT_EQ(stack_.BulkWalk(column).size(), count);
    }
}

}  // namespace
}  // namespace e2e
