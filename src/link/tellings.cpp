#include "src/link/tellings.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bitset>
#include <iterator>
#include <list>
#include <mutex>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include "src/base/main_thread.h"
#include "src/base/progress.h"
#include "src/base/trace_log.h"
#include "src/link/addressing.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"

namespace snmpmain {
namespace {

using Time = TellClock::time_point;

constexpr Time kNever = Time::max();
constexpr std::chrono::seconds kPatience{10};  // that of any command but a "Get."

// As many as this are under way at a time; docs/performance.md says why. One that is not answered
// soon does not count: a switch that has left the fabric must not hold up those after it.
constexpr std::size_t kWindow = 32;
constexpr std::chrono::milliseconds kSoon{500};

constexpr std::chrono::milliseconds kDoubtInterval{
    50};  // of looks, while it is in doubt who answers

// As many events as one switch can have before it: what a full queue of notifications leads to.
constexpr std::size_t kMostWaiting = 256;

// Domain ids have 8 bits; the local switch has place 0.
constexpr std::size_t kPlaces = 257;

struct Telling {
    TellingNumber number;  // ascends in the order of handing over
    std::uint16_t domain;  // as it was given, to be addressed so
    std::shared_ptr<const std::string> command;
    StatusByte status;
    ToldHandler told;
};

// What one switch is told. The first one is under way while there is a sequence.
struct Line {
    std::list<Telling> waiting;
    std::uint32_t sequence = 0;
    bool repeated = false;
    Time sent{};
};

struct Ended {
    ToldHandler told;
    std::uint16_t domain;
    Outcome outcome;
};

struct State {
    std::mutex mutex;
    std::array<Line, kPlaces> lines;
    TellingNumber nextNumber = 0;
    std::size_t left = 0;               // in all lines
    std::vector<Ended> ended;           // not handed out yet
    std::atomic<bool> any{false};       // left > 0
    std::atomic<bool> anyEnded{false};  // `ended` is not empty
    Time nextTime = kNever;             // when one is to be repeated or given up, or can be sent
};

State& state = *new State;  // the ListenThread uses it until the process is gone

std::size_t PlaceOf(std::uint32_t domain) {
    return IsLocalDomain(domain) ? 0 : std::min<std::size_t>(domain, kPlaces - 1);
}

std::size_t PlaceOf(const Line& line) {
    return static_cast<std::size_t>(&line - state.lines.data());
}

bool IsUnderWay(const Line& line) {
    return line.sequence != 0;
}

bool IsExpectedSoon(const Line& line, Time now) {
    return IsUnderWay(line) && !line.repeated && now - line.sent < kSoon;
}

void NoteEnd(const Telling& telling, Outcome outcome) {
    if (telling.told != nullptr) {
        state.ended.push_back({telling.told, telling.domain, outcome});
        if (!state.anyEnded.exchange(true)) {
            NotifyQueue::Wake();
        }
    }
}

void CountLeft(std::size_t left) {
    state.left = left;
    state.any = left > 0;
}

// Ends the line's first telling.
void EndFirst(Line& line, Outcome outcome) {
    const Telling first = std::move(line.waiting.front());
    line.waiting.pop_front();
    line.sequence = 0;
    line.repeated = false;
    state.nextTime = Time{};
    NoteEnd(first, outcome);  // before nothing seems to be left
    CountLeft(state.left - 1);
}

// Forgets what waits for the same handler.
void DropWaiting(Line& line, const Telling& newer) {
    const auto first = std::next(line.waiting.begin(), IsUnderWay(line) ? 1 : 0);
    const std::size_t before = line.waiting.size();
    line.waiting.erase(std::remove_if(first, line.waiting.end(),
                                      [&newer](const Telling& one) {
                                          return one.told == newer.told &&
                                                 one.status == newer.status;
                                      }),
                       line.waiting.end());
    CountLeft(state.left - (before - line.waiting.size()));
}

void HandOver(Telling telling) {
    Line& line = state.lines[PlaceOf(telling.domain)];
    if (telling.status == StatusByte::kIsIgnored) {
        DropWaiting(line, telling);
    } else if (line.waiting.size() >= kMostWaiting) {
        TraceLog(kSevere, "Not told to domainId %d, which is told too much: %s", telling.domain,
                 telling.command->c_str());
        NoteEnd(telling, Outcome::kNoAnswer);
        return;
    }
    telling.number = state.nextNumber++;
    line.waiting.push_back(std::move(telling));
    CountLeft(state.left + 1);
    state.nextTime = Time{};
}

// The line whose turn it is, or null when none has or the window is full.
Line* NextLine(Time now, const std::bitset<kPlaces>& inDoubt) {
    Line* next = nullptr;
    std::size_t underWay = 0;
    for (Line& line : state.lines) {
        if (IsUnderWay(line)) {
            underWay += IsExpectedSoon(line, now) ? 1 : 0;
        } else if (!line.waiting.empty() && !inDoubt[PlaceOf(line)] &&
                   (next == nullptr ||
                    line.waiting.front().number < next->waiting.front().number)) {
            next = &line;
        }
    }
    return underWay < kWindow ? next : nullptr;
}

DueTelling DueOf(const Line& line) {
    const Telling& first = line.waiting.front();
    return {PlaceOf(line), first.number, first.domain, line.sequence, first.command};
}

// The line that is to tell it, or null when it was forgotten meanwhile.
Line* LineOf(const DueTelling& due) {
    Line& line = state.lines[due.place];
    return !line.waiting.empty() && line.waiting.front().number == due.number ? &line : nullptr;
}

void LogNoValue() {
    TraceLog(kSevere, "No value returned from switch management");
}

// Repeats or gives up one that has waited long enough for its answer. One to a switch that has
// turned out to be silent has.
bool TakeOverdue(Time now, DueTelling& due) {
    for (Line& line : state.lines) {
        if (!IsUnderWay(line)) {
            continue;
        }
        const std::uint16_t domain = line.waiting.front().domain;
        if (IsSilent(domain)) {
            LogNoValue();
            NoteRefused(domain);
            EndFirst(line, Outcome::kNoAnswer);
        } else if (now - line.sent >= kPatience) {
            LogNoValue();
            if (!line.repeated) {
                line.repeated = true;
                line.sent = now;
                due = DueOf(line);
                return true;
            }
            NoteUnanswered(domain);
            EndFirst(line, Outcome::kNoAnswer);
        }
    }
    return false;
}

bool TakeFirst(Time now, DueTelling& due) {
    std::bitset<kPlaces> inDoubt;
    while (Line* line = NextLine(now, inDoubt)) {
        const std::uint16_t domain = line->waiting.front().domain;
        switch (AdviceFor(domain)) {
            case Advice::kAsk:
                due = DueOf(*line);
                return true;
            case Advice::kAwaitProbe:
                inDoubt.set(PlaceOf(*line));
                break;
            case Advice::kFail:
                TraceLog(kSevere, "Not told to domainId %d, which does not answer: %s", domain,
                         line->waiting.front().command->c_str());
                NoteRefused(domain);
                EndFirst(*line, Outcome::kNoAnswer);
                break;
        }
    }
    return false;
}

// After nothing could be sent: when something can.
void NoteNextTime(Time now) {
    Time next = kNever;
    for (const Line& line : state.lines) {
        if (IsUnderWay(line)) {
            next = std::min(next,
                            IsExpectedSoon(line, now) ? line.sent + kSoon : line.sent + kPatience);
        }
    }
    if (AnyInDoubt()) {
        next = std::min(next, now + kDoubtInterval);
    }
    state.nextTime = next;
}

Line* FindLine(std::uint32_t sequence) {
    const auto line = std::ranges::find(state.lines, sequence, &Line::sequence);
    return line == state.lines.end() ? nullptr : &*line;
}

// How a reply ends the line's first telling.
Outcome OutcomeOf(const Line& line, const ReplyFrame& reply) {
    ReplyText text;
    if (CheckReplyFrame(reply, kMinFrameSize, text) != 0) {
        if (line.waiting.front().status == StatusByte::kCounts) {
            SetFabricUpdatePending(true);
        }
        return Outcome::kRefused;
    }
    TraceLog(kTrace, "%-3d<< %s", line.waiting.front().domain, text.data());
    return ParseReturnValue(text.data(), text.size(), kString, nullptr) == 0 ? Outcome::kAnswered
                                                                             : Outcome::kRefused;
}

}  // namespace

void Tell(std::span<const std::uint16_t> domains, const char* command, StatusByte status,
          ToldHandler told) {
    if (domains.empty()) {
        return;
    }
    try {
        const auto shared = std::make_shared<const std::string>(command);
        const std::lock_guard lock(state.mutex);
        for (const std::uint16_t domain : domains) {
            HandOver({0, domain, shared, status, told});
        }
    } catch (const std::bad_alloc&) {
        TraceLog(kSevere, "No memory to tell: %s", command);
    }
    ServeTellings();
}

TellingNumber NextTelling() {
    const std::lock_guard lock(state.mutex);
    return state.nextNumber;
}

void HandOutTold() {
    AssertMainThread();
    if (!state.anyEnded) {
        return;
    }
    std::vector<Ended> ended;
    {
        const std::lock_guard lock(state.mutex);
        ended.swap(state.ended);
        state.anyEnded = false;
    }
    for (const Ended& one : ended) {
        one.told(one.domain, one.outcome);
    }
}

bool IsTelling(TellingNumber before) {
    if (!state.any) {
        return false;
    }
    const std::lock_guard lock(state.mutex);
    const Time now = TellClock::now();
    return std::ranges::any_of(state.lines, [now, before](const Line& line) {
        return !line.waiting.empty() && line.waiting.front().number < before &&
               (!IsUnderWay(line) || IsExpectedSoon(line, now));
    });
}

void KeepTellingsOf(std::span<const std::uint16_t> listed) {
    if (!state.any) {
        return;
    }
    const std::lock_guard lock(state.mutex);
    for (std::size_t place = 1; place < kPlaces; ++place) {
        Line& line = state.lines[place];
        if (std::ranges::find(listed, place) == listed.end()) {
            CountLeft(state.left - line.waiting.size());
            line = {};
        }
    }
    state.nextTime = Time{};
}

void FinishTellings() {
    while (state.any) {
        AwaitTellings(kSlice);
        // What is not answered soon the ListenThread receives.
        std::this_thread::sleep_for(IsTelling() ? std::chrono::milliseconds(0) : kSlice);
    }
    HandOutTold();
}

void ResetTellings() {
    const std::lock_guard lock(state.mutex);
    for (Line& line : state.lines) {
        line = {};
    }
    state.ended.clear();
    state.anyEnded = false;
    CountLeft(0);
}

Time NextTellingTime() {
    if (!state.any) {
        return kNever;
    }
    const std::lock_guard lock(state.mutex);
    return state.nextTime;
}

bool TakeDueTelling(Time now, DueTelling& due) {
    const std::lock_guard lock(state.mutex);
    if (TakeOverdue(now, due) || TakeFirst(now, due)) {
        return true;
    }
    NoteNextTime(now);
    return false;
}

void NoteTelling(const DueTelling& due, Time now) {
    const std::lock_guard lock(state.mutex);
    if (Line* line = LineOf(due); line != nullptr) {
        line->sequence = due.sequence;
        line->sent = now;
    }
}

void DropTelling(const DueTelling& due) {
    const std::lock_guard lock(state.mutex);
    if (Line* line = LineOf(due); line != nullptr) {
        EndFirst(*line, Outcome::kRefused);
    }
}

bool TakeTellingReply(std::uint32_t sequence, const ReplyFrame& reply) {
    const std::lock_guard lock(state.mutex);
    Line* line = FindLine(sequence);
    if (line == nullptr) {
        return false;
    }
    EndFirst(*line, OutcomeOf(*line, reply));
    return true;
}

bool IsTellingUnderWay(std::uint32_t sequence) {
    const std::lock_guard lock(state.mutex);
    return FindLine(sequence) != nullptr;
}

}  // namespace snmpmain
