#include <prometheus/metric_family.h>
#include <prometheus/text_serializer.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <sstream>

#include "exporter/server.h"

namespace fcexporter {
namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;
using Labels = std::vector<ClientMetric::Label>;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t kOnline = 2;

// What has series: its labels, and where their values come from, as far as it has them.
struct Owner {
    Labels labels;
    const Seen* seen = nullptr;
    const Switch* unit = nullptr;
    const Port* port = nullptr;
    const Row* row = nullptr;
};
using Owners = std::vector<Owner>;

struct Series {
    Owners fabrics, switches, sensors, ports, links;
};

Labels With(Labels labels, std::initializer_list<ClientMetric::Label> more) {
    labels.insert(labels.end(), more);
    return labels;
}

void Collect(const Labels& labels, const Switch& unit, Series& series) {
    static const Row kSilent;
    series.switches.push_back(
        {.labels = labels, .unit = &unit, .row = unit.answers ? &unit.values : &kSilent});
    if (!unit.answers) {
        return;
    }
    for (const auto& [number, row] : unit.sensors) {
        const Labels all = With(
            labels, {{"sensor", TextOf(row, kSensorName)}, {"number", std::to_string(number)}});
        series.sensors.push_back({.labels = all, .row = &row});
    }
    for (const auto& [number, port] : unit.ports) {
        const Labels all =
            With(labels, {{"port", std::to_string(number)}, {"attached", port.attached}});
        series.ports.push_back({.labels = all, .port = &port, .row = &port.values});
        for (const Link& link : port.links) {
            const Labels more = With(all, {{"link", std::to_string(link.number)},
                                           {"remote_wwn", WwnText(link.remoteNode)},
                                           {"remote_port", std::to_string(link.remotePort)}});
            series.links.push_back({.labels = more, .row = &port.values});
        }
    }
}

// Writes one metric of all that have it; a value that is not a number is left out.
template <typename ValueFunction>
void Add(const char* name, const char* help, MetricType type, const Owners& owners,
         ValueFunction valueOf, std::ostream& out) {
    MetricFamily family{name, help, type, {}};
    for (const Owner& owner : owners) {
        const double value = valueOf(owner);
        if (!std::isnan(value)) {
            ClientMetric& metric = family.metric.emplace_back();
            metric.label = owner.labels;
            metric.gauge.value = metric.counter.value = value;
        }
    }
    if (!family.metric.empty()) {
        prometheus::TextSerializer().Serialize(out, {family});
    }
}

void AddColumns(std::span<const Column> columns, const Owners& owners, std::ostream& out) {
    for (std::size_t place = 0; place < columns.size(); place++) {
        const Column& column = columns[place];
        const auto valueOf = [&](const Owner& owner) {
            const std::uint64_t* number = NumberOf(*owner.row, place);
            return number != nullptr ? static_cast<double>(*number) * column.factor : kNone;
        };
        if (column.metric != nullptr) {
            const bool counts = column.kind == Kind::kCounter64;
            Add(column.metric, column.help, counts ? MetricType::Counter : MetricType::Gauge,
                owners, valueOf, out);
        }
    }
}

double Degrees(const std::string& message) {
    int degrees = 0;
    return std::sscanf(message.c_str(), "%d degrees C", &degrees) == 1 ? degrees : kNone;
}

// The metrics that are not simply a column.
struct Made {
    Owners Series::*owners;
    const char* name;
    const char* help;
    double (*value)(const Owner&);
    MetricType type = MetricType::Gauge;
};

constexpr Made kMade[] = {
    {&Series::fabrics, "fcexporter_up", "Whether the last reading of the fabric succeeded.",
     [](const Owner& fabric) { return fabric.seen->up ? 1.0 : 0.0; }},
    {&Series::fabrics, "fcexporter_reading_age_seconds", "Since the last whole reading began.",
     [](const Owner& fabric) { return Now() - fabric.seen->reading->started; }},
    {&Series::fabrics, "fcexporter_reading_duration_seconds", "What the last whole reading took.",
     [](const Owner& fabric) { return fabric.seen->reading->duration; }},
    {&Series::fabrics, "fcexporter_readings_total", "Readings, failed ones included.",
     [](const Owner& fabric) { return static_cast<double>(fabric.seen->readings); },
     MetricType::Counter},
    {&Series::fabrics, "fcexporter_reading_errors_total", "Failed readings.",
     [](const Owner& fabric) { return static_cast<double>(fabric.seen->errors); },
     MetricType::Counter},
    {&Series::switches, "fc_switch_up", "Whether the switch answers.",
     [](const Owner& owner) { return owner.unit->answers ? 1.0 : 0.0; }},
    {&Series::switches, "fc_switch_devices", "Devices in the switch's part of the name server.",
     [](const Owner& owner) {
         return owner.unit->answers ? static_cast<double>(owner.unit->devices) : kNone;
     }},
    {&Series::sensors, "fc_sensor_temperature_celsius", "What a temperature sensor shows.",
     [](const Owner& owner) { return Degrees(TextOf(*owner.row, kSensorMessage)); }},
    {&Series::ports, "fc_port_logins", "Devices that are logged in at the port.",
     [](const Owner& owner) { return static_cast<double>(owner.port->logins); }},
    {&Series::links, "fc_link_up", "A link that the switch knows of: whether its port is online.",
     [](const Owner& owner) { return NumberOr0(*owner.row, kPortState) == kOnline ? 1.0 : 0.0; }},
};

}  // namespace

std::string MetricsText(const Fabrics& fabrics) {
    std::vector<Seen> all;  // keeps what the series refer to
    all.reserve(fabrics.size());
    Series series;
    for (const auto& fabric : fabrics) {
        const Seen& seen = all.emplace_back(Look(*fabric));
        const Labels labels = {{"fabric", fabric->target.fabric}};
        series.fabrics.push_back({.labels = labels, .seen = &seen});
        if (!seen.up) {
            continue;
        }
        for (const auto& [wwn, unit] : seen.reading->switches) {
            Collect(With(labels, {{"switch", NameOf(wwn, unit)}, {"wwn", WwnText(wwn)}}), unit,
                    series);
        }
    }
    std::ostringstream out;
    for (const Made& each : kMade) {
        Add(each.name, each.help, each.type, series.*each.owners, each.value, out);
    }
    AddColumns(kSwitchColumns, series.switches, out);
    AddColumns(kSensorColumns, series.sensors, out);
    AddColumns(kPortColumns, series.ports, out);
    return std::move(out).str();
}

}  // namespace fcexporter
