#include "src/mibs/femgmt/femgmt.h"

#include <array>

#include "src/mibs/femgmt/tables.h"

namespace snmpmain {

MibValue femgmt::result;

namespace {

constexpr std::size_t kVariableCount = 88;

constexpr oid femgmt_variables_oid[] = {1, 3, 6, 1, 2, 1, 75, 1};

// The handler of a table.
template <const ServedTable& kTable>
u_char* Handle(variable* vp, oid* name, std::size_t* length, int exact, std::size_t* valueLength,
               WriteMethod** writeMethod) {
    return Serve(kTable, {vp, name, length, exact != 0, valueLength, writeMethod}, femgmt::result);
}

// A table's columns with the handler as the library calls it.
template <const ServedTable& kTable>
ColumnGroup Group(std::array<std::uint8_t, 6> prefix, std::uint8_t prefixLength) {
    return {prefix, prefixLength, Guarded<Handle<kTable>>, kTable.columns[0]};
}

// In the order of registration.
const std::array kGroups = {
    Group<femgmt::kScalars>({1}, 1),
    Group<femgmt::kModuleTable>({1, 4, 1}, 3),
    Group<femgmt::kPortTable>({1, 5, 1}, 3),
    Group<femgmt::kPortStatusTable>({2, 1, 1}, 3),
    Group<femgmt::kPortPhysTable>({2, 2, 1}, 3),
    Group<femgmt::kLoginTable>({2, 3, 1}, 3),
    Group<femgmt::kErrorTable>({3, 1, 1}, 3),
    Group<femgmt::kClass1Table>({4, 1, 1}, 3),
    Group<femgmt::kClass2Table>({4, 2, 1}, 3),
    Group<femgmt::kClass3Table>({4, 3, 1}, 3),
    Group<femgmt::kCapabilityTable>({5, 1, 1}, 3),
};

}  // namespace

constinit FindVarMethod* const var_fcFe = Handle<femgmt::kScalars>;
constinit FindVarMethod* const var_fcFeModuleTable = Handle<femgmt::kModuleTable>;
constinit FindVarMethod* const var_fcFxPortTable = Handle<femgmt::kPortTable>;
constinit FindVarMethod* const var_fcFxPortStatusTable = Handle<femgmt::kPortStatusTable>;
constinit FindVarMethod* const var_fcFxPortPhysTable = Handle<femgmt::kPortPhysTable>;
constinit FindVarMethod* const var_fcFxLoginTable = Handle<femgmt::kLoginTable>;
constinit FindVarMethod* const var_fcFxPortErrorTable = Handle<femgmt::kErrorTable>;
constinit FindVarMethod* const var_fcFxPortC1AccountingTable = Handle<femgmt::kClass1Table>;
constinit FindVarMethod* const var_fcFxPortC2AccountingTable = Handle<femgmt::kClass2Table>;
constinit FindVarMethod* const var_fcFxPortC3AccountingTable = Handle<femgmt::kClass3Table>;
constinit FindVarMethod* const var_fcFxPortCapTable = Handle<femgmt::kCapabilityTable>;

const MibModule& femgmt::GetModule() {
    static const MibModule module{"femgmt", femgmt_variables_oid, kGroups};
    return module;
}

void init_femgmt() {
    static std::array<variable4, kVariableCount> femgmt_variables{};
    RegisterModule(femgmt::GetModule(), femgmt_variables);
}

}  // namespace snmpmain
