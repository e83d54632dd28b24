// Replies that are lost, late, doubled, out of order or for another request: no value may be taken
// for another's. Each port's name says whose it is.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <random>
#include <thread>

#include "sim/frame.h"
#include "trust/measure.h"
#include "trust/session.h"

namespace trust {
namespace {

std::string Identity(int domain, int port) {
    return "d" + std::to_string(domain) + "p" + std::to_string(port);
}

int PortsOf(int domain) {
    return domain == 1 ? 8 : domain == 2 ? 16 : 24;
}

TEST(FaultyReplies, GiveNoValueToTheWrongRequest) {
    sim::Fabric fabric = sim::DefaultFabric();
    for (sim::Switch& unit : fabric.switches) {
        for (std::size_t port = 0; port < unit.ports.size(); ++port) {
            unit.ports[port].name = Identity(unit.domain, static_cast<int>(port));
        }
    }
    e2e::Stack stack;
    stack.StartSwitch(fabric);
    stack.StartSnmpd({"agentXTimeout 120", "agentXRetries 0"});
    stack.StartAgent();
    ASSERT_TRUE(stack.AwaitAgent());
    std::mt19937 random(1);
    for (const double share : {0.01, 0.1, 0.5}) {
        sim::Faults faults;
        faults.lose = share / 10;
        faults.duplicate = faults.wrongSequence = faults.reorder = share;
        faults.reorderMs = 20;
        stack.Switch().SetFaults(faults);
        long asked = 0, right = 0, missing = 0;
        const Clock::time_point start = Clock::now();
        Session manager(stack.SnmpAddress(), 60);
        while (SecondsSince(start) < Scaled(60, 2)) {
            const int domain = std::array{1, 2, 7}[random() % 3];
            const int port = static_cast<int>(random() % static_cast<unsigned>(PortsOf(domain)));
            const std::optional<std::string> name = manager.Get(PortName(domain, port));
            ++asked;
            right += name == Identity(domain, port);
            missing += name == std::nullopt || name == "none";
        }
        Figure("%2.0f %% faulty: %ld asked, %ld right, %ld missing, %ld wrong", 100 * share, asked,
               right, missing, asked - right - missing);
        EXPECT_EQ(asked, right + missing);
        EXPECT_GT(right, asked / 2);
    }
    stack.Switch().SetFaults({});
}

// A reply that nobody waits for must not keep notifications out.
TEST(FaultyReplies, UnaskedOnesKeepNoNotificationOut) {
    e2e::Stack stack;
    stack.StartSwitch();
    stack.StartAll();
    const std::string walked = ".1.3.6.1.3.94.1.13";
    const std::size_t zones = stack.Walk(walked).size();
    const int rounds = Scaled(200, 20);
    double longest = 0;
    for (int i = 0; i < rounds; ++i) {
        stack.Switch().SendRaw(
            sim::BuildFrame(0, sim::kGetType, 0x7777u + static_cast<unsigned>(i), "stray"));
        stack.Switch().ChangeAndNotify(
            [&](sim::Fabric& fabric) { fabric.zones[0].name = "Zone" + std::to_string(i); });
        const Clock::time_point start = Clock::now();
        EXPECT_TRUE(e2e::Within(2, [&] {
            const e2e::Values values = stack.Walk(walked + ".1.5");
            return !values.empty() && values[0].second.find("Zone") != std::string::npos;
        }));
        longest = std::max(longest, SecondsSince(start));
    }
    Figure("%d stray replies; a change shows within %.2f s", rounds, longest);
    EXPECT_EQ(stack.Walk(walked).size(), zones);
}

}  // namespace
}  // namespace trust
