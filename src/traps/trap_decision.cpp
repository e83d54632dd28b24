#include "src/traps/trap_decision.h"

#include <cstring>

#include "src/base/clock.h"
#include "src/link/reply_parser.h"
#include "src/link/switch_info.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/event_kinds.h"
#include "src/traps/local_state.h"
#include "src/traps/private_events.h"
#include "src/traps/trap_reports.h"
#include "src/traps/trap_sender.h"

namespace snmpmain {
namespace {

// The departure of a unit goes out with this kind's severity.
constexpr std::uint16_t kDepartureSeverityKind = kEPortOper;

// A notification on its way, and the trap that it has led to so far.
struct Decision {
    std::uint16_t domain;
    std::uint16_t kind;
    char* text;
    Trap& trap;
    bool reported = false;

    bool IsLocal() const {
        return domain == GetLocalDomainId();
    }
    std::uint16_t Severity() const {
        return GetEventKind(kind).severity;
    }
};

void CutLastCharacter(char* text) {
    if (const std::size_t length = std::strlen(text); length > 0) {
        text[length - 1] = '\0';
    }
}

void DecidePort(Decision& decision) {
    const std::uint16_t port = GetPortFromEventText(decision.text);
    if (!decision.IsLocal()) {
        ReportPortChangeTrap(decision.domain, port, decision.trap);
        decision.reported = true;
        return;
    }
    if (CheckPortStatusChange(port) != 0) {
        SendPortStatusEvent(decision.kind, port);
        ReportPortChangeTrap(decision.domain, port, decision.trap);
        SendTrapToSinks(decision.trap, decision.Severity());
    }
    if (CheckPortLinkStateChange(port) != 0) {
        SendPortLinkStateEvent(decision.kind, port);
        decision.reported = ReportLinkStateChangeTrap(decision.domain, port, decision.trap) == 0;
    }
}

void DecideUnit(Decision& decision) {
    if (decision.IsLocal()) {
        if (CheckUnitStatusChange() == 0) {
            return;
        }
        SendUnitStatusEvent(decision.kind);
    }
    ReportStatusChangeTrap(decision.domain, decision.trap);
    decision.reported = true;
}

// One report per reset: the flag stays until the unit is discovered anew.
void DecideReset(Decision& decision) {
    std::uint16_t status = kUnitUnknown;
    if (BeginUnitReset(decision.domain, status) == 0) {
        ReportResetTrap(decision.domain, status, decision.trap);
        decision.reported = true;
    }
}

// Where the switch counts power supplies, fans and blades apart, the sensor table counts through.
std::uint16_t SensorOf(const Decision& decision) {
    const std::uint16_t domain = decision.domain;
    const char* bracket = std::strrchr(decision.text, '[');
    const std::uint32_t number = bracket == nullptr ? 0 : ParseFirstNumber(bracket);
    switch (decision.kind) {
        case kPowerSupplyBad:
        case kPowerSupplyGood:
            return static_cast<std::uint16_t>(number - 1);
        case kFanBad:
        case kFanGood:
            return static_cast<std::uint16_t>(number - 1 + AskNumber(domain, Fact::kPowerSupplies));
        default:
            break;
    }
    const std::uint32_t firstBlade =
        AskNumber(domain, Fact::kPowerSupplies) + AskNumber(domain, Fact::kFans);
    if (decision.kind <= kTempOverheating) {
        return static_cast<std::uint16_t>(firstBlade);
    }
    const std::uint32_t blades = AskNumber(domain, Fact::kBlades);
    return static_cast<std::uint16_t>(blades == 1 ? 0 : firstBlade + blades);
}

void DecideSensor(Decision& decision, std::uint16_t sensor) {
    // Whether a voltage has changed is compared with the local one, wherever it comes from.
    if (decision.IsLocal() || decision.kind >= kVoltageFirst) {
        if (CheckSensorStatusChange(sensor) == 0) {
            return;
        }
        SendSensorStateEvent(decision.kind, sensor);
    }
    ReportSensorChangeTrap(decision.domain, sensor, decision.trap);
    decision.reported = true;
}

void DecideEvent(Decision& decision) {
    CutLastCharacter(decision.text);
    SendEventChangeEvent(decision.kind, decision.text);
    ReportEventTrap(decision.domain, decision.text, decision.trap);
    decision.reported = true;
}

void DecideGenericEvent(Decision& decision) {
    if (const char* event = std::strstr(decision.text, kPortHwStateEvent); event != nullptr) {
        ReportPortHwStateEventTrap(decision.domain, decision.text,
                                   static_cast<std::uint16_t>(ParseFirstNumber(event)),
                                   decision.trap);
        decision.reported = true;
    }
}

// ---- private events of other agents ----

// Each reads its fields, takes over kind and domain, and builds the trap. Returns 0, or -1 when a
// field is missing.
int TakeUnitStatus(Decision& decision) {
    if (ExtractTwoNumbers(decision.text, decision.kind, decision.domain) != 0) {
        return -1;
    }
    ReportStatusChangeTrap(decision.domain, decision.trap);
    decision.reported = true;
    return 0;
}

int TakeSensorState(Decision& decision) {
    std::uint16_t sensor = 0;
    if (ExtractThreeNumbers(decision.text, decision.kind, decision.domain, sensor) != 0) {
        return -1;
    }
    ReportSensorChangeTrap(decision.domain, sensor, decision.trap);
    decision.reported = true;
    return 0;
}

int TakePortStatus(Decision& decision) {
    std::uint16_t port = 0;
    if (ExtractThreeNumbers(decision.text, decision.kind, decision.domain, port) != 0) {
        return -1;
    }
    ReportPortChangeTrap(decision.domain, port, decision.trap);
    decision.reported = true;
    return 0;
}

int TakePortLinkState(Decision& decision) {
    std::uint16_t port = 0;
    if (ExtractThreeNumbers(decision.text, decision.kind, decision.domain, port) != 0) {
        return -1;
    }
    decision.reported |= ReportLinkStateChangeTrap(decision.domain, port, decision.trap) == 0;
    return 0;
}

int TakePortHwState(Decision& decision) {
    std::uint16_t port = 0;
    if (ExtractThreeNumbersAndText(decision.text, decision.kind, decision.domain, port) != 0) {
        return -1;
    }
    ReportPortHwStateEventTrap(decision.domain, decision.text, port, decision.trap);
    decision.reported = true;
    return 0;
}

int TakeEventChange(Decision& decision) {
    if (ExtractTwoNumbersAndText(decision.text, decision.kind, decision.domain) != 0) {
        return -1;
    }
    ReportEventTrap(decision.domain, decision.text, decision.trap);
    decision.reported = true;
    return 0;
}

// The search for the domain starts within the field of the kind, and so meets the same number.
int TakeUnitDeleted(Decision& decision) {
    const char* field = std::strchr(decision.text, '[');
    if (field == nullptr) {
        return -1;
    }
    decision.kind = static_cast<std::uint16_t>(ParseFirstNumber(field));
    decision.domain = decision.kind;
    ReportFabricChangeTrap(decision.domain, nullptr, decision.trap);
    decision.reported = true;
    return 0;
}

struct PrivateEvent {
    const char* name;
    int (*take)(Decision& decision);
};

// In the order of the tests; one text may match several.
constexpr PrivateEvent kPrivateEvents[] = {
    {kUnitStatusEvent, TakeUnitStatus},   {kSensorStateEvent, TakeSensorState},
    {kPortStatusEvent, TakePortStatus},   {kPortLinkStateEvent, TakePortLinkState},
    {kPortHwStateEvent, TakePortHwState}, {kEventChangeEvent, TakeEventChange},
    {kUnitDeletedEvent, TakeUnitDeleted},
};

void DecidePrivateEvent(Decision& decision) {
    for (const PrivateEvent& event : kPrivateEvents) {
        if (std::strstr(decision.text, event.name) != nullptr && event.take(decision) != 0) {
            return;
        }
    }
}

void Decide(Decision& decision) {
    switch (decision.kind) {
        case kPortConfig:
        case kPortEvent:
        case kPortState:
        case kPortOper:
            DecidePort(decision);
            break;
        case kEPortOper:
            break;
        case kSwitchOper:
        case kSwitchState:
        case kChassisOper:
        case kBladeOper:
            DecideUnit(decision);
            break;
        case kSwitchReset:
            DecideReset(decision);
            break;
        case kPowerSupplyBad:
        case kPowerSupplyGood:
        case kFanBad:
        case kFanGood:
        case kTempNormal:
        case kTempWarm:
        case kTempOverheating:
        case kVoltageFirst:
        case kVoltageFirst + 1:
        case kVoltageLast:
            DecideSensor(decision, SensorOf(decision));
            break;
        case kGenericEvent:
            DecideGenericEvent(decision);
            break;
        case kPrivateEvent:
            DecidePrivateEvent(decision);
            break;
        case kTimeZone:
            RereadTimeZone();
            DecideEvent(decision);
            break;
        case kUnitDeletedKind:
            ReportFabricChangeTrap(decision.domain, decision.text, decision.trap);
            decision.reported = true;
            decision.kind = kDepartureSeverityKind;
            break;
        default:
            DecideEvent(decision);
            break;
    }
}

void SendReported(const Decision& decision) {
    if (decision.reported && (decision.IsLocal() || GetProxyEnable() != 0)) {
        SendTrapToSinks(decision.trap, decision.Severity());
    }
}

}  // namespace

int ProcessNotificationForTraps(std::uint16_t domain, std::uint16_t kind, char* text) {
    Trap trap;
    Decision decision{domain, kind, text, trap};
    Decide(decision);
    SendReported(decision);
    return 0;
}

void DecideLocalSensor(std::uint16_t kind, std::uint16_t sensor) {
    Trap trap;
    Decision decision{static_cast<std::uint16_t>(GetLocalDomainId()), kind, nullptr, trap};
    DecideSensor(decision, sensor);
    SendReported(decision);
}

std::uint16_t GetPortFromEventText(const char* text) {
    constexpr std::uint16_t kNoPort = 65535;
    for (int field = 0; field < 4; ++field) {
        text = std::strchr(text, ';');
        if (text == nullptr) {
            return kNoPort;
        }
        ++text;
    }
    return static_cast<std::uint16_t>(ParseFirstNumber(text));
}

}  // namespace snmpmain
