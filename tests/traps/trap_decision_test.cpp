// Edges of what leads to a trap; what each trap contains is seen from its receivers
// (tests/e2e/traps_test.cpp).
#include "src/traps/trap_decision.h"

#include "src/base/text.h"
#include "src/traps/event_kinds.h"
#include "src/traps/trap_sender.h"
#include "tests/support/switch_test.h"
#include "tests/support/trap_sink.h"

namespace snmpmain {
namespace {

class TrapDecisionTest : public SwitchTest {
  protected:
    TrapDecisionTest() : sink(LoopbackAddress(3)) {
        Discover();
        SetFilter("mark");
        SetTrapCommunity(std::string(511, 'c').c_str());
    }

    void SetFilter(const char* severity) {
        SendTrapsTo({{sink.Address(), sink.Port(), severity, true, "2"}});
        server.TakeCommands();
    }

    std::vector<std::string> Process(std::uint16_t domain, std::uint16_t kind,
                                     const std::string& text) {
        char buffer[512];
        CopyText(buffer, sizeof(buffer), text.c_str());
        ProcessNotificationForTraps(domain, kind, buffer);
        return sink.Take();
    }

    TrapSink sink;
};

TEST_F(TrapDecisionTest, LongestTextFitsTheTrapAndIsCutInTheEvent) {
    const std::vector<std::string> traps = Process(2, 16, std::string(511, 'x'));
    ASSERT_EQ(traps.size(), 1u);
    EXPECT_TRUE(traps[0].ends_with(std::string(510, 'x')));  // without its line end
    const std::vector<std::string> events = TakeTexts();  // domain 7, which is listed, takes them
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].size(), 4u + 502);
    EXPECT_EQ(Process(2, 16, "").size(), 1u);
}

TEST_F(TrapDecisionTest, ResetIsReportedAgainOnceTheUnitIsDiscoveredAnew) {
    EXPECT_EQ(Process(7, 17, "17;").size(), 1u);
    EXPECT_EQ(Process(7, 17, "17;").size(), 0u);
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(Process(7, 17, "17;").size(), 1u);
    EXPECT_EQ(Process(9, 17, "17;").size(), 0u);
}

TEST_F(TrapDecisionTest, SeveritiesAreThoseOfTheEventsTold) {
    EXPECT_EQ(Process(2, 32, "32;0;0;0;0[Unit status change][13][7]").size(), 1u);
    EXPECT_EQ(Process(2, 32, "32;0;0;0;0[Unit status change][99][7]").size(), 0u);
    SetFilter("notify");  // kinds 10 and 13 are less severe
    EXPECT_EQ(Process(2, kUnitDeletedKind, "1000020000000900").size(), 0u);
    EXPECT_EQ(Process(2, 32, "32;0;0;0;0[Unit status change][13][7]").size(), 0u);
    EXPECT_EQ(Process(2, 32, "32;0;0;0;0[Unit status change][17][7]").size(), 1u);
}

TEST(EventText, PortStandsBehindTheFourthSemicolon) {
    EXPECT_EQ(GetPortFromEventText("28;1;2;3;Port 14[9]"), 14);
    EXPECT_EQ(GetPortFromEventText("28;1;2;3"), 65535);
    EXPECT_EQ(GetPortFromEventText("28;1;2;3;"), 0);
    EXPECT_EQ(GetPortFromEventText(""), 65535);
}

}  // namespace
}  // namespace snmpmain
