#include <csignal>

#include "src/agent/idle_step.h"
#include "src/agent/options.h"
#include "src/agent/signals.h"
#include "src/snmptables/status_refresh.h"
#include "tests/support/switch_test.h"

#include <getopt.h>
#include <sys/wait.h>

namespace snmpmain {
namespace {

struct Parsed {
    int result;
    std::string address;
    bool startupTrap;
};

Parsed Parse(std::vector<std::string> words) {
    words.insert(words.begin(), "snmpmain");
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    ::optind = 0;  // begin anew
    ::opterr = 0;
    Options options;
    testing::internal::CaptureStdout();
    const int result = ParseOptions(static_cast<int>(words.size()), argv.data(), options);
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed, result == 0 ? ""
                                   : "\nUsage: snmpmain [--remote 10.0.0.1] [--notrap]\n\n"
                                     "  --remote  -r  indicates IP address of remote switch\n"
                                     "  --notrap  -n  suppresses startup traps\n\n");
    return {result, options.remoteAddress == nullptr ? "none" : options.remoteAddress,
            options.startupTrap};
}

TEST(OptionsTest, AddressIsTheThirdWordOfTheCommandLine) {
    struct Case {
        std::vector<std::string> words;
        std::string address;
        bool startupTrap;
    };
    const Case cases[] = {
        {{}, "none", true},
        {{"-n"}, "none", false},
        {{"--remote", "10.0.0.1"}, "10.0.0.1", true},
        {{"-r", "10.0.0.1", "--notrap"}, "10.0.0.1", false},
        {{"--notrap", "--remote", "10.0.0.1"}, "--remote", false},
        {{"--remote=10.0.0.1"}, "none", true},
        {{"-r10.0.0.1", "-n"}, "-n", false},
        {{"-r", "123.123.123.123"}, "123.123.123.123", true},
        {{"-r", "1234567890123456"}, "none", true},
    };
    for (const Case& c : cases) {
        const Parsed parsed = Parse(c.words);
        const std::string name = testing::PrintToString(c.words);
        EXPECT_EQ(parsed.result, 0) << name;
        EXPECT_EQ(parsed.address, c.address) << name;
        EXPECT_EQ(parsed.startupTrap, c.startupTrap) << name;
    }
    EXPECT_EQ(Parse({"--nonsense"}).result, -1);
    EXPECT_EQ(Parse({"-n", "--remote"}).result, -1);
}

TEST(Signals, BrokenPipesAreSurvivedAgainAndAgain) {
    TraceEverything();
    EXPECT_EQ(InitSignals(), 0);
    EXPECT_FALSE(IsTraced(kSevere));
    for (int i = 0; i < 3; ++i) {
        std::raise(SIGPIPE);
    }
    LogCaughtSignals();
    std::signal(SIGSEGV, SIG_DFL);
}

TEST(Signals, SegmentationFaultEndsTheProcessAsBefore) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGSEGV, SIG_DFL);
        InitSignals();
        ::raise(SIGSEGV);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGSEGV);
}

class IdleStepTest : public SwitchTest {};

TEST_F(IdleStepTest, WorkIsDoneInOrderOfPrecedence) {
    Discover();
    NotificationRecord record{};
    record.domainId = 2;
    record.kind = 29;  // nothing to refresh
    NotifyQueue::Put(record);
    NotifyQueue::Put(record);
    SetFabricUpdatePending(true);
    ASSERT_TRUE(IsUnitStatusWanted());

    std::vector<std::string> texts;
    bool goesOn = true;
    while (goesOn) {
        goesOn = AgentIdleStep();
        std::ranges::move(TakeTexts(), std::back_inserter(texts));
        EXPECT_TRUE(!NotifyQueue::Pending() || texts.empty());
    }
    EXPECT_FALSE(IsFabricUpdatePending());
    EXPECT_FALSE(IsUnitStatusWanted());
    const auto walk = std::ranges::find(texts, "Get.Oper.Fabric.FirstDomainID");
    const auto status = std::ranges::find(texts, "Get.Oper.Switch.OperState");
    EXPECT_LT(walk, status);
    EXPECT_EQ(std::count(status, texts.end(), "Get.Oper.Switch.OperState"), 3);
}

TEST_F(IdleStepTest, FabricUpdateStaysPendingAndIsTriedOnceInHalfAMinute) {
    Discover();
    SetFabricUpdatePending(true);
    server.SetValue(0, "Oper.Fabric.Entry.7.WWN", std::nullopt);
    const auto end = ReachClock::now() + std::chrono::seconds(10);
    do {
        AgentIdleStep();
    } while (!IsFabricUpdatePending() && ReachClock::now() < end);
    EXPECT_TRUE(IsFabricUpdatePending());
    TakeTexts();
    AgentIdleStep();
    EXPECT_TRUE(IsFabricUpdatePending());
    EXPECT_EQ(CountTexts("DomainID"), 0);
}

}  // namespace
}  // namespace snmpmain
