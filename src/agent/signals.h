// The process's signals. Main thread only.
#pragma once

namespace snmpmain {

// Installs the handlers of SIGPIPE (survived) and SIGSEGV (ends the process as the action before
// would have, a core file included) and sets the diagnostic level to silent. Returns the result of
// the last sigaction call.
int InitSignals();

// Logs a signal that the handler of SIGPIPE took since the last call, several as one. Formatting
// and the system log take locks that the interrupted code may hold, so the handler itself only
// takes note. Main thread only.
void LogCaughtSignals();

}  // namespace snmpmain
