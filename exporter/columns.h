// The columns that are read of an agent, and the metrics that they become, as tables.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace fcexporter {

// What an agent said for one instance; nothing where it had no such instance.
using Value = std::variant<std::monostate, std::uint64_t, std::string>;

// The values of one row, in the order of its columns.
using Row = std::vector<Value>;

// Null, or the number; "" or the text.
inline const std::uint64_t* NumberOf(const Row& row, std::size_t column) {
    return column < row.size() ? std::get_if<std::uint64_t>(&row[column]) : nullptr;
}
inline std::uint64_t NumberOr0(const Row& row, std::size_t column) {
    const std::uint64_t* number = NumberOf(row, column);
    return number != nullptr ? *number : 0;
}
inline std::string TextOf(const Row& row, std::size_t column) {
    const auto* text = column < row.size() ? std::get_if<std::string>(&row[column]) : nullptr;
    return text != nullptr ? *text : "";
}

enum class Kind : std::uint8_t {
    kNumber,
    kCounter64,  // 8 octets, most significant first; 80 00 ... where the switch does not count
    kText,       // printable ASCII; other octets are shown as "?"
    kOctets      // as they are
};

// A column of kind kCounter64 is a counter of Prometheus, others are gauges.
struct Column {
    const char* oid;  // "6.1.5": below 1.3.6.1.3.94.1; absolute with a dot in front
    Kind kind = Kind::kNumber;
    const char* metric = nullptr;  // null: for labels and the page only
    const char* help = nullptr;
    double factor = 1;  // from the column's unit to the metric's
};

// The columns of each kind of row; the first ones have names.
enum { kSwitchState, kSwitchStatus, kSwitchName, kSwitchDomain, kSwitchNewestEvent };
inline constexpr Column kSwitchColumns[] = {
    {"6.1.5", Kind::kNumber, "fc_switch_state", "1 unknown, 2 online, 3 offline."},
    {"6.1.6", Kind::kNumber, "fc_switch_status",
     "Of the switch with its sensors and ports: 3 ok, 4 warning, 5 failed."},
    {"6.1.20", Kind::kText},
    {"6.1.11", Kind::kOctets},
    {"6.1.28"},
    {"6.1.9", Kind::kNumber, "fc_switch_uptime_seconds", "Time since the switch started.", 0.01},
};

enum { kSensorStatus, kSensorName, kSensorMessage };
inline constexpr Column kSensorColumns[] = {
    {"8.1.4", Kind::kNumber, "fc_sensor_status", "1 unknown, 3 ok, 4 warning, 5 failed."},
    {"8.1.3", Kind::kText},
    {"8.1.6", Kind::kText},
};

#define STATISTICS(number) ".1.3.6.1.3.94.4.5.1." #number, Kind::kCounter64
enum { kPortState, kPortSpeed, kPortType, kPortName, kPortSent, kPortReceived, kPortErrors };
inline constexpr Column kPortColumns[] = {
    {"10.1.6", Kind::kNumber, "fc_port_state", "1 unknown, 2 online, 3 offline, 5 diagnostics."},
    {"10.1.15", Kind::kNumber, "fc_port_speed_bytes_per_second", "What the link carries.", 1000},
    {"10.1.3"},
    {"10.1.17", Kind::kText},
    {STATISTICS(6), "fc_port_sent_bytes_total", "Bytes sent."},
    {STATISTICS(7), "fc_port_received_bytes_total", "Bytes received."},
    {STATISTICS(3), "fc_port_errors_total", "Errors of all kinds."},
    {"10.1.16", Kind::kNumber, "fc_port_control", "As configured: 1 unknown, 6 offline, 7 online."},
    {"10.1.23", Kind::kNumber, "fc_port_hardware_state",
     "1 unknown, 2 failed, 4 active, 7 no transceiver, 8 no link."},
    {STATISTICS(4), "fc_port_sent_frames_total", "Frames sent."},
    {STATISTICS(5), "fc_port_received_frames_total", "Frames received."},
    {STATISTICS(10), "fc_port_busy_frames_total", "F_BSY frames."},
    {STATISTICS(12), "fc_port_reject_frames_total", "F_RJT frames."},
    {STATISTICS(28), "fc_port_class3_discards_total", "Class 3 frames thrown away."},
    {STATISTICS(33), "fc_port_received_link_resets_total", "Link resets received."},
    {STATISTICS(34), "fc_port_sent_link_resets_total", "Link resets sent."},
    {STATISTICS(35), "fc_port_link_resets_total", "Link resets, both ways."},
    {STATISTICS(36), "fc_port_received_offline_sequences_total", "Offline sequences received."},
    {STATISTICS(37), "fc_port_sent_offline_sequences_total", "Offline sequences sent."},
    {STATISTICS(38), "fc_port_offline_sequences_total", "Offline sequences, both ways."},
    {STATISTICS(39), "fc_port_link_failures_total", "Link failures."},
    {STATISTICS(40), "fc_port_crc_errors_total", "Frames with a wrong checksum."},
    {STATISTICS(41), "fc_port_invalid_words_total", "Words that do not decode."},
    {STATISTICS(42), "fc_port_primitive_sequence_errors_total",
     "Primitive sequence protocol errors."},
    {STATISTICS(44), "fc_port_synchronization_losses_total", "Losses of synchronization."},
    {STATISTICS(48), "fc_port_address_errors_total", "Frames with an unknown destination."},
};

enum { kLinkPort, kLinkRemoteNode, kLinkRemotePort, kLinkRemoteType };
inline constexpr Column kLinkColumns[] = {
    {"12.1.4"},
    {"12.1.6", Kind::kOctets},
    {"12.1.7"},
    {"12.1.12"},
};

enum { kDevicePort, kDevicePortName, kDeviceNodeName };
inline constexpr Column kDeviceColumns[] = {
    {".1.3.6.1.3.94.5.2.1.1.2"},
    {".1.3.6.1.3.94.5.2.1.1.14", Kind::kText},
    {".1.3.6.1.3.94.5.2.1.1.15", Kind::kText},
};

enum { kEventTime, kEventText };
inline constexpr Column kEventColumns[] = {
    {"11.1.4", Kind::kText},
    {"11.1.9", Kind::kText},
};

// FIBRE-CHANNEL-FE-MIB: the WWN of a module, and any column of the logins, which are counted.
inline constexpr Column kModuleColumns[] = {{".1.3.6.1.2.1.75.1.1.4.1.7", Kind::kOctets}};
inline constexpr Column kLoginColumns[] = {{".1.3.6.1.2.1.75.1.2.3.1.6"}};

}  // namespace fcexporter
