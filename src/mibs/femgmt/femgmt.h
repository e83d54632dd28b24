// FIBRE-CHANNEL-FE-MIB, the fabric element MIB, below 1.3.6.1.2.1.75.1: its tables and their
// handlers. A module of this MIB is a switch of the fabric: its index is the row of connUnitTbl
// + 1. Main thread only.
#pragma once

#include "src/mibs/mib_registration.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_femgmt();

namespace femgmt {

extern const MibModule kModule;

extern const ServedTable kScalars;          // 1.c
extern const ServedTable kModuleTable;      // 1.4.1.c
extern const ServedTable kPortTable;        // 1.5.1.c
extern const ServedTable kPortStatusTable;  // 2.1.1.c
extern const ServedTable kPortPhysTable;    // 2.2.1.c
extern const ServedTable kLoginTable;       // 2.3.1.c
extern const ServedTable kErrorTable;       // 3.1.1.c
extern const ServedTable kClass1Table;      // 4.1.1.c
extern const ServedTable kClass2Table;      // 4.2.1.c
extern const ServedTable kClass3Table;      // 4.3.1.c
extern const ServedTable kCapabilityTable;  // 5.1.1.c

}  // namespace femgmt

// Handlers, in the library's form.
constexpr FindVarMethod* var_fcFe = Handle<femgmt::kScalars>;
constexpr FindVarMethod* var_fcFeModuleTable = Handle<femgmt::kModuleTable>;
constexpr FindVarMethod* var_fcFxPortTable = Handle<femgmt::kPortTable>;
constexpr FindVarMethod* var_fcFxPortStatusTable = Handle<femgmt::kPortStatusTable>;
constexpr FindVarMethod* var_fcFxPortPhysTable = Handle<femgmt::kPortPhysTable>;
constexpr FindVarMethod* var_fcFxLoginTable = Handle<femgmt::kLoginTable>;
constexpr FindVarMethod* var_fcFxPortErrorTable = Handle<femgmt::kErrorTable>;
constexpr FindVarMethod* var_fcFxPortC1AccountingTable = Handle<femgmt::kClass1Table>;
constexpr FindVarMethod* var_fcFxPortC2AccountingTable = Handle<femgmt::kClass2Table>;
constexpr FindVarMethod* var_fcFxPortC3AccountingTable = Handle<femgmt::kClass3Table>;
constexpr FindVarMethod* var_fcFxPortCapTable = Handle<femgmt::kCapabilityTable>;

}  // namespace snmpmain
