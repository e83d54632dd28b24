#include "src/link/reachability.h"

#include "sim/frame.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using namespace std::chrono_literals;

class ReachabilityTest : public SwitchTest {
  protected:
    ReachabilityTest() {
        Discover();
    }
    ~ReachabilityTest() override {
        ResetReachability();
    }

    // Whether a switch answers to a query, and how long that takes.
    static bool Answers(std::uint32_t domain, const char* path = "Oper.Switch.MaxPorts") {
        ReplyText text;
        return SwitchMgmtQueryf(domain, text, kString, nullptr, "Get.%s", path) == 0;
    }
    template <typename Work>
    static ReachClock::duration TimeOf(Work work) {
        const auto start = ReachClock::now();
        work();
        return ReachClock::now() - start;
    }
};

TEST_F(ReachabilityTest, AnyNumberOfSilentSwitchesCostsOneWait) {
    ASSERT_TRUE(Answers(7) && Answers(1));
    Silence({7, 1}, true);
    const auto waited = TimeOf([] { EXPECT_FALSE(Answers(7)); });
    EXPECT_GE(waited, 4s);
    EXPECT_LT(waited, 4500ms);
    TakeTexts();
    EXPECT_LT(TimeOf([] { EXPECT_TRUE(Answers(2)); }), 100ms);
    EXPECT_LT(TimeOf([] { EXPECT_FALSE(Answers(1)); }), 1s);
    EXPECT_LT(TimeOf([] {
                  EXPECT_FALSE(Answers(1));
                  EXPECT_FALSE(Answers(7));
                  EXPECT_TRUE(Answers(2));
              }),
              100ms);
    EXPECT_EQ(CountTexts("MaxPorts"), 2);
    EXPECT_TRUE(Within(2s, [] { return SilentFor(7) > 0s && SilentFor(1) > 0s; }));
    // Under load as well, where the ListenThread never receives.
    const auto end = ReachClock::now() + 2s;
    while (ReachClock::now() < end) {
        Answers(0);
    }
    const long probes = CountTexts("Get.Oper.Switch.Nop");
    EXPECT_GE(probes, 3);
    EXPECT_LE(probes, 9);
    Silence({7, 1}, false);
    EXPECT_TRUE(Within(2s, [] { return IsAnswering(7) && IsAnswering(1); }));
    std::uint16_t first = 0, second = 0, none = 0;
    EXPECT_TRUE(TakeReturned(first) && TakeReturned(second));
    EXPECT_EQ(first + second, 8);
    EXPECT_FALSE(TakeReturned(none));
    EXPECT_TRUE(Answers(7) && Answers(1));
}

TEST_F(ReachabilityTest, SlowSwitchAndOneUnansweredCommandAreNoSilence) {
    server.SetFaults({.delayMs = 1500});
    EXPECT_TRUE(Answers(7));
    LoseReplies([](const auto& command) { return command.text == "Get.Oper.Switch.Never"; });
    EXPECT_FALSE(Answers(7, "Oper.Switch.Never"));
    EXPECT_TRUE(Within(2s, [] { return IsAnswering(7); }));
    std::this_thread::sleep_for(2s);
    for (const std::uint32_t domain : {0u, 1u, 7u}) {
        EXPECT_EQ(SilentFor(domain).count(), 0) << domain;
    }
    EXPECT_TRUE(Answers(7));
}

TEST_F(ReachabilityTest, SwitchThatAnswersTooLateStaysSilentAndHoldsUpNobody) {
    ASSERT_TRUE(Answers(7));
    server.SetFaults({.delayMs = 5000});
    EXPECT_FALSE(Answers(7));
    EXPECT_TRUE(Within(4s, [] { return SilentFor(7) > 0s; }));
    const auto end = ReachClock::now() + 7s;
    while (ReachClock::now() < end) {
        server.SendNotification(7, "29;[here I am]");
        ASSERT_FALSE(IsAnswering(7));
        std::this_thread::sleep_for(100ms);
    }
    server.SetFaults({});
    EXPECT_TRUE(Within(2s, [] { return IsAnswering(7) && IsAnswering(0); }));
}

TEST_F(ReachabilityTest, LateReplyToAProbeRenewsNoWaiting) {
    ASSERT_TRUE(Answers(7));
    Silence({7}, true);
    EXPECT_FALSE(Answers(7));
    std::this_thread::sleep_for(100ms);
    std::uint32_t sequence = 0;
    for (const sim::ReceivedCommand& command : server.TakeCommands()) {
        sequence = command.text == "Get.Oper.Switch.Nop" ? command.sequence : sequence;
    }
    ASSERT_NE(sequence, 0u);
    std::this_thread::sleep_for(2500ms);  // its time is over
    LoseReplies([](const auto& command) { return command.text == "Get.Oper.Switch.Never"; });
    std::atomic<bool> waits = true;
    std::thread late([&] {
        while (waits) {
            server.SendRaw(sim::BuildFrame(0, sim::kGetType, sequence, ""));
            std::this_thread::sleep_for(300ms);
        }
    });
    EXPECT_LT(TimeOf([] { EXPECT_FALSE(Answers(0, "Oper.Switch.Never")); }), 4500ms);
    waits = false;
    late.join();
    EXPECT_FALSE(IsAnswering(7));
}

}  // namespace
}  // namespace snmpmain
