#include <array>

#include "src/link/switch_info.h"
#include "src/mibs/fcmgmt/tables.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/mibs/fcmgmt/writes.h"
#include "src/snmptables/row_numbers.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Word kPrincipalWords[] = {{"True", 3}, {"False", 2}};
constexpr WordTable kPrincipal{kPrincipalWords, 1};

constexpr Word kControlWords[] = {{"Online", 6}, {"Offline", 5}, {"Diagnostics", 5}};
constexpr WordTable kControl{kControlWords, 1};

constexpr Word kLogLevelWords[] = {{"Critical", 4}, {"Warn", 6}, {"Info", 8}, {"Debug", 9}};
constexpr WordTable kEventFilter{kLogLevelWords, 1};

constexpr std::uint32_t kTicksPerSecond = 100;

int ReadPortCount(const Column&, const Instance& instance, MibValue& value) {
    const std::uint32_t ports = GetMaxPorts(instance.domain);
    return WasAnswered() ? SetNumber(value, ports) : -1;
}

int ReadState(const Column&, const Instance& instance, MibValue& value) {
    std::uint16_t state = 0;
    return ReadUnitState(instance.domain, state) == 0 ? SetNumber(value, state) : -1;
}

int ReadStatus(const Column&, const Instance& instance, MibValue& value) {
    std::uint16_t status = 0;
    return ReadUnitStatus(instance.domain, status) == 0 ? SetNumber(value, status) : -1;
}

int ReadUpTime(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryNumber(column, instance, value) != 0) {
        return -1;
    }
    return SetNumber(value, value.number * kTicksPerSecond);
}

// The address of the switch's domain controller, FF FC and the domain.
int ReadDomainAddress(const Column&, const Instance& instance, MibValue& value) {
    return SetOctets(
        value, std::array<std::uint8_t, 3>{0xFF, 0xFC, static_cast<std::uint8_t>(instance.domain)});
}

int ReadProxyMaster(const Column&, const Instance& instance, MibValue& value) {
    constexpr std::uint32_t kNo = 2;
    constexpr std::uint32_t kYes = 3;
    return SetNumber(value, IsLocalDomain(instance.domain) ? kYes : kNo);
}

int ReadSensorCount(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, GetSensorCount(instance.domain));
}

int ReadRevisionCount(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, GetRevisionCount(instance.domain));
}

int ReadEventCount(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, GetLogEntryCount(instance.domain));
}

int ReadLastEventId(const Column&, const Instance& instance, MibValue& value) {
    std::uint32_t id = 0;
    return GetLastLogEntryId(instance.domain, id) == 0 ? SetNumber(value, id) : -1;
}

// The fabric's principal switch names the fabric; the local switch knows it for every unit.
int ReadFabricId(const Column& column, const Instance&, MibValue& value) {
    if (SwitchMgmtQuery(0, column.source.command, value.text, kString) != 0) {
        return -1;
    }
    return SetHexOctets(value, value.text.data(), kUnitIdSize);
}

