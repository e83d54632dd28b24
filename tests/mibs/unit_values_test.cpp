// Values of the unit and revision columns for replies that a default fabric does not give.
#include "tests/support/mib_test.h"

namespace snmpmain {
namespace {

class UnitValuesTest : public MibTest {
  protected:
    // Of the unit of domain 7.
    static std::string Unit(int column) {
        return Get("1.6.1." + std::to_string(column), MibTest::Unit(7));
    }

    static std::string Revision(int column, oid row) {
        return Get("1.7.1." + std::to_string(column), MibTest::Unit(7, {row}));
    }
};

TEST_F(UnitValuesTest, TextsAreCutWhereManagersWantThemShort) {
    const std::pair<int, const char*> shortColumns[] = {
        {7, "Config.Snmp.SysDescr"},   {8, "Config.Mfg.ChassisSerialNum"},
        {20, "Config.Switch.SymName"}, {23, "Config.Snmp.Contact"},
        {24, "Config.Snmp.Location"},  {31, "Config.Mfg.BrandName"}};
    for (const auto& [column, path] : shortColumns) {
        server.SetValue(7, path, std::string(79, 'a') + "b");
        EXPECT_EQ(Unit(column), std::string(79, 'a')) << path;
        server.SetValue(7, path, std::nullopt);
        EXPECT_EQ(Unit(column), "none") << path;
    }
    server.SetValue(7, "Config.Switch.Comment", std::string(400, 'a'));
    EXPECT_EQ(Unit(21), std::string(400, 'a'));
    server.SetValue(7, "Config.Switch.Comment", "");
    EXPECT_EQ(Unit(21), "");
    server.SetValue(7, "Config.System.IPAddress", "0A000001");
    EXPECT_EQ(Unit(10), "http://10.0.0.1");
    server.SetValue(7, "Config.System.IPAddress", "none");
    EXPECT_EQ(Unit(10), "none");
}

TEST_F(UnitValuesTest, FabricIsNamedByTheLocalSwitch) {
    server.SetValue(0, "Oper.Switch.WhoIsPrincipal", "0102");
    server.SetValue(7, "Oper.Switch.WhoIsPrincipal", "0304");
    EXPECT_EQ(Unit(29), std::string("\1\2") + std::string(14, '\0'));
}

TEST_F(UnitValuesTest, RevisionsHaveTheirFallBacks) {
    server.SetValue(7, "Oper.Switch.ActiveVersion", std::nullopt);
    EXPECT_EQ(Revision(3, 1), "<Unknown>");
    server.SetValue(7, "Oper.Switch.ActiveVer", "V9");
    EXPECT_EQ(Revision(3, 1), "V9");
    server.SetValue(7, "Oper.Blade.0.Instance", std::nullopt);
    EXPECT_EQ(Revision(4, 3), "none");
    server.SetValue(7, "Oper.Blade.0.Type", std::nullopt);
    EXPECT_EQ(Revision(4, 3), "Hardware ASIC Version.");
    server.SetValue(7, "Oper.Blade.0.Instance", "1");
    server.SetValue(7, "Oper.Blade.0.Type", "NotApplicableHere");
    EXPECT_EQ(Revision(4, 3), "Hardware ASIC Version Blade NotApplicableHere-1 in Slot 0");
    EXPECT_EQ(Revision(2, 5), "none");
}

}  // namespace
}  // namespace snmpmain
