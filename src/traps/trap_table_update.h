// Brings the trap destinations that managers have changed to the switch, on a thread of its own:
// the five of them take several commands, each of which may wait for seconds.
#pragma once

namespace snmpmain {

// Whether managers have changed the trap table since the last update was started. Main thread only.
bool IsTrapTableUpdateDue();

// Starts the update. When the switch does not take it, the rows are read from the switch again. One
// that waits for its predecessor to end covers later changes as well, so that there are never more
// than two. Returns 0, or -1 when the thread cannot be started; the rows are then the switch's
// again with the next reading. Main thread only.
int StartTrapTableUpdate();

}  // namespace snmpmain
