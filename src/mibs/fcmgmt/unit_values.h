// Values of a unit that several of the MIB's tables and scalars have.
#pragma once

#include "src/mibs/column.h"

namespace snmpmain::fcmgmt {

// Sizes in octets. Unit ids, and the WWNs of most tables, are a WWN and 8 zeros.
constexpr std::uint32_t kWwnSize = 8;
constexpr std::uint32_t kUnitIdSize = 16;
constexpr std::uint32_t kPortIdSize = 3;

// 16 octets from the WWN of the instance's unit, or of none when it is not known.
int ReadUnitId(const Column& column, const Instance& instance, MibValue& value);

// The WWN text of the instance's unit, that of the local one as read at start-up, of others as in
// connUnitTbl; zeros when it is not known.
const char* WwnOfUnit(const Instance& instance);

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
