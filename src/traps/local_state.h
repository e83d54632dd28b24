// LocalStateTable: what the agent last reported of its own switch. A notification is worth a trap
// only when the switch's present state differs from it. Main thread only.
#pragma once

#include <cstdint>

namespace snmpmain {

// Reads all states of the local switch. Messages go to standard error. Returns 0, or -1 when there
// is no memory for them. Sensors and ports that come later have no state here.
int InitLocalStateTable();

// Each asks for the present state, returns 1 and keeps it when it differs from the one kept, else
// 0. A sensor or port that the table does not hold has changed whenever one asks. A state that
// cannot be had counts as a fixed one (logged at level 2).
int CheckUnitStatusChange();                        // connUnitStatus and connUnitState
int CheckSensorStatusChange(std::uint16_t sensor);  // connUnitSensorStatus
int CheckPortStatusChange(std::uint16_t port);      // connUnitPortStatus and connUnitPortState
// The operational status as the vendor MIB has it; the administrative one is kept along with it.
int CheckPortLinkStateChange(std::uint16_t port);
int CheckPortHwStateChange(std::uint16_t port);  // connUnitPortHWState
int CheckInbandEnableChange();                   // "Get.Config.Switch.InbandEnable"

}  // namespace snmpmain
