// The members of the active zone set's zones, and those of the zoning aliases.
#include "src/snmptables/zoning.h"

#include "src/base/trace_log.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Word kMemberWords[] = {{"PortID", 3}, {"WWN", 1}, {"DomainPort", 2}};
constexpr WordTable kMemberTypes{kMemberWords, 255};

constexpr Word kZoneTypeWords[] = {{"Soft", 0x80}};
constexpr WordTable kZoneTypes{kZoneTypeWords, 0x40};

constexpr std::size_t kNamePlace = 0;  // among the instance's texts
constexpr std::size_t kIdPlace = 1;

int ReadGroupNumber(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, instance.row);
}

// Registered, but no value is defined for it: logged as an object of no table.
int ReportUnknown(const Column&, const Instance&, MibValue&) {
    TraceLog(kSevere, "%s %d:Unknown oid sent to fcmgmt", "fcmgmt", __LINE__);
    return -1;
}

constexpr Column kZoneMembers[] = {
    {1, ASN_INTEGER, nullptr, Derived(ReadGroupNumber, "index")},
    {2, ASN_INTEGER, nullptr, LastIndex()},
    {3, ASN_OCTET_STR, nullptr, ShortTextOf("Get.Oper.Zoning.ActiveZoneSet")},
    {4, ASN_INTEGER, nullptr, NumberOf("Get.Oper.Zoning.ActiveZoneSet.ZoneEntries")},
    {5, ASN_OCTET_STR, nullptr, IndexText(kNamePlace)},
    {6, ASN_OCTET_STR, nullptr, ConstantOctets("\xC0")},
    {7, ASN_OCTET_STR, nullptr, WordOf("Get.Oper.Zoning.Zone.%s.ZoneType", kZoneTypes)},
    {8, ASN_OCTET_STR, nullptr, Derived(ReportUnknown, "never answers, logged")},
    {9, ASN_INTEGER, nullptr, NumberOf("Get.Oper.Zoning.ActiveZone.%s.MemberEntries")},
    {10, ASN_INTEGER, nullptr,
     WordOf("Get.Oper.Zoning.ActiveZone.%s.ZoneMember.%s.Type", kMemberTypes)},
    {11, ASN_OCTET_STR, nullptr, IndexOctets(kIdPlace, kUnitIdSize)},
};

constexpr Column kAliasMembers[] = {
    {1, ASN_INTEGER, nullptr, Derived(ReadGroupNumber, "index")},
    {2, ASN_INTEGER, nullptr, LastIndex()},
    {3, ASN_INTEGER, nullptr, NumberOf("Get.Oper.Zoning.AliasEntries")},
    {4, ASN_OCTET_STR, nullptr, IndexText(kNamePlace)},
    {5, ASN_INTEGER, nullptr, NumberOf("Get.Oper.Zoning.Alias.%s.MemberEntries")},
    {6, ASN_INTEGER, nullptr, WordOf("Get.Oper.Zoning.Alias.%s.ZoneMember.%s.Type", kMemberTypes)},
    {7, ASN_OCTET_STR, nullptr, IndexOctets(kIdPlace, kUnitIdSize)},
};

// The local switch knows the zoning of the whole fabric.
int CompleteMember(const ZoneMemberNode* member, Instance& instance) {
    if (member == nullptr) {
        return -1;
    }
    instance.row = member->zone;
    instance.lastIndex = member->member;
    instance.texts = {member->zoneName, member->memberId};
    return 0;
}

// How the rows of one of the tables are found.
struct MemberTable {
    void (*refresh)();
    const ZoneMemberNode* (*exact)(std::uint32_t group, std::uint32_t member);
    int (*next)(const variable* vp, oid* name, std::size_t* length, const ZoneMemberNode*& member);
};
constexpr MemberTable kZones{ReadZonesIfStale, GetZoneMember, GetNextZoneMember};
constexpr MemberTable kAliases{ReadAliasesIfStale, GetAliasMember, GetNextAliasMember};

template <const MemberTable& kTable>
int ResolveMember(const HandlerCall& call, Instance& instance) {
    kTable.refresh();
    if (*call.length != call.vp->namelen + kMemberIndexLength) {
        return -1;
    }
    const oid* index = call.name + call.vp->namelen;
    return CompleteMember(
        kTable.exact(static_cast<std::uint32_t>(index[0]), static_cast<std::uint32_t>(index[1])),
        instance);
}

template <const MemberTable& kTable>
int NextMember(const HandlerCall& call, Instance& instance) {
    kTable.refresh();
    const ZoneMemberNode* member = nullptr;
    kTable.next(call.vp, call.name, call.length, member);
    return CompleteMember(member, instance);
}

}  // namespace

constinit const ServedTable kZoneTable =
    Table(kModule, {1, 13, 1}, 109, kZoneMembers, {ResolveMember<kZones>, NextMember<kZones>});

constinit const ServedTable kAliasTable =
    Table(kModule, {1, 14, 1}, 122, kAliasMembers, {ResolveMember<kAliases>, NextMember<kAliases>});

}  // namespace snmpmain::fcmgmt
