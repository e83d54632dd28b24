// The deferred work of the main loop.
#pragma once

namespace snmpmain {

// Does some milliseconds of deferred work: decides on notifications, starts bringing changed trap
// destinations to the switch, welcomes a switch that answers again, has the unit table refreshed
// after a switch-management error (at most once in 30 seconds), and goes on with the first of what
// is to be brought up to date, snmpd's configuration, what snmpd has saved (looked for at most ten
// times a second), the units' statuses and what failed of snmpd's configuration. Returns whether
// more can be done at once. Main thread only.
bool AgentIdleStep();

}  // namespace snmpmain
