#include "src/snmptables/unit_status.h"

#include <thread>

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class UnitStatusTest : public SwitchTest {
  protected:
    UnitStatusTest() {
        server.WithFabric([](sim::Fabric& fabric) {
            sim::Switch& unit = *fabric.Find(0);
            unit.powerSupplies = {"Good", "Good"};
            unit.fans = {"Good", "Good"};
            unit.blades = {{}, {}};
            unit.ports.resize(2);
            for (sim::Port& port : unit.ports) {
                port.operState = "Online";
            }
        });
        Discover();
    }

    // The status, or 100 + it where the reading failed.
    int FreshStatus() {
        ResetUnitStatusMemo();
        std::uint16_t status = 0;
        const int result = ReadUnitStatus(2, status);
        return result == 0 ? status : 100 + status;
    }
};

TEST_F(UnitStatusTest, EachPartWeighsAsItShould) {
    const std::string supply = "Oper.Chassis.0.PowerSupply.", fan = "Oper.Chassis.0.Fan.";
    const std::pair<std::map<std::string, std::optional<std::string>>, int> cases[] = {
        {{}, kUnitOk},
        {{{supply + "0", "Bad"}, {supply + "1", "Absent"}}, kUnitFailed},
        {{{fan + "0", "Bad"}}, kUnitWarning},
        {{{fan + "0", "Bad"}, {fan + "1", "Bad"}}, kUnitFailed},
        {{{"Oper.Blade.1.TempStatus", "Warm"}}, kUnitWarning},
        {{{"Oper.Blade.0.TempStatus", "Overheating"}}, kUnitFailed},
        {{{"Oper.Blade.0.TempStatus", std::nullopt}}, kUnitOk},
        {{{"Oper.UserPort.0.1.OperState", "Down"}}, kUnitWarning},
        {{{"Oper.UserPort.0.1.OperState", "Offline"}}, kUnitOk},
        {{{"Oper.Switch.OperState", "Diagnostics"}}, kUnitWarning},
        {{{"Oper.Switch.OperState", "Offline"}}, kUnitWarning},
        {{{"Oper.Switch.OperState", "Down"}}, kUnitFailed},
        {{{supply + "0", std::nullopt}}, 100 + kUnitUnknown},
        {{{fan + "1", std::nullopt}}, 100 + kUnitUnknown},
        {{{"Oper.UserPort.0.0.OperState", std::nullopt}}, 100 + kUnitUnknown},
        {{{"Oper.Switch.OperState", std::nullopt}}, 100 + kUnitUnknown},
    };
    for (const auto& [values, status] : cases) {
        server.WithFabric([&, given = &values](auto& fabric) { fabric.Find(0)->values = *given; });
        EXPECT_EQ(FreshStatus(), status) << testing::PrintToString(values);
    }
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.Find(0)->values.clear();
        fabric.Find(0)->powerSupplies.clear();
        fabric.Find(0)->fans.clear();
    });
    ASSERT_EQ(InitSwitchInfo(), 0);
    EXPECT_EQ(FreshStatus(), kUnitOk);
}

TEST_F(UnitStatusTest, OutcomeIsRememberedForOneUnitAndThreeSeconds) {
    std::uint16_t status = 0;
    EXPECT_EQ(FreshStatus(), kUnitOk);
    EXPECT_EQ(connUnitTbl[0].status, kUnitOk);
    TakeTexts();
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(ReadUnitStatus(2, status), 0);
    EXPECT_TRUE(TakeTexts().empty());
    EXPECT_EQ(ReadUnitStatus(1, status), 0);
    EXPECT_FALSE(TakeTexts().empty());
    server.SetValue(0, "Oper.Switch.OperState", std::nullopt);
    EXPECT_EQ(ReadUnitStatus(2, status), -1);
    server.SetValue(0, "Oper.Switch.OperState", "Online");
    TakeTexts();
    EXPECT_EQ(ReadUnitStatus(2, status), -1);  // a failure is remembered as well
    EXPECT_TRUE(TakeTexts().empty());
    std::this_thread::sleep_for(std::chrono::milliseconds(3100));
    EXPECT_EQ(ReadUnitStatus(2, status), 0);
}

TEST_F(UnitStatusTest, UnitBeingResetIsOfflineWithItsLastStatus) {
    EXPECT_EQ(FreshStatus(), kUnitOk);
    ASSERT_EQ(SetUnitStatus(2, kUnitFailed), 0);
    ASSERT_EQ(SetUnitReset(2, 1), 0);
    TakeTexts();
    std::uint16_t state = 0;
    EXPECT_EQ(FreshStatus(), kUnitFailed);
    EXPECT_EQ(ReadUnitState(2, state), 0);
    EXPECT_EQ(state, kUnitStateOffline);
    EXPECT_TRUE(TakeTexts().empty());
}

}  // namespace
}  // namespace snmpmain
