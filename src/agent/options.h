// The command line of snmpmain. Main thread only.
#pragma once

namespace snmpmain {

struct Options {
    const char* remoteAddress = nullptr;  // switch management's address; null for the default
    bool startupTrap = true;
};

// Parses the command line with the system's long-option parser. Returns 0, or -1 after printing the
// usage on standard output. The address points into `argv`.
int ParseOptions(int argc, char** argv, Options& options);

}  // namespace snmpmain
