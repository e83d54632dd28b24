// State and status of a unit as a whole, computed from what its parts report. The MIB columns and
// the reports of changes both take the values from here. Main thread only.
#pragma once

#include <cstdint>

#include "src/snmptables/unit_table.h"

namespace snmpmain {

// connUnitState codes.
constexpr std::uint16_t kUnitStateUnknown = 1;
constexpr std::uint16_t kUnitStateOnline = 2;
constexpr std::uint16_t kUnitStateOffline = 3;

// The connUnitState code of a unit: offline while it is being reset, else after its
// "Get.Oper.Switch.OperState". Returns 0, or -1 (with state unknown) when the unit does not answer.
int ReadUnitState(std::uint32_t domain, std::uint16_t& state);

// The connUnitStatus code of a unit: ok, warning or failed after its power supplies, fans, blades,
// ports and its own state, one query each; the row's last status while it is being reset. The
// outcome, a failure too, is remembered for three seconds for the unit asked last. Stores the
// status in the unit's row. Returns 0, or -1 (with status unknown) when a query failed.
int ReadUnitStatus(std::uint32_t domain, std::uint16_t& status);

// Forgets the remembered outcome.
void ResetUnitStatusMemo();

}  // namespace snmpmain
