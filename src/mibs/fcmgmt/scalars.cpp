#include "src/mibs/fcmgmt/tables.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/trap_table.h"

namespace snmpmain::fcmgmt {
namespace {

int ReadUnitCount(const Column&, const Instance&, MibValue& value) {
    return SetNumber(value, GetUnitCount());
}

int ReadNameServerTotal(const Column&, const Instance&, MibValue& value) {
    RefreshNameServerTable();
    return SetNumber(value, GetNameServerTotal());
}

int ReadTrapClientCount(const Column&, const Instance&, MibValue& value) {
    return SetNumber(value, GetTrapRowCount());
}

constexpr Column kConnSet[] = {
    {1, 1, ASN_INTEGER, Access::kReadOnly, "uNumber", Derived(ReadUnitCount, "number of units")},
    {2, 2, ASN_OCTET_STR, Access::kReadOnly, "systemURL", UrlOf()},
    {3, 3, ASN_TIMETICKS, Access::kReadOnly, "statusChangeTime", NeverAnswers()},
    {4, 4, ASN_TIMETICKS, Access::kReadOnly, "configurationChangeTime", NeverAnswers()},
    {5, 5, ASN_TIMETICKS, Access::kReadOnly, "connUnitTableChangeTime", NeverAnswers()},
};

constexpr Column kTrapReg[] = {
    {1, 129, ASN_INTEGER, Access::kReadOnly, "trapMaxClients", Constant(kTrapDestinations)},
    {2, 130, ASN_INTEGER, Access::kReadOnly, "trapClientCount",
     Derived(ReadTrapClientCount, "rows of the trap table")},
};

constexpr Column kRevision[] = {
    {3, 137, ASN_OCTET_STR, Access::kReadOnly, "revisionNumber", ConstantText("0400")},
};

constexpr Column kService[] = {
    {1, 190, ASN_INTEGER, Access::kReadOnly, "connUnitSnsMaxRows",
     Derived(ReadNameServerTotal, "entries of all name servers")},
    {2, 191, ASN_INTEGER, Access::kReadOnly, nullptr, NeverAnswers()},
};

}  // namespace

constinit const std::array<std::span<const Column>, 4> kScalarGroups = {kConnSet, kTrapReg,
                                                                        kRevision, kService};
constinit const ServedTable kScalars{"fcmgmt", kScalarGroups, kScalarShape};

}  // namespace snmpmain::fcmgmt
