#include "src/link/link.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string_view>

#include "src/base/byte_order.h"
#include "src/base/text.h"
#include "src/base/thread_stack.h"
#include "src/base/trace_log.h"
#include "src/link/notify_queue.h"
#include "src/link/switch_info.h"

namespace snmpmain {

std::atomic<std::uint16_t> fabricUpdatePending{0};

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kDefaultAddress = "127.0.0.1";
constexpr std::chrono::seconds kWriteTimeout{2};
constexpr std::chrono::seconds kTickLength{1};
constexpr int kGetTicks = 2;
constexpr int kOtherTicks = 10;

// Hand-over of replies. The ListenThread delivers a reply and posts the tick semaphore; the
// requester counts ticks, takes the reply and posts the release semaphore. The ListenThread waits
// for the release before it overwrites a reply that is not taken yet: not before it receives on, so
// that notifications get through and a thread less is woken for each reply. The mutex makes each
// delivery and each taking one step, so that the requester copies either a whole reply or none.
struct HandOver {
    std::mutex mutex;
    sockaddr_in peer{};  // whoever sent the last datagram
    ReplyFrame receiveBuffer{};
    std::size_t receiveLength = 0;
    std::uint32_t receivedSequence = 0;
    bool replyReady = false;
    bool requestOpen = false;  // a requester waits: only then is a reply worth delivering
};

struct Link {
    int socket = -1;
    std::uint32_t sequence = kFirstSequence;
    int waitTicks = 0;  // one-second ticks that the requester may still wait
    pthread_mutex_t requestMutex = PTHREAD_MUTEX_INITIALIZER;
    sem_t tick;     // posted every second and on every reply
    sem_t release;  // posted by the requester when the ListenThread may go on
    HandOver handOver;
    std::atomic<NotificationReceiver> receiver{nullptr};
};

Link link;

thread_local bool onListenThread = false;

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

void PostIfZero(sem_t& semaphore) {
    int value = 0;
    if (::sem_getvalue(&semaphore, &value) == 0 && value == 0) {
        ::sem_post(&semaphore);
    }
}

void Wait(sem_t& semaphore) {
    while (::sem_wait(&semaphore) != 0 && errno == EINTR) {
    }
}

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

// ---- ListenThread ----

// Waits until the reply delivered last is taken or nobody waits for it any more.
void AwaitRelease(std::unique_lock<std::mutex>& lock) {
    while (link.handOver.replyReady) {
        lock.unlock();
        Wait(link.release);
        lock.lock();
    }
}

void DeliverReply(std::span<const std::uint8_t> datagram, std::uint32_t sequence) {
    HandOver& handOver = link.handOver;
    std::unique_lock lock(handOver.mutex);
    AwaitRelease(lock);
    if (!handOver.requestOpen) {
        return;  // a late reply to a request that was given up
    }
    std::copy(datagram.begin(), datagram.end(), handOver.receiveBuffer.begin());
    handOver.receiveLength = datagram.size();
    handOver.receivedSequence = sequence;
    handOver.replyReady = true;
    PostIfZero(link.tick);
}

void ReceiveDatagram() {
    std::array<std::uint8_t, kMaxReplySize> buffer;
    sockaddr_in sender{};
    socklen_t senderLength = sizeof(sender);
    static_assert(sizeof(sockaddr_in) == 16);
    const ssize_t received = ::recvfrom(link.socket, buffer.data(), buffer.size(), 0,
                                        reinterpret_cast<sockaddr*>(&sender), &senderLength);
    if (received < 0) {
        TraceLog(kSevere, "Error on read from socket");
        return;
    }
    {
        const std::lock_guard lock(link.handOver.mutex);
        link.handOver.peer = sender;
    }
    const std::span datagram(buffer.data(), static_cast<std::size_t>(received));
    if (datagram.size() < kHeaderSize) {
        TraceLog(kSevere, "Sequence error on read from socket");
        return;
    }
    const std::uint32_t sequence = LoadBig32(&datagram[kSequenceOffset]);
    if (sequence > kLastNotificationSequence) {
        DeliverReply(datagram, sequence);
    } else if (const NotificationReceiver receiver = link.receiver; receiver != nullptr) {
        receiver(datagram);
    }
}

void* ListenThread(void*) {
    {
        // InitLink holds the mutex until the semaphores exist.
        const std::lock_guard lock(link.handOver.mutex);
    }
    onListenThread = true;
    // Ticks come by the clock, also while datagrams keep the thread busy: a requester counts on
    // them to end its waiting.
    Clock::time_point nextTick = Clock::now() + kTickLength;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::microseconds>(nextTick - Clock::now());
        if (left > left.zero() && WaitForSocket(false, left) == Readiness::kReady) {
            ReceiveDatagram();
        }
        if (Clock::now() >= nextTick) {
            PostIfZero(link.tick);
            nextTick = Clock::now() + kTickLength;
        }
    }
    return nullptr;
}

