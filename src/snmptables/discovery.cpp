#include "src/snmptables/discovery.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>

#include "src/base/byte_order.h"
#include "src/base/system_log.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/link/worked_with.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_status.h"

namespace snmpmain {

std::uint16_t unitStatusRefreshPending = 0;

namespace {

using Clock = std::chrono::steady_clock;

static_assert(kMaxDomains <= MAX_CONN_UNITS);

constexpr ConnUnitEntry kNewRow{0, 0, kUnitUnknown, {}, 0, 0};
constexpr int kFailuresBeforeGivingUp = 2;
constexpr std::chrono::seconds kRepetitionPause{1};

// A unit that the fabric lists stays in the table for as long as it has not been silent.
constexpr std::chrono::seconds kSilenceBeforeLeaving{10};

struct DomainList {
    std::array<std::uint16_t, kMaxDomains> domains{};
    std::size_t count = 0;

    std::span<const std::uint16_t> Listed() const {
        return std::span(domains).first(count);
    }
    void Add(std::uint16_t domain) {
        domains[count++] = domain;
    }
};

enum class WalkPhase {
    kPing,
    kDomainId,
    kProxy,
    kMergeMode,
    kNextDomain,
    kWwn,
    kHello,
    kGreetings
};

// The walk over the fabric, and the table under construction.
struct Walk {
    WalkPhase phase = WalkPhase::kPing;
    KeyWalk domains{kDomainList};
    std::uint16_t domain = 0;
    std::array<ConnUnitEntry, MAX_CONN_UNITS> rows{};
    std::size_t count = 0;
    DomainList listed;          // what the walk has met
    TellingNumber awaited = 0;  // greetings have smaller ones
};

struct Departures {
    std::array<std::array<char, kWwnTextSize>, MAX_CONN_UNITS> wwns{};
    std::size_t count = 0;
    std::size_t reported = 0;
};

enum class RefreshPhase {
    kBegin,
    kList,
    kWithdraw,
    kAwaitWithdrawal,
    kWalk,
    kPause,
    kRegister,
    kReport
};

struct Refresh {
    RefreshPhase phase = RefreshPhase::kBegin;
    int failures = 0;
    bool walked = false;
    Clock::time_point pauseEnd{};
    std::uint32_t localDomain = 0;  // at its beginning
    TellingNumber awaited = 0;      // withdrawals have smaller ones
};

struct State {
    Walk walk;
    Departures departures;
    DomainList walked;  // by the last walk that replaced the table
    Refresh refresh;
    std::bitset<MAX_CONN_UNITS> statusWanted;       // by row
    std::bitset<MAX_CONN_UNITS> statusWantedFirst;  // of units that have just come back
    std::optional<UnitStatusReading> statusReading;
    std::uint16_t statusRow = 0;  // of that reading
    void (*departureHandler)(NotificationRecord&) = nullptr;
    void (*registrationHandler)(bool) = nullptr;
};

State state;

const ConnUnitEntry* FindUnit(std::uint16_t domain) {
    const auto end = connUnitTbl.begin() + GetUnitCount();
    const auto row = std::find_if(connUnitTbl.begin(), end, [domain](const ConnUnitEntry& unit) {
        return unit.domainId == domain;
    });
    return row == end ? nullptr : &*row;
}

std::span<ConnUnitEntry> WalkedRows() {
    return std::span(state.walk.rows).first(state.walk.count);
}

// ---- the walk ----

void BeginWalk() {
    Walk& walk = state.walk;
    walk.phase = WalkPhase::kPing;
    walk.domains = KeyWalk(kDomainList);
    walk.count = 0;
    walk.listed = {};
}

Progress GoOn(WalkPhase next) {
    state.walk.phase = next;
    return Progress::kMore;
}

// A listed unit that the walk could not reach stays as it was, unless its probes say that it is
// silent. False for one that is to be left out, and for a new one.
bool KeepsItsRow(ConnUnitEntry& row) {
    const ConnUnitEntry* old = FindUnit(row.domainId);
    if (old == nullptr || std::strcmp(old->wwn, row.wwn) != 0 ||
        SilentFor(row.domainId) >= kSilenceBeforeLeaving) {
        return false;
    }
    row = *old;
    return true;
}

Progress AskForDomain() {
    Walk& walk = state.walk;
    switch (NextDomain(walk.domains, walk.domain)) {
        case DomainStep::kFound:
            walk.listed.Add(walk.domain);
            return GoOn(WalkPhase::kWwn);
        case DomainStep::kEnd:
            walk.awaited = NextTelling();
            return GoOn(WalkPhase::kGreetings);
        default:
            return Progress::kFailed;
    }
}

Progress AskForWwn() {
    Walk& walk = state.walk;
    ReplyText wwn;
    if (SwitchMgmtQueryf(0, wwn, kString, nullptr, "Get.Oper.Fabric.Entry.%i.WWN", walk.domain) !=
        0) {
        return Progress::kFailed;
    }
    // A row without a WWN would end every table: it marks the rows that are not in use.
    const bool isUnit = std::strcmp(wwn.data(), kNoWwn) != 0 && wwn[0] != '\0';
    if (!isUnit || (GetProxyEnable() == 0 && !IsLocalDomain(walk.domain))) {
        return GoOn(WalkPhase::kNextDomain);
    }
    ConnUnitEntry& row = walk.rows[walk.count];
    row = kNewRow;
    row.domainId = walk.domain;
    CopyText(row.wwn, sizeof(row.wwn), wwn.data());
    return GoOn(WalkPhase::kHello);
}

Progress Greet() {
    Walk& walk = state.walk;
    ConnUnitEntry& row = walk.rows[walk.count];
    const bool answers = HelloUnit(walk.domain, row) == 0;
    if (!answers && IsLocalDomain(walk.domain)) {
        return Progress::kFailed;
    }
    walk.count += answers || KeepsItsRow(row) ? 1 : 0;
    return GoOn(WalkPhase::kNextDomain);
}

// Notes the units of the present table that are missing in the new one.
void FindDeletedUnits() {
    Departures& departures = state.departures;
    departures.count = departures.reported = 0;
    for (const ConnUnitEntry& old : std::span(connUnitTbl).first(GetUnitCount())) {
        const bool stays = std::ranges::any_of(
            WalkedRows(), [&](const ConnUnitEntry& row) { return row.domainId == old.domainId; });
        if (!stays) {
            std::ranges::copy(old.wwn, departures.wwns[departures.count++].begin());
        }
    }
}

bool HasUnitJoined() {
    return std::ranges::any_of(
        WalkedRows(), [](const ConnUnitEntry& row) { return FindUnit(row.domainId) == nullptr; });
}

// Sorts the new rows by WWN text, keeping the order of equal ones.
void SortUnitsByWwn() {
    const auto before = [](const ConnUnitEntry& a, const ConnUnitEntry& b) {
        return std::strcmp(a.wwn, b.wwn) < 0;
    };
    const auto rows = WalkedRows();
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        std::rotate(std::upper_bound(rows.begin(), row, *row, before), row, row + 1);
    }
}

// Puts the new table in force.
void Commit() {
    NoteListed(state.walk.listed.Listed());
    KeepTellingsOf(state.walk.listed.Listed());
    FindDeletedUnits();
    if (HasUnitJoined() || state.departures.count > 0) {
        MarkNameServerStale();  // of the whole fabric
    }
    state.walked = state.walk.listed;
    SortUnitsByWwn();
    ReplaceUnits(WalkedRows());
    DumpConnUnitTable();
    state.statusReading.reset();
    state.statusWanted.reset();
    state.statusWantedFirst.reset();
    for (std::size_t row = 0; row < state.walk.count; ++row) {
        state.statusWanted.set(row);
    }
    unitStatusRefreshPending = 1;
}

// A greeting that is not answered soon is noted in its row later.
Progress AwaitGreetings() {
    if (IsTelling(state.walk.awaited)) {
        AwaitTellings(kSlice, state.walk.awaited);
        return Progress::kMore;
    }
    HandOutTold();
    Commit();
    return Progress::kDone;
}

Progress StepWalk() {
    switch (state.walk.phase) {
        case WalkPhase::kPing:
            NoteChangesFromNowOn();
            return PingSwitchMgmt(0) == 0 ? GoOn(WalkPhase::kDomainId) : Progress::kFailed;
        case WalkPhase::kDomainId:
            ReadFact(Fact::kLocalDomainId);
            return GoOn(WalkPhase::kProxy);
        case WalkPhase::kProxy:
            ReadFact(Fact::kProxyEnable);
            return GoOn(WalkPhase::kMergeMode);
        case WalkPhase::kMergeMode:
            ReadFact(Fact::kMergeMode);
            return GoOn(WalkPhase::kNextDomain);
        case WalkPhase::kNextDomain:
            return AskForDomain();
        case WalkPhase::kWwn:
            return AskForWwn();
        case WalkPhase::kHello:
            return Greet();
        case WalkPhase::kGreetings:
            return AwaitGreetings();
    }
    return Progress::kFailed;
}

Progress ReportDeparture() {
    Departures& departures = state.departures;
    if (departures.reported == departures.count) {
        return Progress::kDone;
    }
    NotificationRecord record{};
    record.domainId = static_cast<std::uint16_t>(GetLocalDomainId());
    record.kind = kUnitDeletedKind;
    CopyText(record.text, sizeof(record.text), departures.wwns[departures.reported++].data());
    if (state.departureHandler != nullptr) {
        state.departureHandler(record);
    }
    return Progress::kMore;
}

int WalkOnce() {
    const int result = DoAll(StepWalk);
    return result == 0 ? DoAll(ReportDeparture) : -1;
}

// Silence is no refusal.
void TakeGreeting(std::uint16_t domain, Outcome outcome) {
    if (outcome == Outcome::kNoAnswer) {
        return;
    }
    const bool supports = outcome == Outcome::kAnswered;
    SetUnitEventSupport(domain, supports);
    for (ConnUnitEntry& row : WalkedRows()) {
        if (row.domainId == domain) {
            row.eventSupport = supports ? 1 : 0;
        }
    }
}

bool FindWantedRow(std::uint16_t& found) {
    for (const auto& wanted : {state.statusWantedFirst, state.statusWanted}) {
        for (std::uint16_t row = 0; row < GetUnitCount(); ++row) {
            if (wanted[row]) {
                found = row;
                return true;
            }
        }
    }
    return false;
}

// ---- the refresh ----

Progress GoOn(RefreshPhase next) {
    state.refresh.phase = next;
    return Progress::kMore;
}

void Register(bool on) {
    if (state.registrationHandler != nullptr) {
        state.registrationHandler(on);
    }
}

// A walk has ended. Whether it is repeated; a fourth one that succeeds is still reported: by then
// the count of failures stands at three.
bool IsRepeated(bool walked) {
    Refresh& refresh = state.refresh;
    refresh.walked = walked;
    return !walked && refresh.failures++ <= kFailuresBeforeGivingUp && !IsSilent(0);
}

// Nobody is to wait for a switch that has left, requests in between neither.
Progress ListDomains() {
    Walk& walk = state.walk;
    switch (NextDomain(walk.domains, walk.domain)) {
        case DomainStep::kFound:
            walk.listed.Add(walk.domain);
            return Progress::kMore;
        case DomainStep::kEnd:
            NoteListed(walk.listed.Listed());
            KeepTellingsOf(walk.listed.Listed());
            break;
        default:
            break;
    }
    return GoOn(RefreshPhase::kWithdraw);
}

// With another id of the local switch the table in force fits nothing any more: requests are not
// served from it.
Progress StepRefreshWalk() {
    Progress walked = StepWalk();
    while (walked == Progress::kMore && GetLocalDomainId() != state.refresh.localDomain) {
        walked = StepWalk();
    }
    return walked;
}

Progress EndRefresh() {
    if (!state.refresh.walked) {
        NoteWorkFailed(Worker::kUnitTable);
    }
    if (state.refresh.failures > kFailuresBeforeGivingUp) {
        SystemLog("SNMP:Failed to properly update connUnitTable!\n");
        return Progress::kFailed;
    }
    return state.refresh.walked ? Progress::kDone : Progress::kFailed;
}

Progress StepRefresh() {
    Refresh& refresh = state.refresh;
    switch (refresh.phase) {
        case RefreshPhase::kBegin:
            if (IsSilent(0)) {
                return Progress::kFailed;  // when it answers again, the table is refreshed
            }
            BeginWalk();
            refresh.localDomain = GetLocalDomainId();
            return GoOn(RefreshPhase::kList);
        case RefreshPhase::kList:
            return ListDomains();
        case RefreshPhase::kWithdraw:
            Register(false);
            refresh.awaited = NextTelling();
            return GoOn(RefreshPhase::kAwaitWithdrawal);
        case RefreshPhase::kAwaitWithdrawal:
            if (IsTelling(refresh.awaited)) {
                AwaitTellings(kSlice, refresh.awaited);
                return Progress::kMore;
            }
            BeginWalk();
            return GoOn(RefreshPhase::kWalk);
        case RefreshPhase::kWalk:
            if (const Progress walked = StepRefreshWalk(); walked == Progress::kMore) {
                return walked;
            } else if (IsRepeated(walked == Progress::kDone)) {
                refresh.pauseEnd = Clock::now() + kRepetitionPause;
                return GoOn(RefreshPhase::kPause);
            }
            return GoOn(RefreshPhase::kRegister);
        case RefreshPhase::kPause:
            if (Clock::now() < refresh.pauseEnd) {
                return Progress::kPaused;
            }
            BeginWalk();
            return GoOn(RefreshPhase::kWalk);
        case RefreshPhase::kRegister:
            Register(true);
            return GoOn(RefreshPhase::kReport);
        case RefreshPhase::kReport:
            if (refresh.walked && ReportDeparture() == Progress::kMore) {
                return Progress::kMore;
            }
            return EndRefresh();
    }
    return Progress::kFailed;
}

}  // namespace

