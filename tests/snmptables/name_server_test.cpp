#include "src/snmptables/name_server.h"

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class NameServerTest : public SwitchTest {
  protected:
    // Replaces the fabric's name servers: one list of port WWNs per switch, in the fabric's order.
    // Port ids are the domain and the position.
    void Give(const std::vector<std::vector<std::string>>& lists) {
        server.WithFabric([&](sim::Fabric& fabric) {
            for (std::size_t i = 0; i < lists.size(); ++i) {
                sim::Switch& unit = fabric.switches[i];
                unit.nameServer.clear();
                for (const std::string& wwn : lists[i]) {
                    sim::NsEntry entry;
                    char portId[8];
                    std::snprintf(portId, sizeof(portId), "%02x%02zx00", unit.domain & 0xFFu,
                                  unit.nameServer.size());
                    entry.portId = portId;
                    entry.portWwn = wwn;
                    unit.nameServer.push_back(entry);
                }
            }
        });
    }

    // The table in the order of a walk: domain, port WWN, port id.
    static std::vector<std::string> Walk() {
        std::vector<std::string> rows;
        NameServerMatch entry{0, "", "", ""};
        while (GetNextNameServer(entry.switchWwn, entry.portWwn, entry) == 0 && rows.size() < 50) {
            rows.push_back(std::to_string(entry.domainId) + " " + entry.portWwn + " " +
                           entry.portId);
        }
        return rows;
    }
};

const std::string kA = "2100000000000001", kB = "210000000000000b", kC = "210000000000000C",
                  kD = "210000000000000d";

// Switch WWNs are in the order 2, 7, 1.
TEST_F(NameServerTest, EntriesAreOrderedWhateverOrderAndCaseTheSwitchUses) {
    Give({{kB}, {kD, kA, kC}, {kC, kB}});
    EXPECT_EQ(BuildNameServerTable(), 0);
    EXPECT_EQ(GetNameServerTotal(), 6u);
    EXPECT_EQ(Walk(), (std::vector<std::string>{"2 " + kA + " 020100", "2 " + kC + " 020200",
                                                "2 " + kD + " 020000", "7 " + kB + " 070100",
                                                "7 " + kC + " 070000", "1 " + kB + " 010000"}));
    NameServerMatch entry;
    EXPECT_EQ(GetNextNameServer("1000020000000300", "ff", entry), -1);
    EXPECT_EQ(GetNextNameServer("1000020000000101", "ff", entry), 0);  // between two switches
    EXPECT_EQ(entry.domainId, 7);
    for (const bool wanted : {true, false}) {
        const auto isWanted = [&](const NameServerMatch& match) {
            EXPECT_STREQ(match.portWwn, kC.c_str());
            return wanted;
        };
        EXPECT_EQ(GetNameServerEntry("1000020000000100", "210000000000000c", isWanted, entry),
                  wanted ? 0 : -1);
        EXPECT_EQ(GetNameServerEntry("1000020000000200", kA.c_str(), isWanted, entry), -1);
    }
}

TEST_F(NameServerTest, ListsThatBreakOffKeepWhatWasRead) {
    Give({{kA, kB}, {kC, kA, kB}, {kD}});
    server.SetValue(0, "Oper.NameServerAll.2.NextNsEntry.020000", std::nullopt);
    EXPECT_EQ(BuildNameServerTable(), 0);
    EXPECT_EQ(Walk(), (std::vector<std::string>{"2 " + kC + " 020000", "7 " + kD + " 070000",
                                                "1 " + kA + " 010000", "1 " + kB + " 010100"}));
    EXPECT_EQ(GetNameServerTotal(), 6u);  // as reported
    server.SetValue(0, "Oper.NameServerAll.2.NextNsEntry.020000", "*end*");
    server.SetValue(0, "Oper.NameServerAll.1.Entry.010000.PortWwn", std::nullopt);
    EXPECT_EQ(BuildNameServerTable(), 0);
    EXPECT_EQ(Walk(), (std::vector<std::string>{"2 " + kC + " 020000", "7 " + kD + " 070000"}));
    // What a switch says of itself fails the rest; the part that was read is still in order.
    server.SetValue(0, "Oper.NameServerAll.7.Entries", std::nullopt);
    server.SetValue(0, "Oper.NameServerAll.1.Entry.010000.PortWwn", kA);
    EXPECT_EQ(BuildNameServerTable(), -1);
    EXPECT_EQ(Walk(), (std::vector<std::string>{"2 " + kC + " 020000", "1 " + kA + " 010000",
                                                "1 " + kB + " 010100"}));
    server.SetValue(0, "Oper.Fabric.FirstDomainID", "*end*");
    EXPECT_EQ(BuildNameServerTable(), -1);
    EXPECT_EQ(Walk(), std::vector<std::string>{});
}

// A count that promises more than there is, and keys longer than a port id, which are asked for
// cut.
TEST_F(NameServerTest, EndlessListsEnd) {
    Give({{kA, kB}, {}, {}});
    server.SetValue(0, "Oper.NameServerAll.1.Entries", "4294967295");
    server.SetValue(0, "Oper.NameServerAll.1.NextNsEntry.010000", "01000077");
    TakeTexts();
    EXPECT_EQ(BuildNameServerTable(), 0);
    EXPECT_LT(TakeTexts().size(), 50u);
}

}  // namespace
}  // namespace snmpmain
