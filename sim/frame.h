// Frames of the switch-management protocol, as the switch's side sees them: checking requests and
// building replies and notifications. All fields are big-endian.
//
//   offset  0  u32  marker 0x11000000; byte 2 is the status in a reply (0 = success)
//           4  u32  target: domain << 16, 0 for the local switch
//           8  u16  message type
//          10  u16  payload length = ((n + 1) & ~3) + 8 for a text of n characters
//          12  u32  sequence
//          16       text, NUL, zero bytes
//   total - 4  u32  sum of all bytes before it
//
// The total length is ((n + 1) & ~3) + 24 bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

inline constexpr std::uint16_t kGetType = 1024;
inline constexpr std::uint16_t kSetType = 1025;
inline constexpr std::uint16_t kNotificationType = 1026;
inline constexpr std::uint16_t kNotifyOnType = 1027;
inline constexpr std::uint16_t kNotifyOffType = 1028;

inline constexpr std::uint32_t kMarker = 0x11000000;
inline constexpr std::uint32_t kFirstReplySequence = 0x10001;
inline constexpr std::uint32_t kLastReplySequence = 0x20002;
inline constexpr std::uint32_t kInteropOffset = 0x600000;
inline constexpr std::uint16_t kMaxDomain = 239;

inline constexpr std::size_t kMinFrameSize = 24;   // a frame with an empty text
inline constexpr std::size_t kMaxFrameSize = 524;  // the agent's frame buffer
// The longest text whose whole frame fits the 512 bytes that an agent reads at a time.
inline constexpr std::size_t kMaxReplyText = 490;

/// What a target word that addresses no switch stands for.
inline constexpr std::uint32_t kNoDomain = 0xFFFF;

/// A request that passed all checks. `text` points into the datagram and has no prefix.
struct Request {
    std::uint32_t domain = 0;  // 0 = the local switch
    std::uint16_t type = 0;
    std::uint32_t sequence = 0;
    std::string_view text;
};

/// Checks one datagram completely. Returns an empty text and fills `request`, or returns what is
/// wrong with the frame, with the actual and the expected value.
/// `interop`: the fabric's merge mode is "Interop_2", so domains are addressed with an offset.
/// `anyTarget`: a wrong target word is no fault; the request is for kNoDomain.
std::string CheckRequest(std::span<const std::uint8_t> datagram, bool interop, Request& request,
                         bool anyTarget = false);

/// "Get.", "Set.", "NotifyOn" or "NotifyOff": what an agent wrote before the text of a frame.
std::string_view CommandPrefix(std::uint16_t type);

/// The target word under which a domain is addressed and by which it names itself; 0 gives 0.
std::uint32_t DomainWord(std::uint32_t domain, bool interop);

/// Builds a reply or a notification. A text longer than kMaxReplyText is cut.
std::vector<std::uint8_t> BuildFrame(std::uint32_t target, std::uint16_t type,
                                     std::uint32_t sequence, std::string_view text);

/// Change one field of a built frame and renew its checksum.
void SetStatus(std::span<std::uint8_t> frame, std::uint8_t status);
void SetSequence(std::span<std::uint8_t> frame, std::uint32_t sequence);

}  // namespace sim
