#include "src/snmptables/zoning.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/snmptables/fabric_lists.h"

namespace snmpmain {
namespace {

// 1 while the list does not stand for the fabric any more.
std::uint16_t zoningStale = 1;
std::uint16_t aliasStale = 1;

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

// A list under way: the zone that has been reached, and its members.
struct MemberFetch {
    KeyWalk groups;
    KeyWalk members{{}};
    char firstMember[kCommandSize] = "";
    char nextMember[kCommandSize] = "";
    bool inGroup = false;
    ZoneMemberNode node{};
    MemberList list = {};
};

// One of the lists: what is served, and what is being fetched to take its place.
struct FetchedMembers {
    const MemberSource& source;
    std::uint16_t& stale;
    MemberList list = {};
    std::optional<MemberFetch> fetch = {};
    FetchSchedule schedule = {};
};

FetchedMembers zones{kZoneSource, zoningStale};
FetchedMembers aliases{kAliasSource, aliasStale};

std::pair<std::uint32_t, std::uint32_t> NumbersOf(const ZoneMemberNode& node) {
    return {node.zone, node.member};
}

void BeginGroup(const MemberSource& source, MemberFetch& fetch) {
    const char* name = fetch.groups.Key().data();
    FormatText(fetch.firstMember, "%s.%s.FirstZoneMember", source.path, name);
    FormatText(fetch.nextMember, "%s.%s.NextZoneMember", source.path, name);
    fetch.members = KeyWalk({0, fetch.firstMember, fetch.nextMember});
    fetch.node = {fetch.node.zone + 1, 0, {}, {}};
    CopyText(fetch.node.zoneName, sizeof(fetch.node.zoneName), name);
    fetch.inGroup = true;
}

// Appends the member that has been reached. Returns -1 when there is no room.
int AppendMember(const MemberSource& source, MemberFetch& fetch) {
    ++fetch.node.member;
    CopyText(fetch.node.memberId, sizeof(fetch.node.memberId), fetch.members.Key().data());
    if (fetch.list.size() >= kMaxListEntries || AppendEntry(fetch.list, fetch.node) != 0) {
        TraceLog(kError, "Unable to allocate memory %s %d", "snmptables.c",
                 source.memoryErrorNumber);
        return -1;
    }
    return 0;
}

// Goes on with a fetch until its end, or until a question is not answered.
Fetched GoOn(const MemberSource& source, MemberFetch& fetch) {
    for (;;) {
        KeyWalk& walk = fetch.inGroup ? fetch.members : fetch.groups;
        if (walk.Next() != 0) {
            if (walk.Unanswered()) {
                return Fetched::kInterrupted;
            }
            if (!fetch.inGroup) {
                return fetch.node.zone == 0 ? Fetched::kFailed : Fetched::kWhole;
            }
            fetch.inGroup = false;
        } else if (!fetch.inGroup) {
            BeginGroup(source, fetch);
        } else if (AppendMember(source, fetch) != 0) {
            return Fetched::kFailed;
        }
    }
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

Fetched Fetch(FetchedMembers& members) {
    if (!members.fetch) {
        members.fetch.emplace(MemberFetch{.groups = KeyWalk(members.source.groups)});
    }
    const Fetched result = GoOn(members.source, *members.fetch);
    if (result != Fetched::kInterrupted) {
        members.list = std::move(members.fetch->list);
        members.fetch.reset();
        DumpMembers(members.source, members.list);
    }
    return result;
}

// What is under way is of yesterday, too.
void Mark(FetchedMembers& members) {
    members.stale = 1;
    members.fetch.reset();
    members.schedule = {};
}

void Reset(FetchedMembers& members) {
    members.list = MemberList();
    Mark(members);
}

int Build(FetchedMembers& members) {
    members.fetch.reset();
    return Fetch(members) == Fetched::kWhole ? 0 : -1;
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
    Reset(zones);
}

void ResetAliasTable() {
    Reset(aliases);
}

void MarkZoningStale() {
    Mark(zones);
    Mark(aliases);
}

int BuildZoningTable() {
    return Build(zones);
}

int BuildAliasTable() {
    return Build(aliases);
}

void ReadZonesIfStale() {
    AssertMainThread();
    zones.schedule.Refresh(zoningStale, [] { return Fetch(zones); });
}

void ReadAliasesIfStale() {
    AssertMainThread();
    aliases.schedule.Refresh(aliasStale, [] { return Fetch(aliases); });
}

const ZoneMemberNode* GetNextZone(std::uint32_t zone, std::uint32_t member) {
    return FindNext(zones.list, zone, member);
}

const ZoneMemberNode* GetNextAlias(std::uint32_t alias, std::uint32_t member) {
    return FindNext(aliases.list, alias, member);
}

const ZoneMemberNode* GetZoneMember(std::uint32_t zone, std::uint32_t member) {
    return FindExactly(zones.list, zone, member);
}

const ZoneMemberNode* GetAliasMember(std::uint32_t alias, std::uint32_t member) {
    return FindExactly(aliases.list, alias, member);
}

}  // namespace snmpmain
