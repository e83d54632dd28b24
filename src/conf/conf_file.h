// snmpd's configuration file, made of ConfKeyTable. It holds community strings and pass phrases:
// only its owner may read it. Main thread only.
#pragma once

#include <string>

namespace snmpmain {

// How a plain setting stands in the file: a text with "True" in it is 1, one with "False" 2 (for
// snmpd booleans are numbers; which setting it is does not matter), and control characters are
// blanks: a line break would make the rest of the setting a directive of its own.
std::string WrittenValue(const char* value);

// Begin the file with the section for SNMPv1 and v2c, and append that for SNMPv3. Each returns 0,
// also when the file cannot be opened for its owner alone (traced), or -1 when it cannot be
// written. `v3Enabled` receives whether the second section is to follow.
int WriteV2Section(const char* path, bool& v3Enabled);
int AppendV3Section(const char* path);

}  // namespace snmpmain
