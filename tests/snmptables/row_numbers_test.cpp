#include "src/snmptables/row_numbers.h"

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

constexpr std::uint32_t kRemote = 7;

class RowNumbersTest : public SwitchTest {
  protected:
    RowNumbersTest() {
        Discover();
    }
};

TEST_F(RowNumbersTest, RevisionsOfTheFirstChassisAreThoseThatTheSwitchCounts) {
    SensorRef asked{};
    for (std::uint32_t row = 0; row < 4; ++row) {
        ASSERT_EQ(GetRevisionFromIndex(kRemote, row, asked), 0);
        const SensorRef known = RevisionOfFirstChassis(row);
        EXPECT_EQ(std::tie(known.kind, known.blade), std::tie(asked.kind, asked.blade)) << row;
    }
    EXPECT_EQ(GetRevisionFromIndex(kRemote, 4, asked), -1);
    // The count does not grow with the chassis, though further rows decode.
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(kRemote)->chassis = 2; });
    EXPECT_EQ(GetRevisionCount(kRemote), 4);
    ASSERT_EQ(GetRevisionFromIndex(kRemote, 7, asked), 0);
    EXPECT_EQ(std::tuple(asked.chassis, asked.kind, asked.blade), std::tuple(1, kBladeRevision, 1));
    EXPECT_EQ(GetRevisionFromIndex(kRemote, 8, asked), -1);
}

TEST_F(RowNumbersTest, LogRangeEndsWithTheNewestEntries) {
    using Results = std::pair<int, std::uint32_t>;
    const struct {
        std::optional<std::string> firstReply, lastReply;
        Results first, last;
    } cases[] = {
        {"[5][...]", "[31][...]", {0, 2}, {0, 31}},
        {"[5][...]", "[30][...]", {0, 5}, {0, 30}},
        {"x[5]", "y[12abc]", {0, 5}, {0, 12}},
        {"no entry", "no entry", {-1, 0}, {0, 0}},
        {"[x]", "[x]", {-1, 0}, {-1, 0}},
        {"[5]", "[x]", {-1, 5}, {-1, 0}},
        {std::nullopt, std::nullopt, {0, 0}, {0, 0}},
    };
    for (const auto& [firstReply, lastReply, expectedFirst, expectedLast] : cases) {
        server.SetValue(0, "Oper.Switch.FirstLogEntry", firstReply);
        server.SetValue(0, "Oper.Switch.LastLogEntry", lastReply);
        std::uint32_t id = 9;
        std::uint32_t newest = 9;
        const int first = GetFirstLogEntryId(0, id, newest);
        EXPECT_EQ(Results(first, id), expectedFirst) << firstReply.value_or("none");
        const int last = GetLastLogEntryId(0, id);
        EXPECT_EQ(Results(last, id), expectedLast) << lastReply.value_or("none");
    }
    server.SetValue(0, "Oper.Switch.LogEntries", "500");
    EXPECT_EQ(GetLogEntryCount(0), 30);
    server.SetValue(0, "Oper.Switch.LogEntries", std::nullopt);
    EXPECT_EQ(GetLogEntryCount(0), 0);
}

}  // namespace
}  // namespace snmpmain
