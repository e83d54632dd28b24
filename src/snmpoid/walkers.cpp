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

// Where a walk starts.
enum class Start {
    kEnd,           // nowhere: the request lies after the column or after its last unit
    kFirstRow,      // before the first row
    kNamedRow,      // at the row that the request names, existing or not
    kFollowingUnit  // the request names a row of a unit that does not exist: at the one after it
};

struct Walk {
    std::span<const oid> request;
    std::size_t nameLength;  // of the column
    WorkingOid working;      // the column's name and an index: the request's, then the found row's
    Start start;
};

// Begins a walk. The index is that of the request where it names a row, else zeros.
Walk BeginWalk(const variable* vp, const oid* name, const std::size_t* length,
               std::size_t indexLength, const char* attachedMessage) {
    Walk walk{{name, *length}, vp->namelen, {}, Start::kEnd};
    TraceOid("Incoming oid ", walk.request);
    const std::span<const oid> column(vp->name, vp->namelen);
    const auto [ofColumn, ofRequest] = std::ranges::mismatch(column, walk.request);
    const bool differs = ofColumn != column.end() && ofRequest != walk.request.end();
    if (differs && *ofRequest > *ofColumn) {
        TraceMatchFailed(__LINE__, "OID mismatch");
    } else if (differs || walk.request.size() <= column.size()) {
        TraceLog(kTrace, "First time through or oid just got incremented");
        FitOIDtoIndexLength(vp, column, indexLength, walk.working);
        walk.start = Start::kFirstRow;
    } else {
        TraceLog(kTrace, "%s", attachedMessage);
        FitOIDtoIndexLength(vp, walk.request, indexLength, walk.working);
        walk.start = Start::kNamedRow;
    }
    return walk;
}

// Whether the row that has been reached lies after the request. A walk passes over those that do
// not (units with the same WWN, or WWNs in mixed case, which are sorted as texts): a manager would
// go round in circles.
bool LiesAfter(const Walk& walk) {
    return snmp_oid_compare(walk.working.names, walk.working.length, walk.request.data(),
                            walk.request.size()) > 0;
}

// `label` ends in dots, as the numbers are lined up in the log.
void TraceNumber(const char* label, std::uint32_t number) {
    TraceLog(kTrace, "%s %u", label, number);
}

// Puts the row's OID in the place of the request. Always 0.
int FinishWalk(const Walk& walk, oid* name, std::size_t* length) {
    std::copy_n(walk.working.names, walk.working.length, name);
    *length = walk.working.length;
    TraceOid("Outgoing oid ", {name, *length});
    return 0;
}

// The sub-identifiers of a unit id, and those that end the OID.
std::span<oid, WWN_OID_LEN> UnitIdIn(Walk& walk) {
    return std::span<oid, WWN_OID_LEN>(walk.working.names + walk.nameLength, WWN_OID_LEN);
}

template <std::size_t kCount>
std::span<oid, kCount> LastNumbers(Walk& walk) {
    return std::span(walk.working.names, walk.working.length).template last<kCount>();
}

// Begins a walk over an index that starts with a unit id and finds the unit. `cause` is what a
// trace line blames when there is none.
Walk BeginUnitWalk(const variable* vp, const oid* name, const std::size_t* length,
                   std::size_t indexLength, const char* attachedMessage, const char* cause,
                   std::uint16_t& unit) {
    Walk walk = BeginWalk(vp, name, length, indexLength, attachedMessage);
    unit = 0;
    if (walk.start == Start::kNamedRow) {
        const int match = GetWwnIndexFromWwnOID(UnitIdIn(walk), unit);
        if (match < 0) {
            TraceMatchFailed(__LINE__, cause);
            walk.start = Start::kEnd;
        } else if (match > 0) {
            walk.start = Start::kFollowingUnit;
        }
    }
    return walk;
}

