#include "src/link/tellings.h"

#include <atomic>
#include <map>

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using namespace std::chrono_literals;

std::map<std::uint16_t, std::vector<Outcome>> outcomes;

void Note(std::uint16_t domain, Outcome outcome) {
    outcomes[domain].push_back(outcome);
}

class TellingsTest : public SwitchTest {
  protected:
    TellingsTest() {
        Discover();
        TakeTexts();
        outcomes.clear();
    }
    ~TellingsTest() override {
        ResetReachability();
    }

    static void TellBoth(const char* event) {
        constexpr std::uint16_t kBoth[] = {7, 1};
        Tell(kBoth, (std::string("Set.Cmd.Snmp.PrivateEvent.") + event).c_str(),
             StatusByte::kCounts, Note);
    }

    // As many replies to the commands of switch 7 are lost.
    void LoseRepliesOf7(int count) {
        LoseReplies([left = std::make_shared<std::atomic<int>>(count)](
                        const sim::ReceivedCommand& command) {
            return command.domain == 7 && (*left)-- > 0;
        });
    }

    // "DOMAIN EVENT" of each private event that came.
    std::vector<std::string> TakeEvents() {
        std::vector<std::string> events;
        for (const sim::ReceivedCommand& command : server.TakeCommands()) {
            if (const auto at = command.text.find("Event."); at != std::string::npos) {
                events.push_back(std::to_string(command.domain) + " " +
                                 command.text.substr(at + 6));
            }
        }
        return events;
    }
};

TEST_F(TellingsTest, EachSwitchGetsItsOwnInOrderAndALostOneOnceMore) {
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(1)->eventSupport = false; });
    LoseRepliesOf7(1);
    const auto start = ReachClock::now();
    TellBoth("A");
    TellBoth("B");
    AwaitTellings(200ms);
    EXPECT_EQ(TakeEvents(), (std::vector<std::string>{"7 A", "1 A", "1 B"}));
    ReplyText text;
    EXPECT_EQ(SwitchMgmtQuery(7, "Get.Oper.Switch.MaxPorts", text, kString), 0);
    EXPECT_LT(ReachClock::now() - start, 500ms) << "a request waited for a telling";
    FinishTellings();
    EXPECT_EQ(TakeEvents(), (std::vector<std::string>{"7 A", "7 B"}));
    EXPECT_LT(ReachClock::now() - start, 11s);
    EXPECT_EQ(outcomes[7], (std::vector<Outcome>{Outcome::kAnswered, Outcome::kAnswered}));
    EXPECT_EQ(outcomes[1], (std::vector<Outcome>{Outcome::kRefused, Outcome::kRefused}));
}

// Sequences come round after 65,538 commands, which in a storm takes less than the patience.
TEST_F(TellingsTest, NoRequestTakesTheSequenceOfOneUnderWay) {
    LoseRepliesOf7(100);
    TellBoth("A");
    for (int i = 0; i < 66'000; ++i) {
        ReplyText text;
        ASSERT_EQ(SwitchMgmtQuery(0, "Get.Oper.Switch.MaxPorts", text, kString), 0);
    }
    const auto follower = [](std::uint32_t s) { return s == 0x20002 ? 0x10001 : s + 1; };
    std::uint32_t taken = 0, last = 0;
    for (const sim::ReceivedCommand& command : server.TakeCommands()) {
        if (command.sequence == taken) {
            ASSERT_EQ(command.domain, 7u);  // sent once more
            continue;
        }
        taken = taken == 0 && command.domain == 7 ? command.sequence : taken;
        if (last != 0) {
            const std::uint32_t next = follower(last);
            ASSERT_EQ(command.sequence, next == taken && last != taken ? follower(next) : next);
        }
        last = command.sequence;
    }
    EXPECT_GT(taken, 0u);
    // What is to be told to a switch that has left is forgotten, and its late reply is nobody's.
    constexpr std::uint16_t kStay[] = {1, 2};
    KeepTellingsOf(kStay);
    EXPECT_FALSE(IsTelling());
    HandOutTold();
    EXPECT_EQ(outcomes[1].size(), 1u);
    EXPECT_EQ(outcomes[7].size(), 0u);
}

TEST_F(TellingsTest, ASilentSwitchIsToldNothingAndHoldsUpNobody) {
    Silence({7}, true);
    EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), 0u);  // notices it
    TellBoth("A");
    while (IsTelling()) {
        AwaitTellings(10ms);
    }
    HandOutTold();
    EXPECT_EQ(TakeEvents(), std::vector<std::string>{"1 A"});
    EXPECT_EQ(outcomes[7], std::vector<Outcome>{Outcome::kNoAnswer});
}

}  // namespace
}  // namespace snmpmain
