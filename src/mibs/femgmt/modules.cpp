// The fabric element itself and its modules: the switches of the fabric.
#include <algorithm>
#include <array>

#include "src/link/switch_info.h"
#include "src/mibs/femgmt/codes.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/shared_values.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmptables/part_status.h"
#include "src/snmptables/unit_table.h"
//
#include <net-snmp/agent/util_funcs/header_simple_table.h>

namespace snmpmain::femgmt {
namespace {

int ReadLocalWwn(const Column&, const Instance&, MibValue& value) {
    return SetHexOctets(value, AskText(GetLocalDomainId(), Fact::kWwn), kWwnSize);
}

// The numbers of a dotted text; a text without a dot is no object id.
int QueryObjectId(const Column& column, const Instance& instance, MibValue& value) {
    static std::array<oid, MAX_OID_LEN> names;
    std::array<std::uint32_t, MAX_OID_LEN> numbers;
    std::size_t count = 0;
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    SplitDottedNumbers(value.text.data(), numbers, count);
    std::copy_n(numbers.begin(), count, names.begin());
    value.data = names.data();
    value.length = count * sizeof(oid);
    return count > 0 ? 0 : -1;
}

// Characters of the names. They cannot be changed: managers shall not be told that they have been.
constexpr std::size_t kNameLength = 32;

constexpr Column kElement[] = {
    {1, ASN_OCTET_STR, "fcFeFabricName", HexOctetsOf("Get.Oper.Switch.WhoIsPrincipal", kWwnSize),
     NotOffered(Text(kNameLength))},
    {2, ASN_OCTET_STR, "fcFeElementName", Derived(ReadLocalWwn, "the local switch's WWN"),
     NotOffered(Text(kNameLength))},
    {3, ASN_GAUGE, "fcFeModuleCapacity", UnitCount()},
};

constexpr Column kModules[] = {
    {2, ASN_OCTET_STR, "fcFeModuleDescr", TextOf("Get.Config.Snmp.SysDescr")},
    {3, ASN_OBJECT_ID, "fcFeModuleObjectID",
     Computed(QueryObjectId, "Get.Config.Snmp.SysObjectID")},
    {4, ASN_INTEGER, "fcFeModuleOperStatus",
     WordOf("Get.Oper.Switch.OperState", kPortOperQuestion.words)},
    {5, ASN_TIMETICKS, "fcFeModuleLastChange", NeverAnswers()},
    {6, ASN_GAUGE, "fcFeModuleFxPortCapacity", PortCount()},
    {7, ASN_OCTET_STR, "fcFeModuleName", UnitWwn(), NotOffered(Text(kNameLength))},
};

// Index: unit + 1. The library's own resolution serves GET and GETNEXT.
int ResolveModule(const HandlerCall& call, Instance& instance) {
    if (header_simple_table(call.vp, call.name, call.length, call.exact ? 1 : 0, call.valueLength,
                            call.writeMethod, GetUnitCount()) != MATCH_SUCCEEDED) {
        return -1;
    }
    instance.unit = static_cast<std::uint16_t>(call.name[*call.length - 1] - 1);
    return CompleteUnit(call, instance);
}

}  // namespace

constinit const ServedTable kScalars = Table(kModule, {1}, 1, kElement, kScalarShape);
constinit const ServedTable kModuleTable =
    Table(kModule, {1, 4, 1}, 7, kModules, {ResolveModule, ResolveModule});

}  // namespace snmpmain::femgmt
