#include "src/mibs/fcmgmt/fcmgmt.h"

namespace snmpmain {
namespace {

constexpr auto fcmgmt_variables_oid = OidOf(kFcmgmtOid);

MibValue result;

constexpr RegisteredTable kTables[] = {
    {fcmgmt::kConnSet, Guarded<var_fcmgmt>},
    {fcmgmt::kTrapReg, Guarded<var_fcmgmt>},
    {fcmgmt::kRevision, Guarded<var_fcmgmt>},
    {fcmgmt::kUnitTable, Guarded<var_connUnitTable>},
    {fcmgmt::kRevisionTable, Guarded<var_connUnitRevsTable>},
    {fcmgmt::kSensorTable, Guarded<var_connUnitSensorTable>},
    {fcmgmt::kPortTable, Guarded<var_connUnitPortTable>},
    {fcmgmt::kEventTable, Guarded<var_connUnitEventTable>},
    {fcmgmt::kLinkTable, Guarded<var_connUnitLinkTable>},
    {fcmgmt::kZoneTable, Guarded<var_connUnitZoneTable>},
    {fcmgmt::kAliasTable, Guarded<var_connUnitZoningAliasTable>},
    {fcmgmt::kTrapRegistrationTable, Guarded<var_trapRegTable>},
    {fcmgmt::kPortStatisticsTable, Guarded<var_connUnitPortStatTable>},
    {fcmgmt::kService, Guarded<var_fcmgmt>},
    {fcmgmt::kNameServerTable, Guarded<var_connUnitSnsTable>},
    {fcmgmt::kPlatformTable, Guarded<var_fcmgmt_empty>},
};

}  // namespace

constinit const MibModule fcmgmt::kModule{"fcmgmt", "fcmgmt", fcmgmt_variables_oid, kTables,
                                          result};

void init_fcmgmt() {
    static auto fcmgmt_variables = MakeVariables<variable7>(fcmgmt::kModule);
    RegisterModule(fcmgmt::kModule, fcmgmt_variables);
}

}  // namespace snmpmain
