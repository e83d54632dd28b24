// Switch management for fuzzing: it answers every request at once, also those to switches that do
// not exist, so that nothing ever waits for a time-out. It complains of a malformed request by
// ending the process.
#pragma once

#include <netinet/in.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "sim/commands.h"
#include "sim/fabric.h"
#include "sim/frame.h"

namespace fuzz {

// What differs from the fabric as it normally is; to be combined.
enum Scene : unsigned {
    kNormal = 0,
    kChanged = 1,    // the local switch's states are others
    kDeparted = 2,   // one switch less
    kInterop = 4,    // merge mode "Interop_2"
    kProxyless = 8,  // switches speak for themselves only
    kScenes = 16,
    kFailing = 16,  // queries for values fail; discovery and its ping do not
};

// Switches of the fabric: the local one, another, and the one that departs.
constexpr std::uint16_t kLocalDomain = 2;

using Datagram = std::vector<std::uint8_t>;

// Makes what is sent in answer to a request, in this order, of its proper reply.
using Replier =
    std::function<std::vector<Datagram>(const sim::Request& request, const Datagram& proper)>;

class InstantSwitch {
  public:
    // Listens on port 5001 of a loopback address. Traps go to `sink` in both versions.
    InstantSwitch(const std::string& address, const std::string& sink);

    InstantSwitch(const InstantSwitch&) = delete;
    InstantSwitch& operator=(const InstantSwitch&) = delete;

    void SetScene(unsigned scene) {
        scene_ = scene;
    }

    // Has a replier answer, on the switch's thread but never after the next call of this. Without
    // one the proper replies go out.
    void SetReplier(Replier replier) {
        const std::lock_guard lock(replierMutex_);
        replier_ = std::move(replier);
    }

    // Sends a datagram to the last requester, who receives it before any later reply.
    void SendToAgent(std::span<const std::uint8_t> datagram);

  private:
    struct Model {
        explicit Model(sim::Fabric asIs) : fabric(std::move(asIs)), commands(fabric) {}
        sim::Fabric fabric;
        sim::Commands commands;
    };

    [[noreturn]] void Answer();
    std::vector<Datagram> Replies(std::span<const std::uint8_t> datagram);
    std::string TextFor(std::uint32_t domain, const sim::Request& request, unsigned scene);

    int socket_ = -1;
    std::atomic<unsigned> scene_{kNormal};
    std::array<std::unique_ptr<Model>, kScenes> models_;
    std::mutex replierMutex_;
    Replier replier_;
    std::atomic<std::uint32_t> agentHost_{0};  // both in network order
    std::atomic<std::uint16_t> agentPort_{0};
};

}  // namespace fuzz
