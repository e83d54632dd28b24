#include "src/mibs/femgmt/femgmt.h"

namespace snmpmain {
namespace {

constexpr oid femgmt_variables_oid[] = {1, 3, 6, 1, 2, 1, 75, 1};

MibValue result;

constexpr RegisteredTable kTables[] = {
    {femgmt::kScalars, Guarded<var_fcFe>},
    {femgmt::kModuleTable, Guarded<var_fcFeModuleTable>},
    {femgmt::kPortTable, Guarded<var_fcFxPortTable>},
    {femgmt::kPortStatusTable, Guarded<var_fcFxPortStatusTable>},
    {femgmt::kPortPhysTable, Guarded<var_fcFxPortPhysTable>},
    {femgmt::kLoginTable, Guarded<var_fcFxLoginTable>},
    {femgmt::kErrorTable, Guarded<var_fcFxPortErrorTable>},
    {femgmt::kClass1Table, Guarded<var_fcFxPortC1AccountingTable>},
    {femgmt::kClass2Table, Guarded<var_fcFxPortC2AccountingTable>},
    {femgmt::kClass3Table, Guarded<var_fcFxPortC3AccountingTable>},
    {femgmt::kCapabilityTable, Guarded<var_fcFxPortCapTable>},
};

}  // namespace

constinit const MibModule femgmt::kModule{"femgmt", "femgmt.c", femgmt_variables_oid, kTables,
                                          result};

void init_femgmt() {
    static auto femgmt_variables = MakeVariables<variable4>(femgmt::kModule);
    RegisterModule(femgmt::kModule, femgmt_variables);
}

}  // namespace snmpmain
