// The units' statuses in connUnitTbl, read after each discovery. Main thread only.
#pragma once

#include <cstdint>

namespace snmpmain {

// Has the statuses of all units read, or of one that has come back, before the others.
void WantUnitStatuses();
void WantUnitStatus(std::uint16_t domain);

// Whether statuses remain to be read.
bool IsUnitStatusWanted();

// One step, of one query, in row order; does nothing unless a status is wanted. Always 0.
int RefreshNextUnitStatus();

}  // namespace snmpmain
