// Discovery: the walk over the fabric that fills connUnitTbl. Lookups see the table in force until
// the new one is whole. Main thread only.
#pragma once

#include <cstdint>
#include <span>

#include "src/base/progress.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {

// A walk in steps of one command: asks for every domain, greets the units (the local one only,
// unless proxying is enabled) and replaces the table. A unit that is in the table and still listed
// stays as it was when the walk does not reach it, unless it has been silent for ten seconds.
// kFailed leaves the table as it was.
void BeginDiscovery();
Progress StepDiscovery();

// Waits for the local switch as long as it takes, and walks the fabric once. Returns 0 or -1.
int UpdateConnUnitTable();

// The same at start-up: empties the table first, and announces it on standard output.
int InitConnUnitTable();

// Asks a unit for a sign of life, completes its row and says Hello, whose answer is noted when it
// comes. Returns 0, or -1 when there was no sign.
// "Get.Oper.Switch.Nop", "Set.Cmd.Snmp.PrivateEvent.Hello"
int HelloUnit(std::uint16_t domain, ConnUnitEntry& row);

// The same for a unit in the table that answers again.
void GreetUnit(std::uint16_t domain);

// Of the last walk that replaced the table: the domains in the order in which it has met them, and
// the WWNs of the units that were in the table before and are not any more.
std::span<const std::uint16_t> GetWalkedDomains();
struct DepartedUnit {
    char wwn[kWwnTextSize];
};
std::span<const DepartedUnit> GetDepartedUnits();

}  // namespace snmpmain