// ---- requester ----

// Gives up the request and lets the ListenThread go on, should it have delivered something already.
void CloseRequest() {
    {
        const std::lock_guard lock(link.handOver.mutex);
        link.handOver.requestOpen = false;
        link.handOver.replyReady = false;
    }
    PostIfZero(link.release);
}

// Hands the frame to the socket, waiting at most two seconds for room in its buffer. Returns 0 or
// -1 (logged).
int SendDatagram(const RequestFrame& frame, const sockaddr_in& peer) {
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

int SendFrame(const RequestFrame& frame) {
    // A second that passed before this request is no part of its waiting time.
    while (::sem_trywait(&link.tick) == 0) {
    }
    link.waitTicks = RequestMessageType(frame) == kGetMessage ? kGetTicks : kOtherTicks;
    sockaddr_in peer;
    {
        const std::lock_guard lock(link.handOver.mutex);
        link.handOver.replyReady = false;
        link.handOver.requestOpen = true;
        peer = link.handOver.peer;
    }
    if (SendDatagram(frame, peer) != 0) {
        CloseRequest();
        return -1;
    }
    return 0;
}

bool ReplyReady() {
    const std::lock_guard lock(link.handOver.mutex);
    return link.handOver.replyReady;
}

enum class Taken { kNothing, kStray, kReply };

// Takes what the ListenThread has delivered. Only a stray reply leaves the request open.
Taken TakeReply(ReplyFrame& reply, std::uint32_t expected, std::uint32_t& received) {
    HandOver& handOver = link.handOver;
    const std::lock_guard lock(handOver.mutex);
    if (!handOver.replyReady) {
        handOver.requestOpen = false;
        return Taken::kNothing;
    }
    std::copy_n(handOver.receiveBuffer.begin(), handOver.receiveLength, reply.begin());
    handOver.replyReady = false;
    received = handOver.receivedSequence;
    handOver.requestOpen = received != expected;
    return handOver.requestOpen ? Taken::kStray : Taken::kReply;
}

int WaitForReply(ReplyFrame& reply, std::uint32_t expected) {
    for (;;) {
        reply.fill(0);
        while (link.waitTicks > 0 && !ReplyReady()) {
            Wait(link.tick);
            --link.waitTicks;
            PostIfZero(link.release);
        }
        std::uint32_t received = 0;
        const Taken taken = TakeReply(reply, expected, received);
        PostIfZero(link.release);
        switch (taken) {
            case Taken::kReply:
                return 0;
            case Taken::kNothing:
                TraceLog(kSevere, "No value returned from switch management");
                return -1;
            case Taken::kStray:
                TraceLog(kSevere, "Msg sequencing error:");
                TraceLog(kSevere, "Msg sent:0x%x", expected);
                TraceLog(kSevere, "Msg received:0x%x", received);
                link.waitTicks = kGetTicks;
                break;
        }
    }
}

int SendWithRetry(const RequestFrame& frame, ReplyFrame& reply) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (SendFrame(frame) != 0) {
            return -1;
        }
        if (WaitForReply(reply, link.sequence) == 0) {
            return 0;
        }
    }
    return -1;
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

