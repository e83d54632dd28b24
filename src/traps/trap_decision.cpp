#include "src/traps/trap_decision.h"

#include <cstring>
#include <span>

#include "src/base/clock.h"
#include "src/link/reply_parser.h"
#include "src/link/switch_info.h"
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

// ---- traps, each of a sensor or port where it has one ----

void ReportUnit(Decision& decision, std::uint16_t) {
    ReportStatusChangeTrap(decision.domain, decision.trap);
    decision.reported = true;
}

void ReportSensor(Decision& decision, std::uint16_t sensor) {
    ReportSensorChangeTrap(decision.domain, sensor, decision.trap);
    decision.reported = true;
}

void ReportPort(Decision& decision, std::uint16_t port) {
    ReportPortChangeTrap(decision.domain, port, decision.trap);
    decision.reported = true;
}

void ReportLinkState(Decision& decision, std::uint16_t port) {
    decision.reported |= ReportLinkStateChangeTrap(decision.domain, port, decision.trap) == 0;
}

void ReportPortHwState(Decision& decision, std::uint16_t port) {
    ReportPortHwStateEventTrap(decision.domain, decision.text, port, decision.trap);
    decision.reported = true;
}

void ReportEvent(Decision& decision, std::uint16_t) {
    ReportEventTrap(decision.domain, decision.text, decision.trap);
    decision.reported = true;
}

void ReportUnitDeleted(Decision& decision, const char* wwn) {
    ReportFabricChangeTrap(decision.domain, wwn, decision.trap);
    decision.reported = true;
}

// ---- notifications ----

void DecidePort(Decision& decision) {
    const std::uint16_t port = GetPortFromEventText(decision.text);
    if (!decision.IsLocal()) {
        ReportPort(decision, port);
        return;
    }
    if (CheckPortStatusChange(port) != 0) {
        SendPortStatusEvent(decision.kind, port);
        ReportPortChangeTrap(decision.domain, port, decision.trap);
        SendTrapToSinks(decision.trap, decision.Severity());
    }
    if (CheckPortLinkStateChange(port) != 0) {
        SendPortLinkStateEvent(decision.kind, port);
        ReportLinkState(decision, port);
    }
}

void DecideUnit(Decision& decision) {
    if (decision.IsLocal()) {
        if (CheckUnitStatusChange() == 0) {
            return;
        }
        SendUnitStatusEvent(decision.kind);
    }
    ReportUnit(decision, 0);
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
    ReportSensor(decision, sensor);
}

void DecideEvent(Decision& decision) {
    CutLastCharacter(decision.text);
    SendEventChangeEvent(decision.kind, decision.text);
    ReportEvent(decision, 0);
}

void DecideGenericEvent(Decision& decision) {
    if (const char* event = std::strstr(decision.text, kPortHwStateEvent); event != nullptr) {
        ReportPortHwState(decision, static_cast<std::uint16_t>(ParseFirstNumber(event)));
    }
}

// ---- private events of other agents ----

struct PrivateEvent {
    const char* name;
    std::size_t numbers;  // its fields: kind, domain and perhaps a sensor or port
    bool hasText;
    void (*report)(Decision& decision, std::uint16_t part);
};

// In the order of the tests; one text may match several.
constexpr PrivateEvent kPrivateEvents[] = {
    {kUnitStatusEvent, 2, false, ReportUnit},
    {kSensorStateEvent, 3, false, ReportSensor},
    {kPortStatusEvent, 3, false, ReportPort},
    {kPortLinkStateEvent, 3, false, ReportLinkState},
    {kPortHwStateEvent, 3, true, ReportPortHwState},
    {kEventChangeEvent, 2, true, ReportEvent},
};

// Takes over kind and domain of the event. Returns 0, or -1 when a field is missing.
int TakePrivateEvent(const PrivateEvent& event, Decision& decision) {
    std::uint16_t fields[] = {decision.kind, decision.domain, 0};
    const auto numbers = std::span(fields).first(event.numbers);
    const int result = event.hasText ? ExtractNumbersAndText(decision.text, numbers)
                                     : ExtractNumbers(decision.text, numbers);
    decision.kind = fields[0];
    decision.domain = fields[1];
    if (result == 0) {
        event.report(decision, fields[2]);
    }
    return result;
}

// The search for the domain starts within the field of the kind, and so meets the same number.
void TakeUnitDeleted(Decision& decision) {
    if (const char* field = std::strchr(decision.text, '['); field != nullptr) {
        decision.kind = static_cast<std::uint16_t>(ParseFirstNumber(field));
        decision.domain = decision.kind;
        ReportUnitDeleted(decision, nullptr);
    }
}

void DecidePrivateEvent(Decision& decision) {
    for (const PrivateEvent& event : kPrivateEvents) {
        if (std::strstr(decision.text, event.name) != nullptr &&
            TakePrivateEvent(event, decision) != 0) {
            return;
        }
    }
    if (std::strstr(decision.text, kUnitDeletedEvent) != nullptr) {
        TakeUnitDeleted(decision);
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
            ReportUnitDeleted(decision, decision.text);
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
