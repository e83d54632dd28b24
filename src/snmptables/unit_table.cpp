#include "src/snmptables/unit_table.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <span>

#include "src/base/byte_order.h"
#include "src/base/system_log.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/reachability.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/unit_status.h"

namespace snmpmain {

using ConnUnitTable = std::array<ConnUnitEntry, MAX_CONN_UNITS>;

ConnUnitTable connUnitTbl{};
std::uint16_t unitStatusRefreshPending = 0;

namespace {

static_assert(kMaxDomains <= MAX_CONN_UNITS);

constexpr ConnUnitEntry kEmptyRow{0, 0, kUnitUnknown, {}, 0, 0};
constexpr int kFailuresBeforeGivingUp = 2;

// A unit that the fabric lists stays in the table for as long as it has not been silent.
constexpr std::chrono::seconds kSilenceBeforeLeaving{10};

struct UnitTableState {
    // Held for every change of a row in use, and for every look at a row's status or reset flag:
    // whoever receives reports the local unit's reset.
    std::mutex rowsMutex;
    ConnUnitTable scratch{};                          // the table under construction
    std::array<std::uint16_t, kMaxDomains> listed{};  // the domains that the walk has met
    std::size_t listedCount = 0;
    std::uint16_t statusCursor = 0;
    std::uint16_t ascendingRows = 0;
    std::uint16_t rowsEnd = 0;
    void (*departureHandler)(const NotificationRecord&) = nullptr;
    int (*registrationHandler)(bool) = nullptr;
};

UnitTableState state;

bool IsUsed(const ConnUnitEntry& row) {
    return row.wwn[0] != '\0';
}

// Notes the order of the rows after the table was replaced.
void NoteRowOrder() {
    std::uint16_t row = 0;
    WwnBytes last{};
    while (row < connUnitTbl.size() && connUnitTbl[row].domainId != 0) {
        const WwnBytes bytes = BytesOfWwn(connUnitTbl[row].wwn);
        if (row > 0 && bytes <= last) {
            break;
        }
        last = bytes;
        ++row;
    }
    state.ascendingRows = row;
    std::uint16_t end = MAX_CONN_UNITS;
    while (end > row && connUnitTbl[end - 1u].domainId == 0) {
        --end;
    }
    state.rowsEnd = end;
}

ConnUnitEntry* RowOfDomain(std::uint32_t domain) {
    for (ConnUnitEntry& row : connUnitTbl) {
        if (row.domainId == 0) {
            break;
        }
        if (row.domainId == domain) {
            return &row;
        }
    }
    return nullptr;
}

std::uint32_t DomainOrLocal(std::uint32_t domain) {
    return domain == 0 ? GetLocalDomainId() : domain;
}

ConnUnitEntry* RowOfDomainOrLocal(std::uint32_t domain) {
    return RowOfDomain(DomainOrLocal(domain));
}

const ConnUnitEntry* LoggedRowOfDomain(std::uint32_t domain) {
    domain = DomainOrLocal(domain);
    const ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr) {
        TraceLog(kError, "Invalid connUnitTbl[] DomainId- %d", static_cast<int>(domain));
    }
    return row;
}

const ConnUnitEntry* LoggedRowOfWwn(const char* wwn) {
    for (const ConnUnitEntry& row : connUnitTbl) {
        if (std::strcmp(row.wwn, wwn) == 0) {
            return &row;
        }
    }
    TraceLog(kError, "Invalid connUnitTbl[] WWN- %s", wwn);
    return nullptr;
}

std::uint16_t IndexOf(const ConnUnitEntry& row) {
    return static_cast<std::uint16_t>(&row - connUnitTbl.data());
}

// ---- discovery ----

// A listed unit that the walk could not reach stays as it was, unless its probes say that it is
// silent. False for one that is to be left out, and for a new one.
bool KeepsItsRow(std::uint16_t domain, ConnUnitEntry& row) {
    const ConnUnitEntry* old = RowOfDomain(domain);
    if (old == nullptr || std::strcmp(old->wwn, row.wwn) != 0 ||
        SilentFor(domain) >= kSilenceBeforeLeaving) {
        return false;
    }
    row = *old;
    return true;
}

// Completes the row of `domain`. `kept` tells whether the unit belongs into the table. Returns -1
// when the whole walk fails.
int DiscoverUnit(std::uint16_t domain, ConnUnitEntry& row, bool& kept) {
    kept = false;
    row.domainId = domain;
    ReplyText wwn;
    if (SwitchMgmtQueryf(0, wwn, kString, nullptr, "Get.Oper.Fabric.Entry.%i.WWN", domain) != 0) {
        return -1;
    }
    // A row without a WWN would end every table: it marks the rows that are not in use.
    if (std::strcmp(wwn.data(), kNoWwn) == 0 || wwn[0] == '\0') {
        return 0;
    }
    CopyText(row.wwn, sizeof(row.wwn), wwn.data());
    const bool local = IsLocalDomain(domain);
    if (GetProxyEnable() == 0 && !local) {
        return 0;
    }
    const bool answers = HelloUnit(domain, row) == 0;
    kept = answers || (!local && KeepsItsRow(domain, row));
    return answers || !local ? 0 : -1;
}

// Fills the scratch table and counts its rows. Returns 0 or -1.
int DiscoverUnits(std::uint16_t& count) {
    count = 0;
    state.listedCount = 0;
    return VisitDomains([&count](std::uint16_t domain) {
        state.listed[state.listedCount++] = domain;
        state.scratch[count] = kEmptyRow;
        bool kept = false;
        if (DiscoverUnit(domain, state.scratch[count], kept) != 0) {
            return -1;
        }
        count = static_cast<std::uint16_t>(kept ? count + 1 : count);
        return 0;
    });
}

// Reports the first unit of the present table that is missing in the new one.
void FindDeletedUnit(std::uint16_t newCount) {
    for (const ConnUnitEntry& old : connUnitTbl) {
        if (!IsUsed(old)) {
            return;
        }
        const auto end = state.scratch.begin() + newCount;
        const bool stays = std::any_of(state.scratch.begin(), end, [&](const ConnUnitEntry& row) {
            return row.domainId == old.domainId;
        });
        if (!stays) {
            NotificationRecord record{};
            record.domainId = static_cast<std::uint16_t>(GetLocalDomainId());
            record.kind = kUnitDeletedKind;
            CopyText(record.text, sizeof(record.text), old.wwn);
            if (state.departureHandler != nullptr) {
                state.departureHandler(record);
            }
            return;
        }
    }
}

// Sorts the first `count` scratch rows by WWN text, keeping the order of equal ones.
void SortUnitsByWwn(std::uint16_t count) {
    const auto first = state.scratch.begin();
    const auto before = [](const ConnUnitEntry& a, const ConnUnitEntry& b) {
        return std::strcmp(a.wwn, b.wwn) < 0;
    };
    for (auto row = first; row != first + count; ++row) {
        std::rotate(std::upper_bound(first, row, *row, before), row, row + 1);
    }
}

// Asks for every domain and replaces the table. Returns 0, or -1 with the table as it was.
int WalkFabric() {
    ReadLocalDomainId();
    ReadProxyEnable();
    ReadMergeMode();

    std::uint16_t count = 0;
    if (DiscoverUnits(count) != 0) {
        return -1;
    }
    KeepReachabilityOf(std::span(state.listed).first(state.listedCount));
    FindDeletedUnit(count);
    SortUnitsByWwn(count);
    {
        const std::lock_guard lock(state.rowsMutex);
        std::copy_n(state.scratch.begin(), count, connUnitTbl.begin());
        if (count < MAX_CONN_UNITS) {
            connUnitTbl[count] = kEmptyRow;
        }
    }
    NoteRowOrder();
    if (count < MAX_CONN_UNITS) {
        state.scratch[count] = kEmptyRow;
    }
    DumpConnUnitTable(state.scratch);
    state.statusCursor = 0;
    unitStatusRefreshPending = 1;
    return 0;
}

}  // namespace

