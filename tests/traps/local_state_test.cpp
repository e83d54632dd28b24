#include "src/traps/local_state.h"

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class LocalStateTest : public SwitchTest {
  protected:
    LocalStateTest() {
        Discover();
        EXPECT_EQ(InitLocalStateTable(), 0);
    }

    void Set(const std::string& path, std::optional<std::string> value) {
        server.SetValue(0, path, std::move(value));
        ResetUnitStatusMemo();
    }
};

TEST_F(LocalStateTest, ChangeCountsOnceAndOnlyAChange) {
    EXPECT_EQ(CheckUnitStatusChange(), 0);
    Set("Oper.Switch.OperState", "Diagnostics");  // a warning already, but offline now
    EXPECT_EQ(CheckUnitStatusChange(), 1);
    EXPECT_EQ(CheckUnitStatusChange(), 0);

    EXPECT_EQ(CheckPortStatusChange(3), 0);
    Set("Oper.UserPort.0.3.OperState", "Down");  // offline as a state, "other" as an oper status
    EXPECT_EQ(CheckPortStatusChange(3), 1);
    EXPECT_EQ(CheckPortStatusChange(3), 0);
    EXPECT_EQ(CheckPortLinkStateChange(3), 1);
    Set("Oper.UserPort.0.3.OperState", "Offline");
    EXPECT_EQ(CheckPortStatusChange(3), 0);
    EXPECT_EQ(CheckPortLinkStateChange(3), 1);
    EXPECT_EQ(CheckPortLinkStateChange(3), 0);
    Set("Oper.UserPort.0.3.AdminState", "Offline");
    EXPECT_EQ(CheckPortLinkStateChange(3), 0) << "the operational status decides";
}

TEST_F(LocalStateTest, WhatTheTableDoesNotHoldHasAlwaysChanged) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(CheckSensorStatusChange(10), 1);
        EXPECT_EQ(CheckPortStatusChange(16), 1);
        EXPECT_EQ(CheckPortLinkStateChange(65535), 1);
        EXPECT_EQ(CheckPortHwStateChange(16), 1);
    }
    // Ports that come after the start have no state either.
    Set("Oper.Switch.MaxPorts", "20");
    ASSERT_EQ(InitSwitchInfo(), 0);
    EXPECT_EQ(CheckPortStatusChange(16), 1);
    EXPECT_EQ(CheckPortStatusChange(15), 0);
}

TEST_F(LocalStateTest, FailedQueryIsAStateOfItsOwn) {
    Set("Oper.UserPort.0.3.OperState", std::nullopt);
    EXPECT_EQ(CheckPortStatusChange(3), 1);
    EXPECT_EQ(CheckPortStatusChange(3), 0);
    EXPECT_EQ(CheckPortLinkStateChange(3), 0) << "online is what it counts as";
    Set("Config.Switch.InbandEnable", std::nullopt);
    EXPECT_EQ(CheckInbandEnableChange(), 1);
    EXPECT_EQ(CheckInbandEnableChange(), 0);
    Set("Oper.Switch.OperState", std::nullopt);
    EXPECT_EQ(CheckUnitStatusChange(), 1);
}

}  // namespace
}  // namespace snmpmain
