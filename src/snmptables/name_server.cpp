#include "src/snmptables/name_server.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/worked_with.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

// 1 while the table does not stand for the fabric any more.
std::uint16_t nameServerStale = 1;

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

// A table under way: the question that has been reached.
struct NameServerFetch {
    enum class Question { kDomain, kSwitchWwn, kEntryCount, kEntry, kPortWwn };
    Question question = Question::kDomain;
    KeyWalk domains{kDomainList};
    KeyWalk entries{{}};
    char firstEntry[64] = "";
    char nextEntry[64] = "";
    NameServerTable table;
};

NameServerTable table;
std::optional<NameServerFetch> fetch;  // to take its place
FetchSchedule schedule;

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

NameServerRow& RowUnderWay() {
    return fetch->table.rows[fetch->table.used];
}

// A question's outcome: the next question, or the end of the fetch.
using Question = NameServerFetch::Question;
struct Step {
    Fetched fetched = Fetched::kGoesOn;
    Question next = Question::kDomain;
};

// An answered no fails the fetch; silence interrupts it.
Fetched FailureOf(const Answer& answer) {
    return answer.outcome == Outcome::kNoAnswer ? Fetched::kInterrupted : Fetched::kFailed;
}

Step AskDomain() {
    std::uint16_t domain = 0;
    switch (NextDomain(fetch->domains, domain)) {
        case DomainStep::kFound:
            RowUnderWay().domainId = domain;
            return {.next = Question::kSwitchWwn};
        case DomainStep::kEnd:
            return {Fetched::kWhole};
        case DomainStep::kNoAnswer:
            return {Fetched::kInterrupted};
        case DomainStep::kFailed:
            break;
    }
    return {Fetched::kFailed};
}

Step AskSwitchWwn() {
    NameServerRow& row = RowUnderWay();
    ReplyText reply;
    const Answer answer =
        AskSwitchf(0, reply, kString, nullptr, "Get.Oper.Fabric.Entry.%d.WWN", row.domainId);
    if (answer.outcome != Outcome::kAnswered) {
        return {FailureOf(answer)};
    }
    CopyText(row.switchWwn, sizeof(row.switchWwn), reply.data());
    return {.next = Question::kEntryCount};
}

// A domain without entries leaves its row to the next.
Step AskEntryCount() {
    NameServerRow& row = RowUnderWay();
    ReplyText reply;
    std::array<char, kCommandSize> command;
    FormatText(command, "Get.Oper.NameServerAll.%d.Entries", row.domainId);
    const Answer answer = AskSwitch(0, command.data(), reply, kInteger, &row.entryCount);
    NoteWorkedWith(Worker::kNameServer, command.data(), kInteger, answer, reply);
    if (answer.outcome != Outcome::kAnswered) {
        return {FailureOf(answer)};
    }
    fetch->table.total += row.entryCount;
    if (row.entryCount == 0) {
        return {};
    }
    FormatText(fetch->firstEntry, "Get.Oper.NameServerAll.%d.FirstNsEntry", row.domainId);
    FormatText(fetch->nextEntry, "Get.Oper.NameServerAll.%d.NextNsEntry", row.domainId);
    fetch->entries = KeyWalk({0, fetch->firstEntry, fetch->nextEntry});
    return {.next = Question::kEntry};
}

// The domain's entries have been read as far as they can be.
Step EndRow() {
    ++fetch->table.used;
    return {};
}

Step AskEntry() {
    if (RowUnderWay().entries.size() >= RowUnderWay().entryCount) {
        return EndRow();
    }
    if (fetch->entries.Next() != 0) {
        return fetch->entries.Unanswered() ? Step{Fetched::kInterrupted} : EndRow();
    }
    fetch->entries.Key()[kPortIdTextSize - 1] = '\0';
    return {.next = Question::kPortWwn};
}

Step AskPortWwn() {
    NameServerRow& row = RowUnderWay();
    NameServerEntry entry;
    CopyText(entry.portId, sizeof(entry.portId), fetch->entries.Key().data());
    ReplyText reply;
    const Answer answer =
        AskSwitchf(0, reply, kString, nullptr, "Get.Oper.NameServerAll.%d.Entry.%s.PortWwn",
                   row.domainId, entry.portId);
    if (answer.outcome != Outcome::kAnswered) {
        return answer.outcome == Outcome::kNoAnswer ? Step{Fetched::kInterrupted} : EndRow();
    }
    CopyText(entry.portWwn, sizeof(entry.portWwn), reply.data());
    if (AppendEntry(row.entries, entry) != 0) {
        // The number tells the memory-hungry tables apart.
        TraceLog(kError, "Unable to allocate memory %s %d", "snmptables.c", 468);
        EndRow();
        return {Fetched::kFailed};
    }
    return {.next = Question::kEntry};
}

Step Ask(Question question) {
    switch (question) {
        case Question::kDomain:
            return AskDomain();
        case Question::kSwitchWwn:
            return AskSwitchWwn();
        case Question::kEntryCount:
            return AskEntryCount();
        case Question::kEntry:
            return AskEntry();
        case Question::kPortWwn:
            return AskPortWwn();
    }
    return {Fetched::kFailed};
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

// Goes on with the fetch until its end, or until a question is not answered.
Fetched FetchTable() {
    if (!fetch) {
        fetch.emplace();
        ForgetWorkedWith(Worker::kNameServer);
    }
    Step step;
    do {
        step = Ask(fetch->question);
        fetch->question = step.fetched == Fetched::kGoesOn ? step.next : fetch->question;
    } while (step.fetched == Fetched::kGoesOn);
    if (step.fetched != Fetched::kInterrupted) {
        table = std::move(fetch->table);
        fetch.reset();
        SortRows();
        DumpTable();
    }
    return step.fetched;
}

NameServerMatch MatchOf(const NameServerRow& row, const NameServerEntry& entry) {
    return {row.domainId, row.switchWwn, entry.portWwn, entry.portId};
}

}  // namespace

void ResetNameServerTable() {
    table = {};
    MarkNameServerStale();
}

void MarkNameServerStale() {
    nameServerStale = 1;
    fetch.reset();  // of yesterday, too
    schedule = {};
}

int BuildNameServerTable() {
    fetch.reset();
    return FetchTable() == Fetched::kWhole ? 0 : -1;
}

void ReadNameServerIfStale() {
    AssertMainThread();
    schedule.Refresh(nameServerStale, FetchTable);
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
