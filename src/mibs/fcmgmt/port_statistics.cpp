#include "src/mibs/conversions.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"

namespace snmpmain::fcmgmt {
namespace {

int ReadCounter(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetOctets(value, ReadCounter64(value.text.data()));
}

int ReadWordCounter(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetOctets(value, ReadCounter64Times4(value.text.data()));
}

consteval ValueSource CounterOf(const char* command) {
    return Computed(ReadCounter, command);
}

// The switch counts words of four octets.
consteval ValueSource WordCounterOf(const char* command) {
    return Computed(ReadWordCounter, command);
}

// What managers are told of a counter that the switch does not have.
consteval ValueSource NotCounted() {
    return ConstantOctets("\x80\0\0\0\0\0\0\0");
}

constexpr Column kPortStatistics[] = {
    {1, ASN_OCTET_STR, "connUnitPortStatUnitId", UnitId()},
    {2, ASN_INTEGER, "connUnitPortStatIndex", LastIndex()},
    {3, ASN_OCTET_STR, "connUnitPortStatCountError",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalErrors")},
    {4, ASN_OCTET_STR, "connUnitPortStatCountTxObjects",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalTxFrames")},
    {5, ASN_OCTET_STR, "connUnitPortStatCountRxObjects",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalRxFrames")},
    {6, ASN_OCTET_STR, "connUnitPortStatCountTxElements",
     WordCounterOf("Get.Oper.UserPort.%d.%d.C64.TotalTxWords")},
    {7, ASN_OCTET_STR, "connUnitPortStatCountRxElements",
     WordCounterOf("Get.Oper.UserPort.%d.%d.C64.TotalRxWords")},
    {8, ASN_OCTET_STR, "connUnitPortStatCountBBCreditZero", NotCounted()},
    {9, ASN_OCTET_STR, "connUnitPortStatCountInputBuffersFull", NotCounted()},
    {10, ASN_OCTET_STR, "connUnitPortStatCountFBSYFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.FBusys")},
    {11, ASN_OCTET_STR, "connUnitPortStatCountPBSYFrames", NotCounted()},
    {12, ASN_OCTET_STR, "connUnitPortStatCountFRJTFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.FRejects")},
    {13, ASN_OCTET_STR, "connUnitPortStatCountPRJTFrames", NotCounted()},
    {14, ASN_OCTET_STR, "connUnitPortStatCountClass1RxFrames", NotCounted()},
    {15, ASN_OCTET_STR, "connUnitPortStatCountClass1TxFrames", NotCounted()},
    {16, ASN_OCTET_STR, "connUnitPortStatCountClass1FBSYFrames", NotCounted()},
    {17, ASN_OCTET_STR, "connUnitPortStatCountClass1PBSYFrames", NotCounted()},
    {18, ASN_OCTET_STR, "connUnitPortStatCountClass1FRJTFrames", NotCounted()},
    {19, ASN_OCTET_STR, "connUnitPortStatCountClass1PRJTFrames", NotCounted()},
    {20, ASN_OCTET_STR, "connUnitPortStatCountClass2RxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class2FramesIn")},
    {21, ASN_OCTET_STR, "connUnitPortStatCountClass2TxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class2FramesOut")},
    {22, ASN_OCTET_STR, "connUnitPortStatCountClass2FBSYFrames", NotCounted()},
    {23, ASN_OCTET_STR, "connUnitPortStatCountClass2PBSYFrames", NotCounted()},
    {24, ASN_OCTET_STR, "connUnitPortStatCountClass2FRJTFrames", NotCounted()},
    {25, ASN_OCTET_STR, "connUnitPortStatCountClass2PRJTFrames", NotCounted()},
    {26, ASN_OCTET_STR, "connUnitPortStatCountClass3RxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class3FramesIn")},
    {27, ASN_OCTET_STR, "connUnitPortStatCountClass3TxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class3FramesOut")},
    {28, ASN_OCTET_STR, "connUnitPortStatCountClass3Discards",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class3Tosses")},
    {29, ASN_OCTET_STR, "connUnitPortStatCountRxMulticastObjects", NotCounted()},
    {30, ASN_OCTET_STR, "connUnitPortStatCountTxMulticastObjects", NotCounted()},
    {31, ASN_OCTET_STR, "connUnitPortStatCountRxBroadcastObjects", NotCounted()},
    {32, ASN_OCTET_STR, "connUnitPortStatCountTxBroadcastObjects", NotCounted()},
    {33, ASN_OCTET_STR, "connUnitPortStatCountRxLinkResets",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.RxLinkResets")},
    {34, ASN_OCTET_STR, "connUnitPortStatCountTxLinkResets",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TxLinkResets")},
    {35, ASN_OCTET_STR, "connUnitPortStatCountNumberLinkResets",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalLinkResets")},
    {36, ASN_OCTET_STR, "connUnitPortStatCountRxOfflineSequences",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.RxOfflineSeq")},
    {37, ASN_OCTET_STR, "connUnitPortStatCountTxOfflineSequences",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TxOfflineSeq")},
    {38, ASN_OCTET_STR, "connUnitPortStatCountNumberOfflineSequences",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalOfflineSeq")},
    {39, ASN_OCTET_STR, "connUnitPortStatCountLinkFailures",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.LinkFailures")},
    {40, ASN_OCTET_STR, "connUnitPortStatCountInvalidCRC",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.InvalidCRCs")},
    {41, ASN_OCTET_STR, "connUnitPortStatCountInvalidTxWords",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.DecodeErrors")},
    {42, ASN_OCTET_STR, "connUnitPortStatCountPrimitiveSequenceProtocolErrors",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.PrimSeqErrors")},
    {43, ASN_OCTET_STR, "connUnitPortStatCountLossofSignal", NotCounted()},
    {44, ASN_OCTET_STR, "connUnitPortStatCountLossofSynchronization",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.LossOfSyncs")},
    {45, ASN_OCTET_STR, "connUnitPortStatCountInvalidOrderedSets", NotCounted()},
    {46, ASN_OCTET_STR, "connUnitPortStatCountFramesTooLong", NotCounted()},
    {47, ASN_OCTET_STR, "connUnitPortStatCountFramesTruncated", NotCounted()},
    {48, ASN_OCTET_STR, "connUnitPortStatCountAddressErrors",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.InvDestAddr")},
    {49, ASN_OCTET_STR, "connUnitPortStatCountDelimiterErrors", NotCounted()},
    {50, ASN_OCTET_STR, "connUnitPortStatCountEncodingDisparityErrors", NotCounted()},
};

}  // namespace

constinit const ServedTable kPortStatisticsTable =
    Table(kModule, {4, 5, 1}, 140, kPortStatistics, {ResolvePort, NextPort});

}  // namespace snmpmain::fcmgmt
