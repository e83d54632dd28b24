// The write methods of FCMGMT-MIB. Main thread only.
#pragma once

#include "src/mibs/write.h"

namespace snmpmain {
namespace fcmgmt {

extern const WrittenObject kUnitName;
extern const WrittenObject kUnitInfo;
extern const WrittenObject kUnitControl;
extern const WrittenObject kUnitContact;
extern const WrittenObject kUnitLocation;
extern const WrittenObject kUnitEventFilter;
extern const WrittenObject kPortControl;
extern const WrittenObject kPortName;
extern const WrittenObject kSystemUrl;
extern const WrittenObject kUnitUrl;

}  // namespace fcmgmt

constexpr WriteMethod* write_connUnitName = Write<fcmgmt::kUnitName>;
constexpr WriteMethod* write_connUnitInfo = Write<fcmgmt::kUnitInfo>;
constexpr WriteMethod* write_connUnitControl = Write<fcmgmt::kUnitControl>;
constexpr WriteMethod* write_connUnitContact = Write<fcmgmt::kUnitContact>;
constexpr WriteMethod* write_connUnitLocation = Write<fcmgmt::kUnitLocation>;
constexpr WriteMethod* write_connUnitEventFilter = Write<fcmgmt::kUnitEventFilter>;
constexpr WriteMethod* write_connUnitPortControl = Write<fcmgmt::kPortControl>;
constexpr WriteMethod* write_connUnitPortName = Write<fcmgmt::kPortName>;

// Both would change the address of the local switch's management. No handler installs them, so that
// managers cannot.
constexpr WriteMethod* write_systemUrl = Write<fcmgmt::kSystemUrl>;
constexpr WriteMethod* write_connUnitUrl = Write<fcmgmt::kUnitUrl>;

// These change the trap table of this agent; the main loop then has the switch told. The filter of
// a row is a severity, 1 to 10. The state creates (inactive 2, active 3) and destroys (1) rows:
// five at most, new ones with filter 6, for SNMPv2c.
WriteMethod write_trapRegFilter;
WriteMethod write_trapRegRowState;

}  // namespace snmpmain
