// What a test's process would have written to the system log.
#pragma once

#include <string>
#include <vector>

namespace snmpmain {

// Lets messages of every level pass, until the switch test's next reset.
void TraceEverything();

// The messages since the last call, each with its priority before it: "10:text".
std::vector<std::string> TakeLogged();

// Whether one of the messages since the last call contains `text`.
bool Logged(const std::string& text);

}  // namespace snmpmain
