#include "src/snmpoid/walkers.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/switch_info.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

constexpr const char* kSource = "snmpoid.c";

// Reports that a walk ended, and where.
void TraceMatchFailed(int line, const char* cause) {
    TraceLog(kError, "%s %d:%s caused MATCH_FAILED return", kSource, line, cause);
}

void TraceOid(const char* label, std::span<const oid> name) {
    if (!IsTraced(kTrace)) {
        return;
    }
    std::array<char, 512> text{};
    for (const oid number : name) {
        std::array<char, 24> piece;
        FormatText(piece, ".%lu", static_cast<unsigned long>(number));
        AppendText(text.data(), text.size(), piece.data());
    }
    TraceLog(kTrace, "%s%s", label, text.data());
}

enum class WalkStart {
    kPastColumn,  // the request lies behind this column
    kFirstRow,    // the request lies before the column's rows
    kBehindRow,   // the request names a row, existing or not
};

// Tells where a walk starts and makes `working` an OID of the column's name and `indexLength`
// sub-identifiers: those of the request where it names a row, else zeros.
WalkStart BeginWalk(const variable* vp, std::span<const oid> request, std::size_t indexLength,
                    const char* attachedMessage, WorkingOid& working) {
    TraceOid("Incoming oid ", request);
    const std::span<const oid> column(vp->name, vp->namelen);
    const std::size_t common = std::min(column.size(), request.size());
    const auto [ofColumn, ofRequest] = std::mismatch(
        column.begin(), column.begin() + static_cast<std::ptrdiff_t>(common), request.begin());
    const bool differs = ofColumn != column.begin() + static_cast<std::ptrdiff_t>(common);
    if (differs && *ofRequest > *ofColumn) {
        TraceMatchFailed(__LINE__, "OID mismatch");
        return WalkStart::kPastColumn;
    }
    if (differs || request.size() <= column.size()) {
        TraceLog(kTrace, "First time through or oid just got incremented");
        FitOIDtoIndexLength(vp, column, indexLength, working);
        return WalkStart::kFirstRow;
    }
    TraceLog(kTrace, "%s", attachedMessage);
    FitOIDtoIndexLength(vp, request, indexLength, working);
    return WalkStart::kBehindRow;
}

// Whether a row lies behind the request. A walk passes over those that do not (units with the same
// WWN, or WWNs in mixed case, which are sorted as texts): a manager would go round in circles.
bool LiesBehind(const WorkingOid& row, std::span<const oid> request) {
    return snmp_oid_compare(row.names, row.length, request.data(), request.size()) > 0;
}

// `label` ends in dots, as the numbers are lined up in the log.
void TraceNumber(const char* label, std::uint32_t number) {
    TraceLog(kTrace, "%s %u", label, number);
}

// Puts the row's OID in the place of the request.
void FinishWalk(const WorkingOid& working, oid* name, std::size_t* length) {
    std::copy_n(working.names, working.length, name);
    *length = working.length;
    TraceOid("Outgoing oid ", {name, *length});
}

// The sub-identifiers of a unit id within a working OID.
std::span<oid, WWN_OID_LEN> UnitIdIn(WorkingOid& working, const variable* vp) {
    return std::span<oid, WWN_OID_LEN>(working.names + vp->namelen, WWN_OID_LEN);
}

// The sub-identifiers that end a working OID.
template <std::size_t kCount>
std::span<oid, kCount> LastNumbers(WorkingOid& working) {
    return std::span(working.names, working.length).template last<kCount>();
}

// Where a walk over units starts.
enum class UnitStart {
    kEnd,           // nowhere: nothing lies behind the request
    kFirstUnit,     // at the first unit
    kNamedUnit,     // at the unit that the request names
    kFollowingUnit  // at the unit behind one that the request names and that does not exist
};

// Begins a walk over an index that starts with a unit id and finds the unit. `cause` is what a
// trace line blames when there is none.
UnitStart BeginUnitWalk(const variable* vp, std::span<const oid> request, std::size_t indexLength,
                        const char* attachedMessage, const char* cause, WorkingOid& working,
                        std::uint16_t& unit) {
    unit = 0;
    switch (BeginWalk(vp, request, indexLength, attachedMessage, working)) {
        case WalkStart::kPastColumn:
            return UnitStart::kEnd;
        case WalkStart::kFirstRow:
            return UnitStart::kFirstUnit;
        case WalkStart::kBehindRow:
            break;
    }
    const int match = GetWwnIndexFromWwnOID(UnitIdIn(working, vp), unit);
    if (match < 0) {
        TraceMatchFailed(__LINE__, cause);
        return UnitStart::kEnd;
    }
    return match == 0 ? UnitStart::kNamedUnit : UnitStart::kFollowingUnit;
}

