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
    // whoever receives reports the local unit's reset.
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
        const ConnUnitEntry* old = RowOfDomain(row.domainId);
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
    const std::lock_guard lock(state.rowsMutex);
    if (ConnUnitEntry* row = RowOfDomain(domain); row != nullptr) {
        row->fcAddress = fcAddress;
    }
}

void SetUnitEventSupport(std::uint16_t domain, bool supports) {
    const std::lock_guard lock(state.rowsMutex);
    if (ConnUnitEntry* row = RowOfDomain(domain); row != nullptr) {
        row->eventSupport = supports ? 1 : 0;
    }
}

void DumpConnUnitTable() {
    if (!IsTraced(kTrace)) {
        return;
    }
    TraceLog(kTrace, "\nConnUnitTable:");
    TraceLog(kTrace, "Index DomainId FCAddress  WWN              Reset  Event support");
    for (int index = 0; const ConnUnitEntry& row : connUnitTbl) {
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
    state.newer[IndexOf(*row)].status = true;
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
    state.newer[IndexOf(*row)].reset = true;
    return 0;
}

int BeginUnitReset(std::uint32_t domain, std::uint16_t& status) {
    const std::lock_guard lock(state.rowsMutex);
    ConnUnitEntry* row = RowOfDomain(domain);
    if (row == nullptr || row->reset != 0) {
        return -1;
    }
    row->reset = 1;
    state.newer[IndexOf(*row)].reset = true;
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

bool IsPortOfLocalUnit(std::uint32_t port) {
    const ConnUnitEntry* row = RowOfDomainOrLocal(0);
    return row != nullptr && port < AskNumber(row->domainId, Fact::kMaxPorts);
}

}  // namespace snmpmain
