// The kinds of events that switch management reports, with their severities and display names.
#pragma once

#include <cstdint>

namespace snmpmain {

struct EventKind {
    std::uint16_t severity;  // 2 (emergency) to 10 (mark); a smaller number is more severe
    const char* name;        // "" for kinds that arrive with a text of their own
};

constexpr std::uint16_t kFirstEventKind = 1;
constexpr std::uint16_t kLastEventKind = 37;  // switch management sends none beyond

// Kinds 0 to 37; any other gives the closing entry, severity 65535 without a name.
const EventKind& GetEventKind(std::uint32_t kind);

// Kinds less severe than this are configuration and operational change notices, whose text says
// nothing but the kind.
constexpr std::uint16_t kNotifySeverity = 7;

}  // namespace snmpmain
