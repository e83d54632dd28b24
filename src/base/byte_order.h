// Big-endian loads and stores for wire fields. They go byte by byte, so they are right on a host of
// either byte order and at any alignment. Any thread.
#pragma once

#include <cstdint>

namespace snmpmain {

constexpr std::uint16_t LoadBig16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>((at[0] << 8) | at[1]);
}

constexpr std::uint32_t LoadBig32(const std::uint8_t* at) {
    return (std::uint32_t{LoadBig16(at)} << 16) | LoadBig16(at + 2);
}

constexpr void StoreBig16(std::uint8_t* at, std::uint16_t value) {
    at[0] = static_cast<std::uint8_t>(value >> 8);
    at[1] = static_cast<std::uint8_t>(value);
}

constexpr void StoreBig32(std::uint8_t* at, std::uint32_t value) {
    StoreBig16(at, static_cast<std::uint16_t>(value >> 16));
    StoreBig16(at + 2, static_cast<std::uint16_t>(value));
}

}  // namespace snmpmain
