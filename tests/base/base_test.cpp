#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "src/base/text.h"
#include "src/base/trace_log.h"

namespace snmpmain {
namespace {

TEST(Text, CopyAndAppendTerminateAndTellTheWholeLength) {
    char buffer[8];
    std::memset(buffer, 'x', sizeof(buffer));
    EXPECT_EQ(CopyText(buffer, 4, "abcdef"), 6u);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(buffer[4], 'x');
    EXPECT_EQ(AppendText(buffer, 6, "defg"), 7u);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(buffer[6], 'x');
    EXPECT_EQ(CopyText(buffer, 0, "abc"), 3u);
    EXPECT_EQ(AppendText(buffer, 3, "z"), 4u);  // not terminated within its size: left alone
    EXPECT_STREQ(buffer, "abcde");
}

TEST(Text, FormatIsCutAtTheBuffer) {
    std::array<char, 6> buffer;
    EXPECT_EQ(FormatText(buffer, "%s", "abcdefgh"), 5);
    EXPECT_STREQ(buffer.data(), "abcde");
    EXPECT_EQ(FormatText(std::span<char>(), "%s", "abc"), 0);
}

TEST(Text, DecimalsSaturateOnEveryWordSize) {
    EXPECT_EQ(ReadDecimal("4294967295"), 4294967295u);
    EXPECT_EQ(ReadDecimal("4294967296"), 4294967295u);
    EXPECT_EQ(ReadDecimal("99999999999999999999999999"), 4294967295u);
    EXPECT_EQ(ReadDecimal("12abc"), 12u);
    EXPECT_EQ(ReadDecimal(" 12"), 0u);
    EXPECT_EQ(ReadDecimal("-1"), 0u);
}

TEST(Text, HexPairsReadAsFarAsTheyAreHexadecimal) {
    EXPECT_EQ(ReadHexPair("fF"), 0xFF);
    EXPECT_EQ(ReadHexPair("1g"), 0x01);
    EXPECT_EQ(ReadHexPair("g1"), 0x00);
    EXPECT_EQ(ReadHexPair("a"), 0x0A);
    EXPECT_EQ(ReadHexPair(""), 0x00);
}

TEST(TraceLog, MessagesAreCutAtTheBuffer) {
    EXPECT_EQ(TraceLog(kSevere, "%s", std::string(5000, 'x').c_str()), 511);
    EXPECT_EQ(TraceLog(kTrace, "%-3d>> %s", 7, "Get.A"), 11);
}

}  // namespace
}  // namespace snmpmain
