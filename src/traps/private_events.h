// Private events: how an agent tells the agents of the other switches, in the fabric's own paths,
// of a change that it has found at its switch. They arrive there as notifications of kind 32.
// Answers are neither awaited nor looked at. Main thread only. `kind` is that of the notification
// that led to the event, sensors and ports count from 0.
#pragma once

#include <cstdint>

namespace snmpmain {

// The events' names, by which the receiver knows them.
constexpr const char* kUnitStatusEvent = "Unit status change";
constexpr const char* kSensorStateEvent = "Sensor state change";
constexpr const char* kPortStatusEvent = "Port status change";
constexpr const char* kPortLinkStateEvent = "Port link state change";
constexpr const char* kPortHwStateEvent = "Port HW state change";
constexpr const char* kEventChangeEvent = "Event change";
constexpr const char* kUnitDeletedEvent = "connUnit deleted";
constexpr const char* kFabricUpdateEvent = "Fabric update";

void SendUnitStatusEvent(std::uint16_t kind);
void SendSensorStateEvent(std::uint16_t kind, std::uint16_t sensor);
void SendPortStatusEvent(std::uint16_t kind, std::uint16_t port);
void SendPortLinkStateEvent(std::uint16_t kind, std::uint16_t port);

// Also has the local switch write the change into its log. "Set.Cmd.Switch.GenericEvent."
void SendPortHwStateEvent(std::uint16_t kind, std::uint16_t port);

// Carries a text, cut where the command would become too long.
void SendEventChangeEvent(std::uint16_t kind, const char* text);

void SendFabricUpdateEvent();

// Tells a command to every other unit that takes private events, in the order of connUnitTbl. One
// that does not answer is left out with a line in the log.
void SendPrivateEventToFabric(const char* command);

}  // namespace snmpmain
