#include "sim/server.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <compare>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include "sim/commands.h"
#include "sim/frame.h"
#include "sim/notices.h"
#include "sim/sets.h"

namespace sim {
namespace {

using Bytes = std::vector<std::uint8_t>;
// Not the steady clock: the thread sanitizer does not see waits on that one.
using Clock = std::chrono::system_clock;
constexpr int kPatienceMs = 200;

struct Address {
    std::uint32_t host = 0;  // both in network order
    std::uint16_t port = 0;
    auto operator<=>(const Address&) const = default;
};

/// An address of the server's own, where one switch is the local one.
struct Endpoint {
    Address address;
    std::uint16_t domain = 0;  // of that switch; 0: of the fabric's local one
    int fd = -1;
};

/// Someone who sent a request, and where it arrived: whatever goes to him comes from there.
struct Peer {
    std::size_t endpoint = 0;
    Address address;
    auto operator<=>(const Peer&) const = default;
};

struct Outgoing {
    Bytes frame;
    Peer to;
    Clock::time_point due;
    bool held = false;  // goes out after the next reply, or when due
};

sockaddr_in ToSockaddr(const Address& address) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = address.host;
    result.sin_port = address.port;
    return result;
}

std::string ToText(const Address& address) {
    char host[INET_ADDRSTRLEN] = "";
    const in_addr in{address.host};
    inet_ntop(AF_INET, &in, host, sizeof host);
    return std::string(host) + ":" + std::to_string(ntohs(address.port));
}

[[noreturn]] void ThrowErrno(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

Address ListenAddress(const std::string& text) {
    in_addr host{};
    if (inet_pton(AF_INET, text.c_str(), &host) != 1 || (ntohl(host.s_addr) >> 24) != 127) {
        throw std::system_error(std::make_error_code(std::errc::invalid_argument),
                                "\"" + text + "\" is not an address in 127.0.0.0/8");
    }
    return {host.s_addr, htons(kPort)};
}

int OpenSocket(const Address& address) {
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        ThrowErrno("cannot create a socket");
    }
    // Room for a burst; the kernel may grant less. The time-out is only a safety net for Stop,
    // which wakes the receiver with a datagram.
    const int room = 1 << 20;
    const timeval patience{0, kPatienceMs * 1000L};
    setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const sockaddr_in name = ToSockaddr(address);
    if (bind(fd, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0) {
        const int error = errno;
        close(fd);
        errno = error;
        ThrowErrno("cannot listen on " + ToText(address));
    }
    return fd;
}

void Close(const std::vector<Endpoint>& endpoints) {
    for (const Endpoint& endpoint : endpoints) {
        close(endpoint.fd);
    }
}

/// A text of one line: whatever is not printable ASCII becomes \xNN.
std::string OneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        char escape[8] = {c};
        if (byte < 0x20 || byte > 0x7E) {
            std::snprintf(escape, sizeof escape, "\\x%02x", unsigned{byte});
        }
        line += escape;
    }
    return line;
}

template <class T>
void Record(std::deque<T>& list, T item) {
    if (list.size() == kMaxRecorded) {
        list.pop_front();
    }
    list.push_back(std::move(item));
}

}  // namespace

struct Server::State {
    State(Fabric model, const std::string& listen, const Faults& initial)
        : address(ListenAddress(listen)), fabric(std::move(model)), commands(fabric) {
        if (const std::string wrong = CheckFabric(fabric); !wrong.empty()) {
            throw FabricError(wrong);
        }
        TakeFaults(initial);
    }

    const Address address;
    const std::chrono::steady_clock::time_point started = std::chrono::steady_clock::now();

    std::mutex running;  // held by Start and Stop
    // Changed only while both threads are at rest; none when stopped. The first is at `address`.
    std::vector<Endpoint> endpoints;
    std::atomic<bool> stopping{false};
    std::thread receiver;
    std::thread sender;

