// Notifications of any content, from the datagram to the traps that they lead to.
//
// The first byte of an input says how the rest is used and what the fabric is like meanwhile:
//
//   bit 0  the rest is the frame; otherwise its first byte's low half is the domain that the
//          notification comes from, the others are its text, and the frame around them is right
//   bit 1  the frame arrives as a datagram; otherwise the receiver is called with it
//   bit 2  queries fail
//   bit 3  the local switch's states are no longer those reported last
//   bit 4  a switch has left
//   bit 5  merge mode "Interop_2"
//   bit 7  switches speak for themselves only
//
// Bit 6 means nothing: with it, inputs begin with printable characters, as "@229;[Port 3]".

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "sim/frame.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/local_state.h"
#include "src/traps/notifications.h"
#include "src/traps/registration.h"
#include "src/upkeep/dispatch.h"
#include "src/upkeep/upkeep.h"
#include "tests/fuzz/surroundings.h"

namespace snmpmain {
namespace {

using fuzz::Require;

enum InputBit : std::uint8_t {
    kRaw = 1 << 0,
    kAsDatagram = 1 << 1,
    kQueriesFail = 1 << 2,
    kStatesChanged = 1 << 3,
    kSwitchLeft = 1 << 4,
    kInteropMode = 1 << 5,
    kNoProxy = 1 << 7,
};

constexpr std::size_t kMostFrame = 600;

// The agent with its switch, started once; every input finds both alike.
class Agent {
  public:
    Agent() {
        SetNotificationReceiver(HandleIncomingNotification);
        Settle(fuzz::kNormal);
        InitTrapNotifications();
    }

    void Take(std::uint8_t bits, std::span<const std::uint8_t> rest) {
        const unsigned lasting = ((bits & kInteropMode) != 0 ? fuzz::kInterop : 0u) |
                                 ((bits & kNoProxy) != 0 ? fuzz::kProxyless : 0u);
        const unsigned passing = ((bits & kQueriesFail) != 0 ? fuzz::kFailing : 0u) |
                                 ((bits & kStatesChanged) != 0 ? fuzz::kChanged : 0u) |
                                 ((bits & kSwitchLeft) != 0 ? fuzz::kDeparted : 0u);
        if (lasting != lasting_) {
            Settle(lasting);
        } else if (passed_ != 0) {
            PutBack();
        }
        passed_ = passing;
        switch_.SetScene(lasting | passing);
        ForgetTheLast();

        Deliver(bits, (bits & kRaw) != 0 ? Cut(rest) : WellFormed(rest));
        while (NotifyQueue::Pending()) {
            DispatchNotification();
            FinishUpkeep();
        }
        Require(GetLocalDomainId() == fuzz::kLocalDomain, "the local switch stays the same");
        Require(GetUnitCount() <= 3, "no unit appears from nowhere");
        switch_.CheckRequests();
    }

  private:
    // Has the agent read its switch anew.
    void Settle(unsigned lasting) {
        switch_.SetScene(lasting);
        lasting_ = lasting;
        ResetConnUnitTable();
        Require(InitSwitchInfo() == 0, "switch information");
        Discover();
        RememberStates();
    }

    // Undoes what the last input may have led to; each query counts for the fuzzer's speed.
    void PutBack() {
        switch_.SetScene(lasting_);
        if ((passed_ & fuzz::kDeparted) != 0) {
            Discover();
        }
        if ((passed_ & (fuzz::kChanged | fuzz::kFailing)) != 0) {
            RememberStates();
        }
    }

    static void Discover() {
        Require(UpdateConnUnitTable() == 0, "discovery");
    }

    static void FinishUpkeep() {
        while (IsUpkeepDue()) {
            StepUpkeep();
        }
        FinishTellings();
    }

    static void RememberStates() {
        ResetUnitStatusMemo();
        Require(InitLocalStateTable() == 0, "local states");
    }

    static void ForgetTheLast() {
        NotifyQueue::Reset();
        ResetUnitStatusMemo();
        SetFabricUpdatePending(false);
        for (std::uint16_t unit = 0; unit < GetUnitCount(); ++unit) {
            SetUnitReset(connUnitTbl[unit].domainId, 0);
        }
    }

    static std::vector<std::uint8_t> Cut(std::span<const std::uint8_t> bytes) {
        bytes = bytes.first(std::min(bytes.size(), kMostFrame));
        return {bytes.begin(), bytes.end()};
    }

    std::vector<std::uint8_t> WellFormed(std::span<const std::uint8_t> rest) const {
        const std::uint32_t domain = rest.empty() ? 0 : rest[0] & 15u;
        const auto text = rest.empty() ? rest : rest.subspan(1);
        return sim::BuildFrame(sim::DomainWord(domain, (lasting_ & fuzz::kInterop) != 0),
                               sim::kNotificationType, 1,
                               {reinterpret_cast<const char*>(text.data()), text.size()});
    }

    void Deliver(std::uint8_t bits, const std::vector<std::uint8_t>& frame) {
        if ((bits & kAsDatagram) == 0) {
            HandleIncomingNotification(frame);
            return;
        }
        switch_.server.SendRaw(frame);
        // The ListenThread has been through with it when it hands out a later reply.
        PingSwitchMgmt(0);
    }

    fuzz::Switch switch_;
    unsigned lasting_ = fuzz::kNormal;
    unsigned passed_ = fuzz::kNormal;  // the last input's passing part of the scene
};

}  // namespace
}  // namespace snmpmain

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const agent = new snmpmain::Agent;  // its threads never end
    if (size > 0) {
        agent->Take(data[0], {data + 1, size - 1});
    }
    return 0;
}
