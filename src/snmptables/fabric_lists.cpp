#include "src/snmptables/fabric_lists.h"

#include <cstring>

#include "src/base/text.h"
#include "src/base/trace_log.h"

namespace snmpmain {

int AskKey(const KeyList& list, std::size_t position, ReplyText& key) {
    if (position >= kMaxListEntries) {
        TraceLog(kError, "More than %u entries at %s", static_cast<unsigned>(kMaxListEntries),
                 list.first);
        return -1;
    }
    ReplyText reply;
    const std::uint16_t result = position == 0
                                     ? SwitchMgmtQuery(list.domain, list.first, reply, kString)
                                     : SwitchMgmtQueryf(list.domain, reply, kString, nullptr,
                                                        "%s.%s", list.next, key.data());
    if (result != 0 || std::strcmp(reply.data(), kListEnd) == 0) {
        return -1;
    }
    if (position > 0 && std::strcmp(reply.data(), key.data()) == 0) {
        TraceLog(kError, "%s does not lead on from %s", list.next, key.data());
        return -1;
    }
    key = reply;
    return 0;
}

Walk AskDomain(std::size_t position, std::uint16_t& domain) {
    constexpr KeyList kDomains{0, "Get.Oper.Fabric.FirstDomainID", "Get.Oper.Fabric.NextDomainID"};
    ReplyText key;
    FormatText(key, "%d", domain);
    if (AskKey(kDomains, position, key) != 0) {
        return position == 0 ? Walk::kFailed : Walk::kEnd;
    }
    domain = static_cast<std::uint16_t>(ReadDecimalBehindBlanks(key.data()));
    return Walk::kNext;
}

}  // namespace snmpmain