    mutable std::mutex mutex;  // guards all below
    Fabric fabric;
    Commands commands;
    Sets sets;
    Faults faults;
    std::mt19937_64 random;
    bool paused = false;
    bool answersAll = false;
    bool recording = true;
    std::deque<ReceivedCommand> received;
    std::deque<std::string> complaints;
    Totals totals;
    std::shared_ptr<const std::function<void(const std::string&)>> log;
    std::shared_ptr<const ReplyOverride> override;
    std::optional<Peer> lastRequester;  // at the first endpoint
    std::set<std::pair<std::uint16_t, Peer>> registered;
    std::uint32_t notificationSequence = 0;
    std::vector<Outgoing> waiting;
    std::condition_variable waitingChanged;

    void TakeFaults(const Faults& wanted);
    void Receive();
    void SendWaiting();
    std::vector<Endpoint> OpenEndpoints() const;
    void ReceiveAt(std::size_t endpoint);
    std::uint16_t LocalDomain(std::size_t endpoint) const;
    void Handle(std::span<const std::uint8_t> datagram, const Peer& from);
    void Refuse(const std::string& complaint, const Address& from, std::size_t size);
    std::uint32_t RunningSeconds() const;
    std::string ReplyText(const Request& request, const Switch& unit, const Peer& from,
                          std::vector<Notice>& notices);
    std::string FixedText(const Request& request, const Switch* unit);
    std::set<Peer> RegisteredAt(std::uint16_t domain) const;
    std::size_t SendNotification(std::uint16_t domain, std::string_view text, bool zeroAsLocal,
                                 const std::set<Peer>& receivers);
    std::size_t Notify(const Notice& notice);
    bool Reply(Bytes frame, std::uint32_t sequence, const Peer& to);
    void ReleaseHeld(Clock::time_point due);
    void Send(std::span<const std::uint8_t> frame, const Peer& to) const;
};

void Server::State::TakeFaults(const Faults& wanted) {
    faults = wanted;
    random.seed(wanted.seed);
}

std::vector<Endpoint> Server::State::OpenEndpoints() const {
    std::vector<Endpoint> opened;
    try {
        opened.push_back({address, 0, OpenSocket(address)});
        for (const Switch& unit : fabric.switches) {
            if (unit.agentAddress != "0.0.0.0") {
                const Address own = ListenAddress(unit.agentAddress);
                opened.push_back({own, unit.domain, OpenSocket(own)});
            }
        }
    } catch (...) {
        Close(opened);
        throw;
    }
    return opened;
}

void Server::State::Receive() {
    std::vector<pollfd> sockets;
    sockets.reserve(endpoints.size());
    for (const Endpoint& endpoint : endpoints) {
        sockets.push_back({endpoint.fd, POLLIN, 0});
    }
    while (!stopping) {
        if (sockets.size() == 1) {  // reading it waits as well, and costs one call less
            ReceiveAt(0);
        } else if (poll(sockets.data(), sockets.size(), kPatienceMs) > 0) {
            for (std::size_t i = 0; i < sockets.size(); i++) {
                if (sockets[i].revents != 0) {
                    ReceiveAt(i);
                }
            }
        }
    }
}

void Server::State::ReceiveAt(std::size_t endpoint) {
    std::array<std::uint8_t, 2048> buffer;
    sockaddr_in from{};
    socklen_t length = sizeof from;
    const ssize_t size = recvfrom(endpoints[endpoint].fd, buffer.data(), buffer.size(), 0,
                                  reinterpret_cast<sockaddr*>(&from), &length);
    if (size >= 0 && !stopping) {
        Handle(std::span(buffer).first(static_cast<std::size_t>(size)),
               {endpoint, {from.sin_addr.s_addr, from.sin_port}});
    }
}

std::uint16_t Server::State::LocalDomain(std::size_t endpoint) const {
    const std::uint16_t domain = endpoints[endpoint].domain;
    return domain == 0 ? fabric.localDomain : domain;
}

