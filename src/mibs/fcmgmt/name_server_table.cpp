#include "src/snmptables/name_server.h"

#include "src/mibs/conversions.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Word kPortTypeWords[] = {{"N", 1},   {"NL", 2},   {"FNL", 3}, {"NX", 127},
                                   {"F", 129}, {"FL", 130}, {"E", 132}, {"B", 133}};
constexpr WordTable kPortTypes{kPortTypeWords, 0};

// Places among the instance's texts; commands name an entry by its port id.
constexpr std::size_t kPortIdPlace = 0;
constexpr std::size_t kPortWwnPlace = 1;
constexpr std::size_t kSwitchWwnPlace = 2;

// The local switch answers for the name server of every switch, but a port's number is known only
// to the switch that the entry's device is attached to.
int ReadPortNumber(const Column& column, const Instance& instance, MibValue& value) {
    Instance attached = instance;
    attached.domain = static_cast<std::uint16_t>(instance.numbers[0]);
    return QueryNumber(column, attached, value);
}

int ReadFc4Type(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetOctets(value, ReadFc4Types(value.text.data()));
}

constexpr Column kNameServer[] = {
    {1, ASN_OCTET_STR, "connUnitSnsId", IndexOctets(kSwitchWwnPlace, kUnitIdSize)},
    {2, ASN_INTEGER, "connUnitSnsPortIndex",
     Computed(ReadPortNumber, "Get.Oper.NameServer.Entry.%s.PortNumber")},
    {3, ASN_OCTET_STR, "connUnitSnsPortIdentifier", IndexOctets(kPortIdPlace, kPortIdSize)},
    {4, ASN_OCTET_STR, "connUnitSnsPortName", IndexOctets(kPortWwnPlace, kWwnSize)},
    {5, ASN_OCTET_STR, "connUnitSnsNodeName",
     HexOctetsOf("Get.Oper.NameServerAll.%d.Entry.%s.NodeWwn", kWwnSize)},
    {6, ASN_OCTET_STR, "connUnitSnsClassOfSvc",
     Computed(QueryClasses, "Get.Oper.NameServerAll.%d.Entry.%s.COSList")},
    {7, ASN_OCTET_STR, "connUnitSnsNodeIPAddress", NeverAnswers()},
    {8, ASN_OCTET_STR, "connUnitSnsProcAssoc", NeverAnswers()},
    {9, ASN_OCTET_STR, "connUnitSnsFC4Type",
     Computed(ReadFc4Type, "Get.Oper.NameServerAll.%d.Entry.%s.FC4TypeBitMap")},
    {10, ASN_OCTET_STR, "connUnitSnsPortType",
     WholeWordOf("Get.Oper.NameServerAll.%d.Entry.%s.PortType", kPortTypes)},
    {11, ASN_OCTET_STR, "connUnitSnsPortIPAddress", NeverAnswers()},
    {12, ASN_OCTET_STR, "connUnitSnsFabricPortName",
     HexOctetsOf("Get.Oper.NameServerAll.%d.Entry.%s.FabricPortName", kWwnSize)},
    {13, ASN_OCTET_STR, "connUnitSnsHardAddress", NeverAnswers()},
    {14, ASN_OCTET_STR, "connUnitSnsSymbolicPortName",
     TextOf("Get.Oper.NameServerAll.%d.Entry.%s.SymPortName")},
    {15, ASN_OCTET_STR, "connUnitSnsSymbolicNodeName",
     TextOf("Get.Oper.NameServerAll.%d.Entry.%s.SymNodeName")},
};

int CompleteEntry(const NameServerMatch& entry, Instance& instance) {
    instance.numbers[0] = entry.domainId;
    instance.texts = {entry.portId, entry.portWwn, entry.switchWwn};
    return 0;
}

int ResolveEntry(const HandlerCall& call, Instance& instance) {
    ReadNameServerIfStale();
    if (*call.length != call.vp->namelen + kNameServerIndexLength) {
        return -1;
    }
    const std::span name(call.name, *call.length);
    NameServerMatch entry;
    if (FindNameServerEntry(name.last<kNameServerIndexLength>(), entry) != 0) {
        return -1;
    }
    return CompleteEntry(entry, instance);
}

int NextEntry(const HandlerCall& call, Instance& instance) {
    ReadNameServerIfStale();
    NameServerMatch entry;
    if (GetNextNameServerEntry(call.vp, call.name, call.length, entry) != 0) {
        return -1;
    }
    return CompleteEntry(entry, instance);
}

}  // namespace

constinit const ServedTable kNameServerTable =
    Table(kModule, {5, 2, 1, 1}, 194, kNameServer, {ResolveEntry, NextEntry});

}  // namespace snmpmain::fcmgmt
