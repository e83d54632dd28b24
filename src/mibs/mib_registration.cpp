#include "src/mibs/mib_registration.h"

namespace snmpmain {

bool FitValueLength(std::uint8_t type, std::size_t& length) {
    constexpr std::size_t kCell = sizeof(std::uint32_t);
    switch (type) {
        case ASN_INTEGER:
        case ASN_COUNTER:
        case ASN_GAUGE:
        case ASN_TIMETICKS:
            length = kCell;
            return true;
        case ASN_IPADDRESS:
            return length == kCell;
        case ASN_OBJECT_ID:
            return length % sizeof(oid) == 0 && length <= MAX_OID_LEN * sizeof(oid);
        case ASN_OCTET_STR:
            return true;
        default:
            return false;
    }
}

void RegisterRecords(const MibModule& module, variable* records, std::size_t recordSize,
                     std::size_t count) {
    if (register_mib(module.name, records, recordSize, count, module.prefix.data(),
                     module.prefix.size()) != MIB_REGISTERED_OK) {
        DEBUGTRACE;
        DEBUGMSGTL(("register_mib", "%s registration failed\n", module.name));
    }
}

}  // namespace snmpmain
