// A fabric in which switches fall silent, come back, and lose datagrams.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <set>
#include <thread>

#include "trust/measure.h"

namespace trust {
namespace {

const std::string kPortStates = e2e::kPorts + ".6", kPortNames = e2e::kPorts + ".17",
                  kNames = e2e::kUnits + ".20";

class SickFabric : public testing::Test {
  protected:
    void Start(unsigned switches) {
        stack_.StartSwitch(sim::GenerateFabric(switches));
        stack_.Switch().SetRecording(false);
        stack_.StartPatiently();
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
            for (const sim::Switch& unit : fabric.switches) {
                if (unit.domain != fabric.Find(0)->domain) {
                    others_.push_back(unit.domain);
                }
            }
        });
    }

    // Every so-many-th of the other switches, in all.
    void Silence(std::size_t count, bool silent) {
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
            for (std::size_t i = 0; i < count; ++i) {
                fabric.Find(others_[i * others_.size() / count])->silent = silent;
            }
        });
    }

    e2e::Values Walk(const std::string& oid, double& seconds) {
        const Clock::time_point start = Clock::now();
        e2e::Values values = stack_.BulkWalk(oid);
        seconds = SecondsSince(start);
        // The tool's own message about a walk that breaks off gets in between.
        std::erase_if(values, [](const auto& value) {
            return value.second.starts_with("No ") ||
                   value.second.find("No Response") != std::string::npos;
        });
        return values;
    }

    // What managers see of a healthy switch while others are polled without a pause.
    std::vector<double> TimesOfGets(double seconds) {
        const std::string healthy = stack_.Walk(e2e::kUnits + ".3").front().first;
        std::atomic<bool> polling = true;
        std::thread poller([&] {
            while (polling) {
                stack_.BulkWalk(kPortStates);
            }
        });
        std::vector<double> times;
        for (const Clock::time_point start = Clock::now(); SecondsSince(start) < seconds;) {
            const Clock::time_point begin = Clock::now();
            EXPECT_NE(stack_.GetOne(kUnitCount), "no answer");
            times.push_back(SecondsSince(begin));
        }
        polling = false;
        poller.join();
        std::ranges::sort(times);
        return times;
    }

    static constexpr double kSlowdown = e2e::kIsSanitized ? 5 : 1;

    e2e::Stack stack_;
    std::vector<std::uint16_t> others_;
};

