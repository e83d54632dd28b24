// Which switches answer. A switch that left a request unanswered is asked for a sign of life, a
// probe ("Get.Oper.Switch.Nop") that nobody waits for, and all others with it: those that do not
// answer are silent. Requests to a silent switch fail at once; it is probed once a second, and only
// the timely reply to a probe makes it answering again.
//
// A domain is a domain id, 0 or the local one for the local switch. Any thread, where nothing else
// is said.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace snmpmain {

enum class Reach : std::uint8_t {
    kAnswering,
    kSuspect,  // a request went unanswered with its full patience; a probe is under way
    kSilent    // a probe went unanswered, too
};

// Whether a switch answers: neither suspect nor silent. One never asked counts as answering.
bool IsAnswering(std::uint32_t domain);

// How long a switch has been silent; zero for one that is not.
std::chrono::steady_clock::duration SilentFor(std::uint32_t domain);
bool IsSilent(std::uint32_t domain);

// Takes a switch that answers again and was silent, or missed a request while that was in doubt,
// each at most once in 30 seconds; one that comes back sooner has to wait. False when there is
// none.
bool TakeReturned(std::uint16_t& domain);
bool HasReturned();

// What is done for those that have returned has been done for all.
void ForgetReturned();

// The fabric lists these switches: nobody answers for the others, until it lists them again. The
// local one stays.
void NoteListed(std::span<const std::uint16_t> listed);
bool HasLeftFabric(std::uint32_t domain);

// Forgets everything; for tests.
void ResetReachability();

// ---- for the link ----

using ReachClock = std::chrono::steady_clock;

// A request is sent to this switch: it is one that probes may go to.
void NoteRequest(std::uint32_t domain);

// It was not answered with its full patience: the switch is suspect, and all are probed.
void NoteUnanswered(std::uint32_t domain);

// What to do with a request. One to a suspect switch, or one that was probed with it, waits for the
// answer to the probe, since the switch may have left a single command unanswered, but not for the
// whole patience of a probe: an answer that does not come soon is likely not to come at all.
enum class Advice : std::uint8_t { kAsk, kAwaitProbe, kFail };
Advice AdviceFor(std::uint32_t domain);

// Whether it may be another advice than kAsk for any switch.
bool AnyInDoubt();

// A request failed at once.
void NoteRefused(std::uint32_t domain);

// Something else came from a switch: it is probed at once if it is silent.
void NoteHeard(std::uint32_t domain);

// When there is something to do for TakeDueProbes; far away while all switches answer.
ReachClock::time_point NextProbeTime();

// Ends the waiting for probes that nobody answered, and hands out the domains that are to be probed
// now, as many as there is room for. Returns how many. NoteProbe is to be told of each before it is
// sent.
std::size_t TakeDueProbes(ReachClock::time_point now, std::span<std::uint16_t> domains);
void NoteProbe(std::uint16_t domain, std::uint32_t sequence, ReachClock::time_point now);

// Whether a reply carries the sequence of a probe under way, in time or late.
bool TakeProbeReply(std::uint32_t sequence, ReachClock::time_point now);
bool IsProbeUnderWay(std::uint32_t sequence);

}  // namespace snmpmain
