// The datagrams exchanged with switch management: request frames, and what the agent reads of
// replies and notifications. All multi-byte fields are big-endian. Any thread.
//
//   offset  size  request                                   reply
//   0       4     marker 0x11000000                         status byte at offset 2, 0 = success
//   4       4     target: where the addressed switch is     address of the answering switch
//   8       2     message type                              -
//   10      2     payload length                            payload length
//   12      4     sequence                                  the request's sequence
//   16      ...   command text, NUL, zero bytes             reply text
//   end-4   4     sum of all bytes before it                sum
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace snmpmain {

constexpr std::size_t kMinFrameSize = 20;
constexpr std::size_t kMaxFrameSize = 524;
constexpr std::size_t kMaxReplySize = 512;  // what is read of a datagram
constexpr std::size_t kHeaderSize = 16;
constexpr std::size_t kTargetOffset = 4;
constexpr std::size_t kPayloadLengthOffset = 10;
constexpr std::size_t kSequenceOffset = 12;
constexpr std::size_t kChecksumSize = 4;
constexpr std::size_t kReplyTextSize = 512;
constexpr std::size_t kMostCommandText = 502;  // characters after the prefix

constexpr std::uint16_t kGetMessage = 1024;
constexpr std::uint16_t kSetMessage = 1025;
constexpr std::uint16_t kNotifyOnMessage = 1027;
constexpr std::uint16_t kNotifyOffMessage = 1028;

// Sequences up to this one belong to notifications; requests and replies use those above.
constexpr std::uint32_t kLastNotificationSequence = 0x10000;
constexpr std::uint32_t kFirstSequence = 0x10001;
constexpr std::uint32_t kLastSequence = 0x20002;

struct RequestFrame {
    std::array<std::uint8_t, kMaxFrameSize> bytes;
    std::size_t length;
};
static_assert(sizeof(RequestFrame::bytes) == 524);

using ReplyFrame = std::array<std::uint8_t, kMaxReplySize>;
static_assert(sizeof(ReplyFrame) == 512);

using ReplyText = std::array<char, kReplyTextSize>;

// The sequence that follows `sequence`: they run up to 0x20002 and begin again at 0x10001.
constexpr std::uint32_t NextSequence(std::uint32_t sequence) {
    return sequence + 1 > kLastSequence ? kFirstSequence : sequence + 1;
}

// Message type of a request frame.
std::uint16_t RequestMessageType(const RequestFrame& frame);

// Builds the request for a command beginning with "Get.", "Set.", "NotifyOn" or "NotifyOff" (the
// prefix becomes the message type), addressed to a target word, with the given sequence. The total
// length is ((n + 1) AND NOT 3) + 24 for a text of n characters after the prefix: the rounding is
// downward and switch management checks lengths by it. Returns 0, or -1 (logged) for a command with
// another prefix or of more than 502 characters after it.
int BuildRequestFrame(const char* command, std::uint32_t target, std::uint32_t sequence,
                      RequestFrame& frame);

// Status byte of a reply; 0 is success.
std::uint8_t ReplyStatus(const ReplyFrame& reply);

// Takes the text out of a reply: payload length - 4 bytes from offset 16, as far as the frame
// reaches, always terminated.
void ReadReplyText(const ReplyFrame& reply, ReplyText& text);

// Checks the reply to a request of `requestSize` bytes and takes its text. Returns 0, or -1
// (logged) when the size lies outside 20..524 or the reply's status byte is not 0.
int CheckReplyFrame(const ReplyFrame& reply, std::size_t requestSize, ReplyText& text);

}  // namespace snmpmain
