#include "src/mibs/fcmgmt/fcmgmt.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "src/mibs/fcmgmt/columns.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain {
namespace {

constexpr std::size_t kVariableCount = 197;

constexpr oid fcmgmt_variables_oid[] = {1, 3, 6, 1, 3, 94};

// In the order of registration.
const std::array kGroups = {
    ColumnGroup{{1}, 1, var_fcmgmt, fcmgmt::kConnSetScalars},
    ColumnGroup{{2}, 1, var_fcmgmt, fcmgmt::kTrapRegScalars},
    ColumnGroup{{}, 0, var_fcmgmt, fcmgmt::kRevisionScalars},
    ColumnGroup{{1, 6, 1}, 3, var_connUnitTable, fcmgmt::kUnitColumns},
    ColumnGroup{{1, 7, 1}, 3, var_connUnitRevsTable, fcmgmt::kRevisionColumns},
    ColumnGroup{{1, 8, 1}, 3, var_fcmgmt_empty, fcmgmt::kSensorColumns},
    ColumnGroup{{1, 10, 1}, 3, var_fcmgmt_empty, fcmgmt::kPortColumns},
    ColumnGroup{{1, 11, 1}, 3, var_fcmgmt_empty, fcmgmt::kEventColumns},
    ColumnGroup{{1, 12, 1}, 3, var_fcmgmt_empty, fcmgmt::kLinkColumns},
    ColumnGroup{{1, 13, 1}, 3, var_fcmgmt_empty, fcmgmt::kZoneColumns},
    ColumnGroup{{1, 14, 1}, 3, var_fcmgmt_empty, fcmgmt::kAliasColumns},
    ColumnGroup{{2, 3, 1}, 3, var_fcmgmt_empty, fcmgmt::kTrapRegistrationColumns},
    ColumnGroup{{4, 5, 1}, 3, var_fcmgmt_empty, fcmgmt::kPortStatisticsColumns},
    ColumnGroup{{5, 1}, 2, var_fcmgmt, fcmgmt::kServiceScalars},
    ColumnGroup{{5, 2, 1, 1}, 4, var_fcmgmt_empty, fcmgmt::kNameServerColumns},
    ColumnGroup{{5, 2, 2, 1}, 4, var_fcmgmt_empty, fcmgmt::kPlatformColumns},
};

// What the handlers return points into this.
MibValue result;

int ResolveRevision(const HandlerCall& call, Instance& instance) {
    if (ResolveUnitRow(call, instance) != 0) {
        return -1;
    }
    return GetRevisionFromIndex(instance.domain, instance.row, instance.part);
}

int NextRevision(const HandlerCall& call, Instance& instance) {
    std::uint32_t revision = 0;
    if (GetNextUnitRevision(call.vp, call.name, call.length, instance.unit, revision) != 0) {
        return -1;
    }
    instance.row = revision;
    instance.part = RevisionOfFirstChassis(revision);  // the walk goes no further than that
    return CompleteUnit(call, instance);
}

}  // namespace

std::size_t fcmgmt::MakeFcmgmtVariables(std::span<variable7> variables) {
    return MakeVariables(kGroups, variables);
}

u_char* var_fcmgmt(variable* vp, oid* name, std::size_t* length, int exact,
                   std::size_t* valueLength, WriteMethod** writeMethod) {
    static const std::array kColumns{fcmgmt::kConnSetScalars, fcmgmt::kTrapRegScalars,
                                     fcmgmt::kRevisionScalars, fcmgmt::kServiceScalars};
    static const ServedTable kScalars{"fcmgmt", kColumns, kScalarShape};
    return Serve(kScalars, {vp, name, length, exact != 0, valueLength, writeMethod}, result);
}

u_char* var_connUnitTable(variable* vp, oid* name, std::size_t* length, int exact,
                          std::size_t* valueLength, WriteMethod** writeMethod) {
    static const ServedTable kUnits{"fcmgmt", {&fcmgmt::kUnitColumns, 1}, kUnitShape};
    return Serve(kUnits, {vp, name, length, exact != 0, valueLength, writeMethod}, result);
}

u_char* var_connUnitRevsTable(variable* vp, oid* name, std::size_t* length, int exact,
                              std::size_t* valueLength, WriteMethod** writeMethod) {
    static const ServedTable kRevisions{
        "fcmgmt", {&fcmgmt::kRevisionColumns, 1}, {ResolveRevision, NextRevision}};
    return Serve(kRevisions, {vp, name, length, exact != 0, valueLength, writeMethod}, result);
}

u_char* var_fcmgmt_empty(variable*, oid*, std::size_t*, int, std::size_t* valueLength,
                         WriteMethod**) {
    *valueLength = sizeof(result.number);
    return nullptr;
}

void init_fcmgmt() {
    static std::array<variable7, kVariableCount> fcmgmt_variables{};
    const std::size_t count =
        std::min(fcmgmt::MakeFcmgmtVariables(fcmgmt_variables), fcmgmt_variables.size());
    const int registered = register_mib(
        "fcmgmt", reinterpret_cast<variable*>(fcmgmt_variables.data()), sizeof(variable7), count,
        fcmgmt_variables_oid, std::size(fcmgmt_variables_oid));
    if (registered != MIB_REGISTERED_OK) {
        DEBUGTRACE;
        DEBUGMSGTL(("register_mib", "%s registration failed\n", "fcmgmt"));
    }
}

}  // namespace snmpmain
