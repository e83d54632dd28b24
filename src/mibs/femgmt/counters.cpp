// Errors at the ports, and their traffic by class of service.
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/shared_values.h"

namespace snmpmain::femgmt {
namespace {

constexpr Column kErrors[] = {
    {1, ASN_COUNTER, "fcFxPortLinkFailures", NumberOf("Get.Oper.UserPort.%d.%d.LinkFailures")},
    {2, ASN_COUNTER, "fcFxPortSyncLosses", NumberOf("Get.Oper.UserPort.%d.%d.LossOfSyncs")},
    {3, ASN_COUNTER, "fcFxPortSigLosses", NeverAnswers()},
    {4, ASN_COUNTER, "fcFxPortPrimSeqProtoErrors",
     NumberOf("Get.Oper.UserPort.%d.%d.PrimSeqErrors")},
    {5, ASN_COUNTER, "fcFxPortInvalidTxWords", NumberOf("Get.Oper.UserPort.%d.%d.DecodeErrors")},
    {6, ASN_COUNTER, "fcFxPortInvalidCrcs", NumberOf("Get.Oper.UserPort.%d.%d.InvalidCRCs")},
    {7, ASN_COUNTER, "fcFxPortDelimiterErrors", NeverAnswers()},
    {8, ASN_COUNTER, "fcFxPortAddressIdErrors", NumberOf("Get.Oper.UserPort.%d.%d.InvDestAddr")},
    {9, ASN_COUNTER, "fcFxPortLinkResetIns", NumberOf("Get.Oper.UserPort.%d.%d.RxLinkResets")},
    {10, ASN_COUNTER, "fcFxPortLinkResetOuts", NumberOf("Get.Oper.UserPort.%d.%d.TxLinkResets")},
    {11, ASN_COUNTER, "fcFxPortOlsIns", NumberOf("Get.Oper.UserPort.%d.%d.RxOfflineSeq")},
    {12, ASN_COUNTER, "fcFxPortOlsOuts", NumberOf("Get.Oper.UserPort.%d.%d.TxOfflineSeq")},
};

// The switches do not do class 1.
constexpr Column kClass1[] = {
    {1, ASN_COUNTER, "fcFxPortC1InFrames", NeverAnswers()},
    {2, ASN_COUNTER, "fcFxPortC1OutFrames", NeverAnswers()},
    {3, ASN_COUNTER, "fcFxPortC1InOctets", NeverAnswers()},
    {4, ASN_COUNTER, "fcFxPortC1OutOctets", NeverAnswers()},
    {5, ASN_COUNTER, "fcFxPortC1Discards", NeverAnswers()},
    {6, ASN_COUNTER, "fcFxPortC1FbsyFrames", NeverAnswers()},
    {7, ASN_COUNTER, "fcFxPortC1FrjtFrames", NeverAnswers()},
    {8, ASN_COUNTER, "fcFxPortC1InConnections", NeverAnswers()},
    {9, ASN_COUNTER, "fcFxPortC1OutConnections", NeverAnswers()},
    {10, ASN_GAUGE, "fcFxPortC1ConnTime", NeverAnswers()},
};

// The switches count words; managers have always been shown these numbers as they are.
constexpr Column kClass2[] = {
    {1, ASN_COUNTER, "fcFxPortC2InFrames", NumberOf("Get.Oper.UserPort.%d.%d.Class2FramesIn")},
    {2, ASN_COUNTER, "fcFxPortC2OutFrames", NumberOf("Get.Oper.UserPort.%d.%d.Class2FramesOut")},
    {3, ASN_COUNTER, "fcFxPortC2InOctets", NumberOf("Get.Oper.UserPort.%d.%d.Class2WordsIn")},
    {4, ASN_COUNTER, "fcFxPortC2OutOctets", NumberOf("Get.Oper.UserPort.%d.%d.Class2WordsOut")},
    {5, ASN_COUNTER, "fcFxPortC2Discards", Constant(0)},
    {6, ASN_COUNTER, "fcFxPortC2FbsyFrames", NumberOf("Get.Oper.UserPort.%d.%d.FBusys")},
    {7, ASN_COUNTER, "fcFxPortC2FrjtFrames", NumberOf("Get.Oper.UserPort.%d.%d.FRejects")},
};

constexpr Column kClass3[] = {
    {1, ASN_COUNTER, "fcFxPortC3InFrames", NumberOf("Get.Oper.UserPort.%d.%d.Class3FramesIn")},
    {2, ASN_COUNTER, "fcFxPortC3OutFrames", NumberOf("Get.Oper.UserPort.%d.%d.Class3FramesOut")},
    {3, ASN_COUNTER, "fcFxPortC3InOctets", NumberOf("Get.Oper.UserPort.%d.%d.Class3WordsIn")},
    {4, ASN_COUNTER, "fcFxPortC3OutOctets", NumberOf("Get.Oper.UserPort.%d.%d.Class3WordsOut")},
    {5, ASN_COUNTER, "fcFxPortC3Discards", NumberOf("Get.Oper.UserPort.%d.%d.Class3Tosses")},
};

}  // namespace

constinit const ServedTable kErrorTable = Table(kModule, {3, 1, 1}, 57, kErrors, kModulePortShape);
constinit const ServedTable kClass1Table = Table(kModule, {4, 1, 1}, 71, kClass1, kModulePortShape);
constinit const ServedTable kClass2Table = Table(kModule, {4, 2, 1}, 83, kClass2, kModulePortShape);
constinit const ServedTable kClass3Table = Table(kModule, {4, 3, 1}, 92, kClass3, kModulePortShape);

}  // namespace snmpmain::femgmt
