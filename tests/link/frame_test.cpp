#include "src/link/frame.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/frame.h"
#include "src/base/byte_order.h"

namespace snmpmain {
namespace {

std::vector<std::uint8_t> Bytes(const RequestFrame& frame) {
    return {frame.bytes.begin(), frame.bytes.begin() + static_cast<std::ptrdiff_t>(frame.length)};
}

TEST(RequestFrame, IsExactToTheByte) {
    RequestFrame frame;
    ASSERT_EQ(BuildRequestFrame("Get.Oper.Switch.Nop", 0x00050000, 0x10002, frame), 0);
    const std::vector<std::uint8_t> expected = {
        0x11, 0,   0,   0,   0,   5,   0,    0,  // marker, target
        0x04, 0,   0,   24,  0,   1,   0,    2,  // 1024, 24, sequence
        'O',  'p', 'e', 'r', '.', 'S', 'w',  'i',  't', 'c', 'h', '.', 'N', 'o', 'p', 0,  // text
        0,    0,   0,   0,   0,   0,   0x05, 0xC6,  // padding, sum
    };
    EXPECT_EQ(Bytes(frame), expected);
}

// The simulator's own reading of the layout accepts every length, up to the last one that fits.
TEST(RequestFrame, EveryTextLengthFitsTheLengthFormula) {
    for (std::size_t n = 0; n <= 502; ++n) {
        RequestFrame frame;
        const std::string text(n, 'a');
        ASSERT_EQ(BuildRequestFrame(("Get." + text).c_str(), 0, 0x10005, frame), 0) << n;
        ASSERT_LE(frame.length, kMaxFrameSize) << n;
        const std::vector<std::uint8_t> bytes = Bytes(frame);
        sim::Request request;
        EXPECT_EQ(sim::CheckRequest(bytes, false, request), "") << n;
        EXPECT_EQ(request.text, text) << n;
    }
    RequestFrame frame;
    EXPECT_EQ(BuildRequestFrame(("Get." + std::string(503, 'a')).c_str(), 0, 0x10005, frame), -1);
    EXPECT_EQ(BuildRequestFrame(("Get." + std::string(9000, 'a')).c_str(), 0, 0x10005, frame), -1);
}

TEST(ReplyFrame, TextIsWhatThePayloadLengthSaysAndNoMore) {
    ReplyFrame reply;
    reply.fill('x');
    reply[2] = 0;
    ReplyText text;
    const std::pair<std::uint16_t, std::size_t> cases[] = {
        {0, 0}, {3, 0}, {4, 0}, {5, 1}, {24, 20}, {500, 496}, {501, 496}, {65535, 496}};
    for (const auto& [payload, length] : cases) {
        StoreBig16(&reply[10], payload);
        ASSERT_EQ(CheckReplyFrame(reply, 40, text), 0);
        EXPECT_EQ(std::string(text.data()), std::string(length, 'x')) << payload;
    }
}

}  // namespace
}  // namespace snmpmain
