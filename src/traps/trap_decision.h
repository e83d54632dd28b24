// Decides for each notification whether it is a change worth a trap, and sends it.
#pragma once

#include <cstdint>

namespace snmpmain {

// Compares what the notification is about with what was reported last, tells the other agents of
// the fabric of a change at the local switch, and sends the trap: about other switches only while
// proxying is enabled. The text may be changed. Always 0. Main thread; for kind 17 of the local
// switch also the receiving thread, which then needs no query.
int ProcessNotificationForTraps(std::uint16_t domain, std::uint16_t kind, char* text);

// Decides on a change of a sensor of the local switch, as the notification of that kind would.
void DecideLocalSensor(std::uint16_t kind, std::uint16_t sensor);

// The first number after the fourth ";" of a text, 65535 when there are fewer.
std::uint16_t GetPortFromEventText(const char* text);

}  // namespace snmpmain
