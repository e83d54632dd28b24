#include "src/base/text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

namespace snmpmain {

std::size_t CopyText(char* destination, std::size_t size, const char* source) {
    const std::size_t length = std::strlen(source);
    if (size > 0) {
        const std::size_t copied = std::min(length, size - 1);
        std::memcpy(destination, source, copied);
        destination[copied] = '\0';
    }
    return length;
}

std::size_t AppendText(char* destination, std::size_t size, const char* source) {
    const std::size_t present = ::strnlen(destination, size);
    return present + CopyText(destination + present, size - present, source);
}

int FormatText(std::span<char> buffer, const char* format, ...) {
    if (buffer.empty()) {
        return 0;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    if (length < 0) {
        buffer[0] = '\0';
        return 0;
    }
    return std::min(length, static_cast<int>(buffer.size()) - 1);
}

std::uint32_t ReadDecimal(const char* text) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t number = 0;
    for (; IsDecimalDigit(*text); ++text) {
        number = std::min(number * 10 + static_cast<std::uint64_t>(*text - '0'), kMost);
    }
    return static_cast<std::uint32_t>(number);
}

std::uint32_t ReadDecimalBehindBlanks(const char* text) {
    return ReadDecimal(text + std::strspn(text, " \t\n\v\f\r"));
}

std::uint8_t ReadHexPair(const char* text) {
    const int high = HexDigitValue(text[0]);
    if (high < 0) {
        return 0;
    }
    const int low = HexDigitValue(text[1]);
    return static_cast<std::uint8_t>(low < 0 ? high : high * 16 + low);
}

}  // namespace snmpmain
