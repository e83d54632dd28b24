#include "src/agent/idle_step.h"

#include <chrono>
#include <thread>

#include "src/base/progress.h"
#include "src/base/trace_log.h"
#include "src/conf/snmpd_conf.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/tellings.h"
#include "src/snmptables/status_refresh.h"
#include "src/traps/trap_table_update.h"
#include "src/upkeep/dispatch.h"
#include "src/upkeep/sweep.h"
#include "src/upkeep/unit_table_refresh.h"
#include "src/upkeep/upkeep.h"

namespace snmpmain {
namespace {

// The library's event loop comes round three times for each value that is served: too often to
// look at a file each time.
constexpr std::chrono::milliseconds kLookInterval{100};

bool SnmpdHasSaved() {
    static std::chrono::steady_clock::time_point nextLook;
    const auto now = std::chrono::steady_clock::now();
    if (now < nextLook) {
        return false;
    }
    nextLook = now + kLookInterval;
    return SnmpdConfChanged();
}

// A switch that always answers some question with an error must not keep the agent refreshing.
bool IsRefreshDue() {
    constexpr std::chrono::seconds kRefreshInterval{30};
    static std::chrono::steady_clock::time_point next;
    const auto now = std::chrono::steady_clock::now();
    if (!IsFabricUpdatePending() || now < next) {
        return false;
    }
    next = now + kRefreshInterval;
    return true;
}

bool NotificationWaits() {
    return NotifyQueue::Pending() && !MustWaitForUpkeep(NotifyQueue::Front());
}

Progress DecideNotification() {
    if (!NotificationWaits()) {
        return Progress::kDone;
    }
    DispatchNotification();
    return Progress::kMore;
}

Progress StepUnitStatus() {
    RefreshNextUnitStatus();
    return IsUnitStatusWanted() ? Progress::kMore : Progress::kDone;
}

// What takes no time, or is begun here and goes on elsewhere.
void BeginWork() {
    if (IsTrapTableUpdateDue()) {
        if (StartTrapTableUpdate() != 0) {
            TraceLog(kSevere, "write to switchTable failed: SNMP_ERR_COMMITFAILED");
        }
    } else if (std::uint16_t returned = 0;
               !IsOutstanding(Upkeep::kUnitTable) && TakeReturned(returned)) {
        WelcomeBack(returned);
    } else if (IsRefreshDue()) {
        MarkUnitTableForStatusByte();
    }
}

// A slice of the work that has been begun. Returns whether more can be done at once.
bool GoOn() {
    if (IsUpkeepDue()) {
        if (DoSlice(StepUpkeep) == Progress::kPaused) {
            std::this_thread::sleep_for(kSlice);
        }
    } else if (NotificationWaits()) {
        return true;
    } else if (IsSnmpdConfUnderWay()) {
        DoSlice(StepSnmpdConf);
    } else if (SnmpdHasSaved()) {
        SyncSnmpdPersistent();
    } else if (IsUnitStatusWanted()) {
        DoSlice(StepUnitStatus);
    } else {
        ResumeSnmpdConf();
    }
    return IsUpkeepDue() || IsSnmpdConfUnderWay() || IsUnitStatusWanted();
}

}  // namespace

bool AgentIdleStep() {
    HandOutTold();
    ServeTellings();
    DoSlice(DecideNotification);
    BeginWork();
    // New trap destinations are brought to the switch now, not with the next request.
    const bool sweeps = !IsUpkeepDue() && DoSlice(StepSweep) == Progress::kMore;
    return GoOn() || sweeps || NotificationWaits() || IsTrapTableUpdateDue() || HasReturned();
}

}  // namespace snmpmain
