// Managers' changes of the trap registration table: of the agent's own, of which the main loop then
// tells the switch. Main thread only.
#pragma once

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// The filter of a row is a severity, 1 to 10. The state creates (inactive 2, active 3) and destroys
// (1) rows: five at most, new ones with filter 6, for SNMPv2c.
WriteMethod write_trapRegFilter;
WriteMethod write_trapRegRowState;

}  // namespace snmpmain