void SetDepartureHandler(void (*handler)(NotificationRecord& record)) {
    state.departureHandler = handler;
}

void SetRegistrationHandler(void (*handler)(bool on)) {
    state.registrationHandler = handler;
}

std::span<const std::uint16_t> WalkedDomains() {
    return state.walked.Listed();
}

void ResetDiscovery() {
    state.refresh = {};
    state.statusWanted.reset();
    state.statusWantedFirst.reset();
    state.statusReading.reset();
    unitStatusRefreshPending = 0;
}

int InitConnUnitTable() {
    ResetConnUnitTable();
    std::fputs("SNMP:Updating connUnitTable...", stdout);
    std::fflush(stdout);
    BeginWalk();
    while (PingSwitchMgmt(0) != 0) {
        ::sleep(1);
    }
    state.walk.phase = WalkPhase::kDomainId;
    return WalkOnce();
}

int UpdateConnUnitTable() {
    BeginWalk();
    return WalkOnce();
}

void BeginConnUnitTableRefresh() {
    state.refresh = {};
}

Progress RefreshConnUnitTable() {
    // A status byte that the refresh itself has met is no reason for another one.
    const bool pendingBefore = IsFabricUpdatePending();
    const Progress progress = StepRefresh();
    SetFabricUpdatePending(pendingBefore);
    return progress;
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
    const ConnUnitEntry* old = FindUnit(domain);
    row.eventSupport = old != nullptr ? old->eventSupport : 0;  // until it answers
    Tell(std::span(&domain, 1), "Set.Cmd.Snmp.PrivateEvent.Hello", StatusByte::kIsIgnored,
         TakeGreeting);
    return 0;
}

