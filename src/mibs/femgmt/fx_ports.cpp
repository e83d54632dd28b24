// What the ports of the switches are, can do and have agreed on.
#include "src/mibs/femgmt/codes.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/femgmt/rttov.h"
#include "src/mibs/shared_values.h"
#include "src/snmptables/part_status.h"

namespace snmpmain::femgmt {
namespace {

// Versions of FC-PH, and octets of a frame's data field.
constexpr std::uint32_t kFcphVersionHigh = 32;
constexpr std::uint32_t kFcphVersionLow = 9;
constexpr std::uint32_t kLargestDataField = 2112;
constexpr std::uint32_t kSmallestDataField = 128;

constexpr Word kOperModeWords[] = {{"FL", 3}, {"F", 2}};
constexpr WordTable kOperModes{kOperModeWords, 1};

constexpr Choice kAdminStateSettings[] = {
    {1, "Config.UserPort.%d.%d.AdminState.Online"},
    {2, "Config.UserPort.%d.%d.AdminState.Offline"},
    {3, "Config.UserPort.%d.%d.AdminState.Diagnostics"},
};
constexpr Choice kAdminModes[] = {{1}, {2}, {3}};

constexpr Column kPorts[] = {
    {2, ASN_OCTET_STR, "fcFxPortName", HexOctetsOf("Get.Oper.UserPort.%d.%d.WWN", kWwnSize)},
    {3, ASN_INTEGER, "fcFxPortFcphVersionHigh", Constant(kFcphVersionHigh)},
    {4, ASN_INTEGER, "fcFxPortFcphVersionLow", Constant(kFcphVersionLow)},
    {5, ASN_INTEGER, "fcFxPortBbCredit", NumberOf("Get.Oper.UserPort.%d.%d.MaxCredit")},
    {6, ASN_INTEGER, "fcFxPortRxBufSize", Constant(kLargestDataField)},
    {7, ASN_GAUGE, "fcFxPortRatov", NumberOf("Get.Config.Switch.R_A_TOV")},
    {8, ASN_GAUGE, "fcFxPortEdtov", NumberOf("Get.Config.Switch.E_D_TOV")},
    {9, ASN_OCTET_STR, "fcFxPortCosSupported", ConstantOctets(kSupportedClasses)},
    {10, ASN_INTEGER, "fcFxPortIntermixSupported", Constant(kNoIntermix)},
    {11, ASN_INTEGER, "fcFxPortStackedConnMode", Constant(kTransparent)},
    {12, ASN_INTEGER, "fcFxPortClass2SeqDeliv", Constant(kInOrder)},
    {13, ASN_INTEGER, "fcFxPortClass3SeqDeliv", Constant(kInOrder)},
    {14, ASN_GAUGE, "fcFxPortHoldTime", NumberOf("Get.Config.Switch.E_D_TOV")},
};

constexpr Column kPortStatus[] = {
    {1, ASN_OCTET_STR, "fcFxPortID",
     HexOctetsOf("Get.Oper.Topology.%d.%d.LocalPortID", kPortIdSize)},
    {2, ASN_GAUGE, "fcFxPortBbCreditAvailable", NeverAnswers()},
    {3, ASN_INTEGER, "fcFxPortOperMode", WordOf("Get.Oper.UserPort.%d.%d.RunningType", kOperModes)},
    // Without a value its write method is not handed out: the switches have no mode to be set.
    {4, ASN_INTEGER, "fcFxPortAdminMode", NeverAnswers(),
     MessagesStart("Write to ", OneOf(kAdminModes))},
};

constexpr Column kPortPhys[] = {
    {1, ASN_INTEGER, "fcFxPortPhysAdminStatus",
     WordOf("Get.Config.UserPort.%d.%d.AdminState", kPortAdminQuestion.words),
     ReportedLaterAs("", OneOf(kAdminStateSettings))},
    {2, ASN_INTEGER, "fcFxPortPhysOperStatus",
     WordOf("Get.Oper.UserPort.%d.%d.OperState", kPortOperQuestion.words)},
    {3, ASN_TIMETICKS, "fcFxPortPhysLastChange", NeverAnswers()},
    {4, ASN_GAUGE, "fcFxPortPhysRttov", Computed(ReadRttov, "Get.Config.Switch.R_T_TOV"),
     WrittenBy(write_fcFxPortPhysRttov)},
};

constexpr Column kCapabilities[] = {
    {1, ASN_INTEGER, "fcFxPortCapFcphVersionHigh", Constant(kFcphVersionHigh)},
    {2, ASN_INTEGER, "fcFxPortCapFcphVersionLow", Constant(kFcphVersionLow)},
    {3, ASN_INTEGER, "fcFxPortCapBbCreditMax", NumberOf("Get.UpperRange.UserPort.%d.%d.BBCredit")},
    {4, ASN_INTEGER, "fcFxPortCapBbCreditMin", NumberOf("Get.LowerRange.UserPort.%d.%d.BBCredit")},
    {5, ASN_INTEGER, "fcFxPortCapRxDataFieldSizeMax", Constant(kLargestDataField)},
    {6, ASN_INTEGER, "fcFxPortCapRxDataFieldSizeMin", Constant(kSmallestDataField)},
    {7, ASN_OCTET_STR, "fcFxPortCapCos", ConstantOctets(kSupportedClasses)},
    {8, ASN_INTEGER, "fcFxPortCapIntermix", Constant(kNoIntermix)},
    {9, ASN_INTEGER, "fcFxPortCapStackedConnMode", Constant(kTransparent)},
    {10, ASN_INTEGER, "fcFxPortCapClass2SeqDeliv", Constant(kInOrder)},
    {11, ASN_INTEGER, "fcFxPortCapClass3SeqDeliv", Constant(kInOrder)},
    {12, ASN_GAUGE, "fcFxPortCapHoldTimeMax", NumberOf("Get.UpperRange.Switch.E_D_TOV")},
    {13, ASN_GAUGE, "fcFxPortCapHoldTimeMin", NumberOf("Get.LowerRange.Switch.E_D_TOV")},
};

}  // namespace

constinit const ServedTable kPortTable = Table(kModule, {1, 5, 1}, 16, kPorts, kModulePortShape);
constinit const ServedTable kPortStatusTable =
    Table(kModule, {2, 1, 1}, 31, kPortStatus, kModulePortShape);
constinit const ServedTable kPortPhysTable =
    Table(kModule, {2, 2, 1}, 37, kPortPhys, kModulePortShape);
constinit const ServedTable kCapabilityTable =
    Table(kModule, {5, 1, 1}, 99, kCapabilities, kModulePortShape);

}  // namespace snmpmain::femgmt
