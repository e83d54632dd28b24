// Deferred work is done in slices, between which the main loop serves requests. A piece of work is
// a state and a function for its next step. Main thread only.
#pragma once

#include <chrono>
#include <cstdint>

namespace snmpmain {

enum class Progress : std::uint8_t {
    kMore,    // the next step may follow at once
    kPaused,  // there is nothing to do for the moment
    kDone,
    kFailed
};

// A slice is as many steps as begin within this time; a step is one command to a switch, or a wait
// that is as short as this.
constexpr std::chrono::milliseconds kSlice{5};

// Does all steps. Returns 0 or -1.
template <typename StepFunction>
int DoAll(StepFunction step) {
    Progress progress = Progress::kMore;
    while (progress == Progress::kMore) {
        progress = step();
    }
    return progress == Progress::kDone ? 0 : -1;
}

// Does a slice of steps. Returns what the last one did.
template <typename StepFunction>
Progress DoSlice(StepFunction step) {
    const auto end = std::chrono::steady_clock::now() + kSlice;
    Progress progress = Progress::kMore;
    while (progress == Progress::kMore && std::chrono::steady_clock::now() < end) {
        progress = step();
    }
    return progress;
}

}  // namespace snmpmain
