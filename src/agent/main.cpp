// snmpmain: the SNMP agent of a Fibre Channel switch. Start-up in its fixed order, then the main
// loop, which is never left.

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "src/agent/idle_step.h"
#include "src/agent/master_session.h"
#include "src/agent/options.h"
#include "src/agent/signals.h"
#include "src/agent/sub_agent.h"
#include "src/base/clock.h"
#include "src/base/main_thread.h"
#include "src/base/paths.h"
#include "src/conf/snmpd_conf.h"
#include "src/link/link.h"
#include "src/link/log_level.h"
#include "src/link/notify_queue.h"
#include "src/link/switch_info.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/norbex/norbex.h"
#include "src/snmpoid/snmp_headers.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_table.h"
#include "src/snmptables/zoning.h"
#include "src/traps/local_state.h"
#include "src/traps/notifications.h"
#include "src/traps/registration.h"
#include "src/traps/trap_sender.h"
#include "src/upkeep/sweep.h"

namespace snmpmain {
namespace {

constexpr const char* kAgentName = "SnmpMain";
constexpr const char* kMasterSocket = "/var/agentx/master";
constexpr int kBlock = 1000000;
constexpr int kPoll = 0;
constexpr std::chrono::milliseconds kRequestShare{20};

int OpenLink(const Options& options) {
    SetNotificationReceiver(HandleIncomingNotification);
    if (InitLink(options.remoteAddress) != 0) {
        std::fputs("UDP initialization failed. SNMP shutdown!\n", stderr);
        return -1;
    }
    if (InitSendRecvLock() != 0) {
        std::fputs("Send/Recv initialization failed. SNMP shutdown!\n", stderr);
        return -1;
    }
    return 0;
}

// Whatever is kept of the fabric is asked for when it is needed first.
void ResetCaches() {
    ResetConnUnitTable();
    ResetNameServerTable();
    ResetZoningTable();
    ResetAliasTable();
}

// One pass over what the agent keeps of the switch; a failure begins the next pass at the top.
int FillCaches() {
    if (InitSwitchInfo() != 0) {
        std::fputs("Cache initialization failed. Reinitializing.\n", stderr);
        return -1;
    }
    if (InitConnUnitTable() != 0) {
        std::fputs("Unit table initialization failed. Reinitializing.\n", stderr);
        return -1;
    }
    InitTrapNotifications();
    return 0;
}

void WaitForMaster(const char* socketPath) {
    struct stat status {};
    while (::stat(socketPath, &status) != 0) {
        std::fputs("SNMP:Pinging snmpd.\n", stderr);
        ::sleep(1);
    }
}

// Whatever depends on switch management is tried once a second for as long as it takes.
void ReadSwitch() {
    while (PingSwitchMgmt(0) != 0) {
        ::sleep(1);
    }
    InitLogLevel();
    do {
        ::sleep(1);
    } while (FillCaches() != 0);
    RecallSnmpdConf();
    while (InitSnmpdConf() != 0) {
        std::fputs("Configuration file initialization failed. Reinitializing.\n", stderr);
        ::sleep(1);
    }
    while (InitLocalStateTable() != 0) {
        std::fputs("HW state initialization failed. Reinitializing.\n", stderr);
        ::sleep(1);
    }
}

void StartSubAgent(const char* socketPath) {
    WaitForMaster(socketPath);
    if (init_agent(kAgentName) == -1) {
        snmp_shutdown(kAgentName);
        std::fprintf(stderr, "%ssnmpd daemon not found.\n", ClockStamp());
        std::exit(-1);
    }
    AnnouncePatience();  // not before: init_agent sets the library's own, a second
    TakeOverConnecting();
    init_snmp(kAgentName);
    init_fcmgmt();
    init_femgmt();
    init_NorbexMIB();
    WatchNotifyQueue();
    WatchClock();
    KeepMasterSession(socketPath);
}

// Waits for a request unless `polls`, and serves what has come. Returns whether there was anything.
bool ServeRequests(bool polls) {
    KeepAnsweredCounts();
    const int events = agent_check_and_process(polls ? kPoll : kBlock);
    ForgetAnsweredCounts();
    return events > 0;
}

// Requests come first, but managers that ask without a pause leave deferred work its share: a slice
// after each kRequestShare.
[[noreturn]] void RunMainLoop() {
    using Clock = std::chrono::steady_clock;
    for (;;) {
        const bool waiting = AgentIdleStep();
        const auto end = Clock::now() + kRequestShare;
        while (ServeRequests(waiting) && waiting && Clock::now() < end) {
        }
        LogCaughtSignals();
    }
}

}  // namespace
}  // namespace snmpmain

int main(int argc, char** argv) {
    using namespace snmpmain;
    MarkMainThread();
    Options options;
    if (ParseOptions(argc, argv, options) != 0) {
        return EXIT_FAILURE;
    }
    // The stamp ends in a bracket of its own, so that the line shows two of them.
    std::fprintf(stderr, "%s] SNMP is starting...\n", ClockStamp());
    const std::string masterSocket = RootedPath(kMasterSocket);
    ConfigureSubAgent(masterSocket.c_str());
    snmp_enable_stderrlog();
    InitSignals();
    if (OpenLink(options) != 0) {
        return EXIT_FAILURE;
    }
    ResetCaches();
    ReadSwitch();
    StartSubAgent(masterSocket.c_str());
    if (options.startupTrap) {
        SendColdStartTrap();
    }
    std::fprintf(stderr, "%s] SNMP is up and running!\n", ClockStamp());
    StartSweep();
    RunMainLoop();
}
