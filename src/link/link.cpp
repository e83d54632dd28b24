#include "src/link/link.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <pthread.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <algorithm>
#include <bitset>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>

#include "src/base/byte_order.h"
#include "src/base/progress.h"
#include "src/base/text.h"
#include "src/base/thread_stack.h"
#include "src/base/trace_log.h"
#include "src/link/addressing.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/tellings.h"

namespace snmpmain {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kDefaultAddress = "127.0.0.1";
constexpr std::chrono::seconds kWriteTimeout{2};
constexpr std::chrono::seconds kTickLength{1};
constexpr std::chrono::microseconds kLookInterval{100'000};  // of a requester, at the clock
constexpr int kGetTicks = 2;
constexpr int kOtherTicks = 10;
constexpr const char* kNoValue = "No value returned from switch management";
constexpr const char* kProbeCommand = "Get.Oper.Switch.Nop";

// After a request another one usually follows at once, so the ListenThread lets this long pass
// before it takes up receiving again.
constexpr std::chrono::milliseconds kStandBack{10};

// Who receives: the requester while its request is open, else the ListenThread. So a reply reaches
// its requester without waking another thread first, which would cost more than all else that the
// agent does for a value.
struct Reception {
    std::mutex mutex;                 // the ListenThread holds it while it handles a datagram
    std::condition_variable resumed;  // the ListenThread may receive again
    bool requestOpen = false;
    bool listenerWaits = false;  // for `resumed`
    Clock::time_point lastRequest{};

    // For the receiving thread.
    sockaddr_in peer{};                       // the sender of the last datagram
    std::uint32_t sequence = kFirstSequence;  // of what was sent last
    // Sequences of probes and tellings, whose replies no requester waits for, be they late.
    std::bitset<kLastSequence - kFirstSequence + 1> unwaited;
};

struct Link {
    int socket = -1;
    pthread_mutex_t requestMutex = PTHREAD_MUTEX_INITIALIZER;
    Reception reception;
    std::atomic<NotificationReceiver> receiver{nullptr};
    std::atomic<std::uint32_t> sent{0};
    std::atomic<bool> fabricUpdatePending{false};
};

// Never destroyed: the ListenThread uses it until the process is gone.
Link& link = *new Link;

// Set while a receiver of notifications runs: it holds up all requests, so it cannot make one.
thread_local bool inReceiver = false;

class RequestLock {
  public:
    RequestLock() {
        ::pthread_mutex_lock(&link.requestMutex);
    }
    ~RequestLock() {
        ::pthread_mutex_unlock(&link.requestMutex);
    }
    RequestLock(const RequestLock&) = delete;
    RequestLock& operator=(const RequestLock&) = delete;
};

enum class Readiness { kReady, kTimeout, kFailed };

Readiness WaitForSocket(bool forWriting, std::chrono::microseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    fd_set set;
    FD_ZERO(&set);
    FD_SET(link.socket, &set);
    timeval timeout{};
    timeout.tv_sec = static_cast<decltype(timeout.tv_sec)>(seconds.count());
    timeout.tv_usec = static_cast<decltype(timeout.tv_usec)>((time - seconds).count());
    const int count = ::select(link.socket + 1, forWriting ? nullptr : &set,
                               forWriting ? &set : nullptr, nullptr, &timeout);
    if (count < 0) {
        TraceLog(kSevere, "Socket select error");
        return Readiness::kFailed;
    }
    return count == 0 ? Readiness::kTimeout : Readiness::kReady;
}

// ---- receiving ----

enum class Received { kNothing, kReply, kOther };

bool IsUnwaited(std::uint32_t sequence) {
    return sequence >= kFirstSequence && sequence <= kLastSequence &&
           link.reception.unwaited[sequence - kFirstSequence];
}

// Receives one datagram, notes its sender as the peer and hands a notification to its receiver;
// `sequence` is that of a reply. Waits for it at most kLookInterval, or not at all with
// MSG_DONTWAIT.
Received ReceiveDatagram(ReplyFrame& buffer, int flags, std::uint32_t& sequence) {
    sockaddr_in sender{};
    socklen_t senderLength = sizeof(sender);
    static_assert(sizeof(sockaddr_in) == 16);
    const ssize_t received = ::recvfrom(link.socket, buffer.data(), buffer.size(), flags,
                                        reinterpret_cast<sockaddr*>(&sender), &senderLength);
    if (received < 0) {
        if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
            TraceLog(kSevere, "Error on read from socket");
        }
        return Received::kNothing;
    }
    link.reception.peer = sender;
    const auto length = static_cast<std::size_t>(received);
    if (length < kHeaderSize) {
        TraceLog(kSevere, "Sequence error on read from socket");
        return Received::kOther;
    }
    sequence = LoadBig32(&buffer[kSequenceOffset]);
    if (sequence > kLastNotificationSequence) {
        std::fill(buffer.begin() + received, buffer.end(), std::uint8_t{0});
        if (!IsUnwaited(sequence)) {
            return Received::kReply;
        }
        if (!TakeProbeReply(sequence, Clock::now())) {
            TakeTellingReply(sequence, buffer);
        }
        return Received::kOther;
    }
    NoteHeard(DomainOfTargetWord(LoadBig32(&buffer[kTargetOffset])));
    if (const NotificationReceiver receiver = link.receiver; receiver != nullptr) {
        inReceiver = true;
        receiver(std::span(buffer).first(length));
        inReceiver = false;
    }
    return Received::kOther;
}

// ---- what nobody waits for ----

// In a storm the sequences come round within seconds.
std::uint32_t NextFreeSequence() {
    std::uint32_t sequence = link.reception.sequence;
    do {
        sequence = NextSequence(sequence);
    } while (IsUnwaited(sequence) && (IsProbeUnderWay(sequence) || IsTellingUnderWay(sequence)));
    return sequence;
}

// Builds the frame for a command with the next sequence. Returns 0 or -1 (logged).
int BuildNextFrame(std::uint32_t domain, const char* command, bool isWaitedFor, RequestFrame& frame,
                   std::uint32_t& sequence) {
    sequence = NextFreeSequence();
    if (BuildRequestFrame(command, MakeTargetWord(domain), sequence, frame) != 0) {
        return -1;
    }
    link.reception.sequence = sequence;
    link.reception.unwaited[sequence - kFirstSequence] = !isWaitedFor;
    return 0;
}

// What does not fit the socket is lost like any datagram.
void SendWithoutWaiting(const RequestFrame& frame) {
    const sockaddr_in& peer = link.reception.peer;
    if (::sendto(link.socket, frame.bytes.data(), frame.length, MSG_DONTWAIT,
                 reinterpret_cast<const sockaddr*>(&peer), sizeof(peer)) < 0) {
        TraceLog(kSevere, "Error on write to socket");
    }
}

// Sends the probes that are due.
void SendDueProbes() {
    const Clock::time_point now = Clock::now();
    if (now < NextProbeTime()) {
        return;
    }
    std::array<std::uint16_t, 64> domains;
    const std::size_t count = TakeDueProbes(now, domains);
    for (const std::uint16_t domain : std::span(domains).first(count)) {
        RequestFrame frame;
        std::uint32_t sequence = 0;
        if (BuildNextFrame(domain, kProbeCommand, false, frame, sequence) != 0) {
            continue;
        }
        NoteProbe(domain, sequence, now);
        TraceLog(kTrace, "%-3d>> %s", domain, kProbeCommand);
        SendWithoutWaiting(frame);
    }
}

void SendTelling(DueTelling& due, Clock::time_point now) {
    RequestFrame frame;
    if (due.sequence != 0) {
        BuildRequestFrame(due.command->c_str(), MakeTargetWord(due.domain), due.sequence, frame);
    } else if (BuildNextFrame(due.domain, due.command->c_str(), false, frame, due.sequence) != 0) {
        DropTelling(due);
        return;
    } else {
        TraceLog(kTrace, "%-3d>> %s", due.domain, due.command->c_str());
        NoteRequest(due.domain);
        ++link.sent;
        NoteTelling(due, now);
    }
    SendWithoutWaiting(frame);
}

void SendDueTellings() {
    const Clock::time_point now = Clock::now();
    if (now < NextTellingTime()) {
        return;
    }
    DueTelling due;
    while (TakeDueTelling(now, due)) {
        SendTelling(due, now);
    }
}

// Sends what is due and nobody waits for, itself without waiting. For the receiving thread at the
// moment.
void SendDue() {
    SendDueTellings();
    SendDueProbes();
}

// How long the ListenThread may wait for a datagram.
std::chrono::microseconds UntilNextDue() {
    const auto left = std::min(NextProbeTime(), NextTellingTime()) - Clock::now();
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::clamp<Clock::duration>(left, std::chrono::milliseconds(1), kTickLength));
}

