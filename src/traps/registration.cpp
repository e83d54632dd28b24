#include "src/traps/registration.h"

#include <array>
#include <cstdio>
#include <span>

#include "src/base/main_thread.h"
#include "src/base/system_log.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/trap_sender.h"
#include "src/traps/trap_table.h"

namespace snmpmain {
namespace {

int failures = 0;

void TakeRegistration(std::uint16_t domain, Outcome outcome) {
    if (outcome != Outcome::kAnswered) {
        SystemLog("SNMP:Failed to properly register for notifications at domainId: %d\n", domain);
        ++failures;
    }
}

void ReportFailure(int result, const char* message) {
    if (result != 0) {
        std::fputs(message, stderr);
    }
}

}  // namespace

void RegisterNotifications(bool on) {
    AssertMainThread();
    std::array<std::uint16_t, 1 + MAX_CONN_UNITS> domains{};
    std::size_t count = on ? 1 : 0;  // the local switch
    for (std::uint16_t unit = 0; unit < GetUnitCount(); ++unit) {
        std::uint16_t domain = 0;
        if (GetDomainIdFromIndex(unit, domain) == 0 && domain != GetLocalDomainId() &&
            (on || !HasLeftFabric(domain))) {
            domains[count++] = domain;
        }
    }
    Tell(std::span(domains).first(count), on ? "NotifyOn" : "NotifyOff", StatusByte::kIsIgnored,
         TakeRegistration);
}

void RegisterAt(std::uint16_t domain) {
    Tell(std::span(&domain, 1), "NotifyOn", StatusByte::kIsIgnored, TakeRegistration);
}

void InitTrapNotifications() {
    std::fputs("SNMP:Initializing trap notifications\n", stderr);
    ReplyText community;
    if (SwitchMgmtQuery(0, "Get.Config.Snmp.TrapComm", community, kString) == 0) {
        SetTrapCommunity(community.data());
    } else {
        std::fputs("SNMP:Failed to get trap community name\n", stderr);
    }
    ReportFailure(ReadTrapDestinations(), "SNMP:Failed to get switch trap information\n");
    failures = 0;
    RegisterNotifications(true);
    FinishTellings();
    ReportFailure(failures, "SNMP:Failed to register for notifications\n");
    NotifyQueue::Reset();
    std::fputs("SNMP:Trap notifications initialized.\n", stderr);
}

}  // namespace snmpmain
