#include "src/snmptables/fabric_lists.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "src/base/text.h"
#include "src/base/trace_log.h"

namespace snmpmain {

int KeyWalk::Next() {
    if (asked_ >= kMaxListEntries) {
        TraceLog(kError, "More than %u entries at %s", static_cast<unsigned>(kMaxListEntries),
                 list_.first);
        return -1;
    }
    ReplyText reply;
    const Answer answer = asked_ == 0 ? AskSwitch(list_.domain, list_.first, reply, kString)
                                      : AskSwitchf(list_.domain, reply, kString, nullptr, "%s.%s",
                                                   list_.next, key_.data());
    unanswered_ = answer.outcome == Outcome::kNoAnswer;
    if (answer.outcome != Outcome::kAnswered || std::strcmp(reply.data(), kListEnd) == 0) {
        return -1;
    }
    // A list that leads back to its middle is noticed only when it has come round again.
    // What counts are the replies: a caller may have rewritten the keys.
    if (asked_ == 1) {
        firstReply_ = lastReply_;
    }
    if (std::has_single_bit(asked_)) {
        earlierReply_ = lastReply_;
    }
    if (asked_ > 0 && (std::strcmp(reply.data(), firstReply_.data()) == 0 ||
                       std::strcmp(reply.data(), earlierReply_.data()) == 0)) {
        TraceLog(kError, "%s leads back to %s", list_.next, reply.data());
        return -1;
    }
    key_ = reply;
    lastReply_ = reply;
    ++asked_;
    return 0;
}

DomainStep NextDomain(KeyWalk& walk, std::uint16_t& domain) {
    if (!walk.AtStart() && walk.Position() + 1 >= kMaxDomains) {
        return DomainStep::kEnd;
    }
    if (walk.Next() != 0) {
        return walk.Unanswered() ? DomainStep::kNoAnswer
               : walk.AtStart()  ? DomainStep::kFailed
                                 : DomainStep::kEnd;
    }
    const char* text = walk.Key().data();
    if (!IsDecimalDigit(text[std::strspn(text, " ")])) {
        return DomainStep::kFailed;
    }
    domain = static_cast<std::uint16_t>(ReadDecimalBehindBlanks(text));
    FormatText(walk.Key(), "%d", domain);
    return DomainStep::kFound;
}

void FetchSchedule::NoteOutcome(Fetched outcome, std::uint16_t& stale) {
    constexpr std::chrono::seconds kShortest{1};
    constexpr std::chrono::seconds kLongest{10};
    if (outcome == Fetched::kInterrupted) {
        pause_ = std::clamp(2 * pause_, kShortest, kLongest);
        next_ = Clock::now() + pause_;
    } else {
        stale = 0;
        *this = {};
    }
}

}  // namespace snmpmain
