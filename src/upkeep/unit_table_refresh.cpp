#include "src/upkeep/unit_table_refresh.h"

#include <chrono>
#include <span>

#include "src/base/main_thread.h"
#include "src/base/system_log.h"
#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/link/worked_with.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/status_refresh.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/event_kinds.h"
#include "src/traps/registration.h"
#include "src/traps/trap_decision.h"
#include "src/upkeep/sweep.h"
#include "src/upkeep/upkeep.h"

namespace snmpmain {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFailuresBeforeGivingUp = 2;
constexpr std::chrono::seconds kRepetitionPause{1};

enum class Phase { kList, kWithdrawal, kWalk, kPause, kReport };

struct Refresh {
    Phase phase = Phase::kList;
    KeyWalk domains{kDomainList};
    DomainList listed;
    TellingNumber awaited = 0;      // withdrawals have smaller ones
    std::uint32_t localDomain = 0;  // at its beginning
    int failures = 0;
    bool walked = false;
    Clock::time_point pauseEnd{};
    std::size_t reported = 0;  // of those that have left
};

Refresh refresh;

Progress GoOn(Phase next) {
    refresh.phase = next;
    return Progress::kMore;
}

Progress WithdrawRegistrations() {
    RegisterNotifications(false);
    refresh.awaited = NextTelling();
    return GoOn(Phase::kWithdrawal);
}

// Nobody is to wait for a switch that has left, requests in between neither.
Progress ListDomains() {
    if (refresh.domains.AtStart() && IsSilent(0)) {
        return Progress::kFailed;  // when it answers again, the table is refreshed
    }
    std::uint16_t domain = 0;
    const DomainStep step = NextDomain(refresh.domains, domain);
    if (step == DomainStep::kFound) {
        refresh.listed.Add(domain);
        return Progress::kMore;
    }
    if (step == DomainStep::kEnd) {
        NoteListed(refresh.listed.Listed());
        KeepTellingsOf(refresh.listed.Listed());
    }
    return WithdrawRegistrations();
}

Progress Walk() {
    BeginDiscovery();
    return GoOn(Phase::kWalk);
}

Progress AwaitWithdrawal() {
    if (!IsTelling(refresh.awaited)) {
        return Walk();
    }
    AwaitTellings(kSlice, refresh.awaited);
    return Progress::kMore;
}

// With another id of the local switch the table in force fits nothing any more: requests are not
// served from it.
Progress StepWalk() {
    Progress walked = StepDiscovery();
    while (walked == Progress::kMore && GetLocalDomainId() != refresh.localDomain) {
        walked = StepDiscovery();
    }
    return walked;
}

// A fourth walk that succeeds is still reported as a failure: by then the count stands at three.
Progress EndWalk(bool walked) {
    refresh.walked = walked;
    if (!walked && refresh.failures++ <= kFailuresBeforeGivingUp && !IsSilent(0)) {
        refresh.pauseEnd = Clock::now() + kRepetitionPause;
        return GoOn(Phase::kPause);
    }
    RegisterNotifications(true);
    return GoOn(Phase::kReport);
}

Progress ReportDeparture() {
    NotificationRecord record{};
    CopyText(record.text, sizeof(record.text), GetDepartedUnits()[refresh.reported++].wwn);
    // At once: the queue may be full.
    ProcessNotificationForTraps(static_cast<std::uint16_t>(GetLocalDomainId()), kUnitDeletedKind,
                                record.text);
    return Progress::kMore;
}

Progress EndRefresh() {
    if (!refresh.walked) {
        NoteWorkFailed(Worker::kUnitTable);
    }
    if (refresh.failures > kFailuresBeforeGivingUp) {
        SystemLog("SNMP:Failed to properly update connUnitTable!\n");
        return Progress::kFailed;
    }
    return refresh.walked ? Progress::kDone : Progress::kFailed;
}

Progress Step() {
    switch (refresh.phase) {
        case Phase::kList:
            return ListDomains();
        case Phase::kWithdrawal:
            return AwaitWithdrawal();
        case Phase::kWalk: {
            const Progress walked = StepWalk();
            return walked == Progress::kMore ? walked : EndWalk(walked == Progress::kDone);
        }
        case Phase::kPause:
            return Clock::now() < refresh.pauseEnd ? Progress::kPaused : Walk();
        case Phase::kReport:
            return refresh.walked && refresh.reported < GetDepartedUnits().size()
                       ? ReportDeparture()
                       : EndRefresh();
    }
    return Progress::kFailed;
}

}  // namespace

void BeginConnUnitTableRefresh() {
    refresh = {};
    refresh.localDomain = GetLocalDomainId();
}

Progress RefreshConnUnitTable() {
    AssertMainThread();
    // A status byte that the refresh itself has met is no reason for another one.
    const bool pendingBefore = IsFabricUpdatePending();
    const Progress progress = Step();
    SetFabricUpdatePending(pendingBefore);
    return progress;
}

void WelcomeBack(std::uint16_t domain) {
    AssertMainThread();
    if (domain == 0) {
        HurrySweep();  // it may have been started anew, without our registration
    }
    if (domain == 0 || FindUnit(domain) == nullptr) {
        MarkUnitTableForReturn();
        return;
    }
    RegisterAt(domain);
    GreetUnit(domain);
    WantUnitStatus(domain);
}

}  // namespace snmpmain
