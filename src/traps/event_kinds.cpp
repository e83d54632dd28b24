#include "src/traps/event_kinds.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace snmpmain {
namespace {

constexpr EventKind kEventKindTable[] = {
    {0, ""},                         // 0
    {8, "Snmp config change"},       // 1
    {8, "Switch config change"},     // 2
    {8, "System config change"},     // 3
    {8, "User Port config change"},  // 4
    {8, "Fabric oper change"},       // 5
    {8, "Topology oper change"},     // 6
    {8, "Zoning change"},            // 7
    {4, ""},                         // 8
    {8, "NameServer oper change"},   // 9
    {8, "Eport oper change"},        // 10
    {4, ""},                         // 11
    {8, "Switch oper change"},       // 12
    {8, "Switch state change"},      // 13
    {6, ""},                         // 14
    {6, ""},                         // 15
    {4, ""},                         // 16
    {4, ""},                         // 17
    {8, "Chassis oper change"},      // 18
    {4, ""},                         // 19
    {4, ""},                         // 20
    {4, ""},                         // 21
    {4, ""},                         // 22
    {8, "Blade oper change"},        // 23
    {4, ""},                         // 24
    {4, ""},                         // 25
    {4, ""},                         // 26
    {8, "User Port state change"},   // 27
    {8, "User Port oper change"},    // 28
    {6, ""},                         // 29
    {4, ""},                         // 30
    {4, ""},                         // 31
    {4, ""},                         // 32
    {4, ""},                         // 33
    {4, ""},                         // 34
    {4, ""},                         // 35
    {4, ""},                         // 36
    {8, "Time zone has changed"},    // 37
    {65535, ""},                     // closing
};
static_assert(std::size(kEventKindTable) == kLastEventKind + 2);

struct SeverityName {
    const char* name;
    std::uint32_t severity;
};

constexpr SeverityName kSeverityNameTable[] = {
    {"emergency", 2}, {"alert", 3}, {"critical", 4}, {"error", 5}, {"warning", 6},
    {"notify", 7},    {"info", 8},  {"debug", 9},    {"mark", 10},
};
constexpr std::uint32_t kMostSevere = 2;
constexpr std::uint32_t kLeastSevere = 10;

}  // namespace

const EventKind& GetEventKind(std::uint32_t kind) {
    constexpr std::uint32_t kClosing = std::size(kEventKindTable) - 1;
    return kEventKindTable[std::min(kind, kClosing)];
}

std::uint32_t SeverityFromName(const char* text) {
    const auto known = std::ranges::find_if(kSeverityNameTable, [&](const SeverityName& entry) {
        return std::strstr(entry.name, text) != nullptr;
    });
    return known == std::end(kSeverityNameTable) ? kLeastSevere : known->severity;
}

const char* NameOfSeverity(std::uint32_t severity) {
    const std::uint32_t clamped = std::clamp(severity, kMostSevere, kLeastSevere);
    return std::ranges::find(kSeverityNameTable, clamped, &SeverityName::severity)->name;
}

}  // namespace snmpmain