// ---- the ListenThread ----

// Waits until the requesters leave the receiving to the ListenThread.
void AwaitTurn(std::unique_lock<std::mutex>& lock) {
    Reception& reception = link.reception;
    for (;;) {
        if (reception.requestOpen) {
            reception.listenerWaits = true;
            reception.resumed.wait(lock, [&] { return !reception.requestOpen; });
            reception.listenerWaits = false;
        }
        const auto left = reception.lastRequest + kStandBack - Clock::now();
        if (left <= left.zero()) {
            return;
        }
        reception.resumed.wait_for(lock, left);
    }
}

void* ListenThread(void*) {
    ReplyFrame buffer;
    // InitLink holds the mutex until all is set up.
    std::unique_lock lock(link.reception.mutex);
    for (;;) {
        AwaitTurn(lock);
        lock.unlock();
        const Readiness readiness = WaitForSocket(false, UntilNextDue());
        lock.lock();
        if (link.reception.requestOpen) {
            continue;
        }
        if (readiness == Readiness::kReady) {
            std::uint32_t unasked = 0;
            ReceiveDatagram(buffer, MSG_DONTWAIT, unasked);
        }
        SendDue();
    }
    return nullptr;
}

// ---- requester ----

// While it exists, the thread that made it receives.
class OpenRequest {
  public:
    OpenRequest() {
        const std::lock_guard lock(link.reception.mutex);
        link.reception.requestOpen = true;
    }
    ~OpenRequest() {
        Reception& reception = link.reception;
        const std::lock_guard lock(reception.mutex);
        reception.requestOpen = false;
        reception.lastRequest = Clock::now();
        if (reception.listenerWaits) {
            reception.resumed.notify_one();
        }
    }
    OpenRequest(const OpenRequest&) = delete;
    OpenRequest& operator=(const OpenRequest&) = delete;
};

