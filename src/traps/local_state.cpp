#include "src/traps/local_state.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <vector>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/switch_info.h"
#include "src/snmptables/part_status.h"
#include "src/snmptables/unit_status.h"

namespace snmpmain {
namespace {

constexpr std::uint32_t kLocal = 0;  // as a domain id

struct PortStates {
    std::uint16_t status;
    std::uint16_t state;
    std::uint16_t adminStatus;
    std::uint16_t operStatus;
    std::uint16_t hwState;
};

using InbandText = char[8];

struct LocalStateTable {
    std::uint16_t unitStatus = kUnitUnknown;
    std::uint16_t unitState = kUnitStateUnknown;
    InbandText inbandEnable = "";
    std::vector<std::uint16_t> sensors;
    std::vector<PortStates> ports;
};

LocalStateTable table;
std::uint32_t keptChanges = 0;  // of the table, since the start

// What the sweep has read last, of one part.
struct ComparedPart {
    bool isTaken = false;  // in place of another query
    std::optional<std::uint16_t> sensor, port;
    std::uint16_t sensorStatus = 0;
    PortStates states{};
    InbandText inbandEnable = "";
    std::optional<UnitStatusReading> unitReading;
    std::uint32_t changesBefore = 0;
    std::uint16_t unitStatus = 0, unitState = 0;
    bool isUnit = false, isInband = false;
};

ComparedPart compared;

bool IsTaken(const std::optional<std::uint16_t>& part, std::uint32_t number) {
    return compared.isTaken && part == number;
}

// ---- present states ----

// What a state counts as that cannot be had.
std::uint16_t Present(int result, std::uint32_t value, std::uint16_t otherwise, const char* what) {
    if (result == 0) {
        return static_cast<std::uint16_t>(value);
    }
    TraceLog(kSevere, "Error retrieving current %s", what);
    return otherwise;
}

std::uint16_t PresentUnitStatus() {
    if (compared.isTaken && compared.isUnit) {
        return compared.unitStatus;
    }
    std::uint16_t status = 0;
    const int result = ReadUnitStatus(GetLocalDomainId(), status);
    return Present(result, status, 1, "unit status");
}

std::uint16_t PresentUnitState() {
    if (compared.isTaken && compared.isUnit) {
        return compared.unitState;
    }
    std::uint16_t state = 0;
    const int result = ReadUnitState(GetLocalDomainId(), state);
    return Present(result, state, 1, "unit state");
}

int AskSensorStatus(std::uint32_t sensor, std::uint32_t& status) {
    SensorRef part{};
    return GetSensorFromIndex(kLocal, sensor, part) != 0 ? -1
                                                         : ReadSensorStatus(kLocal, part, status);
}

std::uint16_t PresentSensorStatus(std::uint32_t sensor) {
    if (IsTaken(compared.sensor, sensor)) {
        return compared.sensorStatus;
    }
    std::uint32_t status = 0;
    const int result = AskSensorStatus(sensor, status);
    return Present(result, status, 1, "sensor status");
}

std::uint16_t PresentPortState(std::uint32_t port) {
    if (IsTaken(compared.port, port)) {
        return compared.states.state;
    }
    std::uint32_t state = 0;
    const int result = ReadStateOfPort(kLocal, port, state);
    return Present(result, state, 1, "port state");
}

std::uint16_t PresentPortAdminStatus(std::uint32_t port) {
    if (IsTaken(compared.port, port)) {
        return compared.states.adminStatus;
    }
    std::uint32_t status = 0;
    const int result = ReadPortAdminStatus(kLocal, port, status);
    return Present(result, status, 2, "port admin status");
}

std::uint16_t PresentPortOperStatus(std::uint32_t port) {
    if (IsTaken(compared.port, port)) {
        return compared.states.operStatus;
    }
    std::uint32_t status = 0;
    const int result = ReadPortOperStatus(kLocal, port, status);
    return Present(result, status, 1, "port oper status");
}

std::uint16_t PresentPortHwState(std::uint32_t port) {
    if (IsTaken(compared.port, port)) {
        return compared.states.hwState;
    }
    std::uint32_t state = 0;
    const int result = ReadHwStateOfPort(kLocal, port, state);
    return Present(result, state, 2, "port HW state");
}

void ReadInbandEnable(InbandText& text) {
    if (compared.isTaken && compared.isInband) {
        CopyText(text, sizeof(text), compared.inbandEnable);
        return;
    }
    ReplyText reply;
    if (SwitchMgmtQuery(kLocal, "Get.Config.Switch.InbandEnable", reply, kString) != 0) {
        TraceLog(kSevere, "Error retrieving current port HW state");
        CopyText(reply.data(), reply.size(), "Unknown");
    }
    CopyText(text, sizeof(text), reply.data());
}

// ---- the table ----

// Null for a sensor or port that the switch does not have now or did not have at start-up.
std::uint16_t* SensorAt(std::uint16_t sensor) {
    return sensor < GetSensorCount(kLocal) && sensor < table.sensors.size() ? &table.sensors[sensor]
                                                                            : nullptr;
}

PortStates* PortAt(std::uint16_t port) {
    return port < AskNumber(kLocal, Fact::kMaxPorts) && port < table.ports.size()
               ? &table.ports[port]
               : nullptr;
}

int Unchanged() {
    TraceLog(kTrace, "No variable change. Ignoring notification message");
    return 0;
}

int Changed() {
    ++keptChanges;
    return 1;
}

Compared ResultOf(bool differs) {
    return differs ? Compared::kDiffers : Compared::kSame;
}

// All states of a port, or -1 when one is unavailable.
int AskPort(std::uint16_t port, PortStates& states) {
    std::uint32_t state = 0, admin = 0, oper = 0, hw = 0;
    if (ReadStateOfPort(kLocal, port, state) != 0 ||
        ReadPortAdminStatus(kLocal, port, admin) != 0 ||
        ReadPortOperStatus(kLocal, port, oper) != 0 || ReadHwStateOfPort(kLocal, port, hw) != 0) {
        return -1;
    }
    states = {kPortStatus, static_cast<std::uint16_t>(state), static_cast<std::uint16_t>(admin),
              static_cast<std::uint16_t>(oper), static_cast<std::uint16_t>(hw)};
    return 0;
}

// The status has been read; the state completes it.
Compared CompareUnitStatus() {
    std::uint16_t state = 0;
    if (ReadUnitState(GetLocalDomainId(), state) != 0 || compared.changesBefore != keptChanges) {
        return Compared::kUnavailable;
    }
    compared.unitStatus = compared.unitReading->Status();
    compared.unitState = state;
    compared.isUnit = true;
    return ResultOf(compared.unitStatus != table.unitStatus || state != table.unitState);
}

int Allocate(LocalStateTable& fresh) {
    try {
        fresh.sensors.resize(GetSensorCount(kLocal));
        fresh.ports.resize(std::min(AskNumber(kLocal, Fact::kMaxPorts), kMaxPortsAsked));
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

}  // namespace

int InitLocalStateTable() {
    std::fputs("SNMP:Initializing local state table\n", stderr);
    LocalStateTable fresh;
    if (Allocate(fresh) != 0) {
        return -1;
    }
    fresh.unitStatus = PresentUnitStatus();
    fresh.unitState = PresentUnitState();
    ReadInbandEnable(fresh.inbandEnable);
    for (std::uint32_t sensor = 0; sensor < fresh.sensors.size(); ++sensor) {
        fresh.sensors[sensor] = PresentSensorStatus(sensor);
    }
    for (std::uint32_t port = 0; port < fresh.ports.size(); ++port) {
        PortStates& states = fresh.ports[port];
        states.status = kPortStatus;
        states.state = PresentPortState(port);
        states.adminStatus = PresentPortAdminStatus(port);
        states.operStatus = PresentPortOperStatus(port);
        states.hwState = PresentPortHwState(port);
    }
    table = std::move(fresh);
    std::fputs("SNMP:Local state table initialized\n", stderr);
    return 0;
}

int CheckUnitStatusChange() {
    TraceLog(kTrace, "Checking for a UnitStatusChangeTrap...");
    const std::uint16_t status = PresentUnitStatus();
    const std::uint16_t state = PresentUnitState();
    if (status == table.unitStatus && state == table.unitState) {
        return Unchanged();
    }
    table.unitState = state;
    table.unitStatus = status;
    return Changed();
}

int CheckSensorStatusChange(std::uint16_t sensor) {
    TraceLog(kTrace, "Checking for a SensorStatusChangeTrap for sensor %d...", sensor);
    std::uint16_t* const kept = SensorAt(sensor);
    if (kept == nullptr) {
        return 1;
    }
    const std::uint16_t status = PresentSensorStatus(sensor);
    if (status == *kept) {
        return Unchanged();
    }
    *kept = status;
    return Changed();
}

int CheckPortStatusChange(std::uint16_t port) {
    TraceLog(kTrace, "Checking for a portStatusChangeTrap...");
    PortStates* const kept = PortAt(port);
    if (kept == nullptr) {
        return 1;
    }
    const std::uint16_t state = PresentPortState(port);
    if (state == kept->state && kept->status == kPortStatus) {
        return Unchanged();
    }
    kept->state = state;
    kept->status = kPortStatus;
    return Changed();
}

int CheckPortLinkStateChange(std::uint16_t port) {
    TraceLog(kTrace, "Checking for a portLinkStateChangeTrap...");
    PortStates* const kept = PortAt(port);
    if (kept == nullptr) {
        return 1;
    }
    const std::uint16_t admin = PresentPortAdminStatus(port);
    const std::uint16_t oper = PresentPortOperStatus(port);
    if (oper == kept->operStatus) {
        return Unchanged();
    }
    kept->adminStatus = admin;
    kept->operStatus = oper;
    return Changed();
}

int CheckPortHwStateChange(std::uint16_t port) {
    TraceLog(kTrace, "Checking for a Port HW state change...");
    PortStates* const kept = PortAt(port);
    if (kept == nullptr) {
        return 1;
    }
    const std::uint16_t state = PresentPortHwState(port);
    if (state == kept->hwState) {
        return Unchanged();
    }
    TraceLog(kTrace, "Port HW state toggled from %d to %d", kept->hwState, state);
    kept->hwState = state;
    return Changed();
}

int CheckInbandEnableChange() {
    TraceLog(kTrace, "Checking for an InbandEnable state change...");
    InbandText text;
    ReadInbandEnable(text);
    if (std::strcmp(text, table.inbandEnable) == 0) {
        return Unchanged();
    }
    CopyText(table.inbandEnable, sizeof(table.inbandEnable), text);
    return Changed();
}

Compared CompareSensor(std::uint16_t sensor, std::uint16_t& status) {
    compared = {};
    std::uint16_t* const kept = SensorAt(sensor);
    std::uint32_t present = 0;
    if (kept == nullptr || AskSensorStatus(sensor, present) != 0) {
        return Compared::kUnavailable;
    }
    compared.sensor = sensor;
    compared.sensorStatus = status = static_cast<std::uint16_t>(present);
    return ResultOf(compared.sensorStatus != *kept);
}

Compared ComparePort(std::uint16_t port) {
    compared = {};
    PortStates* const kept = PortAt(port);
    PortStates& states = compared.states;
    if (kept == nullptr || AskPort(port, states) != 0) {
        return Compared::kUnavailable;
    }
    compared.port = port;
    // The administrative status alone is no change worth a report.
    return ResultOf(states.state != kept->state || states.operStatus != kept->operStatus ||
                    states.hwState != kept->hwState);
}

Compared CompareInbandEnable() {
    compared = {};
    ReplyText reply;
    if (SwitchMgmtQuery(kLocal, "Get.Config.Switch.InbandEnable", reply, kString) != 0) {
        return Compared::kUnavailable;
    }
    compared.isInband = true;
    CopyText(compared.inbandEnable, sizeof(compared.inbandEnable), reply.data());
    return ResultOf(std::strcmp(compared.inbandEnable, table.inbandEnable) != 0);
}

void BeginComparingUnit() {
    compared = {};
    compared.changesBefore = keptChanges;
    compared.unitReading.emplace(GetLocalDomainId(), UnitStatusReading::Memo::kIgnored);
}

Progress CompareUnit(Compared& result) {
    result = Compared::kUnavailable;
    std::uint32_t reset = 0;
    if (!compared.unitReading || GetUnitReset(kLocal, reset) != 0 || reset != 0) {
        return Progress::kDone;  // what a reset makes of it is reported by itself
    }
    const Progress progress = compared.unitReading->Step();
    if (progress == Progress::kDone) {
        result = CompareUnitStatus();
    }
    return progress;
}

ComparedStates::ComparedStates() {
    compared.isTaken = true;
}

ComparedStates::~ComparedStates() {
    compared.isTaken = false;
}

std::uint16_t CountKeptSensors() {
    return std::min(GetSensorCount(kLocal), static_cast<std::uint16_t>(table.sensors.size()));
}

std::uint16_t CountKeptPorts() {
    return static_cast<std::uint16_t>(
        std::min<std::size_t>(AskNumber(kLocal, Fact::kMaxPorts), table.ports.size()));
}

}  // namespace snmpmain
