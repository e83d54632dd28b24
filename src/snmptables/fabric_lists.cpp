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

int VisitDomains(const std::function<int(std::uint16_t domain)>& visit) {
    constexpr KeyList kDomains{0, "Get.Oper.Fabric.FirstDomainID", "Get.Oper.Fabric.NextDomainID"};
    ReplyText key;
    for (std::size_t position = 0; position < kMaxDomains; ++position) {
        if (AskKey(kDomains, position, key) != 0) {
            return position == 0 ? -1 : 0;
        }
        const auto domain = static_cast<std::uint16_t>(ReadDecimalBehindBlanks(key.data()));
        if (visit(domain) != 0) {
            return -1;
        }
        FormatText(key, "%d", domain);
    }
    return 0;
}

}  // namespace snmpmain
