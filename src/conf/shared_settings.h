// Location, contact and name of the local switch, which are set from two sides: at the switch, and
// by managers at the daemon, which saves them in its own file. Each is compared with what both
// sides last agreed on, which is what was written last for the daemon or read last from it,
// whichever came later: the side that differs from it has changed, and wins; where both have, the
// daemon's wins. Main thread only.
#pragma once

namespace snmpmain {

// Takes what snmpd.conf at `path` says from an earlier run for what both sides agreed on; does
// nothing when there is no such file. Before the first reading.
void RecallAgreement(const char* path);

// Whether snmpd has written its own file anew since it was read last. A missing file is traced.
bool SnmpdConfChanged();

// Whether there is such a file.
bool SnmpdHasOwnFile();

// Reads the daemon's file and sends what managers have changed there to the switch, a command for
// each setting, and into what is kept of its settings. Where the switch's setting has changed as
// well, the diagnostic log says what is replaced. What the switch does not take is sent again the
// next time. Up to 20 seconds when the switch falls silent. Returns whether something was sent.
// "Config.Snmp.Location.%s", "Config.Snmp.Contact.%s", "Config.Switch.SymName.%s"
bool CarryToSwitch();

// Whether something is still to be sent again.
bool HasUnsentSettings();

// The settings have been written for the daemon: both sides agree on them. Then: it was told to
// read them.
void NoteAgreement();
void NoteDaemonTold();

// Whether the daemon, which has just saved its file, says something else there than what was
// written for it: a daemon that is just starting does not hear that it is to read. True twice at
// most for what was written.
bool TakeDaemonBehind();

// Forgets everything; for tests, each of which is a run of its own.
void ResetSharedSettings();

}  // namespace snmpmain