void SetDepartureHandler(void (*handler)(const NotificationRecord& record)) {
    state.departureHandler = handler;
}

void SetRegistrationHandler(int (*handler)(bool on)) {
    state.registrationHandler = handler;
}

void ResetConnUnitTable() {
    const std::lock_guard lock(state.rowsMutex);
    connUnitTbl.fill(kEmptyRow);
    NoteRowOrder();
}

int InitConnUnitTable() {
    ResetConnUnitTable();
    std::fputs("SNMP:Updating connUnitTable...", stdout);
    std::fflush(stdout);
    while (PingSwitchMgmt(0) != 0) {
        ::sleep(1);
    }
    return WalkFabric();
}

int UpdateConnUnitTable() {
    return PingSwitchMgmt(0) == 0 ? WalkFabric() : -1;
}

int RefreshConnUnitTable() {
    if (IsSilent(0)) {
        return -1;  // when it answers again, the table is refreshed
    }
    const std::uint16_t pendingBefore = fabricUpdatePending;
    if (state.registrationHandler != nullptr) {
        state.registrationHandler(false);
    }
    int failures = 0;
    bool walked = UpdateConnUnitTable() == 0;
    while (!walked && failures++ <= kFailuresBeforeGivingUp && !IsSilent(0)) {
        ::sleep(1);
        walked = UpdateConnUnitTable() == 0;
    }
    if (state.registrationHandler != nullptr) {
        state.registrationHandler(true);
    }
    // A status byte that the refresh itself has met is no reason for another one.
    fabricUpdatePending = pendingBefore;
    // A fourth walk that succeeds is still reported: by then the count of failures stands at three.
    if (failures > kFailuresBeforeGivingUp) {
        SystemLog("SNMP:Failed to properly update connUnitTable!\n");
        return -1;
    }
    return walked ? 0 : -1;
}

