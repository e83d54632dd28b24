// The SNMP daemon's configuration is the switch's: written from its settings, and what managers set
// at the daemon itself (location, contact, name) carried back. Paths are those of the switch, below
// SNMPMAIN_ROOT where that is set. Main thread only.
#pragma once

namespace snmpmain {

// Reads the settings from the local switch, writes "/kelmor/conf/etc/snmpd.conf" and has the daemon
// of "/var/run/snmpd.pid" read it (SIGHUP); says each step on standard error. Returns 0, or -1 when
// the file cannot be written to its end or snmpd has not written "/var/ucd-snmp/snmpd.conf" yet;
// that is made up for when snmpd writes it. Takes 37 queries, of up to 4 seconds each when the
// switch is silent.
int InitSnmpdConf();

// The same after a change at the switch; what managers have set at the daemon before goes first.
void RefreshSnmpdConf();

// Whether snmpd has written its own file anew since it was looked at last. A missing file is
// traced.
bool SnmpdConfChanged();

// Sends the location, contact and name that snmpd saved to the local switch if one of them is not
// what was written for it: snmpd saves them at each reload as well, and the switch's answer to a
// change is another reload. The first failure ends it; it is not tried again before snmpd's next
// change.
void SyncSnmpdPersistent();

}  // namespace snmpmain
