#include "src/base/main_thread.h"

#ifdef SNMPMAIN_THREAD_CHECKS

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace snmpmain {
namespace {

std::atomic<std::thread::id> mainThread{};

}  // namespace

void MarkMainThread() {
    mainThread = std::this_thread::get_id();
}

void AssertMainThread(std::source_location where) {
    const std::thread::id marked = mainThread;
    if (marked != std::thread::id() && marked != std::this_thread::get_id()) {
        std::fprintf(stderr, "%s:%u: %s is for the main thread only\n", where.file_name(),
                     static_cast<unsigned>(where.line()), where.function_name());
        std::abort();
    }
}

}  // namespace snmpmain

#endif