// What sets the walks over a unit id and one more number apart.
enum class FollowingUnit {
    kKeepsRow,     // the row that the request names is looked for there as well
    kFromItsStart  // the walk goes on with its first row
};
struct UnitRowWalk {
    FollowingUnit followingUnit;
    const char* startLabel;  // of the trace lines, with the number's format
    const char* endLabel;
    std::uint32_t shownFrom;  // what the first row is called there
    std::uint32_t rowMask = 0xFFFFFFFF;
};

// Rows that are nothing but numbers from 0 on.
constexpr UnitRowWalk kNumberedRows{FollowingUnit::kFromItsStart, "Starting value index..",
                                    "Ending value index....", 0};

// Moves to the first existing row from (unit, row) on, over units without rows. `find` moves a row
// number to the first existing one from there on within a domain, and tells whether there is one.
// Returns 0, or -1 when no unit is left.
template <typename Find>
int RollOver(Find find, std::uint32_t& unit, std::uint32_t& row) {
    for (;; ++unit, row = 0) {
        std::uint16_t domain = 0;
        if (GetDomainIdFromIndex(unit, domain) != 0) {
            TraceLog(kError, "%s %d:Unit Index = %u caused MATCH_FAILED return", kSource, __LINE__,
                     unit);
            return -1;
        }
        if (find(domain, row)) {
            return 0;
        }
    }
}

// Finds the first existing row from (unit, row) on whose OID, put into `working` by `write`, lies
// behind the request.
template <typename Find, typename Write>
int FindRowBehind(Find find, Write write, std::span<const oid> request, const WorkingOid& working,
                  std::uint32_t& unit, std::uint32_t& row) {
    for (;; ++unit, row = 0) {
        if (RollOver(find, unit, row) != 0 || write(unit, row) != 0) {
            return -1;
        }
        if (LiesBehind(working, request)) {
            return 0;
        }
    }
}

// The common walk over a unit id and a row number + 1.
template <typename Find>
int GetNextUnitRow(const UnitRowWalk& walk, Find find, const variable* vp, oid* name,
                   std::size_t* length, std::uint16_t& unit, std::uint32_t& row) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    const UnitStart start =
        BeginUnitWalk(vp, request, kUnitRowIndexLength,
                      "Oid already has unit and index values attached", "WWN", working, unit);
    if (start == UnitStart::kEnd) {
        return -1;
    }
    // An OID holds the row number + 1, which is the next row's number already.
    oid& lastNumber = working.names[working.length - 1];
    const bool keepsRow =
        start == UnitStart::kNamedUnit || walk.followingUnit == FollowingUnit::kKeepsRow;
    row = static_cast<std::uint32_t>(keepsRow ? lastNumber : 0) & walk.rowMask;
    TraceNumber("Starting unit index...", unit);
    TraceNumber(walk.startLabel, row);
    const auto write = [&](std::uint32_t foundUnit, std::uint32_t foundRow) {
        lastNumber = oid{foundRow} + 1;
        return MakeOIDfromIndex(UnitIdIn(working, vp), foundUnit);
    };
    std::uint32_t foundUnit = unit;
    if (FindRowBehind(find, write, request, working, foundUnit, row) != 0) {
        return -1;
    }
    unit = static_cast<std::uint16_t>(foundUnit);
    TraceNumber("Ending unit index.....", unit);
    TraceNumber(walk.endLabel, row + walk.shownFrom);
    FinishWalk(working, name, length);
    return 0;
}

bool FindEvent(std::uint32_t domain, std::uint32_t& row) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    if (GetLogRange(domain, first, last) != 0 || first == 0) {
        return false;
    }
    row = std::max(row, first - 1);
    return row < last && HasNextLogEntry(domain, row);
}

bool FindLink(std::uint32_t domain, std::uint32_t& row) {
    std::uint32_t link = 0;
    if (AskNextLink(domain, row, link) != 0) {
        return false;
    }
    row = link - 1;
    return true;
}

