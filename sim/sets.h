// What "Set." commands do.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/fabric.h"
#include "sim/notices.h"

namespace sim {

struct SetResult {
    std::string reply;
    bool changed = false;              // the fabric is no longer as it was
    std::vector<Notice> notices = {};  // to be sent when the reply is out
};

/// Carries out a command (without "Set.") at a switch of the fabric.
SetResult Set(Switch& unit, std::string_view command);

}  // namespace sim
