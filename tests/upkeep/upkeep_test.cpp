#include "src/upkeep/upkeep.h"

#include <atomic>

#include "src/agent/idle_step.h"
#include "src/base/text.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/event_kinds.h"
#include "src/traps/trap_decision.h"
#include "src/upkeep/dispatch.h"
#include "src/upkeep/unit_table_refresh.h"
#include "tests/support/switch_test.h"
#include "tests/support/trap_sink.h"

namespace snmpmain {
namespace {

class UpkeepTest : public SwitchTest {
  protected:
    UpkeepTest() : sink(LoopbackAddress(3)) {
        ResetUpkeep();
        SendTrapsTo({{sink.Address(), sink.Port(), "mark", true, "2"}});
        Discover();
        DoIdleSteps();
        TakeTexts();
    }
    ~UpkeepTest() override {
        ResetUpkeep();
    }

    static void Put(std::uint16_t domain, std::uint16_t kind, const char* text = "x") {
        NotificationRecord record{domain, kind, {}};
        CopyText(record.text, sizeof(record.text), text);
        NotifyQueue::Put(record);
    }

    static void DoIdleSteps() {
        while (AgentIdleStep() || IsUpkeepDue()) {
        }
    }

    static Progress Refresh() {
        BeginConnUnitTableRefresh();
        Progress progress = Progress::kMore;
        while (progress == Progress::kMore || progress == Progress::kPaused) {
            progress = RefreshConnUnitTable();
        }
        return progress;
    }

    long CountRefreshes() {
        return CountTexts("Get.Config.Zoning.MergeMode");
    }

    TrapSink sink;
};

TEST_F(UpkeepTest, ManyNotificationsCostOneRefresh) {
    for (int i = 0; i < 60; ++i) {
        Put(i % 2 == 0 ? 2 : 7, i % 3 == 0 ? kSwitchConfig : kFabricOper);
    }
    DoIdleSteps();
    EXPECT_EQ(CountRefreshes(), 1);
    EXPECT_EQ(sink.Take(200).size(), 60u);
    // What is marked while the work is done is done once more.
    Put(2, kFabricOper);
    DispatchNotification();
    for (int step = 0; step < 8; ++step) {
        ASSERT_EQ(StepUpkeep(), Progress::kMore);
    }
    Put(2, kFabricOper);
    Put(2, kFabricOper);
    DoIdleSteps();
    EXPECT_EQ(CountRefreshes(), 2);
    EXPECT_EQ(sink.Take(200).size(), 3u);
}

TEST_F(UpkeepTest, NotificationsThatItDecidesAboutWaitForIt) {
    // The switch has its proxy turned off: what others tell behind that is not reported any more.
    server.WithFabric([](sim::Fabric& fabric) { fabric.proxy = false; });
    Put(7, kZoningOper);
    Put(2, kSnmpConfig);
    Put(7, kZoningOper);
    DoIdleSteps();
    EXPECT_EQ(sink.Take(200).size(), 2u + 2) << "two events, two units that are not shown any more";
    EXPECT_EQ(CountRefreshes(), 2) << "7 is a switch that is not known";
}

TEST_F(UpkeepTest, AnUnknownSwitchIsLookedForOnce) {
    for (int i = 0; i < 5; ++i) {
        Put(42, kZoningOper);
    }
    DoIdleSteps();
    EXPECT_EQ(CountRefreshes(), 2) << "the second one waited; the others know that it was in vain";
    EXPECT_FALSE(NotifyQueue::Pending());
    EXPECT_EQ(sink.Take(200).size(), 5u);
}

TEST_F(UpkeepTest, EveryResetOfAnotherSwitchIsReported) {
    Put(7, kSwitchReset);
    Put(7, kSwitchReset);
    Put(1, kSwitchReset);
    DoIdleSteps();
    EXPECT_EQ(sink.Take(200).size(), 3u);
    EXPECT_EQ(CountRefreshes(), 2);
}

TEST_F(UpkeepTest, EveryDepartureIsReportedThoughTheQueueIsFull) {
    server.WithFabric([](sim::Fabric& fabric) {
        std::erase_if(fabric.switches, [](const sim::Switch& unit) { return unit.domain != 2; });
    });
    Put(2, kFabricOper);
    AgentIdleStep();
    for (int i = 0; i < 300; ++i) {
        Put(2, kEPortOper);  // nothing to report
    }
    DoIdleSteps();
    EXPECT_EQ(sink.Take(200).size(), 3u);
    EXPECT_EQ(GetUnitCount(), 1);
}

TEST_F(UpkeepTest, RefreshGivesUpAfterFourWalksAndReportsTheFourth) {
    server.SetValue(0, "Oper.Fabric.Entry.7.WWN", std::nullopt);
    TakeLogged();
    EXPECT_EQ(Refresh(), Progress::kFailed);
    EXPECT_TRUE(Logged("8:SNMP:Failed to properly update connUnitTable!\n"));
    const std::vector<std::string> texts = TakeTexts();
    EXPECT_EQ(std::ranges::count(texts, "Get.Config.Zoning.MergeMode"), 4);
    EXPECT_EQ(std::ranges::count(texts, "NotifyOff"), 2);
    EXPECT_EQ(std::ranges::count(texts, "NotifyOn"), 3);
    EXPECT_EQ(GetUnitCount(), 3);

    // Each outcome by the number of walks that fail first.
    for (const auto& [failures, result] :
         {std::pair(2, Progress::kDone), std::pair(3, Progress::kFailed)}) {
        std::atomic<int> walks{0};
        server.SetReplyOverride([&walks, most = failures](const sim::ReceivedCommand& command,
                                                          std::vector<std::uint8_t> reply) {
            walks += command.text == "Get.Config.Zoning.MergeMode" ? 1 : 0;
            reply[2] = command.text == "Get.Oper.Fabric.Entry.2.WWN" && walks <= most ? 1 : 0;
            return std::optional(reply);
        });
        server.SetValue(0, "Oper.Fabric.Entry.7.WWN", "1000020000000200");
        EXPECT_EQ(Refresh(), result) << failures;
        server.SetReplyOverride({});
        EXPECT_EQ(walks, failures + 1);
    }
}

}  // namespace
}  // namespace snmpmain
