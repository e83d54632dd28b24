// The deferred work of the main loop.
#pragma once

namespace snmpmain {

// Does at most one piece of deferred work: handles a notification, starts bringing changed trap
// destinations to the switch, welcomes a switch that answers again, refreshes the unit table after
// a switch-management error (at most once in 30 seconds), carries back what snmpd has saved (looked
// for at most ten times a second), reads one unit's status, or does again what failed of snmpd's
// configuration, in this order of precedence. Returns whether notifications or changed trap
// destinations still wait. Main thread only.
bool AgentIdleStep();

}  // namespace snmpmain
