// The agent's registration for notifications, and the start-up of everything that has to do with
// traps. Main thread only.
#pragma once

#include <cstdint>

namespace snmpmain {

// Tells the local switch and every other unit of connUnitTbl to notify ("NotifyOn"), or the other
// units that the fabric still has to stop ("NotifyOff"; the local registration is never withdrawn),
// without waiting for the answers. One that fails goes to the system log.
void RegisterNotifications(bool on);

// A switch that was silent answers again (0: the local one): registers with it, greets it and has
// its status read, or, for one that is not in the table, marks that for a refresh. So does the
// return of the local switch, through which all others are reached.
void WelcomeBack(std::uint16_t domain);

// Reads the community and the destinations of traps, registers for notifications and empties the
// queue. Messages go to standard error; a failure of one step does not stop the others. Always 0.
// "Get.Config.Snmp.TrapComm"
int InitTrapNotifications();

}  // namespace snmpmain
