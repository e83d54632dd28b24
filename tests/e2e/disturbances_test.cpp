// What a manager sees while something is wrong.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <mutex>
#include <thread>

#include "tests/e2e/stack.h"
#include "tests/support/loopback.h"

namespace e2e {
namespace {

TEST(Disturbances, TablesComeBackByThemselvesAfterSnmpdWasRestarted) {
    const sim::Fabric fabric = StillFabric();
    Stack stack;
    stack.StartSwitch(fabric);
    stack.StartAll();
    stack.Stop("snmpd");
    stack.StartSnmpd();
    EXPECT_TRUE(
        Within(kIsSlow ? 10 : 2, [&] { return stack.GetOne(kFcmgmt + ".1.1.0") == "INTEGER: 3"; }));
    EXPECT_EQ(stack.Walk(kUnits), ExpectedUnits(fabric));
}

TEST(Disturbances, SilentSwitchIsMissingOnlyWhileItIsSilent) {
    const sim::Fabric fabric = StillFabric();
    Stack stack;
    stack.StartSwitch(fabric);
    stack.StartAll();
    const Values expected = ExpectedUnits(fabric);
    const std::string name = kUnits + ".20" + expected[0].first.substr(kUnits.size() + 2);
    stack.Switch().Pause(true);
    EXPECT_FALSE(stack.GetOne(name).starts_with("Hex-STRING"));
    EXPECT_NE(stack.GetOne(".1.3.6.1.2.1.1.3.0"), "no answer") << "the daemon is held up, too";
    std::this_thread::sleep_for(std::chrono::seconds(10));
    stack.Switch().Pause(false);
    EXPECT_TRUE(Within(25, [&] { return stack.Walk(kUnits) == expected; }));
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
}

TEST(Disturbances, StoppedSimulatorProgramIsFoundAgainWithItsLateReplies) {
    Stack stack;
    stack.StartSimulatorProgram({});
    stack.StartAll();
    stack.Signal("switchsim", SIGSTOP);
    std::thread reading([&] { stack.Walk(kUnits + ".20"); });
    std::this_thread::sleep_for(std::chrono::seconds(10));
    stack.Signal("switchsim", SIGCONT);
    reading.join();
    EXPECT_TRUE(Within(25, [&] { return stack.Walk(kUnits + ".20").size() == 3; }));
}

TEST(Disturbances, StrayAndDoubledRepliesDoNotShow) {
    const sim::Fabric fabric = StillFabric();
    sim::Faults faults;
    faults.duplicate = 0.2;
    faults.wrongSequence = 0.2;
    faults.reorder = 0.02;
    faults.reorderMs = 10;
    Stack stack;
    stack.StartSwitch(fabric, faults);
    stack.StartAll();
    EXPECT_EQ(stack.Walk(kUnits), ExpectedUnits(fabric));
    EXPECT_EQ(stack.Walk(kRevisions), ExpectedRevisions(fabric));
    EXPECT_TRUE(stack.Switch().Complaints().empty());
}

TEST(Disturbances, ForeignGarbageOfEveryLengthIsSurvived) {
    Stack stack;
    stack.StartSwitch(StillFabric());
    std::mutex mutex;
    sockaddr_in agent{};  // the agent's socket, as switch management sees it
    stack.Switch().SetLog([&](const std::string& line) {
        const std::lock_guard lock(mutex);
        agent = SenderInLog(line);
    });
    stack.StartAll();
    stack.Switch().SetLog({});
    const std::lock_guard lock(mutex);
    const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    for (std::size_t length = 0; length <= 2000; ++length) {
        const std::string datagram(length, static_cast<char>(length * 37));
        ASSERT_EQ(::sendto(socket, datagram.data(), datagram.size(), 0,
                           reinterpret_cast<const sockaddr*>(&agent), sizeof(agent)),
                  static_cast<ssize_t>(length));
    }
    ::close(socket);
    // Requests go to whoever spoke last: the switch must speak before it is asked again, and once
    // more where the flood had filled the agent's socket.
    EXPECT_TRUE(Within(30, [&] {
        stack.Switch().SendNotification(0, "29;[here I am]\n");
        return stack.Walk(kUnits) == ExpectedUnits(StillFabric());
    }));
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
}

}  // namespace
}  // namespace e2e
