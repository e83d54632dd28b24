// What the cases of the campaign have in common: how much they do, and their figures.
#pragma once

#include <chrono>
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

// Whether a process holds no more than it did, but for some kB and for what a sanitizer keeps.
void ExpectNoGrowth(const Holdings& before, const Holdings& after, long kilobytes);

inline const std::string kUnitCount = e2e::kFcmgmt + ".1.1.0";

}  // namespace trust
