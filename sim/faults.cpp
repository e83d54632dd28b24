#include "sim/faults.h"

#include "sim/frame.h"

namespace sim {
namespace {

bool Happens(double probability, std::mt19937_64& random) {
    if (probability <= 0) {
        return false;
    }
    const double roll = static_cast<double>(random() >> 11) * 0x1p-53;  // 0 <= roll < 1
    return roll < probability;
}

}  // namespace

ReplyFate DecideFate(const Faults& faults, std::mt19937_64& random) {
    ReplyFate fate;
    fate.lost = Happens(faults.lose, random);
    fate.doubled = Happens(faults.duplicate, random);
    fate.held = Happens(faults.reorder, random);
    fate.strayFirst = Happens(faults.wrongSequence, random);
    fate.statusSet = Happens(faults.statusByte, random);
    return fate;
}

bool LosesNotice(const Faults& faults, std::mt19937_64& random) {
    return Happens(faults.loseNotices, random);
}

std::uint32_t StraySequence(std::uint32_t sequence) {
    return sequence == kFirstReplySequence ? kLastReplySequence : sequence - 1;
}

}  // namespace sim
