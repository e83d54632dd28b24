// FCMGMT-MIB's part. The names and the words for numbers are those that managers know.
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "tools/mib_text.h"

namespace snmpmain {
namespace {

// Syntaxes that several objects have, or that are long.
constexpr const char* kIndex = "INTEGER (1..2147483647)";
constexpr const char* kCounter = "FcCounter";
constexpr const char* kFrames = "frames";
constexpr const char* kYesNo = "INTEGER { unknown(1), no(2), yes(3) }";
constexpr const char* kUnitType =
    "INTEGER { unknown(1), other(2), hub(3), switch(4), gateway(5), converter(6), hba(7) }";
constexpr const char* kUnitState = "INTEGER { unknown(1), online(2), offline(3) }";
constexpr const char* kUnitStatus =
    "INTEGER { unknown(1), unused(2), ok(3), warning(4), failed(5) }";
constexpr const char* kUnitControl =
    "INTEGER { unknown(1), invalid(2), resetConnUnitColdStart(3), resetConnUnitWarmStart(4), "
    "offlineConnUnit(5), onlineConnUnit(6) }";
constexpr const char* kSeverity =
    "INTEGER { unknown(1), emergency(2), alert(3), critical(4), error(5), warning(6), notify(7), "
    "info(8), debug(9), mark(10) }";
constexpr const char* kSensorStatus =
    "INTEGER { unknown(1), other(2), ok(3), warning(4), failed(5) }";
constexpr const char* kSensorType =
    "INTEGER { unknown(1), other(2), battery(3), fan(4), powerSupply(5), transmitter(6), "
    "enclosure(7), board(8), receiver(9) }";
constexpr const char* kSensorCharacteristic =
    "INTEGER { unknown(1), other(2), temperature(3), pressure(4), emf(5), currentValue(6), "
    "airflow(7), frequency(8), power(9), door(10) }";
constexpr const char* kPortType =
    "INTEGER { unknown(1), other(2), notPresent(3), hubPort(4), nPort(5), lPort(6), flPort(7), "
    "fPort(8), ePort(9), gPort(10) }";
constexpr const char* kPortState =
    "INTEGER { unknown(1), online(2), offline(3), bypassed(4), diagnostics(5) }";
constexpr const char* kPortStatusWords =
    "INTEGER { unknown(1), unused(2), ready(3), warning(4), failure(5), notparticipating(6), "
    "initializing(7), bypass(8) }";
constexpr const char* kTransmitter =
    "INTEGER { unknown(1), other(2), unused(3), shortwave(4), longwave(5), copper(6), scsi(7), "
    "longwaveNoOFC(8), shortwaveNoOFC(9), longwaveLED(10) }";
constexpr const char* kModuleType =
    "INTEGER { unknown(1), other(2), gbic(3), embedded(4), glm(5), gbicSerialId(6), "
    "gbicNoSerialId(7), gbicNotInstalled(8), smallFormFactor(9) }";
constexpr const char* kPortControl =
    "INTEGER { unknown(1), invalid(2), resetConnUnitPort(3), bypassConnUnitPort(4), "
    "unbypassConnUnitPort(5), offlineConnUnitPort(6), onlineConnUnitPort(7), "
    "resetConnUnitPortCounters(8) }";
constexpr const char* kHwState =
    "INTEGER { unknown(1), failed(2), bypassed(3), active(4), loopback(5), txfault(6), "
    "noMedia(7), linkDown(8) }";
constexpr const char* kEventType =
    "INTEGER { unknown(1), other(2), status(3), configuration(4), topology(5) }";
constexpr const char* kMemberType = "INTEGER { wwn(1), domainPort(2), portId(3), other(255) }";
constexpr const char* kRowState = "INTEGER { rowDestroy(1), rowInactive(2), rowActive(3) }";

constexpr ObjectText kConnSet[] = {
    {"uNumber", "How many switches the fabric has: the rows of connUnitTable."},
    {"systemURL", "Where the local switch's own management is."},
    {"statusChangeTime", "When a unit's status changed last."},
    {"configurationChangeTime", "When a unit's configuration changed last."},
    {"connUnitTableChangeTime", "When connUnitTable changed last."},
};

constexpr ObjectText kTrapReg[] = {
    {"trapMaxClients", "How many trap destinations there can be."},
    {"trapClientCount", "How many there are."},
};

constexpr ObjectText kRevision[] = {
    {"revisionNumber", "The version of this module: two digits before, two behind the point."},
};

constexpr ObjectText kUnits[] = {
    {"connUnitId", "What the unit is called in every index: its WWN.", "FcGlobalId"},
    {"connUnitGlobalId", "The same, as the unit's name in the world.", "FcGlobalId"},
    {"connUnitType", "What kind of device it is.", kUnitType},
    {"connUnitNumports", "How many ports it has."},
    {"connUnitState", "Whether it does its work.", kUnitState},
    {"connUnitStatus",
     "Its health. A bad supply or fan of several, a warm blade, a port that is down or a unit that "
     "is offline is a warning; no good supply or fan, an overheating blade or a unit that is down "
     "a failure.",
     kUnitStatus},
    {"connUnitProduct", "The product, up to 79 characters."},
    {"connUnitSn", "The chassis' serial number."},
    {"connUnitUpTime", "How long it has been running."},
    {"connUnitUrl", "Where the unit's own management is."},
    {"connUnitDomainId", "The address of its domain controller: FF FC and the domain id.",
     "FcAddressId"},
    {"connUnitProxyMaster", "Whether this agent runs on it.", kYesNo},
    {"connUnitPrincipal", "Whether it is the fabric's principal switch.", kYesNo},
    {"connUnitNumSensors", "Its rows of connUnitSensorTable."},
    {"connUnitStatusChangeTime", "When its status changed last."},
    {"connUnitConfigurationChangeTime", "When its configuration changed last."},
    {"connUnitNumRevs", "Its rows of connUnitRevsTable."},
    {"connUnitNumZones", "How many zones it has."},
    {"connUnitModuleId", "The module that the unit is part of: itself.", "FcGlobalId"},
    {"connUnitName", "Its symbolic name; 1 to 32 printable characters can be set."},
    {"connUnitInfo", "A comment; 1 to 64 characters can be set."},
    {"connUnitControl",
     "What was asked of it. It can be set to resetConnUnitColdStart, offlineConnUnit and "
     "onlineConnUnit.",
     kUnitControl},
    {"connUnitContact", "Whom to call about it; 1 to 64 characters can be set."},
    {"connUnitLocation", "Where it stands; 1 to 64 characters can be set."},
    {"connUnitEventFilter",
     "The least severe entries of its log. The switches have four levels: set to 2 to 4 it is "
     "critical, to 5 or 6 warning, to 7 or 8 info, to 9 or 10 debug, to 1 none.",
     kSeverity},
    {"connUnitNumEvents", "How many entries its log has."},
    {"connUnitMaxEvents", "How many of them connUnitEventTable can show."},
    {"connUnitEventCurrID", "The index of the newest."},
    {"connUnitFabricID", "The WWN of the fabric's principal switch.", "FcGlobalId"},
    {"connUnitNumLinks", "Its rows of connUnitLinkTable."},
    {"connUnitVendorId", "Whose product it is."},
};

constexpr ObjectText kRevisions[] = {
    {"connUnitRevsUnitId", "The unit.", "FcGlobalId"},
    {"connUnitRevsIndex", "The revision's number within the unit.", kIndex},
    {"connUnitRevsRevId", "The version, or <Unknown>."},
    {"connUnitRevsDescription", "What it is the version of."},
};

constexpr ObjectText kSensors[] = {
    {"connUnitSensorUnitId", "The unit.", "FcGlobalId"},
    {"connUnitSensorIndex", "The sensor's number within the unit.", kIndex},
    {"connUnitSensorName", "What the sensor watches."},
    {"connUnitSensorStatus", "What it finds.", kSensorStatus},
    {"connUnitSensorInfo", "More about the sensor."},
    {"connUnitSensorMessage", "What it finds, in the switch's words."},
    {"connUnitSensorType", "What kind of part it watches.", kSensorType},
    {"connUnitSensorCharacteristic", "What it measures there.", kSensorCharacteristic},
};

constexpr ObjectText kPorts[] = {
    {"connUnitPortUnitId", "The unit.", "FcGlobalId"},
    {"connUnitPortIndex", "The port's number within the unit, from 1: the switch's own and 1.",
     kIndex},
    {"connUnitPortType", "What the port works as.", kPortType},
    {"connUnitPortFCClassCap",
     "Classes of service that it can do, class F as 1, class n as bit n of the second octet.",
     "FcBitMap"},
    {"connUnitPortFCClassOp", "Classes that it does, in the same form.", "FcBitMap"},
    {"connUnitPortState", "The state that the port has.", kPortState},
    {"connUnitPortStatus", "The port's health, of which these switches tell nothing.",
     kPortStatusWords},
    {"connUnitPortTransmitterType", "What kind of transceiver it has.", kTransmitter},
    {"connUnitPortModuleType", "How the transceiver is built: other at 10 Gb/s.", kModuleType},
    {"connUnitPortWwn", "The port's WWN and 8 zeros.", "FcGlobalId"},
    {"connUnitPortFCId", "Its Fibre Channel address.", "FcAddressId"},
    {"connUnitPortSn", "The transceiver's serial number."},
    {"connUnitPortRevision", "The transceiver's revision."},
    {"connUnitPortVendor", "The transceiver's maker."},
    {"connUnitPortSpeed",
     "Its speed; of one without a speed of its own the fastest that the unit allows.", nullptr,
     "kilobytes per second"},
    {"connUnitPortControl",
     "What is asked of it. It can be set to offlineConnUnitPort, onlineConnUnitPort and "
     "resetConnUnitPortCounters.",
     kPortControl},
    {"connUnitPortName", "Its symbolic name; 1 to 32 printable characters can be set."},
    {"connUnitPortPhysicalNumber", "The number that the switch itself uses."},
    {"connUnitPortStatObject", "Where its statistics are."},
    {"connUnitPortProtocolCap", "What it can do of the loop protocols.", "FcBitMap"},
    {"connUnitPortProtocolOp", "What it does of them.", "FcBitMap"},
    {"connUnitPortNodeWwn", "The WWN of its unit.", "FcNameId"},
    {"connUnitPortHWState", "What its hardware is found to be.", kHwState},
};

constexpr ObjectText kEvents[] = {
    {"connUnitEventUnitId", "The unit.", "FcGlobalId"},
    {"connUnitEventIndex", "The id of the entry in the unit's log.", kIndex},
    {"connUnitEventId",
     "The event's number, in traps: what follows the first semicolon of the text, else 0."},
    {"connUnitREventTime",
     "When it happened, by the unit's clock: day, month, year, blank, hour, minute, second."},
    {"connUnitSEventTime", "When it happened, by the agent's time."},
    {"connUnitEventSeverity", "How severe it is.", kSeverity},
    {"connUnitEventType", "What kind of event it is.", kEventType},
    {"connUnitEventObject", "In traps: the object that it is about."},
    {"connUnitEventDescr", "The entry as it stands; a trap's text."},
};

constexpr ObjectText kLinks[] = {
    {"connUnitLinkUnitId", "The unit.", "FcGlobalId"},
    {"connUnitLinkIndex", "The unit's own number of the link.", kIndex},
    {"connUnitLinkNodeIdX", "WWN of the unit at this end.", "FcGlobalId"},
    {"connUnitLinkPortNumberX", "The port's number there."},
    {"connUnitLinkPortWwnX", "The port's WWN.", "FcGlobalId"},
    {"connUnitLinkNodeIdY", "WWN of the node at the other end.", "FcGlobalId"},
    {"connUnitLinkPortNumberY", "The port's number there."},
    {"connUnitLinkPortWwnY", "The port's WWN.", "FcGlobalId"},
    {"connUnitLinkAgentAddressY",
     "The address of the agent there, a number of 4 octets for each of the four; zeros when there "
     "is none.",
     "FcAgentAddress"},
    {"connUnitLinkAgentAddressTypeY", "What address it is.", "INTEGER { ipv4(1) }"},
    {"connUnitLinkAgentPortY", "That agent's UDP port."},
    {"connUnitLinkUnitTypeY", "What kind of device is there.", kUnitType},
    {"connUnitLinkConnIdY", "The Fibre Channel address there.", "FcAddressId"},
    {"connUnitLinkCurrIndex", "The index that the unit gave out last."},
};

constexpr ObjectText kZoneMembers[] = {
    {"connUnitZoneIndex", "The zone's number.", kIndex},
    {"connUnitZoneMemberIndex", "The member's number within the zone.", kIndex},
    {"connUnitZoneSetName", "The active zone set."},
    {"connUnitZoneSetNumZones", "How many zones the set has."},
    {"connUnitZoneName", "The zone's name, up to 39 characters."},
    {"connUnitZoneCapabilities",
     "What the switch can do: 80 in hexadecimal for soft, 40 for hard zones.", "FcBitMap"},
    {"connUnitZoneEnforcementState", "What the zone is, in the same form.", "FcBitMap"},
    {"connUnitZoneAttributeBlock", "The zone's attributes.", "FcBitMap"},
    {"connUnitZoneNumMembers", "How many members the zone has."},
    {"connUnitZoneMemberIdType", "What the member is named by.", kMemberType},
    {"connUnitZoneMemberID", "The member, as hexadecimal digits tell it.", "FcGlobalId"},
};

constexpr ObjectText kAliasMembers[] = {
    {"connUnitZoningAliasIndex", "The alias's number.", kIndex},
    {"connUnitZoningAliasMemberIndex", "The member's number within the alias.", kIndex},
    {"connUnitZoningAliasNumAliases", "How many aliases there are."},
    {"connUnitZoningAliasName", "Its name, up to 39 characters."},
    {"connUnitZoningAliasNumMembers", "How many members the alias has."},
    {"connUnitZoningAliasMemberIdType", "What the member is named by.", kMemberType},
    {"connUnitZoningAliasMemberID", "The member, as hexadecimal digits tell it.", "FcGlobalId"},
};

constexpr ObjectText kTrapRegistrations[] = {
    {"trapRegIpAddress", "The destination's address."},
    {"trapRegPort", "Its UDP port.", "INTEGER (0..65535)"},
    {"trapRegFilter", "The least severe events that it gets.", kSeverity},
    {"trapRegRowState",
     "Whether it gets any. rowDestroy removes the destination, the others make one.", kRowState},
};

constexpr ObjectText kPortStatistics[] = {
    {"connUnitPortStatUnitId", "The unit.", "FcGlobalId"},
    {"connUnitPortStatIndex", "The port, as connUnitPortIndex.", kIndex},
    {"connUnitPortStatCountError", "All errors together.", kCounter, "errors"},
    {"connUnitPortStatCountTxObjects", "Frames sent.", kCounter, kFrames},
    {"connUnitPortStatCountRxObjects", "Frames received.", kCounter, kFrames},
    {"connUnitPortStatCountTxElements", "Words sent, times four.", kCounter, "octets"},
    {"connUnitPortStatCountRxElements", "Words received, times four.", kCounter, "octets"},
    {"connUnitPortStatCountBBCreditZero", "Times without a credit left.", kCounter},
    {"connUnitPortStatCountInputBuffersFull", "Times with full buffers.", kCounter},
    {"connUnitPortStatCountFBSYFrames", "F_BSY answers.", kCounter, kFrames},
    {"connUnitPortStatCountPBSYFrames", "P_BSY answers.", kCounter, kFrames},
    {"connUnitPortStatCountFRJTFrames", "F_RJT answers.", kCounter, kFrames},
    {"connUnitPortStatCountPRJTFrames", "P_RJT answers.", kCounter, kFrames},
    {"connUnitPortStatCountClass1RxFrames", "Frames received in class 1.", kCounter, kFrames},
    {"connUnitPortStatCountClass1TxFrames", "Frames sent in class 1.", kCounter, kFrames},
    {"connUnitPortStatCountClass1FBSYFrames", "F_BSY answers in class 1.", kCounter, kFrames},
    {"connUnitPortStatCountClass1PBSYFrames", "P_BSY answers in class 1.", kCounter, kFrames},
    {"connUnitPortStatCountClass1FRJTFrames", "F_RJT answers in class 1.", kCounter, kFrames},
    {"connUnitPortStatCountClass1PRJTFrames", "P_RJT answers in class 1.", kCounter, kFrames},
    {"connUnitPortStatCountClass2RxFrames", "Frames received in class 2.", kCounter, kFrames},
    {"connUnitPortStatCountClass2TxFrames", "Frames sent in class 2.", kCounter, kFrames},
    {"connUnitPortStatCountClass2FBSYFrames", "F_BSY answers in class 2.", kCounter, kFrames},
    {"connUnitPortStatCountClass2PBSYFrames", "P_BSY answers in class 2.", kCounter, kFrames},
    {"connUnitPortStatCountClass2FRJTFrames", "F_RJT answers in class 2.", kCounter, kFrames},
    {"connUnitPortStatCountClass2PRJTFrames", "P_RJT answers in class 2.", kCounter, kFrames},
    {"connUnitPortStatCountClass3RxFrames", "Frames received in class 3.", kCounter, kFrames},
    {"connUnitPortStatCountClass3TxFrames", "Frames sent in class 3.", kCounter, kFrames},
    {"connUnitPortStatCountClass3Discards", "Frames discarded in class 3.", kCounter, kFrames},
    {"connUnitPortStatCountRxMulticastObjects", "Multicasts received.", kCounter, kFrames},
    {"connUnitPortStatCountTxMulticastObjects", "Multicasts sent.", kCounter, kFrames},
    {"connUnitPortStatCountRxBroadcastObjects", "Broadcasts received.", kCounter, kFrames},
    {"connUnitPortStatCountTxBroadcastObjects", "Broadcasts sent.", kCounter, kFrames},
    {"connUnitPortStatCountRxLinkResets", "Link resets received.", kCounter},
    {"connUnitPortStatCountTxLinkResets", "Link resets sent.", kCounter},
    {"connUnitPortStatCountNumberLinkResets", "Both together.", kCounter},
    {"connUnitPortStatCountRxOfflineSequences", "Offline sequences received.", kCounter},
    {"connUnitPortStatCountTxOfflineSequences", "Offline sequences sent.", kCounter},
    {"connUnitPortStatCountNumberOfflineSequences", "Both together.", kCounter},
    {"connUnitPortStatCountLinkFailures", "Failures of the link.", kCounter},
    {"connUnitPortStatCountInvalidCRC", "Frames with a wrong checksum.", kCounter, kFrames},
    {"connUnitPortStatCountInvalidTxWords", "Words that did not decode.", kCounter, "words"},
    {"connUnitPortStatCountPrimitiveSequenceProtocolErrors", "Bad primitive sequences.", kCounter},
    {"connUnitPortStatCountLossofSignal", "Losses of the signal.", kCounter},
    {"connUnitPortStatCountLossofSynchronization", "Losses of sync.", kCounter},
    {"connUnitPortStatCountInvalidOrderedSets", "Bad ordered sets.", kCounter},
    {"connUnitPortStatCountFramesTooLong", "Frames that were too long.", kCounter, kFrames},
    {"connUnitPortStatCountFramesTruncated", "Frames that were too short.", kCounter, kFrames},
    {"connUnitPortStatCountAddressErrors", "Frames for an unknown address.", kCounter, kFrames},
    {"connUnitPortStatCountDelimiterErrors", "Frames with a bad delimiter.", kCounter, kFrames},
    {"connUnitPortStatCountEncodingDisparityErrors", "Bad disparities.", kCounter},
};

constexpr ObjectText kService[] = {
    {"connUnitSnsMaxRows", "How many rows connUnitSnsTable has."},
    {"connUnitPlatformMaxRows", "How many platforms there can be."},
};

constexpr ObjectText kNameServer[] = {
    {"connUnitSnsId", "The unit that the device is attached to.", "FcGlobalId"},
    {"connUnitSnsPortIndex", "The port there, by the switch's own number."},
    {"connUnitSnsPortIdentifier", "The device's Fibre Channel address.", "FcAddressId"},
    {"connUnitSnsPortName", "The WWN of its port.", "FcNameId"},
    {"connUnitSnsNodeName", "The WWN of its node.", "FcNameId"},
    {"connUnitSnsClassOfSvc",
     "Classes of service that it has registered, class n as bit n - 1, from the lowest.",
     "FcBitMap"},
    {"connUnitSnsNodeIPAddress", "The IP address of its node.", "FcBitMap"},
    {"connUnitSnsProcAssoc", "Its process associator.", "FcBitMap"},
    {"connUnitSnsFC4Type",
     "The FC-4 types that it has registered, each digit added as if it were decimal.", "FcBitMap"},
    {"connUnitSnsPortType",
     "What its port is: 1 N, 2 NL, 3 F/NL, 127 Nx, 129 F, 130 FL, 132 E, 133 B, 0 anything else.",
     "FcCode"},
    {"connUnitSnsPortIPAddress", "The IP address of its port.", "FcBitMap"},
    {"connUnitSnsFabricPortName", "The WWN of the port that it is at.", "FcNameId"},
    {"connUnitSnsHardAddress", "The address that it would rather have.", "FcAddressId"},
    {"connUnitSnsSymbolicPortName", "The port's name, in words."},
    {"connUnitSnsSymbolicNodeName", "The node's name, in words."},
};

constexpr ObjectText kPlatforms[] = {
    {"connUnitPlatformIndex", "The platform's number.", kIndex},
    {"connUnitPlatformNodeIndex", "The node's number within the platform.", kIndex},
    {"connUnitPlatformUnitID", "The platform's unit.", "FcGlobalId"},
    {"connUnitPlatformName", "Its name."},
    {"connUnitPlatformType", "What kind of platform it is."},
    {"connUnitPlatformLabel", "Its label."},
    {"connUnitPlatformDescription", "What it is, in words."},
    {"connUnitPlatformLocation", "Where it stands."},
    {"connUnitPlatformManagementUrl", "Where its management is."},
    {"connUnitPlatformNumNodes", "How many nodes it has."},
    {"connUnitPlatformNodeName", "The WWN of the node.", "FcNameId"},
};

constexpr TableText kTables[] = {
    {fcmgmt::kConnSet, kConnSet, nullptr, "connSet"},
    {fcmgmt::kTrapReg, kTrapReg, nullptr, "trapReg"},
    {fcmgmt::kRevision, kRevision, nullptr, "fcmgmt"},
    {fcmgmt::kUnitTable, kUnits, "connUnitTable", "connSet", "INDEX { connUnitId }",
     "a switch of the fabric."},
    {fcmgmt::kRevisionTable, kRevisions, "connUnitRevsTable", "connSet",
     "INDEX { connUnitRevsUnitId, connUnitRevsIndex }", "a version of firmware or hardware."},
    {fcmgmt::kSensorTable, kSensors, "connUnitSensorTable", "connSet",
     "INDEX { connUnitSensorUnitId, connUnitSensorIndex }",
     "a power supply, a fan, a temperature or a voltage."},
    {fcmgmt::kPortTable, kPorts, "connUnitPortTable", "connSet",
     "INDEX { connUnitPortUnitId, connUnitPortIndex }", "a port of a unit."},
    {fcmgmt::kEventTable, kEvents, "connUnitEventTable", "connSet",
     "INDEX { connUnitEventUnitId, connUnitEventIndex }", "one of the newest entries of a log."},
    {fcmgmt::kLinkTable, kLinks, "connUnitLinkTable", "connSet",
     "INDEX { connUnitLinkUnitId, connUnitLinkIndex }", "a link of one of a unit's ports."},
    {fcmgmt::kZoneTable, kZoneMembers, "connUnitZoneTable", "connSet",
     "INDEX { connUnitZoneIndex, connUnitZoneMemberIndex }",
     "a member of one of the active zone set's zones."},
    {fcmgmt::kAliasTable, kAliasMembers, "connUnitZoningAliasTable", "connSet",
     "INDEX { connUnitZoningAliasIndex, connUnitZoningAliasMemberIndex }",
     "a member of one of the zoning aliases."},
    {fcmgmt::kTrapRegistrationTable, kTrapRegistrations, "trapRegTable", "trapReg",
     "INDEX { trapRegIpAddress, trapRegPort }", "a destination of traps."},
    {fcmgmt::kPortStatisticsTable, kPortStatistics, "connUnitPortStatTable", "statSet",
     "INDEX { connUnitPortStatUnitId, connUnitPortStatIndex }", "what a port has counted."},
    {fcmgmt::kService, kService, nullptr, "connUnitServiceScalars"},
    {fcmgmt::kNameServerTable, kNameServer, "connUnitSnsTable", "connUnitServiceTables",
     "INDEX { connUnitSnsId, connUnitSnsPortName, connUnitSnsPortIdentifier }",
     "an entry of the fabric's name server."},
    {fcmgmt::kPlatformTable, kPlatforms, "connUnitPlatformTable", "connUnitServiceTables",
     "INDEX { connUnitPlatformIndex, connUnitPlatformNodeIndex }",
     "a node of a platform. These switches know of none."},
};

constexpr const char* kHead = R"(IMPORTS
    experimental, IpAddress, TimeTicks
        FROM RFC1155-SMI
    OBJECT-TYPE
        FROM RFC-1212
    TRAP-TYPE
        FROM RFC-1215
    TEXTUAL-CONVENTION, DisplayString
        FROM SNMPv2-TC;

fcmgmt              OBJECT IDENTIFIER ::= { experimental 94 }

fcmgmtTraps         OBJECT IDENTIFIER ::= { fcmgmt 0 }
connSet             OBJECT IDENTIFIER ::= { fcmgmt 1 }
trapReg             OBJECT IDENTIFIER ::= { fcmgmt 2 }
statSet             OBJECT IDENTIFIER ::= { fcmgmt 4 }
connUnitServiceSet  OBJECT IDENTIFIER ::= { fcmgmt 5 }

connUnitServiceScalars  OBJECT IDENTIFIER ::= { connUnitServiceSet 1 }
connUnitServiceTables   OBJECT IDENTIFIER ::= { connUnitServiceSet 2 }

FcNameId ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      mandatory
    DESCRIPTION "A WWN."
    SYNTAX      OCTET STRING (SIZE (8))

FcGlobalId ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      mandatory
    DESCRIPTION "A WWN and 8 zeros, or another id of that length."
    SYNTAX      OCTET STRING (SIZE (16))

FcAddressId ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      mandatory
    DESCRIPTION "A Fibre Channel address: domain, area, port."
    SYNTAX      OCTET STRING (SIZE (3))

FcAgentAddress ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "4d."
    STATUS      mandatory
    DESCRIPTION "An IPv4 address, each of its numbers in 4 octets."
    SYNTAX      OCTET STRING (SIZE (16))

FcCounter ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "8d"
    STATUS      mandatory
    DESCRIPTION
        "A counter of 64 bits, the most significant octet first. Where
        the switch does not count it only the first bit is set, which
        may show as -9223372036854775808."
    SYNTAX      OCTET STRING (SIZE (8))

FcBitMap ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      mandatory
    DESCRIPTION "Bits; the object tells which is which."
    SYNTAX      OCTET STRING

FcCode ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1d"
    STATUS      mandatory
    DESCRIPTION "A number of one octet."
    SYNTAX      OCTET STRING (SIZE (1))
)";

constexpr const char* kTail = R"(
--
-- Traps
--

connUnitStatusChange TRAP-TYPE
    ENTERPRISE  fcmgmt
    VARIABLES   { connUnitStatus, connUnitState }
    DESCRIPTION
        "The status or the state of a unit has changed, or the unit
        is being reset."
    ::= 1

connUnitDeletedTrap TRAP-TYPE
    ENTERPRISE  fcmgmt
    VARIABLES   { connUnitId }
    DESCRIPTION
        "A unit has left the fabric."
    ::= 3

connUnitEventTrap TRAP-TYPE
    ENTERPRISE  fcmgmt
    VARIABLES   { connUnitEventId, connUnitEventType,
                  connUnitEventObject, connUnitEventDescr }
    DESCRIPTION
        "Something has happened, told in words. The index 1 of the
        event stands for no row of connUnitEventTable."
    ::= 4

connUnitSensorStatusChange TRAP-TYPE
    ENTERPRISE  fcmgmt
    VARIABLES   { connUnitSensorStatus }
    DESCRIPTION
        "The status of a sensor has changed."
    ::= 5

connUnitPortStatusChange TRAP-TYPE
    ENTERPRISE  fcmgmt
    VARIABLES   { connUnitPortStatus, connUnitPortState }
    DESCRIPTION
        "The state of a port has changed."
    ::= 6
)";

}  // namespace

constinit const ModuleText kFcmgmtText{"FCMGMT-MIB", false, kHead, kTables, kTail};

}  // namespace snmpmain
