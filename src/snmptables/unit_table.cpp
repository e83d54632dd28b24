#include "src/snmptables/unit_table.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <span>

#include "src/base/text.h"
#include "src/base/trace_log.h"

namespace snmpmain {

std::array<ConnUnitEntry, MAX_CONN_UNITS> connUnitTbl{};

namespace {

constexpr ConnUnitEntry kEmptyRow{0, 0, kUnitUnknown, {}, 0, 0};

// What of a row was set after NoteChangesFromNowOn.
struct Newer {
    bool status = false;
    bool reset = false;
};

struct UnitTableState {
    // Held for every change of a row in use, and for every look at a row's status or reset flag:
    // the receiving thread reports the local unit's reset.
    std::mutex rowsMutex;
    std::array<Newer, MAX_CONN_UNITS> newer{};
    std::uint16_t ascendingRows = 0;
    std::uint16_t rowsEnd = 0;
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

std::uint16_t IndexOf(const ConnUnitEntry& row) {
    return static_cast<std::uint16_t>(&row - connUnitTbl.data());
}

// Changes or reads the row of a domain that any thread may look at. Returns 0, or -1 when there is
// none.
template <typename Use>
int WithRow(std::uint32_t domain, Use use) {
    const std::lock_guard lock(state.rowsMutex);
    const ConnUnitEntry* row = FindUnit(domain);
    if (row == nullptr) {
        return -1;
    }
    use(connUnitTbl[IndexOf(*row)]);
    return 0;
}

void SetReset(ConnUnitEntry& row, std::uint32_t reset) {
    row.reset = reset;
    state.newer[IndexOf(row)].reset = true;
}

std::uint32_t DomainOrLocal(std::uint32_t domain) {
    return domain == 0 ? GetLocalDomainId() : domain;
}

int TraceUnknownDomain(std::uint32_t domain, const char* end = "") {
    TraceLog(kError, "Invalid connUnitTbl[] DomainId- %d%s", static_cast<int>(domain), end);
    return -1;
}

const ConnUnitEntry* LoggedRowOfWwn(const char* wwn) {
    const auto row = std::ranges::find_if(
        connUnitTbl, [&](const ConnUnitEntry& unit) { return std::strcmp(unit.wwn, wwn) == 0; });
    if (row == connUnitTbl.end()) {
        TraceLog(kError, "Invalid connUnitTbl[] WWN- %s", wwn);
        return nullptr;
    }
    return &*row;
}

}  // namespace

void ResetConnUnitTable() {
    const std::lock_guard lock(state.rowsMutex);
    connUnitTbl.fill(kEmptyRow);
    NoteRowOrder();
}

void NoteChangesFromNowOn() {
    const std::lock_guard lock(state.rowsMutex);
    state.newer = {};
}

void ReplaceUnits(std::span<ConnUnitEntry> rows) {
    const std::lock_guard lock(state.rowsMutex);
    for (ConnUnitEntry& row : rows) {
        const ConnUnitEntry* old = FindUnit(row.domainId);
        if (old == nullptr || std::strcmp(old->wwn, row.wwn) != 0) {
            continue;
        }
        const Newer& newer = state.newer[IndexOf(*old)];
        row.status = newer.status ? old->status : row.status;
        row.reset = newer.reset ? old->reset : row.reset;
    }
    std::ranges::copy(rows, connUnitTbl.begin());
    if (rows.size() < connUnitTbl.size()) {
        connUnitTbl[rows.size()] = kEmptyRow;
    }
    NoteRowOrder();
}

void NoteGreeting(std::uint16_t domain, std::uint32_t fcAddress) {
    WithRow(domain, [&](ConnUnitEntry& row) { row.fcAddress = fcAddress; });
}

void SetUnitEventSupport(std::uint16_t domain, bool supports) {
    WithRow(domain, [&](ConnUnitEntry& row) { row.eventSupport = supports ? 1 : 0; });
}

void DumpConnUnitTable() {
    if (!IsTraced(kTrace)) {
        return;
    }
    TraceLog(kTrace, "\nConnUnitTable:");
    TraceLog(kTrace, "Index DomainId FCAddress  WWN              Reset  Event support");
    for (const ConnUnitEntry& row : std::span(connUnitTbl).first(GetUnitCount())) {
        TraceLog(kTrace, "%-5i %-8d 0x%08x %-16s %-6d %-6d", IndexOf(row), row.domainId,
                 row.fcAddress, row.wwn, static_cast<int>(row.reset),
                 static_cast<int>(row.eventSupport));
    }
    TraceLog(kTrace, "%s", "");
}

std::uint16_t GetUnitCount() {
    const auto end = std::ranges::find(connUnitTbl, 0, &ConnUnitEntry::domainId);
    return static_cast<std::uint16_t>(end - connUnitTbl.begin());
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

const ConnUnitEntry* FindUnit(std::uint32_t domain) {
    const auto end = connUnitTbl.begin() + GetUnitCount();
    const auto row = std::find_if(connUnitTbl.begin(), end, [domain](const ConnUnitEntry& unit) {
        return unit.domainId == domain;
    });
    return row == end ? nullptr : &*row;
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
    domain = DomainOrLocal(domain);
    const ConnUnitEntry* row = FindUnit(domain);
    if (row == nullptr) {
        return TraceUnknownDomain(domain);
    }
    index = IndexOf(*row);
    return 0;
}

int GetWwnFromDomainId(std::uint32_t domain, char (&wwn)[kWwnTextSize]) {
    domain = DomainOrLocal(domain);
    const int result =
        WithRow(domain, [&](const ConnUnitEntry& row) { CopyText(wwn, sizeof(wwn), row.wwn); });
    return result == 0 ? 0 : TraceUnknownDomain(domain);
}

std::uint32_t GetFcAddressFromDomainId(std::uint32_t domain) {
    domain = DomainOrLocal(domain);
    const ConnUnitEntry* row = FindUnit(domain);
    if (row == nullptr) {
        TraceUnknownDomain(domain, "\n");
        return 0xFFFFFFFF;
    }
    return row->fcAddress;
}

int GetUnitStatus(std::uint32_t domain, std::uint16_t& status) {
    return WithRow(domain, [&](const ConnUnitEntry& row) { status = row.status; });
}

int SetUnitStatus(std::uint32_t domain, std::uint16_t status) {
    return WithRow(domain, [&](ConnUnitEntry& row) {
        row.status = status;
        state.newer[IndexOf(row)].status = true;
    });
}

int GetUnitReset(std::uint32_t domain, std::uint32_t& reset) {
    return WithRow(DomainOrLocal(domain), [&](const ConnUnitEntry& row) { reset = row.reset; });
}

int SetUnitReset(std::uint32_t domain, std::uint32_t reset) {
    if (reset > 1) {
        return -1;
    }
    return WithRow(domain, [&](ConnUnitEntry& row) { SetReset(row, reset); });
}

int BeginUnitReset(std::uint32_t domain, std::uint16_t& status) {
    bool begins = false;
    WithRow(domain, [&](ConnUnitEntry& row) {
        begins = row.reset == 0;
        status = row.status;
        if (begins) {
            SetReset(row, 1);
        }
    });
    return begins ? 0 : -1;
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
        const std::uint32_t ports = AskNumber(row.domainId, Fact::kMaxPorts);
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

}  // namespace snmpmain
