#include "src/mibs/femgmt/writes.h"

#include <cstring>

#include "src/base/text.h"
#include "src/link/link.h"
#include "src/mibs/femgmt/tables.h"

namespace snmpmain {
namespace femgmt {
namespace {

constexpr std::size_t kNameLength = 32;

using Choice = WrittenObject::Choice;

constexpr Choice kAdminStates[] = {
    {1, Checked("Config.UserPort.%d.%d.AdminState.Online")},
    {2, Checked("Config.UserPort.%d.%d.AdminState.Offline")},
    {3, Checked("Config.UserPort.%d.%d.AdminState.Diagnostics")},
};
constexpr Choice kAdminModes[] = {{1, ""}, {2, ""}, {3, ""}};
constexpr Choice kCreditModels[] = {{1, ""}, {2, ""}};

constexpr WrittenObject kPortPhysRttov{.name = "fcFxPortPhysRttov",
                                       .find = FindWrittenModulePort,
                                       .buffer = &result,
                                       .table = &kPortPhysTable};

// The switch's bounds in milliseconds. Returns 0, or -1 when one cannot be had.
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
        return Refuse(kPortPhysRttov, status);
    }
    Instance instance;
    if (kPortPhysRttov.find(request.name, instance) != 0) {
        return SNMP_ERR_NOSUCHNAME;
    }
    std::uint32_t least = 0;
    std::uint32_t most = 0;
    if (ReadRttovRange(instance.domain, least, most) != 0) {
        return SNMP_ERR_COMMITFAILED;
    }
    return value >= least && value <= most ? SNMP_ERR_NOERROR
                                           : Refuse(kPortPhysRttov, SNMP_ERR_WRONGVALUE);
}

int SendRttov(const WriteRequest& request) {
    std::uint32_t value = 0;
    Instance instance;
    if (TakeGauge(request, value) != SNMP_ERR_NOERROR ||
        kPortPhysRttov.find(request.name, instance) != 0) {
        return SNMP_ERR_NOSUCHNAME;
    }
    MibValue again;
    const void* current = CurrentValue(kPortPhysRttov, request, instance, again);
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

constinit const WrittenObject kFabricName{.name = "fcFeFabricName", .longest = kNameLength};
constinit const WrittenObject kElementName{.name = "fcFeElementName", .longest = kNameLength};
constinit const WrittenObject kModuleName{.name = "fcFeModuleName", .longest = kNameLength};
constinit const WrittenObject kPortAdminMode{
    .name = "fcFxPortAdminMode", .choices = kAdminModes, .messageStart = "Write to "};
constinit const WrittenObject kPortBbCreditModel{.name = "fcFxPortBbCreditModel",
                                                 .choices = kCreditModels};

constinit const WrittenObject kPortPhysAdminStatus{.name = "fcFxPortPhysAdminStatus",
                                                   .find = FindWrittenModulePort,
                                                   .choices = kAdminStates,
                                                   .buffer = &result,
                                                   .table = &kPortPhysTable,
                                                   .laterName = ""};

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
