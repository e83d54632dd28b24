// What "Set." commands do.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/fabric.h"
#include "sim/notices.h"

namespace sim {

// A holder of admin rights who sets nothing at the switch for longer than this has lost them.
inline constexpr std::chrono::seconds kAdminPatience{30};

struct SetResult {
    std::string reply;
    bool changed = false;              // the fabric is no longer as it was
    std::vector<Notice> notices = {};  // to be sent when the reply is out
};

/// Who sends a command, and when.
struct Requester {
    std::uint64_t id = 0;  // of an address and port
    std::chrono::steady_clock::time_point now;
    std::uint32_t runningSeconds = 0;  // since the simulation began
};

/// Settings by key.
using Settings = std::map<std::string, std::string, std::less<>>;

/// What belongs together in opening, saving and activating.
struct AreaState {
    bool open = false;
    Settings edits;  // of the open area; lost with the admin rights
    Settings saved;  // not yet in force
};

/// What a switch remembers between command lines.
struct Administration {
    std::optional<std::uint64_t> holder;  // of the admin rights
    std::chrono::steady_clock::time_point used;
    bool bypassDuplicates = false;
    std::array<AreaState, 3> areas;
};

/// Carries out "Set." commands. One thread at a time.
class Sets {
  public:
    /// A command line (without "Set.") at a switch of the fabric. When a part of it fails, nothing
    /// of it has happened.
    SetResult Run(Switch& unit, std::string_view line, const Requester& from);

    /// Admin rights, edits and what was saved but not activated, at every switch.
    void Forget() {
        states_.clear();
    }

  private:
    std::map<std::uint16_t, Administration> states_;  // by domain
};

}  // namespace sim
