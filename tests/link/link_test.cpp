#include "src/link/link.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <future>

#include "sim/frame.h"
#include "src/base/byte_order.h"
#include "src/traps/notifications.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using SteadyClock = std::chrono::steady_clock;

class LinkTest : public SwitchTest {
  protected:
    LinkTest() {
        SetNotificationReceiver(HandleIncomingNotification);
    }

    // The value carries its command's identity, so that a reply given to the wrong request shows.
    std::string Ask(std::uint32_t number) {
        const std::string path = "Test.Echo." + std::to_string(number);
        server.SetValue(0, path, std::to_string(number));
        ReplyText text;
        const std::uint16_t result = SwitchMgmtQuery(0, ("Get." + path).c_str(), text, kString);
        return result == 0 ? text.data() : "failed " + std::to_string(result);
    }

    static void AwaitAnswering() {
        EXPECT_TRUE(Within(std::chrono::seconds(3), [] { return IsAnswering(0); }));
    }

    // A reply or notification frame as switch management builds it.
    static std::vector<std::uint8_t> Frame(std::uint32_t sequence, std::string_view text) {
        return sim::BuildFrame(0, sim::kGetType, sequence, text);
    }

    bool WakesWithin(int milliseconds) {
        pollfd wake{NotifyQueue::WakeDescriptor(), POLLIN, 0};
        return ::poll(&wake, 1, milliseconds) == 1;
    }
};

TEST_F(LinkTest, QueriesConvertAndReportErrorNumbers) {
    ReplyText text;
    std::uint32_t value = 1;
    EXPECT_EQ(SwitchMgmtQuery(0, "Get.Oper.Switch.DomainID", text, kInteger, &value), 0);
    EXPECT_EQ(value, 2u);
    server.SetValue(0, "Test.Error", "17#3");
    EXPECT_EQ(SwitchMgmtQuery(0, "Get.Test.Error", text, kInteger, &value), 3);
    EXPECT_EQ(value, 0u);
    EXPECT_STREQ(text.data(), "17");
    EXPECT_EQ(SwitchMgmtQuery(0, "Give.Test.Error", text, kString), kQueryFailed);
    EXPECT_EQ(SwitchMgmtQueryf(0, text, kString, nullptr, "Get.%s", std::string(600, 'x').c_str()),
              kQueryFailed);
    EXPECT_EQ(PingSwitchMgmt(7), 0);
    EXPECT_EQ(server.TakeCommands().back().domain, 7u);
    // An answer that says no is an answer.
    EXPECT_EQ(AskSwitch(0, "Get.Test.Error", text, kString).outcome, Outcome::kRefused);
    EXPECT_EQ(AskSwitch(0, "Get.Oper.Switch.Type", text, kInteger).outcome, Outcome::kRefused);
    EXPECT_EQ(AskSwitch(0, "Give.Test.Error", text, kString).outcome, Outcome::kRefused);
    EXPECT_FALSE(IsFabricUpdatePending());
    RefuseReplies([](const sim::ReceivedCommand&) { return true; });
    const Answer answer = AskSwitch(0, "Get.Oper.Switch.Type", text, kString);
    EXPECT_EQ(answer.outcome, Outcome::kRefused);
    EXPECT_EQ(answer.code, kQueryFailed);
    EXPECT_TRUE(IsFabricUpdatePending());
}

TEST_F(LinkTest, LostReplyIsAskedForOnceMoreWithTheSameSequence) {
    std::atomic<int> lost{0};
    LoseReplies([&](const sim::ReceivedCommand&) { return lost++ == 0; });
    const auto begin = SteadyClock::now();
    EXPECT_EQ(Ask(5), "5");
    EXPECT_LT(SteadyClock::now() - begin, std::chrono::milliseconds(2500));
    const std::vector<sim::ReceivedCommand> commands = server.TakeCommands();
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].sequence, commands[1].sequence);
}

TEST_F(LinkTest, SilentSwitchFailsAfterTwoSendingsAndFourTicks) {
    server.Pause(true);
    const auto begin = SteadyClock::now();
    EXPECT_EQ(Ask(6), "failed 65535");
    const auto waited = SteadyClock::now() - begin;
    EXPECT_GE(waited, std::chrono::milliseconds(2000));
    EXPECT_LE(waited, std::chrono::milliseconds(4500));
    EXPECT_EQ(CountTexts("Test.Echo"), 2);
    server.Pause(false);
    AwaitAnswering();
    EXPECT_EQ(Ask(7), "7");
}

TEST_F(LinkTest, BusyLinkDoesNotKeepARequesterWaiting) {
    EXPECT_EQ(Ask(1), "1");
    NotifyQueue::Reset();
    server.Pause(true);
    std::atomic<bool> asking{true};
    std::thread chatter([&] {
        while (asking) {
            server.SendNotification(0, "29;[chatter]");
            std::this_thread::sleep_for(std::chrono::milliseconds(900));
        }
    });
    const auto begin = SteadyClock::now();
    EXPECT_EQ(Ask(6), "failed 65535");
    EXPECT_LE(SteadyClock::now() - begin, std::chrono::milliseconds(4500));
    EXPECT_TRUE(NotifyQueue::Pending()) << "notifications wait for the end of a request";
    asking = false;
    chatter.join();
    NotifyQueue::Reset();
}

std::atomic<int> resultOnListenThread{0};

