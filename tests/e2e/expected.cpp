// What a manager should read of a fabric, made from the fabric's description alone.
#include <algorithm>
#include <cstdio>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

std::string Integer(std::uint64_t number) {
    return "INTEGER: " + std::to_string(number);
}

std::string Hex(const std::vector<int>& octets) {
    std::string text = octets.empty() ? "\"\"" : "Hex-STRING:";
    for (const int octet : octets) {
        char piece[8];
        std::snprintf(piece, sizeof(piece), " %02X", static_cast<unsigned>(octet));
        text += piece;
    }
    return text;
}

std::string Text(const std::string& text, std::size_t most = 512) {
    const std::string cut = text.substr(0, most);
    return Hex({cut.begin(), cut.end()});
}

std::vector<int> WwnOctets(const std::string& wwn) {
    std::vector<int> octets;
    for (std::size_t i = 0; i + 1 < wwn.size(); i += 2) {
        octets.push_back(std::stoi(wwn.substr(i, 2), nullptr, 16));
    }
    octets.resize(16);
    return octets;
}

std::string IndexOf(const sim::Switch& unit) {
    std::string index;
    for (const int octet : WwnOctets(unit.wwn)) {
        index.append(".").append(std::to_string(octet));
    }
    return index;
}

std::vector<const sim::Switch*> UnitsInOrder(const sim::Fabric& fabric) {
    std::vector<const sim::Switch*> units;
    for (const sim::Switch& unit : fabric.switches) {
        units.push_back(&unit);
    }
    std::ranges::sort(units, {}, [](const sim::Switch* unit) { return unit->wwn; });
    return units;
}

bool Has(const std::string& text, const char* word) {
    return text.find(word) != std::string::npos;
}

// 3 ok, 4 warning, 5 failed.
int StatusOf(const sim::Switch& unit) {
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

std::size_t SensorsOf(const sim::Switch& unit) {
    std::size_t sensors = unit.powerSupplies.size() + unit.fans.size();
    sensors += unit.blades.size() > 1 ? unit.blades.size() : 0;
    for (const sim::Blade& blade : unit.blades) {
        sensors += 1 + blade.boardTemps.size();
    }
    return sensors * unit.chassis;
}

std::string AddressUrl(const sim::Switch& unit) {
    return Text("http://" + unit.ipAddress);
}

// The columns that answer, by number.
std::vector<std::pair<int, std::string>> ColumnsOf(const sim::Fabric& fabric,
                                                   const sim::Switch& unit) {
    const std::string id = Hex(WwnOctets(unit.wwn));
    const bool online = unit.operState == "Online";
    const bool offline = unit.operState == "Offline" || unit.operState == "Diagnostics";
    const auto principal = std::ranges::find_if(fabric.switches, &sim::Switch::principal);
    return {
        {1, id},
        {2, id},
        {3, Integer(4)},
        {4, Integer(unit.ports.size())},
        {5, Integer(online    ? 2
                    : offline ? 3
                              : 1)},
        {6, Integer(static_cast<unsigned>(StatusOf(unit)))},
        {7, Text(unit.sysDescr, 79)},
        {8, Text(unit.chassisSerial, 79)},
        {9, std::to_string(unit.uptime * 100)},
        {10, AddressUrl(unit)},
        {11, Hex({0xFF, 0xFC, unit.domain & 0xFF})},
        {12, Integer(unit.domain == fabric.localDomain ? 3 : 2)},
        {13, Integer(unit.principal ? 3 : 2)},
        {14, Integer(SensorsOf(unit))},
        {17, Integer(unit.blades.size() + 2)},
        {19, id},
        {20, Text(unit.symbolicName, 79)},
        {21, Text(unit.comment)},
        {22, Integer(online    ? 6
                     : offline ? 5
                               : 1)},
        {23, Text(unit.contact, 79)},
        {24, Text(unit.location, 79)},
        {25, Integer(Has(unit.sysLogLevel, "Critical") ? 4
                     : Has(unit.sysLogLevel, "Warn")   ? 6
                     : Has(unit.sysLogLevel, "Info")   ? 8
                     : Has(unit.sysLogLevel, "Debug")  ? 9
                                                       : 1)},
        {26, Integer(std::min<std::size_t>(unit.log.size(), 30))},
        {27, Integer(30)},
        {28, Integer(unit.log.empty() ? 0 : unit.log.back().id)},
        {29, Hex(WwnOctets(principal->wwn))},
        {30, Integer(unit.links.size())},
        {31, Text(unit.brandName, 79)},
    };
}

struct Revision {
    std::string id;
    std::string description;
};

std::vector<Revision> RevisionsOf(const sim::Switch& unit) {
    const auto version = unit.softwareVersions.find(unit.activeVersion);
    std::string active = unit.activeVer;
    if (active.empty() && version != unit.softwareVersions.end()) {
        active = version->second;
    }
    const auto known = [](const std::string& text) { return text.empty() ? "<Unknown>" : text; };
    std::vector<Revision> revisions = {{known(active), "Active Firmware image"},
                                       {known(unit.flasherVersion), "Flasher Shell Version"}};
    for (std::size_t slot = 0; slot < unit.blades.size(); ++slot) {
        const sim::Blade& blade = unit.blades[slot];
        revisions.push_back({blade.asicVersion, blade.type == "NotApplicable"
                                                    ? "Hardware ASIC Version."
                                                    : "Hardware ASIC Version Blade " + blade.type +
                                                          "-" + blade.instance + " in Slot " +
                                                          std::to_string(slot)});
    }
    return revisions;
}

}  // namespace

sim::Fabric StillFabric() {
    sim::Fabric fabric = sim::DefaultFabric();
    for (sim::Switch& unit : fabric.switches) {
        unit.values["Oper.Switch.Uptime"] = std::to_string(unit.uptime);
    }
    return fabric;
}

Values ExpectedUnits(const sim::Fabric& fabric) {
    const std::vector<const sim::Switch*> units = UnitsInOrder(fabric);
    Values values;
    for (int column = 1; column <= 31; ++column) {
        for (const sim::Switch* unit : units) {
            for (const auto& [number, value] : ColumnsOf(fabric, *unit)) {
                if (number == column) {
                    values.emplace_back(kUnits + "." + std::to_string(column) + IndexOf(*unit),
                                        value);
                }
            }
        }
    }
    return values;
}

Values ExpectedRevisions(const sim::Fabric& fabric) {
    const std::vector<const sim::Switch*> units = UnitsInOrder(fabric);
    Values values;
    for (int column = 1; column <= 4; ++column) {
        for (const sim::Switch* unit : units) {
            std::size_t number = 0;
            for (const Revision& revision : RevisionsOf(*unit)) {
                ++number;
                const std::string name = kRevisions + "." + std::to_string(column) +
                                         IndexOf(*unit) + "." + std::to_string(number);
                values.emplace_back(name, column == 1   ? Hex(WwnOctets(unit->wwn))
                                          : column == 2 ? Integer(number)
                                          : column == 3 ? Text(revision.id)
                                                        : Text(revision.description));
            }
        }
    }
    return values;
}

}  // namespace e2e
