#include "src/traps/local_state.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "src/base/main_thread.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/switch_info.h"
#include "src/snmptables/part_status.h"
#include "src/snmptables/unit_status.h"

namespace snmpmain {
namespace {

constexpr std::uint32_t kLocal = 0;  // as a domain id
constexpr std::size_t kMostInbandText = 7;

int AskUnitStatus(std::uint32_t, std::uint32_t& value) {
    std::uint16_t status = 0;
    const int result = ReadUnitStatus(GetLocalDomainId(), status);
    value = status;
    return result;
}

int AskUnitState(std::uint32_t, std::uint32_t& value) {
    std::uint16_t state = 0;
    const int result = ReadUnitState(GetLocalDomainId(), state);
    value = state;
    return result;
}

int AskSensorStatus(std::uint32_t sensor, std::uint32_t& status) {
    SensorRef part{};
    return GetSensorFromIndex(kLocal, sensor, part) != 0 ? -1
                                                         : ReadSensorStatus(kLocal, part, status);
}

template <int (*Read)(std::uint32_t, std::uint32_t, std::uint32_t&)>
int AskPort(std::uint32_t port, std::uint32_t& value) {
    return Read(kLocal, port, value);
}

// A state of the unit, or of each of its sensors or ports.
struct State {
    const char* name;
    std::uint16_t unavailable;  // what it counts as without an answer
    int (*ask)(std::uint32_t number, std::uint32_t& value);
    bool decides = true;  // whether a difference is a change worth a report

    std::vector<std::uint16_t> kept{};  // by sensor or port
    std::uint16_t present = 0;          // of the one asked last
    // The one whose present state the sweep has read.
    std::optional<std::uint32_t> compared{};
};

struct LocalStateTable {
    State states[7] = {{"unit status", 1, AskUnitStatus},
                       {"unit state", 1, AskUnitState},
                       {"sensor status", 1, AskSensorStatus},
                       {"port state", 1, AskPort<ReadStateOfPort>},
                       {"port admin status", 2, AskPort<ReadPortAdminStatus>, false},
                       {"port oper status", 1, AskPort<ReadPortOperStatus>},
                       {"port HW state", 2, AskPort<ReadHwStateOfPort>}};

