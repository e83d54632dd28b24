// FCMGMT-MIB, the Fibre Channel management MIB, below 1.3.6.1.3.94: its tables, one per file, and
// their handlers. Main thread only.
#pragma once

#include "src/mibs/mib_registration.h"
#include "src/snmpoid/index_codec.h"

namespace snmpmain {

// Registers the MIB with the SNMP library; call once, after the library is up as a sub-agent. A
// failure is reported to the library's debug output, and the agent runs on without the MIB.
void init_fcmgmt();

namespace fcmgmt {

extern const MibModule kModule;

// Groups of scalars.
extern const ServedTable kConnSet;   // 1.c
extern const ServedTable kTrapReg;   // 2.c
extern const ServedTable kRevision;  // c
extern const ServedTable kService;   // 5.1.c

extern const ServedTable kUnitTable;              // 1.6.1.c
extern const ServedTable kRevisionTable;          // 1.7.1.c
extern const ServedTable kSensorTable;            // 1.8.1.c
extern const ServedTable kPortTable;              // 1.10.1.c
extern const ServedTable kEventTable;             // 1.11.1.c
extern const ServedTable kLinkTable;              // 1.12.1.c
extern const ServedTable kZoneTable;              // 1.13.1.c
extern const ServedTable kAliasTable;             // 1.14.1.c
extern const ServedTable kTrapRegistrationTable;  // 2.3.1.c
extern const ServedTable kPortStatisticsTable;    // 4.5.1.c
extern const ServedTable kNameServerTable;        // 5.2.1.1.c
extern const ServedTable kPlatformTable;          // 5.2.2.1.c

// Index: unit id, port number + 1. The instance's numbers are the module and the port.
int ResolvePort(const HandlerCall& call, Instance& instance);
int NextPort(const HandlerCall& call, Instance& instance);

// A row of the trap registration table as an index. Returns 0, or -1 for one that is not in use.
int TrapRowAt(std::uint16_t row, TrapRowIndex& found);

}  // namespace fcmgmt

// Handlers, in the library's form.
constexpr FindVarMethod* var_fcmgmt =
    Handle<fcmgmt::kConnSet, fcmgmt::kTrapReg, fcmgmt::kRevision, fcmgmt::kService>;
constexpr FindVarMethod* var_connUnitTable = Handle<fcmgmt::kUnitTable>;
constexpr FindVarMethod* var_connUnitRevsTable = Handle<fcmgmt::kRevisionTable>;
constexpr FindVarMethod* var_connUnitSensorTable = Handle<fcmgmt::kSensorTable>;
constexpr FindVarMethod* var_connUnitPortTable = Handle<fcmgmt::kPortTable>;
constexpr FindVarMethod* var_connUnitEventTable = Handle<fcmgmt::kEventTable>;
constexpr FindVarMethod* var_connUnitLinkTable = Handle<fcmgmt::kLinkTable>;
constexpr FindVarMethod* var_connUnitZoneTable = Handle<fcmgmt::kZoneTable>;
constexpr FindVarMethod* var_connUnitZoningAliasTable = Handle<fcmgmt::kAliasTable>;
constexpr FindVarMethod* var_trapRegTable = Handle<fcmgmt::kTrapRegistrationTable>;
constexpr FindVarMethod* var_connUnitPortStatTable = Handle<fcmgmt::kPortStatisticsTable>;
constexpr FindVarMethod* var_connUnitSnsTable = Handle<fcmgmt::kNameServerTable>;
constexpr FindVarMethod* var_fcmgmt_empty = Handle<fcmgmt::kPlatformTable>;

}  // namespace snmpmain
