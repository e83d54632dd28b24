#include "src/snmptables/name_server.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {

std::uint16_t nameServerStale = 1;

namespace {

struct NameServerEntry {
    char portId[kPortIdTextSize];
    char portWwn[kWwnTextSize];
};

// One switch's entries, sorted by port WWN.
struct NameServerRow {
    std::uint16_t domainId = 0;
    char switchWwn[kWwnTextSize] = "";
    std::uint32_t entryCount = 0;  // as reported, whatever could be read
    std::vector<NameServerEntry> entries;
};

// Rows sorted by switch WWN, one per domain with entries.
struct NameServerTable {
    std::array<NameServerRow, kMaxDomains> rows;
    std::size_t used = 0;
    std::uint32_t total = 0;
};

NameServerTable table;

std::span<NameServerRow> Rows() {
    return std::span(table.rows).first(table.used);
}

// WWNs are compared as bytes: managers name them in their OIDs, where there is no upper or lower
// case.
WwnBytes BytesOfRow(const NameServerRow& row) {
    return BytesOfWwn(row.switchWwn);
}

WwnBytes BytesOfEntry(const NameServerEntry& entry) {
    return BytesOfWwn(entry.portWwn);
}

void EmptyTable() {
    for (NameServerRow& row : table.rows) {
        std::exchange(row.entries, std::vector<NameServerEntry>());  // clear() keeps the memory
        row.entryCount = 0;
    }
    table.used = 0;
    table.total = 0;
}

// Reads one switch's entries as far as they can be had. Returns -1 only when memory runs out.
int ReadEntries(NameServerRow& row) {
    char first[64];
    char next[64];
    FormatText(first, "Get.Oper.NameServerAll.%d.FirstNsEntry", row.domainId);
    FormatText(next, "Get.Oper.NameServerAll.%d.NextNsEntry", row.domainId);
    KeyWalk walk({0, first, next});
    for (std::size_t i = 0; i < row.entryCount && walk.Next() == 0; ++i) {
        ReplyText& portId = walk.Key();
        portId[kPortIdTextSize - 1] = '\0';
        NameServerEntry entry;
        CopyText(entry.portId, sizeof(entry.portId), portId.data());
        ReplyText portWwn;
        if (SwitchMgmtQueryf(0, portWwn, kString, nullptr,
                             "Get.Oper.NameServerAll.%d.Entry.%s.PortWwn", row.domainId,
                             portId.data()) != 0) {
            break;
        }
        CopyText(entry.portWwn, sizeof(entry.portWwn), portWwn.data());
        if (AppendEntry(row.entries, entry) != 0) {
            // The number tells the memory-hungry tables apart.
            TraceLog(kError, "Unable to allocate memory %s %d", "snmptables.c", 468);
            return -1;
        }
    }
    return 0;
}

// Reads one domain into the row behind the last, which becomes a used one if it has entries.
int ReadRow(std::uint16_t domain) {
    NameServerRow& row = table.rows[table.used];
    row.domainId = domain;
    ReplyText reply;
    if (SwitchMgmtQueryf(0, reply, kString, nullptr, "Get.Oper.Fabric.Entry.%d.WWN", domain) != 0) {
        return -1;
    }
    CopyText(row.switchWwn, sizeof(row.switchWwn), reply.data());
    if (SwitchMgmtQueryf(0, reply, kInteger, &row.entryCount, "Get.Oper.NameServerAll.%d.Entries",
                         domain) != 0) {
        return -1;
    }
    table.total += row.entryCount;
    if (row.entryCount == 0) {
        return 0;
    }
    ++table.used;
    return ReadEntries(row);
}

void SortRows() {
    std::ranges::stable_sort(Rows(), {}, BytesOfRow);
    for (NameServerRow& row : Rows()) {
        std::ranges::stable_sort(row.entries, {}, BytesOfEntry);
    }
}

void DumpTable() {
    if (!IsTraced(kTrace)) {
        return;
    }
    TraceLog(kTrace, "NameServer Table");
    TraceLog(kTrace, "DomainId  Switch WWN        Port WWN          PortId");
    for (const NameServerRow& row : Rows()) {
        for (const NameServerEntry& entry : row.entries) {
            TraceLog(kTrace, "  %d       %s  %s  %s", row.domainId, row.switchWwn, entry.portWwn,
                     entry.portId);
        }
    }
}

NameServerMatch MatchOf(const NameServerRow& row, const NameServerEntry& entry) {
    return {row.domainId, row.switchWwn, entry.portWwn, entry.portId};
}

}  // namespace

void ResetNameServerTable() {
    EmptyTable();
    for (NameServerRow& row : table.rows) {
        row = {};
    }
    nameServerStale = 1;
}

int BuildNameServerTable() {
    EmptyTable();
    const int result = VisitDomains(ReadRow);
    SortRows();
    DumpTable();
    return result;
}

void RefreshNameServerTable() {
    // Not for a request that asks a silent switch nothing more: it would find nothing.
    if (nameServerStale == 1 && !WorkMetSilence()) {
        BuildNameServerTable();
        nameServerStale = 0;
    }
}

std::uint32_t GetNameServerTotal() {
    return table.total;
}

int GetNextNameServer(const char* switchWwn, const char* portWwn, NameServerMatch& found) {
    const WwnBytes wantedSwitch = BytesOfWwn(switchWwn);
    const std::span<NameServerRow> rows = Rows();
    const auto first = std::ranges::lower_bound(rows, wantedSwitch, {}, BytesOfRow);
    for (auto row = first; row != rows.end(); ++row) {
        const auto entry =
            BytesOfRow(*row) == wantedSwitch
                ? std::ranges::upper_bound(row->entries, BytesOfWwn(portWwn), {}, BytesOfEntry)
                : row->entries.begin();
        if (entry != row->entries.end()) {
            found = MatchOf(*row, *entry);
            return 0;
        }
    }
    return -1;
}

int GetNameServerEntry(const char* switchWwn, const char* portWwn,
                       const std::function<bool(const NameServerMatch&)>& isWanted,
                       NameServerMatch& found) {
    for (const NameServerRow& row :
         std::ranges::equal_range(Rows(), BytesOfWwn(switchWwn), {}, BytesOfRow)) {
        for (const NameServerEntry& entry :
             std::ranges::equal_range(row.entries, BytesOfWwn(portWwn), {}, BytesOfEntry)) {
            found = MatchOf(row, entry);
            if (isWanted(found)) {
                return 0;
            }
        }
    }
    return -1;
}

int GetLocalNsPortId(std::uint32_t domain, std::uint32_t position,
                     char (&portId)[kPortIdTextSize]) {
    ReplyText reply;
    std::uint32_t count = 0;
    if (SwitchMgmtQuery(domain, "Get.Oper.NameServer.Entries", reply, kInteger, &count) != 0 ||
        position >= count) {
        return -1;
    }
    KeyWalk walk(LocalNameServer(domain));
    for (std::size_t i = 0; i <= position; ++i) {
        if (walk.Next() != 0) {
            return -1;
        }
    }
    CopyText(portId, sizeof(portId), walk.Key().data());
    return 0;
}

}  // namespace snmpmain
