// What the main loop does with a notification: decides on its traps and marks what is to be brought
// up to date. Main thread only.
#pragma once

#include "src/link/notify_queue.h"

namespace snmpmain {

// Takes one record from the queue, which must not be empty.
void DispatchNotification();

// The same for one that was not received: what it would have told is known otherwise.
void ActOnNotification(NotificationRecord& record);

// Tells the other agents when the in-band setting of the local switch has changed, and marks
// snmpd's configuration.
void FollowInbandEnable();

}  // namespace snmpmain
