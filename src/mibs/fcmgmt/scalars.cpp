#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/trap_table.h"

namespace snmpmain::fcmgmt {
namespace {

int ReadNameServerTotal(const Column&, const Instance&, MibValue& value) {
    ReadNameServerIfStale();
    return SetNumber(value, GetNameServerTotal());
}

int ReadTrapClientCount(const Column&, const Instance&, MibValue& value) {
    return SetNumber(value, GetTrapRowCount());
}

constexpr Column kConnSetColumns[] = {
    {1, ASN_INTEGER, "uNumber", UnitCount()},
    {2, ASN_OCTET_STR, "systemURL", Url(), NotOffered(WrittenBy(write_systemUrl))},
    {3, ASN_TIMETICKS, "statusChangeTime", NeverAnswers()},
    {4, ASN_TIMETICKS, "configurationChangeTime", NeverAnswers()},
    {5, ASN_TIMETICKS, "connUnitTableChangeTime", NeverAnswers()},
};

constexpr Column kTrapRegColumns[] = {
    {1, ASN_INTEGER, "trapMaxClients", Constant(kTrapDestinations)},
    {2, ASN_INTEGER, "trapClientCount", Derived(ReadTrapClientCount, "rows of the trap table")},
};

constexpr Column kRevisionColumns[] = {
    {3, ASN_OCTET_STR, "revisionNumber", ConstantText("0400")},
};

constexpr Column kServiceColumns[] = {
    {1, ASN_INTEGER, "connUnitSnsMaxRows",
     Derived(ReadNameServerTotal, "entries of all name servers")},
    {2, ASN_INTEGER, nullptr, NeverAnswers()},
};

}  // namespace

constinit const ServedTable kConnSet = Table(kModule, {1}, 1, kConnSetColumns, kScalarShape);
constinit const ServedTable kTrapReg = Table(kModule, {2}, 129, kTrapRegColumns, kScalarShape);
constinit const ServedTable kRevision = Table(kModule, {}, 137, kRevisionColumns, kScalarShape);
constinit const ServedTable kService = Table(kModule, {5, 1}, 190, kServiceColumns, kScalarShape);

}  // namespace snmpmain::fcmgmt
