// The system log: severe operational failures, written whatever the diagnostic level is.
#pragma once

namespace snmpmain {

// Writes to the system log with priority value 8: facility user, severity emergency. Any thread.
void SystemLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace snmpmain
