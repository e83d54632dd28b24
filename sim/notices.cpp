#include "sim/notices.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace sim {
namespace {

using Kind = std::uint16_t;

constexpr Kind kUntold = 0;
constexpr Kind kSnmpConfig = 1;
constexpr Kind kSwitchConfig = 2;
constexpr Kind kSystemConfig = 3;
constexpr Kind kPortConfig = 4;
constexpr Kind kFabricOper = 5;
constexpr Kind kTopologyOper = 6;
constexpr Kind kZoning = 7;
constexpr Kind kNameServer = 9;
constexpr Kind kSwitchOper = 12;
constexpr Kind kSwitchState = 13;
constexpr Kind kReset = 17;
constexpr Kind kSupplyFailed = 19, kSupplyGood = 20;
constexpr Kind kFanFailed = 21, kFanGood = 22;
constexpr Kind kBladeOper = 23;
constexpr Kind kTempNormal = 24, kTempWarm = 25, kTempOverheating = 26;
constexpr Kind kPortState = 27, kPortOper = 28;
constexpr Kind kPrivateEvent = 32;
constexpr Kind kVoltageGood = 33, kVoltageOther = 34, kVoltageBad = 35;
constexpr Kind kSwitchFacts = 36;

/// The first row whose text begins a field's path or key gives the kind.
struct KindRow {
    std::string_view beginning;
    Kind kind;
};
constexpr KindRow kSwitchPaths[] = {
    {"Config.Snmp.", kSnmpConfig},
    {"Config.Switch.", kSwitchConfig},
    {"LowerRange.Switch.", kSwitchConfig},
    {"UpperRange.Switch.", kSwitchConfig},
    {"Config.System.", kSystemConfig},
    {"Oper.Switch.OperState", kSwitchState},
    {"Oper.Switch.PrincipalSwitch", kUntold},  // every switch tells it
    {"Oper.Switch.Type", kSwitchFacts},
    {"Oper.Switch.Chassis", kSwitchFacts},
    {"Oper.Switch.", kSwitchOper},
    {"Config.Mfg.", kSwitchFacts},
    {"Oper.Mfg.", kSwitchFacts},
    {"", kUntold},  // the simulator's own
};
constexpr KindRow kPortKeys[] = {
    {"name", kPortConfig},
    {"max_credit", kPortConfig},
    {"min_credit", kPortConfig},
    {"top_credit", kPortConfig},
    {"topology_type", kTopologyOper},
    {"admin_state", kPortState},
    {"", kPortOper},
};

Kind FindKind(std::span<const KindRow> rows, std::string_view name) {
    return std::find_if(rows.begin(), rows.end(),
                        [name](const KindRow& row) { return name.starts_with(row.beginning); })
        ->kind;
}

/// Calls `changed` with each field that differs.
template <class T, class Function>
void ForEachChange(const T& before, const T& after, const Fields<T>& fields, Function changed) {
    const auto compare = [&](const auto& list) {
        for (const auto& field : list) {
            if (before.*field.member != after.*field.member) {
                changed(field);
            }
        }
    };
    compare(fields.texts);
    compare(fields.numbers);
    compare(fields.bools);
}

/// What the agent adds to other notices by itself: the time, and what happened in words.
std::string Words(const std::string& what) {
    return "[" + TimeText() + "][0][0x0][" + what + "]\n";
}

/// The notices of one switch, each kind and number once.
class Told {
  public:
    /// `number`: the port for the kinds about ports. The agent adds time and words to all but one.
    void Add(Kind kind, std::size_t number = 0) {
        if (kind != kUntold) {
            texts_[{kind, number}] = std::to_string(kind) + ";0;0;0;" + std::to_string(number) +
                                     (kind == kSwitchFacts ? Words("Switch facts changed") : "");
        }
    }

    /// About a part that has a number, from 1 in the text: the first number in the last bracket.
    void Add(Kind kind, const std::string& part, std::size_t index, const std::string& word) {
        texts_[{kind, index}] = std::to_string(kind) + ";0;0;0;0" +
                                Words(part + ":" + std::to_string(index + 1) + " is " + word);
    }

    void MoveTo(std::uint16_t domain, std::vector<Notice>& notices) {
        for (auto& each : texts_) {
            notices.push_back({domain, std::move(each.second)});
        }
    }

