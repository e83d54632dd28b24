#include "src/upkeep/upkeep.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <chrono>
#include <optional>
#include <utility>

#include "src/base/main_thread.h"
#include "src/base/system_log.h"
#include "src/base/trace_log.h"
#include "src/conf/snmpd_conf.h"
#include "src/link/link.h"
#include "src/link/log_level.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/trap_table.h"
#include "src/upkeep/unit_table_refresh.h"

namespace snmpmain {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLongestWait{1};  // of marked work, while notifications come
constexpr int kInfoAttempts = 4;
constexpr std::chrono::seconds kInfoPause{1};

// After a switch was not found by a refresh, its notifications do not wait for another one.
constexpr std::chrono::seconds kInVain{10};
constexpr std::size_t kDomains = 256;

using Marks = std::bitset<kUpkeeps>;

struct State {
    Marks marked;
    Clock::time_point firstMark{};
    Marks left;  // of those that are being done
    std::optional<Upkeep> current;
    bool hold = false;
    bool forStatusByte = false;
    bool forReturn = false;
    int infoAttempts = 0;
    Clock::time_point infoPauseEnd{};
    TrapReading trapReading;
    std::array<Clock::time_point, kDomains> soughtInVainUntil{};
};

State state;

std::size_t PlaceOf(Upkeep what) {
    return static_cast<std::size_t>(what);
}

bool IsKnown(std::uint16_t domain) {
    return FindUnit(domain) != nullptr;
}

// A second report of a reset would be suppressed until the table is refreshed on account of the
// first, and the unit would be reported offline.
bool IsAboutUnitBeingReset(const NotificationRecord& record) {
    std::uint32_t reset = 0;
    return GetUnitReset(record.domainId, reset) == 0 && reset != 0;
}

bool IsSoughtInVain(std::uint16_t domain) {
    return domain >= kDomains || IsSilent(domain) || Clock::now() < state.soughtInVainUntil[domain];
}

void NoteSoughtInVain(std::uint16_t domain) {
    if (domain < kDomains && !IsKnown(domain)) {
        state.soughtInVainUntil[domain] = Clock::now() + kInVain;
    }
}

void BeginSwitchInfoAttempts() {
    TraceLog(kTrace, "Refreshing switch information");
    state.infoAttempts = 1;
    state.infoPauseEnd = {};
    BeginSwitchInfo();
}

Progress StepSwitchInfoAttempts() {
    if (Clock::now() < state.infoPauseEnd) {
        return Progress::kPaused;
    }
    const Progress progress = StepSwitchInfo();
    if (progress == Progress::kFailed && state.infoAttempts < kInfoAttempts) {
        ++state.infoAttempts;
        state.infoPauseEnd = Clock::now() + kInfoPause;
        BeginSwitchInfo();
        return Progress::kMore;
    }
    // Needing the last attempt is reported even when it succeeded.
    if (progress != Progress::kMore && state.infoAttempts == kInfoAttempts) {
        SystemLog("SNMP:Failed to properly update cache!\n");
    }
    return progress;
}

void BeginTrapReading() {
    state.trapReading = {};
}

Progress StepUnitTable() {
    const Progress progress = RefreshConnUnitTable();
    if (progress == Progress::kDone || progress == Progress::kFailed) {
        const bool done = progress == Progress::kDone;
        if (std::exchange(state.forStatusByte, false) && !done) {
            SetFabricUpdatePending(true);
        }
        if (std::exchange(state.forReturn, false) && done) {
            ForgetReturned();
        }
        std::ranges::for_each(GetWalkedDomains(), NoteSoughtInVain);
        if (NotifyQueue::Pending()) {
            NoteSoughtInVain(NotifyQueue::Front().domainId);
        }
    }
    return progress;
}

struct Work {
    void (*begin)();
    Progress (*step)();
};

// In the order of Upkeep.
constexpr std::array<Work, kUpkeeps> kWork = {{
    {BeginSwitchInfoAttempts, StepSwitchInfoAttempts},
    {[] {},
     [] {
         InitLogLevel();
         return Progress::kDone;
     }},
    {BeginConnUnitTableRefresh, StepUnitTable},
    {BeginSnmpdConf, StepSnmpdConf},
    {BeginTrapReading, [] { return state.trapReading.Step(); }},
}};

// Begins with what has been marked, or with the next of it.
void BeginNext() {
    if (state.left.none()) {
        state.left = std::exchange(state.marked, {});
    }
    std::size_t place = 0;
    while (!state.left[place]) {
        ++place;
    }
    state.current = static_cast<Upkeep>(place);
    kWork[place].begin();
}

}  // namespace

void MarkUpkeep(Upkeep what) {
    AssertMainThread();
    if (state.marked.none()) {
        state.firstMark = Clock::now();
    }
    state.marked.set(PlaceOf(what));
}

void MarkUnitTableForStatusByte() {
    SetFabricUpdatePending(false);
    state.forStatusByte = true;
    MarkUpkeep(Upkeep::kUnitTable);
}

void MarkUnitTableForReturn() {
    state.forReturn = true;
    MarkUpkeep(Upkeep::kUnitTable);
}

void HoldNotifications() {
    state.hold = true;
}

bool MustWaitForUpkeep(const NotificationRecord& record) {
    if (state.marked.none() && state.left.none()) {
        return false;
    }
    return state.hold || (IsOutstanding(Upkeep::kUnitTable) &&
                          (IsAboutUnitBeingReset(record) ||
                           (!IsKnown(record.domainId) && !IsSoughtInVain(record.domainId))));
}

bool IsOutstanding(Upkeep what) {
    return state.marked[PlaceOf(what)] || state.left[PlaceOf(what)];
}

bool IsUpkeepDue() {
    if (state.left.any()) {
        return true;
    }
    return state.marked.any() &&
           (!NotifyQueue::Pending() || MustWaitForUpkeep(NotifyQueue::Front()) ||
            Clock::now() - state.firstMark >= kLongestWait);
}

Progress StepUpkeep() {
    AssertMainThread();
    if (!state.current) {
        BeginNext();
    }
    const std::size_t place = PlaceOf(*state.current);
    const Progress progress = kWork[place].step();
    if (progress == Progress::kMore || progress == Progress::kPaused) {
        return progress;
    }
    state.current.reset();
    state.left.reset(place);
    if (state.left.any()) {
        return Progress::kMore;
    }
    state.hold = state.hold && state.marked.any();
    return Progress::kDone;
}

void ResetUpkeep() {
    state = {};
}

}  // namespace snmpmain
