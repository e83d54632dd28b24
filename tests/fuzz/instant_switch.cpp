#include "tests/fuzz/instant_switch.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <thread>

namespace fuzz {
namespace {

constexpr in_port_t kSwitchPort = 5001;
constexpr std::uint32_t kSinkPort = 16200;
constexpr std::size_t kTargetOffset = 4;
constexpr std::size_t kChecksumSize = 4;

[[noreturn]] void Die(const char* what) {
    std::perror(what);
    std::abort();
}

// The built-in fabric with few ports, since each costs several queries, and its traps going out.
sim::Fabric NormalFabric(const std::string& sink) {
    sim::Fabric fabric = sim::DefaultFabric();
    for (sim::Switch& unit : fabric.switches) {
        unit.ports.resize(2);
    }
    sim::Switch& local = *fabric.Find(kLocalDomain);
    local.devLogComp = "Snmp";
    local.devLogLevel = "Info";
    local.traps = {};
    local.traps[0] = {sink, kSinkPort, "mark", true, "1"};
    local.traps[1] = {sink, kSinkPort + 1, "mark", true, "2"};
    local.traps[2] = {sink, kSinkPort + 2, "critical", true, "2"};
    return fabric;
}

void Change(sim::Switch& unit) {
    unit.operState = "Diagnostics";
    unit.inbandEnable = !unit.inbandEnable;
    unit.powerSupplies.assign(unit.powerSupplies.size(), "Bad");
    unit.fans.assign(unit.fans.size(), "Bad");
    for (sim::Blade& blade : unit.blades) {
        blade.tempStatus = "Overheating";
        blade.voltageStatus = "Bad";
    }
    for (sim::Port& port : unit.ports) {
        port.operState = port.operState == "Online" ? "Down" : "Online";
        port.diagStatus = port.diagStatus == "Failed" ? "Passed" : "Failed";
    }
}

sim::Fabric FabricOf(unsigned scene, const std::string& sink) {
    sim::Fabric fabric = NormalFabric(sink);
    if (scene & kChanged) {
        Change(*fabric.Find(kLocalDomain));
    }
    if (scene & kDeparted) {
        fabric.switches.pop_back();
    }
    if (scene & kInterop) {
        fabric.mergeMode = "Interop_2";
    }
    fabric.proxy = (scene & kProxyless) == 0;
    return fabric;
}

std::uint32_t Load32(const std::uint8_t* at) {
    return std::uint32_t{at[0]} << 24 | std::uint32_t{at[1]} << 16 | std::uint32_t{at[2]} << 8 |
           at[3];
}

void Store32(std::uint8_t* at, std::uint32_t value) {
    for (int byte = 3; byte >= 0; --byte) {
        *at++ = static_cast<std::uint8_t>(value >> (8 * byte));
    }
}

// The target word of a request, and 0 in its place: whatever it is, the switch is asked.
std::uint32_t TakeTarget(std::span<std::uint8_t> frame) {
    if (frame.size() < sim::kMinFrameSize) {
        return 0;
    }
    std::uint8_t* const target = frame.data() + kTargetOffset;
    std::uint8_t* const checksum = frame.data() + frame.size() - kChecksumSize;
    Store32(checksum, Load32(checksum) - std::accumulate(target, target + 4, std::uint32_t{0}));
    const std::uint32_t word = Load32(target);
    Store32(target, 0);
    return word;
}

// What start-up and every refresh of the unit table ask again and again until it is answered.
bool IsOfDiscovery(std::string_view path) {
    return path == "Oper.Switch.Nop" || path == "Oper.Switch.DomainID";
}

}  // namespace

InstantSwitch::InstantSwitch(const std::string& address, const std::string& sink) {
    for (unsigned scene = 0; scene < kScenes; ++scene) {
        models_[scene] = std::make_unique<Model>(FabricOf(scene, sink));
    }
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(kSwitchPort);
    name.sin_addr.s_addr = ::inet_addr(address.c_str());
    socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket_ < 0 ||
        ::bind(socket_, reinterpret_cast<const sockaddr*>(&name), sizeof(name)) != 0) {
        Die(address.c_str());
    }
    std::thread([this] { Answer(); }).detach();
}

void InstantSwitch::SendToAgent(std::span<const std::uint8_t> datagram) {
    sockaddr_in agent{};
    agent.sin_family = AF_INET;
    agent.sin_port = agentPort_;
    agent.sin_addr.s_addr = agentHost_;
    ::sendto(socket_, datagram.data(), datagram.size(), 0,
             reinterpret_cast<const sockaddr*>(&agent), sizeof(agent));
}

void InstantSwitch::Answer() {
    std::array<std::uint8_t, 2048> buffer;
    for (;;) {
        sockaddr_in from{};
        socklen_t length = sizeof(from);
        const ssize_t size = ::recvfrom(socket_, buffer.data(), buffer.size(), 0,
                                        reinterpret_cast<sockaddr*>(&from), &length);
        if (size < 0) {
            continue;
        }
        agentHost_ = from.sin_addr.s_addr;
        agentPort_ = from.sin_port;
        for (const Datagram& reply :
             Replies(std::span(buffer).first(static_cast<std::size_t>(size)))) {
            ::sendto(socket_, reply.data(), reply.size(), 0,
                     reinterpret_cast<const sockaddr*>(&from), sizeof(from));
        }
    }
}

std::vector<Datagram> InstantSwitch::Replies(std::span<const std::uint8_t> datagram) {
    const unsigned scene = scene_;
    Datagram frame(datagram.begin(), datagram.end());
    const std::uint32_t target = TakeTarget(frame);
    sim::Request request;
    if (const std::string complaint = sim::CheckRequest(frame, false, request);
        !complaint.empty() || (target & 0xFFFF) != 0) {
        std::fprintf(stderr, "bad request for target 0x%08x: %s\n", target, complaint.c_str());
        std::abort();
    }
    const bool offset = (scene & kInterop) != 0 && target >= sim::kInteropOffset;
    const std::uint32_t domain = (target - (offset ? sim::kInteropOffset : 0)) >> 16;
    const Datagram proper =
        sim::BuildFrame(target, request.type, request.sequence, TextFor(domain, request, scene));
    const std::lock_guard lock(replierMutex_);
    return replier_ ? replier_(request, proper) : std::vector<Datagram>{proper};
}

std::string InstantSwitch::TextFor(std::uint32_t domain, const sim::Request& request,
                                   unsigned scene) {
    if (request.type != sim::kGetType) {
        return "";
    }
    Model& model = *models_[scene % kScenes];
    const sim::Switch* const unit =
        domain > sim::kMaxDomain ? nullptr : model.commands.Find(domain);
    if (unit == nullptr) {
        return sim::ErrorText(sim::CommandError::kNoSuchEntry);
    }
    if ((scene & kFailing) != 0 && !IsOfDiscovery(request.text)) {
        return sim::ErrorText(sim::CommandError::kFailed);
    }
    return model.commands.Get(*unit, request.text, 0);
}

}  // namespace fuzz
