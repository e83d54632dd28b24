// fcFxPortPhysRttov: R_T_TOV, in milliseconds, of the port's switch, whose other ports show it as
// well. Main thread only.
#pragma once

#include "src/mibs/column.h"

namespace snmpmain {

// The column's command gives the number. This agent has always reported the type's code, 66, as the
// length of this value, and goes on doing so: Guarded puts it right on the way to the library,
// which could not take it.
namespace femgmt {
int ReadRttov(const Column& column, const Instance& instance, MibValue& value);
}

// Within "Get.LowerRange.Switch.R_T_TOV" and "Get.UpperRange.Switch.R_T_TOV".
WriteMethod write_fcFxPortPhysRttov;

}  // namespace snmpmain
