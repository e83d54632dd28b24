// Notifications that get lost, and a switch management that forgets who is registered.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <thread>

#include "trust/measure.h"

namespace trust {
namespace {

constexpr int kTrapPort = 16200;

// A port of a unit, as the traps about it number it.
using PortNumber = std::pair<int, int>;

// The switches 2 and 7 of the built-in fabric, each with its agent.
class LostNotifications : public testing::Test {
  protected:
    void SetUp() override {
        sim::Fabric fabric = sim::DefaultFabric();
        for (const auto& [domain, stack] : {std::pair(2, &first_), std::pair(7, &second_)}) {
            sim::Switch& unit = *fabric.Find(static_cast<std::uint16_t>(domain));
            e2e::SendTrapsTo(unit, stack->Address(), kTrapPort);
            unit.ports.resize(8);
            for (sim::Port& port : unit.ports) {
                port.operState = port.adminState = "Online";
            }
        }
        fabric.Find(7)->agentAddress = second_.Address();
        first_.StartSwitch(fabric);
        for (e2e::Stack* stack : {&first_, &second_}) {
            stack->StartReceiver(kTrapPort);
            stack->StartSnmpd();
            stack->StartAgent({"SNMPMAIN_SWEEP=" + std::to_string(round_)});
            ASSERT_TRUE(stack->AwaitAgent());
        }
    }

    // The states of a unit's links as its own agent has reported them, one after the other.
    static std::map<int, std::vector<int>> Reported(const e2e::Stack& stack, int unit) {
        const std::string column = e2e::kVendorMib + ".10.1.1.4." + std::to_string(unit) + ".";
        std::map<int, std::vector<int>> states;
        for (const std::string& trap : stack.Traps(kTrapPort)) {
            const std::size_t at = trap.find(column);
            int port = 0, state = 0;
            if (at != trap.npos && std::sscanf(trap.c_str() + at + column.size(),
                                               "%d = INTEGER: %d", &port, &state) == 2) {
                states[port].push_back(state);
            }
        }
        return states;
    }

    const int round_ = Scaled(57, 6);
    e2e::Stack first_, second_{1};
};

TEST_F(LostNotifications, AreMadeUpForOnce) {
    sim::Server& server = first_.Switch();
    server.SetFaults({.loseNotices = 0.3});
    std::mt19937 random(1);
    std::map<PortNumber, long> changes;
    std::map<PortNumber, bool> online;
    const int seconds = Scaled(600, 15), restarts = Scaled(5, 1);
    int restarted = 0;
    const Clock::time_point start = Clock::now();
    while (SecondsSince(start) < seconds) {
        const PortNumber which(static_cast<int>(random() % 2) + 1, static_cast<int>(random() % 8));
        const auto domain = static_cast<std::uint16_t>(which.first == 1 ? 2 : 7);
        server.ChangeAndNotify([&](sim::Fabric& fabric) {
            sim::Port& port = fabric.Find(domain)->ports[static_cast<std::size_t>(which.second)];
            online[which] = port.operState != "Online";
            port.operState = port.operState == "Online" ? "Offline" : "Online";
        });
        ++changes[which];
        if (SecondsSince(start) > seconds * (restarted + 1) / (restarts + 1)) {
            server.Stop();
            server.Start();
            ++restarted;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % Scaled(4000, 400)));
    }
    std::this_thread::sleep_for(std::chrono::seconds(round_ + 3));
    long made = 0, reports = 0;
    for (const auto& [unit, stack] : {std::pair(1, &first_), std::pair(2, &second_)}) {
        const std::map<int, std::vector<int>> reported = Reported(*stack, unit);
        for (int port = 0; port < 8; ++port) {
            const PortNumber which(unit, port);
            const auto found = reported.find(port + 1);
            const std::vector<int> states =
                found == reported.end() ? std::vector<int>{} : found->second;
            made += changes[which];
            reports += static_cast<long>(states.size());
            EXPECT_LE(static_cast<long>(states.size()), changes[which]) << unit << " " << port;
            int last = 1;
            for (const int state : states) {
                EXPECT_NE(state, last) << unit << " " << port << " is reported twice";
                EXPECT_TRUE(state == 1 || state == 2);
                last = state;
            }
            EXPECT_EQ(last == 1, changes[which] == 0 || online[which]) << unit << " " << port;
        }
    }
    Figure("%ld changes, %ld reported, %d restarts", made, reports, restarted);

    // Both sweep on, and tell each other nothing.
    server.SetFaults({});
    server.TakeCommands();
    const int quiet = Scaled(600, 13);
    std::this_thread::sleep_for(std::chrono::seconds(quiet));
    const std::vector<sim::ReceivedCommand> commands = server.TakeCommands();
    long registrations = 0;
    for (const sim::ReceivedCommand& command : commands) {
        registrations += command.text == "NotifyOn" ? 1 : 0;
        EXPECT_TRUE(command.text.starts_with("Get.") || command.text == "NotifyOn") << command.text;
        EXPECT_FALSE(command.text.find("ZoneMember") != command.text.npos) << "a list is read anew";
    }
    const double expected = 6.0 * quiet / round_;  // of two agents at three switches
    EXPECT_GE(registrations, expected / 2);
    EXPECT_LE(registrations, expected * 2);
    Figure("%.1f commands a second of two agents in %d quiet seconds",
           static_cast<double>(commands.size()) / quiet, quiet);
}

}  // namespace
}  // namespace trust
