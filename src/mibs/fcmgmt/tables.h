// The tables of FCMGMT-MIB, one per handler, with their columns in order. All served by name in the
// module's registration (fcmgmt.cpp).
#pragma once

#include <array>
#include <span>

#include "src/mibs/registration.h"
#include "src/snmpoid/index_codec.h"

namespace snmpmain::fcmgmt {

// Scalars by the node they lie under: 1.c, 2.c, c, 5.1.c.
extern const std::array<std::span<const Column>, 4> kScalarGroups;
extern const ServedTable kScalars;

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

// What the handlers return points into this.
extern MibValue result;

// Index: unit id, port number + 1. The instance's numbers are the module and the port.
int ResolvePort(const HandlerCall& call, Instance& instance);
int NextPort(const HandlerCall& call, Instance& instance);

// A row of the trap registration table as an index. Returns 0, or -1 for one that is not in use.
int TrapRowAt(std::uint16_t row, TrapRowIndex& found);

// All objects, in the order of registration.
const MibModule& GetModule();

}  // namespace snmpmain::fcmgmt
