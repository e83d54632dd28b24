// Bounded operations on NUL-terminated texts in fixed buffers, and the readings of numbers that
// switch management's texts need. Nothing here allocates or depends on the locale. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace snmpmain {

// Copies `source` into a buffer of `size` bytes, cutting its tail where it does not fit. The result
// is terminated whenever `size` is not 0. Returns the length that the whole text has.
std::size_t CopyText(char* destination, std::size_t size, const char* source);

// Appends `source` to the text in a buffer of `size` bytes in all, cutting and terminating as
// CopyText does. Returns the length that the whole result would have.
std::size_t AppendText(char* destination, std::size_t size, const char* source);

// Formats as printf does, bounded to the buffer and always terminated (an empty buffer is left
// alone). Returns the length of the text in the buffer, which is smaller than the buffer's size.
int FormatText(std::span<char> buffer, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

constexpr bool IsDecimalDigit(char c) {
    return c >= '0' && c <= '9';
}

// Value of a hexadecimal digit, or -1.
constexpr int HexDigitValue(char c) {
    if (IsDecimalDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// The decimal number that `text` begins with; 0 when it begins with no digit. A number beyond 32
// bits gives 4294967295, on hosts of every word size.
std::uint32_t ReadDecimal(const char* text);

// The decimal number that `text` begins with, after blanks.
std::uint32_t ReadDecimalBehindBlanks(const char* text);

// The one or two hexadecimal digits at `text` as a number, as far as they are hexadecimal: "1g"
// gives 1, "g1" and the empty text give 0.
std::uint8_t ReadHexPair(const char* text);

// Converts a hexadecimal text two characters at a time into the numbers, zeros where it ends early.
template <typename Number>
void ReadHexText(const char* text, std::span<Number> numbers) {
    for (Number& number : numbers) {
        number = ReadHexPair(text);
        text += text[0] == '\0' ? 0 : text[1] == '\0' ? 1 : 2;
    }
}

}  // namespace snmpmain
