// Loopback addresses of a test process's own, so that tests run side by side.
#pragma once

#include <unistd.h>

#include <string>

// An address that no other process of the tests uses; `lane`, 0 to 3, tells several apart.
inline std::string LoopbackAddress(int lane) {
    const int pid = ::getpid();
    return "127." + std::to_string(96 + lane * 32 + (pid >> 14) % 32) + "." +
           std::to_string(pid >> 7 & 127) + "." + std::to_string(1 + (pid & 127));
}
