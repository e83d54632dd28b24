#include "src/link/config_command.h"

#include <array>
#include <chrono>

#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/switch_info.h"

namespace snmpmain {
namespace {

struct Area {
    const char* open;
    const char* save;
    const char* activate;
};

// By mode.
constexpr std::array<Area, 3> kAreas = {
    {{"Cmd.Switch.EditConfig", "Cmd.Switch.SaveConfig", "Cmd.Switch.ActConfig"},
     {"Cmd.System.StartSetup", "Cmd.System.SaveSetup", "Cmd.System.ActSetup"},
     {"Cmd.Snmp.StartSetup", "Cmd.Snmp.SaveSetup", "Cmd.Snmp.ActSetup"}}};

// A manager waits; a longer change than this is at a switch that does not answer.
constexpr std::chrono::seconds kPatience{5};

std::timed_mutex localConfiguration;

}  // namespace

std::unique_lock<std::timed_mutex> LockLocalConfiguration() {
    return std::unique_lock(localConfiguration);
}

int SendConfigCommand(std::uint32_t domain, const char* setting, ConfigMode mode) {
    const auto index = static_cast<std::size_t>(mode);
    if (index >= kAreas.size()) {
        return -1;
    }
    const Area& area = kAreas[index];
    char action[kCommandSize];
    FormatText(action, "%s;%s;%s;%s", area.open, setting, area.save, area.activate);
    return SendAdminCommand(domain, action);
}

int SendAdminCommand(std::uint32_t domain, const char* action) {
    std::unique_lock lock(localConfiguration, std::defer_lock);
    if (IsLocalDomain(domain) && !lock.try_lock_for(kPatience)) {
        return -1;
    }
    ReplyText reply;
    return SwitchMgmtQueryf(domain, reply, kString, nullptr,
                            "Set.Cmd.Switch.ReqAdmin;%s;Cmd.Switch.RelAdmin", action) == 0
               ? 0
               : -1;
}

}  // namespace snmpmain
