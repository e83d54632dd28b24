// The daemon and switch management come and go.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <thread>

#include "trust/measure.h"

namespace trust {
namespace {

void Start(e2e::Stack& stack, char process) {
    switch (process) {
        case 'a':
            stack.StartAgent();
            break;
        case 'd':
            stack.StartSnmpdOfSwitch();
            break;
        default:
            stack.StartSimulatorProgram({});
    }
}

const char* NameOf(char process) {
    return process == 'a' ? "snmpmain" : process == 'd' ? "snmpd" : "switchsim";
}

// Each is started in every order, and each is taken away and brought back once.
TEST(Restarts, InEveryOrder) {
    std::string order = "ads";  // agent, daemon, switch
    double longest = 0;
    do {
        SCOPED_TRACE(order);
        e2e::Stack stack;
        for (const char process : order) {
            Start(stack, process);
        }
        Clock::time_point start = Clock::now();
        ASSERT_TRUE(stack.AwaitTables());
        longest = std::max(longest, SecondsSince(start));
        for (const char process : order.substr(0, static_cast<std::size_t>(Scaled(3, 0)))) {
            stack.Stop(NameOf(process), SIGKILL);
            Start(stack, process);
            start = Clock::now();
            EXPECT_TRUE(stack.AwaitTables()) << NameOf(process);
            longest = std::max(longest, SecondsSince(start));
        }
    } while (std::ranges::next_permutation(order).found);
    Figure("tables are there within %.1f s of the last start", longest);
}

TEST(Restarts, OfTheDaemonUnderLoad) {
    const int restarts = Scaled(100, 1);
    e2e::Stack stack;
    stack.StartSimulatorProgram({});
    stack.StartSnmpdOfSwitch();
    stack.StartAgent();
    ASSERT_TRUE(stack.AwaitTables());
    std::atomic<bool> asking = true;
    std::atomic<std::size_t> values = 0;
    std::thread load([&] {
        while (asking) {
            values += stack.CountWalked(e2e::kPorts, 0.5).value_or(0);
        }
    });
    const int agent = stack.Pid("snmpmain");
    Holdings before{};
    double longest = 0;
    for (int i = 0; i < restarts; ++i) {
        stack.Stop("snmpd", i % 2 == 0 ? SIGTERM : SIGKILL);
        if (i % 3 == 0) {
            std::filesystem::remove(stack.Path("var/agentx/master"));  // the socket is another one
        }
        stack.StartSnmpdOfSwitch();
        const Clock::time_point start = Clock::now();
        EXPECT_TRUE(stack.AwaitTables()) << i;
        longest = std::max(longest, SecondsSince(start));
        if (i == 0) {
            before = HoldingsOf(agent);  // after the first time everything is allocated
        }
    }
    asking = false;
    load.join();
    const Holdings after = SettledHoldingsOf(agent, before);
    Figure(
        "%d restarts, %zu values meanwhile; tables back within %.1f s; %+ld descriptors, %+ld kB",
        restarts, values.load(), longest, after.descriptors - before.descriptors,
        after.memory - before.memory);
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
    EXPECT_EQ(stack.Pid("snmpmain"), agent);
    ExpectNoGrowth(before, after, 2 * restarts + 512);
}

}  // namespace
}  // namespace trust
