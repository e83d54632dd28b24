// The SNMP daemon's configuration is the switch's: written from its settings, and what managers set
// at the daemon itself (location, contact, name; see shared_settings.h) carried back. Paths are
// those of the switch, below SNMPMAIN_ROOT where that is set. Main thread only.
#pragma once

#include "src/base/progress.h"
#include "src/conf/shared_settings.h"

namespace snmpmain {

// Takes what the file says from an earlier run for what the switch and the daemon agreed on. Part
// of start-up, once.
void RecallSnmpdConf();

// Reads the settings from the local switch, sends what managers have changed at the daemon, writes
// "/kelmor/conf/etc/snmpd.conf" and has the daemon of "/var/run/snmpd.pid" read it (SIGHUP); says
// each step on standard error. At start-up and after a change at the switch. Returns 0, or -1 when
// the switch has never told the communities (nothing is written then) or snmpd has not written
// "/var/ucd-snmp/snmpd.conf" yet. That, and a file that cannot be written (a
// line in the diagnostic log), ResumeSnmpdConf makes up for. Takes 37 queries, of up to 4 seconds
// each when the switch is silent.
int InitSnmpdConf();

// The same in steps; a cycle may also be begun here to make up for one that failed.
void BeginSnmpdConf();
bool IsSnmpdConfUnderWay();
Progress StepSnmpdConf();

// Sends location, contact and name that managers have changed at the daemon to the local switch.
// For when SnmpdConfChanged.
void SyncSnmpdPersistent();

// Does again what failed: a cycle, a setting that the switch did not take. At most every half
// minute; does nothing otherwise.
void ResumeSnmpdConf();

}  // namespace snmpmain