int HelloUnit(std::uint16_t domain, ConnUnitEntry& row) {
    ReplyFrame reply;
    std::size_t requestSize = 0;
    if (SwitchMgmtExchange(domain, "Get.Oper.Switch.Nop", "Oper.Switch.Nop", reply, requestSize) !=
            Outcome::kAnswered ||
        ReplyStatus(reply) != 0) {
        return -1;
    }
    ReplyText text;
    ReadReplyText(reply, text);
    TraceLog(kTrace, "%-3d<< %s", domain, text.data());
    row.fcAddress = LoadBig32(&reply[kTargetOffset]);
    const Outcome greeted =
        AskSwitch(domain, "Set.Cmd.Snmp.PrivateEvent.Hello", text, kString).outcome;
    const ConnUnitEntry* old = RowOfDomain(domain);
    // Silence is no refusal.
    row.eventSupport = greeted == Outcome::kNoAnswer && old != nullptr ? old->eventSupport
                       : greeted == Outcome::kAnswered                 ? 1
                                                                       : 0;
    return 0;
}

void GreetUnit(std::uint16_t domain) {
    const ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr) {
        return;
    }
    ConnUnitEntry greeted = *row;
    if (HelloUnit(domain, greeted) == 0) {
        const std::lock_guard lock(state.rowsMutex);
        ConnUnitEntry& present = *RowOfDomain(domain);
        present.fcAddress = greeted.fcAddress;
        present.eventSupport = greeted.eventSupport;
    }
}

void RefreshUnitStatus(std::uint16_t domain) {
    const std::uint16_t pendingBefore = fabricUpdatePending;
    std::uint16_t status = kUnitUnknown;
    ReadUnitStatus(domain, status);
    SetUnitStatus(domain, status);
    fabricUpdatePending = pendingBefore;
}

int RefreshNextUnitStatus() {
    if (unitStatusRefreshPending != 1) {
        return 0;
    }
    if (state.statusCursor < GetUnitCount()) {
        RefreshUnitStatus(connUnitTbl[state.statusCursor].domainId);
        ++state.statusCursor;
    } else {
        unitStatusRefreshPending = 0;
        state.statusCursor = 0;
    }
    return 0;
}

void DumpConnUnitTable(const ConnUnitTable& table) {
    if (!IsTraced(kTrace)) {
        return;
    }
    TraceLog(kTrace, "\nConnUnitTable:");
    TraceLog(kTrace, "Index DomainId FCAddress  WWN              Reset  Event support");
    for (int index = 0; const ConnUnitEntry& row : table) {
        if (row.domainId == 0) {
            break;
        }
        TraceLog(kTrace, "%-5i %-8d 0x%08x %-16s %-6d %-6d", index++, row.domainId, row.fcAddress,
                 row.wwn, static_cast<int>(row.reset), static_cast<int>(row.eventSupport));
    }
    TraceLog(kTrace, "%s", "");
}

std::uint16_t GetUnitCount() {
    std::uint16_t count = 0;
    while (count < connUnitTbl.size() && connUnitTbl[count].domainId != 0) {
        ++count;
    }
    return count;
}

const char* GetWWNfromIndex(std::uint32_t index) {
    if (index >= connUnitTbl.size() || !IsUsed(connUnitTbl[index])) {
        TraceLog(kError, "Invalid connUnitTbl[] Index=%d", static_cast<int>(index));
        return nullptr;
    }
    return connUnitTbl[index].wwn;
}

int GetDomainIdFromIndex(std::uint32_t index, std::uint16_t& domain) {
    if (index >= connUnitTbl.size() || !IsUsed(connUnitTbl[index])) {
        TraceLog(kError, "Invalid connUnitTbl[] Index= %d", static_cast<int>(index));
        domain = 0;
        return -1;
    }
    domain = connUnitTbl[index].domainId;
    return 0;
}

int GetIndexFromWwn(const char* wwn, std::uint16_t& index) {
    const ConnUnitEntry* row = LoggedRowOfWwn(wwn);
    if (row == nullptr) {
        return -1;
    }
    index = IndexOf(*row);
    return 0;
}

int GetDomainIdFromWwn(const char* wwn, std::uint16_t& domain) {
    const ConnUnitEntry* row = LoggedRowOfWwn(wwn);
    if (row == nullptr) {
        return -1;
    }
    domain = row->domainId;
    return 0;
}

