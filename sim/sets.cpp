#include "sim/sets.h"

#include <algorithm>
#include <utility>

#include "sim/commands.h"
#include "sim/settings.h"

namespace sim {
namespace {

constexpr std::string_view kPrivateEvent = "Cmd.Snmp.PrivateEvent.";
constexpr std::string_view kGenericEvent = "Cmd.Switch.GenericEvent.";
constexpr std::string_view kSysLogLevel = "Cmd.Switch.SysLogLevel.";
constexpr std::string_view kPortActions = "Cmd.UserPort.";

struct AreaRow {
    std::string_view open, save, activate;
    std::array<std::string_view, 2> settings;  // what its keys begin with
};
constexpr std::array<AreaRow, 3> kAreas = {{
    {"Cmd.Switch.EditConfig",
     "Cmd.Switch.SaveConfig",
     "Cmd.Switch.ActConfig",
     {"Config.Switch.", "Config.UserPort."}},
    {"Cmd.System.StartSetup",
     "Cmd.System.SaveSetup",
     "Cmd.System.ActSetup",
     {"Config.System.", "Config.System."}},
    {"Cmd.Snmp.StartSetup",
     "Cmd.Snmp.SaveSetup",
     "Cmd.Snmp.ActSetup",
     {"Config.Snmp.", "Config.Snmp."}},
}};

void ReleaseAdmin(Administration& state) {
    state.holder.reset();
    state.bypassDuplicates = false;
    for (AreaState& area : state.areas) {
        area.open = false;
        area.edits.clear();
    }
}

Wrong ApplyAll(Switch& unit, const Settings& settings) {
    for (const auto& [key, value] : settings) {
        if (const Wrong wrong = Apply(unit, {key, value})) {
            return wrong;
        }
    }
    return {};
}

bool HasDuplicates(const Switch& unit) {
    for (std::size_t i = 0; i < unit.traps.size(); i++) {
        for (std::size_t j = 0; j < i; j++) {
            if (unit.traps[i].address != "0.0.0.0" &&
                unit.traps[i].address == unit.traps[j].address &&
                unit.traps[i].port == unit.traps[j].port) {
                return true;
            }
        }
    }
    return false;
}

/// A command line at work on copies, which count only when all of it went well.
struct Line {
    Switch unit;
    Administration state;
    const Requester& from;
    std::vector<Notice> notices = {};

