#include "src/link/reachability.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>
#include <mutex>

#include "src/base/trace_log.h"
#include "src/link/addressing.h"

namespace snmpmain {
namespace {

using Time = ReachClock::time_point;

constexpr Time kNever = Time::max();
constexpr std::chrono::seconds kProbePatience{2};  // that of a "Get."
constexpr std::chrono::seconds kProbeInterval{
    1};  // of a silent switch; of a probe that is repeated
constexpr std::chrono::milliseconds kHeardPause{500};
constexpr std::chrono::seconds kReturnPause{30};
constexpr std::chrono::milliseconds kFreshDoubt{500};
constexpr std::chrono::milliseconds kFirstRepetition{300};  // of a probe: one may get lost

// Domain ids have 8 bits; what a notification brings may be larger. The local switch has place 0.
constexpr std::size_t kPlaces = 257;

// As many as the patience of one lets be under way.
constexpr std::size_t kProbesUnderWay = 4;

struct Probe {
    std::uint32_t sequence = 0;  // 0: none
    Time sent{};
};

struct SwitchState {
    Reach reach = Reach::kAnswering;
    bool known = false;     // has been asked something
    bool left = false;      // the fabric does not list it any more
    bool returned = false;  // not taken yet
    bool refused = false;   // a request failed at once, though the switch was not silent
    Time taken = ReachClock::now() - kReturnPause;
    bool doubted = false;  // a probe is to settle whether it answers
    Time since{};          // silent
    Time doubtedSince{};
    Time lastProbe{};
    Time nextProbe = kNever;
    std::array<Probe, kProbesUnderWay> probes;
    std::size_t nextSlot = 0;
};

struct State {
    std::mutex mutex;
    std::array<SwitchState, kPlaces> switches;
    std::atomic<bool> anyReturned{false};
    Time nextTime = kNever;
    std::atomic<bool> anythingDue{false};  // nextTime is not kNever
    std::atomic<bool> anyLeft{false};
};

State& state = *new State;  // the ListenThread uses it until the process is gone

SwitchState& At(std::uint32_t domain) {
    return state.switches[IsLocalDomain(domain) ? 0 : std::min<std::size_t>(domain, kPlaces - 1)];
}

void NoteNextTime() {
    Time next = kNever;
    for (const SwitchState& one : state.switches) {
        next = std::min(next, one.nextProbe);
        if (one.doubted) {
            next = std::min(next, one.doubtedSince + kProbePatience);
        }
    }
    state.nextTime = next;
    state.anythingDue = next != kNever;
}

int PlaceOf(const SwitchState& one) {
    return static_cast<int>(&one - state.switches.data());
}

void SetAnswering(SwitchState& one) {
    if (one.reach == Reach::kSilent) {
        TraceLog(kError, "Switch with domainId %d answers again", PlaceOf(one));
    }
    if (one.reach == Reach::kSilent || one.refused) {
        one.returned = true;
        state.anyReturned = true;
    }
    one.refused = false;
    one.reach = Reach::kAnswering;
    one.doubted = false;
    one.nextProbe = kNever;
    one.probes = {};
}

void SetSilent(SwitchState& one, Time now) {
    TraceLog(kError, "Switch with domainId %d does not answer", PlaceOf(one));
    one.reach = Reach::kSilent;
    one.doubted = false;
    one.returned = false;
    one.since = now;
    one.nextProbe = std::min(one.nextProbe, now + kProbeInterval);
}

// A sign of life that is no timely answer: it is probed the sooner.
void Hear(SwitchState& one) {
    if (one.reach == Reach::kSilent) {
        one.nextProbe = std::min(one.nextProbe, one.lastProbe + kHeardPause);
    }
}

void BeginDoubt(SwitchState& one, Time now) {
    if (!one.doubted && one.reach != Reach::kSilent) {
        one.doubted = true;
        one.doubtedSince = now;
        one.nextProbe = now;
    }
}

auto FindProbe(SwitchState& one, std::uint32_t sequence) {
    return std::ranges::find(one.probes, sequence, &Probe::sequence);
}

SwitchState* FindReturned(Time now) {
    const auto one = std::ranges::find_if(state.switches, [now](const SwitchState& candidate) {
        return candidate.returned && now - candidate.taken >= kReturnPause;
    });
    return one == state.switches.end() ? nullptr : &*one;
}

}  // namespace

bool IsAnswering(std::uint32_t domain) {
    const std::lock_guard lock(state.mutex);
    const SwitchState& one = At(domain);
    return one.reach == Reach::kAnswering && !one.left;
}

ReachClock::duration SilentFor(std::uint32_t domain) {
    const std::lock_guard lock(state.mutex);
    const SwitchState& one = At(domain);
    return one.reach == Reach::kSilent ? ReachClock::now() - one.since
                                       : ReachClock::duration::zero();
}

bool IsSilent(std::uint32_t domain) {
    if (!state.anythingDue) {
        return false;
    }
    const std::lock_guard lock(state.mutex);
    return At(domain).reach == Reach::kSilent;
}

bool HasReturned() {
    if (!state.anyReturned) {
        return false;
    }
    const std::lock_guard lock(state.mutex);
    return FindReturned(ReachClock::now()) != nullptr;
}

bool TakeReturned(std::uint16_t& domain) {
    if (!state.anyReturned) {
        return false;
    }
    const std::lock_guard lock(state.mutex);
    const Time now = ReachClock::now();
    SwitchState* one = FindReturned(now);
    if (one == nullptr) {
        return false;
    }
    one->returned = false;
    one->taken = now;
    state.anyReturned = std::ranges::count(state.switches, true, &SwitchState::returned) != 0;
    domain = static_cast<std::uint16_t>(PlaceOf(*one));
    return true;
}

void ForgetReturned() {
    const std::lock_guard lock(state.mutex);
    for (SwitchState& one : state.switches) {
        one.returned = false;
    }
    state.anyReturned = false;
}

void NoteListed(std::span<const std::uint16_t> listed) {
    const std::lock_guard lock(state.mutex);
    bool anyLeft = false;
    for (std::size_t place = 1; place < kPlaces; ++place) {
        SwitchState& one = state.switches[place];
        const bool isListed = std::ranges::find(listed, place) != listed.end();
        // One that was never asked is none of this fabric's.
        if (one.left == isListed || (!isListed && one.known)) {
            const bool left = !isListed && (one.known || one.left);
            one = {};
            one.left = left;
        }
        anyLeft = anyLeft || one.left;
    }
    state.anyLeft = anyLeft;
    NoteNextTime();
}

bool HasLeftFabric(std::uint32_t domain) {
    const std::lock_guard lock(state.mutex);
    return At(domain).left;
}

void ResetReachability() {
    const std::lock_guard lock(state.mutex);
    state.switches = {};
    state.anyReturned = false;
    state.anyLeft = false;
    NoteNextTime();
}

void NoteRequest(std::uint32_t domain) {
    const std::lock_guard lock(state.mutex);
    At(domain).known = true;
}

void NoteUnanswered(std::uint32_t domain) {
    const std::lock_guard lock(state.mutex);
    SwitchState& one = At(domain);
    if (one.reach == Reach::kSilent || one.left) {
        return;
    }
    one.reach = Reach::kSuspect;
    const Time now = ReachClock::now();
    for (SwitchState& other : state.switches) {
        if (other.known) {
            BeginDoubt(other, now);
        }
    }
    NoteNextTime();
}

Advice AdviceFor(std::uint32_t domain) {
    if (!AnyInDoubt()) {
        return Advice::kAsk;
    }
    const std::lock_guard lock(state.mutex);
    const SwitchState& one = At(domain);
    if (one.left) {
        return Advice::kFail;
    }
    if (one.doubted && ReachClock::now() - one.doubtedSince < kFreshDoubt) {
        return Advice::kAwaitProbe;
    }
    return !one.doubted && one.reach == Reach::kAnswering ? Advice::kAsk : Advice::kFail;
}

bool AnyInDoubt() {
    return state.anythingDue || state.anyLeft;
}

void NoteRefused(std::uint32_t domain) {
    const std::lock_guard lock(state.mutex);
    SwitchState& one = At(domain);
    one.refused = !one.left;
}

void NoteHeard(std::uint32_t domain) {
    if (!state.anythingDue) {
        return;
    }
    const std::lock_guard lock(state.mutex);
    Hear(At(domain));
    NoteNextTime();
}

Time NextProbeTime() {
    if (!state.anythingDue) {
        return kNever;
    }
    const std::lock_guard lock(state.mutex);
    return state.nextTime;
}

std::size_t TakeDueProbes(Time now, std::span<std::uint16_t> domains) {
    const std::lock_guard lock(state.mutex);
    std::size_t count = 0;
    for (SwitchState& one : state.switches) {
        if (one.doubted && now - one.doubtedSince >= kProbePatience) {
            SetSilent(one, now);
        }
        if (one.nextProbe <= now && count < domains.size()) {
            const bool isFirst = one.doubted && now - one.doubtedSince < kFirstRepetition;
            one.nextProbe = now + (isFirst ? Time::duration(kFirstRepetition) : kProbeInterval);
            one.lastProbe = now;
            domains[count++] = static_cast<std::uint16_t>(PlaceOf(one));
        }
    }
    NoteNextTime();
    return count;
}

void NoteProbe(std::uint16_t domain, std::uint32_t sequence, Time now) {
    const std::lock_guard lock(state.mutex);
    SwitchState& one = At(domain);
    one.probes[one.nextSlot] = {sequence, now};
    one.nextSlot = (one.nextSlot + 1) % kProbesUnderWay;
}

bool TakeProbeReply(std::uint32_t sequence, Time now) {
    const std::lock_guard lock(state.mutex);
    for (SwitchState& one : state.switches) {
        if (const auto probe = FindProbe(one, sequence); probe != one.probes.end()) {
            now - probe->sent <= kProbePatience ? SetAnswering(one) : Hear(one);
            NoteNextTime();
            return true;
        }
    }
    return false;
}

bool IsProbeUnderWay(std::uint32_t sequence) {
    const std::lock_guard lock(state.mutex);
    return std::ranges::any_of(state.switches, [sequence](SwitchState& one) {
        return FindProbe(one, sequence) != one.probes.end();
    });
}

}  // namespace snmpmain
