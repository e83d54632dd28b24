#include <algorithm>
#include <nlohmann/json.hpp>

#include "exporter/server.h"

namespace fcexporter {
namespace {

using nlohmann::json;

constexpr std::uint64_t kGigabit = 106250;  // kilobytes per second that a link of 1 Gb/s carries

// Negative: not known. A fraction would only make it longer.
json Measure(double value) {
    return value >= 0 ? json(static_cast<std::uint64_t>(value)) : json();
}

json PortJson(std::uint32_t number, const Port& port) {
    return {{"port", number},
            {"state", NumberOr0(port.values, kPortState)},
            {"type", NumberOr0(port.values, kPortType)},
            {"speed", NumberOr0(port.values, kPortSpeed) / kGigabit},
            {"name", TextOf(port.values, kPortName)},
            {"attached", port.attached},
            {"errors", NumberOr0(port.values, kPortErrors)},
            {"send", Measure(port.rates.send)},
            {"receive", Measure(port.rates.receive)}};
}

json SensorJson(const Row& row) {
    return {{"name", TextOf(row, kSensorName)},
            {"status", NumberOr0(row, kSensorStatus)},
            {"message", TextOf(row, kSensorMessage)}};
}

// Of all ports, both ways.
double Throughput(const Sample& sample, std::uint64_t wwn) {
    const auto found = sample.rates.find(wwn);
    double sum = -1;
    if (found != sample.rates.end()) {
        for (const Rates& rates : found->second) {
            if (rates.send >= 0 && rates.receive >= 0) {
                sum = std::max(sum, 0.0) + double{rates.send} + double{rates.receive};
            }
        }
    }
    return sum;
}

json SwitchJson(std::uint64_t wwn, const Switch& unit, const Seen& seen) {
    const std::string domain = TextOf(unit.values, kSwitchDomain);
    json sensors = json::array(), ports = json::array();
    json traffic = json::array(), events = json::array();
    for (const auto& [number, row] : unit.sensors) {
        sensors.push_back(SensorJson(row));
    }
    for (const auto& [number, port] : unit.ports) {
        ports.push_back(PortJson(number, port));
    }
    for (const auto& sample : seen.samples) {
        traffic.push_back(Measure(Throughput(*sample, wwn)));
    }
    for (const Event& event : unit.events) {
        events.push_back({event.time, event.text});
    }
    return {{"wwn", WwnText(wwn)},
            {"name", NameOf(wwn, unit)},
            {"domain", domain.size() == 3 ? static_cast<unsigned char>(domain[2]) : 0},
            {"answers", unit.answers},
            {"silent", Measure(unit.answers ? -1 : Now() - unit.silentSince)},
            {"state", NumberOr0(unit.values, kSwitchState)},
            {"status", NumberOr0(unit.values, kSwitchStatus)},
            {"devices", unit.devices},
            {"sensors", std::move(sensors)},
            {"ports", std::move(ports)},
            {"traffic", std::move(traffic)},
            {"events", std::move(events)}};
}

json TimesJson(const Seen& seen) {
    json times = json::array();
    for (const auto& sample : seen.samples) {
        times.push_back(Measure(Now() - sample->time));
    }
    return times;
}

json FabricJson(const Fabric& fabric) {
    const Seen seen = Look(fabric);
    const Reading& reading = *seen.reading;
    json switches = json::array();
    for (const auto& [wwn, unit] : reading.switches) {
        switches.push_back(SwitchJson(wwn, unit, seen));
    }
    return {{"name", fabric.target.fabric},
            {"address", fabric.target.address},
            {"up", seen.up},
            {"error", seen.error},
            {"interval", fabric.interval},
            {"age", Measure(Now() - reading.started)},
            {"duration", reading.duration},
            {"times", TimesJson(seen)},
            {"switches", std::move(switches)}};
}

// What comes from the command line may be any octets.
std::string Text(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

std::string StateJson(const Fabrics& fabrics) {
    json all = json::array();
    for (const auto& fabric : fabrics) {
        all.push_back(FabricJson(*fabric));
    }
    return Text(all);
}

std::string TrafficJson(const Fabric& fabric, std::uint64_t wwn, std::size_t port) {
    const Seen seen = Look(fabric);
    json send = json::array(), receive = json::array();
    for (const auto& sample : seen.samples) {
        const auto found = sample->rates.find(wwn);
        const bool known = found != sample->rates.end() && port < found->second.size();
        send.push_back(Measure(known ? double{found->second[port].send} : -1));
        receive.push_back(Measure(known ? double{found->second[port].receive} : -1));
    }
    return Text({{"times", TimesJson(seen)}, {"send", send}, {"receive", receive}});
}

}  // namespace fcexporter