void Server::State::Handle(std::span<const std::uint8_t> datagram, const Peer& from) {
    std::unique_lock lock(mutex);
    Request request;
    const bool interop = fabric.Interop();
    if (const std::string complaint = CheckRequest(datagram, interop, request, answersAll);
        !complaint.empty()) {
        Refuse(complaint, from.address, datagram.size());
        return;
    }
    const std::uint16_t local = LocalDomain(from.endpoint);
    if (from.endpoint == 0) {
        lastRequester = from;
    }

    ReceivedCommand command;
    if (recording || log != nullptr || override != nullptr) {
        command = {request.domain, request.type, request.sequence,
                   std::string(CommandPrefix(request.type)).append(request.text), local};
    }
    if (recording) {
        Record(received, command);
    }

    std::optional<std::string> text;
    std::vector<Notice> notices;
    Bytes frame;
    const Switch* unit = commands.Find(request.domain == 0 ? local : request.domain);
    if (answersAll) {
        text = FixedText(request, unit);
    } else if (unit != nullptr && !paused && !faults.silent && !unit->silent) {
        text = ReplyText(request, *unit, from, notices);
    }
    if (text) {
        const std::uint32_t domain = unit == nullptr ? request.domain : unit->domain;
        frame = BuildFrame(DomainWord(domain, interop), request.type, request.sequence, *text);
    }
    const auto logNow = log;
    if (const auto changed = override; changed != nullptr && text) {
        lock.unlock();
        std::optional<Bytes> other = (*changed)(command, frame);
        lock.lock();
        if (other) {
            frame = std::move(*other);
        } else {
            text.reset();
        }
    }
    const bool answered = text && Reply(std::move(frame), request.sequence, from);
    (answered ? totals.answered : totals.unanswered)++;
    for (const Notice& notice : notices) {
        Notify(notice);
    }
    lock.unlock();
    if (logNow != nullptr) {
        (*logNow)(OneLine(std::to_string(request.domain) + " " + ToText(from.address) + " " +
                          command.text + " -> " + (answered ? *text : "(no answer)")));
    }
}

void Server::State::Refuse(const std::string& complaint, const Address& from, std::size_t size) {
    std::string line = "refused a frame of " + std::to_string(size) + " bytes from " +
                       ToText(from) + ": " + complaint;
    std::fprintf(stderr, "switchsim: %s\n", line.c_str());
    Record(complaints, std::move(line));
    totals.refused++;
}

std::uint32_t Server::State::RunningSeconds() const {
    const auto running = std::chrono::steady_clock::now() - started;
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::seconds>(running).count());
}

std::string Server::State::ReplyText(const Request& request, const Switch& unit, const Peer& from,
                                     std::vector<Notice>& notices) {
    switch (request.type) {
        case kGetType:
            return commands.Get(unit, request.text, RunningSeconds());
        case kSetType: {
            const std::uint64_t id = std::uint64_t{from.address.host} << 16 | from.address.port;
            SetResult result = sets.Run(*fabric.Find(unit.domain), request.text,
                                        {id, std::chrono::steady_clock::now(), RunningSeconds()});
            if (result.changed) {
                commands.Forget();
            }
            notices = std::move(result.notices);
            return std::move(result.reply);
        }
        case kNotifyOnType:
            registered.insert({unit.domain, from});
            return "";
        default:
            registered.erase({unit.domain, from});
            return "";
    }
}

/// What AnswerAll has for any request.
std::string Server::State::FixedText(const Request& request, const Switch* unit) {
    if (request.type != kGetType) {
        return "";
    }
    return unit == nullptr ? ErrorText(CommandError::kNoSuchEntry)
                           : commands.Get(*unit, request.text, 0);
}

std::set<Peer> Server::State::RegisteredAt(std::uint16_t domain) const {
    std::set<Peer> found;
    for (const auto& [registeredAt, peer] : registered) {
        if (registeredAt == domain) {
            found.insert(peer);
        }
    }
    return found;
}

/// `zeroAsLocal`: to those to whom it is the local switch it names itself by 0, to others by its
/// domain. Returns how many it sent.
std::size_t Server::State::SendNotification(std::uint16_t domain, std::string_view text,
                                            bool zeroAsLocal, const std::set<Peer>& receivers) {
    notificationSequence = notificationSequence % 0xFFFF + 1;
    for (const Peer& peer : receivers) {
        if (LosesNotice(faults, random)) {
            continue;
        }
        const bool zero = zeroAsLocal && LocalDomain(peer.endpoint) == domain;
        Send(BuildFrame(zero ? 0 : DomainWord(domain, fabric.Interop()), kNotificationType,
                        notificationSequence, text),
             peer);
    }
    return receivers.size();
}