    Wrong Run(std::string_view command);
    Wrong TakeAdmin();
    Wrong Act(std::string_view command);
    Wrong ActOnPort(std::string_view path);
    Wrong ActOnArea(std::string_view command);
    Wrong Edit(std::string_view text);
    Wrong Save(AreaState& area);
    Wrong Activate(AreaState& area);
};

Wrong Line::Run(std::string_view command) {
    if (command == "Cmd.Switch.ReqAdmin") {
        return TakeAdmin();
    }
    const bool allowed = state.holder == from.id;
    const Wrong wrong = command.starts_with("Config.") ? Edit(command) : Act(command);
    return allowed || wrong == CommandError::kUnknownCommand ? wrong : CommandError::kNeedsAdmin;
}

Wrong Line::TakeAdmin() {
    if (state.holder && state.holder != from.id) {
        return CommandError::kRefused;
    }
    state.holder = from.id;
    return {};
}

Wrong Line::Act(std::string_view command) {
    if (command.starts_with(kSysLogLevel)) {
        return SetSysLogLevel(unit, command.substr(kSysLogLevel.size()));
    }
    if (command.starts_with(kPortActions)) {
        return ActOnPort(command.substr(kPortActions.size()));
    }
    if (command == "Cmd.Switch.RelAdmin") {
        ReleaseAdmin(state);
    } else if (command == "Cmd.Switch.Reset") {
        unit.uptime = 0 - from.runningSeconds;  // both are added when it is read
        notices.push_back(ResetNotice(unit));
    } else if (command == "Cmd.Snmp.BypassDuplicates") {
        state.bypassDuplicates = true;
    } else {
        return ActOnArea(command);
    }
    return {};
}

Wrong Line::ActOnPort(std::string_view path) {
    constexpr std::string_view kState = "AdminState.";
    const PortPath found = FindPort(unit, path);
    if (found.wrong) {
        return found.wrong;
    }
    if (found.rest.starts_with(kState)) {
        return SetAdminState(*found.port, found.rest.substr(kState.size()));
    }
    if (found.rest != "ClearCounters") {
        return CommandError::kUnknownCommand;
    }
    found.port->counters.clear();
    return {};
}

Wrong Line::ActOnArea(std::string_view command) {
    for (std::size_t i = 0; i < kAreas.size(); i++) {
        AreaState& area = state.areas[i];
        if (command == kAreas[i].open) {
            area.open = true;
            return {};
        }
        if (command == kAreas[i].save) {
            return Save(area);
        }
        if (command == kAreas[i].activate) {
            return Activate(area);
        }
    }
    return CommandError::kUnknownCommand;
}

Wrong Line::Edit(std::string_view text) {
    const auto row = std::ranges::find_if(kAreas, [text](const AreaRow& area) {
        return std::ranges::any_of(area.settings,
                                   [text](auto begin) { return text.starts_with(begin); });
    });
    if (row == kAreas.end()) {
        return CommandError::kUnknownCommand;
    }
    const std::optional<Setting> setting = SplitSetting(text);
    if (!setting) {
        return CommandError::kUnknownCommand;
    }
    Switch trial = unit;
    const Wrong wrong = Apply(trial, *setting);
    if (wrong == CommandError::kUnknownCommand) {
        return wrong;
    }
    AreaState& area = state.areas[static_cast<std::size_t>(row - kAreas.begin())];
    if (!area.open) {
        return CommandError::kNotOpen;
    }
    if (!wrong) {
        area.edits.insert_or_assign(std::string(setting->key), std::string(setting->value));
    }
    return wrong;
}

Wrong Line::Save(AreaState& area) {
    if (!area.open) {
        return CommandError::kNotOpen;
    }
    area.edits.merge(area.saved);
    area.saved = std::exchange(area.edits, {});
    area.open = false;
    Switch trial = unit;
    if (const Wrong wrong = ApplyAll(trial, area.saved)) {
        return wrong;
    }
    // Those that are in force already do not keep anyone from changing something else.
    if (!state.bypassDuplicates && trial.traps != unit.traps && HasDuplicates(trial)) {
        return CommandError::kBadValue;
    }
    return {};
}

Wrong Line::Activate(AreaState& area) {
    return ApplyAll(unit, std::exchange(area.saved, {}));
}

/// What a switch tells when it is no longer as it was.
std::vector<Notice> FindNotices(const Switch& before, const Switch& after) {
    Fabric old, changed;
    old.switches = {before};
    changed.switches = {after};
    return FindNotices(old, changed);
}

/// An event begins with its time in brackets; one that does not happens now.
void AppendToLog(Switch& unit, std::string_view event) {
    LogEntry entry{unit.log.empty() ? 1 : unit.log.back().id + 1, TimeText(), std::string(event)};
    if (const std::size_t end = event.find(']'); event.starts_with('[') && end != event.npos) {
        entry.time = event.substr(1, end - 1);
        entry.text = event.substr(end + 1);
    }
    unit.log.push_back(std::move(entry));
}

SetResult PassOn(const Switch& unit, std::string_view event) {
    if (!unit.eventSupport) {
        return {ErrorText(CommandError::kRefused)};
    }
    if (event == "Hello") {  // only asks whether such events are taken
        return {};
    }
    return {"", false, {PrivateEventNotice(unit, event)}};
}

}  // namespace

SetResult Sets::Run(Switch& unit, std::string_view line, const Requester& from) {
    Administration& state = states_[unit.domain];
    if (state.holder && from.now - state.used > kAdminPatience) {
        ReleaseAdmin(state);
    }
    if (state.holder == from.id) {
        state.used = from.now;
    }
    // The text of an event may hold a ';', so an event is a line of its own.
    if (line.starts_with(kPrivateEvent)) {
        return PassOn(unit, line.substr(kPrivateEvent.size()));
    }
    if (line.starts_with(kGenericEvent)) {
        AppendToLog(unit, line.substr(kGenericEvent.size()));
        return {"", true};
    }

    Line work{unit, state, from};
    do {
        const std::size_t end = std::min(line.find(';'), line.size());
        if (const Wrong wrong = work.Run(line.substr(0, end))) {
            return {ErrorText(*wrong)};
        }
        line.remove_prefix(std::min(end + 1, line.size()));
    } while (!line.empty());

    SetResult result{"", work.unit != unit, FindNotices(unit, work.unit)};
    std::ranges::move(work.notices, std::back_inserter(result.notices));
    unit = std::move(work.unit);
    state = std::move(work.state);
    state.used = from.now;
    return result;
}

}  // namespace sim
