#include "src/mibs/conversions.h"

#include <strings.h>

#include <algorithm>
#include <cstring>

#include "src/base/byte_order.h"
#include "src/base/text.h"
#include "src/link/link.h"
#include "src/snmpoid/index_codec.h"

namespace snmpmain {
namespace {

constexpr std::size_t kHalfDigits = 8;

struct Halves {
    std::uint32_t high = 0;
    std::uint32_t low = 0;
};

// Reads up to `most` hexadecimal digits; false when another character comes first.
bool ReadHexNumber(const char* text, std::size_t most, std::uint32_t& number) {
    constexpr std::uint32_t kGreatest = 0xFFFFFFFF;
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < most && text[i] != '\0'; ++i) {
        const int digit = HexDigitValue(text[i]);
        if (digit < 0) {
            return false;
        }
        sum = std::min<std::uint64_t>(sum * 16 + static_cast<std::uint64_t>(digit),
                                      std::uint64_t{kGreatest} + 1);
    }
    number = static_cast<std::uint32_t>(std::min<std::uint64_t>(sum, kGreatest));
    return true;
}

Halves ReadHalves(const char* text) {
    const std::size_t length = std::strlen(text);
    Halves halves;
    if (!ReadHexNumber(text, kHalfDigits, halves.high) ||
        !ReadHexNumber(text + std::min(length, kHalfDigits), length, halves.low)) {
        return {};
    }
    return halves;
}

Counter64 MakeCounter(const Halves& halves) {
    Counter64 counter;
    StoreBig32(&counter[0], halves.high);
    StoreBig32(&counter[4], halves.low);
    return counter;
}

int MonthNumber(const char* name) {
    static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto month = std::ranges::find_if(
        kMonths, [&](const char* known) { return ::strncasecmp(name, known, 3) == 0; });
    return month == std::end(kMonths) ? 0 : static_cast<int>(month - kMonths) + 1;
}

// The text after the next colon, or an empty one.
const char* BehindColon(const char* text) {
    const char* colon = std::strchr(text, ':');
    return colon == nullptr ? "" : colon + 1;
}

}  // namespace

Counter64 ReadCounter64(const char* text) {
    return MakeCounter(ReadHalves(text));
}

Counter64 ReadCounter64Times4(const char* text) {
    Halves halves = ReadHalves(text);
    if (halves.high >= 0x40000000) {
        return MakeCounter({0xFFFFFFFF, 0xFFFFFFFF});
    }
    halves.high = halves.high << 2 | halves.low >> 30;
    halves.low <<= 2;
    return MakeCounter(halves);
}

std::uint8_t ReadClassesOfService(const char* list) {
    std::uint32_t mask = 0;
    for (const char* item = list; item != nullptr;) {
        const std::uint32_t number = IsDecimalDigit(*item) ? ReadDecimal(item) : 0;
        if (number >= 1 && number <= 32) {
            mask |= std::uint32_t{1} << (number - 1);
        }
        item = std::strchr(item, ',');
        item = item == nullptr ? nullptr : item + 1;
    }
    return static_cast<std::uint8_t>(mask);
}

Fc4Types ReadFc4Types(const char* text) {
    Fc4Types types{};
    for (std::size_t i = 0; i < 2 * types.size() && text[i] != '\0'; ++i) {
        const int digit = text[i] - '0';
        types[i / 2] = static_cast<std::uint8_t>(types[i / 2] + (i % 2 == 0 ? digit * 16 : digit));
    }
    return types;
}

WideAddress WidenAddress(const char* dotted) {
    std::array<oid, 4> numbers;
    MakeOIDfromIPAddr(dotted, numbers);
    WideAddress address;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        StoreBig32(&address[4 * i], static_cast<std::uint32_t>(numbers[i]));
    }
    return address;
}

void ConvertEventTime(const char* time, std::span<char> converted) {
    ReplyText copy;
    CopyText(copy.data(), copy.size(), time);
    copy[std::strcspn(copy.data(), "]")] = '\0';
    // Weekday, month, day and time of day; the year is the last word, however many there are.
    const char* words[4] = {"", "", "", ""};
    const char* year = "";
    char* rest = nullptr;
    std::size_t count = 0;
    for (char* word = ::strtok_r(copy.data(), " ", &rest); word != nullptr;
         word = ::strtok_r(nullptr, " ", &rest)) {
        year = word;
        if (count < std::size(words)) {
            words[count++] = word;
        }
    }
    const char* minute = BehindColon(words[3]);
    FormatText(converted, "%.2s%02d%.4s %.2s%.2s%.2s", words[2], MonthNumber(words[1]), year,
               words[3], minute, BehindColon(minute));
}

}  // namespace snmpmain
