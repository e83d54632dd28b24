#include "src/mibs/fcmgmt/unit_values.h"

#include <cstring>
#include <string>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/mibs/write.h"

namespace snmpmain {
namespace fcmgmt {

int ReadUnitId(const Column&, const Instance& instance, MibValue& value) {
    return SetHexOctets(value, WwnOfUnit(instance), kUnitIdSize);
}

int ReadUrl(const Column& column, const Instance& instance, MibValue& value) {
    ReplyText address;
    if (SwitchMgmtQuery(instance.domain, column.source.command, address, kIpAddress) != 0) {
        return -1;
    }
    FormatText(value.text, "http://%s", address.data());
    return SetText(value);
}

int ReadBladePartName(const Instance& instance, std::uint16_t blade, const char* lead,
                      const char* plain, MibValue& value) {
    ReplyText type;
    if (SwitchMgmtQueryf(instance.domain, type, kString, nullptr, kBladeNameCommands[0], blade) !=
            0 ||
        std::strcmp(type.data(), "NotApplicable") == 0) {
        return SetText(value, plain);
    }
    ReplyText bladeInstance;
    if (SwitchMgmtQueryf(instance.domain, bladeInstance, kString, nullptr, kBladeNameCommands[1],
                         blade) != 0) {
        return -1;
    }
    FormatText(value.text, "%s Blade %s-%s in Slot %d", lead, type.data(), bladeInstance.data(),
               blade);
    return SetText(value);
}

}  // namespace fcmgmt

namespace {

// Later messages name the system's URL for both.
int WriteAddress(const char* object, const WriteRequest& request) {
    constexpr std::size_t kLongest = 32;
    if (!IsWritingPhase(request.action)) {
        return SNMP_ERR_NOERROR;
    }
    if (const int status = CheckText(object, kLongest, request);
        status != SNMP_ERR_NOERROR || request.action == RESERVE1) {
        return status;
    }
    const std::string address(reinterpret_cast<const char*>(request.value), request.length);
    if (request.current != nullptr && address == reinterpret_cast<const char*>(request.current)) {
        return SNMP_ERR_NOERROR;
    }
    const std::string setting = "Config.System.IPAddress." + address;
    if (SendConfigCommand(0, setting.c_str(), ConfigMode::kSwitchConfiguration) != 0) {
        TraceLog(kSevere, "write to systemUrl: SNMP_ERR_COMMITFAILED\n");
        return SNMP_ERR_COMMITFAILED;
    }
    return SNMP_ERR_NOERROR;
}

}  // namespace

int write_systemUrl(int action, u_char* value, u_char type, std::size_t length, u_char* current,
                    oid* name, std::size_t nameLength) {
    return WriteAddress("systemUrl", {action, value, type, length, current, {name, nameLength}});
}

int write_connUnitUrl(int action, u_char* value, u_char type, std::size_t length, u_char* current,
                      oid* name, std::size_t nameLength) {
    return WriteAddress("connUnitUrl", {action, value, type, length, current, {name, nameLength}});
}

}  // namespace snmpmain
