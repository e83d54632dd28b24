#include "src/traps/registration.h"

#include <cstdio>

#include "src/base/system_log.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/trap_sender.h"
#include "src/traps/trap_table.h"

namespace snmpmain {
namespace {

int RegisterAt(std::uint16_t domain, const char* command) {
    ReplyText ignored;
    if (SwitchMgmtQuery(domain, command, ignored, kString) != 0) {
        SystemLog("SNMP:Failed to properly register for notifications at domainId: %d\n", domain);
        return -1;
    }
    return 0;
}

void ReportFailure(int result, const char* message) {
    if (result != 0) {
        std::fputs(message, stderr);
    }
}

}  // namespace

int RegisterNotifications(bool on) {
    int result = on ? RegisterAt(0, "NotifyOn") : 0;
    const std::uint16_t units = GetUnitCount();
    for (std::uint16_t unit = 0; unit < units; ++unit) {
        std::uint16_t domain = 0;
        if (GetDomainIdFromIndex(unit, domain) != 0 || domain == GetLocalDomainId() ||
            (!on && HasLeftFabric(domain))) {
            continue;
        }
        if (RegisterAt(domain, on ? "NotifyOn" : "NotifyOff") != 0) {
            result = -1;
        }
    }
    return result;
}

void WelcomeBack(std::uint16_t domain) {
    std::uint16_t status = 0;
    if (domain == 0 || GetUnitStatus(domain, status) != 0) {
        if (RefreshConnUnitTable() == 0) {
            ForgetReturned();
        }
        return;
    }
    RegisterAt(domain, "NotifyOn");
    GreetUnit(domain);
    RefreshUnitStatus(domain);
}

int InitTrapNotifications() {
    std::fputs("SNMP:Initializing trap notifications\n", stderr);
    ReplyText community;
    if (SwitchMgmtQuery(0, "Get.Config.Snmp.TrapComm", community, kString) == 0) {
        SetTrapCommunity(community.data());
    } else {
        std::fputs("SNMP:Failed to get trap community name\n", stderr);
    }
    ReportFailure(ReadTrapDestinations(), "SNMP:Failed to get switch trap information\n");
    ReportFailure(RegisterNotifications(true), "SNMP:Failed to register for notifications\n");
    NotifyQueue::Reset();
    std::fputs("SNMP:Trap notifications initialized.\n", stderr);
    return 0;
}

}  // namespace snmpmain
