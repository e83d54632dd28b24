// Replies of any content, from the datagram to the converted value.
//
// The first byte of an input says how the rest is used:
//
//   bits 0-2  conversion of the reply; only ParseReturnValue alone takes one that there is not
//   bit 3     a "Set." command rather than a "Get."
//   bit 4     the rest is a text, for ParseReturnValue alone
//
// The rest is a list of datagrams that the switch sends in answer to one request; a right reply
// follows them, so that no input waits for a time-out. Each begins with a byte that says what is
// made right in it, and its size in two bytes:
//
//   bits 0-2  sequence: 0 the request's, 1 the one before, 2 the one behind, 3 a notification's,
//             4 the first that is none, others as it stands
//   bit 3     the status byte as it stands, else 0
//   bit 4     the payload length as it stands, else that of the datagram

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "src/base/byte_order.h"
#include "src/link/link.h"
#include "tests/fuzz/surroundings.h"

namespace snmpmain {
namespace {

using fuzz::Datagram;
using fuzz::Reader;
using fuzz::Require;

constexpr std::uint8_t kSetCommand = 1 << 3;
constexpr std::uint8_t kTextAlone = 1 << 4;
constexpr std::uint8_t kStatusStands = 1 << 3;
constexpr std::uint8_t kPayloadStands = 1 << 4;

constexpr std::size_t kMostDatagram = 600;  // more than the agent reads
constexpr std::size_t kMostDatagrams = 16;  // all of them fit the socket's buffer

// Checks what a conversion says against the text that it has left.
void CheckConversion(std::int32_t result, int type, const char* text, std::size_t size,
                     std::uint32_t value) {
    Require(std::memchr(text, '\0', size) != nullptr, "the text is terminated");
    Require(std::strchr(text, '#') == nullptr, "an error number is cut off");
    Require(value == 0 || (result == 0 && type == kInteger), "a value of integers only");
    if (result == 0 && type == kInteger) {
        Require(value == std::min(std::strtoull(text, nullptr, 10), 0xFFFFFFFFull), "number");
    }
    in_addr address;
    Require(result != 0 || type != kIpAddress || ::inet_aton(text, &address) == 1, "address");
    Require(type <= kRaw || result != 0, "no result without a conversion");
}

void ConvertAlone(std::span<const std::uint8_t> text, int type) {
    // Exactly as large as it must be, so that the sanitizer sees who goes beyond.
    std::vector<char> buffer(text.begin(), text.end());
    constexpr std::size_t kAddressRoom = 16;
    buffer.resize(std::max(buffer.size() + 1, type == kIpAddress ? kAddressRoom : 1));
    std::uint32_t value = 1;
    const std::int32_t result = ParseReturnValue(buffer.data(), buffer.size(), type, &value);
    CheckConversion(result, type, buffer.data(), buffer.size(), value);
}

// A piece of the input as a datagram in answer to a request.
Datagram ReadDatagram(Reader& input, std::uint32_t sequence) {
    const std::uint8_t bits = input.Byte();
    const auto bytes = input.Bytes(std::min<std::size_t>(input.Number(2), kMostDatagram));
    Datagram datagram(bytes.begin(), bytes.end());
    if (datagram.size() < kHeaderSize) {
        return datagram;
    }
    const std::uint32_t before = sequence == kFirstSequence ? kLastSequence : sequence - 1;
    const std::array sequences = {sequence, before, NextSequence(sequence),
                                  kLastNotificationSequence, kLastSequence + 1};
    if (const std::size_t choice = bits & 7u; choice < sequences.size()) {
        StoreBig32(&datagram[kSequenceOffset], sequences[choice]);
    }
    if ((bits & kStatusStands) == 0) {
        datagram[2] = 0;
    }
    if ((bits & kPayloadStands) == 0) {
        StoreBig16(&datagram[kPayloadLengthOffset],
                   static_cast<std::uint16_t>(datagram.size() - kHeaderSize));
    }
    return datagram;
}

int TakeNotification(std::span<const std::uint8_t> frame) {
    Require(frame.size() >= kHeaderSize && frame.size() <= kMaxReplySize &&
                LoadBig32(&frame[kSequenceOffset]) <= kLastNotificationSequence,
            "notifications are handed on, replies are not");
    return 0;
}

class Requester {
  public:
    Requester() {
        SetNotificationReceiver(TakeNotification);
    }

    void Take(std::uint8_t bits, Reader input) {
        Datagram reply;  // the first one that is for the request
        switch_.server.SetReplyOverride([&](const sim::ReceivedCommand& command, const Datagram&) {
            Reader rest = input;  // of a copy, should the request come once more
            for (std::size_t i = 0; !rest.AtEnd() && i < kMostDatagrams; ++i) {
                reply = ReadDatagram(rest, command.sequence);
                if (reply.size() >= kHeaderSize &&
                    LoadBig32(&reply[kSequenceOffset]) == command.sequence) {
                    return std::optional(reply);
                }
                switch_.server.SendRaw(reply);
            }
            reply = fuzz::ReplyTo(command, "4711");
            return std::optional(reply);
        });

        const auto type = static_cast<ConversionType>(bits & 3);
        ReplyText text;
        std::uint32_t value = 1;
        text.fill('?');
        SetFabricUpdatePending(false);
        const char* const command = (bits & kSetCommand) != 0 ? "Set.Cmd" : "Get.Oper";
        const std::uint16_t result = SwitchMgmtQuery(0, command, text, type, &value);
        switch_.SetScene(fuzz::kNormal);
        switch_.CheckRequests();

        // As if nothing but this reply had come: nothing of earlier ones stands after it.
        Require(IsFabricUpdatePending() == (reply[2] != 0), "status");
        ReplyFrame frame{};
        std::copy_n(reply.begin(), std::min(reply.size(), frame.size()), frame.begin());
        ReplyText expected{};
        std::uint32_t number = 0;
        std::int32_t outcome = kQueryFailed;
        if (CheckReplyFrame(frame, kMinFrameSize, expected) == 0) {
            outcome = ParseReturnValue(expected.data(), expected.size(), type, &number);
            CheckConversion(outcome, type, text.data(), text.size(), value);
        }
        Require(result == static_cast<std::uint16_t>(outcome) && value == number &&
                    std::strcmp(text.data(), expected.data()) == 0,
                "the value is that of the reply to this request");
    }

  private:
    fuzz::Switch switch_;
};

}  // namespace
}  // namespace snmpmain

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace snmpmain;
    static auto* const requester = new Requester;  // its threads never end
    if (size == 0) {
        return 0;
    }
    const std::span rest(data + 1, size - 1);
    if ((data[0] & kTextAlone) != 0) {
        ConvertAlone(rest, data[0] & 7);
    } else {
        requester->Take(data[0], Reader(rest));
    }
    return 0;
}
