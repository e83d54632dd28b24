#include "src/upkeep/dispatch.h"

#include <cstring>

#include "src/base/main_thread.h"
#include "src/base/system_log.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/snmptables/logins.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_table.h"
#include "src/snmptables/zoning.h"
#include "src/traps/event_kinds.h"
#include "src/traps/local_state.h"
#include "src/traps/private_events.h"
#include "src/traps/trap_decision.h"
#include "src/upkeep/upkeep.h"

namespace snmpmain {
namespace {

// A port's hardware may have changed along with its state.
void FollowPortHardware(const NotificationRecord& record) {
    const std::uint16_t port = GetPortFromEventText(record.text);
    if (CheckPortHwStateChange(port) != 0) {
        SendPortHwStateEvent(kPortState, port);
    }
}

void FollowLocalConfig(std::uint16_t kind) {
    if (kind == kSnmpConfig) {
        MarkUpkeep(Upkeep::kUnitTable);
        MarkUpkeep(Upkeep::kTrapDestinations);
        MarkUpkeep(Upkeep::kSnmpdConf);
        HoldNotifications();  // whether and where traps go may have changed
    } else {
        FollowInbandEnable();
    }
}

// Marks what is to be brought up to date. `fabricUpdated`: a private event says so.
void Follow(const NotificationRecord& record, bool fabricUpdated) {
    const bool local = record.domainId == GetLocalDomainId();
    switch (record.kind) {
        case kSnmpConfig:
        case kSwitchConfig:
            if (local) {
                FollowLocalConfig(record.kind);
            } else if (record.kind == kSwitchConfig) {
                MarkUpkeep(Upkeep::kUnitTable);
            }
            break;
        case kPortConfig:
        case kPortState:
        case kPortOper:
            if (local) {
                FollowPortHardware(record);
            }
            break;
        case kFabricOper:
        case kSwitchState:
        case kSwitchReset:
            MarkUpkeep(Upkeep::kUnitTable);
            break;
        case kZoningOper:
            MarkZoningStale();
            break;
        case kNameServerOper:
            MarkNameServerStale();
            ForgetLogins(record.domainId);
            break;
        case kSwitchOper:
            MarkUpkeep(Upkeep::kLogLevel);
            break;
        case kPrivateEvent:
            if (fabricUpdated) {
                MarkUpkeep(Upkeep::kUnitTable);
                HoldNotifications();
            }
            break;
        case kSwitchInfo:
            MarkUpkeep(Upkeep::kSwitchInfo);
            HoldNotifications();
            break;
        default:
            break;
    }
}

}  // namespace

void DispatchNotification() {
    NotificationRecord record;
    NotifyQueue::Get(record);
    ActOnNotification(record);
}

void ActOnNotification(NotificationRecord& record) {
    AssertMainThread();
    // Before a text that the event carries takes its place.
    const bool fabricUpdated = std::strstr(record.text, kFabricUpdateEvent) != nullptr;
    ProcessNotificationForTraps(record.domainId, record.kind, record.text);
    Follow(record, fabricUpdated);
    std::uint16_t index = 0;
    if (GetIndexFromDomainId(record.domainId, index) != 0) {
        SystemLog("SNMP:Previously unknown switch joined the fabric. DomainId:%d\n",
                  record.domainId);
        // One that tells but does not answer would be left out again; its answer brings it in.
        if (!IsSilent(record.domainId)) {
            MarkUpkeep(Upkeep::kUnitTable);
        }
    }
}

void FollowInbandEnable() {
    if (CheckInbandEnableChange() != 0) {
        SendFabricUpdateEvent();
    }
    MarkUpkeep(Upkeep::kSnmpdConf);
}

}  // namespace snmpmain
