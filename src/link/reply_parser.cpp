#include "src/link/reply_parser.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "src/base/system_log.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"

namespace snmpmain {
namespace {

constexpr std::size_t kHexAddressLength = 8;

std::int32_t ConvertIpAddress(char* text, std::size_t size) {
    if (std::strlen(text) != kHexAddressLength) {
        TraceLog(kSevere, "Error parsing return value- not a valid IP address");
        SystemLog("SNMP: Error parsing return value- not a valid IP address!\n");
        return -1;
    }
    const int a = ReadHexPair(text);
    const int b = ReadHexPair(text + 2);
    const int c = ReadHexPair(text + 4);
    const int d = ReadHexPair(text + 6);
    FormatText({text, size}, "%d.%d.%d.%d", a, b, c, d);
    return 0;
}

std::int32_t ConvertInteger(const char* text, std::uint32_t* value) {
    if (!IsDecimalDigit(text[0])) {
        TraceLog(kSevere, "Error parsing return value- not an integer");
        return -1;
    }
    if (value != nullptr) {
        *value = ReadDecimal(text);
    }
    return 0;
}

// Moves `at` after its next "[". False when there is none.
template <typename Text>
bool SkipToField(Text*& at) {
    Text* bracket = std::strchr(at, '[');
    if (bracket == nullptr) {
        return false;
    }
    at = bracket + 1;
    return true;
}

// Skips the first field and reads one number from each of the next ones; leaves `at` after the "["
// of the last.
template <typename Text>
int ReadNumberFields(Text*& at, std::span<std::uint16_t> numbers) {
    if (!SkipToField(at)) {
        return -1;
    }
    for (std::uint16_t& number : numbers) {
        if (!SkipToField(at)) {
            return -1;
        }
        number = static_cast<std::uint16_t>(ParseFirstNumber(at));
    }
    return 0;
}

}  // namespace

std::int32_t ParseReturnValue(char* text, std::size_t size, int type, std::uint32_t* value) {
    if (value != nullptr) {
        *value = 0;
    }
    if (char* mark = std::strchr(text, '#'); mark != nullptr) {
        *mark = '\0';
        const std::uint32_t number = ReadDecimal(mark + 1);
        if (number > 0) {
            constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
            return static_cast<std::int32_t>(std::min(number, kMost));
        }
    }
    switch (type) {
        case kInteger:
            return ConvertInteger(text, value);
        case kString:
        case kRaw:
            return 0;
        case kIpAddress:
            return ConvertIpAddress(text, size);
        default:
            TraceLog(kSevere, "Incorrect Type requested from ParseReturnValue()");
            return -1;
    }
}

std::uint32_t ParseFirstNumber(const char* text) {
    while (*text != '\0' && !IsDecimalDigit(*text)) {
        ++text;
    }
    return ReadDecimal(text);
}

int ExtractNumbers(const char* text, std::span<std::uint16_t> numbers) {
    return ReadNumberFields(text, numbers);
}

int ExtractNumbersAndText(char* text, std::span<std::uint16_t> numbers) {
    char* at = text;
    if (ReadNumberFields(at, numbers) != 0 || !SkipToField(at)) {
        return -1;
    }
    UnescapeEventText(at);
    std::memmove(text, at, std::strlen(at) + 1);
    TraceLog(kTrace, "%-3d<< %s", numbers[1], text);
    return 0;
}

void EscapeEventText(char* text) {
    for (; *text != '\0'; ++text) {
        *text = static_cast<char>(*text | 0x80);
    }
}

void UnescapeEventText(char* text) {
    for (; *text != '\0'; ++text) {
        *text = static_cast<char>(*text & 0x7F);
    }
}

}  // namespace snmpmain
