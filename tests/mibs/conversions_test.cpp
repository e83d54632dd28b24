#include "src/mibs/conversions.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace snmpmain {
namespace {

template <std::size_t kSize>
std::string Hex(const std::array<std::uint8_t, kSize>& octets) {
    std::string text;
    for (const std::uint8_t octet : octets) {
        char piece[4];
        std::snprintf(piece, sizeof(piece), "%02x", unsigned{octet});
        text += piece;
    }
    return text;
}

TEST(Conversions, CountersAreTwoHalvesOf32Bits) {
    // A reply, its number, and four times that.
    const char* cases[][3] = {
        {"00000001FFFFFFFF", "00000001ffffffff", "00000007fffffffc"},
        {"0000000040000000", "0000000040000000", "0000000100000000"},
        {"3fffffffffffffff", "3fffffffffffffff", "fffffffffffffffc"},
        {"4000000000000000", "4000000000000000", "ffffffffffffffff"},
        {"0000000x00000001", "0000000000000000", "0000000000000000"},
        {"000000010000000x", "0000000000000000", "0000000000000000"},
        {"00000001 0000001", "0000000000000000", "0000000000000000"},
        {"", "0000000000000000", "0000000000000000"},
        {"12", "0000001200000000", "0000004800000000"},
        {"000000010123456789", "00000001ffffffff", "00000007fffffffc"},
        {"00000001000000000001", "0000000100000001", "0000000400000004"},
    };
    for (const auto& [reply, plain, times4] : cases) {
        EXPECT_EQ(Hex(ReadCounter64(reply)), plain) << reply;
        EXPECT_EQ(Hex(ReadCounter64Times4(reply)), times4) << reply;
    }
}

TEST(Conversions, ClassesOfServiceAreBits) {
    const std::pair<const char*, int> cases[] = {
        {"2,3", 0x06}, {"1", 0x01},     {"3,2,2", 0x06}, {"8,9", 0x80},  {"32,33,0", 0},    {"", 0},
        {"F,3", 0x04}, {"2 ,3x", 0x06}, {" 2", 0},       {",,3,", 0x04}, {"4294967297", 0},
    };
    for (const auto& [list, mask] : cases) {
        EXPECT_EQ(ReadClassesOfService(list), mask) << list;
    }
}

TEST(Conversions, Fc4TypesCountFromTheDigitZero) {
    const std::string zeros(48, '0');
    EXPECT_EQ(Hex(ReadFc4Types(("0000010019" + std::string(54, '0')).c_str())),
              "0000010019" + std::string(54, '0'));
    EXPECT_EQ(Hex(ReadFc4Types("A00A")), "1011" + std::string(60, '0'));  // letters spill over
    EXPECT_EQ(Hex(ReadFc4Types("123")), "1230" + std::string(60, '0'));
    EXPECT_EQ(Hex(ReadFc4Types(std::string(80, '1').c_str())), std::string(64, '1'));
}

TEST(Conversions, EventTimesOfAnyShape) {
    const std::pair<const char*, const char*> cases[] = {
        {"Wed Nov 14 21:38:13 2026][I]", "14112026 213813"},
        {"Wed nov 14 21:38:13 CET 2026", "14112026 213813"},
        {"Sun  Jan  4 01:02:03 2026", "4012026 010203"},
        {"Wed Non 14 21:38:13 2026]", "14002026 213813"},
        {"Wed Nov 14 21 2026", "14112026 21"},
        {"Wed]", "00Wed "},
        {"", "00 "},
        {"Wednesday November 1400 21000:38000:13000 20260", "14112026 213813"},
    };
    for (const auto& [time, converted] : cases) {
        char text[24];
        ConvertEventTime(time, text);
        EXPECT_STREQ(text, converted) << time;
    }
    char text[512];
    ConvertEventTime(std::string(500, 'x').c_str(), text);
    EXPECT_STREQ(text, "00xxxx ");
}

}  // namespace
}  // namespace snmpmain
