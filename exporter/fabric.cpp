#include "exporter/fabric.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>

namespace fcexporter {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double kSampleSeconds = 30;
constexpr std::size_t kSamples = 120;
constexpr double kHistory = 3600;
constexpr double kLeastRest = 1;  // seconds between two readings

void AddSample(const Reading& reading, Seen& seen) {
    if (!seen.samples.empty() &&
        reading.started - seen.samples.back()->time < kSampleSeconds - kLeastRest) {
        return;
    }
    const auto sample = std::make_shared<Sample>();
    sample->time = reading.started;
    for (const auto& [wwn, unit] : reading.switches) {
        if (unit.answers && !unit.ports.empty()) {
            std::vector<Rates>& rates = sample->rates[wwn];
            rates.resize(unit.ports.rbegin()->first + 1);
            for (const auto& [number, port] : unit.ports) {
                rates[number] = port.rates;
            }
        }
    }
    seen.samples.push_back(sample);
    std::erase_if(seen.samples,
                  [&](const auto& each) { return each->time < reading.started - kHistory; });
    if (seen.samples.size() > kSamples) {
        seen.samples.erase(seen.samples.begin());
    }
}

// The reading's result, with an empty error when it succeeded.
void Take(std::shared_ptr<const Reading> reading, const std::string& error, Fabric& fabric) {
    const std::lock_guard lock(fabric.mutex);
    Seen& seen = fabric.seen;
    if (error != seen.error) {
        std::printf("fabric %s: %s\n", fabric.target.fabric.c_str(),
                    error.empty() ? "is read again" : error.c_str());
    }
    seen.readings++;
    seen.error = error;
    seen.up = error.empty();
    if (!seen.up) {
        seen.errors++;
        return;
    }
    AddSample(*reading, seen);
    seen.reading = std::move(reading);
}

}  // namespace

Seen Look(const Fabric& fabric) {
    const std::lock_guard lock(fabric.mutex);
    return fabric.seen;
}

void ReadOn(Fabric& fabric, const std::stop_token& stop) {
    std::mutex idle;
    std::condition_variable_any stopped;
    Session& session = fabric.session;
    session.StopBy(stop);
    while (!stop.stop_requested()) {
        const auto begun = std::chrono::steady_clock::now();
        auto reading = std::make_shared<Reading>();
        std::string error;
        if (ReadFabric(session, *Look(fabric).reading, *reading) != 0) {
            error = session.Error();
            session.Close();  // an agent that was started anew may have another engine
        }
        if (stop.stop_requested()) {
            return;
        }
        Take(std::move(reading), error, fabric);
        // An agent that takes longer than the interval has a rest, too.
        const Seconds took = std::chrono::steady_clock::now() - begun;
        std::unique_lock lock(idle);
        stopped.wait_for(lock, stop, Seconds(std::max(fabric.interval - took.count(), kLeastRest)),
                         [] { return false; });
    }
}

double Now() {
    return Seconds(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::string WwnText(std::uint64_t wwn) {
    std::string text;
    for (int shift = 56; shift >= 0; shift -= 8) {
        char octet[4];
        std::snprintf(octet, sizeof(octet), "%02x:", static_cast<unsigned>(wwn >> shift & 0xFF));
        text += octet;
    }
    text.pop_back();
    return text;
}

std::string NameOf(std::uint64_t wwn, const Switch& unit) {
    const std::string name = TextOf(unit.values, kSwitchName);
    return name.empty() ? WwnText(wwn) : name;
}

}  // namespace fcexporter
