// The kinds of events that switch management reports, with their severities and display names, and
// the names of the severities.
#pragma once

#include <cstdint>

namespace snmpmain {

struct EventKind {
    std::uint16_t severity;  // 2 (emergency) to 10 (mark); a smaller number is more severe
    const char* name;        // "" for kinds that arrive with a text of their own
};

// The kinds that the agent looks at; the others it only hands on.
enum Kind : std::uint16_t {
    kSnmpConfig = 1,
    kSwitchConfig = 2,
    kPortConfig = 4,
    kFabricOper = 5,
    kZoningOper = 7,
    kNameServerOper = 9,
    kEPortOper = 10,
    kPortEvent = 11,
    kSwitchOper = 12,
    kSwitchState = 13,
    kSwitchReset = 17,
    kChassisOper = 18,
    kPowerSupplyBad = 19,
    kPowerSupplyGood = 20,
    kFanBad = 21,
    kFanGood = 22,
    kBladeOper = 23,
    kTempNormal = 24,
    kTempWarm = 25,
    kTempOverheating = 26,
    kPortState = 27,
    kPortOper = 28,
    kGenericEvent = 29,
    kPrivateEvent = 32,
    kVoltageFirst = 33,
    kVoltageLast = 35,
    kSwitchInfo = 36,
    kTimeZone = 37,

    kFirstEventKind = kSnmpConfig,
    kLastEventKind = kTimeZone,             // switch management sends none beyond
    kUnitDeletedKind = kLastEventKind + 1,  // the agent's own: a unit has left the fabric
};

// Kinds 0 to 37; any other gives the closing entry, severity 65535 without a name.
const EventKind& GetEventKind(std::uint32_t kind);

// Kinds less severe than this are configuration and operational change notices, whose text says
// nothing but the kind.
constexpr std::uint16_t kNotifySeverity = 7;

// The number of the first severity ("emergency" 2 to "mark" 10) whose name contains the text; 10
// when there is none.
std::uint32_t SeverityFromName(const char* text);

// The name of a severity; numbers beyond the known ones are taken for the nearest.
const char* NameOfSeverity(std::uint32_t severity);

}  // namespace snmpmain
