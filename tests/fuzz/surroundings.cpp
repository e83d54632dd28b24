#include "tests/fuzz/surroundings.h"

#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>

// In place of the C library's: whoever waits before it tries again shall not do so here. But the
// fuzzer has a thread that looks after memory once a second; it would spin.
extern "C" unsigned int sleep(unsigned int seconds) {
    if (::gettid() != ::getpid()) {
        const timespec time{static_cast<time_t>(seconds), 0};
        ::nanosleep(&time, nullptr);
    }
    return 0;
}

// The machine's log shall see none of this.
extern "C" void vsyslog(int, const char* format, va_list arguments) {
    std::array<char, 2048> text;
    std::vsnprintf(text.data(), text.size(), format, arguments);
}

extern "C" void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsyslog(priority, format, arguments);
    va_end(arguments);
}

// Stands in this file so that the linker takes the functions above as well.
void fuzz::Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}
