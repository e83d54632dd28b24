#include "src/snmptables/discovery.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <span>

#include "src/base/byte_order.h"
#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/status_refresh.h"

namespace snmpmain {
namespace {

static_assert(kMaxDomains <= MAX_CONN_UNITS);

constexpr ConnUnitEntry kNewRow{0, 0, kUnitUnknown, {}, 0, 0};

// A unit that the fabric lists stays in the table for as long as it has not been silent.
constexpr std::chrono::seconds kSilenceBeforeLeaving{10};

enum class Phase { kPing, kFacts, kNextDomain, kWwn, kHello, kGreetings };

// The walk over the fabric, and the table under construction.
struct Walk {
    Phase phase = Phase::kPing;
    std::size_t fact = 0;
    KeyWalk domains{kDomainList};
    std::uint16_t domain = 0;
    std::array<ConnUnitEntry, MAX_CONN_UNITS> rows{};
    std::size_t count = 0;
    DomainList listed;          // what the walk has met
    TellingNumber awaited = 0;  // greetings have smaller ones
};

struct State {
    Walk walk;
    // Of the last walk that replaced the table.
    DomainList walked;
    std::array<DepartedUnit, MAX_CONN_UNITS> departed{};
    std::size_t departedCount = 0;
};

State state;

// What may have changed along with the fabric, asked of the local switch. One that is not answered
// stays as it was.
constexpr Fact kFacts[] = {Fact::kLocalDomainId, Fact::kProxyEnable, Fact::kMergeMode};

std::span<ConnUnitEntry> WalkedRows() {
    return std::span(state.walk.rows).first(state.walk.count);
}

Progress GoOn(Phase next) {
    state.walk.phase = next;
    return Progress::kMore;
}

Progress AskForLife() {
    NoteChangesFromNowOn();
    return PingSwitchMgmt(0) == 0 ? GoOn(Phase::kFacts) : Progress::kFailed;
}

Progress AskForFact() {
    ReadFact(kFacts[state.walk.fact++]);
    return GoOn(state.walk.fact < std::size(kFacts) ? Phase::kFacts : Phase::kNextDomain);
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
            return GoOn(Phase::kWwn);
        case DomainStep::kEnd:
            walk.awaited = NextTelling();
            return GoOn(Phase::kGreetings);
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
        return GoOn(Phase::kNextDomain);
    }
    ConnUnitEntry& row = walk.rows[walk.count];
    row = kNewRow;
    row.domainId = walk.domain;
    CopyText(row.wwn, sizeof(row.wwn), wwn.data());
    return GoOn(Phase::kHello);
}

Progress Greet() {
    Walk& walk = state.walk;
    ConnUnitEntry& row = walk.rows[walk.count];
    const bool answers = HelloUnit(walk.domain, row) == 0;
    if (!answers && IsLocalDomain(walk.domain)) {
        return Progress::kFailed;
    }
    walk.count += answers || KeepsItsRow(row) ? 1 : 0;
    return GoOn(Phase::kNextDomain);
}

// Notes the units of the present table that are missing in the new one.
void FindDeletedUnits() {
    state.departedCount = 0;
    for (const ConnUnitEntry& old : std::span(connUnitTbl).first(GetUnitCount())) {
        if (std::ranges::find(WalkedRows(), old.domainId, &ConnUnitEntry::domainId) ==
            WalkedRows().end()) {
            std::ranges::copy(old.wwn, state.departed[state.departedCount++].wwn);
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
    if (HasUnitJoined() || state.departedCount > 0) {
        MarkNameServerStale();  // of the whole fabric
    }
    state.walked = state.walk.listed;
    SortUnitsByWwn();
    ReplaceUnits(WalkedRows());
    DumpConnUnitTable();
    WantUnitStatuses();
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

}  // namespace

void BeginDiscovery() {
    Walk& walk = state.walk;
    walk.phase = Phase::kPing;
    walk.fact = 0;
    walk.domains = KeyWalk(kDomainList);
    walk.count = 0;
    walk.listed = {};
}

Progress StepDiscovery() {
    AssertMainThread();
    switch (state.walk.phase) {
        case Phase::kPing:
            return AskForLife();
        case Phase::kFacts:
            return AskForFact();
        case Phase::kNextDomain:
            return AskForDomain();
        case Phase::kWwn:
            return AskForWwn();
        case Phase::kHello:
            return Greet();
        case Phase::kGreetings:
            return AwaitGreetings();
    }
    return Progress::kFailed;
}

int UpdateConnUnitTable() {
    BeginDiscovery();
    while (AskForLife() != Progress::kMore) {
        ::sleep(1);
    }
    return DoAll(StepDiscovery);
}

int InitConnUnitTable() {
    ResetConnUnitTable();
    std::fputs("SNMP:Updating connUnitTable...", stdout);
    std::fflush(stdout);
    return UpdateConnUnitTable();
}

std::span<const std::uint16_t> GetWalkedDomains() {
    return state.walked.Listed();
}

std::span<const DepartedUnit> GetDepartedUnits() {
    return std::span(state.departed).first(state.departedCount);
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

}  // namespace snmpmain
