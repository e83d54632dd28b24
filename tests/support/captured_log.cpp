#include "tests/support/captured_log.h"

#include <syslog.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include "src/base/trace_log.h"

namespace {

std::mutex mutex;
// Never destroyed: the ListenThread logs until the process is gone.
std::vector<std::string>& messages = *new std::vector<std::string>;

}  // namespace

// In place of the C library's.
extern "C" void vsyslog(int priority, const char* format, va_list arguments) {
    char text[2048];
    std::vsnprintf(text, sizeof(text), format, arguments);
    const std::lock_guard lock(mutex);
    messages.push_back(std::to_string(priority) + ":" + text);
}

extern "C" void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsyslog(priority, format, arguments);
    va_end(arguments);
}

namespace snmpmain {

void TraceEverything() {
    OpenTraceLog();
    SetDiagnosticLevel(kTrace);
    TakeLogged();
}

std::vector<std::string> TakeLogged() {
    const std::lock_guard lock(mutex);
    return std::exchange(messages, {});
}

bool Logged(const std::string& text) {
    const std::vector<std::string> taken = TakeLogged();
    return std::ranges::any_of(
        taken, [&](const std::string& m) { return m.find(text) != std::string::npos; });
}

}  // namespace snmpmain