// Moves to the first row from (firstUnit, row) on, over units without rows, whose OID lies after
// the request. `find` moves a row number to the first existing one from there on within a domain,
// and tells whether there is one; `write` writes the row's index. Returns 0, or -1 when no unit is
// left.
template <typename Find, typename Write>
int GoToRow(Walk& walk, Find find, Write write, std::uint32_t firstUnit, std::uint16_t& unit,
            std::uint32_t& row) {
    for (std::uint32_t candidate = firstUnit;; ++candidate, row = 0) {
        std::uint16_t domain = 0;
        if (GetDomainIdFromIndex(candidate, domain) != 0) {
            TraceLog(kError, "%s %d:Unit Index = %u caused MATCH_FAILED return", kSource, __LINE__,
                     candidate);
            return -1;
        }
        if (!find(domain, row)) {
            continue;
        }
        write(candidate, row);
        if (LiesAfter(walk)) {
            unit = static_cast<std::uint16_t>(candidate);
            return 0;
        }
    }
}

// What sets the walks over a unit id and one more number apart.
enum class FollowingUnit {
    kKeepsRow,      // the row that the request names is looked for there as well
    kFromItsStart,  // the walk goes on with its first row
    kIsPassedOver
};
struct UnitRowWalk {
    FollowingUnit followingUnit;
    const char* startLabel;  // of the trace lines
    const char* endLabel;
    std::uint32_t shownFrom = 0;  // what the first row is called there
    std::uint32_t rowMask = 0xFFFFFFFF;
};

// Rows that are nothing but numbers from 0 on.
constexpr UnitRowWalk kNumberedRows{FollowingUnit::kFromItsStart, "Starting value index..",
                                    "Ending value index...."};

// The row that a walk starts with. An OID holds the row number + 1, the next row's number already.
std::uint32_t FirstRow(const UnitRowWalk& shape, Walk& walk) {
    if (walk.start == Start::kFollowingUnit && shape.followingUnit != FollowingUnit::kKeepsRow) {
        return shape.followingUnit == FollowingUnit::kIsPassedOver ? shape.rowMask : 0;
    }
    return static_cast<std::uint32_t>(LastNumbers<1>(walk)[0]) & shape.rowMask;
}

// The common walk over a unit id and a row number + 1.
template <typename Find>
int GetNextUnitRow(const UnitRowWalk& shape, Find find, const variable* vp, oid* name,
                   std::size_t* length, std::uint16_t& unit, std::uint32_t& row) {
    Walk walk = BeginUnitWalk(vp, name, length, kUnitRowIndexLength,
                              "Oid already has unit and index values attached", "WWN", unit);
    if (walk.start == Start::kEnd) {
        return -1;
    }
    row = FirstRow(shape, walk);
    TraceNumber("Starting unit index...", unit);
    TraceNumber(shape.startLabel, row);
    const auto write = [&](std::uint32_t foundUnit, std::uint32_t foundRow) {
        MakeOIDfromIndex(UnitIdIn(walk), foundUnit);
        LastNumbers<1>(walk)[0] = oid{foundRow} + 1;
    };
    if (GoToRow(walk, find, write, unit, unit, row) != 0) {
        return -1;
    }
    TraceNumber("Ending unit index.....", unit);
    TraceNumber(shape.endLabel, row + shape.shownFrom);
    return FinishWalk(walk, name, length);
}

// The same over rows that the unit itself numbers from 1 on and that it is asked for.
int GetNextAskedRow(const UnitRowWalk& shape,
                    int (*ask)(std::uint32_t domain, std::uint32_t after, std::uint32_t& number),
                    const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& number) {
    const auto find = [ask](std::uint32_t domain, std::uint32_t& row) {
        std::uint32_t next = 0;
        const bool exists = ask(domain, row, next) == 0;
        row = exists ? next - 1 : row;
        return exists;
    };
    if (GetNextUnitRow(shape, find, vp, name, length, unit, number) != 0) {
        return -1;
    }
    ++number;
    return 0;
}

bool HasPort(std::uint32_t domain, std::uint32_t port) {
    return port < AskNumber(domain, Fact::kMaxPorts);
}

// Lists of members differ in where they are looked up and how the trace calls them.
struct MemberWalk {
    const ZoneMemberNode* (*next)(std::uint32_t group, std::uint32_t member);
    const char* startLabel;
    const char* endLabel;
    const char* endMemberLabel;
    const char* endMessage;
};