    std::string inbandEnable, presentInband;
    bool isInbandCompared = false;
};

LocalStateTable table;
std::uint32_t keptChanges = 0;  // of the table, since the start
bool takesCompared = false;     // in place of another query

// The sweep is reading the unit's status.
struct UnitComparison {
    UnitStatusReading reading;
    std::uint32_t changesBefore;
};

std::optional<UnitComparison> unitComparison;

// Those that are asked, compared and kept together.
struct Group {
    std::size_t first;
    std::size_t count;
};
constexpr Group kUnitStates{0, 2};
constexpr Group kSensorStates{2, 1};
constexpr Group kPortStates{3, 4};
constexpr Group kPortState{3, 1};
constexpr Group kPortLinkStates{4, 2};
constexpr Group kPortHwState{6, 1};

std::span<State> StatesOf(LocalStateTable& owner, Group group) {
    return std::span(owner.states).subspan(group.first, group.count);
}

std::size_t KeptIn(Group group) {
    return table.states[group.first].kept.size();
}

// ---- checks ----

void AskPresent(State& state, std::uint32_t number) {
    if (takesCompared && state.compared == number) {
        return;
    }
    state.compared.reset();
    std::uint32_t value = 0;
    if (state.ask(number, value) != 0) {
        TraceLog(kSevere, "Error retrieving current %s", state.name);
        value = state.unavailable;
    }
    state.present = static_cast<std::uint16_t>(value);
}

bool Differs(std::span<const State> states, std::uint32_t number) {
    return std::ranges::any_of(states, [number](const State& state) {
        return state.decides && state.present != state.kept[number];
    });
}

int Unchanged() {
    TraceLog(kTrace, "No variable change. Ignoring notification message");
    return 0;
}

// `held` is how many the switch and the table have; any beyond has changed whenever one asks.
int Check(Group group, std::uint32_t number, std::uint32_t held) {
    AssertMainThread();
    const std::span<State> states = StatesOf(table, group);
    if (number >= held) {
        return 1;
    }
    for (State& state : states) {
        AskPresent(state, number);
    }
    if (!Differs(states, number)) {
        return Unchanged();
    }
    for (State& state : states) {
        state.kept[number] = state.present;
    }
    ++keptChanges;
    return 1;
}

int AskInbandEnable(std::string& text) {
    ReplyText reply;
    if (SwitchMgmtQuery(kLocal, "Get.Config.Switch.InbandEnable", reply, kString) != 0) {
        return -1;
    }
    text = std::string(reply.data()).substr(0, kMostInbandText);
    return 0;
}

void AskPresentInband() {
    if (takesCompared && table.isInbandCompared) {
        return;
    }
    if (AskInbandEnable(table.presentInband) != 0) {
        TraceLog(kSevere, "Error retrieving current port HW state");
        table.presentInband = "Unknown";
    }
}

// ---- comparing ----

void ForgetCompared() {
    AssertMainThread();
    for (State& state : table.states) {
        state.compared.reset();
    }
    table.isInbandCompared = false;
    unitComparison.reset();
}

Compared ResultOf(bool differs) {
    return differs ? Compared::kDiffers : Compared::kSame;
}

Compared NoteCompared(std::span<State> states, std::uint32_t number) {
    for (State& state : states) {
        state.compared = number;
    }
    return ResultOf(Differs(states, number));
}

Compared Compare(Group group, std::uint32_t number, std::uint32_t held) {
    ForgetCompared();
    const std::span<State> states = StatesOf(table, group);
    if (number >= held) {
        return Compared::kUnavailable;
    }
    for (State& state : states) {
        std::uint32_t value = 0;
        if (state.ask(number, value) != 0) {
            return Compared::kUnavailable;
        }
        state.present = static_cast<std::uint16_t>(value);
    }
    return NoteCompared(states, number);
}

// The status has been read; the state completes it.
Compared CompareUnitStatus() {
    std::uint32_t state = 0;
    if (AskUnitState(0, state) != 0 || unitComparison->changesBefore != keptChanges) {
        return Compared::kUnavailable;
    }
    const std::span<State> states = StatesOf(table, kUnitStates);
    states[0].present = unitComparison->reading.Status();
    states[1].present = static_cast<std::uint16_t>(state);
    return NoteCompared(states, 0);
}

// ---- the first filling ----

int Allocate(std::span<State> states, std::size_t count) {
    try {
        for (State& state : states) {
            state.kept.resize(count);
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

void Fill(std::span<State> states) {
    for (std::uint32_t number = 0; number < states.front().kept.size(); ++number) {
        for (State& state : states) {
            AskPresent(state, number);
            state.kept[number] = state.present;
        }
    }
}

}  // namespace

int InitLocalStateTable() {
    AssertMainThread();
    std::fputs("SNMP:Initializing local state table\n", stderr);
    LocalStateTable fresh;
    const std::span<State> unit = StatesOf(fresh, kUnitStates);
    const std::span<State> sensors = StatesOf(fresh, kSensorStates);
    const std::span<State> ports = StatesOf(fresh, kPortStates);
    const std::uint32_t portCount = std::min(AskNumber(kLocal, Fact::kMaxPorts), kMaxPortsAsked);
    if (Allocate(unit, 1) != 0 || Allocate(sensors, GetSensorCount(kLocal)) != 0 ||
        Allocate(ports, portCount) != 0) {
        return -1;
    }
    Fill(unit);
    AskPresentInband();
    fresh.inbandEnable = table.presentInband;
    Fill(sensors);
    Fill(ports);
    table = std::move(fresh);
    std::fputs("SNMP:Local state table initialized\n", stderr);
    return 0;
}

int CheckUnitStatusChange() {
    TraceLog(kTrace, "Checking for a UnitStatusChangeTrap...");
    return Check(kUnitStates, 0, 1);
}

int CheckSensorStatusChange(std::uint16_t sensor) {
    TraceLog(kTrace, "Checking for a SensorStatusChangeTrap for sensor %d...", sensor);
    return Check(kSensorStates, sensor, CountKeptSensors());
}

int CheckPortStatusChange(std::uint16_t port) {
    TraceLog(kTrace, "Checking for a portStatusChangeTrap...");
    return Check(kPortState, port, CountKeptPorts());
}

int CheckPortLinkStateChange(std::uint16_t port) {
    TraceLog(kTrace, "Checking for a portLinkStateChangeTrap...");
    return Check(kPortLinkStates, port, CountKeptPorts());
}

int CheckPortHwStateChange(std::uint16_t port) {
    TraceLog(kTrace, "Checking for a Port HW state change...");
    const State& state = StatesOf(table, kPortHwState).front();
    const bool isHeld = port < CountKeptPorts();
    const std::uint16_t before = isHeld ? state.kept[port] : std::uint16_t{0};
    const int changed = Check(kPortHwState, port, CountKeptPorts());
    if (isHeld && changed != 0) {
        TraceLog(kTrace, "Port HW state toggled from %d to %d", before, state.present);
    }
    return changed;
}

int CheckInbandEnableChange() {
    AssertMainThread();
    TraceLog(kTrace, "Checking for an InbandEnable state change...");
    AskPresentInband();
    if (table.presentInband == table.inbandEnable) {
        return Unchanged();
    }
    table.inbandEnable = table.presentInband;
    ++keptChanges;
    return 1;
}

Compared CompareSensor(std::uint16_t sensor, std::uint16_t& status) {
    const Compared result = Compare(kSensorStates, sensor, CountKeptSensors());
    status = StatesOf(table, kSensorStates).front().present;
    return result;
}

Compared ComparePort(std::uint16_t port) {
    return Compare(kPortStates, port, CountKeptPorts());
}

Compared CompareInbandEnable() {
    ForgetCompared();
    if (AskInbandEnable(table.presentInband) != 0) {
        return Compared::kUnavailable;
    }
    table.isInbandCompared = true;
    return ResultOf(table.presentInband != table.inbandEnable);
}

void BeginComparingUnit() {
    ForgetCompared();
    unitComparison.emplace(UnitStatusReading(GetLocalDomainId(), UnitStatusReading::Memo::kIgnored),
                           keptChanges);
}

Progress CompareUnit(Compared& result) {
    result = Compared::kUnavailable;
    std::uint32_t reset = 0;
    if (!unitComparison || GetUnitReset(kLocal, reset) != 0 || reset != 0) {
        return Progress::kDone;  // what a reset makes of it is reported by itself
    }
    const Progress progress = unitComparison->reading.Step();
    if (progress == Progress::kDone) {
        result = CompareUnitStatus();
    }
    return progress;
}

ComparedStates::ComparedStates() {
    takesCompared = true;
}

ComparedStates::~ComparedStates() {
    takesCompared = false;
}

std::uint16_t CountKeptSensors() {
    return std::min(GetSensorCount(kLocal), static_cast<std::uint16_t>(KeptIn(kSensorStates)));
}

std::uint16_t CountKeptPorts() {
    return static_cast<std::uint16_t>(
        std::min<std::size_t>(AskNumber(kLocal, Fact::kMaxPorts), KeptIn(kPortStates)));
}

}  // namespace snmpmain
