// ConfKeyTable: the lines of snmpd's configuration file and the switch's settings that fill them.
// Two sections follow one another, that for SNMPv1 and v2c and that for the SNMPv3 users. Main
// thread only.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "src/base/progress.h"
#include "src/link/reply_parser.h"

namespace snmpmain {

constexpr std::size_t kConfValueSize = 128;  // bytes with the terminator

struct ConfKey {
    const char* key;             // snmpd's keyword; "" where the value completes the row above
    char value[kConfValueSize];  // what the switch replied last, or what never changes
    const char* command;         // asks the local switch for it; "" for what never changes
    ConversionType type;
};

constexpr std::size_t kV2Keys = 29;
constexpr std::size_t kV3Keys = 10;

// The rows of both sections with an end mark each, "*endv2*" and "*endv3*".
extern std::array<ConfKey, kV2Keys + kV3Keys + 2> ConfKeyTable;

// The sections without their end marks.
inline std::span<ConfKey> V2Section() {
    return std::span(ConfKeyTable).first<kV2Keys>();
}
inline std::span<ConfKey> V3Section() {
    return std::span(ConfKeyTable).subspan<kV2Keys + 1, kV3Keys>();
}

// Asks the local switch for every value, in steps of one each; one that is unavailable stays as it
// is. kFailed when the switch left the way in (communities, or whether SNMPv3 takes their place)
// unanswered and never told it before: a file written now would let nobody in.
void BeginConfSettings();
Progress StepConfSettings();

// The value of a key of the SNMPv3 section.
const char* V3Value(const char* key);

// Back to the values before the first reading; for tests.
void ResetConfKeyTable();

}  // namespace snmpmain
