// What the ports of the switches are, can do and have agreed on.
#include "src/mibs/femgmt/codes.h"
#include "src/mibs/femgmt/tables.h"
#include "src/mibs/femgmt/writes.h"
#include "src/mibs/shared_values.h"

namespace snmpmain::femgmt {
namespace {

// Versions of FC-PH, and octets of a frame's data field.
constexpr std::uint32_t kFcphVersionHigh = 32;
constexpr std::uint32_t kFcphVersionLow = 9;
constexpr std::uint32_t kLargestDataField = 2112;
constexpr std::uint32_t kSmallestDataField = 128;

constexpr Word kOperModeWords[] = {{"FL", 3}, {"F", 2}};
constexpr WordTable kOperModes{kOperModeWords, 1};

constexpr Word kAdminWords[] = {{"Online", 1}, {"Diagnostics", 3}};
constexpr WordTable kAdminStates{kAdminWords, 2};

// This agent has always reported the type's code, 66, as the length of this value, and goes on
// doing so. Guarded puts it right on the way to the library, which could not take it.
int ReadRttov(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryNumber(column, instance, value) != 0) {
        return -1;
    }
    value.length = ASN_GAUGE;
    return 0;
}

constexpr Column kPorts[] = {
    {2, 16, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortName",
     HexOctetsOf("Get.Oper.UserPort.%d.%d.WWN", kWwnSize)},
    {3, 17, ASN_INTEGER, Access::kReadOnly, "fcFxPortFcphVersionHigh", Constant(kFcphVersionHigh)},
    {4, 18, ASN_INTEGER, Access::kReadOnly, "fcFxPortFcphVersionLow", Constant(kFcphVersionLow)},
    {5, 19, ASN_INTEGER, Access::kReadOnly, "fcFxPortBbCredit",
     NumberOf("Get.Oper.UserPort.%d.%d.MaxCredit")},
    {6, 20, ASN_INTEGER, Access::kReadOnly, "fcFxPortRxBufSize", Constant(kLargestDataField)},
    {7, 21, ASN_GAUGE, Access::kReadOnly, "fcFxPortRatov", NumberOf("Get.Config.Switch.R_A_TOV")},
    {8, 22, ASN_GAUGE, Access::kReadOnly, "fcFxPortEdtov", NumberOf("Get.Config.Switch.E_D_TOV")},
    {9, 23, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortCosSupported",
     ConstantOctets(kSupportedClasses)},
    {10, 24, ASN_INTEGER, Access::kReadOnly, "fcFxPortIntermixSupported", Constant(kNoIntermix)},
    {11, 25, ASN_INTEGER, Access::kReadOnly, "fcFxPortStackedConnMode", Constant(kTransparent)},
    {12, 26, ASN_INTEGER, Access::kReadOnly, "fcFxPortClass2SeqDeliv", Constant(kInOrder)},
    {13, 27, ASN_INTEGER, Access::kReadOnly, "fcFxPortClass3SeqDeliv", Constant(kInOrder)},
    {14, 28, ASN_GAUGE, Access::kReadOnly, "fcFxPortHoldTime",
     NumberOf("Get.Config.Switch.E_D_TOV")},
};

constexpr Column kPortStatus[] = {
    {1, 31, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortID",
     HexOctetsOf("Get.Oper.Topology.%d.%d.LocalPortID", kPortIdSize)},
    {2, 32, ASN_GAUGE, Access::kReadOnly, "fcFxPortBbCreditAvailable", NeverAnswers()},
    {3, 33, ASN_INTEGER, Access::kReadOnly, "fcFxPortOperMode",
     WordOf("Get.Oper.UserPort.%d.%d.RunningType", kOperModes)},
    // Its write method is not handed out: the switches have no mode to be set.
    {4, 34, ASN_INTEGER, Access::kReadWrite, "fcFxPortAdminMode", NeverAnswers()},
};

constexpr Column kPortPhys[] = {
    {1, 37, ASN_INTEGER, Access::kReadWrite, "fcFxPortPhysAdminStatus",
     WordOf("Get.Config.UserPort.%d.%d.AdminState", kAdminStates), write_fcFxPortPhysAdminStatus},
    {2, 38, ASN_INTEGER, Access::kReadOnly, "fcFxPortPhysOperStatus",
     WordOf("Get.Oper.UserPort.%d.%d.OperState", kOperStates)},
    {3, 39, ASN_TIMETICKS, Access::kReadOnly, "fcFxPortPhysLastChange", NeverAnswers()},
    {4, 40, ASN_GAUGE, Access::kReadWrite, "fcFxPortPhysRttov",
     Computed(ReadRttov, "Get.Config.Switch.R_T_TOV"), write_fcFxPortPhysRttov},
};

constexpr Column kCapabilities[] = {
    {1, 99, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapFcphVersionHigh",
     Constant(kFcphVersionHigh)},
    {2, 100, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapFcphVersionLow",
     Constant(kFcphVersionLow)},
    {3, 101, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapBbCreditMax",
     NumberOf("Get.UpperRange.UserPort.%d.%d.BBCredit")},
    {4, 102, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapBbCreditMin",
     NumberOf("Get.LowerRange.UserPort.%d.%d.BBCredit")},
    {5, 103, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapRxDataFieldSizeMax",
     Constant(kLargestDataField)},
    {6, 104, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapRxDataFieldSizeMin",
     Constant(kSmallestDataField)},
    {7, 105, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortCapCos", ConstantOctets(kSupportedClasses)},
    {8, 106, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapIntermix", Constant(kNoIntermix)},
    {9, 107, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapStackedConnMode", Constant(kTransparent)},
    {10, 108, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapClass2SeqDeliv", Constant(kInOrder)},
    {11, 109, ASN_INTEGER, Access::kReadOnly, "fcFxPortCapClass3SeqDeliv", Constant(kInOrder)},
    {12, 110, ASN_GAUGE, Access::kReadOnly, "fcFxPortCapHoldTimeMax",
     NumberOf("Get.UpperRange.Switch.E_D_TOV")},
    {13, 111, ASN_GAUGE, Access::kReadOnly, "fcFxPortCapHoldTimeMin",
     NumberOf("Get.LowerRange.Switch.E_D_TOV")},
};

constexpr std::span<const Column> kPortColumns = kPorts;
constexpr std::span<const Column> kPortStatusColumns = kPortStatus;
constexpr std::span<const Column> kPortPhysColumns = kPortPhys;
constexpr std::span<const Column> kCapabilityColumns = kCapabilities;

}  // namespace

constinit const ServedTable kPortTable{"femgmt.c", {&kPortColumns, 1}, kModulePortShape};
constinit const ServedTable kPortStatusTable{
    "femgmt.c", {&kPortStatusColumns, 1}, kModulePortShape};
constinit const ServedTable kPortPhysTable{"femgmt.c", {&kPortPhysColumns, 1}, kModulePortShape};
constinit const ServedTable kCapabilityTable{
    "femgmt.c", {&kCapabilityColumns, 1}, kModulePortShape};

}  // namespace snmpmain::femgmt
