// The text of snmpd's configuration file. It holds community strings and pass phrases. Main thread
// only.
#pragma once

#include <string>
#include <string_view>

#include "src/conf/conf_keys.h"

namespace snmpmain {

// The whole text: the section for SNMPv1 and v2c, and where SNMPv3 is enabled that for its users.
std::string ConfText(const ConfSettings& settings);
bool IsV3Enabled(const ConfSettings& settings);

// How a plain setting stands in the file: a text with "True" in it is 1, one with "False" 2 (for
// snmpd booleans are numbers; which setting it is does not matter), and control characters are
// blanks: a line break would make the rest of the setting a directive of its own.
std::string WrittenValue(std::string_view value);

// Whether a plain setting gives no line: one with an address that means "none" in it.
bool IsLeftOut(std::string_view value);

}  // namespace snmpmain
