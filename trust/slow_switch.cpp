// Switches that answer late, or not at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <thread>

#include "trust/measure.h"
#include "trust/session.h"

namespace trust {
namespace {

class SlowSwitch : public testing::Test {
  protected:
    void SetUp() override {
        stack_.StartSwitch();
        stack_.StartSnmpd({"agentXTimeout 120", "agentXRetries 0"});
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

// The agent tells them of each change, in vain. The daemon must not give the agent up meanwhile.
TEST_F(SlowSwitch, SomeAreSilentWhileTheFabricChanges) {
    const int count = Scaled(2, 1);
    const std::set<std::string> before = SocketsOf(stack_.Pid("snmpmain"));
    const auto silence = [&](bool silent) {
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
            fabric.Find(7)->silent = silent;
            fabric.Find(1)->silent = silent && count > 1;
        });
    };
    silence(true);
    double many = 0;
    {
        std::vector<std::string> ports(8);
        for (int i = 0; i < 8; ++i) {
            ports[static_cast<std::size_t>(i)] = PortName(i < 8 / count ? 7 : 1, i % 4);
        }
        const Clock::time_point start = Clock::now();
        Session(stack_.SnmpAddress(), 100).GetAll(ports);
        many = SecondsSince(start);
    }
    double changed = 0, later = 0;
    stack_.Switch().SendNotification(0, "5");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    Session patient(stack_.SnmpAddress(), 100);
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(patient.Get(PortName(2, 3)), Name(2));
    changed = SecondsSince(start);
    EXPECT_EQ(Ask(2, later), Name(2));
    Figure(
        "8 values of %d silent switches in one request: %.1f s; a value of another switch while "
        "they are told of a change %.1f s, afterwards %.3f s",
        count, many, changed, later);
    EXPECT_LT(many, 10);
    EXPECT_LT(changed, 60);
    EXPECT_LT(later, kAtOnce);
    const std::set<std::string> after = SocketsOf(stack_.Pid("snmpmain"));
    EXPECT_TRUE(std::ranges::includes(after, before)) << "the daemon gave the agent up";
    silence(false);
    stack_.Switch().SendNotification(0, "5");
    ASSERT_TRUE(e2e::Within(15, [&] { return stack_.GetOne(kUnitCount) == "INTEGER: 3"; }));
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
