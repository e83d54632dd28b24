#include "sim/settings.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <span>
#include <utility>

namespace sim {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view kPorts = "Config.UserPort.";
constexpr std::string_view kSnmp = "Config.Snmp.";
constexpr std::string_view kSwitchState = "Config.Switch.AdminState";

constexpr std::string_view kStates[] = {"Online", "Offline", "Diagnostics"};
constexpr std::string_view kLogLevels[] = {"None", "Critical", "Warn", "Info", "Debug"};
constexpr std::string_view kSeverities[] = {"emergency", "alert", "critical", "error", "warning",
                                            "notify",    "info",  "debug",    "mark"};
constexpr std::string_view kVersions[] = {"1", "2"};

/// Texts that take one of a few words only.
struct WordsRow {
    std::string_view path;
    Words words;
};
constexpr WordsRow kWordSettings[] = {
    {kSwitchState, kStates},
    {"TrapSeverity", kSeverities},
    {"TrapVersion", kVersions},
};

struct BoundsRow {
    std::uint32_t Switch::*value;
    std::uint32_t Switch::*lowest;
    std::uint32_t Switch::*highest;
};
constexpr BoundsRow kBounds[] = {
    {&Switch::eDTov, &Switch::eDTovMin, &Switch::eDTovMax},
    {&Switch::rTTov, &Switch::rTTovMin, &Switch::rTTovMax},
};

using Range = std::pair<std::uint32_t, std::uint32_t>;

Range RangeOf(const Switch& unit, std::uint32_t Switch::*value) {
    for (const BoundsRow& row : kBounds) {
        if (row.value == value) {
            return {unit.*row.lowest, unit.*row.highest};
        }
    }
    return {0, std::numeric_limits<std::uint32_t>::max()};
}

Range RangeOf(const TrapDestination&, std::uint32_t TrapDestination::*) {
    return {0, std::numeric_limits<std::uint16_t>::max()};  // UDP ports
}

std::optional<std::uint32_t> ToNumber(std::string_view text, int base = 10) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number, base);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

Wrong SetWord(std::string& target, std::string_view word, Words words) {
    if (std::find(words.begin(), words.end(), word) == words.end()) {
        return CommandError::kBadValue;
    }
    target = word;
    return {};
}

/// 8 hexadecimal digits, as addresses are read.
Wrong SetAddress(std::string& target, std::string_view digits) {
    const auto address = ToNumber(digits, 16);
    if (!address || digits.size() != 8) {
        return CommandError::kBadValue;
    }
    target.clear();
    for (const int shift : {24, 16, 8, 0}) {
        target += (target.empty() ? "" : ".") + std::to_string(*address >> shift & 0xFF);
    }
    return {};
}

Wrong SetText(std::string& target, std::string_view text) {
    const auto printable = [](char c) { return c >= 0x20 && c <= 0x7E; };
    if (text.size() > kMaxSetting || !std::all_of(text.begin(), text.end(), printable)) {
        return CommandError::kBadValue;
    }
    target = text;
    return {};
}

template <class T>
Wrong SetField(T& part, const TextField<T>& field, std::string_view value) {
    std::string& target = part.*field.member;
    if (field.form == Form::kAddress) {
        return SetAddress(target, value);
    }
    for (const WordsRow& row : kWordSettings) {
        if (row.path == field.path) {
            return SetWord(target, value, row.words);
        }
    }
    return SetText(target, value);
}

template <class T>
Wrong SetField(T& part, const NumberField<T>& field, std::string_view value) {
    const auto number = ToNumber(value);
    const auto [lowest, highest] = RangeOf(part, field.member);
    if (!number || *number < lowest || *number > highest) {
        return CommandError::kBadValue;
    }
    part.*field.member = *number;
    return {};
}

template <class T>
Wrong SetField(T& part, const BoolField<T>& field, std::string_view value) {
    if (value != "True" && value != "False") {
        return CommandError::kBadValue;
    }
    part.*field.member = value == "True";
    return {};
}

