// The write methods of FIBRE-CHANNEL-FE-MIB. Main thread only.
#pragma once

#include "src/mibs/write.h"

namespace snmpmain {
namespace femgmt {

extern const WrittenObject kFabricName;
extern const WrittenObject kElementName;
extern const WrittenObject kModuleName;
extern const WrittenObject kPortAdminMode;
extern const WrittenObject kPortBbCreditModel;
extern const WrittenObject kPortPhysAdminStatus;

}  // namespace femgmt

// Accept values and change nothing. No handler installs them, so that managers are told that these
// objects cannot be set rather than that they have been.
constexpr WriteMethod* write_fcFeFabricName = Accept<femgmt::kFabricName>;
constexpr WriteMethod* write_fcFeElementName = Accept<femgmt::kElementName>;
constexpr WriteMethod* write_fcFeModuleName = Accept<femgmt::kModuleName>;
constexpr WriteMethod* write_fcFxPortAdminMode = Accept<femgmt::kPortAdminMode>;
constexpr WriteMethod* write_fcFxPortBbCreditModel = Accept<femgmt::kPortBbCreditModel>;

constexpr WriteMethod* write_fcFxPortPhysAdminStatus = Write<femgmt::kPortPhysAdminStatus>;

// Sets R_T_TOV, in milliseconds, of the port's switch, whose other ports show it as well; within
// "Get.LowerRange.Switch.R_T_TOV" and "Get.UpperRange.Switch.R_T_TOV".
WriteMethod write_fcFxPortPhysRttov;

}  // namespace snmpmain
