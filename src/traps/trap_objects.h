// The objects that traps report as well: where the MIBs, their tables' entries and the columns
// stand. The tables take the numbers from here.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace snmpmain {

inline constexpr std::array<std::uint32_t, 6> kFcmgmtOid = {1, 3, 6, 1, 3, 94};
inline constexpr std::array<std::uint32_t, 9> kNorbexOid = {
    1, 3, 6, 1, 4, 1, VENDOR_ENTERPRISE_NUMBER, 1, 3};

// What stands between the OID of a MIB and the number of a column, up to the first 0.
using EntryOid = std::array<std::uint8_t, 4>;

constexpr std::size_t LengthOf(const EntryOid& entry) {
    return static_cast<std::size_t>(std::ranges::find(entry, 0) - entry.begin());
}

inline constexpr EntryOid kUnitEntry = {1, 6, 1};
enum UnitColumn : std::uint8_t { kConnUnitId = 1, kConnUnitState = 5, kConnUnitStatus = 6 };

inline constexpr EntryOid kSensorEntry = {1, 8, 1};
enum SensorColumn : std::uint8_t { kConnUnitSensorStatus = 4 };

inline constexpr EntryOid kPortEntry = {1, 10, 1};
enum PortColumn : std::uint8_t {
    kConnUnitPortState = 6,
    kConnUnitPortStatus = 7,
    kConnUnitPortHWState = 23,
};

inline constexpr EntryOid kEventEntry = {1, 11, 1};
enum EventColumn : std::uint8_t {
    kConnUnitEventId = 3,
    kConnUnitEventType = 7,
    kConnUnitEventObject = 8,
    kConnUnitEventDescr = 9,
};

inline constexpr EntryOid kNxFxPortPhysEntry = {10, 1, 1};  // of the vendor's MIB
enum NxFxPortPhysColumn : std::uint8_t {
    kNxFxPortPhysAdminStatus = 3,
    kNxFxPortPhysOperStatus = 4,
};

}  // namespace snmpmain
