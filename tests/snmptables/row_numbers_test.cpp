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

    // What every row refers to, as "kind.blade.number", until there is none.
    template <typename Decode>
    std::vector<std::string> AllRows(Decode decode) {
        std::vector<std::string> rows;
        SensorRef ref{};
        for (std::uint32_t row = 0; decode(kRemote, row, ref) == 0; ++row) {
            rows.push_back(std::to_string(ref.kind) + "." + std::to_string(ref.blade) + "." +
                           std::to_string(ref.number));
        }
        return rows;
    }

    void Shape(std::size_t supplies, std::size_t fans, std::vector<std::size_t> sensorsOfBlades) {
        server.WithFabric([&](sim::Fabric& fabric) {
            sim::Switch& unit = *fabric.Find(kRemote);
            unit.powerSupplies.assign(supplies, "Good");
            unit.fans.assign(fans, "Good");
            unit.blades.clear();
            for (const std::size_t sensors : sensorsOfBlades) {
                unit.blades.emplace_back().boardTemps.assign(sensors, 30);
            }
        });
    }
};

TEST_F(RowNumbersTest, SensorRowsRunByKindAndCountAsManyAsDecode) {
    Shape(2, 3, {4});
    EXPECT_EQ(AllRows(GetSensorFromIndex),
              (std::vector<std::string>{"0.0.0", "0.0.1", "1.0.0", "1.0.1", "1.0.2", "2.0.0",
                                        "3.0.0", "3.0.1", "3.0.2", "3.0.3"}));
    EXPECT_EQ(GetSensorCount(kRemote), 10);
    Shape(2, 3, {0, 0});
    EXPECT_EQ(AllRows(GetSensorFromIndex),
              (std::vector<std::string>{"0.0.0", "0.0.1", "1.0.0", "1.0.1", "1.0.2", "2.0.0",
                                        "2.1.0", "4.0.0", "4.1.0"}));
    EXPECT_EQ(GetSensorCount(kRemote), 9);
    Shape(0, 0, {1, 2});
    EXPECT_EQ(
        AllRows(GetSensorFromIndex),
        (std::vector<std::string>{"2.0.0", "2.1.0", "3.0.0", "3.1.0", "3.1.1", "4.0.0", "4.1.0"}));
    EXPECT_EQ(GetSensorCount(kRemote), 7);
}

TEST_F(RowNumbersTest, EveryChassisRepeatsTheRows) {
    Shape(1, 1, {1});
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(kRemote)->chassis = 2; });
    EXPECT_EQ(GetSensorCount(kRemote), 8);
    EXPECT_EQ(AllRows(GetSensorFromIndex).size(), 8u);
    SensorRef ref{};
    ASSERT_EQ(GetSensorFromIndex(kRemote, 5, ref), 0);
    EXPECT_EQ(ref.chassis, 1);
    EXPECT_EQ(ref.kind, kFanSensor);
    // The revision count does not grow with the chassis, though further rows decode.
    EXPECT_EQ(GetRevisionCount(kRemote), 3);
    ASSERT_EQ(GetRevisionFromIndex(kRemote, 5, ref), 0);
    EXPECT_EQ(ref.chassis, 1);
    EXPECT_EQ(ref.kind, kBladeRevision);
    EXPECT_EQ(GetRevisionFromIndex(kRemote, 6, ref), -1);
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(kRemote)->chassis = 0; });
    EXPECT_EQ(GetSensorCount(kRemote), 0);
    EXPECT_EQ(GetSensorFromIndex(kRemote, 0, ref), -1);
    EXPECT_EQ(GetRevisionFromIndex(kRemote, 0, ref), -1);
}

TEST_F(RowNumbersTest, RevisionsAreFirmwareFlasherAndBlades) {
    Shape(1, 1, {0, 0, 0});
    EXPECT_EQ(GetRevisionCount(kRemote), 5);
    EXPECT_EQ(AllRows(GetRevisionFromIndex),
              (std::vector<std::string>{"0.0.0", "1.0.0", "2.0.0", "2.1.1", "2.2.2"}));
    for (std::uint32_t row = 0; row < 5; ++row) {
        SensorRef asked{};
        ASSERT_EQ(GetRevisionFromIndex(kRemote, row, asked), 0);
        const SensorRef known = RevisionOfFirstChassis(row);
        EXPECT_EQ(std::tie(known.kind, known.blade), std::tie(asked.kind, asked.blade));
    }
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
