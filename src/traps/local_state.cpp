#include "src/traps/local_state.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
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
    std::uint16_t status = 0;
    const int result = ReadUnitStatus(GetLocalDomainId(), status);
    return Present(result, status, 1, "unit status");
}

std::uint16_t PresentUnitState() {
    std::uint16_t state = 0;
    const int result = ReadUnitState(GetLocalDomainId(), state);
    return Present(result, state, 1, "unit state");
}

std::uint16_t PresentSensorStatus(std::uint32_t sensor) {
    std::uint32_t status = 0;
    SensorRef part{};
    const int result =
        GetSensorFromIndex(kLocal, sensor, part) != 0 ? -1 : ReadSensorStatus(kLocal, part, status);
    return Present(result, status, 1, "sensor status");
}

std::uint16_t PresentPortState(std::uint32_t port) {
    std::uint32_t state = 0;
    const int result = ReadStateOfPort(kLocal, port, state);
    return Present(result, state, 1, "port state");
}

std::uint16_t PresentPortAdminStatus(std::uint32_t port) {
    std::uint32_t status = 0;
    const int result = ReadPortAdminStatus(kLocal, port, status);
    return Present(result, status, 2, "port admin status");
}

std::uint16_t PresentPortOperStatus(std::uint32_t port) {
    std::uint32_t status = 0;
    const int result = ReadPortOperStatus(kLocal, port, status);
    return Present(result, status, 1, "port oper status");
}

std::uint16_t PresentPortHwState(std::uint32_t port) {
    std::uint32_t state = 0;
    const int result = ReadHwStateOfPort(kLocal, port, state);
    return Present(result, state, 2, "port HW state");
}

void ReadInbandEnable(InbandText& text) {
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
    return port < GetMaxPorts(kLocal) && port < table.ports.size() ? &table.ports[port] : nullptr;
}

int Unchanged() {
    TraceLog(kTrace, "No variable change. Ignoring notification message");
    return 0;
}

int Allocate(LocalStateTable& fresh) {
    try {
        fresh.sensors.resize(GetSensorCount(kLocal));
        fresh.ports.resize(std::min(GetMaxPorts(kLocal), kMaxPortsAsked));
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
    return 1;
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
    return 1;
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
    return 1;
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
    return 1;
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
    return 1;
}

int CheckInbandEnableChange() {
    TraceLog(kTrace, "Checking for an InbandEnable state change...");
    InbandText text;
    ReadInbandEnable(text);
    if (std::strcmp(text, table.inbandEnable) == 0) {
        return Unchanged();
    }
    CopyText(table.inbandEnable, sizeof(table.inbandEnable), text);
    return 1;
}

}  // namespace snmpmain