// Hands the frame to the socket, waiting at most two seconds for room in its buffer. Returns 0 or
// -1 (logged).
int SendFrame(const RequestFrame& frame, const sockaddr_in& peer) {
    const auto send = [&] {
        return ::sendto(link.socket, frame.bytes.data(), frame.length, MSG_DONTWAIT,
                        reinterpret_cast<const sockaddr*>(&peer), sizeof(peer));
    };
    ssize_t sent = send();
    if (sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
        switch (WaitForSocket(true, kWriteTimeout)) {
            case Readiness::kFailed:
                return -1;
            case Readiness::kTimeout:
                TraceLog(kSevere, "Timeout on write to socket");
                return -1;
            case Readiness::kReady:
                sent = send();
                break;
        }
    }
    if (sent < static_cast<ssize_t>(frame.length)) {
        TraceLog(kSevere, "Error on write to socket");
        return -1;
    }
    return 0;
}

// Waits for the reply with the sequence `expected`. Returns 0 or -1 (logged).
int WaitForReply(ReplyFrame& reply, std::uint32_t expected, int ticks) {
    Clock::time_point end = Clock::now() + ticks * kTickLength;
    do {
        SendDue();
        std::uint32_t sequence = 0;
        if (ReceiveDatagram(reply, 0, sequence) != Received::kReply) {
            continue;
        }
        if (sequence == expected) {
            return 0;
        }
        TraceLog(kSevere, "Msg sequencing error:");
        TraceLog(kSevere, "Msg sent:0x%x", expected);
        TraceLog(kSevere, "Msg received:0x%x", sequence);
        end = Clock::now() + kGetTicks * kTickLength;
    } while (Clock::now() < end);
    TraceLog(kSevere, kNoValue);
    return -1;
}

int SendWithRetry(const RequestFrame& frame, std::uint32_t domain, std::uint32_t sequence,
                  ReplyFrame& reply) {
    const int ticks = RequestMessageType(frame) == kGetMessage ? kGetTicks : kOtherTicks;
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (SendFrame(frame, link.reception.peer) != 0) {
            return -1;
        }
        if (WaitForReply(reply, sequence, ticks) == 0) {
            return 0;
        }
    }
    NoteUnanswered(domain);
    SendDue();
    return -1;
}

