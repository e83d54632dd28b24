// Errors at the ports, and their traffic by class of service.
#include "src/mibs/femgmt/tables.h"
#include "src/mibs/shared_values.h"

namespace snmpmain::femgmt {
namespace {

constexpr Column kErrors[] = {
    {1, 57, ASN_COUNTER, Access::kReadOnly, "fcFxPortLinkFailures",
     NumberOf("Get.Oper.UserPort.%d.%d.LinkFailures")},
    {2, 58, ASN_COUNTER, Access::kReadOnly, "fcFxPortSyncLosses",
     NumberOf("Get.Oper.UserPort.%d.%d.LossOfSyncs")},
    {3, 59, ASN_COUNTER, Access::kReadOnly, "fcFxPortSigLosses", NeverAnswers()},
    {4, 60, ASN_COUNTER, Access::kReadOnly, "fcFxPortPrimSeqProtoErrors",
     NumberOf("Get.Oper.UserPort.%d.%d.PrimSeqErrors")},
    {5, 61, ASN_COUNTER, Access::kReadOnly, "fcFxPortInvalidTxWords",
     NumberOf("Get.Oper.UserPort.%d.%d.DecodeErrors")},
    {6, 62, ASN_COUNTER, Access::kReadOnly, "fcFxPortInvalidCrcs",
     NumberOf("Get.Oper.UserPort.%d.%d.InvalidCRCs")},
    {7, 63, ASN_COUNTER, Access::kReadOnly, "fcFxPortDelimiterErrors", NeverAnswers()},
    {8, 64, ASN_COUNTER, Access::kReadOnly, "fcFxPortAddressIdErrors",
     NumberOf("Get.Oper.UserPort.%d.%d.InvDestAddr")},
    {9, 65, ASN_COUNTER, Access::kReadOnly, "fcFxPortLinkResetIns",
     NumberOf("Get.Oper.UserPort.%d.%d.RxLinkResets")},
    {10, 66, ASN_COUNTER, Access::kReadOnly, "fcFxPortLinkResetOuts",
     NumberOf("Get.Oper.UserPort.%d.%d.TxLinkResets")},
    {11, 67, ASN_COUNTER, Access::kReadOnly, "fcFxPortOlsIns",
     NumberOf("Get.Oper.UserPort.%d.%d.RxOfflineSeq")},
    {12, 68, ASN_COUNTER, Access::kReadOnly, "fcFxPortOlsOuts",
     NumberOf("Get.Oper.UserPort.%d.%d.TxOfflineSeq")},
};

// The switches do not do class 1.
constexpr Column kClass1[] = {
    {1, 71, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1InFrames", NeverAnswers()},
    {2, 72, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1OutFrames", NeverAnswers()},
    {3, 73, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1InOctets", NeverAnswers()},
    {4, 74, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1OutOctets", NeverAnswers()},
    {5, 75, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1Discards", NeverAnswers()},
    {6, 76, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1FbsyFrames", NeverAnswers()},
    {7, 77, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1FrjtFrames", NeverAnswers()},
    {8, 78, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1InConnections", NeverAnswers()},
    {9, 79, ASN_COUNTER, Access::kReadOnly, "fcFxPortC1OutConnections", NeverAnswers()},
    {10, 80, ASN_GAUGE, Access::kReadOnly, "fcFxPortC1ConnTime", NeverAnswers()},
};

// The switches count words; managers have always been shown these numbers as they are.
constexpr Column kClass2[] = {
    {1, 83, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2InFrames",
     NumberOf("Get.Oper.UserPort.%d.%d.Class2FramesIn")},
    {2, 84, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2OutFrames",
     NumberOf("Get.Oper.UserPort.%d.%d.Class2FramesOut")},
    {3, 85, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2InOctets",
     NumberOf("Get.Oper.UserPort.%d.%d.Class2WordsIn")},
    {4, 86, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2OutOctets",
     NumberOf("Get.Oper.UserPort.%d.%d.Class2WordsOut")},
    {5, 87, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2Discards", Constant(0)},
    {6, 88, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2FbsyFrames",
     NumberOf("Get.Oper.UserPort.%d.%d.FBusys")},
    {7, 89, ASN_COUNTER, Access::kReadOnly, "fcFxPortC2FrjtFrames",
     NumberOf("Get.Oper.UserPort.%d.%d.FRejects")},
};

constexpr Column kClass3[] = {
    {1, 92, ASN_COUNTER, Access::kReadOnly, "fcFxPortC3InFrames",
     NumberOf("Get.Oper.UserPort.%d.%d.Class3FramesIn")},
    {2, 93, ASN_COUNTER, Access::kReadOnly, "fcFxPortC3OutFrames",
     NumberOf("Get.Oper.UserPort.%d.%d.Class3FramesOut")},
    {3, 94, ASN_COUNTER, Access::kReadOnly, "fcFxPortC3InOctets",
     NumberOf("Get.Oper.UserPort.%d.%d.Class3WordsIn")},
    {4, 95, ASN_COUNTER, Access::kReadOnly, "fcFxPortC3OutOctets",
     NumberOf("Get.Oper.UserPort.%d.%d.Class3WordsOut")},
    {5, 96, ASN_COUNTER, Access::kReadOnly, "fcFxPortC3Discards",
     NumberOf("Get.Oper.UserPort.%d.%d.Class3Tosses")},
};

constexpr std::span<const Column> kErrorColumns = kErrors;
constexpr std::span<const Column> kClass1Columns = kClass1;
constexpr std::span<const Column> kClass2Columns = kClass2;
constexpr std::span<const Column> kClass3Columns = kClass3;

}  // namespace

constinit const ServedTable kErrorTable{"femgmt.c", {&kErrorColumns, 1}, kModulePortShape};
constinit const ServedTable kClass1Table{"femgmt.c", {&kClass1Columns, 1}, kModulePortShape};
constinit const ServedTable kClass2Table{"femgmt.c", {&kClass2Columns, 1}, kModulePortShape};
constinit const ServedTable kClass3Table{"femgmt.c", {&kClass3Columns, 1}, kModulePortShape};

}  // namespace snmpmain::femgmt