// Lists of members differ in where they are looked up and how the trace calls them.
struct MemberWalk {
    const ZoneMemberNode* (*next)(std::uint32_t group, std::uint32_t member);
    const char* startLabel;
    const char* endLabel;
    const char* endMemberLabel;
    const char* endMessage;
};

int GetNextMember(const MemberWalk& walk, const variable* vp, oid* name, std::size_t* length,
                  const ZoneMemberNode*& member) {
    WorkingOid working;
    if (BeginWalk(vp, {name, *length}, kMemberIndexLength, "Oid already has index values attached",
                  working) == WalkStart::kPastColumn) {
        return -1;
    }
    const auto names = LastNumbers<kMemberIndexLength>(working);
    const auto group = static_cast<std::uint32_t>(names[0]);
    const auto number = static_cast<std::uint32_t>(names[1]);
    TraceNumber(walk.startLabel, group);
    TraceNumber("Starting member index...", number);
    member = walk.next(group, number);
    if (member == nullptr) {
        TraceLog(kError, "%s", walk.endMessage);
        return -1;
    }
    TraceNumber(walk.endLabel, member->zone);
    TraceNumber(walk.endMemberLabel, member->member);
    names[0] = member->zone;
    names[1] = member->member;
    FinishWalk(working, name, length);
    return 0;
}

// The numbers of a login walk's request, and where a zero among them sends it.
void ReadLoginStart(std::span<const oid, kLoginIndexLength> index, std::uint32_t& unit,
                    Login& start) {
    const bool hasUnit = index[0] != 0;
    const bool hasPort = hasUnit && index[1] != 0;
    unit = hasUnit ? static_cast<std::uint32_t>(index[0] - 1) : 0;
    start.port = hasPort ? static_cast<std::uint32_t>(index[1] - 1) : 0;
    start.login = hasPort ? static_cast<std::uint32_t>(index[2]) : 0;
}

// The three parts of a name-server index as texts.
struct NameServerIndex {
    char switchWwn[2 * WWN_OID_LEN + 1];
    char portWwn[2 * kPortWwnOidLength + 1];
    char portId[2 * kPortIdOidLength + 1];
};

// Returns 0, or -1 when one of the parts holds what is no byte.
int ReadNameServerIndex(std::span<const oid, kNameServerIndexLength> names,
                        NameServerIndex& index) {
    if (MakeHexStrFromOID(names.first<WWN_OID_LEN>(), index.switchWwn) != 0 ||
        MakeHexStrFromOID(names.subspan<WWN_OID_LEN, kPortWwnOidLength>(), index.portWwn) != 0 ||
        MakeHexStrFromOID(names.last<kPortIdOidLength>(), index.portId) != 0) {
        return -1;
    }
    return 0;
}

void WriteNameServerIndex(const NameServerMatch& entry,
                          std::span<oid, kNameServerIndexLength> names) {
    MakeOIDfromHexStr(entry.switchWwn, names.first<WWN_OID_LEN>());
    MakeOIDfromHexStr(entry.portWwn, names.subspan<WWN_OID_LEN, kPortWwnOidLength>());
    MakeOIDfromHexStr(entry.portId, names.last<kPortIdOidLength>());
}

// Finds the entry behind an index. One of a request that breaks off stands before the entry that it
// begins to name; one with anything behind the switch's WWN stands behind the switch.
int FindNextNameServer(const NameServerIndex& index, bool brokenOff, NameServerMatch& next) {
    constexpr const char* kGreatestWwn = "ffffffffffffffff";
    constexpr std::size_t kWwnDigits = 16;
    const auto any = [](const NameServerMatch&) { return true; };
    if (brokenOff && GetNameServerEntry(index.switchWwn, index.portWwn, any, next) == 0) {
        return 0;
    }
    const bool behindSwitch = std::strspn(index.switchWwn + kWwnDigits, "0") < kWwnDigits;
    return GetNextNameServer(index.switchWwn, behindSwitch ? kGreatestWwn : index.portWwn, next);
}

}  // namespace

