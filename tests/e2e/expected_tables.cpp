// What a manager should read of a fabric: all below and beside its units.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <sstream>

#include "tests/e2e/expected_values.h"

namespace e2e {
namespace {

const Numbers kPortTypes = {{"FL", 7}, {"F", 8}, {"E", 9}, {"Unknown", 1}};
const Numbers kPortStates = {{"Online", 2}, {"Offline", 3}, {"Down", 3}, {"Diagnostics", 5}};
const Numbers kPortControls = {{"Online", 7}, {"Offline", 6}, {"Diagnostics", 6}};
const Numbers kTransmitters = {{"NotInstalled", 3}, {"SL", 4}, {"LL", 5},
                               {"EL", 6},           {"LC", 8}, {"SN", 9}};
const Numbers kSpeeds = {
    {"1Gb/s", 106250}, {"2Gb/s", 212500}, {"4Gb/s", 425000}, {"10Gb/s", 1062500}};
const Numbers kMonths = {{"jan", 1}, {"feb", 2}, {"mar", 3}, {"apr", 4},  {"may", 5},  {"jun", 6},
                         {"jul", 7}, {"aug", 8}, {"sep", 9}, {"oct", 10}, {"nov", 11}, {"dec", 12}};
const Numbers kUnitTypes = {{"Unknown", 1}, {"Other", 2},     {"Hub", 3}, {"Switch", 4},
                            {"Gateway", 5}, {"Converter", 6}, {"HBA", 7}};
const Numbers kMemberTypes = {{"PortID", 3}, {"WWN", 1}, {"DomainPort", 2}};
const Numbers kNameTypes = {{"N", 1},   {"NL", 2},   {"FNL", 3}, {"NX", 127},
                            {"F", 129}, {"FL", 130}, {"E", 132}, {"B", 133}};

// The counter behind each column of the statistics; the others are not supported.
const std::map<int, const char*> kCounters = {
    {3, "TotalErrors"},     {4, "TotalTxFrames"},    {5, "TotalRxFrames"},
    {6, "TotalTxWords"},    {7, "TotalRxWords"},     {10, "FBusys"},
    {12, "FRejects"},       {20, "Class2FramesIn"},  {21, "Class2FramesOut"},
    {26, "Class3FramesIn"}, {27, "Class3FramesOut"}, {28, "Class3Tosses"},
    {33, "RxLinkResets"},   {34, "TxLinkResets"},    {35, "TotalLinkResets"},
    {36, "RxOfflineSeq"},   {37, "TxOfflineSeq"},    {38, "TotalOfflineSeq"},
    {39, "LinkFailures"},   {40, "InvalidCRCs"},     {41, "DecodeErrors"},
    {42, "PrimSeqErrors"},  {44, "LossOfSyncs"},     {48, "InvDestAddr"}};

unsigned HardwareStateOf(const sim::Port& port) {
    return port.diagStatus == "Failed"         ? 2
           : port.gbicType == "NotInstalled"   ? 7
           : port.syncStatus == "SyncLost"     ? 8
           : port.syncStatus == "SyncAcquired" ? 4
                                               : 1;
}

UnitRows PortRows(const sim::Switch& unit) {
    UnitRows rows;
    for (const sim::Port& port : unit.ports) {
        const std::string& type = port.runningType;
        const bool isG = type.find('G') != std::string::npos;
        const bool isF = type == "F" || type == "FL";
        const unsigned otherSpeed = unit.allow4GPorts ? 425000 : 212500;
        const std::size_t number = rows.size();
        rows[number + 1] = {{3, Integer(isG ? 10 : Exactly(type, kPortTypes, 2))},
                            {4, Hex({0x00, 0x0D})},
                            {5, Hex({0x00, isF ? 0x0Cu : 0x0Du})},
                            {6, Integer(Containing(port.operState, kPortStates))},
                            {7, Integer(2)},
                            {8, Integer(Containing(port.gbicType, kTransmitters))},
                            {9, Integer(port.linkSpeed == "10Gb/s" ? 2 : 9)},
                            {10, Hex(port.wwn, 16)},
                            {11, Hex(port.portId, 3)},
                            {15, Integer(Exactly(port.linkSpeed, kSpeeds, otherSpeed))},
                            {16, Integer(Containing(port.adminState, kPortControls))},
                            {17, Text(port.name)},
                            {18, Integer(number)},
                            {19, "OID: .1.3.6.1.3.94.4.5.1.1"},
                            {20, Hex({0x00, 0x03})},
                            {22, Hex(unit.wwn, 8)},
                            {23, Integer(HardwareStateOf(port))}};
    }
    return rows;
}

std::string Counter(std::uint64_t value) {
    char digits[17];
    std::snprintf(digits, sizeof(digits), "%016llx", static_cast<unsigned long long>(value));
    return Hex(digits, 8);
}

UnitRows StatisticsRows(const sim::Switch& unit) {
    UnitRows rows;
    for (const sim::Port& port : unit.ports) {
        Columns& columns = rows[rows.size() + 1];
        for (int column = 3; column <= 50; ++column) {
            columns[column] = Counter(0x8000000000000000);
        }
        for (const auto& [column, name] : kCounters) {
            const auto found = port.counters.find(name);
            const std::uint64_t value = found == port.counters.end() ? 0 : found->second;
            const bool words = column == 6 || column == 7;  // of four octets each
            columns[column] = Counter(!words ? value : value >> 62 != 0 ? ~0ULL : value * 4);
        }
    }
    return rows;
}

// "Wed Nov 14 21:38:13 2026" as "14112026 213813".
std::string EventTime(const std::string& logTime) {
    std::istringstream words(logTime);
    std::string weekday, month, day, time, year;
    words >> weekday >> month >> day >> time >> year;
    std::ranges::transform(month, month.begin(), [](unsigned char c) { return std::tolower(c); });
    char text[40];
    std::snprintf(text, sizeof(text), "%.2s%02u%.4s %.2s%.2s%.2s", day.c_str(),
                  Exactly(month, kMonths, 0), year.c_str(), time.c_str(), time.c_str() + 3,
                  time.c_str() + 6);
    return Text(text);
}

// The 30 newest ids of a long log; an id that the log skips shows the entry behind it.
UnitRows EventRows(const sim::Switch& unit) {
    UnitRows rows;
    const std::uint32_t last = unit.log.empty() ? 0 : unit.log.back().id;
    for (std::uint32_t id = last > 30  ? last - 29
                            : last > 0 ? unit.log[0].id
                                       : 1;
         id <= last; ++id) {
        const sim::LogEntry& entry =
            *std::ranges::lower_bound(unit.log, id, {}, &sim::LogEntry::id);
        rows[id] = {
            {4, EventTime(entry.time)},
            {7, Integer(3)},
            {9, Text("[" + std::to_string(entry.id) + "][" + entry.time + "]" + entry.text)}};
    }
    return rows;
}

// Each part of the address takes four octets.
std::string WideAddress(const std::string& address) {
    Octets octets;
    std::istringstream parts(address);
    for (std::string part; std::getline(parts, part, '.');) {
        octets.insert(octets.end(), {0, 0, 0, static_cast<unsigned>(std::stoul(part))});
    }
    return Hex(octets);
}

UnitRows LinkRows(const sim::Switch& unit) {
    UnitRows rows;
    for (const sim::Link& link : unit.links) {
        rows[rows.size() + 1] = {{3, Hex(link.localNodeWwn, 16)},
                                 {4, Integer(link.localPort)},
                                 {5, Hex(link.localPortWwn, 16)},
                                 {6, Hex(link.remoteNodeWwn, 16)},
                                 {7, Integer(link.remotePort)},
                                 {8, Hex(link.remotePortWwn, 16)},
                                 {9, WideAddress(link.remoteAgentAddress)},
                                 {10, Integer(1)},
                                 {11, Integer(link.remoteAgentPort)},
                                 {12, Integer(Exactly(link.remoteUnitType, kUnitTypes))},
                                 {13, Hex(link.remoteConnId, 3)},
                                 {14, Integer(unit.links.size())}};
    }
    return rows;
}

// Zones and aliases have a row for each member; one without members counts all the same.
template <class Function>
Values WalkedByMember(const std::string& table, const std::vector<sim::Zone>& zones,
                      Function columnsOf) {
    Rows rows;
    for (std::size_t z = 1; z <= zones.size(); ++z) {
        const sim::Zone& zone = zones[z - 1];
        for (std::size_t m = 1; m <= zone.members.size(); ++m) {
            const sim::ZoneMember& member = zone.members[m - 1];
            rows.emplace_back("." + std::to_string(z) + "." + std::to_string(m),
                              columnsOf(zone, Integer(Containing(member.type, kMemberTypes, 255)),
                                        Hex(member.id, 16)));
            rows.back().second.insert({{1, Integer(z)}, {2, Integer(m)}});
        }
    }
    return Walked(table, rows);
}

Values WalkedZones(const sim::Fabric& fabric) {
    return WalkedByMember(
        kZones, fabric.zones,
        [&](const sim::Zone& zone, const std::string& type, const std::string& id) -> Columns {
            return {{3, Text(fabric.activeZoneSet, 79)},
                    {4, Integer(fabric.zones.size())},
                    {5, Text(zone.name)},
                    {6, Hex({0xC0})},
                    {7, Hex({zone.type == "Soft" ? 0x80u : 0x40u})},
                    {9, Integer(zone.members.size())},
                    {10, type},
                    {11, id}};
        });
}

Values WalkedAliases(const sim::Fabric& fabric) {
    return WalkedByMember(
        kAliases, fabric.aliases,
        [&](const sim::Zone& alias, const std::string& type, const std::string& id) -> Columns {
            return {{3, Integer(fabric.aliases.size())},
                    {4, Text(alias.name)},
                    {5, Integer(alias.members.size())},
                    {6, type},
                    {7, id}};
        });
}

unsigned ClassMask(const std::string& classes) {
    unsigned mask = 0;
    std::istringstream items(classes);
    for (std::string item; std::getline(items, item, ',');) {
        mask |= std::isdigit(static_cast<unsigned char>(item[0])) ? 1u << (std::stoi(item) - 1) : 0;
    }
    return mask & 0xFF;
}

// Only digits are meant; anything else counts by its distance from "0".
std::string TypeBits(const std::string& digits) {
    Octets octets;
    for (std::size_t i = 0; i < 64; i += 2) {
        const int octet = (digits[i] - '0') * 16 + digits[i + 1] - '0';
        octets.push_back(static_cast<unsigned>(octet) & 0xFF);
    }
    return Hex(octets);
}

Values WalkedNames(const sim::Fabric& fabric) {
    Rows rows;
    for (const sim::Switch* unit : UnitsInOrder(fabric)) {
        std::vector<sim::NsEntry> entries = unit->nameServer;
        std::ranges::sort(entries, {}, &sim::NsEntry::portWwn);
        for (const sim::NsEntry& entry : entries) {
            rows.push_back({Index(unit->wwn, 16) + Index(entry.portWwn, 8) + Index(entry.portId, 3),
                            {{1, Hex(unit->wwn, 16)},
                             {2, Integer(entry.portNumber)},
                             {3, Hex(entry.portId, 3)},
                             {4, Hex(entry.portWwn, 8)},
                             {5, Hex(entry.nodeWwn, 8)},
                             {6, Hex({ClassMask(entry.classes)})},
                             {9, TypeBits(entry.fc4Types)},
                             {10, Hex({Exactly(entry.portType, kNameTypes, 0)})},
                             {12, Hex(entry.fabricPortName, 8)},
                             {14, Text(entry.symPortName)},
                             {15, Text(entry.symNodeName)}}});
        }
    }
    return Walked(kNameServer, rows);
}

// The local switch's trap destinations; equal ones are not expected here.
Values WalkedTraps(const sim::Fabric& fabric) {
    const std::vector<std::string> severities = {
        "emergency", "alert", "critical", "error", "warning", "notify", "info", "debug", "mark"};
    std::map<std::vector<unsigned long>, sim::TrapDestination> sorted;
    for (const sim::TrapDestination& trap : fabric.Find(0)->traps) {
        if (trap.address != "0.0.0.0") {
            sorted[SubIds("." + trap.address + "." + std::to_string(trap.port))] = trap;
        }
    }
    Rows rows;
    for (const auto& [index, trap] : sorted) {
        const auto severity = std::ranges::find(severities, trap.severity) - severities.begin();
        rows.push_back({"." + trap.address + "." + std::to_string(trap.port),
                        {{1, "IpAddress: " + trap.address},
                         {2, Integer(trap.port)},
                         {3, Integer(static_cast<std::uint64_t>(severity + 2))},
                         {4, Integer(trap.enabled ? 3 : 2)}}});
    }
    return Walked(kTraps, rows);
}

}  // namespace

Values Expected(const sim::Fabric& fabric, const std::string& below) {
    std::size_t names = 0;
    for (const sim::Switch& unit : fabric.switches) {
        names += unit.nameServer.size();
    }
    Values values;
    for (const Values& part :
         {Values{{kFcmgmt + ".1.1.0", Integer(fabric.switches.size())},
                 {kFcmgmt + ".1.2.0", AddressUrl(*fabric.Find(0))}},
          ExpectedUnits(fabric), ExpectedRevisions(fabric),
          WalkedByUnit(kSensors, fabric, SensorRows), WalkedByUnit(kPorts, fabric, PortRows),
          WalkedByUnit(kEvents, fabric, EventRows), WalkedByUnit(kLinks, fabric, LinkRows),
          WalkedZones(fabric), WalkedAliases(fabric),
          Values{{kFcmgmt + ".2.1.0", Integer(5)},
                 {kFcmgmt + ".2.2.0", Integer(WalkedTraps(fabric).size() / 4)}},
          WalkedTraps(fabric), Values{{kFcmgmt + ".3.0", Text("0400")}},
          WalkedByUnit(kStatistics, fabric, StatisticsRows),
          Values{{kFcmgmt + ".5.1.1.0", Integer(names)}}, WalkedNames(fabric)}) {
        std::ranges::copy_if(part, std::back_inserter(values), [&](const Value& value) {
            return value.first.starts_with(below + ".");
        });
    }
    return values;
}

}  // namespace e2e
