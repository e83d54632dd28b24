// What the cases of the campaign have in common: how much they do, and their figures.
#pragma once

#include <chrono>
#include <set>
#include <string>

#include "tests/e2e/stack.h"

namespace trust {

using Clock = std::chrono::steady_clock;

// The number for the full campaign, or for the short one that runs with the tests.
int Scaled(int full, int inShort);

// Prints a line "   figure: ...".
void Figure(const char* format, ...) __attribute__((format(printf, 1, 2)));

double SecondsSince(Clock::time_point start);

// What a process holds at the moment.
struct Holdings {
    long memory;  // resident, in kB
    long descriptors;
};
Holdings HoldingsOf(int pid);

// The same once the process has let go of what it had opened for the moment, such as a trap's
// socket.
Holdings SettledHoldingsOf(int pid, const Holdings& before);

// A process's sockets, by their inodes.
std::set<std::string> SocketsOf(int pid);

// Whether a process holds no more than it did, but for some kB and for what a sanitizer keeps.
void ExpectNoGrowth(const Holdings& before, const Holdings& after, long kilobytes);

// The OID of a port's name by its unit's domain, in the built-in fabric: 2 has 16 ports, 7 has 24.
std::string PortName(int domain, int port);

constexpr const char* kUnitCount = ".1.3.6.1.3.94.1.1.0";

}  // namespace trust