TEST_F(LinkTest, QueryOnTheListenThreadFailsInsteadOfWaitingForItself) {
    EXPECT_EQ(Ask(1), "1");
    SetNotificationReceiver([](std::span<const std::uint8_t>) {
        ReplyText text;
        resultOnListenThread = SwitchMgmtQuery(0, "Get.Oper.Switch.Nop", text, kString);
        return 0;
    });
    server.SendNotification(0, "29;x");
    EXPECT_TRUE(
        Within(std::chrono::seconds(1), [] { return resultOnListenThread == kQueryFailed; }));
    EXPECT_EQ(Ask(2), "2");
}

TEST_F(LinkTest, StrayLateAndDoubledRepliesNeverAnswerAnotherRequest) {
    sim::Faults faults;
    faults.wrongSequence = 0.5;
    faults.duplicate = 0.5;
    faults.reorder = 0.05;
    faults.reorderMs = 20;
    server.SetFaults(faults);
    for (std::uint32_t number = 0; number < 300; ++number) {
        ASSERT_EQ(Ask(number), std::to_string(number));
    }
}

TEST_F(LinkTest, ReplyThatComesTooLateIsSkipped) {
    sim::Faults faults;
    faults.delayMs = 4300;  // later than both waits of a request
    server.SetFaults(faults);
    EXPECT_EQ(Ask(1), "failed 65535");
    server.SetFaults({});
    AwaitAnswering();
    EXPECT_EQ(Ask(2), "2");
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));  // its replies arrive unasked
    EXPECT_EQ(Ask(3), "3");
    NotifyQueue::AcknowledgeWake();
    server.SendNotification(0, "29;text");
    EXPECT_TRUE(WakesWithin(1000)) << "the ListenThread hangs on a reply that nobody takes";
}

TEST_F(LinkTest, NotificationWakesTheLoopAndIsQueuedWhole) {
    Discover();
    NotifyQueue::AcknowledgeWake();
    ASSERT_FALSE(NotifyQueue::Pending());
    server.SendNotification(0, "29;[Port 3]");
    ASSERT_TRUE(WakesWithin(1000));
    NotifyQueue::AcknowledgeWake();
    EXPECT_FALSE(WakesWithin(0));
    ASSERT_TRUE(NotifyQueue::Pending());
    NotificationRecord record;
    NotifyQueue::Get(record);
    EXPECT_STREQ(record.text, "29;[Port 3]");
    EXPECT_FALSE(NotifyQueue::Pending());
}

TEST_F(LinkTest, SequenceTellsNotificationsFromReplies) {
    EXPECT_EQ(Ask(1), "1");
    server.SendRaw(Frame(0x10001, "29;reply"));
    EXPECT_FALSE(WakesWithin(100));
    server.SendRaw(Frame(0x10000, "29;notification"));
    EXPECT_TRUE(WakesWithin(1000));
}

TEST_F(LinkTest, RequestsGoToWhoeverSentTheLastDatagram) {
    std::promise<sockaddr_in> seen;
    server.SetLog([&, first = true](const std::string& line) mutable {
        if (std::exchange(first, false)) {
            seen.set_value(SenderInLog(line));
        }
    });
    EXPECT_EQ(Ask(1), "1");
    const sockaddr_in agent = seen.get_future().get();
    server.SetLog({});

    const int other = ::socket(AF_INET, SOCK_DGRAM, 0);
    ASSERT_EQ(::connect(other, reinterpret_cast<const sockaddr*>(&agent), sizeof(agent)), 0);
    ASSERT_EQ(::send(other, "x", 1, 0), 1);
    std::thread answering([&] {
        std::array<std::uint8_t, 600> request{};
        ASSERT_GT(::recv(other, request.data(), request.size(), 0), 16);
        const auto reply = Frame(LoadBig32(&request[12]), "from elsewhere");
        ::send(other, reply.data(), reply.size(), 0);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // until the byte has been read
    ReplyText text;
    EXPECT_EQ(SwitchMgmtQuery(0, "Get.Oper.Switch.Nop", text, kString), 0);
    EXPECT_STREQ(text.data(), "from elsewhere");
    answering.join();
    ::close(other);
    server.SendRaw(Frame(1, "29;back again"));
    ASSERT_TRUE(WakesWithin(1000));
    EXPECT_EQ(Ask(2), "2");
}

TEST(NotifyQueueTest, HoldsAllSlotsButOneAndKeepsTheOrder) {
    ASSERT_EQ(NotifyQueue::Open(), 0);
    NotifyQueue::Reset();
    NotificationRecord record{};
    for (int round = 0; round < 3; ++round) {  // from different places of the ring
        for (std::uint16_t i = 0; i < 260; ++i) {
            record.kind = i;
            NotifyQueue::Put(record);
        }
        for (std::uint16_t i = 0; i < 249; ++i) {
            ASSERT_TRUE(NotifyQueue::Pending());
            NotifyQueue::Get(record);
            ASSERT_EQ(record.kind, i);
        }
        EXPECT_FALSE(NotifyQueue::Pending());
    }
}

TEST_F(LinkTest, ThreadsTakeTurns) {
    server.SetValue(0, "Test.A", "a");
    server.SetValue(0, "Test.B", "b");
    const auto ask = [](const char* command, const char* expected) {
        for (int i = 0; i < 500; ++i) {
            ReplyText text;
            ASSERT_EQ(SwitchMgmtQuery(0, command, text, kString), 0);
            ASSERT_STREQ(text.data(), expected);
        }
    };
    std::thread other(ask, "Get.Test.B", "b");
    ask("Get.Test.A", "a");
    other.join();
}

}  // namespace
}  // namespace snmpmain