int GetNextUnit(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    const UnitStart start = BeginUnitWalk(vp, request, WWN_OID_LEN, "Oid already has WWN attached",
                                          "GetWwnIndexFromWwnOID", working, unit);
    if (start == UnitStart::kEnd) {
        return -1;
    }
    // A request that breaks off within the unit's name stands before it.
    if (start == UnitStart::kNamedUnit && request.size() >= working.length) {
        ++unit;
    }
    TraceLog(kTrace, "Starting unit index... %i", unit);
    for (;; ++unit) {
        const char* wwn = GetWWNfromIndex(unit);
        if (wwn == nullptr) {
            TraceMatchFailed(__LINE__, "GetWWNfromIndex");
            return -1;
        }
        MakeOIDfromHexStr(wwn, UnitIdIn(working, vp));
        if (LiesBehind(working, request)) {
            TraceLog(kTrace, "Ending unit index..... %i", unit);
            TraceLog(kTrace, "Ending WWN............ %s", wwn);
            break;
        }
    }
    FinishWalk(working, name, length);
    return 0;
}

int GetNextUnitValue(const variable* vp, oid* name, std::size_t* length, std::uint32_t bound,
                     std::uint16_t& unit, std::uint32_t& value) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    const UnitStart start =
        BeginUnitWalk(vp, request, kUnitRowIndexLength,
                      "Oid already has unit and index values attached", "WWN", working, unit);
    if (start == UnitStart::kEnd) {
        return -1;
    }
    oid& lastNumber = working.names[working.length - 1];
    // A unit that the request does not name is passed over as if all its values had been read.
    value = start == UnitStart::kFollowingUnit ? bound : static_cast<std::uint32_t>(lastNumber);
    TraceNumber("Starting unit index...", unit);
    TraceNumber("Starting value index..", value);
    for (;; value = bound) {
        if (value >= bound) {
            ++unit;
            value = 0;
        }
        if (GetWWNfromIndex(unit) == nullptr) {
            TraceMatchFailed(__LINE__, "GetWWNfromIndex");
            return -1;
        }
        MakeOIDfromIndex(UnitIdIn(working, vp), unit);
        lastNumber = oid{value} + 1;
        if (LiesBehind(working, request)) {
            break;
        }
    }
    TraceNumber("Ending unit index.....", unit);
    TraceNumber("Ending value index....", value);
    FinishWalk(working, name, length);
    return 0;
}

int GetNextUnitPort(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& port) {
    constexpr std::uint32_t kPortNumberBits = 0xFFFF;
    constexpr UnitRowWalk kWalk{FollowingUnit::kKeepsRow, "Starting port index...",
                                "Ending value index....", 0, kPortNumberBits};
    const auto find = [](std::uint32_t domain, std::uint32_t row) {
        return row < AskNumber(domain, Fact::kMaxPorts);
    };
    return GetNextUnitRow(kWalk, find, vp, name, length, unit, port);
}

int GetNextUnitSensor(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                      std::uint32_t& sensor, SensorRef& part) {
    const auto find = [&part](std::uint32_t domain, std::uint32_t row) {
        return GetSensorFromIndex(domain, row, part) == 0;
    };
    return GetNextUnitRow(kNumberedRows, find, vp, name, length, unit, sensor);
}

int GetNextUnitRevision(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                        std::uint32_t& revision) {
    const auto find = [](std::uint32_t domain, std::uint32_t row) {
        return row < GetRevisionCount(domain);
    };
    return GetNextUnitRow(kNumberedRows, find, vp, name, length, unit, revision);
}

int GetNextUnitEvent(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                     std::uint32_t& eventId) {
    constexpr UnitRowWalk kWalk{FollowingUnit::kKeepsRow, "Starting event id.....",
                                "Ending event id.......", 1};
    if (GetNextUnitRow(kWalk, FindEvent, vp, name, length, unit, eventId) != 0) {
        return -1;
    }
    ++eventId;
    return 0;
}

int GetNextUnitLink(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& link) {
    constexpr UnitRowWalk kWalk{FollowingUnit::kKeepsRow, "Starting link index...",
                                "Ending link index....", 1};
    if (GetNextUnitRow(kWalk, FindLink, vp, name, length, unit, link) != 0) {
        return -1;
    }
    ++link;
    return 0;
}

