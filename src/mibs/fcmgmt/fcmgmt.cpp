#include "src/mibs/fcmgmt/fcmgmt.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "src/mibs/fcmgmt/tables.h"

namespace snmpmain {

MibValue fcmgmt::result;

namespace {

constexpr std::size_t kVariableCount = 197;

constexpr oid fcmgmt_variables_oid[] = {1, 3, 6, 1, 3, 94};

// The handler of a table.
template <const ServedTable& kTable>
u_char* Handle(variable* vp, oid* name, std::size_t* length, int exact, std::size_t* valueLength,
               WriteMethod** writeMethod) {
    return Serve(kTable, {vp, name, length, exact != 0, valueLength, writeMethod}, fcmgmt::result);
}

}  // namespace

constinit FindVarMethod* const var_fcmgmt = Handle<fcmgmt::kScalars>;
constinit FindVarMethod* const var_connUnitTable = Handle<fcmgmt::kUnitTable>;
constinit FindVarMethod* const var_connUnitRevsTable = Handle<fcmgmt::kRevisionTable>;
constinit FindVarMethod* const var_connUnitSensorTable = Handle<fcmgmt::kSensorTable>;
constinit FindVarMethod* const var_connUnitPortTable = Handle<fcmgmt::kPortTable>;
constinit FindVarMethod* const var_connUnitEventTable = Handle<fcmgmt::kEventTable>;
constinit FindVarMethod* const var_connUnitLinkTable = Handle<fcmgmt::kLinkTable>;
constinit FindVarMethod* const var_connUnitZoneTable = Handle<fcmgmt::kZoneTable>;
constinit FindVarMethod* const var_connUnitZoningAliasTable = Handle<fcmgmt::kAliasTable>;
constinit FindVarMethod* const var_trapRegTable = Handle<fcmgmt::kTrapRegistrationTable>;
constinit FindVarMethod* const var_connUnitPortStatTable = Handle<fcmgmt::kPortStatisticsTable>;
constinit FindVarMethod* const var_connUnitSnsTable = Handle<fcmgmt::kNameServerTable>;
constinit FindVarMethod* const var_fcmgmt_empty = Handle<fcmgmt::kPlatformTable>;

namespace {

// In the order of registration.
const std::array kGroups = {
    ColumnGroup{{1}, 1, var_fcmgmt, fcmgmt::kScalarGroups[0]},
    ColumnGroup{{2}, 1, var_fcmgmt, fcmgmt::kScalarGroups[1]},
    ColumnGroup{{}, 0, var_fcmgmt, fcmgmt::kScalarGroups[2]},
    ColumnGroup{{1, 6, 1}, 3, var_connUnitTable, fcmgmt::kUnitTable.columns[0]},
    ColumnGroup{{1, 7, 1}, 3, var_connUnitRevsTable, fcmgmt::kRevisionTable.columns[0]},
    ColumnGroup{{1, 8, 1}, 3, var_connUnitSensorTable, fcmgmt::kSensorTable.columns[0]},
    ColumnGroup{{1, 10, 1}, 3, var_connUnitPortTable, fcmgmt::kPortTable.columns[0]},
    ColumnGroup{{1, 11, 1}, 3, var_connUnitEventTable, fcmgmt::kEventTable.columns[0]},
    ColumnGroup{{1, 12, 1}, 3, var_connUnitLinkTable, fcmgmt::kLinkTable.columns[0]},
    ColumnGroup{{1, 13, 1}, 3, var_connUnitZoneTable, fcmgmt::kZoneTable.columns[0]},
    ColumnGroup{{1, 14, 1}, 3, var_connUnitZoningAliasTable, fcmgmt::kAliasTable.columns[0]},
    ColumnGroup{{2, 3, 1}, 3, var_trapRegTable, fcmgmt::kTrapRegistrationTable.columns[0]},
    ColumnGroup{{4, 5, 1}, 3, var_connUnitPortStatTable, fcmgmt::kPortStatisticsTable.columns[0]},
    ColumnGroup{{5, 1}, 2, var_fcmgmt, fcmgmt::kScalarGroups[3]},
    ColumnGroup{{5, 2, 1, 1}, 4, var_connUnitSnsTable, fcmgmt::kNameServerTable.columns[0]},
    ColumnGroup{{5, 2, 2, 1}, 4, var_fcmgmt_empty, fcmgmt::kPlatformTable.columns[0]},
};

}  // namespace

std::size_t fcmgmt::MakeFcmgmtVariables(std::span<variable7> variables) {
    return MakeVariables(kGroups, variables);
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
