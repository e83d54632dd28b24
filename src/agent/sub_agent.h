// The SNMP library as an AgentX sub-agent of snmpd.
#pragma once

namespace snmpmain {

// Gives the library the role of a sub-agent that keeps to itself: it reads no configuration or MIB
// file, writes no persistent file, and looks for the master's socket at `socketPath`.
void ConfigureSubAgent(const char* socketPath);

// Has the library's event loop wake when a notification is queued.
void WatchNotifyQueue();

}  // namespace snmpmain
