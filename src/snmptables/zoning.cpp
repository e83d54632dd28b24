#include "src/snmptables/zoning.h"

#include <algorithm>
#include <utility>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/snmptables/fabric_lists.h"

namespace snmpmain {

std::uint16_t zoningStale = 1;
std::uint16_t aliasStale = 1;

namespace {

// Where one of the lists comes from, and how its dump is headed.
struct MemberSource {
    KeyList groups;    // the zones or aliases
    const char* path;  // below it, a group's name and its members
    const char* title;
    const char* heading;
    int memoryErrorNumber;  // tells the memory-hungry tables apart in messages
};

constexpr MemberSource kZoneSource{
    {0, "Get.Oper.Zoning.ActiveZoneSet.FirstZone", "Get.Oper.Zoning.ActiveZoneSet.NextZone"},
    "Get.Oper.Zoning.ActiveZone",
    "Active Zoning Table",
    "Zone ZoneMem ZoneName  ZoneMemberId",
    735};

constexpr MemberSource kAliasSource{{0, "Get.Oper.Zoning.FirstAlias", "Get.Oper.Zoning.NextAlias"},
                                    "Get.Oper.Zoning.Alias",
                                    "Active Alias Table",
                                    "Alias AliasMem AliasName  AliasMemberId",
                                    959};

// In ascending order of zone and member number, since it is built in that order.
using MemberList = std::vector<ZoneMemberNode>;

MemberList zones;
MemberList aliases;

// clear() would keep the memory.
void Empty(MemberList& members) {
    std::exchange(members, MemberList());
}

std::pair<std::uint32_t, std::uint32_t> NumbersOf(const ZoneMemberNode& node) {
    return {node.zone, node.member};
}

// Appends the members of one zone as far as they can be had. Returns -1 when there is no room.
int ReadMembers(const MemberSource& source, const ReplyText& name, std::uint32_t zone,
                MemberList& members) {
    char first[kCommandSize];
    char next[kCommandSize];
    FormatText(first, "%s.%s.FirstZoneMember", source.path, name.data());
    FormatText(next, "%s.%s.NextZoneMember", source.path, name.data());
    KeyWalk walk({0, first, next});
    ZoneMemberNode node{zone, 0, {}, {}};
    CopyText(node.zoneName, sizeof(node.zoneName), name.data());
    while (walk.Next() == 0) {
        ++node.member;
        CopyText(node.memberId, sizeof(node.memberId), walk.Key().data());
        if (members.size() >= kMaxListEntries || AppendEntry(members, node) != 0) {
            TraceLog(kError, "Unable to allocate memory %s %d", "snmptables.c",
                     source.memoryErrorNumber);
            return -1;
        }
    }
    return 0;
}

int ReadMembersOfAll(const MemberSource& source, MemberList& members) {
    KeyWalk walk(source.groups);
    std::uint32_t zone = 0;
    while (walk.Next() == 0) {
        ++zone;
        if (ReadMembers(source, walk.Key(), zone, members) != 0) {
            return -1;
        }
    }
    return zone == 0 ? -1 : 0;
}

void DumpMembers(const MemberSource& source, const MemberList& members) {
    if (!IsTraced(kTrace)) {
        return;
    }
    TraceLog(kTrace, "%s", source.title);
    TraceLog(kTrace, "%s", source.heading);
    for (const ZoneMemberNode& node : members) {
        TraceLog(kTrace, " %d   %d       %s        %s  ", static_cast<int>(node.zone),
                 static_cast<int>(node.member), node.zoneName, node.memberId);
    }
}

int Build(const MemberSource& source, MemberList& members) {
    Empty(members);
    const int result = ReadMembersOfAll(source, members);
    DumpMembers(source, members);
    return result;
}

const ZoneMemberNode* FindNext(const MemberList& members, std::uint32_t zone,
                               std::uint32_t member) {
    const auto node = std::ranges::upper_bound(members, std::pair(zone, member), {}, NumbersOf);
    return node == members.end() ? nullptr : &*node;
}

const ZoneMemberNode* FindExactly(const MemberList& members, std::uint32_t zone,
                                  std::uint32_t member) {
    const std::pair wanted(zone, member);
    const auto node = std::ranges::lower_bound(members, wanted, {}, NumbersOf);
    return node == members.end() || NumbersOf(*node) != wanted ? nullptr : &*node;
}

}  // namespace

void ResetZoningTable() {
    Empty(zones);
    zoningStale = 1;
}

void ResetAliasTable() {
    Empty(aliases);
    aliasStale = 1;
}

int BuildZoningTable() {
    return Build(kZoneSource, zones);
}

int BuildAliasTable() {
    return Build(kAliasSource, aliases);
}

// Neither is read for a request that asks a silent switch nothing more: it would find nothing.
void RefreshZoningTable() {
    if (zoningStale == 1 && !WorkMetSilence()) {
        BuildZoningTable();
        zoningStale = 0;
    }
}

void RefreshAliasTable() {
    if (aliasStale == 1 && !WorkMetSilence()) {
        BuildAliasTable();
        aliasStale = 0;
    }
}

const ZoneMemberNode* GetNextZone(std::uint32_t zone, std::uint32_t member) {
    return FindNext(zones, zone, member);
}

const ZoneMemberNode* GetNextAlias(std::uint32_t alias, std::uint32_t member) {
    return FindNext(aliases, alias, member);
}

const ZoneMemberNode* GetZoneMember(std::uint32_t zone, std::uint32_t member) {
    return FindExactly(zones, zone, member);
}

const ZoneMemberNode* GetAliasMember(std::uint32_t alias, std::uint32_t member) {
    return FindExactly(aliases, alias, member);
}

}  // namespace snmpmain
