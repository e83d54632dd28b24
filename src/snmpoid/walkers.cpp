#include "src/snmpoid/walkers.h"

#include <algorithm>
#include <array>
#include <span>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmptables/row_numbers.h"
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

// A table whose rows are numbered from 0 within each unit.
struct UnitRows {
    std::uint16_t (*count)(std::uint32_t domain);
};

// Moves to the first existing row from (unit, row) on, over units without rows. Returns 0, or -1
// when no unit is left.
int RollOver(const UnitRows& rows, std::uint16_t& unit, std::uint32_t& row) {
    for (;; ++unit, row = 0) {
        std::uint16_t domain = 0;
        if (GetDomainIdFromIndex(unit, domain) != 0) {
            TraceLog(kError, "%s %d:Unit Index = %i caused MATCH_FAILED return", kSource, __LINE__,
                     unit);
            return -1;
        }
        if (row < rows.count(domain)) {
            return 0;
        }
    }
}

// The common walk over a unit id and a row number + 1.
int GetNextUnitRow(const UnitRows& rows, const variable* vp, oid* name, std::size_t* length,
                   std::uint16_t& unit, std::uint32_t& row) {
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
    row = static_cast<std::uint32_t>(start == UnitStart::kNamedUnit ? lastNumber : 0);
    TraceLog(kTrace, "Starting unit index... %i", unit);
    TraceLog(kTrace, "Starting value index.. %u", row);
    for (;; ++unit, row = 0) {
        if (RollOver(rows, unit, row) != 0 || MakeOIDfromIndex(UnitIdIn(working, vp), unit) != 0) {
            return -1;
        }
        lastNumber = oid{row} + 1;
        if (LiesBehind(working, request)) {
            break;
        }
    }
    TraceLog(kTrace, "Ending unit index..... %i", unit);
    TraceLog(kTrace, "Ending value index.... %u", row);
    FinishWalk(working, name, length);
    return 0;
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
    if (start == UnitStart::kNamedUnit) {
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

int GetNextUnitRevision(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                        std::uint32_t& revision) {
    constexpr UnitRows kRevisions{GetRevisionCount};
    return GetNextUnitRow(kRevisions, vp, name, length, unit, revision);
}

}  // namespace snmpmain
