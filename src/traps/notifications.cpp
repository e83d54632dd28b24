#include "src/traps/notifications.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "src/base/byte_order.h"
#include "src/base/clock.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/addressing.h"
#include "src/link/frame.h"
#include "src/link/notify_queue.h"
#include "src/traps/event_kinds.h"
#include "src/traps/trap_decision.h"

namespace snmpmain {
namespace {

constexpr std::size_t kShortestPayload = 4;
constexpr std::size_t kLongestPayload = 524;

using NotificationText = std::array<char, kNotificationTextSize>;

int ExtractNotificationPayload(std::span<const std::uint8_t> frame, NotificationText& text) {
    const std::size_t length = std::size_t{LoadBig16(&frame[kPayloadLengthOffset])} - kChecksumSize;
    if (length < kShortestPayload || length > kLongestPayload) {
        TraceLog(kError, "Trap payload garbage");
        return -1;
    }
    // A frame may claim more than it carries.
    const std::size_t carried = std::min(length, frame.size() - kHeaderSize);
    const std::size_t copied = std::min(carried, text.size() - 1);
    std::memcpy(text.data(), &frame[kHeaderSize], copied);
    text[copied] = '\0';
    return 0;
}

std::uint16_t DomainOfNotification(std::span<const std::uint8_t> frame) {
    const auto domain =
        static_cast<std::uint16_t>(DomainOfTargetWord(LoadBig32(&frame[kTargetOffset])));
    return domain == 0 ? static_cast<std::uint16_t>(GetLocalDomainId()) : domain;
}

// Change notices carry nothing to read: give them the time and their kind's name.
void Decorate(const EventKind& kind, NotificationText& text) {
    NotificationText decoration;
    FormatText(decoration, ";[%s][0][0x0][%s]\n", DateTimeString(), kind.name);
    AppendText(text.data(), text.size(), decoration.data());
}

}  // namespace

int HandleIncomingNotification(std::span<const std::uint8_t> frame) {
    if (frame.size() < kMinFrameSize || frame.size() > kMaxFrameSize) {
        TraceLog(kError, "Incoming notification error. Buffer size: %i. Dropping message.\n",
                 static_cast<int>(frame.size()));
        return -1;
    }
    NotificationText text;
    if (ExtractNotificationPayload(frame, text) != 0) {
        TraceLog(kError, "Incoming notification error. Parsing error. Dropping message.\n");
        return -1;
    }
    const std::uint16_t domain = DomainOfNotification(frame);
    const auto kind = static_cast<std::uint16_t>(ReadDecimalBehindBlanks(text.data()));
    if (kind < kFirstEventKind || kind > kLastEventKind) {
        TraceLog(kError, "Invalid trap index:%d. Dropping message", kind);
        return -1;
    }
    if (const EventKind& known = GetEventKind(kind); known.severity > kNotifySeverity) {
        Decorate(known, text);
    }
    TraceLog(kTrace, "%-3d<< %s", domain, text.data());

    // By the time the main loop came to it, the switch could be down.
    if (kind == kSwitchReset && domain == GetLocalDomainId()) {
        return ProcessNotificationForTraps(domain, kind, text.data());
    }
    NotificationRecord record{};
    record.domainId = domain;
    record.kind = kind;
    CopyText(record.text, sizeof(record.text), text.data());
    NotifyQueue::Put(record);
    return 0;
}

}  // namespace snmpmain
