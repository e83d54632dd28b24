// The fabric element itself and its modules: the switches of the fabric.
#include <algorithm>
#include <array>

#include "src/link/switch_info.h"
#include "src/mibs/femgmt/codes.h"
#include "src/mibs/femgmt/tables.h"
#include "src/mibs/shared_values.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmptables/unit_table.h"
//
#include <net-snmp/agent/util_funcs/header_simple_table.h>

namespace snmpmain::femgmt {
namespace {

int ReadModuleCount(const Column&, const Instance&, MibValue& value) {
    return SetNumber(value, GetUnitCount());
}

int ReadLocalWwn(const Column&, const Instance&, MibValue& value) {
    return SetHexOctets(value, GetSwitchWwn(GetLocalDomainId()), kWwnSize);
}

int ReadWwn(const Column&, const Instance& instance, MibValue& value) {
    return SetHexOctets(value, WwnOfUnit(instance), kWwnSize);
}

int ReadPortCount(const Column&, const Instance& instance, MibValue& value) {
    const std::uint32_t ports = GetMaxPorts(instance.domain);
    return WasAnswered() ? SetNumber(value, ports) : -1;
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

constexpr Column kElement[] = {
    {1, 1, ASN_OCTET_STR, Access::kReadOnly, "fcFeFabricName",
     HexOctetsOf("Get.Oper.Switch.WhoIsPrincipal", kWwnSize)},
    {2, 2, ASN_OCTET_STR, Access::kReadOnly, "fcFeElementName",
     Derived(ReadLocalWwn, "the local switch's WWN")},
    {3, 3, ASN_GAUGE, Access::kReadOnly, "fcFeModuleCapacity",
     Derived(ReadModuleCount, "number of units")},
};

constexpr Column kModules[] = {
    {2, 7, ASN_OCTET_STR, Access::kReadOnly, "fcFeModuleDescr", TextOf("Get.Config.Snmp.SysDescr")},
    {3, 8, ASN_OBJECT_ID, Access::kReadOnly, "fcFeModuleObjectID",
     Computed(QueryObjectId, "Get.Config.Snmp.SysObjectID")},
    {4, 9, ASN_INTEGER, Access::kReadOnly, "fcFeModuleOperStatus",
     WordOf("Get.Oper.Switch.OperState", kOperStates)},
    {5, 10, ASN_TIMETICKS, Access::kReadOnly, "fcFeModuleLastChange", NeverAnswers()},
    {6, 11, ASN_GAUGE, Access::kReadOnly, "fcFeModuleFxPortCapacity",
     Derived(ReadPortCount, "`Get.Oper.Switch.MaxPorts`")},
    {7, 12, ASN_OCTET_STR, Access::kReadOnly, "fcFeModuleName", Derived(ReadWwn, "the unit's WWN")},
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

constexpr std::span<const Column> kElementColumns = kElement;
constexpr std::span<const Column> kModuleColumns = kModules;

}  // namespace

constinit const ServedTable kScalars{"femgmt.c", {&kElementColumns, 1}, kScalarShape};
constinit const ServedTable kModuleTable{
    "femgmt.c", {&kModuleColumns, 1}, {ResolveModule, ResolveModule}};

}  // namespace snmpmain::femgmt