int InitSemaphores() {
    if (::sem_init(&link.tick, 0, 0) != 0) {
        return ReportSetUpError("SNMP:Error initializing Listen semaphore 1.", errno);
    }
    if (::sem_init(&link.release, 0, 0) != 0) {
        return ReportSetUpError("SNMP:Error initializing Listen semaphore 2.", errno);
    }
    return 0;
}

}  // namespace

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
    const std::lock_guard lock(link.handOver.mutex);
    link.handOver.peer.sin_family = AF_INET;
    link.handOver.peer.sin_port = htons(SWITCH_MGMT_PORT);
    link.handOver.peer.sin_addr.s_addr =
        ::inet_addr(remoteAddress != nullptr ? remoteAddress : kDefaultAddress);
    if (StartListenThread() != 0 || InitSemaphores() != 0) {
        return -1;
    }
    std::fputs("SNMP:UPD Sockets Initialized\n", stderr);
    return 0;
}

std::uint16_t InitSendRecvLock() {
    std::fputs("SNMP:Initializing Send/Receive semaphores\n", stderr);
    link.sequence = kFirstSequence;
    if (const int error = ::pthread_mutex_init(&link.requestMutex, nullptr); error != 0) {
        ReportSetUpError("SNMP:Failure initializing Send/Receive mutex semaphore.", error);
        return kQueryFailed;
    }
    std::fputs("SNMP:Send/Receive semaphores initialized\n", stderr);
    return 0;
}

std::uint32_t MakeTargetWord(std::uint32_t domain) {
    if (domain == 0) {
        return 0;
    }
    constexpr std::uint32_t kInteropDomainOffset = 0x600000;
    return (domain << 16) + (GetMergeMode() == kMergeInterop2 ? kInteropDomainOffset : 0);
}

int SwitchMgmtExchange(std::uint32_t domain, const char* command, const char* loggedText,
                       ReplyFrame& reply, std::size_t& requestSize) {
    if (onListenThread) {
        return -1;
    }
    const RequestLock lock;
    RequestFrame frame;
    const std::uint32_t sequence = NextSequence(link.sequence);
    if (BuildRequestFrame(command, MakeTargetWord(domain), sequence, frame) != 0) {
        return -1;
    }
    link.sequence = sequence;
    requestSize = frame.length;
    TraceLog(kTrace, "%-3d>> %s", static_cast<int>(domain), loggedText);
    return SendWithRetry(frame, reply);
}

std::uint16_t SwitchMgmtQuery(std::uint32_t domain, const char* command, ReplyText& result,
                              ConversionType type, std::uint32_t* value) {
    if (value != nullptr) {
        *value = 0;
    }
    ReplyFrame reply;
    std::size_t requestSize = 0;
    if (SwitchMgmtExchange(domain, command, command, reply, requestSize) != 0 ||
        CheckReplyFrame(reply, requestSize, result) != 0) {
        return kQueryFailed;
    }
    TraceLog(kTrace, "%-3d<< %s", static_cast<int>(domain),
             IsSecret(command) ? "(not shown)" : result.data());
    return static_cast<std::uint16_t>(ParseReturnValue(result.data(), result.size(), type, value));
}

std::uint16_t SwitchMgmtQueryf(std::uint32_t domain, ReplyText& result, ConversionType type,
                               std::uint32_t* value, const char* format, ...) {
    std::array<char, kCommandSize> command;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(command.data(), command.size(), format, arguments);
    va_end(arguments);
    return SwitchMgmtQuery(domain, command.data(), result, type, value);
}

int PingSwitchMgmt(std::uint32_t domain) {
    ReplyText result;
    return SwitchMgmtQuery(domain, "Get.Oper.Switch.Nop", result, kString) == 0 ? 0 : -1;
}

}  // namespace snmpmain