std::size_t Server::State::Notify(const Notice& notice) {
    std::set<Peer> receivers = RegisteredAt(notice.domain);
    if (notice.ownAgentOnly) {
        std::erase_if(receivers, [&](const Peer& peer) {
            return LocalDomain(peer.endpoint) != notice.domain;
        });
    }
    return SendNotification(notice.domain, notice.text, true, receivers);
}

/// Sends a reply with the faults that fall on it; false when it is lost.
bool Server::State::Reply(Bytes frame, std::uint32_t sequence, const Peer& to) {
    ReplyFate fate = DecideFate(faults, random);
    if (fate.lost) {
        return false;
    }
    // The reply for which another one waits cannot wait as well.
    fate.held = fate.held && std::none_of(waiting.begin(), waiting.end(),
                                          [](const Outgoing& each) { return each.held; });
    // A replaced frame may be too short for these two.
    if (fate.statusSet && frame.size() >= kMinFrameSize) {
        SetStatus(frame, faults.statusValue);
    }
    std::vector<Bytes> frames;
    if (fate.strayFirst && frame.size() >= kMinFrameSize) {
        SetSequence(frames.emplace_back(frame), StraySequence(sequence));
    }
    if (fate.doubled) {
        frames.push_back(frame);
    }
    frames.push_back(std::move(frame));

    Clock::time_point due;
    if (faults.delayMs > 0 || fate.held) {
        due = Clock::now() + std::chrono::milliseconds(faults.delayMs);
    }
    for (Bytes& each : frames) {
        if (fate.held) {
            waiting.push_back(
                {std::move(each), to, due + std::chrono::milliseconds(faults.reorderMs), true});
        } else if (faults.delayMs > 0) {
            waiting.push_back({std::move(each), to, due, false});
        } else {
            Send(each, to);
        }
    }
    if (!fate.held) {
        ReleaseHeld(due);
    }
    if (!waiting.empty()) {  // waking the sender for nothing would slow every reply down
        waitingChanged.notify_one();
    }
    return true;
}

/// A reply has overtaken those that were held back: they follow it now.
void Server::State::ReleaseHeld(Clock::time_point due) {
    if (waiting.empty()) {
        return;
    }
    const auto firstHeld = std::stable_partition(waiting.begin(), waiting.end(),
                                                 [](const Outgoing& each) { return !each.held; });
    for (auto each = firstHeld; each != waiting.end(); ++each) {
        each->held = false;
        each->due = std::min(each->due, due);
    }
    if (faults.delayMs == 0) {
        for (auto each = firstHeld; each != waiting.end(); ++each) {
            Send(each->frame, each->to);
        }
        waiting.erase(firstHeld, waiting.end());
    }
}

/// The thread that sends what has to wait.
void Server::State::SendWaiting() {
    std::unique_lock lock(mutex);
    while (!stopping) {
        const auto next =
            std::min_element(waiting.begin(), waiting.end(),
                             [](const Outgoing& a, const Outgoing& b) { return a.due < b.due; });
        if (next == waiting.end()) {
            waitingChanged.wait(lock);
        } else if (next->due > Clock::now()) {
            const Clock::time_point due = next->due;
            waitingChanged.wait_until(lock, due);
        } else {
            Send(next->frame, next->to);
            waiting.erase(next);
        }
    }
}

void Server::State::Send(std::span<const std::uint8_t> frame, const Peer& to) const {
    const sockaddr_in name = ToSockaddr(to.address);
    sendto(endpoints[to.endpoint].fd, frame.data(), frame.size(), 0,
           reinterpret_cast<const sockaddr*>(&name), sizeof name);
}

Server::Server(Fabric fabric, const std::string& address, Faults faults)
    : state_(std::make_unique<State>(std::move(fabric), address, faults)) {
    Start();
}

Server::~Server() {
    Stop();
}

void Server::Start() {
    State& state = *state_;
    const std::lock_guard running(state.running);
    if (state.receiver.joinable()) {
        return;
    }
    {
        const std::lock_guard lock(state.mutex);
        state.endpoints = state.OpenEndpoints();
        state.stopping = false;
    }
    state.receiver = std::thread([&state] { state.Receive(); });
    state.sender = std::thread([&state] { state.SendWaiting(); });
}

