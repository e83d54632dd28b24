#include "src/traps/trap_reports.h"

#include <algorithm>
#include <cstring>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/snmptables/part_status.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

constexpr std::uint32_t kVendor = VENDOR_ENTERPRISE_NUMBER;

// Columns of FCMGMT-MIB's tables: table (1.x), column.
constexpr std::uint32_t kUnitTable = 6;
constexpr std::uint32_t kSensorTable = 8;
constexpr std::uint32_t kPortTable = 10;
constexpr std::uint32_t kEventTable = 11;

// Status of a port as the vendor MIB numbers it: the column and then the trap's two bindings.
constexpr std::uint32_t kVendorAdminStatus = 3;
constexpr std::uint32_t kVendorOperStatus = 4;
constexpr std::uint32_t kLinkDownTrap = 10;
constexpr std::uint32_t kLinkUpTrap = 11;

constexpr std::uint32_t kStatusEvent = 3;

// A unit's id, the first part of its index in every table.
using UnitId = std::array<std::uint8_t, 16>;

UnitId MakeUnitId(const char* wwn) {
    UnitId id{};
    ReadHexText(wwn, std::span<std::uint8_t>(id));
    return id;
}

UnitId IdOfDomain(std::uint16_t domain) {
    char wwn[kWwnTextSize];
    if (CopyWwnOfDomain(domain, wwn) != 0) {
        TraceLog(kError, "Invalid connUnitTbl[] DomainId- %d", domain);
        return MakeUnitId(kNoWwn);
    }
    return MakeUnitId(wwn);
}

TrapOid ColumnOf(const UnitId& unit, std::uint32_t table, std::uint32_t column) {
    TrapOid oid;
    oid.Append({1, 3, 6, 1, 3, 94, 1, table, 1, column});
    for (const std::uint8_t octet : unit) {
        oid.Append({octet});
    }
    return oid;
}

TrapOid ColumnOf(const UnitId& unit, std::uint32_t table, std::uint32_t column,
                 std::uint32_t rowNumber) {
    TrapOid oid = ColumnOf(unit, table, column);
    oid.Append({rowNumber});
    return oid;
}

void AddNumber(Trap& trap, const TrapOid& name, std::uint32_t number) {
    TrapBinding& binding = trap.Add();
    binding.name = name;
    binding.number = number;
}

void AddObjectId(Trap& trap, const TrapOid& name, const TrapOid& value) {
    TrapBinding& binding = trap.Add();
    binding.name = name;
    binding.type = TrapValueType::kObjectId;
    binding.objectId = value;
}

void AddOctets(Trap& trap, const TrapOid& name, std::span<const std::uint8_t> octets) {
    TrapBinding& binding = trap.Add();
    binding.name = name;
    binding.type = TrapValueType::kOctets;
    binding.octets = octets;
}

void ReportFailure(int result, const char* message) {
    if (result != 0) {
        TraceLog(kSevere, "%s", message);
    }
}

constexpr const char* kPortFailure = "Error reporting port change event";

void BuildStatusTrap(std::uint16_t domain, std::uint16_t status, std::uint16_t state, Trap& trap) {
    const UnitId unit = IdOfDomain(domain);
    trap.Begin({1, 3, 6, 1, 3, 94, 0, 1});
    AddNumber(trap, ColumnOf(unit, kUnitTable, 6), status);
    AddNumber(trap, ColumnOf(unit, kUnitTable, 5), state);
}

void BuildEventTrap(const UnitId& unit, const TrapOid& object, const char* text, Trap& trap) {
    constexpr std::uint32_t kEventNumber = 1;  // traps have no row in the log
    constexpr std::uint32_t kMostInteger = 0x7FFFFFFF;
    const char* number = std::strchr(text, ';');
    trap.Begin({1, 3, 6, 1, 3, 94, 0, 4});
    AddNumber(trap, ColumnOf(unit, kEventTable, 3, kEventNumber),
              number == nullptr ? 0 : std::min(ReadDecimalBehindBlanks(number + 1), kMostInteger));
    AddNumber(trap, ColumnOf(unit, kEventTable, 7, kEventNumber), kStatusEvent);
    AddObjectId(trap, ColumnOf(unit, kEventTable, 8, kEventNumber), object);
    AddOctets(trap, ColumnOf(unit, kEventTable, 9, kEventNumber),
              {reinterpret_cast<const std::uint8_t*>(text), std::strlen(text)});
}

}  // namespace

