#include "src/mibs/femgmt/rttov.h"

#include <cstring>

#include "src/base/text.h"
#include "src/link/link.h"
#include "src/mibs/femgmt/femgmt.h"

namespace snmpmain {
namespace femgmt {
namespace {

constexpr const char* kName = "fcFxPortPhysRttov";

// The switch's bounds in milliseconds. Returns 0, or -1 when one is unavailable.
int ReadRttovRange(std::uint16_t domain, std::uint32_t& least, std::uint32_t& most) {
    ReplyText ignored;
    return SwitchMgmtQuery(domain, "Get.UpperRange.Switch.R_T_TOV", ignored, kInteger, &most) ==
                       0 &&
                   SwitchMgmtQuery(domain, "Get.LowerRange.Switch.R_T_TOV", ignored, kInteger,
                                   &least) == 0
               ? 0
               : -1;
}

int CheckRttov(const WriteRequest& request) {
    std::uint32_t value = 0;
    if (const int status = TakeGauge(request, value); status != SNMP_ERR_NOERROR) {
        return Refuse(kName, status);
    }
    Instance instance;
    if (FindInstance(kPortPhysTable, request, instance) != 0) {
        return SNMP_ERR_NOSUCHNAME;
    }
    std::uint32_t least = 0;
    std::uint32_t most = 0;
    if (ReadRttovRange(instance.domain, least, most) != 0) {
        return SNMP_ERR_COMMITFAILED;
    }
    return value >= least && value <= most ? SNMP_ERR_NOERROR : Refuse(kName, SNMP_ERR_WRONGVALUE);
}

int SendRttov(const WriteRequest& request) {
    std::uint32_t value = 0;
    Instance instance;
    if (TakeGauge(request, value) != SNMP_ERR_NOERROR ||
        FindInstance(kPortPhysTable, request, instance) != 0) {
        return SNMP_ERR_NOSUCHNAME;
    }
    MibValue again;
    const void* current = CurrentValue(kPortPhysTable, request, instance, again);
    if (current != nullptr && std::memcmp(current, &value, sizeof(value)) == 0) {
        return SNMP_ERR_NOERROR;
    }
    char setting[kCommandSize];
    FormatText(setting, "Config.Switch.R_T_TOV.%u", value);
    return SendConfigCommand(instance.domain, setting, ConfigMode::kSwitchConfiguration) == 0
               ? SNMP_ERR_NOERROR
               : SNMP_ERR_COMMITFAILED;
}

}  // namespace

int ReadRttov(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryNumber(column, instance, value) != 0) {
        return -1;
    }
    value.length = ASN_GAUGE;
    return 0;
}

}  // namespace femgmt

int write_fcFxPortPhysRttov(int action, u_char* value, u_char type, std::size_t length,
                            u_char* current, oid* name, std::size_t nameLength) {
    const WriteRequest request{action, value, type, length, current, {name, nameLength}};
    switch (action) {
        case RESERVE1:
            return femgmt::CheckRttov(request);
        case ACTION:
            return femgmt::SendRttov(request);
        default:
            return SNMP_ERR_NOERROR;
    }
}

}  // namespace snmpmain
