// Conversions of reply texts into the forms that MIB objects have. None asks the switch.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace snmpmain {

// A 64-bit counter as managers read it: 8 octets, most significant first.
using Counter64 = std::array<std::uint8_t, 8>;

// From hexadecimal digits, the first 8 the high half, the others the low one; all zeros when
// anything else is among them. A low half beyond 32 bits counts as its greatest value.
Counter64 ReadCounter64(const char* text);

// The same times 4, for octets where the switch counts words; all ones where that does not fit.
Counter64 ReadCounter64Times4(const char* text);

// The classes of service in a list such as "2,3", class n as bit n - 1; those that fit one octet.
// Items that do not begin with a digit do not count.
std::uint8_t ReadClassesOfService(const char* list);

// The FC-4 types from up to 64 characters, two to an octet, each taken as its distance from "0": a
// letter spills over into the digit before it.
using Fc4Types = std::array<std::uint8_t, 32>;
Fc4Types ReadFc4Types(const char* text);

// The address of a management agent, each of the dotted text's four numbers as a 32-bit one; zeros
// for a text without a ".".
using WideAddress = std::array<std::uint8_t, 16>;
WideAddress WidenAddress(const char* dotted);

// The time of a log entry ("Wed Nov 14 21:38:13 2026", up to a "]" if there is one) as
// "14112026 213813": day, month, year, hour, minute, second. Month "00" where the name is none.
void ConvertEventTime(const char* time, std::span<char> converted);

}  // namespace snmpmain
