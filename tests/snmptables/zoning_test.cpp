#include "src/snmptables/zoning.h"

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using Rows = std::vector<std::string>;

class ZoningTest : public SwitchTest {
  protected:
    ZoningTest() {
        server.WithFabric([](sim::Fabric& fabric) {
            fabric.zones = {{"One", "Soft", {{"b", "WWN"}, {"a", "WWN"}}},
                            {"Empty", "Soft", {}},
                            {"Three", "Soft", {{"c", "WWN"}}}};
        });
    }

    static Rows Walk() {
        Rows rows;
        for (const ZoneMemberNode* node = GetNextZone(0, 0); node != nullptr;
             node = GetNextZone(node->zone, node->member)) {
            rows.push_back(std::to_string(node->zone) + "." + std::to_string(node->member) + " " +
                           node->zoneName + " " + node->memberId);
        }
        return rows;
    }
};

TEST_F(ZoningTest, LongTextsAreCutInTheListAndWholeOnTheWire) {
    const std::string name(64, 'z');
    server.WithFabric([&](sim::Fabric& fabric) {
        fabric.zones = {{name, "Soft", {{std::string(20, '1'), "WWN"}, {"2", "WWN"}}}};
    });
    EXPECT_EQ(BuildZoningTable(), 0);
    EXPECT_EQ(Walk(), (Rows{"1.1 " + std::string(39, 'z') + " " + std::string(16, '1'),
                            "1.2 " + std::string(39, 'z') + " 2"}));
    // So long a name makes commands that no frame takes.
    server.WithFabric([&](sim::Fabric& fabric) {
        fabric.zones = {{std::string(480, 'z'), "Soft", {{"1", "WWN"}}}};
    });
    EXPECT_EQ(BuildZoningTable(), 0);
    EXPECT_EQ(Walk(), Rows{});
}

TEST_F(ZoningTest, ListsThatBreakOffKeepWhatWasRead) {
    const std::string zones = "Oper.Zoning.ActiveZoneSet.";
    server.SetValue(0, zones + "NextZone.Empty", std::nullopt);
    server.SetValue(0, "Oper.Zoning.ActiveZone.One.NextZoneMember.b", "*end*");
    EXPECT_EQ(BuildZoningTable(), 0);
    EXPECT_EQ(Walk(), (Rows{"1.1 One b"}));
    for (const auto& end : {std::optional<std::string>("*end*"), {}}) {
        server.SetValue(0, zones + "FirstZone", end);
        EXPECT_EQ(BuildZoningTable(), -1);
        EXPECT_EQ(Walk(), Rows{});
    }
}

TEST_F(ZoningTest, StaleListsAreBuiltOnceEvenWhenThatFails) {
    server.SetValue(0, "Oper.Zoning.FirstAlias", std::nullopt);
    for (const int expected : {1, 0}) {
        ReadZonesIfStale();
        ReadAliasesIfStale();
        const Rows texts = TakeTexts();
        EXPECT_EQ(std::ranges::count(texts, "Get.Oper.Zoning.ActiveZoneSet.FirstZone"), expected);
        EXPECT_EQ(std::ranges::count(texts, "Get.Oper.Zoning.FirstAlias"), expected);
        EXPECT_EQ(texts.empty(), expected == 0);
    }
    ResetAliasTable();
    ReadZonesIfStale();
    EXPECT_EQ(CountTexts(""), 0);
    ReadAliasesIfStale();
    EXPECT_EQ(CountTexts(""), 1);
}

}  // namespace
}  // namespace snmpmain