// Waits for the answer to a probe where one is under way. Whether a request makes sense then.
bool AwaitProbe(std::uint32_t domain, ReplyFrame& buffer) {
    Advice advice = AdviceFor(domain);
    while (advice == Advice::kAwaitProbe) {
        SendDue();
        std::uint32_t unasked = 0;
        ReceiveDatagram(buffer, 0, unasked);
        advice = AdviceFor(domain);
    }
    return advice == Advice::kAsk;
}

// Receives and sends until `end`: without waiting, or until no telling before `awaited` is left.
void Serve(Clock::time_point end, bool waits, TellingNumber awaited) {
    ReplyFrame buffer;
    do {
        SendDue();
        std::uint32_t unasked = 0;
        if (ReceiveDatagram(buffer, MSG_DONTWAIT, unasked) != Received::kNothing) {
            continue;
        }
        if (!waits || !IsTelling(awaited)) {
            return;
        }
        const auto left = end - Clock::now();
        WaitForSocket(false, std::chrono::duration_cast<std::chrono::microseconds>(
                                 std::max<Clock::duration>(left, left.zero())));
    } while (Clock::now() < end);
}

// A requester does it instead while its request is open.
bool ServeFor(std::chrono::milliseconds most, bool waits, TellingNumber awaited) {
    if (inReceiver || ::pthread_mutex_trylock(&link.requestMutex) != 0) {
        return false;
    }
    {
        const OpenRequest request;
        Serve(Clock::now() + most, waits, awaited);
    }
    ::pthread_mutex_unlock(&link.requestMutex);
    return true;
}

std::array<char, kCommandSize> FormatCommand(const char* format, va_list arguments) {
    std::array<char, kCommandSize> command;
    std::vsnprintf(command.data(), command.size(), format, arguments);
    return command;
}

// Community strings and pass phrases are not for the message log.
bool IsSecret(const char* command) {
    return std::string_view(command).starts_with("Get.Config.Snmp.") &&
           (std::strstr(command, "Comm") != nullptr || std::strstr(command, "Phrase") != nullptr);
}

// ---- set-up ----

int ReportSetUpError(const char* message, int error) {
    std::fprintf(stderr, "%s %s\n", message, std::strerror(error));
    return -1;
}

int StartListenThread() {
    pthread_attr_t attributes;
    if (const int error = ::pthread_attr_init(&attributes); error != 0) {
        return ReportSetUpError("SNMP:pthread_attr_init() failed.", error);
    }
    int result = 0;
    if (const int error = ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        error != 0) {
        result = ReportSetUpError("SNMP:pthread_attr_setdetachstate failed.", error);
    } else if (const int error = ::pthread_attr_setstacksize(&attributes, SmallStackSize());
               error != 0) {
        result = ReportSetUpError("SNMP:pthread_attr_setstacksize failed.", error);
    } else {
        pthread_t thread;
        if (const int error = ::pthread_create(&thread, &attributes, ListenThread, nullptr);
            error != 0) {
            result = ReportSetUpError("SNMP:Error creating Listen thread.", error);
        }
    }
    ::pthread_attr_destroy(&attributes);
    return result;
}

}  // namespace

bool IsFabricUpdatePending() {
    return link.fabricUpdatePending;
}

void SetFabricUpdatePending(bool isPending) {
    link.fabricUpdatePending = isPending;
}

void SetNotificationReceiver(NotificationReceiver receiver) {
    link.receiver = receiver;
}

int InitLink(const char* remoteAddress) {
    std::fputs("SNMP:Initializing UPD Sockets\n", stderr);
    link.socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (link.socket < 0 || NotifyQueue::Open() != 0) {
        std::fputs("SNMP:Socket initialization failure\n", stderr);
        return -1;
    }
    timeval look{};
    look.tv_usec = kLookInterval.count();
    if (::setsockopt(link.socket, SOL_SOCKET, SO_RCVTIMEO, &look, sizeof(look)) != 0) {
        std::fputs("SNMP:Socket initialization failure\n", stderr);
        return -1;
    }
    const std::lock_guard lock(link.reception.mutex);
    sockaddr_in& peer = link.reception.peer;
    peer.sin_family = AF_INET;
    peer.sin_port = htons(SWITCH_MGMT_PORT);
    peer.sin_addr.s_addr = ::inet_addr(remoteAddress != nullptr ? remoteAddress : kDefaultAddress);
    if (StartListenThread() != 0) {
        return -1;
    }
    std::fputs("SNMP:UPD Sockets Initialized\n", stderr);
    return 0;
}

