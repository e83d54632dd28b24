#include "src/snmptables/status_refresh.h"

#include <bitset>
#include <optional>

#include "src/base/main_thread.h"
#include "src/link/link.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

using Rows = std::bitset<MAX_CONN_UNITS>;

struct State {
    std::uint16_t unitStatusRefreshPending = 0;  // 1 while there may be a row that is wanted
    Rows wanted;
    Rows wantedFirst;  // of these, units that have just come back
    std::optional<UnitStatusReading> reading;
    std::uint16_t unitStatusCursor = 0;  // the row of that reading
};

State state;

// The first row that is wanted. Returns 0, or -1 when there is none.
int FindWantedRow(std::uint16_t& found) {
    const Rows& rows = state.wantedFirst.any() ? state.wantedFirst : state.wanted;
    for (found = 0; found < GetUnitCount(); ++found) {
        if (rows[found]) {
            return 0;
        }
    }
    return -1;
}

}  // namespace

void WantUnitStatuses() {
    state = {};
    state.wanted.set();
    state.unitStatusRefreshPending = 1;
}

void WantUnitStatus(std::uint16_t domain) {
    std::uint16_t row = 0;
    if (GetIndexFromDomainId(domain, row) == 0) {
        state.wanted.set(row);
        state.wantedFirst.set(row);
        state.unitStatusRefreshPending = 1;
    }
}

bool IsUnitStatusWanted() {
    return state.unitStatusRefreshPending == 1;
}

int RefreshNextUnitStatus() {
    AssertMainThread();
    if (state.unitStatusRefreshPending != 1) {
        return 0;
    }
    if (!state.reading) {
        if (FindWantedRow(state.unitStatusCursor) != 0) {
            state = {};
            return 0;
        }
        state.reading.emplace(connUnitTbl[state.unitStatusCursor].domainId);
    }
    // A status byte met here is no reason for another discovery.
    const bool pendingBefore = IsFabricUpdatePending();
    const Progress progress = state.reading->Step();
    SetFabricUpdatePending(pendingBefore);
    if (progress != Progress::kMore) {
        SetUnitStatus(connUnitTbl[state.unitStatusCursor].domainId, state.reading->Status());
        state.wanted.reset(state.unitStatusCursor);
        state.wantedFirst.reset(state.unitStatusCursor);
        state.reading.reset();
    }
    return 0;
}

}  // namespace snmpmain
