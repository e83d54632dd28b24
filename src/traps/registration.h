// The agent's registration for notifications, and the start-up of everything that has to do with
// traps. Main thread only.
#pragma once

#include <cstdint>

namespace snmpmain {

// Registers at the local switch and at every other unit of connUnitTbl ("NotifyOn"), or withdraws
// from the other units that the fabric still has ("NotifyOff"; the local registration is never
// withdrawn). Returns 0, or -1
// when one of them failed, each of which goes to the system log.
int RegisterNotifications(bool on);

// A switch that was silent answers again (0: the local one): registers with it, greets it and reads
// its status, or, for one that is not in the table, refreshes that. So does the return of the local
// switch, through which all others are reached.
void WelcomeBack(std::uint16_t domain);

// Reads the community and the destinations of traps, registers for notifications and empties the
// queue. Messages go to standard error; a failure of one step does not stop the others. Always 0.
// "Get.Config.Snmp.TrapComm"
int InitTrapNotifications();

}  // namespace snmpmain
