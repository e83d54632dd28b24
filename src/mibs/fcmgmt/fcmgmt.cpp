#include "src/mibs/fcmgmt/fcmgmt.h"

#include <array>

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

// A table's columns with the handler as the library calls it.
template <const ServedTable& kTable>
ColumnGroup Group(std::array<std::uint8_t, 6> prefix, std::uint8_t prefixLength,
                  std::size_t columns = 0) {
    return {prefix, prefixLength, Guarded<Handle<kTable>>, kTable.columns[columns]};
}

// In the order of registration.
const std::array kGroups = {
    Group<fcmgmt::kScalars>({1}, 1, 0),
    Group<fcmgmt::kScalars>({2}, 1, 1),
    Group<fcmgmt::kScalars>({}, 0, 2),
    Group<fcmgmt::kUnitTable>({1, 6, 1}, 3),
    Group<fcmgmt::kRevisionTable>({1, 7, 1}, 3),
    Group<fcmgmt::kSensorTable>({1, 8, 1}, 3),
    Group<fcmgmt::kPortTable>({1, 10, 1}, 3),
    Group<fcmgmt::kEventTable>({1, 11, 1}, 3),
    Group<fcmgmt::kLinkTable>({1, 12, 1}, 3),
    Group<fcmgmt::kZoneTable>({1, 13, 1}, 3),
    Group<fcmgmt::kAliasTable>({1, 14, 1}, 3),
    Group<fcmgmt::kTrapRegistrationTable>({2, 3, 1}, 3),
    Group<fcmgmt::kPortStatisticsTable>({4, 5, 1}, 3),
    Group<fcmgmt::kScalars>({5, 1}, 2, 3),
    Group<fcmgmt::kNameServerTable>({5, 2, 1, 1}, 4),
    Group<fcmgmt::kPlatformTable>({5, 2, 2, 1}, 4),
};

}  // namespace

const MibModule& fcmgmt::GetModule() {
    static const MibModule module{"fcmgmt", fcmgmt_variables_oid, kGroups};
    return module;
}

void init_fcmgmt() {
    static std::array<variable7, kVariableCount> fcmgmt_variables{};
    RegisterModule(fcmgmt::GetModule(), fcmgmt_variables);
}

}  // namespace snmpmain
