// The queue of received notifications: filled by the receiving thread, emptied by the main loop.
// Any thread, where nothing else is said.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace snmpmain {

constexpr std::size_t kNotificationTextSize = 512;

struct NotificationRecord {
    std::uint16_t domainId;  // switch that the notification is about
    std::uint16_t kind;      // event kind
    char text[kNotificationTextSize];
};
static_assert(sizeof(NotificationRecord) == 516);

// A ring of 250 slots, one of which stays free: 249 records fit.
constexpr std::uint16_t kNotifyQueueSlots = 250;

namespace NotifyQueue {

// Creates the descriptor that becomes readable with every record put. Returns 0, or -1 with errno
// set. Call before any put; a second call keeps the descriptor.
int Open();

// Puts a copy of the record; when the ring is full the record is dropped.
void Put(const NotificationRecord& record);

// Whether a record has been dropped since the last call.
bool TakeLost();

// Takes the oldest record. Test with Pending first. Main thread only.
void Get(NotificationRecord& record);

// Whether records wait, and the oldest of them, which stays in the queue. Main thread only.
bool Pending();
const NotificationRecord& Front();

// Forgets all records.
void Reset();

// The descriptor that an event loop watches for reading, so that it wakes the moment a record is
// put or Wake is called; AcknowledgeWake makes it quiet again until the next time. -1 before Open.
int WakeDescriptor();
void Wake();
void AcknowledgeWake();

}  // namespace NotifyQueue

}  // namespace snmpmain
