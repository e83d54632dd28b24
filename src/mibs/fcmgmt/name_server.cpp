#include "src/snmptables/name_server.h"

#include "src/mibs/conversions.h"
#include "src/mibs/fcmgmt/tables.h"
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
    {1, 194, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsId",
     IndexOctets(kSwitchWwnPlace, kUnitIdSize)},
    {2, 195, ASN_INTEGER, Access::kReadOnly, "connUnitSnsPortIndex",
     Computed(ReadPortNumber, "Get.Oper.NameServer.Entry.%s.PortNumber")},
    {3, 196, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortIdentifier",
     IndexOctets(kPortIdPlace, kPortIdSize)},
    {4, 197, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortName",
     IndexOctets(kPortWwnPlace, kWwnSize)},
    {5, 198, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsNodeName",
     HexOctetsOf("Get.Oper.NameServerAll.%d.Entry.%s.NodeWwn", kWwnSize)},
    {6, 199, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsClassOfSvc",
     Computed(QueryClasses, "Get.Oper.NameServerAll.%d.Entry.%s.COSList")},
    {7, 200, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsNodeIPAddress", NeverAnswers()},
    {8, 201, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsProcAssoc", NeverAnswers()},
    {9, 202, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsFC4Type",
     Computed(ReadFc4Type, "Get.Oper.NameServerAll.%d.Entry.%s.FC4TypeBitMap")},
    {10, 203, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortType",
     WholeWordOf("Get.Oper.NameServerAll.%d.Entry.%s.PortType", kPortTypes)},
    {11, 204, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsPortIPAddress", NeverAnswers()},
    {12, 205, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsFabricPortName",
     HexOctetsOf("Get.Oper.NameServerAll.%d.Entry.%s.FabricPortName", kWwnSize)},
    {13, 206, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsHardAddress", NeverAnswers()},
    {14, 207, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsSymbolicPortName",
     TextOf("Get.Oper.NameServerAll.%d.Entry.%s.SymPortName")},
    {15, 208, ASN_OCTET_STR, Access::kReadOnly, "connUnitSnsSymbolicNodeName",
     TextOf("Get.Oper.NameServerAll.%d.Entry.%s.SymNodeName")},
};

int CompleteEntry(const NameServerMatch& entry, Instance& instance) {
    instance.numbers[0] = entry.domainId;
    instance.texts = {entry.portId, entry.portWwn, entry.switchWwn};
    return 0;
}

int ResolveEntry(const HandlerCall& call, Instance& instance) {
    RefreshNameServerTable();
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
    RefreshNameServerTable();
    NameServerMatch entry;
    if (GetNextNameServerEntry(call.vp, call.name, call.length, entry) != 0) {
        return -1;
    }
    return CompleteEntry(entry, instance);
}

constexpr std::span<const Column> kNameServerColumns = kNameServer;

}  // namespace

constinit const ServedTable kNameServerTable{
    "fcmgmt", {&kNameServerColumns, 1}, {ResolveEntry, NextEntry}};

}  // namespace snmpmain::fcmgmt
