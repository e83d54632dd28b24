#include "src/traps/trap_sender.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/traps/event_kinds.h"
#include "src/traps/private_events.h"
#include "src/traps/trap_message.h"
#include "src/traps/trap_table.h"

namespace snmpmain {
namespace {

struct Community {
    std::mutex mutex;
    ReplyText text{};
};

Community community;

ReplyText GetCommunity() {
    const std::lock_guard lock(community.mutex);
    return community.text;
}

// Hundredths of a second since the agent was started.
std::uint32_t UpTime() {
    using Ticks = std::chrono::duration<std::uint64_t, std::centi>;
    static const auto start = std::chrono::steady_clock::now();
    const auto passed = std::chrono::steady_clock::now() - start;
    return static_cast<std::uint32_t>(std::chrono::duration_cast<Ticks>(passed).count());
}

// Started with the program rather than with the first trap.
[[maybe_unused]] const std::uint32_t kStartOfUpTime = UpTime();

std::uint32_t NextRequestId() {
    static std::atomic<std::uint32_t> last{0};
    return ++last & 0x7FFFFFFF;
}

// A socket to one destination, open while one trap is sent.
class TrapSession {
  public:
    explicit TrapSession(const TrapRow& row) : address_(row.address) {
        sockaddr_in sink{};
        sink.sin_family = AF_INET;
        sink.sin_port = htons(static_cast<std::uint16_t>(row.port));
        socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        isOpen_ = socket_ >= 0 && ::inet_aton(row.address, &sink.sin_addr) != 0 &&
                  ::connect(socket_, reinterpret_cast<const sockaddr*>(&sink), sizeof(sink)) == 0;
        if (isOpen_) {
            TraceLog(kTrace, "Created session for trapsink: %s", address_);
        } else {
            TraceLog(kSevere, "Failed to open trap client session");
        }
    }

    ~TrapSession() {
        if (socket_ >= 0) {
            ::close(socket_);
        }
        if (isOpen_) {
            TraceLog(kTrace, "Removed session for trapsink: %s", address_);
        }
    }

    TrapSession(const TrapSession&) = delete;
    TrapSession& operator=(const TrapSession&) = delete;

    bool IsOpen() const {
        return isOpen_;
    }

    // The agent's own address as the destination sees it, network order.
    std::uint32_t OwnAddress() const {
        sockaddr_in own{};
        socklen_t size = sizeof(own);
        ::getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
        return own.sin_addr.s_addr;
    }

    // A trap that the network cannot take at once is lost, as traps may be.
    void Send(std::span<const std::uint8_t> message) const {
        ::send(socket_, message.data(), message.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }

  private:
    const char* address_;
    int socket_ = -1;
    bool isOpen_ = false;
};

void SendTo(const TrapSession& session, const TrapRow& row, const TrapHeader& header,
            std::span<const TrapBinding> bindings) {
    TrapMessage message;
    const ReplyText text = GetCommunity();
    const TrapEnvelope envelope{text.data(), UpTime(), NextRequestId(), session.OwnAddress()};
    const std::size_t size = row.version == kTrapVersion1
                                 ? EncodeV1Trap(envelope, header, bindings, message)
                                 : EncodeV2Trap(envelope, header, bindings, message);
    if (size == 0) {
        TraceLog(kSevere, "Trap too long for trapsink: %s", row.address);
        return;
    }
    session.Send(std::span(message).first(size));
}

}  // namespace

void SetTrapCommunity(const char* text) {
    const std::lock_guard lock(community.mutex);
    CopyText(community.text.data(), community.text.size(), text);
}

int SendTrapToSinks(const Trap& trap, std::uint16_t severity) {
    const TrapHeader header = MakeTrapHeader(trap.oid);
    for (const TrapRow& row : GetTrapTable()) {
        if (row.state != kTrapRowActive || severity > row.filter) {
            continue;
        }
        const TrapSession session(row);
        if (session.IsOpen()) {
            SendTo(session, row, header, std::span(trap.bindings).first(trap.bindingCount));
        }
    }
    return 0;
}

void SendColdStartTrap() {
    ReplyText reason;
    if (SwitchMgmtQuery(0, "Get.Oper.Switch.ResetReason", reason, kString) != 0) {
        std::fputs("Error sending Cold/Warmstart trap\n", stderr);
        return;
    }
    if (std::strcmp(reason.data(), "HotReset") == 0) {
        SendFabricUpdateEvent();
        SendUnitStatusEvent(kSwitchState);
    }
    const TrapHeader header = MakeColdStartHeader();
    for (const TrapRow& row : GetTrapTable()) {
        if (row.state != kTrapRowActive) {
            continue;
        }
        const TrapSession session(row);
        if (session.IsOpen()) {
            std::fputs("Sending ColdStart trap\n", stderr);
            SendTo(session, row, header, {});
        }
    }
}

}  // namespace snmpmain