void GreetUnit(std::uint16_t domain) {
    if (const ConnUnitEntry* row = FindUnit(domain); row != nullptr) {
        ConnUnitEntry greeted = *row;
        if (HelloUnit(domain, greeted) == 0) {
            NoteGreeting(domain, greeted.fcAddress);
        }
    }
}

void WantUnitStatus(std::uint16_t domain) {
    if (const ConnUnitEntry* row = FindUnit(domain); row != nullptr) {
        const auto index = static_cast<std::size_t>(row - connUnitTbl.data());
        state.statusWanted.set(index);
        state.statusWantedFirst.set(index);
        unitStatusRefreshPending = 1;
    }
}

int RefreshNextUnitStatus() {
    if (unitStatusRefreshPending != 1) {
        return 0;
    }
    if (!state.statusReading) {
        if (!FindWantedRow(state.statusRow)) {
            unitStatusRefreshPending = 0;
            return 0;
        }
        state.statusReading.emplace(connUnitTbl[state.statusRow].domainId);
    }
    const bool pendingBefore = IsFabricUpdatePending();
    const Progress progress = state.statusReading->Step();
    SetFabricUpdatePending(pendingBefore);
    if (progress != Progress::kMore) {
        SetUnitStatus(connUnitTbl[state.statusRow].domainId, state.statusReading->Status());
        state.statusWanted.reset(state.statusRow);
        state.statusWantedFirst.reset(state.statusRow);
        state.statusReading.reset();
    }
    return 0;
}

}  // namespace snmpmain
