#include "src/mibs/fcmgmt/unit_values.h"

#include <cstring>

#include "src/base/text.h"

namespace snmpmain::fcmgmt {

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
    if (SwitchMgmtQueryf(instance.domain, type, kString, nullptr, "Get.Oper.Blade.%d.Type",
                         blade) != 0 ||
        std::strcmp(type.data(), "NotApplicable") == 0) {
        return SetText(value, plain);
    }
    ReplyText bladeInstance;
    if (SwitchMgmtQueryf(instance.domain, bladeInstance, kString, nullptr,
                         "Get.Oper.Blade.%d.Instance", blade) != 0) {
        return -1;
    }
    FormatText(value.text, "%s Blade %s-%s in Slot %d", lead, type.data(), bladeInstance.data(),
               blade);
    return SetText(value);
}

}  // namespace snmpmain::fcmgmt
