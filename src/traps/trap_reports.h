// Builds the traps: which OID, which bindings, with values taken at that moment from the same
// functions as the MIB columns'. A value that is unavailable is reported (level 2) and the trap is
// built all the same, with "unknown" in its place. `domain` is a domain id; sensors and ports count
// from 0. Each replaces what the trap held.
#pragma once

#include <cstdint>

#include "src/traps/trap.h"

namespace snmpmain {

// connUnitStatusChange: connUnitStatus and connUnitState.
void ReportStatusChangeTrap(std::uint16_t domain, Trap& trap);

// The same of a unit that is being reset: offline, with the status that it keeps. Any thread.
void ReportResetTrap(std::uint16_t domain, std::uint16_t status, Trap& trap);

// connUnitDeletedTrap: the id of the unit that has left, by its WWN text. Without one, of the unit
// of the domain.
void ReportFabricChangeTrap(std::uint16_t domain, const char* wwn, Trap& trap);

// connUnitSensorStatusChange: connUnitSensorStatus.
void ReportSensorChangeTrap(std::uint16_t domain, std::uint16_t sensor, Trap& trap);

// connUnitPortStatusChange: connUnitPortStatus and connUnitPortState.
void ReportPortChangeTrap(std::uint16_t domain, std::uint16_t port, Trap& trap);

// connUnitEventTrap: the text as connUnitEventDescr, the number after its first ";" as
// connUnitEventId, the unit as connUnitEventObject. The text must outlive the trap.
void ReportEventTrap(std::uint16_t domain, const char* text, Trap& trap);

// The same about a port: connUnitEventObject is its connUnitPortHWState.
void ReportPortHwStateEventTrap(std::uint16_t domain, const char* text, std::uint16_t port,
                                Trap& trap);

// The vendor's link-state trap, up or down by the port's operational status: administrative and
// operational status of the port. Returns 0, or -1 for a unit that is not in connUnitTbl; the trap
// is then as it was.
int ReportLinkStateChangeTrap(std::uint16_t domain, std::uint16_t port, Trap& trap);

}  // namespace snmpmain
