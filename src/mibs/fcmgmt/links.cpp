#include <arpa/inet.h>

#include <cstring>

#include "src/mibs/conversions.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/row_numbers.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Word kUnitTypeWords[] = {{"Unknown", 1}, {"Other", 2},     {"Hub", 3}, {"Switch", 4},
                                   {"Gateway", 5}, {"Converter", 6}, {"HBA", 7}};
constexpr WordTable kUnitTypes{kUnitTypeWords, 1};

constexpr std::uint32_t kIpv4 = 1;

// An address comes as 8 hexadecimal digits, or dotted; a link without an agent at its other end
// answers a plain "0", which stands for no address rather than for a bad one.
int ReadAgentAddress(const Column& column, const Instance& instance, MibValue& value) {
    constexpr std::size_t kAddressDigits = 8;
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    char* text = value.text.data();
    if (std::strchr(text, '.') == nullptr && std::strlen(text) == kAddressDigits) {
        ParseReturnValue(text, value.text.size(), kIpAddress, nullptr);
    }
    in_addr address;
    if (std::strchr(text, '.') != nullptr && ::inet_aton(text, &address) == 0) {
        return -1;
    }
    return SetOctets(value, WidenAddress(text));
}

constexpr Column kLinks[] = {
    {1, ASN_OCTET_STR, "connUnitLinkUnitId", UnitId()},
    {2, ASN_INTEGER, "connUnitLinkIndex", LastIndex()},
    {3, ASN_OCTET_STR, "connUnitLinkNodeIdX",
     HexOctetsOf("Get.Oper.Link.Entry.%i.LocalNodeWwn", kUnitIdSize)},
    {4, ASN_INTEGER, "connUnitLinkPortNumberX", NumberOf("Get.Oper.Link.Entry.%i.LocalPortNumber")},
    {5, ASN_OCTET_STR, "connUnitLinkPortWwnX",
     HexOctetsOf("Get.Oper.Link.Entry.%i.LocalPortWwn", kUnitIdSize)},
    {6, ASN_OCTET_STR, "connUnitLinkNodeIdY",
     HexOctetsOf("Get.Oper.Link.Entry.%i.RemoteNodeWwn", kUnitIdSize)},
    {7, ASN_INTEGER, "connUnitLinkPortNumberY",
     NumberOf("Get.Oper.Link.Entry.%i.RemotePortNumber")},
    {8, ASN_OCTET_STR, "connUnitLinkPortWwnY",
     HexOctetsOf("Get.Oper.Link.Entry.%i.RemotePortWwn", kUnitIdSize)},
    {9, ASN_OCTET_STR, "connUnitLinkAgentAddressY",
     Computed(ReadAgentAddress, "Get.Oper.Link.Entry.%i.RemoteAgentAddr")},
    {10, ASN_INTEGER, "connUnitLinkAgentAddressTypeY", Constant(kIpv4)},
    {11, ASN_INTEGER, "connUnitLinkAgentPortY", NumberOf("Get.Oper.Link.Entry.%i.RemoteAgentPort")},
    {12, ASN_INTEGER, "connUnitLinkUnitTypeY",
     WholeWordOf("Get.Oper.Link.Entry.%i.RemoteUnitType", kUnitTypes)},
    {13, ASN_OCTET_STR, "connUnitLinkConnIdY",
     HexOctetsOf("Get.Oper.Link.Entry.%i.RemoteConnID", kPortIdSize)},
    {14, ASN_INTEGER, "connUnitLinkCurrIndex", NumberOf("Get.Oper.Link.LastLinkEntry")},
};

int CompleteLink(const HandlerCall& call, Instance& instance) {
    if (CompleteUnit(call, instance) != 0) {
        return -1;
    }
    instance.numbers[0] = instance.lastIndex;
    return 0;
}

// The unit is not asked for the link itself: its answer to the column tells.
int ResolveLink(const HandlerCall& call, Instance& instance) {
    return ResolveUnitIndex(call, instance) == 0 ? CompleteLink(call, instance) : -1;
}

int NextLink(const HandlerCall& call, Instance& instance) {
    if (GetNextUnitLink(call.vp, call.name, call.length, instance.unit, instance.row) != 0) {
        return -1;
    }
    return CompleteLink(call, instance);
}

}  // namespace

constinit const ServedTable kLinkTable =
    Table(kModule, {1, 12, 1}, 93, kLinks, {ResolveLink, NextLink});

}  // namespace snmpmain::fcmgmt
