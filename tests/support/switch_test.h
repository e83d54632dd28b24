// A test with a switch: the simulator in this process, and the agent's link to it. The link cannot
// be opened twice in a process, so all such tests of one process share it and the address.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
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

    void Discover() {
        ASSERT_EQ(InitSwitchInfo(), 0);
        ASSERT_EQ(UpdateConnUnitTable(), 0);
        server.TakeCommands();
    }

    sim::Server server;
};

}  // namespace snmpmain
