// The tables of FIBRE-CHANNEL-FE-MIB, one per handler, with their columns in order. All served by
// name in the module's registration (femgmt.cpp). A module of this MIB is a switch of the fabric:
// its index is the row of connUnitTbl + 1.
#pragma once

#include "src/mibs/registration.h"

namespace snmpmain::femgmt {

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

// What the handlers return points into this.
extern MibValue result;

// All objects, in the order of registration.
const MibModule& GetModule();

}  // namespace snmpmain::femgmt
