// Most of the agent is for the main thread only. Builds for developers check that it is called
// there: SNMPMAIN_THREAD_CHECKS. Any thread.
#pragma once

#include <source_location>

namespace snmpmain {

#ifdef SNMPMAIN_THREAD_CHECKS

// The calling thread is the main thread; part of start-up. Without it nothing is checked.
void MarkMainThread();

// Ends the program with a message on standard error when another thread calls.
void AssertMainThread(std::source_location where = std::source_location::current());

#else

inline void MarkMainThread() {}
inline void AssertMainThread() {}

#endif

}  // namespace snmpmain
