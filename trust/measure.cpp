#include "trust/measure.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace trust {

int Scaled(int full, int inShort) {
    return std::getenv("TRUST_SHORT") != nullptr ? inShort : full;
}

void Figure(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    std::printf("   figure: %s\n", text);
    std::fflush(stdout);
}

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

Holdings HoldingsOf(int pid) {
    const std::string process = "/proc/" + std::to_string(pid);
    Holdings holdings{0, 0};
    std::ifstream status(process + "/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            status >> holdings.memory;
        }
    }
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator(process + "/fd")) {
        ++holdings.descriptors;
    }
    return holdings;
}

std::set<std::string> SocketsOf(int pid) {
    std::set<std::string> sockets;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry, gone);
        if (target.starts_with("socket:")) {
            sockets.insert(target);
        }
    }
    return sockets;
}

Holdings SettledHoldingsOf(int pid, const Holdings& before) {
    Holdings after{};
    e2e::Within(5, [&] {
        after = HoldingsOf(pid);
        return after.descriptors <= before.descriptors;
    });
    return after;
}

void ExpectNoGrowth(const Holdings& before, const Holdings& after, long kilobytes) {
    EXPECT_LE(after.descriptors, before.descriptors);
    EXPECT_TRUE(e2e::kIsSanitized || after.memory - before.memory <= kilobytes)
        << after.memory - before.memory << " kB more";
}

std::string PortName(int domain, int port) {
    const int unit = domain == 2 ? 1 : domain == 7 ? 2 : 3;  // last octet but one of the WWN
    return ".1.3.6.1.3.94.1.10.1.17.16.0.2.0.0.0." + std::to_string(unit) + ".0.0.0.0.0.0.0.0.0." +
           std::to_string(port + 1);
}

}  // namespace trust
