// The agent's registration for notifications, and the start-up of everything that has to do with
// traps. Main thread only.
#pragma once

#include <cstdint>

namespace snmpmain {

// Tells the local switch and every other unit of connUnitTbl to notify ("NotifyOn"), or the other
// units that the fabric still has to stop ("NotifyOff"; the local registration is never withdrawn),
// without waiting for the answers. One that fails goes to the system log.
void RegisterNotifications(bool on);

// Tells one unit to notify.
void RegisterAt(std::uint16_t domain);

// Reads the community and the destinations of traps, registers for notifications and empties the
// queue. Messages go to standard error; a failure of one step does not stop the others.
// "Get.Config.Snmp.TrapComm"
void InitTrapNotifications();

}  // namespace snmpmain