int GetNextMember(const MemberWalk& shape, const variable* vp, oid* name, std::size_t* length,
                  const ZoneMemberNode*& member) {
    Walk walk =
        BeginWalk(vp, name, length, kMemberIndexLength, "Oid already has index values attached");
    if (walk.start == Start::kEnd) {
        return -1;
    }
    const auto names = LastNumbers<kMemberIndexLength>(walk);
    const auto group = static_cast<std::uint32_t>(names[0]);
    const auto number = static_cast<std::uint32_t>(names[1]);
    TraceNumber(shape.startLabel, group);
    TraceNumber("Starting member index...", number);
    member = shape.next(group, number);
    if (member == nullptr) {
        TraceLog(kError, "%s", shape.endMessage);
        return -1;
    }
    TraceNumber(shape.endLabel, member->zone);
    TraceNumber(shape.endMemberLabel, member->member);
    names[0] = member->zone;
    names[1] = member->member;
    return FinishWalk(walk, name, length);
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

// Finds the entry after an index. One of a request that breaks off stands before the entry that it
// begins to name; one with anything after the switch's WWN stands after the switch.
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
    Walk walk = BeginUnitWalk(vp, name, length, WWN_OID_LEN, "Oid already has WWN attached",
                              "GetWwnIndexFromWwnOID", unit);
    if (walk.start == Start::kEnd) {
        return -1;
    }
    // A request that breaks off within the unit's name stands before it.
    if (walk.start == Start::kNamedRow && walk.request.size() >= walk.working.length) {
        ++unit;
    }
    TraceLog(kTrace, "Starting unit index... %i", unit);
    for (;; ++unit) {
        const char* wwn = GetWWNfromIndex(unit);
        if (wwn == nullptr) {
            TraceMatchFailed(__LINE__, "GetWWNfromIndex");
            return -1;
        }
        MakeOIDfromHexStr(wwn, UnitIdIn(walk));
        if (LiesAfter(walk)) {
            TraceLog(kTrace, "Ending unit index..... %i", unit);
            TraceLog(kTrace, "Ending WWN............ %s", wwn);
            return FinishWalk(walk, name, length);
        }
    }
}

int GetNextUnitValue(const variable* vp, oid* name, std::size_t* length, std::uint32_t bound,
                     std::uint16_t& unit, std::uint32_t& value) {
    constexpr UnitRowWalk kShape{FollowingUnit::kIsPassedOver, kNumberedRows.startLabel,
                                 kNumberedRows.endLabel};
    const auto find = [bound](std::uint32_t, std::uint32_t row) { return row < bound; };
    return GetNextUnitRow(kShape, find, vp, name, length, unit, value);
}

int GetNextUnitPort(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& port) {
    constexpr std::uint32_t kPortNumberBits = 0xFFFF;
    constexpr UnitRowWalk kShape{FollowingUnit::kKeepsRow, "Starting port index...",
                                 "Ending value index....", 0, kPortNumberBits};
    return GetNextUnitRow(kShape, HasPort, vp, name, length, unit, port);
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
    constexpr UnitRowWalk kShape{FollowingUnit::kKeepsRow, "Starting event id.....",
                                 "Ending event id.......", 1};
    return GetNextAskedRow(kShape, AskNextEvent, vp, name, length, unit, eventId);
}

int GetNextUnitLink(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& link) {
    constexpr UnitRowWalk kShape{FollowingUnit::kKeepsRow, "Starting link index...",
                                 "Ending link index....", 1};
    return GetNextAskedRow(kShape, AskNextLink, vp, name, length, unit, link);
}

