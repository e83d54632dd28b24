#include "src/base/trace_log.h"

#include <syslog.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace snmpmain {
namespace {

constexpr int kMessageSize = 512;

struct TraceLogState {
    std::atomic<std::uint8_t> level{kSilentLevel};
    std::atomic<bool> open{false};
};

TraceLogState state;

int SyslogPriority(int level) {
    switch (level) {
        case kTrace:
            return LOG_USER | LOG_INFO;
        case kError:
            return LOG_USER | LOG_WARNING;
        default:
            return LOG_USER | LOG_CRIT;
    }
}

}  // namespace

int TraceLog(int level, const char* format, ...) {
    std::array<char, kMessageSize> message;
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(message.data(), message.size(), format, arguments);
    va_end(arguments);
    if (length < 0) {
        return 0;
    }
    if (IsTraced(level)) {
        ::syslog(SyslogPriority(level), "%s", message.data());
    }
    return std::min(length, kMessageSize - 1);
}

bool IsTraced(int level) {
    return state.open && level >= state.level;
}

void SetDiagnosticLevel(std::uint8_t level) {
    state.level = level;
}

void OpenTraceLog() {
    ::openlog("SNMP", 0, LOG_USER);
    state.open = true;
}

}  // namespace snmpmain
