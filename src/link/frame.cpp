#include "src/link/frame.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "src/base/byte_order.h"
#include "src/base/trace_log.h"

namespace snmpmain {
namespace {

constexpr std::uint32_t kMarker = 0x11000000;
constexpr std::size_t kStatusOffset = 2;
constexpr std::size_t kTypeOffset = 8;

struct CommandPrefix {
    std::string_view text;
    std::uint16_t type;
};

constexpr CommandPrefix kPrefixes[] = {
    {"Get.", kGetMessage},
    {"Set.", kSetMessage},
    {"NotifyOn", kNotifyOnMessage},
    {"NotifyOff", kNotifyOffMessage},
};

const CommandPrefix* FindPrefix(std::string_view command) {
    for (const CommandPrefix& prefix : kPrefixes) {
        if (command.starts_with(prefix.text)) {
            return &prefix;
        }
    }
    return nullptr;
}

std::uint32_t SumBytes(std::span<const std::uint8_t> bytes) {
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum += byte;
    }
    return sum;
}

void TossResponse(std::size_t size) {
    TraceLog(kSevere, "SNMP:Error in response buffer size-%d. Tossing response.",
             static_cast<int>(size));
}

}  // namespace

std::uint16_t RequestMessageType(const RequestFrame& frame) {
    return LoadBig16(&frame.bytes[kTypeOffset]);
}

int BuildRequestFrame(const char* command, std::uint32_t target, std::uint32_t sequence,
                      RequestFrame& frame) {
    const CommandPrefix* prefix = FindPrefix(command);
    if (prefix == nullptr) {
        TraceLog(kSevere, "SNMP:Unknown response from switch management: \"%s\"", command);
        return -1;
    }
    const std::string_view text = std::string_view(command).substr(prefix->text.size());
    const std::size_t roundedText = (text.size() + 1) & ~std::size_t{3};
    frame.length = roundedText + kHeaderSize + 2 * kChecksumSize;
    if (frame.length > frame.bytes.size()) {
        TossResponse(frame.length);
        return -1;
    }

    std::uint8_t* bytes = frame.bytes.data();
    frame.bytes.fill(0);
    std::memcpy(bytes + kHeaderSize, text.data(), text.size());
    StoreBig32(bytes, kMarker);
    StoreBig32(bytes + kTargetOffset, target);
    StoreBig16(bytes + kTypeOffset, prefix->type);
    StoreBig16(bytes + kPayloadLengthOffset, static_cast<std::uint16_t>(roundedText + 8));
    StoreBig32(bytes + kSequenceOffset, sequence);
    const std::size_t checksumOffset = frame.length - kChecksumSize;
    StoreBig32(bytes + checksumOffset, SumBytes({bytes, checksumOffset}));
    return 0;
}

std::uint8_t ReplyStatus(const ReplyFrame& reply) {
    return reply[kStatusOffset];
}

void ReadReplyText(const ReplyFrame& reply, ReplyText& text) {
    text.fill('\0');
    const std::size_t payload = LoadBig16(&reply[kPayloadLengthOffset]);
    const std::size_t carried = payload > kChecksumSize ? payload - kChecksumSize : 0;
    const std::size_t length = std::min(carried, reply.size() - kHeaderSize);
    static_assert(kMaxReplySize - kHeaderSize < kReplyTextSize, "room for the terminator");
    std::memcpy(text.data(), &reply[kHeaderSize], length);
}

int CheckReplyFrame(const ReplyFrame& reply, std::size_t requestSize, ReplyText& text) {
    text.fill('\0');
    if (requestSize < kMinFrameSize || requestSize > kMaxFrameSize) {
        TossResponse(requestSize);
        return -1;
    }
    if (ReplyStatus(reply) != 0) {
        TraceLog(kSevere, "SNMP:Error in status byte-0x%x. Tossing response.", ReplyStatus(reply));
        return -1;
    }
    ReadReplyText(reply, text);
    return 0;
}

}  // namespace snmpmain
