// A fabric that changes while it is walked.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

#include "sim/frame.h"
#include "trust/measure.h"

namespace trust {
namespace {

// One change of another switch or of what all know. The local switch, domain 2, stays.
void ChangeSomething(sim::Fabric& fabric, const sim::Fabric& whole, std::mt19937& random) {
    const auto toggle = [&](auto& list, const auto& full) {
        if (list.size() == full.size()) {
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(random() % list.size()));
        } else {
            list = full;
        }
    };
    switch (random() % 6) {
        case 0:
            if (fabric.switches.size() == whole.switches.size()) {
                std::erase_if(fabric.switches, [&](const sim::Switch& unit) {
                    return unit.domain == (random() % 2 == 0 ? 1 : 7);
                });
            } else {
                fabric.switches = whole.switches;
            }
            break;
        case 1:
            toggle(fabric.zones, whole.zones);
            break;
        case 2:
            toggle(fabric.aliases, whole.aliases);
            break;
        default: {
            sim::Switch& unit = fabric.switches[random() % fabric.switches.size()];
            const sim::Switch& full =
                *std::ranges::find(whole.switches, unit.domain, &sim::Switch::domain);
            if (random() % 2 == 0 && full.nameServer.size() > 1) {
                toggle(unit.nameServer, full.nameServer);
            } else {
                toggle(unit.ports, full.ports);
            }
        }
    }
}

// Without what changes by itself: uptimes and the log.
e2e::Values WalkOfTheLasting(const e2e::Stack& stack) {
    e2e::Values values = stack.BulkWalk(e2e::kFcmgmt);
    std::erase_if(values, [](const e2e::Value& value) {
        return value.first.starts_with(e2e::kUnits + ".9.") ||
               value.first.starts_with(e2e::kUnits + ".28.") ||
               value.first.starts_with(e2e::kEvents);
    });
    return values;
}

TEST(ChangingFabric, EveryWalkAscendsAndEnds) {
    const sim::Fabric whole = sim::DefaultFabric();
    e2e::Stack stack;
    stack.StartSwitch(whole);
    stack.Switch().SetRecording(false);
    stack.StartPatiently();
    const e2e::Values before = WalkOfTheLasting(stack);
    e2e::Words asked;
    for (std::size_t i = 0; i < before.size(); i += 61) {
        asked.push_back(before[i].first);
    }
    std::atomic<bool> changing = true;
    std::atomic<long> changes = 0;
    std::thread changer([&] {
        std::mt19937 random(1);
        while (changing) {
            try {
                // A reply that nobody waits for, which must not keep notifications out.
                stack.Switch().SendRaw(sim::BuildFrame(0, sim::kGetType, 0x7777, "stray"));
                stack.Switch().ChangeAndNotify(
                    [&](sim::Fabric& fabric) { ChangeSomething(fabric, whole, random); });
                ++changes;
            } catch (const sim::FabricError&) {
                // A zone or link would lack what it names; that fabric there cannot be.
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % 40));
        }
    });
    long walks = 0, broken = 0;
    std::size_t values = 0, most = 0;
    double longest = 0;
    // While switches come and go that fast, a request often waits for one that has just left: with
    // a sanitizer's speed whole MIBs would take minutes.
    const std::vector<std::string> tables =
        e2e::kIsSanitized ? std::vector{e2e::kUnits, e2e::kZones, e2e::kAliases, e2e::kNameServer}
                          : std::vector{e2e::kFcmgmt, e2e::kFe, e2e::kVendorMib};
    const Clock::time_point start = Clock::now();
    while (SecondsSince(start) < Scaled(300, 10)) {
        for (const std::string& table : tables) {
            const Clock::time_point begin = Clock::now();
            const std::optional<std::size_t> walked = stack.CountWalked(table, 30);
            longest = std::max(longest, SecondsSince(begin));
            ++walks;
            broken += walked ? 0 : 1;
            values += walked.value_or(0);
            most = std::max(most, walked.value_or(0));
        }
        const e2e::Values next = stack.GetNext(asked);
        EXPECT_EQ(next.size(), asked.size());
        for (std::size_t i = 0; i < next.size(); ++i) {
            EXPECT_GT(e2e::SubIds(next[i].first), e2e::SubIds(asked[i])) << next[i].first;
        }
    }
    changing = false;
    changer.join();
    Figure(
        "%ld changes, %ld walks with %zu values, the longest %zu in %.1f s; %ld broken off or not "
        "ascending",
        changes.load(), walks, values, most, longest, broken);
    EXPECT_EQ(broken, 0);
    EXPECT_GT(changes, 20);
    stack.Switch().ChangeAndNotify([&](sim::Fabric& fabric) { fabric = whole; });
    EXPECT_TRUE(e2e::Within(20, [&] { return WalkOfTheLasting(stack) == before; }))
        << e2e::Same(WalkOfTheLasting(stack), before).message();
}

}  // namespace
}  // namespace trust
