#include "src/link/config_command.h"

#include <array>

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
    {{"Cmd.Switch.EditConfig;", "Cmd.Switch.SaveConfig;", "Cmd.Switch.ActConfig;"},
     {"Cmd.System.StartSetup;", "Cmd.System.SaveSetup;", "Cmd.System.ActSetup;"},
     {"Cmd.Snmp.StartSetup;", "Cmd.Snmp.SaveSetup;", "Cmd.Snmp.ActSetup;"}}};

std::mutex localConfiguration;

}  // namespace

std::unique_lock<std::mutex> LockLocalConfiguration() {
    return std::unique_lock(localConfiguration);
}

int SendConfigCommand(std::uint32_t domain, const char* setting, ConfigMode mode) {
    const auto index = static_cast<std::size_t>(mode);
    if (index >= kAreas.size()) {
        return -1;
    }
    std::unique_lock<std::mutex> lock;
    if (IsLocalDomain(domain)) {
        lock = LockLocalConfiguration();
    }
    const Area& area = kAreas[index];
    ReplyText reply;
    return SwitchMgmtQueryf(domain, reply, kString, nullptr,
                            "Set.Cmd.Switch.ReqAdmin;%s%s;%s%sCmd.Switch.RelAdmin", area.open,
                            setting, area.save, area.activate) == 0
               ? 0
               : -1;
}

}  // namespace snmpmain