int GetNextNameServerEntry(const variable* vp, oid* name, std::size_t* length,
                           NameServerMatch& entry) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    if (BeginWalk(vp, request, kNameServerIndexLength, "Oid already has index values attached",
                  working) == WalkStart::kPastColumn) {
        return -1;
    }
    const auto names = LastNumbers<kNameServerIndexLength>(working);
    NameServerIndex index;
    if (ReadNameServerIndex(names, index) != 0) {
        TraceLog(kError, "%s, %d:Invalid Port Id caused MATCH_FAILED return", kSource, __LINE__);
        return -1;
    }
    NameServerMatch next;
    if (FindNextNameServer(index, request.size() < working.length, next) != 0) {
        TraceLog(kError, "%s, %d:No more entries caused a MATCH_FAILED return", kSource, __LINE__);
        return -1;
    }
    WriteNameServerIndex(next, names);
    TraceLog(kTrace, "Ending Switch Wwn... %s", next.switchWwn);
    TraceLog(kTrace, "Ending Port Wwn..... %s", next.portWwn);
    TraceLog(kTrace, "Ending Port Id...... %s", next.portId);
    FinishWalk(working, name, length);
    entry = next;
    return 0;
}

int FindNameServerEntry(std::span<const oid, kNameServerIndexLength> names,
                        NameServerMatch& entry) {
    NameServerIndex index;
    if (ReadNameServerIndex(names, index) != 0) {
        return -1;
    }
    const auto hasIndex = [&](const NameServerMatch& candidate) {
        std::array<oid, kNameServerIndexLength> present;
        WriteNameServerIndex(candidate, present);
        return std::ranges::equal(present, names);
    };
    return GetNameServerEntry(index.switchWwn, index.portWwn, hasIndex, entry);
}

int GetNextTrapEntry(TrapRowLookup rowAt, const variable* vp, oid* name, std::size_t* length,
                     std::uint16_t& row) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    const WalkStart start = BeginWalk(vp, request, kTrapIndexLength,
                                      "Oid already has IP and port values attached", working);
    if (start == WalkStart::kPastColumn) {
        return -1;
    }
    const auto names = LastNumbers<kTrapIndexLength>(working);
    if (start == WalkStart::kBehindRow && GetTrapIndexFromTrapOID(rowAt, names, row) < 0) {
        TraceMatchFailed(__LINE__, "GetTrapIndexFromTrapOID");
        return -1;
    }
    // Managers add rows at the end: only after the next reading from the switch are they sorted.
    std::array<oid, kTrapIndexLength> best{};
    bool found = false;
    for (std::uint16_t candidate = 0; candidate < kTrapRows; ++candidate) {
        TrapRowIndex index;
        if (rowAt(candidate, index) != 0) {
            continue;
        }
        MakeOIDfromTrapIndex(index, names);
        if (LiesBehind(working, request) &&
            (!found || std::ranges::lexicographical_compare(names, best))) {
            std::ranges::copy(names, best.begin());
            row = candidate;
            found = true;
        }
    }
    if (!found) {
        TraceMatchFailed(__LINE__, "GetTrapTblInfo");
        return -1;
    }
    std::ranges::copy(best, names.begin());
    TraceNumber("Ending table index....", row);
    TraceLog(kTrace, "Ending IP Addr........ %u.%u.%u.%u", static_cast<unsigned>(best[0]),
             static_cast<unsigned>(best[1]), static_cast<unsigned>(best[2]),
             static_cast<unsigned>(best[3]));
    TraceNumber("Ending Port Num.......", static_cast<std::uint32_t>(best[4]));
    FinishWalk(working, name, length);
    return 0;
}

int GetNextZoneMember(const variable* vp, oid* name, std::size_t* length,
                      const ZoneMemberNode*& member) {
    constexpr MemberWalk kWalk{GetNextZone, "Starting zone index.....",
                               "Ending zone index...........", "Ending zone member index....",
                               "Out of zone info. caused MATCH_FAILED return"};
    return GetNextMember(kWalk, vp, name, length, member);
}

int GetNextAliasMember(const variable* vp, oid* name, std::size_t* length,
                       const ZoneMemberNode*& member) {
    constexpr MemberWalk kWalk{GetNextAlias, "Starting alias index.....",
                               "Ending alias index...........", "Ending alias member index....",
                               "Out of alias info. caused MATCH_FAILED return"};
    return GetNextMember(kWalk, vp, name, length, member);
}

