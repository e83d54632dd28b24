// LocalStateTable: what the agent last reported of its own switch. A notification is worth a trap
// only when the switch's present state differs from it. Main thread only.
#pragma once

#include <cstdint>

#include "src/base/progress.h"

namespace snmpmain {

// Reads all states of the local switch. Messages go to standard error. Returns 0, or -1 when there
// is no memory for them. Sensors and ports that come later have no state here.
int InitLocalStateTable();

// Each asks for the present state, returns 1 and keeps it when it differs from the one kept, else
// 0. A sensor or port that the table does not hold has changed whenever one asks. A state that is
// unavailable counts as a fixed one (logged at level 2).
int CheckUnitStatusChange();                        // connUnitStatus and connUnitState
int CheckSensorStatusChange(std::uint16_t sensor);  // connUnitSensorStatus
int CheckPortStatusChange(std::uint16_t port);      // connUnitPortStatus and connUnitPortState
// The operational status as the vendor MIB has it; the administrative one is kept along with it.
int CheckPortLinkStateChange(std::uint16_t port);
int CheckPortHwStateChange(std::uint16_t port);  // connUnitPortHWState
int CheckInbandEnableChange();                   // "Get.Config.Switch.InbandEnable"

// ---- for the sweep ----

// Asks for all states of a part in one burst and compares them with those kept, without keeping
// them. kUnavailable when an answer is missing, or when a check came in between.
enum class Compared : std::uint8_t { kSame, kDiffers, kUnavailable };
Compared CompareSensor(std::uint16_t sensor, std::uint16_t& status);
Compared ComparePort(std::uint16_t port);
Compared CompareInbandEnable();

// The same for the unit, whose status takes a query for each of its parts: call until it is
// finished.
void BeginComparingUnit();
Progress CompareUnit(Compared& result);

// While it exists, the checks of that part take what was compared last instead of asking again: a
// reply that is lost now must not become a state.
class ComparedStates {
  public:
    ComparedStates();
    ~ComparedStates();
    ComparedStates(const ComparedStates&) = delete;
    ComparedStates& operator=(const ComparedStates&) = delete;
};

// How many sensors and ports have states here.
std::uint16_t CountKeptSensors();
std::uint16_t CountKeptPorts();

}  // namespace snmpmain