int GetNextNameServerEntry(const variable* vp, oid* name, std::size_t* length,
                           NameServerMatch& entry) {
    Walk walk = BeginWalk(vp, name, length, kNameServerIndexLength,
                          "Oid already has index values attached");
    if (walk.start == Start::kEnd) {
        return -1;
    }
    const auto names = LastNumbers<kNameServerIndexLength>(walk);
    NameServerIndex index;
    if (ReadNameServerIndex(names, index) != 0) {
        TraceLog(kError, "%s, %d:Invalid Port Id caused MATCH_FAILED return", kSource, __LINE__);
        return -1;
    }
    if (FindNextNameServer(index, walk.request.size() < walk.working.length, entry) != 0) {
        TraceLog(kError, "%s, %d:No more entries caused a MATCH_FAILED return", kSource, __LINE__);
        return -1;
    }
    WriteNameServerIndex(entry, names);
    TraceLog(kTrace, "Ending Switch Wwn... %s", entry.switchWwn);
    TraceLog(kTrace, "Ending Port Wwn..... %s", entry.portWwn);
    TraceLog(kTrace, "Ending Port Id...... %s", entry.portId);
    return FinishWalk(walk, name, length);
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
    Walk walk = BeginWalk(vp, name, length, kTrapIndexLength,
                          "Oid already has IP and port values attached");
    if (walk.start == Start::kEnd) {
        return -1;
    }
    const auto names = LastNumbers<kTrapIndexLength>(walk);
    if (walk.start == Start::kNamedRow && GetTrapIndexFromTrapOID(rowAt, names, row) < 0) {
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
        if (LiesAfter(walk) && (!found || std::ranges::lexicographical_compare(names, best))) {
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
    return FinishWalk(walk, name, length);
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
    Walk walk = BeginWalk(vp, name, length, kModulePortIndexLength,
                          "Oid already has unit and index values attached");
    if (walk.start == Start::kEnd) {
        return -1;
    }
    const auto names = LastNumbers<kModulePortIndexLength>(walk);
    std::uint32_t firstUnit = 0;
    port = 0;
    if (names[0] != 0) {
        firstUnit = static_cast<std::uint32_t>(names[0] - 1);
        port = static_cast<std::uint32_t>(names[1]);
    }
    TraceNumber("Starting unit index...", firstUnit);
    TraceNumber("Starting port index...", port);
    const auto write = [&](std::uint32_t rowUnit, std::uint32_t row) {
        names[0] = oid{rowUnit} + 1;
        names[1] = oid{row} + 1;
    };
    if (GoToRow(walk, HasPort, write, firstUnit, unit, port) != 0) {
        return -1;
    }
    TraceNumber("Ending unit index.....", unit);
    TraceNumber("Ending value index....", port);
    return FinishWalk(walk, name, length);
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
    Walk walk = BeginWalk(vp, name, length, kLoginIndexLength,
                          "Oid already has unit and index values attached");
    if (walk.start == Start::kEnd) {
        return -1;
    }
    const auto names = LastNumbers<kLoginIndexLength>(walk);
    std::uint32_t firstUnit = 0;
    ReadLoginStart(names, firstUnit, found);
    TraceNumber("Starting unit index.........", firstUnit);
    TraceNumber("Starting local port index...", found.port);
    TraceNumber("Starting login index........", found.login);
    bool furtherUnit = false;
    const auto find = [&](std::uint32_t domain, std::uint32_t& port) {
        found.port = port;
        found.login = furtherUnit ? 0 : found.login;
        furtherUnit = true;
        return ReadNextLogin(domain, found) == 0;
    };
    const auto write = [&](std::uint32_t rowUnit, std::uint32_t) {
        names[0] = oid{rowUnit} + 1;
        names[1] = oid{found.port} + 1;
        names[2] = oid{found.login} + 1;
    };
    std::uint32_t port = found.port;
    if (GoToRow(walk, find, write, firstUnit, unit, port) != 0) {
        return -1;
    }
    TraceNumber("Ending unit index...........", unit);
    TraceNumber("Ending local port index.....", found.port);
    TraceNumber("Ending login index..........", found.login);
    return FinishWalk(walk, name, length);
}

int ReadLoginAt(std::span<const oid, kLoginIndexLength> index, std::uint16_t& unit, Login& found) {
    const std::uint32_t namedUnit = static_cast<std::uint32_t>(index[0]) - 1;
    found.port = static_cast<std::uint32_t>(index[1]) - 1;
    found.login = static_cast<std::uint32_t>(index[2]) - 1;
    std::uint16_t domain = 0;
    if (std::ranges::count(index, oid{0}) != 0 || GetDomainIdFromIndex(namedUnit, domain) != 0 ||
        ReadLogin(domain, found) != 0) {
        return -1;
    }
    unit = static_cast<std::uint16_t>(namedUnit);
    return 0;
}

}  // namespace snmpmain
