#include "src/traps/private_events.h"

#include <array>
#include <span>

#include "src/base/clock.h"
#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

// A command text: as much as a frame takes after its prefix "Set.", and the terminator.
using EventCommand = std::array<char, 4 + kMostCommandText + 1>;

int LocalDomain() {
    return static_cast<int>(GetLocalDomainId());
}

void SendNumberedEvent(const char* event, std::uint16_t kind, std::uint16_t number) {
    EventCommand command;
    FormatText(command, "Set.Cmd.Snmp.PrivateEvent.[%s][%d][%d][%d]", event, kind, LocalDomain(),
               number);
    SendPrivateEventToFabric(command.data());
}

}  // namespace

void SendUnitStatusEvent(std::uint16_t kind) {
    EventCommand command;
    FormatText(command, "Set.Cmd.Snmp.PrivateEvent.[%s][%d][%d]", kUnitStatusEvent, kind,
               LocalDomain());
    SendPrivateEventToFabric(command.data());
}

void SendSensorStateEvent(std::uint16_t kind, std::uint16_t sensor) {
    SendNumberedEvent(kSensorStateEvent, kind, sensor);
}

void SendPortStatusEvent(std::uint16_t kind, std::uint16_t port) {
    SendNumberedEvent(kPortStatusEvent, kind, port);
}

void SendPortLinkStateEvent(std::uint16_t kind, std::uint16_t port) {
    SendNumberedEvent(kPortLinkStateEvent, kind, port);
}

void SendPortHwStateEvent(std::uint16_t kind, std::uint16_t port) {
    // The text has the shape of a notification of its own kind.
    constexpr int kPortHwStateKind = 39;
    ReplyText carried;
    FormatText(carried, "%d;0;0;0;0[%s][0][0x0][%s. Port:%d]", kPortHwStateKind, DateTimeString(),
               kPortHwStateEvent, port);
    EscapeEventText(carried.data());
    EventCommand command;
    FormatText(command, "Set.Cmd.Snmp.PrivateEvent.[%s][%d][%d][%d][%s", kPortHwStateEvent, kind,
               LocalDomain(), port, carried.data());
    SendPrivateEventToFabric(command.data());

    FormatText(command, "Set.Cmd.Switch.GenericEvent.[%s][0][0x0][%s. Port:%d]", DateTimeString(),
               kPortHwStateEvent, port);
    constexpr std::uint16_t kLocal = 0;
    Tell(std::span(&kLocal, 1), command.data(), StatusByte::kCounts, nullptr);
}

void SendEventChangeEvent(std::uint16_t kind, const char* text) {
    ReplyText carried;
    CopyText(carried.data(), carried.size(), text);
    EscapeEventText(carried.data());
    EventCommand command;
    FormatText(command, "Set.Cmd.Snmp.PrivateEvent.[%s][%d][%d][%s", kEventChangeEvent, kind,
               LocalDomain(), carried.data());
    SendPrivateEventToFabric(command.data());
}

void SendFabricUpdateEvent() {
    EventCommand command;
    FormatText(command, "Set.Cmd.Snmp.PrivateEvent.[%s]", kFabricUpdateEvent);
    SendPrivateEventToFabric(command.data());
}

void SendPrivateEventToFabric(const char* command) {
    AssertMainThread();
    std::array<std::uint16_t, MAX_CONN_UNITS> domains{};
    std::size_t count = 0;
    for (std::uint16_t unit = 0; unit < GetUnitCount(); ++unit) {
        std::uint16_t domain = 0;
        if (GetDomainIdFromIndex(unit, domain) == 0 && domain != GetLocalDomainId() &&
            GetUnitEventSupport(unit) != 0) {
            domains[count++] = domain;
        }
    }
    Tell(std::span(domains).first(count), command, StatusByte::kCounts, nullptr);
}

}  // namespace snmpmain
