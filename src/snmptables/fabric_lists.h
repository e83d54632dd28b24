// Walks over the lists that switch management hands out key by key, the first one and then the one
// behind each. A failed query ends a list; some switches answer the plain end mark instead. Main
// thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
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

// Calls `visit` (0 to go on) with every domain of the fabric in switch management's order. Returns
// 0, or -1 when there is not even a first one, a visit failed, or a reply is no number.
// "Get.Oper.Fabric.FirstDomainID", "Get.Oper.Fabric.NextDomainID.%d"
int VisitDomains(const std::function<int(std::uint16_t domain)>& visit);

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
