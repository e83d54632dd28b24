#include "sim/frame.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace sim {
namespace {

constexpr std::size_t kTextOffset = 16;
constexpr std::size_t kChecksumSize = 4;

std::uint16_t Load16(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

std::uint32_t Load32(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return std::uint32_t{Load16(bytes, offset)} << 16 | Load16(bytes, offset + 2);
}

void Store16(std::span<std::uint8_t> bytes, std::size_t offset, std::uint16_t value) {
    bytes[offset] = static_cast<std::uint8_t>(value >> 8);
    bytes[offset + 1] = static_cast<std::uint8_t>(value);
}

void Store32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
    Store16(bytes, offset, static_cast<std::uint16_t>(value >> 16));
    Store16(bytes, offset + 2, static_cast<std::uint16_t>(value));
}

std::size_t RoundedText(std::size_t textLength) {
    return (textLength + 1) & ~std::size_t{3};
}

std::uint32_t Checksum(std::span<const std::uint8_t> frame) {
    std::uint32_t sum = 0;
    for (std::uint8_t byte : frame.first(frame.size() - kChecksumSize)) {
        sum += byte;
    }
    return sum;
}

void RenewChecksum(std::span<std::uint8_t> frame) {
    Store32(frame, frame.size() - kChecksumSize, Checksum(frame));
}

[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string CheckTarget(std::uint32_t word, bool interop, std::uint32_t& domain) {
    domain = 0;
    if (word == 0) {
        return {};
    }
    const std::uint32_t offset = interop ? kInteropOffset : 0;
    domain = (word - offset) >> 16;
    if (word < offset || (word & 0xFFFF) != 0 || domain < 1 || domain > kMaxDomain) {
        return Format(
            "target word is 0x%08x, expected 0 or (domain << 16)%s with a domain of 1..%u", word,
            interop ? " + 0x600000 (merge mode Interop_2)" : "", kMaxDomain);
    }
    return {};
}

/// The text area reaches from offset 16 to the checksum: text, NUL, zero bytes.
std::string CheckText(std::span<const std::uint8_t> datagram, std::string_view& text) {
    const auto area = datagram.subspan(kTextOffset, datagram.size() - kTextOffset - kChecksumSize);
    const auto end = std::find(area.begin(), area.end(), std::uint8_t{0});
    const auto length = static_cast<std::size_t>(end - area.begin());
    if (end == area.end()) {
        return Format("text has no terminating NUL in its %zu bytes", area.size());
    }
    const auto stray = std::find_if(end, area.end(), [](std::uint8_t byte) { return byte != 0; });
    if (stray != area.end()) {
        return Format("padding byte at offset %zu is 0x%02x, expected 0x00",
                      kTextOffset + static_cast<std::size_t>(stray - area.begin()), *stray);
    }
    if (datagram.size() != RoundedText(length) + 24) {
        return Format("size is %zu bytes, expected %zu for a text of %zu characters",
                      datagram.size(), RoundedText(length) + 24, length);
    }
    text = {reinterpret_cast<const char*>(area.data()), length};
    return {};
}

}  // namespace

std::string CheckRequest(std::span<const std::uint8_t> datagram, bool interop, Request& request,
                         bool anyTarget) {
    const std::size_t size = datagram.size();
    if (size < kMinFrameSize || size > kMaxFrameSize) {
        return Format("size is %zu bytes, expected %zu..%zu", size, kMinFrameSize, kMaxFrameSize);
    }
    if (const std::uint32_t marker = Load32(datagram, 0); marker != kMarker) {
        return Format("marker is 0x%08x, expected 0x%08x", marker, kMarker);
    }
    request.type = Load16(datagram, 8);
    if (CommandPrefix(request.type).empty()) {
        return Format("message type is %u, expected 1024, 1025, 1027 or 1028", request.type);
    }
    if (const std::size_t payload = Load16(datagram, 10); payload != size - 16) {
        return Format("payload length is %zu, expected %zu for a frame of %zu bytes", payload,
                      size - 16, size);
    }
    if (std::string wrong = CheckText(datagram, request.text); !wrong.empty()) {
        return wrong;
    }
    const std::uint32_t found = Load32(datagram, size - kChecksumSize);
    if (const std::uint32_t sum = Checksum(datagram); found != sum) {
        return Format("checksum is 0x%08x, expected 0x%08x", found, sum);
    }
    request.sequence = Load32(datagram, 12);
    if (request.sequence < kFirstReplySequence || request.sequence > kLastReplySequence) {
        return Format("sequence is 0x%x, expected 0x%x..0x%x", request.sequence,
                      kFirstReplySequence, kLastReplySequence);
    }
    std::string wrong = CheckTarget(Load32(datagram, 4), interop, request.domain);
    if (!wrong.empty() && anyTarget) {
        request.domain = kNoDomain;
        wrong.clear();
    }
    return wrong;
}

std::string_view CommandPrefix(std::uint16_t type) {
    switch (type) {
        case kGetType:
            return "Get.";
        case kSetType:
            return "Set.";
        case kNotifyOnType:
            return "NotifyOn";
        case kNotifyOffType:
            return "NotifyOff";
        default:
            return {};
    }
}

std::uint32_t DomainWord(std::uint32_t domain, bool interop) {
    return domain == 0 ? 0 : (domain << 16) + (interop ? kInteropOffset : 0);
}

std::vector<std::uint8_t> BuildFrame(std::uint32_t target, std::uint16_t type,
                                     std::uint32_t sequence, std::string_view text) {
    text = text.substr(0, kMaxReplyText);
    std::vector<std::uint8_t> frame(RoundedText(text.size()) + 24);
    Store32(frame, 0, kMarker);
    Store32(frame, 4, target);
    Store16(frame, 8, type);
    Store16(frame, 10, static_cast<std::uint16_t>(RoundedText(text.size()) + 8));
    Store32(frame, 12, sequence);
    std::copy(text.begin(), text.end(), frame.begin() + kTextOffset);
    RenewChecksum(frame);
    return frame;
}

void SetStatus(std::span<std::uint8_t> frame, std::uint8_t status) {
    frame[2] = status;
    RenewChecksum(frame);
}

void SetSequence(std::span<std::uint8_t> frame, std::uint32_t sequence) {
    Store32(frame, 12, sequence);
    RenewChecksum(frame);
}

}  // namespace sim
