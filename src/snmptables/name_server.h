// The name servers of the whole fabric as one table, rebuilt by the first read after the fabric has
// told of a change, and the positions in one switch's own name server. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "src/snmptables/fabric_lists.h"

namespace snmpmain {

// Six hexadecimal characters and a terminator.
constexpr std::size_t kPortIdTextSize = 7;

// Empties the table and marks it stale; part of start-up.
void ResetNameServerTable();

// Marks the table stale: a switch has told of a change.
void MarkNameServerStale();

// Asks the local switch for the entries of every domain and replaces the table. Returns 0, or -1
// when it refuses the domains, or one's WWN or number of entries (the table then holds what was
// read so far), or does not answer (the table then stays as it was).
// "Get.Oper.Fabric.Entry.%d.WWN", "Get.Oper.NameServerAll.%d.Entries", ".FirstNsEntry",
// ".NextNsEntry.%s", ".Entry.%s.PortWwn"
int BuildNameServerTable();

// Rebuilds the table if it is stale. It counts as fresh afterwards even if the switch refuses
// something: the next notification makes for the next try. A question without an answer leaves the
// table as it was; a later call goes on from there (see FetchSchedule).
void ReadNameServerIfStale();

// Entries of all domains, as switch management counts them (there may be fewer in the table).
std::uint32_t GetNameServerTotal();

// An entry of the table. The texts are switch management's own and hold until the next rebuild.
struct NameServerMatch {
    std::uint16_t domainId;
    const char* switchWwn;
    const char* portWwn;
    const char* portId;
};

// Finds the first entry after the given one, in the order of switch WWN and port WWN (texts of 16
// hexadecimal characters, in upper or lower case). Returns 0 or -1.
int GetNextNameServer(const char* switchWwn, const char* portWwn, NameServerMatch& found);

// Finds the entry of these WWNs that is the wanted one. Returns 0 or -1.
int GetNameServerEntry(const char* switchWwn, const char* portWwn,
                       const std::function<bool(const NameServerMatch&)>& isWanted,
                       NameServerMatch& found);

// The port id at a position (from 0) of one switch's own name server, for a single look-up;
// logins.h keeps the list for several. Returns 0, or -1 beyond its end or when a query fails.
// "Get.Oper.NameServer.Entries", ".FirstNsEntry", ".NextNsEntry.%s"
int GetLocalNsPortId(std::uint32_t domain, std::uint32_t position, char (&portId)[kPortIdTextSize]);

// That name server as a list of port ids.
constexpr KeyList LocalNameServer(std::uint32_t domain) {
    return {domain, "Get.Oper.NameServer.FirstNsEntry", "Get.Oper.NameServer.NextNsEntry"};
}

}  // namespace snmpmain
