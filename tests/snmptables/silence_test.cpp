// What is kept, and what is done, when a switch does not answer.
#include <atomic>

#include "src/agent/idle_step.h"
#include "src/traps/private_events.h"
#include "tests/support/mib_test.h"

namespace snmpmain {
namespace {

using namespace std::chrono_literals;

class SilenceTest : public MibTest {
  protected:
    ~SilenceTest() override {
        ResetReachability();
    }

    // The next two replies to commands with this text are lost: a request and its repetition.
    void LoseBoth(const std::string& text, std::uint32_t domain = 0) {
        lost_ = 0;
        LoseReplies([this, text, domain](const sim::ReceivedCommand& command) {
            return command.text.find(text) != std::string::npos && command.domain == domain &&
                   lost_++ < 2;
        });
    }

    static void DoIdleSteps() {
        while (AgentIdleStep()) {
        }
    }

    void Silence(std::uint32_t domain, bool silent) {
        SwitchTest::Silence({domain}, silent);
        if (silent) {
            EXPECT_EQ(AskNumber(domain, Fact::kMaxPorts), 0u);  // notices it
        }
        EXPECT_TRUE(
            Within(4s, [&] { return silent ? SilentFor(domain) > 0s : IsAnswering(domain); }));
    }

    // The rows of a column that a walk shows.
    static std::size_t CountRows(const std::string& object) {
        Oid index;
        std::size_t rows = 0;
        while (GetNext(object, index) != "none") {
            ++rows;
        }
        return rows;
    }

  private:
    std::atomic<int> lost_ = 0;
};

TEST_F(SilenceTest, InterruptedListsGoOnWhereTheyStopped) {
    const struct {
        const char* lost;
        const char* first;
        const char* column;
        std::size_t rows;
    } lists[] = {
        {".NameServerAll.7.NextNsEntry", "FirstDomainID", "5.2.1.1.3", 18},
        {".ActiveZone.ZoneDisks.NextZoneMember", "FirstZone", "1.13.1.2", 4},
    };
    for (const auto& [lost, first, column, rows] : lists) {
        SCOPED_TRACE(column);
        LoseBoth(lost);
        EXPECT_EQ(CountRows(column), 0u);
        TakeTexts();
        EXPECT_EQ(CountRows(column), 0u);
        EXPECT_EQ(CountTexts(lost), 0) << "asked again with each request";
        std::this_thread::sleep_for(1100ms);
        EXPECT_EQ(CountRows(column), rows);
        EXPECT_EQ(CountTexts(std::string(first)), 0) << "begins anew";
    }
}

TEST_F(SilenceTest, SilenceOfOneIsNoneOfTheOthers) {
    Silence(7, true);
    EXPECT_EQ(Get("1.6.1.20", Unit(7)), "none");
    EXPECT_EQ(CountRows("1.13.1.2"), 4u);
    EXPECT_EQ(CountRows("1.6.1.20"), 2u);
    EXPECT_EQ(CountRows("1.10.1.6"), 24u);
    Silence(7, false);
    server.SetValue(7, "Oper.UserPort.0.3.OperState", std::nullopt);
    EXPECT_EQ(CountRows("1.10.1.6"), 47u);
}

TEST_F(SilenceTest, NobodyLeavesForALostReply) {
    LoseBoth("Get.Oper.Switch.Nop", 7);
    EXPECT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(GetUnitCount(), 3);
    EXPECT_TRUE(Within(2s, [] { return IsAnswering(7); }));
    LoseBoth("NextDomainID.1");
    EXPECT_EQ(UpdateConnUnitTable(), -1);
    EXPECT_EQ(GetUnitCount(), 3);
    EXPECT_TRUE(GetDepartedUnits().empty());
}

TEST_F(SilenceTest, WhoeverComesBackIsWelcome) {
    Silence(7, true);
    TakeTexts();
    SendFabricUpdateEvent();
    EXPECT_EQ(CountTexts("Fabric update"), 0);
    Silence(7, false);
    TakeTexts();
    DoIdleSteps();
    const std::vector<std::string> texts = TakeTexts();
    EXPECT_EQ(std::ranges::count(texts, "NotifyOn"), 1);
    EXPECT_EQ(std::ranges::count(texts, "Set.Cmd.Snmp.PrivateEvent.Hello"), 1);
    std::uint16_t status = 0;
    EXPECT_EQ(GetUnitStatus(7, status), 0);
    EXPECT_NE(status, kUnitUnknown);
    SendFabricUpdateEvent();
    EXPECT_EQ(CountTexts("Fabric update"), 1);
}

TEST_F(SilenceTest, OneThatStaysSilentLeavesAndOneThatJoinsIsAwaited) {
    Silence(7, true);
    EXPECT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(GetUnitCount(), 3);
    std::this_thread::sleep_for(10s);
    EXPECT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(GetUnitCount(), 2);
    EXPECT_EQ(GetDepartedUnits().size(), 1u);
    Silence(7, false);
    DoIdleSteps();
    EXPECT_EQ(GetUnitCount(), 3);
}

}  // namespace
}  // namespace snmpmain
