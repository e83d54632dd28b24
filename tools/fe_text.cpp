// FIBRE-CHANNEL-FE-MIB's part; the names and the words for numbers are those of RFC 2837.
#include "src/mibs/femgmt/femgmt.h"
#include "tools/mib_text.h"

namespace snmpmain {
namespace {

constexpr const char* kModuleStatus = "INTEGER { online(1), offline(2), testing(3), faulty(4) }";
constexpr const char* kPhysStatus = "INTEGER { online(1), offline(2), testing(3), linkFailure(4) }";

constexpr ObjectText kModuleIndex{"fcFeModuleIndex",
                                  "The switch's place in the order of the WWNs. It changes when "
                                  "switches with lower WWNs join or leave.",
                                  "Integer32 (1..256)"};
constexpr ObjectText kPortIndex{
    "fcFxPortIndex", "The port's number, from 1: the switch's own and 1.", "Integer32 (1..65536)"};
constexpr ObjectText kLoginIndex{"fcFxPortNxLoginIndex", "The number of the login at the port.",
                                 "Integer32 (1..65536)"};

constexpr ObjectText kElement[] = {
    {"fcFeFabricName", "The WWN of the fabric's principal switch.", "FcNameId"},
    {"fcFeElementName", "The fabric element's name.", "FcNameId"},
    {"fcFeModuleCapacity", "How many modules there are.", "Unsigned32"},
};

constexpr ObjectText kModules[] = {
    {"fcFeModuleDescr", "What the switch is, in words."},
    {"fcFeModuleObjectID", "The same, as its vendor numbers it."},
    {"fcFeModuleOperStatus", "The state that the switch has.", kModuleStatus},
    {"fcFeModuleLastChange", "When that changed last.", "TimeStamp"},
    {"fcFeModuleFxPortCapacity", "How many ports it has.", "Unsigned32"},
    {"fcFeModuleName", "The switch's name.", "FcNameId"},
};

constexpr ObjectText kPorts[] = {
    {"fcFxPortName", "The port's WWN.", "FcNameId"},
    {"fcFxPortFcphVersionHigh", "The newest version of FC-PH it knows.", "FcphVersion"},
    {"fcFxPortFcphVersionLow", "The oldest one.", "FcphVersion"},
    {"fcFxPortBbCredit", "Frames that it can take before it answers.", "FcBbCredit", "buffers"},
    {"fcFxPortRxBufSize", "The largest data field it can take.", "FcRxDataFieldSize", "octets"},
    {"fcFxPortRatov", "R_A_TOV, by which resources are kept.", "Milliseconds", "milliseconds"},
    {"fcFxPortEdtov", "E_D_TOV, by which errors are noticed.", "Milliseconds", "milliseconds"},
    {"fcFxPortCosSupported", "Classes of service: class F as 1, class n as bit n from the lowest.",
     "FcCosCap"},
    {"fcFxPortIntermixSupported", "Whether it can intermix.", "TruthValue"},
    {"fcFxPortStackedConnMode", "How it stacks connections.", "FcStackedConnMode"},
    {"fcFxPortClass2SeqDeliv", "Whether class 2 frames stay in order.", "TruthValue"},
    {"fcFxPortClass3SeqDeliv", "Whether class 3 frames stay in order.", "TruthValue"},
    {"fcFxPortHoldTime", "How long it keeps a frame.", "Milliseconds", "milliseconds"},
};

constexpr ObjectText kPortStatus[] = {
    {"fcFxPortID", "The port's Fibre Channel address.", "FcAddressId"},
    {"fcFxPortBbCreditAvailable", "Credits that it has left.", nullptr, "buffers"},
    {"fcFxPortOperMode", "What it works as.", "INTEGER { unknown(1), fPort(2), flPort(3) }"},
    {"fcFxPortAdminMode", "What it is wanted to work as. A change is refused.",
     "INTEGER { unknown(1), fPort(2), flPort(3) }"},
};

constexpr ObjectText kPortPhys[] = {
    {"fcFxPortPhysAdminStatus", "The state that the port is configured to have.",
     "INTEGER { online(1), offline(2), testing(3) }"},
    {"fcFxPortPhysOperStatus", "The state that it has.", kPhysStatus},
    {"fcFxPortPhysLastChange", "When that changed last.", "TimeStamp"},
    {"fcFxPortPhysRttov",
     "R_T_TOV, by which a receiver notices the loss of sync. It is the whole switch's; its range "
     "is the switch's too.",
     "Milliseconds", "milliseconds"},
};

constexpr ObjectText kLogins[] = {
    {"fcFxPortFcphVersionAgreed", "The version of FC-PH agreed on.", "FcphVersion"},
    {"fcFxPortNxPortBbCredit", "Frames that the device can take.", "FcBbCredit", "buffers"},
    {"fcFxPortNxPortRxDataFieldSize", "The largest data field that the device can take.",
     "FcRxDataFieldSize", "octets"},
    {"fcFxPortCosSuppAgreed",
     "Classes of service that the device has registered, class n as bit n - 1 from the lowest.",
     "FcCosCap"},
    {"fcFxPortIntermixSuppAgreed", "Whether both intermix.", "TruthValue"},
    {"fcFxPortStackedConnModeAgreed", "How they stack connections.", "FcStackedConnMode"},
    {"fcFxPortClass2SeqDelivAgreed", "Whether class 2 stays in order.", "TruthValue"},
    {"fcFxPortClass3SeqDelivAgreed", "Whether class 3 stays in order.", "TruthValue"},
    {"fcFxPortNxPortName", "The WWN of the device's port.", "FcNameId"},
    {"fcFxPortConnectedNxPort", "The device it is connected with.", "FcAddressId"},
    {"fcFxPortBbCreditModel", "The credits' model.", "FcBbCreditModel"},
};

constexpr ObjectText kErrors[] = {
    {"fcFxPortLinkFailures", "Failures of the link."},
    {"fcFxPortSyncLosses", "Losses of sync."},
    {"fcFxPortSigLosses", "Losses of the signal."},
    {"fcFxPortPrimSeqProtoErrors", "Primitive sequences out of place."},
    {"fcFxPortInvalidTxWords", "Words that did not decode.", nullptr, "words"},
    {"fcFxPortInvalidCrcs", "Frames with a wrong checksum.", nullptr, "frames"},
    {"fcFxPortDelimiterErrors", "Frames with a bad delimiter.", nullptr, "frames"},
    {"fcFxPortAddressIdErrors", "Frames for an unknown address.", nullptr, "frames"},
    {"fcFxPortLinkResetIns", "Link resets received."},
    {"fcFxPortLinkResetOuts", "Link resets sent."},
    {"fcFxPortOlsIns", "Offline sequences received."},
    {"fcFxPortOlsOuts", "Offline sequences sent."},
};

constexpr ObjectText kClass1[] = {
    {"fcFxPortC1InFrames", "Frames received in class 1.", nullptr, "frames"},
    {"fcFxPortC1OutFrames", "Frames sent in class 1.", nullptr, "frames"},
    {"fcFxPortC1InOctets", "Octets received in class 1.", nullptr, "octets"},
    {"fcFxPortC1OutOctets", "Octets sent in class 1.", nullptr, "octets"},
    {"fcFxPortC1Discards", "Frames discarded in class 1.", nullptr, "frames"},
    {"fcFxPortC1FbsyFrames", "F_BSY answers in class 1.", nullptr, "frames"},
    {"fcFxPortC1FrjtFrames", "F_RJT answers in class 1.", nullptr, "frames"},
    {"fcFxPortC1InConnections", "Connections that the device made."},
    {"fcFxPortC1OutConnections", "Connections made to the device."},
    {"fcFxPortC1ConnTime", "How long there were connections.", "Milliseconds", "milliseconds"},
};

constexpr ObjectText kClass2[] = {
    {"fcFxPortC2InFrames", "Frames received in class 2.", nullptr, "frames"},
    {"fcFxPortC2OutFrames", "Frames sent in class 2.", nullptr, "frames"},
    {"fcFxPortC2InOctets", "Words of four octets received in class 2.", nullptr, "words"},
    {"fcFxPortC2OutOctets", "Words of four octets sent in class 2.", nullptr, "words"},
    {"fcFxPortC2Discards", "Frames discarded in class 2.", nullptr, "frames"},
    {"fcFxPortC2FbsyFrames", "F_BSY answers in class 2.", nullptr, "frames"},
    {"fcFxPortC2FrjtFrames", "F_RJT answers in class 2.", nullptr, "frames"},
};

constexpr ObjectText kClass3[] = {
    {"fcFxPortC3InFrames", "Frames received in class 3.", nullptr, "frames"},
    {"fcFxPortC3OutFrames", "Frames sent in class 3.", nullptr, "frames"},
    {"fcFxPortC3InOctets", "Words of four octets received in class 3.", nullptr, "words"},
    {"fcFxPortC3OutOctets", "Words of four octets sent in class 3.", nullptr, "words"},
    {"fcFxPortC3Discards", "Frames discarded in class 3.", nullptr, "frames"},
};

constexpr ObjectText kCapabilities[] = {
    {"fcFxPortCapFcphVersionHigh", "The newest version of FC-PH.", "FcphVersion"},
    {"fcFxPortCapFcphVersionLow", "The oldest one.", "FcphVersion"},
    {"fcFxPortCapBbCreditMax", "The most that can be configured.", "FcBbCredit", "buffers"},
    {"fcFxPortCapBbCreditMin", "The least that can be configured.", "FcBbCredit", "buffers"},
    {"fcFxPortCapRxDataFieldSizeMax", "The largest data field.", "FcRxDataFieldSize", "octets"},
    {"fcFxPortCapRxDataFieldSizeMin", "The smallest one.", "FcRxDataFieldSize", "octets"},
    {"fcFxPortCapCos", "Classes of service, as fcFxPortCosSupported.", "FcCosCap"},
    {"fcFxPortCapIntermix", "Whether it can intermix.", "TruthValue"},
    {"fcFxPortCapStackedConnMode", "How it can stack connections.", "FcStackedConnMode"},
    {"fcFxPortCapClass2SeqDeliv", "Whether class 2 can stay in order.", "TruthValue"},
    {"fcFxPortCapClass3SeqDeliv", "Whether class 3 can stay in order.", "TruthValue"},
    {"fcFxPortCapHoldTimeMax", "The longest hold time.", "Milliseconds", "milliseconds"},
    {"fcFxPortCapHoldTimeMin", "The shortest one.", "Milliseconds", "milliseconds"},
};

constexpr const char* kOfPort = "AUGMENTS { fcFxPortEntry }";

constexpr TableText kTables[] = {
    {femgmt::kScalars, kElement, nullptr, "fcFeConfig"},
    {femgmt::kModuleTable, kModules, "fcFeModuleTable", "fcFeConfig", "INDEX { fcFeModuleIndex }",
     "a module: a switch of the fabric.", &kModuleIndex},
    {femgmt::kPortTable, kPorts, "fcFxPortTable", "fcFeConfig",
     "INDEX { fcFeModuleIndex, fcFxPortIndex }", "the service parameters of a port.", &kPortIndex},
    {femgmt::kPortStatusTable, kPortStatus, "fcFxPortStatusTable", "fcFeStatus", kOfPort,
     "what a port works as."},
    {femgmt::kPortPhysTable, kPortPhys, "fcFxPortPhysTable", "fcFeStatus", kOfPort,
     "a port's physical side."},
    {femgmt::kLoginTable, kLogins, "fcFxLoginTable", "fcFeStatus",
     "INDEX { fcFeModuleIndex, fcFxPortIndex, fcFxPortNxLoginIndex }",
     "a device that has logged in at an F port.", &kLoginIndex},
    {femgmt::kErrorTable, kErrors, "fcFxPortErrorTable", "fcFeError", kOfPort, "a port's errors."},
    {femgmt::kClass1Table, kClass1, "fcFxPortC1AccountingTable", "fcFeAccounting", kOfPort,
     "a port's traffic in class 1, which these switches do not do."},
    {femgmt::kClass2Table, kClass2, "fcFxPortC2AccountingTable", "fcFeAccounting", kOfPort,
     "a port's traffic in class 2."},
    {femgmt::kClass3Table, kClass3, "fcFxPortC3AccountingTable", "fcFeAccounting", kOfPort,
     "a port's traffic in class 3."},
    {femgmt::kCapabilityTable, kCapabilities, "fcFxPortCapTable", "fcFeCapabilities", kOfPort,
     "what a port could do."},
};

constexpr const char* kHead = R"(IMPORTS
    MODULE-IDENTITY, OBJECT-TYPE, Integer32, Unsigned32, Counter32,
    Gauge32, mib-2
        FROM SNMPv2-SMI
    TEXTUAL-CONVENTION, DisplayString, TimeStamp, TruthValue
        FROM SNMPv2-TC
    MODULE-COMPLIANCE, OBJECT-GROUP
        FROM SNMPv2-CONF;

fcFeMIB MODULE-IDENTITY
    LAST-UPDATED "202611220000Z"
    ORGANIZATION "Norbex"
    CONTACT-INFO
        "The supplier of the switch."
    DESCRIPTION
        "The Fibre Channel fabric element, as RFC 2837 defines it
        and the switch's SNMP agent serves it. A module is a switch
        of the fabric."
    REVISION "202611220000Z"
    DESCRIPTION
        "First version."
    ::= { mib-2 75 }

fcFeMIBObjects      OBJECT IDENTIFIER ::= { fcFeMIB 1 }
fcFeConfig          OBJECT IDENTIFIER ::= { fcFeMIBObjects 1 }
fcFeStatus          OBJECT IDENTIFIER ::= { fcFeMIBObjects 2 }
fcFeError           OBJECT IDENTIFIER ::= { fcFeMIBObjects 3 }
fcFeAccounting      OBJECT IDENTIFIER ::= { fcFeMIBObjects 4 }
fcFeCapabilities    OBJECT IDENTIFIER ::= { fcFeMIBObjects 5 }
fcFeMIBConformance  OBJECT IDENTIFIER ::= { fcFeMIB 2 }
fcFeMIBCompliances  OBJECT IDENTIFIER ::= { fcFeMIBConformance 1 }
fcFeMIBGroups       OBJECT IDENTIFIER ::= { fcFeMIBConformance 2 }

FcNameId ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      current
    DESCRIPTION "A WWN."
    SYNTAX      OCTET STRING (SIZE (8))

FcAddressId ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      current
    DESCRIPTION "A Fibre Channel address: domain, area, port."
    SYNTAX      OCTET STRING (SIZE (3))

FcphVersion ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "d"
    STATUS      current
    DESCRIPTION "A version of FC-PH."
    SYNTAX      Integer32 (0..255)

FcBbCredit ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "d"
    STATUS      current
    DESCRIPTION "Buffer-to-buffer credit."
    SYNTAX      Integer32 (0..32767)

FcBbCreditModel ::= TEXTUAL-CONVENTION
    STATUS      current
    DESCRIPTION "How buffer-to-buffer credit is counted."
    SYNTAX      INTEGER { regular(1), alternate(2) }

FcRxDataFieldSize ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "d"
    STATUS      current
    DESCRIPTION "The size of a data field."
    SYNTAX      Integer32 (128..2112)

FcStackedConnMode ::= TEXTUAL-CONVENTION
    STATUS      current
    DESCRIPTION "How connections of class 1 are stacked."
    SYNTAX      INTEGER { none(1), transparent(2), lockedDown(3) }

FcCosCap ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "1x"
    STATUS      current
    DESCRIPTION
        "Classes of service, as the bits of an octet. The object
        tells which bit is which."
    SYNTAX      OCTET STRING (SIZE (1))

Milliseconds ::= TEXTUAL-CONVENTION
    DISPLAY-HINT "d"
    STATUS      current
    DESCRIPTION "A time."
    SYNTAX      Unsigned32
)";

// The groups of the objects below each node are made with them.
constexpr const char* kTail = R"(
fcFeMIBMinimumCompliance MODULE-COMPLIANCE
    STATUS      current
    DESCRIPTION
        "What the switch's SNMP agent serves."
    MODULE
        MANDATORY-GROUPS { fcFeConfigGroup, fcFeStatusGroup,
                           fcFeErrorGroup, fcFeAccountingGroup,
                           fcFeCapabilitiesGroup }
    ::= { fcFeMIBCompliances 1 }
)";

}  // namespace

constinit const ModuleText kFeText{"FIBRE-CHANNEL-FE-MIB", true, kHead, kTables, kTail};

}  // namespace snmpmain
