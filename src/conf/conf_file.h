// The text of snmpd's configuration file, made of ConfKeyTable. It holds community strings and pass
// phrases. Main thread only.
#pragma once

#include <string>

namespace snmpmain {

// How a plain setting stands in the file: a text with "True" in it is 1, one with "False" 2 (for
// snmpd booleans are numbers; which setting it is does not matter), and control characters are
// blanks: a line break would make the rest of the setting a directive of its own.
std::string WrittenValue(const char* value);

// Whether a plain setting gives no line: one with an address that means "none" in it.
bool IsLeftOut(const char* value);

// The section for SNMPv1 and v2c, which the file begins with, and that for SNMPv3. `v3Enabled`
// receives whether the second is to follow.
std::string V2Text(bool& v3Enabled);
std::string V3Text();

}  // namespace snmpmain
