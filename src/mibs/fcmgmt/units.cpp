#include <array>

#include "src/link/switch_info.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
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

constexpr Choice kControlSettings[] = {
    {3, "Cmd.Switch.Reset"},  // cold start
    {5, "Config.Switch.AdminState.Offline"},
    {6, "Config.Switch.AdminState.Online"},
};

constexpr Choice kEventFilterSettings[] = {
    {1, "Cmd.Switch.SysLogLevel.None"},     {2, "Cmd.Switch.SysLogLevel.Critical"},
    {3, "Cmd.Switch.SysLogLevel.Critical"}, {4, "Cmd.Switch.SysLogLevel.Critical"},
    {5, "Cmd.Switch.SysLogLevel.Warn"},     {6, "Cmd.Switch.SysLogLevel.Warn"},
    {7, "Cmd.Switch.SysLogLevel.Info"},     {8, "Cmd.Switch.SysLogLevel.Info"},
    {9, "Cmd.Switch.SysLogLevel.Debug"},    {10, "Cmd.Switch.SysLogLevel.Debug"},
};

// Characters that managers may set.
constexpr std::size_t kNameLength = 32;
constexpr std::size_t kTextLength = 64;

constexpr std::uint32_t kTicksPerSecond = 100;

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
    {kConnUnitId, ASN_OCTET_STR, "connUnitId", UnitId()},
    {2, ASN_OCTET_STR, "connUnitGlobalId", UnitId()},
    {3, ASN_INTEGER, "connUnitType", Constant(4)},
    {4, ASN_INTEGER, "connUnitNumports", PortCount()},
    {kConnUnitState, ASN_INTEGER, "connUnitState", Computed(ReadState, kUnitStateCommand)},
    {kConnUnitStatus, ASN_INTEGER, "connUnitStatus",
     Derived(ReadStatus, "states of the unit, its sensors and ports")},
    {7, ASN_OCTET_STR, "connUnitProduct", ShortTextOf("Get.Config.Snmp.SysDescr")},
    {8, ASN_OCTET_STR, "connUnitSn", ShortTextOf("Get.Config.Mfg.ChassisSerialNum")},
    {9, ASN_TIMETICKS, "connUnitUpTime", Computed(ReadUpTime, "Get.Oper.Switch.Uptime")},
    {10, ASN_OCTET_STR, "connUnitUrl", Url(), NotOffered(WrittenBy(write_connUnitUrl))},
    {11, ASN_OCTET_STR, "connUnitDomainId", Derived(ReadDomainAddress, "the unit's domain")},
    {12, ASN_INTEGER, "connUnitProxyMaster",
     Derived(ReadProxyMaster, "whether the unit is the local switch")},
    {13, ASN_INTEGER, "connUnitPrincipal", WordOf("Get.Oper.Switch.PrincipalSwitch", kPrincipal)},
    {14, ASN_INTEGER, "connUnitNumSensors",
     Derived(ReadSensorCount, "number of the unit's supplies, fans and blades' sensors")},
    {15, ASN_TIMETICKS, "connUnitStatusChangeTime", NeverAnswers()},
    {16, ASN_TIMETICKS, "connUnitConfigurationChangeTime", NeverAnswers()},
    {17, ASN_INTEGER, "connUnitNumRevs",
     Derived(ReadRevisionCount, "2 and the number of the unit's blades")},
    {18, ASN_INTEGER, "connUnitNumZones", NeverAnswers()},
    {19, ASN_OCTET_STR, "connUnitModuleId", UnitId()},
    {20, ASN_OCTET_STR, "connUnitName", ShortTextOf("Get.Config.Switch.SymName"),
     Text(kNameLength, "Config.Switch.SymName.%s")},
    {21, ASN_OCTET_STR, "connUnitInfo", TextOf("Get.Config.Switch.Comment"),
     Text(kTextLength, "Config.Switch.Comment.%s")},
    {22, ASN_INTEGER, "connUnitControl", WordOf("Get.Oper.Switch.OperState", kControl),
     OneOf(kControlSettings)},
    {23, ASN_OCTET_STR, "connUnitContact", ShortTextOf("Get.Config.Snmp.Contact"),
     Text(kTextLength, "Config.Snmp.Contact.%s", SendTo<ConfigMode::kSnmpSetup>)},
    {24, ASN_OCTET_STR, "connUnitLocation", ShortTextOf("Get.Config.Snmp.Location"),
     Text(kTextLength, "Config.Snmp.Location.%s", SendTo<ConfigMode::kSnmpSetup>)},
    {25, ASN_INTEGER, "connUnitEventFilter", WordOf("Get.Oper.Switch.SysLogLevel", kEventFilter),
     OneOf(kEventFilterSettings)},
    {26, ASN_INTEGER, "connUnitNumEvents", Computed(ReadEventCount, kLogCountCommand)},
    {27, ASN_INTEGER, "connUnitMaxEvents", Constant(MAX_LOG_ENTRIES)},
    {28, ASN_INTEGER, "connUnitEventCurrID", Computed(ReadLastEventId, kLastLogEntryCommand)},
    {29, ASN_OCTET_STR, "connUnitFabricID",
     Computed(ReadFabricId, "Get.Oper.Switch.WhoIsPrincipal")},
    {30, ASN_INTEGER, "connUnitNumLinks", NumberOf("Get.Oper.Link.LinkEntries")},
    {31, ASN_OCTET_STR, "connUnitVendorId", ShortTextOf("Get.Config.Mfg.BrandName")},
};

}  // namespace

constinit const ServedTable kUnitTable = Table(kModule, kUnitEntry, 8, kUnits, kUnitShape);

}  // namespace snmpmain::fcmgmt
