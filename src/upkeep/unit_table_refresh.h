// Keeps connUnitTbl in step with the fabric after start-up. Main thread only.
#pragma once

#include <cstdint>

#include "src/base/progress.h"

namespace snmpmain {

// A discovery with up to three repetitions, one second apart, with notifications of the other
// switches off meanwhile; then reports every unit that has left. A step is one command. kFailed,
// with a line in the system log, when the third walk failed as well; at once while the local switch
// does not answer.
void BeginConnUnitTableRefresh();
Progress RefreshConnUnitTable();

// A switch that was silent answers again (0: the local one): registers with it, greets it and has
// its status read, or, for one that is not in the table, marks that for a refresh. So does the
// return of the local switch, through which all others are reached.
void WelcomeBack(std::uint16_t domain);

}  // namespace snmpmain