/// Sets the field that is read at a path.
template <class T>
Wrong SetAt(T& part, const Fields<T>& fields, std::string_view path, std::string_view value) {
    const auto at = [path](const auto& field) {
        return field.path != nullptr && field.path == path;
    };
    if (const auto text = std::ranges::find_if(fields.texts, at); text != fields.texts.end()) {
        return SetField(part, *text, value);
    }
    if (const auto number = std::ranges::find_if(fields.numbers, at);
        number != fields.numbers.end()) {
        return SetField(part, *number, value);
    }
    if (const auto flag = std::ranges::find_if(fields.bools, at); flag != fields.bools.end()) {
        return SetField(part, *flag, value);
    }
    return CommandError::kUnknownCommand;
}

Wrong SetPort(Switch& unit, std::string_view path, std::string_view value) {
    const PortPath found = FindPort(unit, path);
    if (found.wrong) {
        return found.wrong;
    }
    if (found.rest == "AdminState") {
        return SetAdminState(*found.port, value);
    }
    return found.rest == "SymPortName" ? SetText(found.port->name, value)
                                       : Wrong(CommandError::kUnknownCommand);
}

/// "TrapAddr" is of destination 0, "TrapAddr1" to "TrapAddr4" of the others.
Wrong SetTrap(Switch& unit, std::string_view name, std::string_view value) {
    const std::size_t end = name.find_last_not_of("0123456789") + 1;
    const std::string_view digits = name.substr(end);
    const std::uint32_t index = digits.empty() ? 0 : ToNumber(digits).value_or(kTrapDestinations);
    const bool there = index < unit.traps.size() && (index > 0 || digits.empty());
    TrapDestination none;
    const Wrong wrong =
        SetAt(there ? unit.traps[index] : none, TrapFields(), name.substr(0, end), value);
    return there || wrong == CommandError::kUnknownCommand ? wrong : CommandError::kNoSuchEntry;
}

}  // namespace

std::optional<Setting> SplitSetting(std::string_view text) {
    const std::size_t area = text.find('.') + 1;
    std::size_t elements = text.substr(area).starts_with("UserPort.") ? 5 : 3;
    std::size_t end = text.find('.');
    while (--elements > 0 && end != text.npos) {
        end = text.find('.', end + 1);
    }
    if (end == text.npos) {
        return std::nullopt;
    }
    return Setting{text.substr(0, end), text.substr(end + 1)};
}

PortPath FindPort(Switch& unit, std::string_view path) {
    const std::size_t first = std::min(path.find('.'), path.size());
    const std::size_t second = path.find('.', first + 1);
    if (second == path.npos) {
        return {CommandError::kUnknownCommand, nullptr, {}};
    }
    const auto blade = ToNumber(path.substr(0, first));
    const auto port = ToNumber(path.substr(first + 1, second - first - 1));
    if (!blade || !port) {
        return {CommandError::kUnknownCommand, nullptr, {}};
    }
    if (*blade != 0 || *port >= unit.ports.size()) {
        return {CommandError::kNoSuchEntry, nullptr, {}};
    }
    return {{}, &unit.ports[*port], path.substr(second + 1)};
}

Wrong SetAdminState(Port& port, std::string_view word) {
    const Wrong wrong = SetWord(port.adminState, word, kStates);
    if (!wrong) {
        port.operState = port.adminState;
    }
    return wrong;
}

Wrong SetSysLogLevel(Switch& unit, std::string_view word) {
    return SetWord(unit.sysLogLevel, word, kLogLevels);
}

Wrong Apply(Switch& unit, const Setting& setting) {
    const auto [key, value] = setting;
    if (key.starts_with(kPorts)) {
        return SetPort(unit, key.substr(kPorts.size()), value);
    }
    const Wrong wrong = SetAt(unit, SwitchFields(), key, value);
    if (wrong == CommandError::kUnknownCommand && key.starts_with(kSnmp)) {
        return SetTrap(unit, key.substr(kSnmp.size()), value);
    }
    if (!wrong && key == kSwitchState) {
        unit.operState = unit.adminState;
    }
    return wrong;
}

}  // namespace sim
