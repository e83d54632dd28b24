// Values of a unit that several of the MIB's tables and scalars have.
#pragma once

#include "src/mibs/shared_values.h"

namespace snmpmain {
namespace fcmgmt {

// 16 octets from the WWN of the instance's unit, or of none when it is not known.
int ReadUnitId(const Column& column, const Instance& instance, MibValue& value);
consteval ValueSource UnitId() {
    return Derived(ReadUnitId, "the unit's WWN");
}

// "http://" and the unit's management address.
int ReadUrl(const Column& column, const Instance& instance, MibValue& value);
consteval ValueSource Url() {
    return Computed(ReadUrl, "Get.Config.System.IPAddress");
}

// What a part of a blade is called: "LEAD Blade TYPE-INSTANCE in Slot BLADE" after the replies to
// both commands, or `plain` where the blade has no type or does not tell. Returns 0, or -1 when the
// blade tells its type but not its instance.
inline constexpr const char* kBladeNameCommands[] = {"Get.Oper.Blade.%d.Type",
                                                     "Get.Oper.Blade.%d.Instance"};
int ReadBladePartName(const Instance& instance, std::uint16_t blade, const char* lead,
                      const char* plain, MibValue& value);

}  // namespace fcmgmt

// Both would change the address of the local switch's management.
WriteMethod write_systemUrl;
WriteMethod write_connUnitUrl;

}  // namespace snmpmain
