#include <array>
#include <cstring>

#include "src/link/switch_info.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/part_status.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Word kTransceiverWords[] = {{"NotInstalled", 3}, {"SL", 4}, {"LL", 5},
                                      {"EL", 6},           {"LC", 8}, {"SN", 9}};
constexpr WordTable kTransceivers{kTransceiverWords, 1};

constexpr Word kModuleWords[] = {{"10Gb/s", 2}};
constexpr WordTable kModules{kModuleWords, 9};

constexpr Word kControlWords[] = {{"Online", 7}, {"Offline", 6}, {"Diagnostics", 6}};
constexpr WordTable kControls{kControlWords, 1};

constexpr Word kTypeWords[] = {{"FL", 7}, {"F", 8}, {"E", 9}, {"Unknown", 1}};
constexpr WordTable kTypes{kTypeWords, 2};
constexpr std::uint32_t kGenericPort = 10;

// Kilobytes per second.
constexpr std::uint32_t kSpeedUnknown = 0;
constexpr std::uint32_t kSpeed2G = 212500;
constexpr std::uint32_t kSpeed4G = 425000;
constexpr Word kSpeedWords[] = {
    {"1Gb/s", 106250}, {"2Gb/s", kSpeed2G}, {"4Gb/s", kSpeed4G}, {"10Gb/s", 1062500}};
constexpr WordTable kSpeeds{kSpeedWords, kSpeedUnknown};

// Bit masks of the classes of service: fabric ports do not run class F.
constexpr Word kClassWords[] = {{"F", 0x0C}, {"FL", 0x0C}};
constexpr WordTable kClasses{kClassWords, 0x0D};

int ReadType(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    const char* type = value.text.data();
    return SetNumber(value,
                     std::strchr(type, 'G') != nullptr ? kGenericPort : WholeWord(kTypes, type));
}

int ReadRunningClasses(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    const auto classes = static_cast<std::uint8_t>(WholeWord(kClasses, value.text.data()));
    return SetOctets(value, std::array<std::uint8_t, 2>{0, classes});
}

// A port that names no speed of its own can run the fastest that its switch allows.
int ReadSpeed(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    std::uint32_t speed = WholeWord(kSpeeds, value.text.data());
    if (speed == kSpeedUnknown) {
        speed = AskNumber(instance.domain, Fact::kAllow4GPorts) != 0 ? kSpeed4G : kSpeed2G;
    }
    return SetNumber(value, speed);
}

int ReadHwState(const Column&, const Instance& instance, MibValue& value) {
    const auto [module, port] = instance.numbers;
    std::uint32_t state = 0;
    return ReadPortHwState(instance.domain, module, port, state) == 0 ? SetNumber(value, state)
                                                                      : -1;
}

int ReadPhysicalNumber(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, instance.row);
}

int ReadStatObject(const Column&, const Instance&, MibValue& value) {
    static constexpr oid kPortStatUnitId[] = {1, 3, 6, 1, 3, 94, 4, 5, 1, 1};
    value.data = kPortStatUnitId;
    value.length = sizeof(kPortStatUnitId);
    return 0;
}

constexpr Choice kControlSettings[] = {
    {6, "Config.UserPort.%d.%d.AdminState.Offline"},
    {7, "Config.UserPort.%d.%d.AdminState.Online"},
    {8, "Cmd.UserPort.%d.%d.ClearCounters"},
};

constexpr std::size_t kNameLength = 32;  // characters that managers may set

constexpr Column kPorts[] = {
    {1, ASN_OCTET_STR, "connUnitPortUnitId", UnitId()},
    {2, ASN_INTEGER, "connUnitPortIndex", LastIndex()},
    {3, ASN_INTEGER, "connUnitPortType", Computed(ReadType, "Get.Oper.UserPort.%d.%d.RunningType")},
    {4, ASN_OCTET_STR, "connUnitPortFCClassCap", ConstantOctets("\x00\x0D")},
    {5, ASN_OCTET_STR, "connUnitPortFCClassOp",
     Computed(ReadRunningClasses, "Get.Oper.UserPort.%d.%d.RunningType")},
    {kConnUnitPortState, ASN_INTEGER, "connUnitPortState", WordOf(kPortStateQuestion)},
    {kConnUnitPortStatus, ASN_INTEGER, "connUnitPortStatus", Constant(kPortStatus)},
    {8, ASN_INTEGER, "connUnitPortTransmitterType",
     WordOf("Get.Oper.UserPort.%d.%d.GBICType", kTransceivers)},
    {9, ASN_INTEGER, "connUnitPortModuleType",
     WholeWordOf("Get.Oper.UserPort.%d.%d.LinkSpeed", kModules)},
    {10, ASN_OCTET_STR, "connUnitPortWwn", HexOctetsOf("Get.Oper.UserPort.%d.%d.WWN", kUnitIdSize)},
    {11, ASN_OCTET_STR, "connUnitPortFCId",
     HexOctetsOf("Get.Oper.UserPort.%d.%d.PortID", kPortIdSize)},
    {12, ASN_OCTET_STR, "connUnitPortSn", NeverAnswers()},
    {13, ASN_OCTET_STR, "connUnitPortRevision", NeverAnswers()},
    {14, ASN_OCTET_STR, "connUnitPortVendor", NeverAnswers()},
    {15, ASN_INTEGER, "connUnitPortSpeed",
     Computed(ReadSpeed, "Get.Oper.UserPort.%d.%d.LinkSpeed")},
    {16, ASN_INTEGER, "connUnitPortControl",
     WordOf("Get.Oper.UserPort.%d.%d.AdminState", kControls), OneOf(kControlSettings)},
    {17, ASN_OCTET_STR, "connUnitPortName", TextOf("Get.Oper.UserPort.%d.%d.SymPortName"),
     ReportedLaterAs("connUnitPortControl",
                     Text(kNameLength, "Config.UserPort.%d.%d.SymPortName.%s"))},
    {18, ASN_INTEGER, "connUnitPortPhysicalNumber", Derived(ReadPhysicalNumber, "index")},
    {19, ASN_OBJECT_ID, "connUnitPortStatObject",
     Derived(ReadStatObject, "always 1.3.6.1.3.94.4.5.1.1")},
    {20, ASN_OCTET_STR, "connUnitPortProtocolCap", ConstantOctets("\x00\x03")},
    {21, ASN_OCTET_STR, "connUnitPortProtocolOp", NeverAnswers()},
    {22, ASN_OCTET_STR, "connUnitPortNodeWwn", UnitWwn()},
    {kConnUnitPortHWState, ASN_INTEGER, "connUnitPortHWState",
     Derived(ReadHwState, kPortHwCommands)},
};

}  // namespace

int ResolvePort(const HandlerCall& call, Instance& instance) {
    if (ResolveUnitRow(call, instance) != 0) {
        return -1;
    }
    return GetModuleAndPort(instance.domain, instance.row, instance.numbers[0],
                            instance.numbers[1]);
}

// The walk has seen that the unit has the port; all ports are in module 0.
int NextPort(const HandlerCall& call, Instance& instance) {
    if (GetNextUnitPort(call.vp, call.name, call.length, instance.unit, instance.row) != 0) {
        return -1;
    }
    instance.numbers = {0, instance.row};
    return CompleteUnit(call, instance);
}

constinit const ServedTable kPortTable =
    Table(kModule, kPortEntry, 57, kPorts, {ResolvePort, NextPort});

}  // namespace snmpmain::fcmgmt
