// What switches tell their agents unasked.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sim/fabric.h"

namespace sim {

struct Notice {
    std::uint16_t domain = 0;   // of the switch that tells it; never 0
    std::string text;           // begins with the kind
    bool ownAgentOnly = false;  // not for the agents of other switches that registered here
};

/// What the switches tell about a change of the fabric: switch by switch, by ascending kind and
/// number. A switch that joins, leaves or is silent tells nothing.
std::vector<Notice> FindNotices(const Fabric& before, const Fabric& after);

/// How a switch hands a private event on to its own agent. The fields of an event are counted from
/// the first '[', so none comes before it.
Notice PrivateEventNotice(const Switch& unit, std::string_view event);

/// How a switch tells that it was reset.
Notice ResetNotice(const Switch& unit);

/// "Wed Nov 14 21:38:13 2026", now.
std::string TimeText();

}  // namespace sim
