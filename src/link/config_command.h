// Changes of a switch's configuration: one command line that takes admin rights, opens an area,
// makes the change, saves and activates it, and gives the rights back.
#pragma once

#include <cstdint>
#include <mutex>

namespace snmpmain {

// The area that a setting belongs to.
enum class ConfigMode : std::uint32_t {
    kSwitchConfiguration = 0,
    kSystemSetup = 1,
    kSnmpSetup = 2,
};

// Sends a change ("Config.Switch.SymName.core-2", "Cmd.Switch.Reset") to a switch, 0 for the local
// one. Returns 0, or -1 when the mode is none of the three (nothing is sent), when the line does
// not fit a request, and when the switch refuses it or does not answer. What the switch has done by
// then stays as it is; there is nothing to give back. Takes 20 seconds when the switch does not
// answer. Any thread that may query.
int SendConfigCommand(std::uint32_t domain, const char* setting, ConfigMode mode);

// Sends an action that needs admin rights but changes no configuration: taken, carried out and
// given back in one line. For the rest as SendConfigCommand.
int SendAdminCommand(std::uint32_t domain, const char* action);

// To be held for a change at the local switch that takes several commands: admin rights belong to
// the whole agent, and the end of another change would take them away. The two above wait for it,
// up to 5 seconds, and fail then. Not for changes of other switches.
[[nodiscard]] std::unique_lock<std::mutex> LockLocalConfiguration();

}  // namespace snmpmain
