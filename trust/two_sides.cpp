// Location, contact and name, set by managers at the daemon and by others at the switch.
#include <gtest/gtest.h>
#include <signal.h>

#include <array>
#include <random>
#include <thread>
#include <vector>

#include "trust/measure.h"

namespace trust {
namespace {

struct Setting {
    const char* oid;  // of the daemon
    std::string sim::Switch::*member;
    const char* what;
};
constexpr Setting kSettings[] = {
    {".1.3.6.1.2.1.1.6.0", &sim::Switch::location, "location"},
    {".1.3.6.1.2.1.1.4.0", &sim::Switch::contact, "contact"},
    {".1.3.6.1.2.1.1.5.0", &sim::Switch::symbolicName, "name"},
};

class TwoSides : public testing::Test {
  protected:
    void SetUp() override {
        stack_.StartSwitch();
        stack_.StartSnmpdOfSwitch();
        stack_.StartAgent();
        ASSERT_TRUE(stack_.AwaitTables());
    }

    // Sets at either side, and remembers when.
    void Set(int setting, bool atDaemon, const std::string& text) {
        const Setting& chosen = kSettings[setting];
        if (atDaemon) {
            ASSERT_EQ(stack_.Set({chosen.oid, "s", text}).status, 0);
        } else {
            stack_.Switch().ChangeAndNotify(
                [&](sim::Fabric& fabric) { (*fabric.Find(0)).*chosen.member = text; });
        }
        history_[static_cast<std::size_t>(setting)].push_back({text, Clock::now()});
    }

    // At rest both sides say what was set last; of what was set within two seconds, any.
    bool AgreeOnTheLast(int setting) {
        const auto& history = history_[static_cast<std::size_t>(setting)];
        const std::string daemon = stack_.GetOne(kSettings[setting].oid, 2);
        std::string atSwitch;
        stack_.Switch().WithFabric(
            [&](sim::Fabric& fabric) { atSwitch = (*fabric.Find(0)).*kSettings[setting].member; });
        if (history.empty()) {
            return true;
        }
        for (std::size_t i = history.size(); i-- > 0;) {
            if (i + 1 < history.size() &&
                history[i + 1].time - history[i].time > std::chrono::seconds(2)) {
                break;
            }
            if (daemon == e2e::Text(history[i].text) && atSwitch == history[i].text) {
                return true;
            }
        }
        last_ = std::string(kSettings[setting].what) + ": daemon " + daemon + ", switch " +
                atSwitch + ", set last " + history.back().text;
        return false;
    }

    void ExpectAgreement() {
        for (int setting = 0; setting < 3; ++setting) {
            EXPECT_TRUE(e2e::Within(6, [&] { return AgreeOnTheLast(setting); })) << last_;
        }
    }

    void Sleep(int milliseconds) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }

    struct Change {
        std::string text;
        Clock::time_point time;
    };
    e2e::Stack stack_;
    std::array<std::vector<Change>, 3> history_;
    std::string last_;
};

// A setting of one side, and another one or the same at the other side.
TEST_F(TwoSides, NothingIsWrittenBackOverWhatIsNewer) {
    Set(0, true, "Row 10");
    Sleep(1000);
    Set(2, false, "renamed");
    ExpectAgreement();
    Sleep(2500);
    Set(0, false, "Place B");
    Sleep(2500);
    Set(0, true, "Row 10");
    ExpectAgreement();
    Sleep(1000);
    // What the daemon's managers set is sent once, and what is set at the switch is not sent back.
    e2e::Words sent;
    for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
        if (command.text.starts_with("Set.Cmd.Switch.ReqAdmin")) {
            sent.push_back(command.text.substr(command.text.find("Config.Snmp.")));
            sent.back().erase(sent.back().find(';'));
        }
    }
    EXPECT_EQ(sent, e2e::Words(2, "Config.Snmp.Location.Row 10"));
    Set(0, true, "Row 11");
    stack_.Stop("snmpmain", SIGKILL);
    Set(1, false, "somebody else");
    stack_.StartAgent();
    ASSERT_TRUE(stack_.AwaitTables());
    ExpectAgreement();
}

// With restarts between. The daemon reads the agent's file after its own when it starts: it goes
// only when the agent has had the time to look at what managers have set.
TEST_F(TwoSides, AgreeAfterAnySequenceOfChanges) {
    std::mt19937 random(4711);
    const auto under = [&](int bound) {
        return static_cast<int>(random() % static_cast<unsigned>(bound));
    };
    const int rounds = Scaled(40, 1);
    for (int round = 0; round < rounds; ++round) {
        for (int step = 0; step < 6; ++step) {
            const std::string text = std::to_string(round) + "." + std::to_string(step) + " text";
            switch (under(8)) {
                case 0:
                    stack_.Stop("snmpmain", SIGKILL);
                    Set(under(3), under(2) == 0, text);
                    Sleep(under(1500));
                    stack_.StartAgent();
                    ASSERT_TRUE(stack_.AwaitTables());
                    break;
                case 1:
                    Sleep(1500);
                    stack_.Stop("snmpd", under(2) == 0 ? SIGTERM : SIGKILL);
                    Set(under(3), false, text);
                    stack_.StartSnmpdOfSwitch();
                    ASSERT_TRUE(stack_.AwaitTables());
                    break;
                default:
                    Set(under(3), under(2) == 0, text);
            }
            Sleep(under(3000));
        }
        ExpectAgreement();
    }
    Figure("%d changes, agreed after every six", rounds * 6);
}

}  // namespace
}  // namespace trust
