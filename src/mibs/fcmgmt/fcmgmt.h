// FCMGMT-MIB, the Fibre Channel management MIB: 197 objects below 1.3.6.1.3.94. Main thread only.
#pragma once

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_fcmgmt();

// Handlers, in the library's form, one per table.
extern FindVarMethod* const var_fcmgmt;  // the scalars
extern FindVarMethod* const var_connUnitTable;
extern FindVarMethod* const var_connUnitRevsTable;
extern FindVarMethod* const var_connUnitSensorTable;
extern FindVarMethod* const var_connUnitPortTable;
extern FindVarMethod* const var_connUnitEventTable;
extern FindVarMethod* const var_connUnitLinkTable;
extern FindVarMethod* const var_connUnitZoneTable;
extern FindVarMethod* const var_connUnitZoningAliasTable;
extern FindVarMethod* const var_trapRegTable;
extern FindVarMethod* const var_connUnitPortStatTable;
extern FindVarMethod* const var_connUnitSnsTable;
extern FindVarMethod* const var_fcmgmt_empty;  // registered for the subtree's shape only

}  // namespace snmpmain
