// The fabric that is built in, and fabrics of any size made by rule.
#include <cstdio>
#include <ctime>

#include "sim/fabric.h"

namespace sim {
namespace {

template <class... Arguments>
std::string Format(const char* format, Arguments... arguments) {
    char text[160];
    std::snprintf(text, sizeof text, format, arguments...);
    return text;
}

/// World-wide names are locally administered ones: 1000-0200-... for switches, and for their ports
/// the same with the port's number in front.
std::string SwitchWwn(unsigned number) {
    return Format("100002000000%04x", number);
}

std::string PortWwn(const Switch& unit, std::size_t port) {
    return Format("20%02x%s", static_cast<unsigned>(port), unit.wwn.substr(4).c_str());
}

std::string PortId(const Switch& unit, std::size_t port, unsigned place = 0) {
    return Format("%02x%02x%02x", unsigned{unit.domain}, static_cast<unsigned>(port), place);
}

/// Counters that differ between ports and between each other; the word counter of every fourth
/// port does not fit 32 bits.
void FillCounters(Port& port, unsigned seed) {
    std::uint64_t value = 7 + seed;
    for (const char* name : kCounterNames) {
        value = value * 3 % 99991 + seed;
        port.counters[name] = value;
    }
    if (seed % 4 == 0) {
        port.counters["TotalTxWords"] += std::uint64_t{1 + seed} << 32;
    }
}

void AddPort(Switch& unit, Port port) {
    const std::size_t index = unit.ports.size();
    port.wwn = PortWwn(unit, index);
    port.portId = PortId(unit, index);
    if (port.name.empty()) {
        port.name = Format("Port%zu", index);
    }
    FillCounters(port, unit.domain * 31u + static_cast<unsigned>(index));
    unit.ports.push_back(port);
}

/// A host or disk at the port: a link and a name-server entry. Devices at one port differ in their
/// place, 0 to 255.
void AttachDevice(Switch& unit, std::size_t port, const char* portType = "N", unsigned place = 0) {
    static constexpr const char* kClasses[] = {"2,3", "3", "2,3,F", "1,2,3"};
    static constexpr unsigned kProtocols[] = {0x100, 0x20, 0x12A};  // SCSI, IP, both and more
    const std::size_t count = unit.nameServer.size();
    NsEntry entry;
    entry.portId = PortId(unit, port, place);
    // The device names run against the port order, so that a sorted list differs from this one.
    const auto device = place << 8 | static_cast<unsigned>(0xFF - port);
    entry.portWwn = Format("21000200%04x%04x", unsigned{unit.domain}, device);
    entry.nodeWwn = Format("20000200%04x%04x", unsigned{unit.domain}, device);
    entry.portNumber = static_cast<std::uint32_t>(port);
    entry.classes = kClasses[count % std::size(kClasses)];
    entry.fc4Types = Format("%08X%056d", kProtocols[count % std::size(kProtocols)], 0);
    entry.portType = portType;
    entry.fabricPortName = unit.ports[port].wwn;
    entry.symPortName = Format("Adapter %u of domain %u", device, unsigned{unit.domain});
    entry.symNodeName = Format("Host %u", device);

    Link link;
    link.localNodeWwn = unit.wwn;
    link.localPort = static_cast<std::uint32_t>(port);
    link.localPortWwn = unit.ports[port].wwn;
    link.remoteNodeWwn = entry.nodeWwn;
    link.remotePortWwn = entry.portWwn;
    link.remoteUnitType = "HBA";
    link.remoteConnId = entry.portId;
    unit.nameServer.push_back(entry);
    unit.links.push_back(link);
}

/// One side of a link between two switches.
void ConnectOneWay(Switch& from, std::size_t fromPort, const Switch& to, std::size_t toPort) {
    Link link;
    link.localNodeWwn = from.wwn;
    link.localPort = static_cast<std::uint32_t>(fromPort);
    link.localPortWwn = from.ports[fromPort].wwn;
    link.remoteNodeWwn = to.wwn;
    link.remotePort = static_cast<std::uint32_t>(toPort);
    link.remotePortWwn = to.ports[toPort].wwn;
    link.remoteAgentAddress = to.ipAddress;
    link.remoteAgentPort = 161;
    link.remoteUnitType = "Switch";
    link.remoteConnId = Format("fffc%02x", unsigned{to.domain});
    from.links.push_back(link);
}

void Connect(Switch& a, std::size_t aPort, Switch& b, std::size_t bPort) {
    ConnectOneWay(a, aPort, b, bPort);
    ConnectOneWay(b, bPort, a, aPort);
}

/// One entry every three days and some hours of 2026.
void FillLog(Switch& unit, std::uint32_t firstId, std::uint32_t lastId) {
    static constexpr struct {
        char severity;
        const char* text;
    } kEvents[] = {{'I', "Link state has changed"},
                   {'W', "Decode errors above the threshold"},
                   {'I', "Device logged in"},
                   {'A', "Loss of synchronization"}};
    constexpr std::time_t kNewYear = 1'767'225'600, kInterval = 3 * 86'400 + 26'417;
    for (std::uint32_t id = firstId; id <= lastId; id++) {
        const std::time_t seconds = kNewYear + id * kInterval;
        std::tm utc{};
        gmtime_r(&seconds, &utc);
        char time[40];
        (void)std::strftime(time, sizeof time, "%a %b %e %H:%M:%S %Y", &utc);
        const auto& event = kEvents[id % std::size(kEvents)];
        unit.log.push_back(
            {id, time,
             Format("[%c][8400.%04u][User Port: %u][%s]", event.severity, id, id % 8, event.text)});
    }
}

/// Ports as one meets them: running and idle, of every type, speed and kind of transceiver.
const Port kPortKinds[] = {
    // running    oper           admin          gbic      speed      sync            diag      topo
    {"F", "Online", "Online", "SL", "2Gb/s", "SyncAcquired", "Passed", "F"},
    {"FL", "Online", "Online", "LL", "1Gb/s", "SyncAcquired", "Passed", "FL"},
    {"E", "Online", "Online", "LC", "4Gb/s", "SyncAcquired", "Passed", "E"},
    {"E", "Online", "Online", "SN", "10Gb/s", "SyncAcquired", "Passed", "E"},
    {"F", "Online", "Online", "EL", "Auto", "SyncAcquired", "Passed", "F"},
    {"G", "Offline", "Online", "SL-LC", "2Gb/s", "SyncLost", "Passed", "Unknown"},
    {"GL", "Offline", "Offline", "NotInstalled", "Auto", "SyncLost", "Passed", "Unknown"},
    {"Unknown", "Diagnostics", "Diagnostics", "Other", "2Gb/s", "SyncUnknown", "Failed", "Unknown"},
};

void AddPorts(Switch& unit, std::size_t count) {
    for (std::size_t p = 0; p < count; p++) {
        const Port& kind = kPortKinds[p % std::size(kPortKinds)];
        AddPort(unit, kind);
        if (kind.topologyType.starts_with('F')) {
            AttachDevice(unit, p, kind.topologyType == "FL" ? "NL" : "N");
        }
    }
}

/// Domain 1: a small switch with everything in order, quiet and new.
Switch SmallSwitch() {
    Switch unit;
    unit.domain = 1;
    unit.wwn = SwitchWwn(0x0300);
    unit.symbolicName = "annex-small";
    unit.comment = "Spare switch";
    unit.type = "SmallSwitch8";
    unit.chassisSerial = "SN-0300";
    unit.uuid = "0000000000000000000000000000c001";
    unit.ipAddress = "127.0.1.1";
    unit.uptime = 12;
    unit.activeVer = "V1.2.0-8";
    unit.flasherVersion = "V0.9";
    unit.sysLogLevel = "Critical";
    unit.sysDescr = "Small 8-port Fibre Channel switch";
    unit.sysObjectId = "1.3.6.1.4.1.32473.1.8";
    unit.contact = "operator@annex.example";
    unit.location = "Annex, shelf 3";
    unit.eventSupport = false;
    unit.powerSupplies = {"Good"};
    unit.fans = {"Good"};
    unit.blades = {{"NotApplicable", "0", "A1", "Normal", "Good", {31}}};
    AddPorts(unit, 8);
    return unit;
}

/// Domain 2, the local switch and the fabric's principal: one of two supplies has failed.
Switch LocalSwitch() {
    Switch unit;
    unit.domain = 2;
    unit.wwn = SwitchWwn(0x0100);
    unit.symbolicName = "core-local";
    unit.comment =
        "Core switch of hall 1; maintenance window Sunday 02:00 to 04:00; two links to "
        "the edge and one to the annex; call the operator before any change";
    unit.type = "CoreSwitch16";
    unit.chassisSerial = "SN-0100";
    unit.uuid = "0000000000000000000000000000c002";
    unit.ipAddress = "127.0.1.2";
    unit.uptime = 86400;
    unit.activeVer = "V2.4.1-3";
    unit.flasherVersion = "V1.1";
    unit.sysLogLevel = "Info";
    unit.sysDescr =
        "Core 16-port Fibre Channel switch with redundant power, hot-swap transceivers "
        "and a long description";
    unit.sysObjectId = "1.3.6.1.4.1.32473.1.16";
    unit.contact = "Storage team, phone 1200";
    unit.location = "Hall 1, rack 7";
    unit.principal = true;
    unit.allow4GPorts = true;
    unit.powerSupplies = {"Good", "Bad"};
    unit.fans = {"Good", "Good", "Good"};
    unit.blades = {{"Core", "1", "B3", "Normal", "Good", {38, 41, 44, 40}}};
    unit.roUser = "monitor";
    unit.roAuthType = "MD5";
    unit.roAuthPhrase = "sample-phrase-1";
    unit.rwUser = "admin";
    unit.rwAuthType = "MD5";
    unit.rwAuthPhrase = "sample-phrase-2";
    unit.rwPrivType = "DES";
    unit.rwPrivPhrase = "sample-phrase-3";
    unit.traps[0] = {"127.0.0.1", 16200, "warning", true, "2"};
    unit.traps[2] = {"127.0.0.1", 16201, "debug", true, "1"};
    AddPorts(unit, 16);
    FillLog(unit, 61, 105);
    return unit;
}

/// What is rarely met: a loop with two devices and one without, links to everything, name-server
/// entries of every type, a port whose words say nothing, and counters at the limits of their
/// width.
void AddOddities(Switch& unit) {
    std::erase_if(unit.nameServer, [](const NsEntry& entry) { return entry.portNumber == 9; });
    std::erase_if(unit.links, [](const Link& link) { return link.localPort == 9; });
    AttachDevice(unit, 1, "NL", 0x2A);
    const char* portTypes[] = {"N", "NL", "FNL", "NX", "F", "FL", "E", "B", "Public"};
    const char* unitTypes[] = {"HBA",       "Hub",   "Gateway", "Switch",
                               "Converter", "Other", "Unknown", "Bridge"};
    for (std::size_t i = 0; i < std::size(portTypes); i++) {
        unit.nameServer[i].portType = portTypes[i];
    }
    for (std::size_t i = 0; i < std::size(unitTypes); i++) {
        unit.links[i].remoteUnitType = unitTypes[i];
    }
    Port& odd = unit.ports[23];
    odd.runningType = "TR";
    odd.operState = odd.adminState = "Isolated";
    odd.linkSpeed = "8Gb/s";
    odd.syncStatus = "SyncUnknown";
    odd.diagStatus = "NotRun";
    unit.ports[5].counters["TotalTxWords"] = 0x4000'0000'0000'0000;
    unit.ports[5].counters["TotalRxWords"] = 0x3FFF'FFFF'FFFF'FFFF;
    unit.ports[5].counters["TotalTxFrames"] = ~std::uint64_t{0};
}

/// Domain 7: two blades, one warm and one too hot, a fan and a port that are down, and a firmware
/// that names its version only by way of the active image.
Switch EdgeSwitch() {
    Switch unit;
    unit.domain = 7;
    unit.wwn = SwitchWwn(0x0200);
    unit.symbolicName = "edge-" + std::string(80, 'x') + "-end";
    unit.comment = "";
    unit.type = "EdgeSwitch24";
    unit.operState = "Diagnostics";
    unit.brandName = "Sample Edge";
    unit.chassisSerial = "SN-0200";
    unit.uuid = "0000000000000000000000000000c007";
    unit.ipAddress = "127.0.1.7";
    unit.resetReason = "HotReset";
    unit.uptime = 3600;
    unit.activeVersion = "Image2";
    unit.softwareVersions = {{"Image1", "V3.0.0-1"}, {"Image2", "V3.1.0-9"}};
    unit.sysLogLevel = "Warn or Info";
    unit.sysDescr = "Edge 24-port Fibre Channel switch";
    unit.sysObjectId = "1.3.6.1.4.1.32473.1.24";
    unit.contact = "Edge team";
    unit.location = "Hall 2, rack 1";
    unit.rATov = 12000;
    unit.powerSupplies = {"Good", "Good"};
    unit.fans = {"Good", "Bad"};
    unit.blades = {{"Line", "1", "C1", "Warm", "Good", {52, 55}},
                   {"Line", "2", "C2", "Overheating", "Bad", {71, 78, 80}}};
    AddPorts(unit, 24);
    unit.ports[21].operState = "Down";
    unit.ports[21].name = "Cable under repair";
    AddOddities(unit);
    FillLog(unit, 1, 3);
    return unit;
}

constexpr unsigned kIslPorts = 2;  // ports 0 and 1 of a generated switch lead to its neighbours
constexpr unsigned kDevicePorts = 14;
constexpr unsigned kZoneSize = 20;

Switch GeneratedSwitch(unsigned domain, unsigned switches, unsigned names) {
    Switch unit;
    unit.domain = static_cast<std::uint16_t>(domain);
    // The names run against the domains.
    unit.wwn = SwitchWwn(0x1000 + switches - domain);
    unit.symbolicName = Format("switch-%u", domain);
    unit.comment = Format("Generated switch %u of %u", domain, switches);
    unit.type = "FabricSwitch16";
    unit.chassisSerial = Format("SN-%04u", domain);
    unit.uuid = Format("%032x", domain);
    unit.ipAddress = Format("127.0.2.%u", domain);
    unit.uptime = 1000 + domain;
    unit.activeVer = Format("V4.0.%u", domain);
    unit.flasherVersion = "V1.1";
    unit.sysDescr = "Generated 16-port Fibre Channel switch";
    unit.contact = Format("contact-%u", domain);
    unit.location = Format("rack %u", domain);
    unit.principal = domain == 1;
    unit.powerSupplies = {"Good", "Good"};
    unit.fans = {"Good", "Good"};
    unit.blades = {{"NotApplicable", "0", "A1", "Normal", "Good", {35, 36}}};
    for (std::size_t p = 0; p < kIslPorts + kDevicePorts; p++) {
        AddPort(unit, p < kIslPorts ? kPortKinds[2] : kPortKinds[0]);
    }
    for (unsigned n = 0; n < names; n++) {
        AttachDevice(unit, kIslPorts + n % kDevicePorts, "N", n / kDevicePorts);
    }
    FillLog(unit, 1, 5);
    return unit;
}

/// Zones whose members are the fabric's devices one after the other, three by name and every fourth
/// by port id; when there are no more devices, by names that nobody has.
std::vector<Zone> GeneratedZones(const Fabric& fabric, unsigned members) {
    std::vector<const NsEntry*> devices;
    for (const Switch& unit : fabric.switches) {
        for (const NsEntry& entry : unit.nameServer) {
            devices.push_back(&entry);
        }
    }
    std::vector<Zone> zones;
    for (unsigned n = 0; n < members; n++) {
        if (n % kZoneSize == 0) {
            const bool hard = zones.size() % 2 == 1;
            zones.push_back({Format("Zone%zu", zones.size() + 1), hard ? "Hard" : "Soft", {}});
        }
        ZoneMember& member = zones.back().members.emplace_back();
        const bool byId = n % 4 == 3 && n < devices.size();
        member.type = byId ? "PortID" : "WWN";
        member.id = byId                 ? devices[n]->portId
                    : n < devices.size() ? devices[n]->portWwn
                                         : Format("22000200%08x", n);
    }
    return zones;
}

}  // namespace

Fabric DefaultFabric() {
    Fabric fabric;
    fabric.localDomain = 2;
    fabric.switches = {SmallSwitch(), LocalSwitch(), EdgeSwitch()};
    Switch& small = fabric.switches[0];
    Switch& local = fabric.switches[1];
    Switch& edge = fabric.switches[2];
    Connect(local, 2, edge, 2);
    Connect(local, 3, edge, 3);
    Connect(local, 10, small, 2);

    fabric.activeZoneSet = "SampleSet";
    fabric.zones = {
        {"ZoneHosts",
         "Soft",
         {{local.nameServer[0].portWwn, "WWN"}, {edge.nameServer[1].portId, "PortID"}}},
        {"ZoneEmpty", "Soft", {}},
        {"ZoneDisks", "Hard", {{"0105", "DomainPort"}, {small.nameServer[0].portWwn, "WWN"}}},
    };
    fabric.aliases = {
        {"AliasTape", "Soft", {{edge.nameServer[0].portWwn, "WWN"}}},
        {"AliasEmpty", "Soft", {}},
        {"AliasPorts", "Soft", {{local.nameServer[1].portId, "PortID"}, {"0702", "DomainPort"}}},
        {"AliasNode", "Soft", {{edge.nameServer[2].nodeWwn, "NodeName"}}},
    };
    return fabric;
}

Fabric GenerateFabric(unsigned switches, const GeneratedSizes& sizes) {
    if (switches < 1 || switches > kMaxSwitches) {
        throw std::out_of_range("a fabric has 1 to 239 switches, not " + std::to_string(switches));
    }
    if (sizes.names > kMaxGeneratedNames) {
        throw std::out_of_range("a generated switch has at most " +
                                std::to_string(kMaxGeneratedNames) + " devices, not " +
                                std::to_string(sizes.names));
    }
    Fabric fabric;
    for (unsigned domain = 1; domain <= switches; domain++) {
        fabric.switches.push_back(GeneratedSwitch(domain, switches, sizes.names));
    }
    for (std::size_t i = 0; i + 1 < fabric.switches.size(); i++) {
        Connect(fabric.switches[i], 1, fabric.switches[i + 1], 0);
    }
    fabric.localDomain = static_cast<std::uint16_t>((switches + 1) / 2);
    fabric.activeZoneSet = "GeneratedSet";
    fabric.zones = GeneratedZones(fabric, sizes.zoneMembers);
    return fabric;
}

}  // namespace sim
