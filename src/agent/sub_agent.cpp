#include "src/agent/sub_agent.h"

#include <cstdlib>

#include "src/link/notify_queue.h"
#include "src/snmpoid/snmp_headers.h"
//
#include <net-snmp/library/fd_event_manager.h>

namespace snmpmain {
namespace {

constexpr const char* kNoDirectory = "/dev/null";

// Seconds: several commands in turn may each go unanswered by a switch that answers others.
constexpr int kPatience = 120;

void AcknowledgeQueue(int, void*) {
    NotifyQueue::AcknowledgeWake();
}

}  // namespace

void ConfigureSubAgent(const char* socketPath) {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    netsnmp_ds_set_string(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_X_SOCKET, socketPath);
    // One switch for both: no configuration file is read, no persistent one read or written.
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
    // Its index of certificates it would create all the same; below this nothing can be.
    set_persistent_directory(kNoDirectory);
    set_configuration_directory(kNoDirectory);
    ::unsetenv("SNMPCONFPATH");
    // OIDs are numbers here. The library would read every MIB module that these name.
    ::setenv("MIBS", "", 1);
    ::setenv("MIBDIRS", "", 1);
    ::unsetenv("MIBFILES");
}

void AnnouncePatience() {
    netsnmp_ds_set_int(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_AGENTX_TIMEOUT,
                       kPatience * ONE_SEC);
}

void WatchNotifyQueue() {
    register_readfd(NotifyQueue::WakeDescriptor(), AcknowledgeQueue, nullptr);
}

void WatchClock() {
    snmp_alarm_register(
        1, SA_REPEAT, [](unsigned, void*) {}, nullptr);
}

}  // namespace snmpmain