std::uint16_t InitSendRecvLock() {
    std::fputs("SNMP:Initializing Send/Receive semaphores\n", stderr);
    {
        const std::lock_guard lock(link.reception.mutex);
        link.reception.sequence = kFirstSequence;
    }
    if (const int error = ::pthread_mutex_init(&link.requestMutex, nullptr); error != 0) {
        ReportSetUpError("SNMP:Failure initializing Send/Receive mutex semaphore.", error);
        return kQueryFailed;
    }
    std::fputs("SNMP:Send/Receive semaphores initialized\n", stderr);
    return 0;
}

Outcome SwitchMgmtExchange(std::uint32_t domain, const char* command, const char* loggedText,
                           ReplyFrame& reply, std::size_t& requestSize) {
    if (inReceiver) {
        return Outcome::kNoAnswer;
    }
    const RequestLock lock;
    // Where nothing is sent, the ListenThread goes on receiving.
    std::optional<OpenRequest> request;
    if (AdviceFor(domain) != Advice::kFail) {
        request.emplace();
    }
    if (!request || !AwaitProbe(domain, reply)) {
        NoteRefused(domain);
        TraceLog(kSevere, kNoValue);
        return Outcome::kNoAnswer;
    }
    RequestFrame frame;
    std::uint32_t sequence = 0;
    if (BuildNextFrame(domain, command, true, frame, sequence) != 0) {
        return Outcome::kRefused;
    }
    NoteRequest(domain);
    ++link.sent;
    requestSize = frame.length;
    TraceLog(kTrace, "%-3d>> %s", static_cast<int>(domain), loggedText);
    return SendWithRetry(frame, domain, sequence, reply) == 0 ? Outcome::kAnswered
                                                              : Outcome::kNoAnswer;
}

Answer AskSwitch(std::uint32_t domain, const char* command, ReplyText& result, ConversionType type,
                 std::uint32_t* value) {
    if (value != nullptr) {
        *value = 0;
    }
    ReplyFrame reply;
    std::size_t requestSize = 0;
    const Outcome outcome = SwitchMgmtExchange(domain, command, command, reply, requestSize);
    if (outcome != Outcome::kAnswered) {
        return {outcome, kQueryFailed};
    }
    if (CheckReplyFrame(reply, requestSize, result) != 0) {
        SetFabricUpdatePending(true);
        return {Outcome::kRefused, kQueryFailed};
    }
    TraceLog(kTrace, "%-3d<< %s", static_cast<int>(domain),
             IsSecret(command) ? "(not shown)" : result.data());
    const std::int32_t error = ParseReturnValue(result.data(), result.size(), type, value);
    return {error == 0 ? Outcome::kAnswered : Outcome::kRefused, static_cast<std::uint16_t>(error)};
}

Answer AskSwitchf(std::uint32_t domain, ReplyText& result, ConversionType type,
                  std::uint32_t* value, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const auto command = FormatCommand(format, arguments);
    va_end(arguments);
    return AskSwitch(domain, command.data(), result, type, value);
}

std::uint16_t SwitchMgmtQuery(std::uint32_t domain, const char* command, ReplyText& result,
                              ConversionType type, std::uint32_t* value) {
    return AskSwitch(domain, command, result, type, value).code;
}

std::uint16_t SwitchMgmtQueryf(std::uint32_t domain, ReplyText& result, ConversionType type,
                               std::uint32_t* value, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const auto command = FormatCommand(format, arguments);
    va_end(arguments);
    return SwitchMgmtQuery(domain, command.data(), result, type, value);
}

void ServeTellings() {
    if (IsTelling()) {
        ServeFor(kSlice, false, kAllTellings);
    }
}

void AwaitTellings(std::chrono::milliseconds most, TellingNumber before) {
    if (IsTelling(before) && !ServeFor(most, true, before)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::uint32_t CountSent() {
    return link.sent;
}

int PingSwitchMgmt(std::uint32_t domain) {
    ReplyText result;
    return SwitchMgmtQuery(domain, kProbeCommand, result, kString) == 0 ? 0 : -1;
}

}  // namespace snmpmain
