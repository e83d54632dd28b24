// What a manager should read of a fabric, made from the fabric's description alone: its units, and
// what all expectations share.
#include <algorithm>
#include <cstdio>

#include "tests/e2e/expected_values.h"

namespace e2e {
namespace {

Octets OctetsOf(const std::string& digits, std::size_t count) {
    Octets octets;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        octets.push_back(static_cast<unsigned>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    octets.resize(count);
    return octets;
}

template <class Matches>
unsigned NumberOf(const Numbers& words, unsigned none, Matches matches) {
    const auto found = std::ranges::find_if(words, matches, &Numbers::value_type::first);
    return found == words.end() ? none : found->second;
}

// What a blade is called in texts about it; nothing for one that is the whole switch.
std::string BladeName(const sim::Switch& unit, std::size_t slot) {
    const sim::Blade& blade = unit.blades[slot];
    return blade.type == "NotApplicable"
               ? ""
               : " Blade " + blade.type + "-" + blade.instance + " in Slot " + std::to_string(slot);
}

// 3 ok, 4 warning, 5 failed.
unsigned StatusOf(const sim::Switch& unit) {
    bool warning = false, failure = false;
    for (const std::vector<std::string>* parts : {&unit.powerSupplies, &unit.fans}) {
        const auto good = std::ranges::count(*parts, "Good");
        warning |= good != static_cast<long>(parts->size());
        failure |= good == 0 && !parts->empty();
    }
    for (const sim::Blade& blade : unit.blades) {
        warning |= blade.tempStatus == "Warm";
        failure |= blade.tempStatus == "Overheating";
    }
    for (const sim::Port& port : unit.ports) {
        warning |= port.operState == "Down";
    }
    warning |= unit.operState == "Offline" || unit.operState == "Diagnostics";
    failure |= unit.operState == "Down";
    return failure ? 5 : warning ? 4 : 3;
}

Columns UnitColumns(const sim::Fabric& fabric, const sim::Switch& unit) {
    static const Numbers kStates = {{"Offline", 3}, {"Diagnostics", 3}, {"Online", 2}};
    static const Numbers kControls = {{"Online", 6}, {"Offline", 5}, {"Diagnostics", 5}};
    static const Numbers kFilters = {{"Critical", 4}, {"Warn", 6}, {"Info", 8}, {"Debug", 9}};
    const std::string id = Hex(unit.wwn, 16);
    const auto principal = std::ranges::find_if(fabric.switches, &sim::Switch::principal);
    return {
        {1, id},
        {2, id},
        {3, Integer(4)},
        {4, Integer(unit.ports.size())},
        {5, Integer(Containing(unit.operState, kStates))},
        {6, Integer(StatusOf(unit))},
        {7, Text(unit.sysDescr, 79)},
        {8, Text(unit.chassisSerial, 79)},
        {9, std::to_string(unit.uptime * 100)},
        {10, AddressUrl(unit)},
        {11, Hex({0xFF, 0xFC, unit.domain & 0xFFu})},
        {12, Integer(unit.domain == fabric.localDomain ? 3 : 2)},
        {13, Integer(unit.principal ? 3 : 2)},
        {14, Integer(SensorRows(unit).size())},
        {17, Integer(unit.blades.size() + 2)},
        {19, id},
        {20, Text(unit.symbolicName, 79)},
        {21, Text(unit.comment)},
        {22, Integer(Containing(unit.operState, kControls))},
        {23, Text(unit.contact, 79)},
        {24, Text(unit.location, 79)},
        {25, Integer(Containing(unit.sysLogLevel, kFilters))},
        {26, Integer(std::min<std::size_t>(unit.log.size(), 30))},
        {27, Integer(30)},
        {28, Integer(unit.log.empty() ? 0 : unit.log.back().id)},
        {29, Hex(principal->wwn, 16)},
        {30, Integer(unit.links.size())},
        {31, Text(unit.brandName, 79)},
    };
}

UnitRows RevisionRows(const sim::Switch& unit) {
    const auto version = unit.softwareVersions.find(unit.activeVersion);
    const bool byImage = unit.activeVer.empty() && version != unit.softwareVersions.end();
    const std::string& active = byImage ? version->second : unit.activeVer;
    const auto known = [](const std::string& text) {
        return Text(text.empty() ? "<Unknown>" : text);
    };
    UnitRows rows = {{1, {{3, known(active)}, {4, Text("Active Firmware image")}}},
                     {2, {{3, known(unit.flasherVersion)}, {4, Text("Flasher Shell Version")}}}};
    for (std::size_t slot = 0; slot < unit.blades.size(); ++slot) {
        const std::string name = BladeName(unit, slot);
        rows[slot + 3] = {{3, Text(unit.blades[slot].asicVersion)},
                          {4, Text("Hardware ASIC Version" + (name.empty() ? "." : name))}};
    }
    return rows;
}

}  // namespace

std::string Integer(std::uint64_t number) {
    return "INTEGER: " + std::to_string(number);
}

std::string Hex(const Octets& octets) {
    std::string text = octets.empty() ? "\"\"" : "Hex-STRING:";
    for (const unsigned octet : octets) {
        char piece[8];
        std::snprintf(piece, sizeof(piece), " %02X", octet);
        text += piece;
    }
    return text;
}

std::string Text(const std::string& text, std::size_t most) {
    const std::string cut = text.substr(0, most);
    return Hex(Octets(cut.begin(), cut.end()));
}

std::string Hex(const std::string& digits, std::size_t count) {
    return Hex(OctetsOf(digits, count));
}

std::string Index(const std::string& digits, std::size_t count) {
    std::string index;
    for (const unsigned octet : OctetsOf(digits, count)) {
        index.append(".").append(std::to_string(octet));
    }
    return index;
}

unsigned Containing(const std::string& text, const Numbers& words, unsigned none) {
    return NumberOf(words, none,
                    [&](const char* word) { return text.find(word) != std::string::npos; });
}

unsigned Exactly(const std::string& text, const Numbers& words, unsigned none) {
    return NumberOf(words, none, [&](const char* word) { return text == word; });
}

std::string AddressUrl(const sim::Switch& unit) {
    return Text("http://" + unit.ipAddress);
}

Values Walked(const std::string& table, const Rows& rows) {
    std::map<int, Values> columns;
    for (const auto& [index, values] : rows) {
        for (const auto& [number, value] : values) {
            columns[number].emplace_back(table + "." + std::to_string(number) + index, value);
        }
    }
    Values values;
    for (const auto& [number, column] : columns) {
        values.insert(values.end(), column.begin(), column.end());
    }
    return values;
}

std::vector<const sim::Switch*> UnitsInOrder(const sim::Fabric& fabric) {
    std::vector<const sim::Switch*> units;
    for (const sim::Switch& unit : fabric.switches) {
        units.push_back(&unit);
    }
    std::ranges::sort(units, {}, [](const sim::Switch* unit) { return unit->wwn; });
    return units;
}

Values WalkedByUnit(const std::string& table, const sim::Fabric& fabric,
                    const std::function<UnitRows(const sim::Switch&)>& rowsOf) {
    Rows all;
    for (const sim::Switch* unit : UnitsInOrder(fabric)) {
        for (auto& [number, columns] : rowsOf(*unit)) {
            all.emplace_back(Index(unit->wwn, 16) + "." + std::to_string(number), columns);
            all.back().second.insert({{1, Hex(unit->wwn, 16)}, {2, Integer(number)}});
        }
    }
    return Walked(table, all);
}

UnitRows SensorRows(const sim::Switch& unit) {
    static const Numbers kStates = {{"Good", 3}, {"Normal", 3},      {"Warm", 4},
                                    {"Bad", 5},  {"Overheating", 5}, {" degrees", 3}};
    UnitRows rows;
    const auto add = [&](const std::string& name, const std::string& message, unsigned type,
                         unsigned characteristic) {
        rows[rows.size() + 1] = {{3, Text(name)},
                                 {4, Integer(Containing(message, kStates))},
                                 {6, Text(message)},
                                 {7, Integer(type)},
                                 {8, Integer(characteristic)}};
    };
    const auto number = [](std::size_t item) { return std::to_string(item + 1); };
    const std::size_t blades = unit.blades.size();
    for (std::uint32_t chassis = 0; chassis < unit.chassis; ++chassis) {  // all have the same
        for (std::size_t i = 0; i < unit.powerSupplies.size(); ++i) {
            add("Power supply " + number(i) + " Status", unit.powerSupplies[i], 5, 9);
        }
        for (std::size_t i = 0; i < unit.fans.size(); ++i) {
            add("Fan " + number(i) + " Status", unit.fans[i], 4, 7);
        }
        for (std::size_t k = 0; k < blades; ++k) {
            add("Temperature Status" + BladeName(unit, k), unit.blades[k].tempStatus, 8, 3);
        }
        for (const sim::Blade& blade : unit.blades) {
            for (std::size_t i = 0; i < blade.boardTemps.size(); ++i) {
                add("Temperature Sensor " + number(i) + " Value",
                    std::to_string(blade.boardTemps[i]) + " degrees C", 8, 3);
            }
        }
        for (std::size_t k = 0; blades > 1 && k < blades; ++k) {
            add("Voltage Status" + BladeName(unit, k), unit.blades[k].voltageStatus, 8, 9);
        }
    }
    return rows;
}

sim::Fabric StillFabric() {
    sim::Fabric fabric = sim::DefaultFabric();
    for (sim::Switch& unit : fabric.switches) {
        unit.values["Oper.Switch.Uptime"] = std::to_string(unit.uptime);
    }
    return fabric;
}

Values ExpectedUnits(const sim::Fabric& fabric) {
    Rows rows;
    for (const sim::Switch* unit : UnitsInOrder(fabric)) {
        rows.emplace_back(Index(unit->wwn, 16), UnitColumns(fabric, *unit));
    }
    return Walked(kUnits, rows);
}

Values ExpectedRevisions(const sim::Fabric& fabric) {
    return WalkedByUnit(kRevisions, fabric, RevisionRows);
}

}  // namespace e2e
