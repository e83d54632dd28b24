// Walks over the lists that switch management hands out key by key, the first one and then the one
// after each. A failed query ends a list; some switches answer the plain end mark instead. Main
// thread only.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <vector>

#include "src/link/link.h"

namespace snmpmain {

// No list is followed further: one that leads back into itself must come to an end too.
constexpr std::size_t kMaxListEntries = 65536;

struct KeyList {
    std::uint32_t domain;  // of the switch that is asked, 0 for the local one
    const char* first;     // command for the first key
    const char* next;      // command for a later key, completed by "." and the key before it
};

// A walk over one list.
class KeyWalk {
  public:
    explicit KeyWalk(const KeyList& list) : list_(list) {}

    // Moves to the first key, later to the next one. Returns 0, or -1 at the end of the list, also
    // when the list leads back to a key that was there before.
    int Next();

    // Whether the walk has broken off: its last question was not answered, and the list may go on.
    bool Unanswered() const {
        return unanswered_;
    }

    // Whether it has not come to the first key yet.
    bool AtStart() const {
        return asked_ == 0;
    }

    // The present key, which the caller may cut, and its position from 0.
    ReplyText& Key() {
        return key_;
    }
    std::size_t Position() const {
        return asked_ - 1;
    }

  private:
    KeyList list_;
    ReplyText key_{};
    ReplyText lastReply_{};  // the key as it was given
    ReplyText firstReply_{};
    ReplyText earlierReply_{};  // that of the last position that is a power of two
    std::size_t asked_ = 0;
    bool unanswered_ = false;
};

// No fabric has more domains.
constexpr std::size_t kMaxDomains = 256;

struct DomainList {
    std::array<std::uint16_t, kMaxDomains> domains{};
    std::size_t count = 0;

    std::span<const std::uint16_t> Listed() const {
        return std::span(domains).first(count);
    }
    void Add(std::uint16_t domain) {
        domains[count++] = domain;
    }
};

constexpr KeyList kDomainList{0, "Get.Oper.Fabric.FirstDomainID", "Get.Oper.Fabric.NextDomainID"};

// One step of a walk over that list, in switch management's order. kFailed: there is not even a
// first domain, or a reply is no number.
enum class DomainStep { kFound, kEnd, kNoAnswer, kFailed };
DomainStep NextDomain(KeyWalk& walk, std::uint16_t& domain);

// How far a fetch of a whole list has come: on its way, at its end, ended by the switch's no (with
// what was read by then), or waiting for an answer that did not come.
enum class Fetched { kGoesOn, kWhole, kFailed, kInterrupted };

// When a stale list is fetched: by the request that reads it, whole. One that is interrupted goes
// on with a later request, not with each one: after a second, then twice as long each time, up to
// ten.
class FetchSchedule {
  public:
    // Goes on with a stale list if it is time, and clears its flag when the fetch has ended.
    template <typename Fetch>
    void Refresh(std::uint16_t& stale, Fetch fetch) {
        if (stale == 1 && Clock::now() >= next_) {
            NoteOutcome(fetch(), stale);
        }
    }

  private:
    using Clock = std::chrono::steady_clock;
    void NoteOutcome(Fetched outcome, std::uint16_t& stale);

    Clock::time_point next_{};
    std::chrono::seconds pause_{0};
};

// Appends to a list. Returns 0, or -1 when there is no memory for it.
template <typename T>
int AppendEntry(std::vector<T>& list, const T& entry) {
    try {
        list.push_back(entry);
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

}  // namespace snmpmain
