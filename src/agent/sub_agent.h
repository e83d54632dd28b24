// The SNMP library as an AgentX sub-agent of snmpd. Main thread only, at start-up.
#pragma once

namespace snmpmain {

// Gives the library the role of a sub-agent that keeps to itself: it reads no configuration or MIB
// file, writes no persistent file, and looks for the master's socket at `socketPath`.
void ConfigureSubAgent(const char* socketPath);

// Has the library tell the master, when it connects, how long an answer may take: 120 seconds.
// snmpd goes by the "agentXTimeout" of its own configuration all the same. Between init_agent and
// init_snmp.
void AnnouncePatience();

// Has the library's event loop wake when a notification is queued.
void WatchNotifyQueue();

// Has the library's event loop come round once a second, also when nobody asks anything: what snmpd
// has saved is found by looking at its file.
void WatchClock();

}  // namespace snmpmain
