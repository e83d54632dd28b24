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

}  // namespace trust
