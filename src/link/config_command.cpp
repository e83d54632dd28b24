#include "src/link/config_command.h"

#include <array>
#include <chrono>
#include <thread>

#include "src/base/text.h"
#include "src/link/addressing.h"
#include "src/link/link.h"

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

std::mutex localConfiguration;

// Looks again and again: of a lock with a time-out the thread sanitizer would learn only the end.
bool LockInTime(std::unique_lock<std::mutex>& lock) {
    constexpr std::chrono::milliseconds kPause{5};
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!lock.try_lock()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

}  // namespace

std::unique_lock<std::mutex> LockLocalConfiguration() {
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
    if (IsLocalDomain(domain) && !LockInTime(lock)) {
        return -1;
    }
    ReplyText reply;
    return SwitchMgmtQueryf(domain, reply, kString, nullptr,
                            "Set.Cmd.Switch.ReqAdmin;%s;Cmd.Switch.RelAdmin", action) == 0
               ? 0
               : -1;
}

}  // namespace snmpmain
