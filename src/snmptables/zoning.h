// The members of the active zone set's zones and of the zoning aliases, rebuilt by the first read
// after the fabric has told of a change. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>

namespace snmpmain {

// One member. Zones and aliases are numbered from 1 in switch management's order, those without
// members too; members from 1 within their zone.
struct ZoneMemberNode {
    std::uint32_t zone;
    std::uint32_t member;
    char zoneName[40];  // the first 39 characters
    char memberId[17];  // the first 16: a WWN, a port id, or domain and port
};

// Empty the lists and mark them stale; part of start-up.
void ResetZoningTable();
void ResetAliasTable();

// Marks both stale: the fabric has told of a change.
void MarkZoningStale();

// Ask the local switch for all members and replace the list. Return 0, or -1 when there is no first
// zone (alias) or memory runs out (the list then holds what was read so far), or when a question is
// not answered (the list then stays as it was).
// "Get.Oper.Zoning.ActiveZoneSet.FirstZone", "Get.Oper.Zoning.ActiveZone.%s.FirstZoneMember"
int BuildZoningTable();
// "Get.Oper.Zoning.FirstAlias", "Get.Oper.Zoning.Alias.%s.FirstZoneMember"
int BuildAliasTable();

// Rebuild the list if it is stale. It counts as fresh afterwards even if the switch refuses
// something: the next notification makes for the next try. A question without an answer leaves the
// list as it was; a later call goes on from there (see FetchSchedule).
void ReadZonesIfStale();
void ReadAliasesIfStale();

// The first member after the given one, in the order of zone and member number, or null. Holds
// until the next rebuild.
const ZoneMemberNode* GetNextZone(std::uint32_t zone, std::uint32_t member);
const ZoneMemberNode* GetNextAlias(std::uint32_t alias, std::uint32_t member);

// Exactly this member, or null.
const ZoneMemberNode* GetZoneMember(std::uint32_t zone, std::uint32_t member);
const ZoneMemberNode* GetAliasMember(std::uint32_t alias, std::uint32_t member);

}  // namespace snmpmain
