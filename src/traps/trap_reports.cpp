#include "src/traps/trap_reports.h"

#include <algorithm>
#include <cstring>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/snmptables/part_status.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/trap_objects.h"

namespace snmpmain {
namespace {

// Traps of both MIBs, by their last sub-identifier.
constexpr std::uint32_t kUnitStatusChange = 1;
constexpr std::uint32_t kUnitDeleted = 3;
constexpr std::uint32_t kUnitEvent = 4;
constexpr std::uint32_t kSensorStatusChange = 5;
constexpr std::uint32_t kPortStatusChange = 6;
constexpr std::uint32_t kLinkDown = 10;
constexpr std::uint32_t kLinkUp = 11;

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
    return MakeUnitId(GetWwnFromDomainId(domain, wwn) == 0 ? wwn : kNoWwn);
}

TrapOid ColumnOf(std::span<const std::uint32_t> mib, const EntryOid& entry, std::uint32_t column) {
    TrapOid oid;
    oid.Append(mib);
    for (const std::uint8_t number : std::span(entry).first(LengthOf(entry))) {
        oid.Append({number});
    }
    oid.Append({column});
    return oid;
}

TrapOid ColumnOf(const UnitId& unit, const EntryOid& entry, std::uint32_t column) {
    TrapOid oid = ColumnOf(kFcmgmtOid, entry, column);
    for (const std::uint8_t octet : unit) {
        oid.Append({octet});
    }
    return oid;
}

TrapOid ColumnOf(const UnitId& unit, const EntryOid& entry, std::uint32_t column,
                 std::uint32_t rowNumber) {
    TrapOid oid = ColumnOf(unit, entry, column);
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
    trap.Begin(kFcmgmtOid, kUnitStatusChange);
    AddNumber(trap, ColumnOf(unit, kUnitEntry, kConnUnitStatus), status);
    AddNumber(trap, ColumnOf(unit, kUnitEntry, kConnUnitState), state);
}

void BuildEventTrap(const UnitId& unit, const TrapOid& object, const char* text, Trap& trap) {
    constexpr std::uint32_t kEventNumber = 1;  // traps have no row in the log
    constexpr std::uint32_t kMostInteger = 0x7FFFFFFF;
    const char* number = std::strchr(text, ';');
    trap.Begin(kFcmgmtOid, kUnitEvent);
    AddNumber(trap, ColumnOf(unit, kEventEntry, kConnUnitEventId, kEventNumber),
              number == nullptr ? 0 : std::min(ReadDecimalBehindBlanks(number + 1), kMostInteger));
    AddNumber(trap, ColumnOf(unit, kEventEntry, kConnUnitEventType, kEventNumber), kStatusEvent);
    AddObjectId(trap, ColumnOf(unit, kEventEntry, kConnUnitEventObject, kEventNumber), object);
    AddOctets(trap, ColumnOf(unit, kEventEntry, kConnUnitEventDescr, kEventNumber),
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
    trap.Begin(kFcmgmtOid, kUnitDeleted);
    trap.unitId = wwn == nullptr ? IdOfDomain(domain) : MakeUnitId(wwn);
    AddOctets(trap, ColumnOf(trap.unitId, kUnitEntry, kConnUnitId), trap.unitId);
}

void ReportSensorChangeTrap(std::uint16_t domain, std::uint16_t sensor, Trap& trap) {
    const std::uint32_t rowNumber = std::uint32_t{sensor} + 1;
    TraceLog(kTrace, "Reporting a SensorChangeTrap. SensorIndex = %d", static_cast<int>(rowNumber));
    std::uint32_t status = kSensorUnknown;
    SensorRef part{};
    const int result =
        GetSensorFromIndex(domain, sensor, part) != 0 ? -1 : ReadSensorStatus(domain, part, status);
    ReportFailure(result, "Error reporting sensor change event");
    trap.Begin(kFcmgmtOid, kSensorStatusChange);
    AddNumber(trap, ColumnOf(IdOfDomain(domain), kSensorEntry, kConnUnitSensorStatus, rowNumber),
              status);
}

void ReportPortChangeTrap(std::uint16_t domain, std::uint16_t port, Trap& trap) {
    const std::uint32_t rowNumber = std::uint32_t{port} + 1;
    TraceLog(kTrace, "Reporting a PortChangeTrap. Port = %d", port);
    std::uint32_t state = kPortStateUnknown;
    ReportFailure(ReadStateOfPort(domain, port, state), kPortFailure);
    const UnitId unit = IdOfDomain(domain);
    trap.Begin(kFcmgmtOid, kPortStatusChange);
    AddNumber(trap, ColumnOf(unit, kPortEntry, kConnUnitPortStatus, rowNumber), kPortStatus);
    AddNumber(trap, ColumnOf(unit, kPortEntry, kConnUnitPortState, rowNumber), state);
}

void ReportEventTrap(std::uint16_t domain, const char* text, Trap& trap) {
    TraceLog(kTrace, "Reporting an EventTrap");
    const UnitId unit = IdOfDomain(domain);
    BuildEventTrap(unit, ColumnOf(unit, kUnitEntry, kConnUnitId), text, trap);
}

void ReportPortHwStateEventTrap(std::uint16_t domain, const char* text, std::uint16_t port,
                                Trap& trap) {
    TraceLog(kTrace, "Reporting a port HW state change EventTrap");
    const UnitId unit = IdOfDomain(domain);
    BuildEventTrap(unit, ColumnOf(unit, kPortEntry, kConnUnitPortHWState, std::uint32_t{port} + 1),
                   text, trap);
}

int ReportLinkStateChangeTrap(std::uint16_t domain, std::uint16_t port, Trap& trap) {
    TraceLog(kTrace, "Reporting a LinkStateChangeTrap. Port = %d", port);
    std::uint16_t unit = 0;
    if (GetIndexFromDomainId(domain, unit) != 0) {
        return -1;
    }
    std::uint32_t admin = kPortAdminOffline;
    std::uint32_t oper = kPortOperOnline;  // as LocalStateTable takes it that is unavailable
    ReportFailure(ReadPortAdminStatus(domain, port, admin), kPortFailure);
    ReportFailure(ReadPortOperStatus(domain, port, oper), kPortFailure);
    const auto column = [&](std::uint32_t number) {
        TrapOid oid = ColumnOf(kNorbexOid, kNxFxPortPhysEntry, number);
        oid.Append({unit + std::uint32_t{1}, port + std::uint32_t{1}});
        return oid;
    };
    trap.Begin(kNorbexOid, oper == kPortOperOnline ? kLinkUp : kLinkDown);
    AddNumber(trap, column(kNxFxPortPhysAdminStatus), admin);
    AddNumber(trap, column(kNxFxPortPhysOperStatus), oper);
    return 0;
}

}  // namespace snmpmain
