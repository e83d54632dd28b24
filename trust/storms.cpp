// Many notifications at once: one change of a large fabric, of which every switch tells.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

#include "trust/measure.h"

namespace trust {
namespace {

constexpr int kTrapPort = 16200;
constexpr const char* kDepartureTrap = "1.3.6.1.3.94.0.3";
constexpr const char* kFabricTrap = "Fabric oper change";

struct Storm {
    unsigned switches;
    unsigned delay;                            // milliseconds, of each reply
    bool departure;                            // or a hundred notifications of kind 5
    double mostCalm, mostMedian, mostLongest;  // seconds
};

// A fabric, its agent, and a manager that asks all the while.
class StormyFabric {
  public:
    explicit StormyFabric(const Storm& storm) : storm_(storm) {
        sim::Fabric fabric = sim::GenerateFabric(storm.switches);
        name_ = e2e::kUnits + ".20" + e2e::UnitIndex(fabric.Find(0)->wwn);
        e2e::SendTrapsTo(*fabric.Find(0), stack_.Address(), kTrapPort);
        stack_.StartSwitch(fabric, {.delayMs = storm.delay});
        stack_.StartReceiver(kTrapPort);
        stack_.StartPatiently();
        AwaitCalm();
    }

    // Breaks the storm loose and sees how it goes.
    void Test();

  private:
    // Each switch that stays tells of the departure: one after the other, so that the simulator
    // answers in between.
    void Break() {
        std::vector<std::uint16_t> telling(100, 0);
        if (storm_.departure) {
            telling.clear();
            stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
                std::erase_if(fabric.switches, [&, left = false](const sim::Switch& unit) mutable {
                    return !left && (left = unit.domain != fabric.localDomain);
                });
                for (const sim::Switch& unit : fabric.switches) {
                    telling.push_back(unit.domain);
                }
            });
        }
        for (const std::uint16_t domain : telling) {
            stack_.Switch().SendNotification(domain, "5;0;0;0;0");
        }
    }

    // Waits until no command comes for half a second but those of the manager; counts them, and
    // notes how long it took until they were all that was left but readings of statuses.
    void AwaitCalm() {
        commands_ = 0;
        calm_ = whole_ = 0;
        const Clock::time_point start = Clock::now();
        while (SecondsSince(start) < whole_ + 0.5) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
                if (command.text == "Get.Config.Switch.SymName") {
                    continue;
                }
                ++commands_;
                whole_ = SecondsSince(start);
                calm_ = IsOfStatus(command.text) ? calm_ : whole_;
            }
        }
    }

    static bool IsOfStatus(const std::string& text) {
        return text.starts_with("Get.Oper.Chassis.") || text.starts_with("Get.Oper.Blade.") ||
               text.starts_with("Get.Oper.UserPort.") || text == "Get.Oper.Switch.MaxPorts" ||
               text == "Get.Oper.Switch.OperState";
    }

    long CountTraps(const char* part) const {
        const e2e::Words traps = stack_.Traps(kTrapPort);
        return std::ranges::count_if(
            traps, [part](const std::string& trap) { return trap.find(part) != trap.npos; });
    }

    const Storm storm_;
    e2e::Stack stack_;
    std::string name_;  // OID of the local switch's name, which a command asks for
    long commands_ = 0;
    double calm_ = 0, whole_ = 0;  // seconds
};

void StormyFabric::Test() {
    const std::string local = stack_.GetOne(name_);
    std::atomic<bool> asking = true;
    std::vector<double> times;
    long unanswered = 0;
    std::thread manager([&] {
        while (asking) {
            const Clock::time_point start = Clock::now();
            unanswered += stack_.GetOne(name_) == local ? 0 : 1;
            times.push_back(SecondsSince(start));
        }
    });
    const long told = CountTraps(kFabricTrap);
    Break();
    AwaitCalm();
    asking = false;
    manager.join();
    std::ranges::sort(times);
    const double median = times[times.size() / 2];
    Figure(
        "%u switches, %u ms a reply, %s: calm after %.2f s, statuses after %.2f s, %ld commands; "
        "GET "
        "%.0f ms, at most %.0f ms",
        storm_.switches, storm_.delay, storm_.departure ? "one leaves" : "100 notifications", calm_,
        whole_, commands_, 1e3 * median, 1e3 * times.back());
    EXPECT_EQ(unanswered, 0) << local;
    const unsigned left = storm_.switches - (storm_.departure ? 1 : 0);
    EXPECT_EQ(stack_.GetOne(kUnitCount), "INTEGER: " + std::to_string(left));
    EXPECT_EQ(CountTraps(kDepartureTrap), storm_.departure ? 1 : 0);
    EXPECT_EQ(CountTraps(kFabricTrap) - told, storm_.departure ? left : 100);
    const double slowdown = e2e::kIsSlow ? 10 : 1;
    EXPECT_LT(calm_, storm_.mostCalm * slowdown);
    EXPECT_LT(median, storm_.mostMedian * slowdown);
    EXPECT_LT(times.back(), storm_.mostLongest * slowdown);
}

