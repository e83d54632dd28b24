#include "src/base/clock.h"

#include <array>
#include <ctime>
#include <span>

namespace snmpmain {
namespace {

const char* FormatLocalTime(std::span<char> buffer, const char* format) {
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

}  // namespace snmpmain
