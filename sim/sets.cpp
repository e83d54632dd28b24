#include "sim/sets.h"

#include "sim/commands.h"

namespace sim {
namespace {

constexpr std::string_view kPrivateEvent = "Cmd.Snmp.PrivateEvent.";
constexpr std::string_view kGenericEvent = "Cmd.Switch.GenericEvent.";

/// An event begins with its time in brackets; one that does not happens now.
void AppendToLog(Switch& unit, std::string_view event) {
    LogEntry entry{unit.log.empty() ? 1 : unit.log.back().id + 1, TimeText(), std::string(event)};
    if (const std::size_t end = event.find(']'); event.starts_with('[') && end != event.npos) {
        entry.time = event.substr(1, end - 1);
        entry.text = event.substr(end + 1);
    }
    unit.log.push_back(std::move(entry));
}

}  // namespace

SetResult Set(Switch& unit, std::string_view command) {
    if (command.starts_with(kPrivateEvent)) {
        if (!unit.eventSupport) {
            return {ErrorText(CommandError::kRefused)};
        }
        const std::string_view event = command.substr(kPrivateEvent.size());
        if (event == "Hello") {  // only asks whether such events are taken
            return {};
        }
        return {"", false, {PrivateEventNotice(unit, event)}};
    }
    if (command.starts_with(kGenericEvent)) {
        AppendToLog(unit, command.substr(kGenericEvent.size()));
        return {"", true};
    }
    return {ErrorText(CommandError::kNotSupported)};
}

}  // namespace sim
