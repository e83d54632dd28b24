// Commands that switches are told without anybody waiting for the answer: registrations, greetings,
// private events. Several are under way at a time, at most one to each switch, which gets its own
// in the order in which they were handed over; each is repeated once when no answer has come.
// The receiving thread sends them.
//
// A domain is a domain id, 0 for the local switch. Any thread, where nothing else is said.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "src/link/link.h"

namespace snmpmain {

// Hears how a telling ended, on the main thread: kNoAnswer also for a switch that was not even
// asked, since it is known to be silent or has too much to be told already (both logged).
using ToldHandler = void (*)(std::uint16_t domain, Outcome outcome);

// Whether a status byte in the answer makes the agent look at the fabric anew, as one in the reply
// to a request does. What is told in the course of such a look ignores it.
enum class StatusByte : std::uint8_t { kCounts, kIsIgnored };

// Hands a command other than a "Get." over for each of the switches; `told` may be null. What the
// window allows is sent at once. One whose status byte is ignored takes the place of what still
// waits for the same handler: the newest registration counts.
void Tell(std::span<const std::uint16_t> domains, const char* command, StatusByte status,
          ToldHandler told);

// Calls the handlers of those that have ended. Main thread only.
void HandOutTold();

// The number of the next one: those handed over so far have smaller ones.
using TellingNumber = std::uint64_t;
constexpr TellingNumber kAllTellings = ~TellingNumber{0};
TellingNumber NextTelling();

// Whether tellings before that one are still to be sent, or sent so short ago that their answers
// can be expected.
bool IsTelling(TellingNumber before = kAllTellings);

// Receives and sends without waiting, or until no telling before that one is left, for `most` at
// most. While another thread has a request open, that one does so.
void ServeTellings();
void AwaitTellings(std::chrono::milliseconds most, TellingNumber before = kAllTellings);

// Waits until all are answered or given up, for up to 20 seconds each, and calls their handlers;
// part of start-up.
void FinishTellings();

// Forgets what is to be told to switches that the fabric does not list any more; the local one
// stays.
void KeepTellingsOf(std::span<const std::uint16_t> listed);

// Forgets everything; for tests.
void ResetTellings();

// ---- for the link ----

using TellClock = std::chrono::steady_clock;

// When there is something to do for TakeDueTelling; far away while nothing is told.
TellClock::time_point NextTellingTime();

// One that is to be sent now: for the first time, or once more with the same sequence.
struct DueTelling {
    std::size_t place = 0;
    TellingNumber number = 0;
    std::uint16_t domain = 0;
    std::uint32_t sequence = 0;  // 0: the first time
    std::shared_ptr<const std::string> command;
};
bool TakeDueTelling(TellClock::time_point now, DueTelling& due);

// It goes out with its sequence; or cannot be sent at all. Nothing when it was forgotten meanwhile.
void NoteTelling(const DueTelling& due, TellClock::time_point now);
void DropTelling(const DueTelling& due);

// Whether a reply carries the sequence of a telling under way, which ends that one.
bool TakeTellingReply(std::uint32_t sequence, const ReplyFrame& reply);
bool IsTellingUnderWay(std::uint32_t sequence);

}  // namespace snmpmain