TEST_F(SickFabric, SilentSwitchesHideAndSlowNobody) {
    const auto switches = static_cast<unsigned>(Scaled(239, 20));
    const std::size_t silent = switches == 239 ? 100 : 4;
    Start(switches);
    double healthy = 0, first = 0, later = 0, column = 0;
    const std::size_t values = Walk(e2e::kUnits, healthy).size();
    Silence(silent, true);
    const std::size_t shown = Walk(e2e::kUnits, first).size();
    Walk(e2e::kUnits, later);
    const e2e::Values states = Walk(kPortStates, column);
    const e2e::Values names = stack_.BulkWalk(kNames);
    const std::vector<double> times = TimesOfGets(Scaled(20, 3));
    Figure(
        "%zu of %u silent: %zu names, %zu port states; walks of the unit table %.2f s before, "
        "%.2f s, %.2f s after (%zu and %zu values); column of port states %.2f s; a GET meanwhile "
        "%.1f ms, at most %.0f ms",
        silent, switches, names.size(), states.size(), healthy, first, later, values, shown, column,
        1e3 * times[times.size() / 2], 1e3 * times.back());
    EXPECT_EQ(names.size(), switches - silent);
    EXPECT_EQ(states.size(), 16 * (switches - silent));
    EXPECT_GE(shown, values / switches * (switches - silent));
    EXPECT_LT(first, healthy * kSlowdown + Scaled(5, 6));  // tests run beside the short one
    EXPECT_LT(later, healthy * 3 + 1);
    EXPECT_LT(column, 3 * kSlowdown);
    EXPECT_LT(times[times.size() / 2], 0.1 * kSlowdown);
    EXPECT_LT(times.back(), 1 * kSlowdown);

    // They come back one by one, and one comes and goes all the while.
    std::atomic<bool> flapping = true;
    std::thread flapper([&] {
        for (bool on = true; flapping; on = !on) {
            stack_.Switch().WithFabric(
                [&](sim::Fabric& fabric) { fabric.Find(others_.back())->silent = on; });
            std::this_thread::sleep_for(std::chrono::seconds(2));
        }
    });
    for (std::size_t left = silent; left > 0; --left) {
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
            fabric.Find(others_[(left - 1) * others_.size() / silent])->silent = false;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    flapping = false;
    flapper.join();
    Silence(others_.size(), false);
    EXPECT_TRUE(e2e::Within(10 * kSlowdown, [&] {
        return Walk(kPortStates, column).size() == 16 * switches;
    })) << column;
    EXPECT_EQ(stack_.GetOne(kUnitCount), "INTEGER: " + std::to_string(switches));
}

// Whatever share of the replies is lost, and twice as many are doubled, late or for another
// request, no value is wrong. Up to a tenth nobody leaves, and all is whole soon after; at three
// tenths telling the fabric of a change takes minutes, in which snmpd gives the agent up. The
// values are compared with those of before: nothing changes but how long switches are up.
TEST_F(SickFabric, LossMakesNothingWrong) {
    Start(10);
    stack_.Switch().WithFabric([](sim::Fabric& fabric) {
        for (sim::Switch& unit : fabric.switches) {
            for (sim::Port& port : unit.ports) {
                port.name += " of " + unit.symbolicName;  // no value may be taken for another's
            }
        }
    });
    double seconds = 0;
    const std::vector<std::string> tables = {kNames, kPortNames, e2e::kZones, e2e::kNameServer};
    std::map<std::string, e2e::Values> whole;
    for (const std::string& table : tables) {
        whole[table] = Walk(table, seconds);
    }
    const bool isShort = Scaled(1, 0) == 0;
    for (const double loss : isShort ? std::vector{0.01} : std::vector{0.01, 0.1, 0.3}) {
        stack_.Switch().SetFaults({.lose = loss,
                                   .duplicate = 2 * loss,
                                   .reorder = 2 * loss,
                                   .reorderMs = 20,
                                   .wrongSequence = 2 * loss});
        long asked = 0, shown = 0;
        const Clock::time_point start = Clock::now();
        while (SecondsSince(start) < Scaled(600, 8)) {
            // The lists are fetched anew.
            stack_.Switch().SendNotification(0, "7");
            stack_.Switch().SendNotification(0, "9");
            for (const std::string& table : tables) {
                const e2e::Values values = Walk(table, seconds);
                const std::set<e2e::Value> known(whole[table].begin(), whole[table].end());
                for (const e2e::Value& value : values) {
                    EXPECT_TRUE(known.contains(value)) << value.first << " is " << value.second;
                }
                asked += static_cast<long>(known.size());
                shown += static_cast<long>(values.size());
            }
        }
        const double soon = loss > 0.1 ? 600 : 60;
        if (!isShort && loss <= 0.1) {
            stack_.Switch().SendNotification(0, "5");  // the fabric is looked at
            EXPECT_EQ(stack_.GetOne(kUnitCount, 300), "INTEGER: 10");
        }
        stack_.Switch().SetFaults({});
        EXPECT_TRUE(e2e::Within(soon, [&] { return Walk(kNames, seconds).size() == 10; }));
        double later = 0;
        for (const std::string& table : tables) {
            const Clock::time_point end = Clock::now();
            EXPECT_TRUE(e2e::Within(soon, [&] { return Walk(table, seconds) == whole[table]; }))
                << table;
            later = std::max(later, SecondsSince(end));
        }
        EXPECT_TRUE(stack_.Switch().Complaints().empty());
        Figure("%.0f %% lost: %ld of %ld values shown, all right; whole after %.1f s", 100 * loss,
               shown, asked, later);
    }
}

}  // namespace
}  // namespace trust
