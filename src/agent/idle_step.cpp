#include "src/agent/idle_step.h"

#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/notifications.h"

namespace snmpmain {

bool AgentIdleStep() {
    if (NotifyQueue::Pending()) {
        DispatchNotification();
    } else if (fabricUpdatePending != 0) {
        if (RefreshConnUnitTable() == 0) {
            fabricUpdatePending = 0;
        }
    } else if (unitStatusRefreshPending != 0) {
        RefreshNextUnitStatus();
    }
    return NotifyQueue::Pending();
}

}  // namespace snmpmain
