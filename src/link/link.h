// The link to switch management: one UDP socket, one request at a time (and what nobody waits for,
// tellings.h and reachability.h), replies matched to requests by sequence number, and a thread that
// receives notifications while nothing is asked. Any thread, where nothing else is said.
#pragma once

#include <cstdint>
#include <span>

#include "src/link/frame.h"
#include "src/link/reply_parser.h"

namespace snmpmain {

constexpr std::uint16_t SWITCH_MGMT_PORT = 5001;

// What a failed query returns; a switch's own error numbers are the other non-zero results.
constexpr std::uint16_t kQueryFailed = 0xFFFF;

// Room for a command text and more than a request frame takes: one that was cut to this is refused.
constexpr std::size_t kCommandSize = 520;

// Whether a reply has carried a non-zero status byte: the fabric may have changed, and the main
// loop refreshes the unit table and clears this.
bool IsFabricUpdatePending();
void SetFabricUpdatePending(bool isPending);

// Takes a frame that is not a reply; called on the ListenThread, whose stack has 64 KiB, or on a
// thread that waits for a reply. One call at a time; it cannot query. Returns 0, or -1 for a
// dropped frame.
using NotificationReceiver = int (*)(std::span<const std::uint8_t> frame);

// Names the receiver of notifications; without one they are dropped. Main thread, before InitLink.
void SetNotificationReceiver(NotificationReceiver receiver);

// Opens the socket and starts the ListenThread, with messages on standard error. `remoteAddress` is
// a dotted IPv4 address, or null for 127.0.0.1; the port is always SWITCH_MGMT_PORT. Requests later
// go to the sender of the last datagram. Returns 0 or -1. Main thread; once, there is no way back.
int InitLink(const char* remoteAddress);

// Prepares the request lock and starts the sequences at 0x10002, with messages on standard error.
// Returns 0 or 0xFFFF. Main thread.
std::uint16_t InitSendRecvLock();

// How a question to a switch ended.
enum class Outcome : std::uint8_t {
    kAnswered,
    kRefused,   // an answer that says no: a status byte, an error number, or not of the type asked;
                // or a command that no frame takes
    kNoAnswer,  // the switch was silent
};

struct Answer {
    Outcome outcome;
    std::uint16_t code;  // what SwitchMgmtQuery returns
};

// Sends one command to a switch and waits for its answer: the one way to talk to switch management.
// `domain` is a domain id, 0 for the local switch. `result` receives the reply text, converted as
// `type` says; `value` the number of an integer reply (may be null). A "Get." request waits two
// one-second ticks for its reply, any other ten, and is sent once more after that.
// Requests of several threads follow one another. Any thread; within a receiver of notifications,
// which holds up all requests, it fails at once, and so it does for a switch that is suspect or
// silent, after up to 0.5 seconds for the answer to a probe (reachability.h).
Answer AskSwitch(std::uint32_t domain, const char* command, ReplyText& result, ConversionType type,
                 std::uint32_t* value = nullptr);

// The same with a command made from a format. Commands of more than 502 characters after their
// prefix fail unsent.
Answer AskSwitchf(std::uint32_t domain, ReplyText& result, ConversionType type,
                  std::uint32_t* value, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

// The same for those who do not mind why a query failed. Both return 0, kQueryFailed, or the error
// number (low 16 bits) that the switch replied.
std::uint16_t SwitchMgmtQuery(std::uint32_t domain, const char* command, ReplyText& result,
                              ConversionType type, std::uint32_t* value = nullptr);
std::uint16_t SwitchMgmtQueryf(std::uint32_t domain, ReplyText& result, ConversionType type,
                               std::uint32_t* value, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

// Sends a command and hands out the reply frame unchecked: kAnswered. The message log shows
// `loggedText` for the request. kRefused is for what cannot be sent at all. Where SwitchMgmtQuery
// may be called.
Outcome SwitchMgmtExchange(std::uint32_t domain, const char* command, const char* loggedText,
                           ReplyFrame& reply, std::size_t& requestSize);

// How many requests and tellings have been sent since the start, modulo 2^32; repetitions and
// probes do not count.
std::uint32_t CountSent();

// Asks a switch for nothing but a sign of life. Returns 0 or -1.
int PingSwitchMgmt(std::uint32_t domain);

}  // namespace snmpmain
