// The daemon and switch management come and go.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <thread>

#include "trust/measure.h"
#include "trust/session.h"

namespace trust {
namespace {

// The agent asks four times a second whether the daemon is there; all that it reads of a switch
// that was started again takes longer.
constexpr double kReconnected = 20;

void Start(e2e::Stack& stack, char process) {
    switch (process) {
        case 'a':
            stack.StartAgent();
            break;
        case 'd':
            stack.StartSnmpdOfSwitch();
            break;
        default:
            stack.StartSimulatorProgram({});
    }
}

const char* NameOf(char process) {
    return process == 'a' ? "snmpmain" : process == 'd' ? "snmpd" : "switchsim";
}

// Each is started in every order, and each is taken away and brought back once.
TEST(Restarts, InEveryOrder) {
    std::string order = "ads";  // agent, daemon, switch
    double longest = 0;
    do {
        SCOPED_TRACE(order);
        e2e::Stack stack;
        for (const char process : order) {
            Start(stack, process);
        }
        Clock::time_point start = Clock::now();
        ASSERT_TRUE(AwaitTables(stack));
        longest = std::max(longest, SecondsSince(start));
        for (const char process : order.substr(0, static_cast<std::size_t>(Scaled(3, 0)))) {
            stack.Stop(NameOf(process), SIGKILL);
            Start(stack, process);
            start = Clock::now();
            EXPECT_TRUE(AwaitTables(stack)) << NameOf(process);
            longest = std::max(longest, SecondsSince(start));
        }
    } while (std::ranges::next_permutation(order).found);
    Figure("tables are there within %.1f s of the last start", longest);
}

TEST(Restarts, OfTheDaemonUnderLoad) {
    const int restarts = Scaled(100, 1);
    e2e::Stack stack;
    stack.StartSimulatorProgram({});
    stack.StartSnmpdOfSwitch();
    stack.StartAgent();
    ASSERT_TRUE(AwaitTables(stack));
    std::atomic<bool> asking = true;
    std::atomic<long> values = 0;
    std::thread load([&] {
        Session session(stack.SnmpAddress(), 0.5);
        while (asking) {
            values += std::max(session.Walk(".1.3.6.1.3.94.1.10"), 0L);
        }
    });
    const int agent = stack.Pid("snmpmain");
    Holdings before{};
    double longest = 0;
    for (int i = 0; i < restarts; ++i) {
        stack.Stop("snmpd", i % 2 == 0 ? SIGTERM : SIGKILL);
        if (i % 3 == 0) {
            std::filesystem::remove(stack.Path("var/agentx/master"));  // the socket is another one
        }
        stack.StartSnmpdOfSwitch();
        const Clock::time_point start = Clock::now();
        EXPECT_TRUE(AwaitTables(stack)) << i;
        longest = std::max(longest, SecondsSince(start));
        if (i == 0) {
            before = HoldingsOf(agent);  // after the first time everything is allocated
        }
    }
    asking = false;
    load.join();
    const Holdings after = SettledHoldingsOf(agent, before);
    Figure(
        "%d restarts, %ld values meanwhile; tables back within %.1f s; %+ld descriptors, %+ld kB",
        restarts, values.load(), longest, after.descriptors - before.descriptors,
        after.memory - before.memory);
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
    EXPECT_EQ(stack.Pid("snmpmain"), agent);
    ExpectNoGrowth(before, after, 2 * restarts + 512);
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
TEST(Restarts, AlarmsWhileTheDaemonStandsStill) {
    const double kSoon = e2e::kIsSlow ? 5 : 2;
    sim::Fabric fabric = sim::DefaultFabric();
    e2e::Stack stack;
    fabric.Find(0)->trapComm = e2e::kTrapCommunity;
    fabric.Find(0)->traps = {};
    fabric.Find(0)->traps[0] = {stack.Address(), kTrapPort, "debug", true, "2"};
    stack.StartSwitch(fabric);
    stack.StartReceiver(kTrapPort);
    stack.StartSnmpdOfSwitch();
    stack.StartAgent();
    ASSERT_TRUE(AwaitTables(stack));

    stack.Signal("snmpd", SIGSTOP);
    const double stopped = LongestTrap(stack, Scaled(300, 10));
    stack.Signal("snmpd", SIGCONT);
    Clock::time_point start = Clock::now();
    EXPECT_TRUE(AwaitTables(stack, 15));
    const double continued = SecondsSince(start);

    stack.Stop("snmpd", SIGKILL);
    double mute = 0;
    {
        const MuteMaster master(stack.Path("var/agentx/master"));
        mute = LongestTrap(stack, Scaled(60, 6));
    }
    stack.StartSnmpdOfSwitch();
    start = Clock::now();
    EXPECT_TRUE(AwaitTables(stack, kSoon));
    Figure(
        "traps at most %.2f s after the change with a daemon that stands still (tables %.2f s "
        "after it goes on), %.2f s with one that never answers (tables %.2f s after another one's "
        "start)",
        stopped, continued, mute, SecondsSince(start));
    EXPECT_LT(stopped, kSoon);
    EXPECT_LT(mute, kSoon);
    EXPECT_TRUE(stack.IsRunning("snmpmain"));
}

}  // namespace
}  // namespace trust
