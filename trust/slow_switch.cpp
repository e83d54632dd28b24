// Switches that answer late, or not at all.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "trust/measure.h"
#include "trust/session.h"

namespace trust {
namespace {

class SlowSwitch : public testing::Test {
  protected:
    void SetUp() override {
        stack_.StartSwitch();
        stack_.StartSnmpd({"agentXTimeout 30", "agentXRetries 0"});
        stack_.StartAgent();
        ASSERT_TRUE(stack_.AwaitAgent());
        manager_ = std::make_unique<Session>(stack_.SnmpAddress(), 60);
    }

    // What a manager gets for the name of a port, and after how many seconds.
    std::optional<std::string> Ask(int domain, double& seconds) {
        const Clock::time_point start = Clock::now();
        std::optional<std::string> name = manager_->Get(PortName(domain, 3));
        seconds = SecondsSince(start);
        return name;
    }

    std::string Name(int domain) {
        std::string name;
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
            name = fabric.Find(static_cast<std::uint32_t>(domain))->ports[3].name;
        });
        return name;
    }

    static constexpr double kAtOnce = e2e::kIsSanitized ? 2 : 0.5;  // seconds

    // Everything answers again, and at once.
    void ExpectRecovery() {
        stack_.Switch().SetFaults({});
        double seconds = 0;
        EXPECT_TRUE(e2e::Within(15, [&] {
            return Ask(2, seconds) == Name(2) && seconds < kAtOnce && Ask(7, seconds) == Name(7) &&
                   seconds < kAtOnce;
        }));
        EXPECT_EQ(stack_.GetOne(kUnitCount), "INTEGER: 3");
        EXPECT_TRUE(stack_.IsRunning("snmpmain"));
    }

    e2e::Stack stack_;
    std::unique_ptr<Session> manager_;
};

TEST_F(SlowSwitch, AnswersLate) {
    const struct {
        unsigned delayMs;
        bool answered;  // within the agent's patience of two times two seconds
    } cases[] = {{500, true}, {1500, true}, {3000, false}, {10000, false}};
    for (const auto& [delayMs, answered] : cases) {
        stack_.Switch().SetFaults({.delayMs = delayMs});
        double seconds = 0;
        const std::optional<std::string> name = Ask(2, seconds);
        Figure("replies after %.1f s: %s after %.1f s", delayMs / 1000.0,
               name == std::nullopt ? "no answer"
               : name == "none"     ? "no such instance"
                                    : "the value",
               seconds);
        if (answered) {
            EXPECT_EQ(name, Name(2));
        } else {
            EXPECT_TRUE(name == "none" || name == Name(2)) << name.value_or("no answer");
        }
        ExpectRecovery();
    }
}

// The others are served; who asks for the silent one waits for it.
TEST_F(SlowSwitch, OneIsSilent) {
    stack_.Switch().WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->silent = true; });
    double silent = 0, other = 0;
    EXPECT_EQ(Ask(7, silent), "none");
    EXPECT_EQ(Ask(2, other), Name(2));
    std::thread waits([&] {
        Session another(stack_.SnmpAddress(), 60);
        another.Get(PortName(7, 3));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    double behind = 0;
    EXPECT_EQ(Ask(2, behind), Name(2));
    waits.join();
    Figure(
        "no such instance after %.1f s; another switch after %.3f s, behind such a request %.1f s",
        silent, other, behind);
    EXPECT_LT(silent, 10);
    EXPECT_LT(other, kAtOnce);
    stack_.Switch().WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->silent = false; });
    ExpectRecovery();
}

TEST_F(SlowSwitch, AllAreSilent) {
    stack_.Switch().SetFaults({.silent = true});
    double seconds = 0, own = 0;
    EXPECT_EQ(Ask(2, seconds), "none");
    const Clock::time_point start = Clock::now();
    EXPECT_NE(stack_.GetOne(".1.3.6.1.2.1.1.3.0"), "no answer");
    own = SecondsSince(start);
    Figure("no such instance after %.1f s; the daemon's own objects after %.2f s", seconds, own);
    ExpectRecovery();
}

}  // namespace
}  // namespace trust
