// The sweep: notifications are datagrams, and registrations live in switch management's memory, so
// either may be lost without a word. Once a minute the agent renews its registrations and asks for
// all that it keeps or has reported; a difference does what the lost notification would have done,
// through the same stored states, so that each change is reported once. Main thread only.
#pragma once

#include "src/base/progress.h"

namespace snmpmain {

// Every part is compared at most 57 seconds after the last time; after 50 already when nothing was
// asked or told for a second. The lists themselves are read anew after an hour. The
// first round begins 30 seconds after this. Where SNMPMAIN_SWEEP is set, a round takes that many
// seconds instead; for tests.
void StartSweep();

// Something was lost: all parts are due.
void HurrySweep();

// One step. At most 25 commands a second, none while the local switch does not answer.
Progress StepSweep();

}  // namespace snmpmain
