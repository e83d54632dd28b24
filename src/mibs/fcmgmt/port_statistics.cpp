#include "src/mibs/conversions.h"
#include "src/mibs/fcmgmt/tables.h"
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
    {1, 140, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatUnitId",
     Derived(ReadUnitId, "the unit's WWN")},
    {2, 141, ASN_INTEGER, Access::kReadOnly, "connUnitPortStatIndex", LastIndex()},
    {3, 142, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountError",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalErrors")},
    {4, 143, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxObjects",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalTxFrames")},
    {5, 144, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxObjects",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalRxFrames")},
    {6, 145, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxElements",
     WordCounterOf("Get.Oper.UserPort.%d.%d.C64.TotalTxWords")},
    {7, 146, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxElements",
     WordCounterOf("Get.Oper.UserPort.%d.%d.C64.TotalRxWords")},
    {8, 147, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountBBCreditZero", NotCounted()},
    {9, 148, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInputBuffersFull",
     NotCounted()},
    {10, 149, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFBSYFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.FBusys")},
    {11, 150, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountPBSYFrames", NotCounted()},
    {12, 151, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFRJTFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.FRejects")},
    {13, 152, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountPRJTFrames", NotCounted()},
    {14, 153, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1RxFrames",
     NotCounted()},
    {15, 154, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1TxFrames",
     NotCounted()},
    {16, 155, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1FBSYFrames",
     NotCounted()},
    {17, 156, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1PBSYFrames",
     NotCounted()},
    {18, 157, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1FRJTFrames",
     NotCounted()},
    {19, 158, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1PRJTFrames",
     NotCounted()},
    {20, 159, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2RxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class2FramesIn")},
    {21, 160, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2TxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class2FramesOut")},
    {22, 161, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2FBSYFrames",
     NotCounted()},
    {23, 162, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2PBSYFrames",
     NotCounted()},
    {24, 163, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2FRJTFrames",
     NotCounted()},
    {25, 164, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2PRJTFrames",
     NotCounted()},
    {26, 165, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass3RxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class3FramesIn")},
    {27, 166, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass3TxFrames",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class3FramesOut")},
    {28, 167, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass3Discards",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.Class3Tosses")},
    {29, 168, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxMulticastObjects",
     NotCounted()},
    {30, 169, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxMulticastObjects",
     NotCounted()},
    {31, 170, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxBroadcastObjects",
     NotCounted()},
    {32, 171, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxBroadcastObjects",
     NotCounted()},
    {33, 172, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxLinkResets",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.RxLinkResets")},
    {34, 173, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxLinkResets",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TxLinkResets")},
    {35, 174, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountNumberLinkResets",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalLinkResets")},
    {36, 175, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxOfflineSequences",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.RxOfflineSeq")},
    {37, 176, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxOfflineSequences",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TxOfflineSeq")},
    {38, 177, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountNumberOfflineSequences",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.TotalOfflineSeq")},
    {39, 178, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountLinkFailures",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.LinkFailures")},
    {40, 179, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInvalidCRC",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.InvalidCRCs")},
    {41, 180, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInvalidTxWords",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.DecodeErrors")},
    {42, 181, ASN_OCTET_STR, Access::kReadOnly,
     "connUnitPortStatCountPrimitiveSequenceProtocolErrors",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.PrimSeqErrors")},
    {43, 182, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountLossofSignal", NotCounted()},
    {44, 183, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountLossofSynchronization",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.LossOfSyncs")},
    {45, 184, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInvalidOrderedSets",
     NotCounted()},
    {46, 185, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFramesTooLong", NotCounted()},
    {47, 186, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFramesTruncated",
     NotCounted()},
    {48, 187, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountAddressErrors",
     CounterOf("Get.Oper.UserPort.%d.%d.C64.InvDestAddr")},
    {49, 188, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountDelimiterErrors",
     NotCounted()},
    {50, 189, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountEncodingDisparityErrors",
     NotCounted()},
};

constexpr std::span<const Column> kPortStatisticsColumns = kPortStatistics;

}  // namespace

constinit const ServedTable kPortStatisticsTable{
    "fcmgmt", {&kPortStatisticsColumns, 1}, {ResolvePort, NextPort}};

}  // namespace snmpmain::fcmgmt
