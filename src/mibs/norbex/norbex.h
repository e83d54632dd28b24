// The vendor's MIB, mib/NORBEX-MIB.txt: two objects per port below
// 1.3.6.1.4.1.VENDOR_ENTERPRISE_NUMBER.1.3. Main thread only.
#pragma once

#include "src/mibs/mib_registration.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_NorbexMIB();

namespace norbex {

extern const MibModule kModule;
extern const ServedTable kPortTable;  // 10.1.1.c

}  // namespace norbex

// The handler, in the library's form.
constexpr FindVarMethod* var_NorbexMIB = Handle<norbex::kPortTable>;

}  // namespace snmpmain