int GetIndexFromDomainId(std::uint32_t domain, std::uint16_t& index) {
    const ConnUnitEntry* row = LoggedRowOfDomain(domain);
    if (row == nullptr) {
        return -1;
    }
    index = IndexOf(*row);
    return 0;
}

const char* GetWwnFromDomainId(std::uint32_t domain) {
    const ConnUnitEntry* row = LoggedRowOfDomain(domain);
    return row == nullptr ? nullptr : row->wwn;
}

std::uint32_t GetFcAddressFromDomainId(std::uint32_t domain) {
    domain = DomainOrLocal(domain);
    const ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr) {
        TraceLog(kError, "Invalid connUnitTbl[] DomainId- %d\n", static_cast<int>(domain));
        return 0xFFFFFFFF;
    }
    return row->fcAddress;
}

int CopyWwnOfDomain(std::uint32_t domain, char (&wwn)[kWwnTextSize]) {
    const std::lock_guard lock(state.rowsMutex);
    const ConnUnitEntry* row = RowOfDomainOrLocal(domain);
    if (row == nullptr) {
        return -1;
    }
    CopyText(wwn, sizeof(wwn), row->wwn);
    return 0;
}

int GetUnitStatus(std::uint32_t domain, std::uint16_t& status) {
    const std::lock_guard lock(state.rowsMutex);
    const ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr) {
        return -1;
    }
    status = row->status;
    return 0;
}

int SetUnitStatus(std::uint32_t domain, std::uint16_t status) {
    const std::lock_guard lock(state.rowsMutex);
    ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr) {
        return -1;
    }
    row->status = status;
    return 0;
}

int GetUnitReset(std::uint32_t domain, std::uint32_t& reset) {
    const std::lock_guard lock(state.rowsMutex);
    const ConnUnitEntry* row = RowOfDomainOrLocal(domain);
    if (row == nullptr) {
        return -1;
    }
    reset = row->reset;
    return 0;
}

int SetUnitReset(std::uint32_t domain, std::uint32_t reset) {
    const std::lock_guard lock(state.rowsMutex);
    ConnUnitEntry* row = reset > 1 ? nullptr : RowOfDomain(domain);
    if (row == nullptr) {
        return -1;
    }
    row->reset = reset;
    return 0;
}

int BeginUnitReset(std::uint32_t domain, std::uint16_t& status) {
    const std::lock_guard lock(state.rowsMutex);
    ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr || row->reset != 0) {
        return -1;
    }
    row->reset = 1;
    status = row->status;
    return 0;
}

std::int32_t GetUnitEventSupport(std::uint32_t index) {
    return index >= connUnitTbl.size() ? -1
                                       : static_cast<std::int32_t>(connUnitTbl[index].eventSupport);
}

int GetUnitAndPortFromFlatPort(std::uint32_t flatPort, FlatPort& found) {
    std::uint32_t port = flatPort;
    for (const ConnUnitEntry& row : connUnitTbl) {
        if (!IsUsed(row)) {
            break;
        }
        const std::uint32_t ports = GetMaxPorts(row.domainId);
        if (port < ports) {
            found = {row.domainId, IndexOf(row), port};
            return 0;
        }
        port -= ports;
    }
    return -1;
}

WwnBytes BytesOfWwn(const char* wwn) {
    WwnBytes bytes;
    ReadHexText(wwn, std::span<std::uint8_t>(bytes));
    return bytes;
}

std::uint16_t GetAscendingRows() {
    return state.ascendingRows;
}

std::uint16_t GetRowsEnd() {
    return state.rowsEnd;
}

void BroadcastToFabric(const char* command) {
    for (const ConnUnitEntry& row : connUnitTbl) {
        if (row.domainId == 0) {
            break;
        }
        if (row.domainId == GetLocalDomainId() || row.eventSupport == 0) {
            continue;
        }
        if (!IsAnswering(row.domainId)) {
            TraceLog(kSevere, "Private event not sent to domainId %d, which does not answer",
                     row.domainId);
        } else if (!HasLeftFabric(row.domainId)) {
            ReplyText ignored;
            SwitchMgmtQuery(row.domainId, command, ignored, kString);
        }
    }
}

bool HasLeftFabric(std::uint16_t domain) {
    ReplyText ignored;
    const std::uint16_t result =
        SwitchMgmtQueryf(0, ignored, kString, nullptr, "Get.Oper.Fabric.Entry.%d.WWN", domain);
    return result != 0 && result != kQueryFailed;
}

bool IsPortOfLocalUnit(std::uint32_t port) {
    const ConnUnitEntry* row = RowOfDomainOrLocal(0);
    return row != nullptr && port < GetMaxPorts(row->domainId);
}

}  // namespace snmpmain