  private:
    std::map<std::pair<Kind, std::size_t>, std::string> texts_;
};

void ComparePorts(const Switch& before, const Switch& after, Told& told) {
    for (std::size_t p = 0; p < std::min(before.ports.size(), after.ports.size()); p++) {
        ForEachChange(before.ports[p], after.ports[p], PortFields(), [&](const auto& field) {
            const Kind kind = FindKind(kPortKeys, field.key);
            told.Add(kind, kind == kTopologyOper ? 0 : p);
        });
    }
}

void CompareUnits(const std::vector<std::string>& before, const std::vector<std::string>& after,
                  const std::string& part, Kind failed, Kind good, Told& told) {
    for (std::size_t i = 0; i < std::min(before.size(), after.size()); i++) {
        if (before[i] != after[i]) {
            told.Add(after[i] == "Good" ? good : failed, part, i, after[i]);
        }
    }
}

void CompareHardware(const Switch& before, const Switch& after, Told& told) {
    CompareUnits(before.powerSupplies, after.powerSupplies, "Power Supply", kSupplyFailed,
                 kSupplyGood, told);
    CompareUnits(before.fans, after.fans, "Fan", kFanFailed, kFanGood, told);
    for (std::size_t b = 0; b < std::min(before.blades.size(), after.blades.size()); b++) {
        const Blade& blade = after.blades[b];
        ForEachChange(before.blades[b], blade, BladeFields(), [&](const auto& field) {
            if (field.key == std::string_view("temp_status")) {
                told.Add(blade.tempStatus == "Normal" ? kTempNormal
                         : blade.tempStatus == "Warm" ? kTempWarm
                                                      : kTempOverheating,
                         "Temperature of blade", b, blade.tempStatus);
            } else if (field.key == std::string_view("voltage_status")) {
                told.Add(blade.voltageStatus == "Good"  ? kVoltageGood
                         : blade.voltageStatus == "Bad" ? kVoltageBad
                                                        : kVoltageOther,
                         "Voltage of blade", b, blade.voltageStatus);
            } else {
                told.Add(kBladeOper);
            }
        });
    }
    const auto counts = [](const Switch& unit) {
        return std::array{unit.powerSupplies.size(), unit.fans.size(), unit.blades.size(),
                          unit.ports.size()};
    };
    if (counts(before) != counts(after)) {
        told.Add(kSwitchFacts);
    }
}

void CompareSwitch(const Switch& before, const Switch& after, Told& told) {
    ForEachChange(before, after, SwitchFields(), [&](const auto& field) {
        told.Add(field.path == nullptr ? kUntold : FindKind(kSwitchPaths, field.path));
    });
    if (before.traps != after.traps) {
        told.Add(kSnmpConfig);
    }
    if (before.softwareVersions != after.softwareVersions) {
        told.Add(kSwitchOper);
    }
    if (before.links != after.links) {
        told.Add(kTopologyOper);
    }
    if (before.nameServer != after.nameServer) {
        told.Add(kNameServer);
    }
    ComparePorts(before, after, told);
    CompareHardware(before, after, told);
}

/// Which switches there are, and which is the principal one.
std::set<std::pair<std::uint16_t, bool>> Members(const Fabric& fabric) {
    std::set<std::pair<std::uint16_t, bool>> members;
    for (const Switch& unit : fabric.switches) {
        members.insert({unit.domain, unit.principal});
    }
    return members;
}

}  // namespace

std::vector<Notice> FindNotices(const Fabric& before, const Fabric& after) {
    Told byAll;
    if (Members(before) != Members(after)) {
        byAll.Add(kFabricOper);
    }
    if (before.proxy != after.proxy) {
        byAll.Add(kSnmpConfig);
    }
    if (before.mergeMode != after.mergeMode) {
        byAll.Add(kSwitchFacts);
    }
    if (before.activeZoneSet != after.activeZoneSet || before.zones != after.zones ||
        before.aliases != after.aliases) {
        byAll.Add(kZoning);
    }
    std::vector<Notice> notices;
    for (const Switch& unit : after.switches) {
        const Switch* old = before.Find(unit.domain);
        if (old != nullptr && !unit.silent) {
            Told told = byAll;
            CompareSwitch(*old, unit, told);
            told.MoveTo(unit.domain, notices);
        }
    }
    return notices;
}

Notice PrivateEventNotice(const Switch& unit, std::string_view event) {
    return {unit.domain, std::to_string(kPrivateEvent).append(";0;0;0;0").append(event), true};
}

Notice ResetNotice(const Switch& unit) {
    return {unit.domain, std::to_string(kReset) + ";0;0;0;0" + Words("Reset")};
}

std::string TimeText() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[40];
    (void)std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &local);
    return text;
}

}  // namespace sim
