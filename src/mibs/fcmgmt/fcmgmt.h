// FCMGMT-MIB, the Fibre Channel management MIB: 197 objects below 1.3.6.1.3.94. Main thread only.
#pragma once

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_fcmgmt();

// Handlers, in the library's form.
FindVarMethod var_fcmgmt;
FindVarMethod var_connUnitTable;
FindVarMethod var_connUnitRevsTable;
FindVarMethod var_fcmgmt_empty;  // objects that are registered for the subtree's shape only

}  // namespace snmpmain