void ReportStatusChangeTrap(std::uint16_t domain, Trap& trap) {
    TraceLog(kTrace, "Reporting a StatusChangeTrap");
    std::uint16_t status = kUnitUnknown;
    std::uint16_t state = kUnitStateUnknown;
    constexpr const char* kFailure = "Error reporting status change event.";
    ReportFailure(ReadUnitStatus(domain, status), kFailure);
    ReportFailure(ReadUnitState(domain, state), kFailure);
    BuildStatusTrap(domain, status, state, trap);
}

void ReportResetTrap(std::uint16_t domain, std::uint16_t status, Trap& trap) {
    TraceLog(kTrace, "Reporting a StatusChangeTrap");
    BuildStatusTrap(domain, status, kUnitStateOffline, trap);
}

void ReportFabricChangeTrap(std::uint16_t domain, const char* wwn, Trap& trap) {
    TraceLog(kTrace, "Reporting a FabricChangeTrap");
    trap.Begin({1, 3, 6, 1, 3, 94, 0, 3});
    trap.unitId = wwn == nullptr ? IdOfDomain(domain) : MakeUnitId(wwn);
    AddOctets(trap, ColumnOf(trap.unitId, kUnitTable, 1), trap.unitId);
}

void ReportSensorChangeTrap(std::uint16_t domain, std::uint16_t sensor, Trap& trap) {
    const std::uint32_t rowNumber = std::uint32_t{sensor} + 1;
    TraceLog(kTrace, "Reporting a SensorChangeTrap. SensorIndex = %d", static_cast<int>(rowNumber));
    std::uint32_t status = kSensorUnknown;
    SensorRef part{};
    const int result =
        GetSensorFromIndex(domain, sensor, part) != 0 ? -1 : ReadSensorStatus(domain, part, status);
    ReportFailure(result, "Error reporting sensor change event");
    trap.Begin({1, 3, 6, 1, 3, 94, 0, 5});
    AddNumber(trap, ColumnOf(IdOfDomain(domain), kSensorTable, 4, rowNumber), status);
}

void ReportPortChangeTrap(std::uint16_t domain, std::uint16_t port, Trap& trap) {
    const std::uint32_t rowNumber = std::uint32_t{port} + 1;
    TraceLog(kTrace, "Reporting a PortChangeTrap. Port = %d", port);
    std::uint32_t state = kPortStateUnknown;
    ReportFailure(ReadStateOfPort(domain, port, state), kPortFailure);
    const UnitId unit = IdOfDomain(domain);
    trap.Begin({1, 3, 6, 1, 3, 94, 0, 6});
    AddNumber(trap, ColumnOf(unit, kPortTable, 7, rowNumber), kPortStatus);
    AddNumber(trap, ColumnOf(unit, kPortTable, 6, rowNumber), state);
}

void ReportEventTrap(std::uint16_t domain, const char* text, Trap& trap) {
    TraceLog(kTrace, "Reporting an EventTrap");
    const UnitId unit = IdOfDomain(domain);
    BuildEventTrap(unit, ColumnOf(unit, kUnitTable, 1), text, trap);
}

void ReportPortHwStateEventTrap(std::uint16_t domain, const char* text, std::uint16_t port,
                                Trap& trap) {
    TraceLog(kTrace, "Reporting a port HW state change EventTrap");
    const UnitId unit = IdOfDomain(domain);
    BuildEventTrap(unit, ColumnOf(unit, kPortTable, 23, std::uint32_t{port} + 1), text, trap);
}

int ReportLinkStateChangeTrap(std::uint16_t domain, std::uint16_t port, Trap& trap) {
    TraceLog(kTrace, "Reporting a LinkStateChangeTrap. Port = %d", port);
    std::uint16_t unit = 0;
    if (GetIndexFromDomainId(domain, unit) != 0) {
        return -1;
    }
    std::uint32_t admin = kPortAdminOffline;
    std::uint32_t oper = kPortOperOnline;  // as LocalStateTable takes it that cannot be had
    ReportFailure(ReadPortAdminStatus(domain, port, admin), kPortFailure);
    ReportFailure(ReadPortOperStatus(domain, port, oper), kPortFailure);
    const auto column = [&](std::uint32_t number) {
        TrapOid oid;
        oid.Append({1, 3, 6, 1, 4, 1, kVendor, 1, 3, 10, 1, 1, number, unit + std::uint32_t{1},
                    port + std::uint32_t{1}});
        return oid;
    };
    trap.Begin({1, 3, 6, 1, 4, 1, kVendor, 1, 3, 0,
                oper == kPortOperOnline ? kLinkUpTrap : kLinkDownTrap});
    AddNumber(trap, column(kVendorAdminStatus), admin);
    AddNumber(trap, column(kVendorOperStatus), oper);
    return 0;
}

}  // namespace snmpmain