constexpr Column kUnits[] = {
    {1, 8, ASN_OCTET_STR, Access::kReadOnly, "connUnitId", Derived(ReadUnitId, "the unit's WWN")},
    {2, 9, ASN_OCTET_STR, Access::kReadOnly, "connUnitGlobalId",
     Derived(ReadUnitId, "the unit's WWN")},
    {3, 10, ASN_INTEGER, Access::kReadOnly, "connUnitType", Constant(4)},
    {4, 11, ASN_INTEGER, Access::kReadOnly, "connUnitNumports",
     Derived(ReadPortCount, "`Get.Oper.Switch.MaxPorts`")},
    {5, 12, ASN_INTEGER, Access::kReadOnly, "connUnitState",
     Derived(ReadState, "`Get.Oper.Switch.OperState`")},
    {6, 13, ASN_INTEGER, Access::kReadOnly, "connUnitStatus",
     Derived(ReadStatus, "states of the unit, its sensors and ports")},
    {7, 14, ASN_OCTET_STR, Access::kReadOnly, "connUnitProduct",
     ShortTextOf("Get.Config.Snmp.SysDescr")},
    {8, 15, ASN_OCTET_STR, Access::kReadOnly, "connUnitSn",
     ShortTextOf("Get.Config.Mfg.ChassisSerialNum")},
    {9, 16, ASN_TIMETICKS, Access::kReadOnly, "connUnitUpTime",
     Computed(ReadUpTime, "Get.Oper.Switch.Uptime")},
    // Read-only: the management address is not changed through its URL.
    {10, 17, ASN_OCTET_STR, Access::kReadOnly, "connUnitUrl", UrlOf()},
    {11, 18, ASN_OCTET_STR, Access::kReadOnly, "connUnitDomainId",
     Derived(ReadDomainAddress, "the unit's domain")},
    {12, 19, ASN_INTEGER, Access::kReadOnly, "connUnitProxyMaster",
     Derived(ReadProxyMaster, "whether the unit is the local switch")},
    {13, 20, ASN_INTEGER, Access::kReadOnly, "connUnitPrincipal",
     WordOf("Get.Oper.Switch.PrincipalSwitch", kPrincipal)},
    {14, 21, ASN_INTEGER, Access::kReadOnly, "connUnitNumSensors",
     Derived(ReadSensorCount, "number of the unit's supplies, fans and blades' sensors")},
    {15, 22, ASN_TIMETICKS, Access::kReadOnly, "connUnitStatusChangeTime", NeverAnswers()},
    {16, 23, ASN_TIMETICKS, Access::kReadOnly, "connUnitConfigurationChangeTime", NeverAnswers()},
    {17, 24, ASN_INTEGER, Access::kReadOnly, "connUnitNumRevs",
     Derived(ReadRevisionCount, "2 and the number of the unit's blades")},
    {18, 25, ASN_INTEGER, Access::kReadOnly, "connUnitNumZones", NeverAnswers()},
    {19, 26, ASN_OCTET_STR, Access::kReadOnly, "connUnitModuleId",
     Derived(ReadUnitId, "the unit's WWN")},
    {20, 27, ASN_OCTET_STR, Access::kReadWrite, "connUnitName",
     ShortTextOf("Get.Config.Switch.SymName"), write_connUnitName},
    {21, 28, ASN_OCTET_STR, Access::kReadWrite, "connUnitInfo", TextOf("Get.Config.Switch.Comment"),
     write_connUnitInfo},
    {22, 29, ASN_INTEGER, Access::kReadWrite, "connUnitControl",
     WordOf("Get.Oper.Switch.OperState", kControl), write_connUnitControl},
    {23, 30, ASN_OCTET_STR, Access::kReadWrite, "connUnitContact",
     ShortTextOf("Get.Config.Snmp.Contact"), write_connUnitContact},
    {24, 31, ASN_OCTET_STR, Access::kReadWrite, "connUnitLocation",
     ShortTextOf("Get.Config.Snmp.Location"), write_connUnitLocation},
    {25, 32, ASN_INTEGER, Access::kReadWrite, "connUnitEventFilter",
     WordOf("Get.Oper.Switch.SysLogLevel", kEventFilter), write_connUnitEventFilter},
    {26, 33, ASN_INTEGER, Access::kReadOnly, "connUnitNumEvents",
     Computed(ReadEventCount, "Get.Oper.Switch.LogEntries")},
    {27, 34, ASN_INTEGER, Access::kReadOnly, "connUnitMaxEvents", Constant(MAX_LOG_ENTRIES)},
    {28, 35, ASN_INTEGER, Access::kReadOnly, "connUnitEventCurrID",
     Computed(ReadLastEventId, "Get.Oper.Switch.LastLogEntry")},
    {29, 36, ASN_OCTET_STR, Access::kReadOnly, "connUnitFabricID",
     Computed(ReadFabricId, "Get.Oper.Switch.WhoIsPrincipal")},
    {30, 37, ASN_INTEGER, Access::kReadOnly, "connUnitNumLinks",
     NumberOf("Get.Oper.Link.LinkEntries")},
    {31, 38, ASN_OCTET_STR, Access::kReadOnly, "connUnitVendorId",
     ShortTextOf("Get.Config.Mfg.BrandName")},
};

constexpr std::span<const Column> kUnitColumns = kUnits;

}  // namespace

constinit const ServedTable kUnitTable{"fcmgmt", {&kUnitColumns, 1}, kUnitShape};

}  // namespace snmpmain::fcmgmt
