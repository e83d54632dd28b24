#include "sim/load.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace sim {
namespace {

constexpr double kWordsOfGigabit = 106'250'000 / 4.0;  // per second, at 1 Gb/s
constexpr double kWordsOfFrame = 512;
constexpr double kMostUse = 0.35;  // on average; 0.6 at most
constexpr double kErrorsPerSecond = 0.1;

// A number from 0 to 1 that is always the same for a port, but different for each question.
double Character(const Switch& unit, std::size_t port, unsigned question) {
    unsigned mixed = (unit.domain * 1024u + static_cast<unsigned>(port)) * 8u + question;
    mixed = (mixed ^ mixed >> 15) * 0x2C1B3C6Du;
    mixed = (mixed ^ mixed >> 12) * 0x297A2D39u;
    return static_cast<double>(mixed >> 16) / 65536;
}

// What is complete of a quantity that grows evenly: no fraction is lost from one call to the next.
std::uint64_t Grown(double perSecond, double from, double to) {
    return static_cast<std::uint64_t>(std::floor(perSecond * to) - std::floor(perSecond * from));
}

void AddFrames(Port& port, const std::string& way, const std::string& inOut, double words) {
    const auto count = static_cast<std::uint64_t>(words);
    const auto frames = static_cast<std::uint64_t>(words / kWordsOfFrame);
    port.counters["Total" + way + "Words"] += count;
    port.counters["Total" + way + "Frames"] += frames;
    port.counters["Class3Words" + inOut] += count;
    port.counters["Class3Frames" + inOut] += frames;
}

}  // namespace

void AddLoad(Fabric& fabric, double from, double to) {
    for (Switch& unit : fabric.switches) {
        for (std::size_t i = 0; i < unit.ports.size(); i++) {
            Port& port = unit.ports[i];
            const double speed = std::max(std::atof(port.linkSpeed.c_str()), 1.0);
            if (port.operState != "Online") {
                continue;
            }
            const double level = std::pow(Character(unit, i, 0), 3) * kMostUse;
            const double period = 120 + 600 * Character(unit, i, 1);
            const double swing = 1 + 0.7 * std::sin(to * 2 * M_PI / period + 7 * level);
            const double words = speed * kWordsOfGigabit * level * swing * (to - from);
            const double share = Character(unit, i, 2);
            AddFrames(port, "Tx", "Out", words * share);
            AddFrames(port, "Rx", "In", words * (1 - share));
            if (Character(unit, i, 3) < 0.125) {
                const std::uint64_t errors = Grown(kErrorsPerSecond, from, to);
                port.counters["InvalidCRCs"] += errors;
                port.counters["TotalErrors"] += errors;
            }
        }
    }
}

}  // namespace sim
