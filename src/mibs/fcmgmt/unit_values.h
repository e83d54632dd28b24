// Values of a unit that several of the MIB's tables and scalars have.
#pragma once

#include "src/mibs/shared_values.h"

namespace snmpmain::fcmgmt {

// 16 octets from the WWN of the instance's unit, or of none when it is not known.
int ReadUnitId(const Column& column, const Instance& instance, MibValue& value);

// "http://" and the unit's management address, "Get.Config.System.IPAddress".
int ReadUrl(const Column& column, const Instance& instance, MibValue& value);

consteval ValueSource UrlOf() {
    return Computed(ReadUrl, "Get.Config.System.IPAddress");
}

// What a part of a blade is called: "LEAD Blade TYPE-INSTANCE in Slot BLADE" with the blade's
// "Get.Oper.Blade.%d.Type" and "Get.Oper.Blade.%d.Instance", or `plain` where the blade has no type
// or does not tell. Returns 0, or -1 when the blade tells its type but not its instance.
int ReadBladePartName(const Instance& instance, std::uint16_t blade, const char* lead,
                      const char* plain, MibValue& value);

}  // namespace snmpmain::fcmgmt
