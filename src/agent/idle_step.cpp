#include "src/agent/idle_step.h"

#include <chrono>

#include "src/base/trace_log.h"
#include "src/conf/snmpd_conf.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/notifications.h"
#include "src/traps/registration.h"
#include "src/traps/trap_table_update.h"

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
    if (fabricUpdatePending == 0 || now < next) {
        return false;
    }
    next = now + kRefreshInterval;
    return true;
}

}  // namespace

bool AgentIdleStep() {
    if (NotifyQueue::Pending()) {
        DispatchNotification();
    } else if (trapTableChanged != 0) {
        if (StartTrapTableUpdate() != 0) {
            TraceLog(kSevere, "write to switchTable failed: SNMP_ERR_COMMITFAILED");
        }
        trapTableChanged = 0;
    } else if (std::uint16_t returned = 0; TakeReturned(returned)) {
        WelcomeBack(returned);
    } else if (IsRefreshDue()) {
        if (RefreshConnUnitTable() == 0) {
            fabricUpdatePending = 0;
        }
    } else if (SnmpdHasSaved()) {
        SyncSnmpdPersistent();
    } else if (unitStatusRefreshPending != 0) {
        RefreshNextUnitStatus();
    } else {
        ResumeSnmpdConf();
    }
    // New trap destinations are brought to the switch now, not with the next request.
    return NotifyQueue::Pending() || trapTableChanged != 0 || HasReturned();
}

}  // namespace snmpmain
