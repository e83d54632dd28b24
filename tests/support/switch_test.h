// A test with a switch: the simulator in this process, and the agent's link to it. The link cannot
// be opened twice in a process, so all such tests of one process share it and the address.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "sim/fabric.h"
#include "sim/server.h"
#include "src/agent/signals.h"
#include "src/base/main_thread.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/logins.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"
#include "src/snmptables/zoning.h"
#include "src/traps/trap_table.h"
#include "tests/support/captured_log.h"
#include "tests/support/loopback.h"

namespace snmpmain {

class SwitchTest : public testing::Test {
  protected:
    explicit SwitchTest(sim::Fabric fabric = sim::DefaultFabric())
        : server(std::move(fabric), Address()) {
        static const bool linked = [] {
            MarkMainThread();
            return InitLink(Address().c_str()) == 0 && InitSendRecvLock() == 0;
        }();
        EXPECT_TRUE(linked);
        ::setenv("SNMPMAIN_ROOT", "/dev/null", 1);  // whoever runs tests may have a snmpd
        SetDiagnosticLevel(kSilentLevel);
        ResetReachability();
        ResetTellings();
        ResetSwitchInfo();
        ResetConnUnitTable();
        ResetNameServerTable();
        ResetZoningTable();
        ResetAliasTable();
        ResetUnitStatusMemo();
        ResetLogins();
        NotifyQueue::Reset();
        SetFabricUpdatePending(false);
    }

    // Every frame that the agent sent must have been to the simulator's liking.
    ~SwitchTest() override {
        EXPECT_EQ(server.Complaints(), std::vector<std::string>{});
    }

    static std::string Address() {
        return LoopbackAddress(0);
    }

    // Texts of the commands received since the last look.
    std::vector<std::string> TakeTexts() {
        FinishTellings();
        std::vector<std::string> texts;
        for (const sim::ReceivedCommand& command : server.TakeCommands()) {
            texts.push_back(command.text);
        }
        return texts;
    }

    // Commands received since the last look that contain `part`.
    long CountTexts(const std::string& part) {
        const std::vector<std::string> texts = TakeTexts();
        return std::ranges::count_if(
            texts, [&](const std::string& text) { return text.find(part) != std::string::npos; });
    }

    // Replies to commands for which this holds are lost, those to all others are not.
    void LoseReplies(std::function<bool(const sim::ReceivedCommand&)> isLost) {
        server.SetReplyOverride([isLost = std::move(isLost)](const sim::ReceivedCommand& command,
                                                             std::vector<std::uint8_t> reply) {
            return isLost(command) ? std::nullopt : std::optional(std::move(reply));
        });
    }

    // Replies to commands for which this holds carry a status byte.
    void RefuseReplies(std::function<bool(const sim::ReceivedCommand&)> isRefused) {
        server.SetReplyOverride(
            [isRefused = std::move(isRefused)](const sim::ReceivedCommand& command,
                                               std::vector<std::uint8_t> reply) {
                reply[2] = isRefused(command) ? 1 : 0;
                return std::optional(std::move(reply));
            });
    }

    void Silence(std::initializer_list<std::uint32_t> domains, bool silent) {
        server.WithFabric([&](sim::Fabric& fabric) {
            for (const std::uint32_t domain : domains) {
                fabric.Find(domain)->silent = silent;
            }
        });
    }

    // The local switch's trap destinations, as the agent has read them.
    void SendTrapsTo(const std::vector<sim::TrapDestination>& destinations) {
        server.WithFabric([&](sim::Fabric& fabric) {
            fabric.Find(0)->traps = {};
            std::ranges::copy(destinations, fabric.Find(0)->traps.begin());
        });
        EXPECT_EQ(ReadTrapDestinations(), 0);
    }

    static bool Within(ReachClock::duration time, const std::function<bool()>& condition) {
        const auto end = ReachClock::now() + time;
        while (!condition() && ReachClock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return condition();
    }

    void Discover() {
        ASSERT_EQ(InitSwitchInfo(), 0);
        ASSERT_EQ(UpdateConnUnitTable(), 0);
        server.TakeCommands();
    }

    sim::Server server;
};

}  // namespace snmpmain
