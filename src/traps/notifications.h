// Notifications from switch management, as they are received. What the main loop does with them is
// in src/upkeep/dispatch.h.
#pragma once

#include <cstdint>
#include <span>

namespace snmpmain {

// Checks a received frame of 20 to 524 bytes, decorates the texts of change notices with the time
// and queues the notification. The reset of the local switch is reported at once instead. Returns
// 0, or -1 (logged) for a dropped frame. A NotificationReceiver: any thread that receives.
int HandleIncomingNotification(std::span<const std::uint8_t> frame);

}  // namespace snmpmain
