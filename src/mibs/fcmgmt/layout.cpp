// Tables whose objects are registered, so that the subtree has its shape, without values: a GET
// finds no such instance, a walk passes over them.
#include "src/mibs/fcmgmt/columns.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Column kSensors[] = {
    {1, 47, ASN_OCTET_STR, Access::kReadOnly, "connUnitSensorUnitId"},
    {2, 48, ASN_INTEGER, Access::kReadOnly, "connUnitSensorIndex"},
    {3, 49, ASN_OCTET_STR, Access::kReadOnly, "connUnitSensorName"},
    {4, 50, ASN_INTEGER, Access::kReadOnly, "connUnitSensorStatus"},
    {5, 51, ASN_OCTET_STR, Access::kReadOnly, "connUnitSensorInfo"},
    {6, 52, ASN_OCTET_STR, Access::kReadOnly, "connUnitSensorMessage"},
    {7, 53, ASN_INTEGER, Access::kReadOnly, "connUnitSensorType"},
    {8, 54, ASN_INTEGER, Access::kReadOnly, "connUnitSensorCharacteristic"},
};

constexpr Column kPorts[] = {
    {1, 57, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortUnitId"},
    {2, 58, ASN_INTEGER, Access::kReadOnly, "connUnitPortIndex"},
    {3, 59, ASN_INTEGER, Access::kReadOnly, "connUnitPortType"},
    {4, 60, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortFCClassCap"},
    {5, 61, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortFCClassOp"},
    {6, 62, ASN_INTEGER, Access::kReadOnly, "connUnitPortState"},
    {7, 63, ASN_INTEGER, Access::kReadOnly, "connUnitPortStatus"},
    {8, 64, ASN_INTEGER, Access::kReadOnly, "connUnitPortTransmitterType"},
    {9, 65, ASN_INTEGER, Access::kReadOnly, "connUnitPortModuleType"},
    {10, 66, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortWwn"},
    {11, 67, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortFCId"},
    {12, 68, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortSn"},
    {13, 69, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortRevision"},
    {14, 70, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortVendor"},
    {15, 71, ASN_INTEGER, Access::kReadOnly, "connUnitPortSpeed"},
    {16, 72, ASN_INTEGER, Access::kReadWrite, "connUnitPortControl"},
    {17, 73, ASN_OCTET_STR, Access::kReadWrite, "connUnitPortName"},
    {18, 74, ASN_INTEGER, Access::kReadOnly, "connUnitPortPhysicalNumber"},
    {19, 75, ASN_OBJECT_ID, Access::kReadOnly, "connUnitPortStatObject"},
    {20, 76, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortProtocolCap"},
    {21, 77, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortProtocolOp"},
    {22, 78, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortNodeWwn"},
    {23, 79, ASN_INTEGER, Access::kReadOnly, "connUnitPortHWState"},
};

constexpr Column kEvents[] = {
    {1, 82, ASN_OCTET_STR, Access::kReadOnly, "connUnitEventUnitId"},
    {2, 83, ASN_INTEGER, Access::kReadOnly, "connUnitEventIndex"},
    {3, 84, ASN_INTEGER, Access::kReadOnly, "connUnitEventId"},
    {4, 85, ASN_OCTET_STR, Access::kReadOnly, "connUnitREventTime"},
    {5, 86, ASN_TIMETICKS, Access::kReadOnly, "connUnitSEventTime"},
    {6, 87, ASN_INTEGER, Access::kReadOnly, "connUnitEventSeverity"},
    {7, 88, ASN_INTEGER, Access::kReadOnly, "connUnitEventType"},
    {8, 89, ASN_OBJECT_ID, Access::kReadOnly, "connUnitEventObject"},
    {9, 90, ASN_OCTET_STR, Access::kReadOnly, "connUnitEventDescr"},
};

constexpr Column kLinks[] = {
    {1, 93, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkUnitId"},
    {2, 94, ASN_INTEGER, Access::kReadOnly, "connUnitLinkIndex"},
    {3, 95, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkNodeIdX"},
    {4, 96, ASN_INTEGER, Access::kReadOnly, "connUnitLinkPortNumberX"},
    {5, 97, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkPortWwnX"},
    {6, 98, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkNodeIdY"},
    {7, 99, ASN_INTEGER, Access::kReadOnly, "connUnitLinkPortNumberY"},
    {8, 100, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkPortWwnY"},
    {9, 101, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkAgentAddressY"},
    {10, 102, ASN_INTEGER, Access::kReadOnly, "connUnitLinkAgentAddressTypeY"},
    {11, 103, ASN_INTEGER, Access::kReadOnly, "connUnitLinkAgentPortY"},
    {12, 104, ASN_INTEGER, Access::kReadOnly, "connUnitLinkUnitTypeY"},
    {13, 105, ASN_OCTET_STR, Access::kReadOnly, "connUnitLinkConnIdY"},
    {14, 106, ASN_INTEGER, Access::kReadOnly, "connUnitLinkCurrIndex"},
};

constexpr Column kZoneMembers[] = {
    {1, 109, ASN_INTEGER, Access::kReadOnly, nullptr},
    {2, 110, ASN_INTEGER, Access::kReadOnly, nullptr},
    {3, 111, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {4, 112, ASN_INTEGER, Access::kReadOnly, nullptr},
    {5, 113, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {6, 114, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {7, 115, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {8, 116, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {9, 117, ASN_INTEGER, Access::kReadOnly, nullptr},
    {10, 118, ASN_INTEGER, Access::kReadOnly, nullptr},
    {11, 119, ASN_OCTET_STR, Access::kReadOnly, nullptr},
};

constexpr Column kAliasMembers[] = {
    {1, 122, ASN_INTEGER, Access::kReadOnly, nullptr},
    {2, 123, ASN_INTEGER, Access::kReadOnly, nullptr},
    {3, 124, ASN_INTEGER, Access::kReadOnly, nullptr},
    {4, 125, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {5, 126, ASN_INTEGER, Access::kReadOnly, nullptr},
    {6, 127, ASN_INTEGER, Access::kReadOnly, nullptr},
    {7, 128, ASN_OCTET_STR, Access::kReadOnly, nullptr},
};

constexpr Column kTrapRegistrations[] = {
    {1, 133, ASN_IPADDRESS, Access::kReadOnly, "trapRegIpAddress"},
    {2, 134, ASN_INTEGER, Access::kReadOnly, "trapRegPort"},
    {3, 135, ASN_INTEGER, Access::kReadWrite, "trapRegFilter"},
    {4, 136, ASN_INTEGER, Access::kReadWrite, "trapRegRowState"},
};

constexpr Column kPortStatistics[] = {
    {1, 140, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatUnitId"},
    {2, 141, ASN_INTEGER, Access::kReadOnly, "connUnitPortStatIndex"},
    {3, 142, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountError"},
    {4, 143, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxObjects"},
    {5, 144, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxObjects"},
    {6, 145, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxElements"},
    {7, 146, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxElements"},
    {8, 147, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountBBCreditZero"},
    {9, 148, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInputBuffersFull"},
    {10, 149, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFBSYFrames"},
    {11, 150, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountPBSYFrames"},
    {12, 151, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFRJTFrames"},
    {13, 152, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountPRJTFrames"},
    {14, 153, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1RxFrames"},
    {15, 154, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1TxFrames"},
    {16, 155, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1FBSYFrames"},
    {17, 156, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1PBSYFrames"},
    {18, 157, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1FRJTFrames"},
    {19, 158, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass1PRJTFrames"},
    {20, 159, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2RxFrames"},
    {21, 160, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2TxFrames"},
    {22, 161, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2FBSYFrames"},
    {23, 162, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2PBSYFrames"},
    {24, 163, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2FRJTFrames"},
    {25, 164, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass2PRJTFrames"},
    {26, 165, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass3RxFrames"},
    {27, 166, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass3TxFrames"},
    {28, 167, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountClass3Discards"},
    {29, 168, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxMulticastObjects"},
    {30, 169, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxMulticastObjects"},
    {31, 170, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxBroadcastObjects"},
    {32, 171, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxBroadcastObjects"},
    {33, 172, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxLinkResets"},
    {34, 173, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxLinkResets"},
    {35, 174, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountNumberLinkResets"},
    {36, 175, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountRxOfflineSequences"},
    {37, 176, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountTxOfflineSequences"},
    {38, 177, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountNumberOfflineSequences"},
    {39, 178, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountLinkFailures"},
    {40, 179, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInvalidCRC"},
    {41, 180, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInvalidTxWords"},
    {42, 181, ASN_OCTET_STR, Access::kReadOnly,
     "connUnitPortStatCountPrimitiveSequenceProtocolErrors"},
    {43, 182, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountLossofSignal"},
    {44, 183, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountLossofSynchronization"},
    {45, 184, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountInvalidOrderedSets"},
    {46, 185, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFramesTooLong"},
    {47, 186, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountFramesTruncated"},
    {48, 187, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountAddressErrors"},
    {49, 188, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountDelimiterErrors"},
    {50, 189, ASN_OCTET_STR, Access::kReadOnly, "connUnitPortStatCountEncodingDisparityErrors"},
};

constexpr Column kNameServer[] = {
    {1, 194, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsId"},
    {2, 195, ASN_INTEGER, Access::kReadOnly, "connUnitSnsPortIndex"},
    {3, 196, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortIdentifier"},
    {4, 197, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortName"},
    {5, 198, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsNodeName"},
    {6, 199, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsClassOfSvc"},
    {7, 200, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsNodeIPAddress"},
    {8, 201, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsProcAssoc"},
    {9, 202, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsFC4Type"},
    {10, 203, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortType"},
    {11, 204, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortIPAddress"},
    {12, 205, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsFabricPortName"},
    {13, 206, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsHardAddress"},
    {14, 207, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsSymbolicPortName"},
    {15, 208, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsSymbolicNodeName"},
};

constexpr Column kPlatforms[] = {
    {1, 211, ASN_INTEGER, Access::kReadOnly, nullptr},
    {2, 212, ASN_INTEGER, Access::kReadOnly, nullptr},
    {3, 213, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {4, 214, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {6, 215, ASN_INTEGER, Access::kReadOnly, nullptr},
    {7, 216, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {8, 217, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {9, 218, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {10, 219, ASN_OCTET_STR, Access::kReadOnly, nullptr},
    {11, 220, ASN_INTEGER, Access::kReadOnly, nullptr},
    {12, 221, ASN_OCTET_STR, Access::kReadOnly, nullptr},
};

}  // namespace

constinit const std::span<const Column> kSensorColumns = kSensors;
constinit const std::span<const Column> kPortColumns = kPorts;
constinit const std::span<const Column> kEventColumns = kEvents;
constinit const std::span<const Column> kLinkColumns = kLinks;
constinit const std::span<const Column> kZoneColumns = kZoneMembers;
constinit const std::span<const Column> kAliasColumns = kAliasMembers;
constinit const std::span<const Column> kTrapRegistrationColumns = kTrapRegistrations;
constinit const std::span<const Column> kPortStatisticsColumns = kPortStatistics;
constinit const std::span<const Column> kNameServerColumns = kNameServer;
constinit const std::span<const Column> kPlatformColumns = kPlatforms;

}  // namespace snmpmain::fcmgmt
