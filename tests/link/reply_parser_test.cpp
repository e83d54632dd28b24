#include "src/link/reply_parser.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace snmpmain {
namespace {

struct Conversion {
    const char* text;
    int type;
    std::int32_t result;
    std::uint32_t value;
    const char* converted;
};

TEST(ParseReturnValue, ConvertsOrFailsByType) {
    const Conversion cases[] = {
        {"5", kInteger, 0, 5, "5"},
        {"12abc", kInteger, 0, 12, "12abc"},
        {"4294967296", kInteger, 0, 4294967295u, "4294967296"},
        {"abc", kInteger, -1, 0, "abc"},
        {"", kInteger, -1, 0, ""},
        {"-1", kInteger, -1, 0, "-1"},
        {"*end*", kInteger, -1, 0, "*end*"},
        {"*end*", kString, 0, 0, "*end*"},
        {"any text", kString, 0, 0, "any text"},
        {"any text", kRaw, 0, 0, "any text"},
        {"0A000001", kIpAddress, 0, 0, "10.0.0.1"},
        {"ffffffff", kIpAddress, 0, 0, "255.255.255.255"},
        {"zz1g00-1", kIpAddress, 0, 0, "0.1.0.0"},
        {"A000001", kIpAddress, -1, 0, "A000001"},
        {"0A00000100", kIpAddress, -1, 0, "0A00000100"},
        {"5", 4, -1, 0, "5"},
        {"5", -1, -1, 0, "5"},
        // Error numbers: only a positive one behind the first "#" counts.
        {"5#3", kInteger, 3, 0, "5"},
        {"5#0", kInteger, 0, 5, "5"},
        {"5#x", kInteger, 0, 5, "5"},
        {"#12", kString, 12, 0, ""},
        {"a#b#7", kString, 0, 0, "a"},
        {"0A000001#0", kIpAddress, 0, 0, "10.0.0.1"},
        {"x#99999999999", kString, 2147483647, 0, "x"},
    };
    for (const Conversion& c : cases) {
        char text[512];
        std::strcpy(text, c.text);
        std::uint32_t value = 77;
        EXPECT_EQ(ParseReturnValue(text, sizeof(text), c.type, &value), c.result) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_STREQ(text, c.converted) << c.text;
        std::strcpy(text, c.text);
        EXPECT_EQ(ParseReturnValue(text, sizeof(text), c.type, nullptr), c.result) << c.text;
    }
}

using Numbers = std::vector<std::uint16_t>;

TEST(FieldExtraction, ReadsTheNumbersBehindTheFirstField) {
    Numbers two(2), three(3);
    EXPECT_EQ(ExtractNumbers("[name][kind 27][65537]", two), 0);
    EXPECT_EQ(two, (Numbers{27, 1}));  // 16 bits
    EXPECT_EQ(ExtractNumbers("x[1][2][3][", three), 0);
    EXPECT_EQ(three, (Numbers{2, 3, 0}));  // the text ends first
}

TEST(FieldExtraction, MissingFieldFailsAfterStoringThoseBefore) {
    Numbers numbers{7, 7, 7};
    EXPECT_EQ(ExtractNumbers("[n][1][2", numbers), -1);
    EXPECT_EQ(numbers, (Numbers{1, 2, 7}));
    for (const char* text : {"", "no brackets", "[only"}) {
        EXPECT_EQ(ExtractNumbers(text, numbers), -1) << text;
    }
}

TEST(FieldExtraction, TextFieldReplacesTheInputUnescaped) {
    Numbers two(2), three(3);
    char text[64] = "[a][1][2][hello";
    EXPECT_EQ(ExtractNumbersAndText(text, two), 0);
    EXPECT_STREQ(text, "hello");
    char carried[32] = "[Port 3] is ]down[";
    EscapeEventText(carried);
    char event[96] = "[Port HW state change][29][5][3][";
    std::strcat(event, carried);
    EXPECT_EQ(ExtractNumbersAndText(event, three), 0);
    EXPECT_EQ(three, (Numbers{29, 5, 3}));
    EXPECT_STREQ(event, "[Port 3] is ]down[");
    char cut[] = "[a][1][2]";
    EXPECT_EQ(ExtractNumbersAndText(cut, two), -1);
}

}  // namespace
}  // namespace snmpmain
