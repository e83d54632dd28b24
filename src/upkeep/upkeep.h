// What notifications want brought up to date: a set of marks. The marked work is done once, however
// many asked for it, when no notification waits any more or a second after the first mark; what is
// marked while it is done is done once more. Main thread only.
#pragma once

#include <cstdint>

#include "src/base/progress.h"
#include "src/link/notify_queue.h"

namespace snmpmain {

// In the order in which it is done.
enum class Upkeep : std::uint8_t {
    kSwitchInfo,       // the facts about the local switch; up to four attempts, one second apart
    kLogLevel,         // what the diagnostic log takes
    kUnitTable,        // connUnitTbl
    kSnmpdConf,        // the SNMP daemon's configuration
    kTrapDestinations  // TrapTable
};
constexpr std::size_t kUpkeeps = 5;

void MarkUpkeep(Upkeep what);

// The unit table is to be refreshed on account of a status byte: what is pending is cleared,
// and set again when the refresh fails.
void MarkUnitTableForStatusByte();

// It is to be refreshed since a switch has come back: when that is done, it is done for all of
// them.
void MarkUnitTableForReturn();

// All notifications from the next one on wait until what is marked is done: it decides about them.
void HoldNotifications();

// Whether the oldest notification has to wait for what is marked or being done.
bool MustWaitForUpkeep(const NotificationRecord& record);

// Whether there is something to do now; whether that is marked or being done.
bool IsUpkeepDue();
bool IsOutstanding(Upkeep what);

// One step. kDone when nothing is left of what was marked when it was begun.
Progress StepUpkeep();

// Forgets all marks; for tests.
void ResetUpkeep();

}  // namespace snmpmain
