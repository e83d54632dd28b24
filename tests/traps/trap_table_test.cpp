#include "src/traps/trap_table.h"

#include <chrono>
#include <thread>

#include "src/traps/event_kinds.h"
#include "src/traps/trap_table_update.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class TrapTableTest : public SwitchTest {
  protected:
    TrapTableTest() {
        ResetTrapTable();
    }
    ~TrapTableTest() override {
        ResetTrapTable();  // nobody is to tell the next test's switch of these changes
    }

    static std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        TrapRow row;
        for (std::uint32_t i = 0; GetTrapRow(i, row) == 0; ++i) {
            rows.push_back(std::string(row.address) + ":" + std::to_string(row.port) + " " +
                           std::to_string(row.filter) + " " + std::to_string(row.state) + " " +
                           std::to_string(row.version));
        }
        return rows;
    }
};

using Strings = std::vector<std::string>;

TEST_F(TrapTableTest, DestinationsComeSortedWithoutGapsAndDoubles) {
    SendTrapsTo({{"0.0.0.0"},
                 {"10.0.0.10", 162, "critical", true, "1"},
                 {"255.255.255.255"},
                 {"10.0.0.9", 163, "warn", false, "2"},
                 {"10.0.0.9", 162, "no such severity", true, ""}});
    EXPECT_EQ(Rows(),
              (Strings{"10.0.0.9:162 10 3 1", "10.0.0.9:163 6 2 1", "10.0.0.10:162 4 3 0"}));
    EXPECT_EQ(GetTrapRowCount(), 3);
    SendTrapsTo({{"10.0.0.1"}, {"10.0.0.1"}, {"10.0.0.2"}, {"10.0.0.1"}});
    EXPECT_EQ(GetTrapRowCount(), 2);
    SendTrapsTo({{"10.0.0.1"}, {"10.0.0.1"}, {"10.0.0.1"}});  // the third moves up unseen
    EXPECT_EQ(GetTrapRowCount(), 2);
}

TEST_F(TrapTableTest, FailedReadingKeepsTheRows) {
    SendTrapsTo({{"10.0.0.1", 1, "alert", true, "2"}});
    const Strings rows = Rows();
    for (const char* setting : {"TrapAddr4", "TrapPort", "TrapSeverity", "TrapEnable"}) {
        const std::string path = std::string("Config.Snmp.") + setting;
        server.SetValue(0, path, std::nullopt);
        EXPECT_EQ(ReadTrapDestinations(), -1) << setting;
        EXPECT_EQ(Rows(), rows);
        server.WithFabric([&](sim::Fabric& fabric) { fabric.Find(0)->values.clear(); });
    }
    server.SetValue(0, "Config.Snmp.TrapVersion", std::nullopt);
    EXPECT_EQ(ReadTrapDestinations(), 0);
    EXPECT_EQ(Rows(), rows);
}

TEST_F(TrapTableTest, ChangesOutliveReadingsUntilTheSwitchKnowsThem) {
    SendTrapsTo({{"10.0.0.1", 162, "alert", true, "2"}});
    ASSERT_EQ(AddTrapClient(1, "10.0.0.2", 163, kTrapRowActive, 6, kTrapVersion2c), 0);
    ASSERT_EQ(SetTrapRowFilter(0, 9), 0);
    const Strings changed = {"10.0.0.1:162 9 3 1", "10.0.0.2:163 6 3 1"};
    const std::uint32_t changes = CountTrapTableChanges();
    EXPECT_EQ(ReadTrapDestinations(), 0);
    EXPECT_EQ(Rows(), changed);
    EXPECT_TRUE(MarkTrapTableTold(changes));
    EXPECT_FALSE(MarkTrapTableTold(changes));
    EXPECT_EQ(ReadTrapDestinations(), 0);
    EXPECT_EQ(Rows(), Strings{"10.0.0.1:162 3 3 1"});
    EXPECT_EQ(RemoveTrapClient(kTrapDestinations), -1);
}

TEST_F(TrapTableTest, ReadingBegunBeforeTheSwitchWasToldIsNotLost) {
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.Find(0)->traps = {{{"10.0.0.1", 162, "alert", true, "2"}}};
    });
    ASSERT_EQ(AddTrapClient(0, "10.0.0.2", 163, kTrapRowActive, 6, kTrapVersion2c), 0);
    server.SetLog([](const std::string&) { MarkTrapTableTold(CountTrapTableChanges()); });
    EXPECT_EQ(ReadTrapDestinations(), 0);
    server.SetLog({});
    EXPECT_EQ(Rows(), Strings{"10.0.0.1:162 3 3 1"});
}

TEST_F(TrapTableTest, UpdatesDoNotPileUpAtASlowSwitch) {
    SendTrapsTo({});
    server.TakeCommands();
    server.SetFaults({.delayMs = 30});
    for (std::uint32_t port = 1; port <= 50; ++port) {
        AddTrapClient(0, "10.0.0.1", port, kTrapRowInactive, 6, kTrapVersion2c);
        EXPECT_EQ(StartTrapTableUpdate(), 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    std::vector<std::string> commands;
    const auto ends = [](const std::string& text) { return text.ends_with("RelAdmin"); };
    while (std::ranges::count_if(commands, ends) < 2) {
        std::ranges::move(TakeTexts(), std::back_inserter(commands));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::ranges::move(TakeTexts(), std::back_inserter(commands));
    EXPECT_EQ(std::ranges::count_if(commands, ends), 2);
    server.WithFabric([](sim::Fabric& fabric) { EXPECT_EQ(fabric.Find(0)->traps[0].port, 50u); });
}

TEST(Severities, AreNamedAndFoundByPartOfTheirNames) {
    EXPECT_EQ(SeverityFromName("warning"), 6u);
    EXPECT_EQ(SeverityFromName("er"), 2u);  // the first name that contains it
    EXPECT_EQ(SeverityFromName("Warning"), 10u);
    EXPECT_STREQ(NameOfSeverity(0), "emergency");
    EXPECT_STREQ(NameOfSeverity(9), "debug");
    EXPECT_STREQ(NameOfSeverity(4000), "mark");
}

}  // namespace
}  // namespace snmpmain
