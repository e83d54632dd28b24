// One reading of a fabric: everything that an agent tells of its switches, joined to switches,
// ports and sensors.
#include "exporter/fabric.h"

namespace fcexporter {
namespace {

// A switch that is gone for good is forgotten after a day, and earlier where too many are.
constexpr double kRememberSeconds = 86400;
constexpr std::size_t kMaxSwitches = 512;
constexpr std::uint32_t kMaxPorts = 1024;  // of a switch
constexpr std::size_t kEventsOfSwitch = 10;
constexpr std::size_t kMaxAttached = 100;  // characters, after which no name is added
constexpr std::uint64_t kRemoteIsSwitch = 4;

struct Tables {
    Rows switches, sensors, ports, links, devices;
    Rows modules{false, {}}, logins{false, {}};
};

int ReadTables(Session& session, Tables& tables) {
    const std::pair<std::span<const Column>, Rows&> all[] = {
        {kSwitchColumns, tables.switches}, {kSensorColumns, tables.sensors},
        {kPortColumns, tables.ports},      {kLinkColumns, tables.links},
        {kDeviceColumns, tables.devices},  {kModuleColumns, tables.modules},
        {kLoginColumns, tables.logins},
    };
    for (const auto& [columns, rows] : all) {
        if (ReadRows(session, columns, rows) != 0) {
            return -1;
        }
    }
    return 0;
}

Switch* FindSwitch(Reading& reading, std::uint64_t wwn) {
    const auto found = reading.switches.find(wwn);
    return found != reading.switches.end() ? &found->second : nullptr;
}

// The number is the switch's own, from 0.
Port* FindPort(Reading& reading, std::uint64_t wwn, std::uint64_t number) {
    Switch* unit = FindSwitch(reading, wwn);
    if (unit == nullptr || number >= kMaxPorts) {
        return nullptr;
    }
    const auto found = unit->ports.find(static_cast<std::uint32_t>(number));
    return found != unit->ports.end() ? &found->second : nullptr;
}

// A loop has up to 126 devices: the first ones stand for all.
void Attach(const std::string& name, Port& port) {
    if (port.attached.find(name) == std::string::npos && port.attached.size() <= kMaxAttached) {
        port.attached += (port.attached.empty() ? "" : ", ") + name;
    }
}

// The name of a switch at the other end, which may be silent by now.
std::string RemoteName(std::uint64_t wwn, const Reading& before, const Reading& reading) {
    const auto known = before.switches.find(wwn);
    const auto unit = reading.switches.find(wwn);
    if (unit != reading.switches.end() && unit->second.answers) {
        return NameOf(wwn, unit->second);
    }
    return known != before.switches.end() ? NameOf(wwn, known->second) : WwnText(wwn);
}

void JoinLinks(const Rows& links, const Reading& before, Reading& reading) {
    for (const auto& [key, row] : links.all) {
        const std::uint64_t* number = NumberOf(row, kLinkPort);
        Port* port = number != nullptr ? FindPort(reading, key.unit, *number) : nullptr;
        if (port == nullptr || key.rest.size() != 1) {
            continue;
        }
        const std::uint64_t node = WwnOf(TextOf(row, kLinkRemoteNode));
        port->links.push_back({key.rest[0], node, NumberOr0(row, kLinkRemotePort)});
        if (NumberOr0(row, kLinkRemoteType) == kRemoteIsSwitch) {
            Attach(RemoteName(node, before, reading), *port);
        }
    }
}

// The name that a device registered, or its port's WWN, with which the rest of the index begins.
std::string DeviceName(const Key& key, const Row& row) {
    for (const std::size_t column : {kDevicePortName, kDeviceNodeName}) {
        if (const std::string name = TextOf(row, column); !name.empty()) {
            return name;
        }
    }
    return WwnText(WwnOf(std::string(key.rest.begin(), key.rest.end())));
}

void JoinDevices(const Rows& devices, Reading& reading) {
    for (const auto& [key, row] : devices.all) {
        if (Switch* unit = FindSwitch(reading, key.unit)) {
            unit->devices++;
        }
        const std::uint64_t* number = NumberOf(row, kDevicePort);
        Port* port = number != nullptr ? FindPort(reading, key.unit, *number) : nullptr;
        if (port != nullptr) {
            Attach(DeviceName(key, row), *port);
        }
    }
}

// A login's index is the module, the port and a number, all from 1.
void JoinLogins(const Rows& modules, const Rows& logins, Reading& reading) {
    for (const auto& [key, row] : logins.all) {
        const auto module =
            key.rest.size() == 3 ? modules.all.find({0, {key.rest[0]}}) : modules.all.end();
        if (module == modules.all.end()) {
            continue;
        }
        if (Port* port = FindPort(reading, WwnOf(TextOf(module->second, 0)), key.rest[1] - 1)) {
            port->logins++;
        }
    }
}

void Join(Tables& tables, const Reading& before, Reading& reading) {
    for (auto& [key, row] : tables.switches.all) {
        Switch& unit = reading.switches[key.unit];
        unit.answers = NumberOf(row, kSwitchState) != nullptr;
        unit.silentSince = reading.started;
        unit.values = std::move(row);
    }
    for (auto& [key, row] : tables.sensors.all) {
        Switch* unit = FindSwitch(reading, key.unit);
        if (unit != nullptr && key.rest.size() == 1) {
            unit->sensors[key.rest[0]] = std::move(row);
        }
    }
    for (auto& [key, row] : tables.ports.all) {
        Switch* unit = FindSwitch(reading, key.unit);
        if (unit != nullptr && key.rest.size() == 1 && key.rest[0] - 1 < kMaxPorts) {
            unit->ports[key.rest[0] - 1].values = std::move(row);
        }
    }
    JoinLinks(tables.links, before, reading);
    JoinDevices(tables.devices, reading);
    JoinLogins(tables.modules, tables.logins, reading);
}

// Not known when the counter was cleared.
float Rate(const Row& now, const Row& before, std::size_t column, double seconds) {
    const std::uint64_t* to = NumberOf(now, column);
    const std::uint64_t* from = NumberOf(before, column);
    return to != nullptr && from != nullptr && *to >= *from
               ? static_cast<float>(static_cast<double>(*to - *from) / seconds)
               : -1;
}

void TakeOverPorts(const Switch& before, double seconds, Switch& unit) {
    for (auto& [number, port] : unit.ports) {
        const auto known = before.ports.find(number);
        if (known == before.ports.end()) {
            continue;
        }
        // A port that goes down keeps the label that its metrics have had.
        if (port.attached.empty()) {
            port.attached = known->second.attached;
        }
        const Row& old = known->second.values;
        port.rates = {Rate(port.values, old, kPortSent, seconds),
                      Rate(port.values, old, kPortReceived, seconds)};
    }
}

void TakeOver(const Reading& before, Reading& reading) {
    for (const auto& [wwn, known] : before.switches) {
        Switch* unit = FindSwitch(reading, wwn);
        if (unit != nullptr && unit->answers) {
            TakeOverPorts(known, reading.started - before.started, *unit);
            continue;
        }
        // What is still known of a switch that does not answer any more.
        const double since = known.answers ? reading.started : known.silentSince;
        if (unit != nullptr || (reading.started - since < kRememberSeconds &&
                                reading.switches.size() < kMaxSwitches)) {
            unit = &(reading.switches[wwn] = known);
            unit->answers = false;
            unit->silentSince = since;
        }
    }
}

// Asks only those switches for events that have a new one.
int ReadEvents(Session& session, const Reading& before, Reading& reading) {
    for (auto& [wwn, unit] : reading.switches) {
        const std::uint64_t newest = NumberOr0(unit.values, kSwitchNewestEvent);
        if (!unit.answers || newest == 0) {
            continue;
        }
        const auto known = before.switches.find(wwn);
        if (known != before.switches.end() &&
            NumberOr0(known->second.values, kSwitchNewestEvent) == newest) {
            unit.events = known->second.events;
            continue;
        }
        Rows rows;
        const auto after = static_cast<std::uint32_t>(newest - std::min(newest, kEventsOfSwitch));
        if (ReadRowsAfter(session, kEventColumns, {wwn, {after}}, kEventsOfSwitch, rows) != 0) {
            return -1;
        }
        for (const auto& [key, row] : rows.all) {
            unit.events.push_back({TextOf(row, kEventTime), TextOf(row, kEventText)});
        }
    }
    return 0;
}

}  // namespace

int ReadFabric(Session& session, const Reading& before, Reading& reading) {
    reading.started = Now();
    Tables tables;
    if (session.Open() != 0 || ReadTables(session, tables) != 0) {
        return -1;
    }
    Join(tables, before, reading);
    if (ReadEvents(session, before, reading) != 0) {
        return -1;
    }
    TakeOver(before, reading);
    reading.duration = Now() - reading.started;
    return 0;
}

}  // namespace fcexporter
