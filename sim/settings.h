// Settings that a command can change: their keys, and what values are possible.
#pragma once

#include <optional>
#include <string_view>

#include "sim/commands.h"
#include "sim/fabric.h"

namespace sim {

/// What is wrong with a command; nothing when it can be carried out.
using Wrong = std::optional<CommandError>;

// The longest text that a setting takes.
inline constexpr std::size_t kMaxSetting = 128;

/// A path and the value after it: "Config.Switch.SymName" and "core.1".
struct Setting {
    std::string_view key;
    std::string_view value;
};

/// Takes "Config.Switch.SymName.core.1" apart. An index adds to a path's length, not to its value.
/// None without a value, which may be empty.
std::optional<Setting> SplitSetting(std::string_view text);

/// A port of a path, and what follows its number.
struct PortPath {
    Wrong wrong;
    Port* port = nullptr;  // none when something is wrong
    std::string_view rest;
};

/// Reads "BLADE.PORT.REST".
PortPath FindPort(Switch& unit, std::string_view path);

/// Online, Offline or Diagnostics; the port goes there.
Wrong SetAdminState(Port& port, std::string_view word);

Wrong SetSysLogLevel(Switch& unit, std::string_view word);

/// Changes what is read below "Config.Switch.", "Config.UserPort.", "Config.System." and
/// "Config.Snmp."; the switch stays as it was when something is wrong.
Wrong Apply(Switch& unit, const Setting& setting);

}  // namespace sim
