#include "src/base/clock.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <span>

namespace snmpmain {
namespace {

// The time zone is read from the environment whenever a time is formatted.
std::mutex timeZoneMutex;

const char* FormatLocalTime(std::span<char> buffer, const char* format) {
    const std::lock_guard lock(timeZoneMutex);
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (::localtime_r(&now, &local) == nullptr ||
        std::strftime(buffer.data(), buffer.size(), format, &local) == 0) {
        buffer[0] = '\0';
    }
    return buffer.data();
}

}  // namespace

const char* ClockStamp() {
    static std::array<char, 16> stamp;
    return FormatLocalTime(stamp, "[%H:%M:%S]");
}

const char* DateTimeString() {
    thread_local std::array<char, 40> stamp;
    return FormatLocalTime(stamp, "%a %b %e %H:%M:%S %Z %Y");
}

void RereadTimeZone() {
    const std::lock_guard lock(timeZoneMutex);
    // The library looks at the machine's zone again only after the setting has changed.
    ::setenv("TZ", "", 1);
    ::tzset();
    ::unsetenv("TZ");
    ::tzset();
}

}  // namespace snmpmain
