// Faults of the path between switch management and the agent, and the dice that decide them.
#pragma once

#include <cstdint>
#include <random>

namespace sim {

/// Every probability is from 0 (never) to 1 (always). The faults may be combined.
struct Faults {
    double lose = 0;           // a reply is not sent
    double loseNotices = 0;    // a notification to one receiver is not sent
    unsigned delayMs = 0;      // milliseconds before a reply is sent; other requests go on
    double duplicate = 0;      // a reply is sent twice
    double reorder = 0;        // a reply is held back until after the next one, which is not
    unsigned reorderMs = 300;  // milliseconds after which a held reply goes out all the same
    double wrongSequence = 0;  // a stray reply with another sequence precedes the real one
    double statusByte = 0;     // a reply carries the status value below
    std::uint8_t statusValue = 1;
    bool silent = false;     // nothing is answered
    std::uint64_t seed = 1;  // the same seed and the same requests give the same faults
};

/// What happens to one reply.
struct ReplyFate {
    bool lost = false;
    bool doubled = false;
    bool held = false;
    bool strayFirst = false;
    bool statusSet = false;
};

/// Rolls the dice for one reply. A fault of probability 0 rolls none, so that switching one fault
/// on does not change how the others fall.
ReplyFate DecideFate(const Faults& faults, std::mt19937_64& random);

/// Whether one notification gets lost on its way to one receiver.
bool LosesNotice(const Faults& faults, std::mt19937_64& random);

/// The reply sequence just before the given one: what a late reply of the request before carries.
std::uint32_t StraySequence(std::uint32_t sequence);

}  // namespace sim
