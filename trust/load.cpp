// More than a switch and its managers ever do.
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <thread>

#include "trust/measure.h"
#include "trust/session.h"

namespace trust {
namespace {

// Five kinds of notifications, as fast as the switch can send them.
void Flood(sim::Server& server, long count) {
    const char* const texts[] = {"28;0;0;0;3", "4;0;0;0;2", "12;0;0;0;0", "7;0;0;0;0",
                                 "19;0;0;0;0[now][0][0x0][Power Supply:1 is Good]\n"};
    for (long i = 0; i < count; ++i) {
        server.SendNotification(0, texts[i % 5]);
    }
}

// Traps go to a port where nobody listens.
TEST(Load, NotificationsWhileTheDaemonStandsStill) {
    sim::Fabric fabric = sim::DefaultFabric();
    e2e::Stack stack;
    fabric.Find(0)->traps = {};
    fabric.Find(0)->traps[0] = {stack.Address(), 9, "debug", true, "2"};
    stack.StartSwitch(fabric);
    stack.Switch().SetRecording(false);
    stack.StartAll();
    const int agent = stack.Pid("snmpmain");
    Flood(stack.Switch(), 1000);
    const Holdings before = HoldingsOf(agent);
    stack.Signal("snmpd", SIGSTOP);
    const long count = Scaled(100'000, 20'000);
    const Clock::time_point start = Clock::now();
    Flood(stack.Switch(), count);
    const double seconds = SecondsSince(start);
    stack.Signal("snmpd", SIGCONT);
    const Clock::time_point continued = Clock::now();
    EXPECT_TRUE(e2e::Within(25, [&] { return stack.GetOne(kUnitCount) == "INTEGER: 3"; }));
    const Holdings after = SettledHoldingsOf(agent, before);
    Figure(
        "%ld notifications in %.1f s; tables %.1f s after the daemon goes on; %+ld kB, %+ld "
        "descriptors",
        count, seconds, SecondsSince(continued), after.memory - before.memory,
        after.descriptors - before.descriptors);
    ExpectNoGrowth(before, after, 1024);
}

// Requests and notifications at once, for long: nothing grows.
TEST(Load, RequestsAndNotificationsForLong) {
    e2e::Stack stack;
    stack.StartSwitch();
    stack.Switch().SetRecording(false);
    stack.StartAll();
    const int agent = stack.Pid("snmpmain");
    const long requests = Scaled(1'000'000, 30'000);
    std::atomic<bool> asking = true;
    std::thread notices([&] {
        for (long sent = 0; asking && sent < requests / 10; sent += 10) {
            Flood(stack.Switch(), 10);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    Session manager(stack.SnmpAddress());
    const char* const tables[] = {".1.3.6.1.3.94", ".1.3.6.1.2.1.75", ".1.3.6.1.4.1.32473"};
    long values = 0, broken = 0;
    Holdings warm{0, 0};
    long warmValues = 0;
    const Clock::time_point start = Clock::now();
    for (int i = 0; values < requests; ++i) {
        const long walked = manager.Walk(tables[i % 3]);
        broken += walked < 0;
        values += std::max(walked, 0L);
        if (warm.memory == 0 && values > requests / 5) {
            warm = HoldingsOf(agent);
            warmValues = values;
        }
        ASSERT_LE(broken, 3);
    }
    asking = false;
    notices.join();
    const Holdings after = SettledHoldingsOf(agent, warm);
    Figure(
        "%ld requests in %.0f s, %ld walks broken off; from %ld kB %+ld kB, %.1f B per 1000 "
        "requests; %+ld descriptors",
        values, SecondsSince(start), broken, warm.memory, after.memory - warm.memory,
        1024e3 * static_cast<double>(after.memory - warm.memory) /
            static_cast<double>(values - warmValues),
        after.descriptors - warm.descriptors);
    EXPECT_EQ(broken, 0);
    ExpectNoGrowth(warm, after, 256);
}

}  // namespace
}  // namespace trust
