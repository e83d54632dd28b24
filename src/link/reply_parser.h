// Conversion of reply texts, and the numbered fields of notification texts. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace snmpmain {

// What a caller wants of a reply text.
enum ConversionType : int {
    kInteger = 0,    // an unsigned decimal number; the first character must be a digit
    kString = 1,     // the text as it stands
    kIpAddress = 2,  // exactly 8 hexadecimal digits, rewritten as dotted decimal
    kRaw = 3,        // the text as it stands
};

// Reply text that ends a First/Next walk where a switch does not simply fail the query.
constexpr const char* kListEnd = "*end*";

// Converts a reply text in place. A text of the form VALUE#NUMBER is cut at the "#"; a positive
// NUMBER is the switch's error number. `text` has room for `size` bytes (at least 16 for an
// address); `value` receives the integer (0 for every other outcome) unless it is null.
// Returns 0, -1 for a conversion error (logged), or the positive error number.
std::int32_t ParseReturnValue(char* text, std::size_t size, int type, std::uint32_t* value);

// The numbers in a text of fields that each begin with "[". The first field is skipped; a number is
// the first decimal number after the next "[", its low 16 bits, 0 when there is none. Returns 0,
// or -1 as soon as an expected "[" is missing (numbers read before are stored). The variant with a
// text takes everything after the "[" that follows the numbers, clears the top bit of its
// characters, puts it at the start of `text` and logs it as from the domain that the second number
// is.
int ExtractNumbers(const char* text, std::span<std::uint16_t> numbers);
int ExtractNumbersAndText(char* text, std::span<std::uint16_t> numbers);

// The first decimal number anywhere in the text, 0 when there is none.
std::uint32_t ParseFirstNumber(const char* text);

// Sets or clears the top bit of every byte of a text, so that a text carried in a bracketed field
// cannot be taken for fields of its own.
void EscapeEventText(char* text);
void UnescapeEventText(char* text);

}  // namespace snmpmain
