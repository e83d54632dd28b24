// Notifications from switch management: what is done with a frame when it is received, and what
// the main loop does with a queued record.
#pragma once

#include <cstdint>
#include <span>

#include "src/link/notify_queue.h"

namespace snmpmain {

// Checks a received frame of 20 to 524 bytes, decorates the texts of change notices with the time
// and queues the notification. Returns 0, or -1 (logged) for a dropped frame. A
// NotificationReceiver.
int HandleIncomingNotification(std::span<const std::uint8_t> frame);

// Takes one record from the queue, which must not be empty, decides on its traps, and marks what
// the agent is to bring up to date (upkeep.h). Main thread only.
void DispatchNotification();

// The same for one that was not received: what it would have told is known otherwise.
void ActOnNotification(NotificationRecord& record);

// Tells the other agents when the in-band setting of the local switch has changed, and marks
// snmpd's configuration.
void FollowInbandEnable();

// Reports a unit that has left the fabric, at once: the queue may be full. A departure handler
// (discovery.h).
void ReportDeparture(NotificationRecord& record);

}  // namespace snmpmain
