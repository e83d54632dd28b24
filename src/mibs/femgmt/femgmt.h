// FIBRE-CHANNEL-FE-MIB, the fabric element MIB: 88 objects below 1.3.6.1.2.1.75.1. Main thread
// only.
#pragma once

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_femgmt();

// Handlers, in the library's form, one per table.
extern FindVarMethod* const var_fcFe;  // the scalars
extern FindVarMethod* const var_fcFeModuleTable;
extern FindVarMethod* const var_fcFxPortTable;
extern FindVarMethod* const var_fcFxPortStatusTable;
extern FindVarMethod* const var_fcFxPortPhysTable;
extern FindVarMethod* const var_fcFxLoginTable;
extern FindVarMethod* const var_fcFxPortErrorTable;
extern FindVarMethod* const var_fcFxPortC1AccountingTable;  // registered for its shape only
extern FindVarMethod* const var_fcFxPortC2AccountingTable;
extern FindVarMethod* const var_fcFxPortC3AccountingTable;
extern FindVarMethod* const var_fcFxPortCapTable;

}  // namespace snmpmain
