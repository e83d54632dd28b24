// The diagnostic log of every module. It is silent until switch management has enabled logging for
// this agent; from then on messages at or above the diagnostic level go to the system log.
#pragma once

#include <cstdint>

namespace snmpmain {

// Levels of messages, and the diagnostic levels that let them pass.
constexpr int kTrace = 0;        // "Info": message log and trace lines
constexpr int kError = 1;        // "Warn": failed lookups, malformed input
constexpr int kSevere = 2;       // "Critical": failures of switch management or of requests
constexpr int kSilentLevel = 3;  // above every message: nothing passes

// Formats the message into a 512-byte buffer on the stack, cutting what does not fit, and writes it
// to the system log when the log is open and `level` is at or above the diagnostic level. Returns
// the formatted length (at most 511). Any thread; not from signal handlers.
int TraceLog(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Whether a message of this level would be written: lets a caller skip costly arguments. Any
// thread.
bool IsTraced(int level);

// Any thread.
void SetDiagnosticLevel(std::uint8_t level);

// Opens the system log with identity "SNMP", no options, facility user. Main thread only.
void OpenTraceLog();

}  // namespace snmpmain
