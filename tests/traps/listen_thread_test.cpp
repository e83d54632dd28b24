// The local switch's reset is reported on the ListenThread, while the main thread does whatever it
// does.
#include <pthread.h>

#include <atomic>

#include "src/base/clock.h"
#include "src/traps/notifications.h"
#include "src/traps/registration.h"
#include "src/traps/trap_sender.h"
#include "src/traps/trap_table.h"
#include "src/upkeep/dispatch.h"
#include "tests/support/mib_test.h"
#include "tests/support/trap_sink.h"

namespace snmpmain {
namespace {

// The ListenThread's stack, noted by the thread itself.
struct Stack {
    std::atomic<const unsigned char*> low{nullptr};
    std::atomic<std::size_t> size{0};
};
Stack stack;

int NoteStack(std::span<const std::uint8_t> frame) {
    if (stack.size == 0) {
        pthread_attr_t attributes;
        void* low = nullptr;
        std::size_t size = 0;
        if (::pthread_getattr_np(::pthread_self(), &attributes) == 0) {
            ::pthread_attr_getstack(&attributes, &low, &size);
            ::pthread_attr_destroy(&attributes);
        }
        stack.low = static_cast<const unsigned char*>(low);
        stack.size = size;
    }
    return HandleIncomingNotification(frame);
}

// Bytes of the stack that were ever written: pages come zeroed, and it grows downward.
[[maybe_unused]] std::size_t StackHighWater() {
    std::size_t untouched = 0;
    while (untouched < stack.size && stack.low[untouched] == 0) {
        ++untouched;
    }
    return stack.size - untouched;
}

class ListenThreadTest : public MibTest {
  protected:
    ListenThreadTest() : sink(LoopbackAddress(3)) {
        SetNotificationReceiver(NoteStack);
        SendTrapsTo({{sink.Address(), sink.Port(), "mark", true, "2"},
                     {sink.Address(), sink.Port(), "warning", true, "1"}});
        SetTrapCommunity("public");
    }
    ~ListenThreadTest() override {
        SetNotificationReceiver(nullptr);
    }

    TrapSink sink;
};

TEST_F(ListenThreadTest, ReportsTheResetAtOnceWithoutTheMainLoop) {
    server.SendNotification(0, "17;0;0;0;0[reset]\n");
    const std::vector<std::string> traps = sink.Take(500);
    ASSERT_EQ(traps.size(), 1u);  // equal destinations are one
    EXPECT_EQ(traps[0].back(), 3) << "the last value is the state, offline";
    EXPECT_FALSE(NotifyQueue::Pending());
    server.SendNotification(0, "17;0;0;0;0[reset]\n");
    EXPECT_EQ(sink.Take(200).size(), 0u) << "one report per reset";
}

// Races show under the thread sanitizer; the stack is measured without one.
TEST_F(ListenThreadTest, SharesNothingUnguardedAndStaysWithinItsStack) {
    TraceEverything();
    const std::string longest = "17;" + std::string(480, 'x');
    std::size_t traps = 0;
    for (int round = 0; round < 200; ++round) {
        server.SendNotification(0, longest);
        server.SendNotification(0, "29;1[generic]\n");
        server.SendNotification(0, "37;time zone\n");
        switch (round % 4) {
            case 0:
                ASSERT_EQ(InitSwitchInfo(), 0);
                ASSERT_EQ(UpdateConnUnitTable(), 0);  // the next reset may be reported
                break;
            case 1:
                ReadTrapDestinations();
                SetTrapCommunity(round % 8 == 1 ? "public" : "other");
                break;
            case 2:
                ResetUnitStatusMemo();
                EXPECT_NE(Get("1.6.1.6", Unit(2)), "");
                break;
            default:
                EXPECT_NE(Get("1.10.1.23", Unit(7, {3})), "");
                break;
        }
        while (NotifyQueue::Pending()) {
            DispatchNotification();
        }
        traps += sink.Take().size();
    }
    EXPECT_GT(traps + sink.Take(200).size(), 100u);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const std::size_t used = StackHighWater();
    RecordProperty("stack_high_water", static_cast<int>(used));
    std::printf("stack high water of the ListenThread: %zu of %zu bytes\n", used,
                stack.size.load());
    EXPECT_GT(used, 4096u);
    EXPECT_LT(used, 40u * 1024);
#endif
}

}  // namespace
}  // namespace snmpmain
