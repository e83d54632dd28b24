// The vendor's MIB, mib/NORBEX-MIB.txt: two objects per port below
// 1.3.6.1.4.1.VENDOR_ENTERPRISE_NUMBER.1.3. Main thread only.
#pragma once

#include "src/mibs/registration.h"
#include "src/mibs/write.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_NorbexMIB();

extern FindVarMethod* const var_NorbexMIB;

namespace norbex {

extern const ServedTable kPortTable;  // 10.1.1.c
extern const WrittenObject kPortPhysAdminStatus;

// All objects, in the order of registration.
const MibModule& GetModule();

}  // namespace norbex

// Changes the port's state at once; unlike connUnitPortControl it does not become configuration.
constexpr WriteMethod* write_nxFxPortPhysAdminStatus = Write<norbex::kPortPhysAdminStatus>;

}  // namespace snmpmain