int GetNextModulePort(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                      std::uint32_t& port) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    if (BeginWalk(vp, request, kModulePortIndexLength,
                  "Oid already has unit and index values attached",
                  working) == WalkStart::kPastColumn) {
        return -1;
    }
    const auto names = LastNumbers<kModulePortIndexLength>(working);
    std::uint32_t foundUnit = 0;
    port = 0;
    if (names[0] != 0) {
        foundUnit = static_cast<std::uint32_t>(names[0] - 1);
        port = static_cast<std::uint32_t>(names[1]);
    }
    TraceNumber("Starting unit index...", foundUnit);
    TraceNumber("Starting port index...", port);
    const auto find = [](std::uint32_t domain, std::uint32_t row) {
        return row < AskNumber(domain, Fact::kMaxPorts);
    };
    const auto write = [&](std::uint32_t rowUnit, std::uint32_t row) {
        names[0] = oid{rowUnit} + 1;
        names[1] = oid{row} + 1;
        return 0;
    };
    if (FindRowBehind(find, write, request, working, foundUnit, port) != 0) {
        return -1;
    }
    unit = static_cast<std::uint16_t>(foundUnit);
    TraceNumber("Ending unit index.....", unit);
    TraceNumber("Ending value index....", port);
    FinishWalk(working, name, length);
    return 0;
}

int CheckModulePortOID(const variable* vp, const oid* name, std::size_t length, std::uint16_t* unit,
                       std::uint16_t* port) {
    if (length != vp->namelen + kModulePortIndexLength) {
        TraceLog(kError, "%s %d:Incorrect OID length cause a MATCH_FAILED return", kSource,
                 __LINE__);
        return -1;
    }
    if (unit == nullptr || port == nullptr) {
        TraceLog(kError, "%s %d:Bad unit or port number cause a MATCH_FAILED return", kSource,
                 __LINE__);
        return -1;
    }
    *unit = static_cast<std::uint16_t>(name[length - 2] - 1);
    *port = static_cast<std::uint16_t>(name[length - 1] - 1);
    return 0;
}

int GetNextLogin(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                 Login& found) {
    const std::span<const oid> request(name, *length);
    WorkingOid working;
    if (BeginWalk(vp, request, kLoginIndexLength, "Oid already has unit and index values attached",
                  working) == WalkStart::kPastColumn) {
        return -1;
    }
    const auto names = LastNumbers<kLoginIndexLength>(working);
    std::uint32_t foundUnit = 0;
    ReadLoginStart(names, foundUnit, found);
    TraceNumber("Starting unit index.........", foundUnit);
    TraceNumber("Starting local port index...", found.port);
    TraceNumber("Starting login index........", found.login);
    bool furtherUnit = false;
    const auto find = [&](std::uint32_t domain, std::uint32_t& port) {
        found.port = port;
        found.login = furtherUnit ? 0 : found.login;
        furtherUnit = true;
        const bool exists = FindNextLogin(domain, found) == 0;
        port = found.port;
        return exists;
    };
    std::uint32_t port = found.port;
    const auto write = [&](std::uint32_t rowUnit, std::uint32_t row) {
        names[0] = oid{rowUnit} + 1;
        names[1] = oid{row} + 1;
        names[2] = oid{found.login} + 1;
        return 0;
    };
    if (FindRowBehind(find, write, request, working, foundUnit, port) != 0) {
        return -1;
    }
    unit = static_cast<std::uint16_t>(foundUnit);
    TraceNumber("Ending unit index...........", unit);
    TraceNumber("Ending local port index.....", found.port);
    TraceNumber("Ending login index..........", found.login);
    FinishWalk(working, name, length);
    return 0;
}

int GetLogin(std::span<const oid, kLoginIndexLength> index, std::uint16_t& unit, Login& found) {
    const std::uint32_t namedUnit = static_cast<std::uint32_t>(index[0]) - 1;
    found.port = static_cast<std::uint32_t>(index[1]) - 1;
    found.login = static_cast<std::uint32_t>(index[2]) - 1;
    std::uint16_t domain = 0;
    if (std::ranges::count(index, oid{0}) != 0 || GetDomainIdFromIndex(namedUnit, domain) != 0 ||
        FindLogin(domain, found) != 0) {
        return -1;
    }
    unit = static_cast<std::uint16_t>(namedUnit);
    return 0;
}

}  // namespace snmpmain
