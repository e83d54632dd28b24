// Sends traps to the destinations of TrapTable, as SNMPv1 or SNMPv2c messages of our own making:
// the SNMP library would hand each to snmpd as well, which sends it on without a severity filter,
// and the library must not be used by two threads. Any thread, except where something else is said.
#pragma once

#include <cstdint>

#include "src/traps/trap.h"

namespace snmpmain {

// The community that traps carry from now on, at most 511 characters.
void SetTrapCommunity(const char* community);

// Sends a trap to every active destination whose filter takes events of this severity. Always 0.
int SendTrapToSinks(const Trap& trap, std::uint16_t severity);

// Announces the agent's start to every active destination, whatever its filter; after a hot reset
// of the switch also to the other agents of the fabric. Messages go to standard error. Main thread
// only. "Get.Oper.Switch.ResetReason"
void SendColdStartTrap();

}  // namespace snmpmain
