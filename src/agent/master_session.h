// The AgentX session with snmpd, kept up without ever waiting for it. The library's own way, a ping
// every 15 seconds and a blocking connect, holds the main thread for minutes when snmpd stands
// still, and with it all traps. Main thread only.
#pragma once

namespace snmpmain {

// Takes the connecting away from the library. Between init_agent and init_snmp.
void TakeOverConnecting();

// Connects, now and after each end of the session, once snmpd answers at its socket
// (`socketPath`): asked four times a second on a connection of its own, nobody waits for the
// answer. Then all objects are registered. Waits up to a second for the first session, so that it
// usually stands at the end of the start. After the MIB modules are registered with the library.
void KeepMasterSession(const char* socketPath);

}  // namespace snmpmain
