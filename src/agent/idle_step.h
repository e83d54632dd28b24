// The deferred work of the main loop.
#pragma once

namespace snmpmain {

// Does at most one piece of deferred work: handles a notification, refreshes the unit table after a
// switch-management error, or reads one unit's status, in this order of precedence. Returns whether
// notifications still wait. Main thread only.
bool AgentIdleStep();

}  // namespace snmpmain