TEST(Storms, AreOverSoonAndNobodyWaits) {
    const std::vector<Storm> full = {{3, 0, true, 1, 0.02, 0.2},
                                     {60, 0, true, 1, 0.02, 0.2},
                                     {239, 0, true, 3, 0.02, 0.2},
                                     {60, 1, true, 4, 0.05, 0.3},
                                     {239, 1, false, 10, 0.05, 0.3}};
    const std::vector<Storm> inShort = {{60, 1, true, 8, 0.2, 1}};
    for (const Storm& storm : Scaled(1, 0) == 1 ? full : inShort) {
        StormyFabric(storm).Test();
    }
}

// ---- the same as one at a time ----

struct Notification {
    std::uint16_t domain;
    std::string text;
};

class RandomStorm : public testing::Test {
  protected:
    RandomStorm() {
        sim::Fabric fabric = sim::GenerateFabric(7);
        e2e::SendTrapsTo(*fabric.Find(0), stack_.Address(), kTrapPort);
        stack_.StartSwitch(fabric);
        stack_.StartReceiver(kTrapPort);
        stack_.StartAll();
        AwaitCalm();
    }

    void AwaitCalm() {
        stack_.Switch().TakeCommands();
        do {
            std::this_thread::sleep_for(std::chrono::milliseconds(e2e::kIsSlow ? 900 : 300));
        } while (!stack_.Switch().TakeCommands().empty());
    }

    Notification Make() {
        const std::uint16_t domains[] = {0, 1, 2, 3, 5, 200};
        const char* const texts[] = {"1;0;0;0;0",
                                     "2;0;0;0;0",
                                     "5;0;0;0;0",
                                     "7;0;0;0;0",
                                     "9;0;0;0;0",
                                     "10;0;0;0;0",
                                     "12;0;0;0;0",
                                     "13;0;0;0;0",
                                     "17;0;0;0;0[Reset]\n",
                                     "28;0;0;0;3",
                                     "29;0;0;0;0[words]\n",
                                     "19;0;0;0;0[x][0][0x0][Power Supply:1 is Good]\n",
                                     "36;0;0;0;0[x]\n",
                                     "32;0;0;0;0[Unit status change][13][3]",
                                     "32;0;0;0;0[Fabric update]"};
        const char* const text = texts[random_() % std::size(texts)];
        // A reset of the local switch overtakes the others: it is reported as it comes. And a
        // switch that nobody knows does not answer: only its events say the same each time.
        const std::string kind = std::string(text).substr(0, 2);
        const std::size_t most = kind == "5;" || kind == "7;" || kind == "9;" ? 6 : 5;
        return {domains[kind == "17" ? 1 : random_() % most], text};
    }

    // The traps since the last look. Times, and a status that may be read again or not, are left
    // out.
    e2e::Words TakeTraps() {
        e2e::Words traps = stack_.Traps(kTrapPort);
        traps.erase(traps.begin(), traps.begin() + static_cast<std::ptrdiff_t>(seen_));
        seen_ += traps.size();
        for (std::string& trap : traps) {
            trap = e2e::Replaced(trap, "(\\[)[A-Z][^]]*20[0-9][0-9]\\]", "$1");
            trap = e2e::Replaced(trap, "(\\.6\\.1\\.6\\.[0-9.]+ = INTEGER: )[0-9]", "$1");
        }
        return traps;
    }

    e2e::Stack stack_;
    std::mt19937 random_{testing::UnitTest::GetInstance()->random_seed() + 1u};
    std::size_t seen_ = 0;
};

TEST_F(RandomStorm, LeadsToTheTrapsOfItsNotificationsOneAtATime) {
    for (int round = 0; round < Scaled(10, 1); ++round) {
        std::vector<Notification> notifications(static_cast<std::size_t>(Scaled(100, 25)));
        std::ranges::generate(notifications, [this] { return Make(); });
        TakeTraps();
        for (const auto& [domain, text] : notifications) {
            stack_.Switch().SendNotification(domain, text);
            AwaitCalm();
        }
        const e2e::Words alone = TakeTraps();
        for (const auto& [domain, text] : notifications) {
            stack_.Switch().SendNotification(domain, text);
            if (random_() % 4 == 0) {
                stack_.GetOne(kUnitCount);
            }
        }
        AwaitCalm();
        EXPECT_EQ(TakeTraps(), alone);
        Figure("%zu notifications, %zu traps, the same at once", notifications.size(),
               alone.size());
    }
}

}  // namespace
}  // namespace trust