void Server::Stop() {
    State& state = *state_;
    const std::lock_guard running(state.running);
    if (!state.receiver.joinable()) {
        return;
    }
    {
        const std::lock_guard lock(state.mutex);
        state.stopping = true;
        state.Send({}, {0, state.address});  // wakes the receiver
        state.waitingChanged.notify_one();
    }
    state.receiver.join();
    state.sender.join();
    const std::lock_guard lock(state.mutex);
    Close(state.endpoints);
    state.endpoints.clear();
    state.waiting.clear();
    state.registered.clear();
    state.sets.Forget();
    state.lastRequester.reset();
}

void Server::SetFaults(const Faults& faults) {
    const std::lock_guard lock(state_->mutex);
    state_->TakeFaults(faults);
}

void Server::Pause(bool silent) {
    const std::lock_guard lock(state_->mutex);
    state_->paused = silent;
}

void Server::AnswerAll() {
    const std::lock_guard lock(state_->mutex);
    state_->answersAll = true;
}

std::vector<ReceivedCommand> Server::TakeCommands() {
    std::deque<ReceivedCommand> taken;
    {
        const std::lock_guard lock(state_->mutex);
        taken.swap(state_->received);
    }
    return {std::make_move_iterator(taken.begin()), std::make_move_iterator(taken.end())};
}

void Server::SetRecording(bool on) {
    const std::lock_guard lock(state_->mutex);
    state_->recording = on;
}

std::vector<std::string> Server::Complaints() const {
    const std::lock_guard lock(state_->mutex);
    return {state_->complaints.begin(), state_->complaints.end()};
}

Totals Server::GetTotals() const {
    const std::lock_guard lock(state_->mutex);
    return state_->totals;
}

void Server::WithFabric(const std::function<void(Fabric&)>& change) {
    const std::lock_guard lock(state_->mutex);
    try {
        change(state_->fabric);
    } catch (...) {
        state_->commands.Forget();  // it may have changed something before
        throw;
    }
    state_->commands.Forget();
}

std::size_t Server::ChangeAndNotify(const std::function<void(Fabric&)>& change) {
    State& state = *state_;
    const std::lock_guard lock(state.mutex);
    Fabric changed = state.fabric;
    change(changed);
    if (const std::string wrong = CheckFabric(changed); !wrong.empty()) {
        throw FabricError(wrong);
    }
    std::swap(state.fabric, changed);
    state.commands.Forget();
    std::size_t sent = 0;
    if (!state.paused && !state.faults.silent) {
        for (const Notice& notice : FindNotices(changed, state.fabric)) {
            sent += state.Notify(notice);
        }
    }
    return sent;
}

void Server::SetValue(std::uint16_t domain, std::string path, std::optional<std::string> text) {
    WithFabric([&](Fabric& fabric) {
        Switch* unit = fabric.Find(domain);
        if (unit == nullptr) {
            throw std::out_of_range("no switch has domain " + std::to_string(domain));
        }
        unit->values[path] = std::move(text);
    });
}

void Server::SetLog(std::function<void(const std::string&)> log) {
    const std::lock_guard lock(state_->mutex);
    state_->log =
        log ? std::make_shared<const std::function<void(const std::string&)>>(std::move(log))
            : nullptr;
}

std::size_t Server::SendNotification(std::uint16_t domain, std::string_view text) {
    State& state = *state_;
    const std::lock_guard lock(state.mutex);
    const std::uint16_t from = domain == 0 ? state.fabric.localDomain : domain;
    std::set<Peer> receivers = state.RegisteredAt(from);
    if (state.lastRequester) {
        receivers.insert(*state.lastRequester);
    }
    return state.SendNotification(from, text, domain == 0, receivers);
}

void Server::SendRaw(std::span<const std::uint8_t> datagram) {
    State& state = *state_;
    const std::lock_guard lock(state.mutex);
    if (state.lastRequester) {
        state.Send(datagram, *state.lastRequester);
    }
}

void Server::SetReplyOverride(ReplyOverride change) {
    const std::lock_guard lock(state_->mutex);
    state_->override = change ? std::make_shared<const ReplyOverride>(std::move(change)) : nullptr;
}

}  // namespace sim
