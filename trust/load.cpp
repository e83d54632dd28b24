// More than a switch and its managers ever do.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "trust/measure.h"

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

// Takes every connection and never says a word.
class MuteMaster {
  public:
    explicit MuteMaster(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM, 0)) {
        std::filesystem::remove(path);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof(address.sun_path) - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(::listen(socket_, 5), 0);
    }
    ~MuteMaster() {
        ::close(socket_);
    }
    MuteMaster(const MuteMaster&) = delete;
    MuteMaster& operator=(const MuteMaster&) = delete;

  private:
    int socket_;
};

constexpr int kTrapPort = 1162;

// Changes a port every few seconds; gives the longest time that its trap took.
double LongestTrap(e2e::Stack& stack, int seconds) {
    double longest = 0;
    const Clock::time_point start = Clock::now();
    while (SecondsSince(start) < seconds) {
        const std::size_t before = stack.Traps(kTrapPort).size();
        const Clock::time_point change = Clock::now();
        stack.Switch().ChangeAndNotify([&](sim::Fabric& fabric) {
            std::string& state = fabric.Find(0)->ports[3].operState;
            state = state == "Online" ? "Offline" : "Online";
        });
        EXPECT_TRUE(e2e::Within(10, [&] { return stack.Traps(kTrapPort).size() > before; }));
        longest = std::max(longest, SecondsSince(change));
        std::this_thread::sleep_for(std::chrono::seconds(2));
    }
    return longest;
}

// The library would wait for an answer to its ping, and then for the connection.
TEST(Load, AlarmsAndAFloodWhileTheDaemonStandsStill) {
    const double kSoon = e2e::kIsSlow ? 5 : 2;
    sim::Fabric fabric = sim::DefaultFabric();
    e2e::Stack stack;
    e2e::SendTrapsTo(*fabric.Find(0), stack.Address(), kTrapPort);
    stack.StartSwitch(fabric);
    stack.StartReceiver(kTrapPort);
    stack.StartSnmpdOfSwitch();
    stack.StartAgent();
    ASSERT_TRUE(stack.AwaitTables());

    const int agent = stack.Pid("snmpmain");
    Flood(stack.Switch(), 1000);
    const Holdings before = HoldingsOf(agent);
    stack.Signal("snmpd", SIGSTOP);
    const double stopped = LongestTrap(stack, Scaled(300, 10));
    const long count = Scaled(100'000, 20'000);
    Flood(stack.Switch(), count);
    stack.Signal("snmpd", SIGCONT);
    Clock::time_point start = Clock::now();
    EXPECT_TRUE(stack.AwaitTables(15));
    const double continued = SecondsSince(start);
    const Holdings after = SettledHoldingsOf(agent, before);
    ExpectNoGrowth(before, after, 1024);

    stack.Stop("snmpd", SIGKILL);
    double mute = 0;
    {
        const MuteMaster master(stack.Path("var/agentx/master"));
        mute = LongestTrap(stack, Scaled(60, 6));
    }
    stack.StartSnmpdOfSwitch();
    start = Clock::now();
    EXPECT_TRUE(stack.AwaitTables(kSoon));
    Figure(
        "traps at most %.2f s after the change with a daemon that stands still (tables %.2f s "
        "after it goes on, %ld notifications and %+ld kB later), %.2f s with one that never "
        "answers (tables %.2f s after another one's "
        "start)",
        stopped, continued, count, after.memory - before.memory, mute, SecondsSince(start));
    EXPECT_LT(stopped, kSoon);
    EXPECT_LT(mute, kSoon);
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
    // And the new one is told of settings.
    stack.Switch().ChangeAndNotify(
        [](sim::Fabric& changed) { changed.Find(0)->location = "here"; });
    const std::string location = ".1.3.6.1.2.1.1.6.0";
    EXPECT_TRUE(e2e::Within(10, [&] { return stack.GetOne(location, 1) == e2e::Text("here"); }));
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
    const std::string tables[] = {e2e::kFcmgmt, e2e::kFe, e2e::kVendorMib};
    long values = 0, broken = 0;
    Holdings warm{0, 0};
    long warmValues = 0;
    const Clock::time_point start = Clock::now();
    for (int i = 0; values < requests; ++i) {
        const std::optional<std::size_t> walked = stack.CountWalked(tables[i % 3]);
        broken += walked ? 0 : 1;
        values += static_cast<long>(walked.value_or(0));
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
