#include "src/snmpoid/walkers.h"

#include "src/snmpoid/index_codec.h"
#include "src/snmptables/row_numbers.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using Oid = std::vector<oid>;

const Oid kColumn = {1, 3, 6, 1, 3, 94, 1, 7, 1, 2};

Oid Row(const std::string& wwn, std::optional<oid> number = std::nullopt) {
    Oid name = kColumn;
    name.resize(kColumn.size() + WWN_OID_LEN);
    MakeOIDfromHexStr(wwn.c_str(), std::span(name).subspan(kColumn.size()));
    if (number) {
        name.push_back(*number);
    }
    return name;
}

struct Step {
    int result = 0;
    Oid name;
    std::uint16_t unit = 0;
    std::uint32_t row = 0;
};

class WalkersTest : public SwitchTest {
  protected:
    WalkersTest() {
        Discover();
        vp.namelen = static_cast<u_char>(kColumn.size());
        std::ranges::copy(kColumn, vp.name);
    }

    Step NextUnit(const Oid& request) {
        return Take(request, [&](oid* name, std::size_t* length, Step& step) {
            return GetNextUnit(&vp, name, length, step.unit);
        });
    }

    Step NextRevision(const Oid& request) {
        return Take(request, [&](oid* name, std::size_t* length, Step& step) {
            return GetNextUnitRevision(&vp, name, length, step.unit, step.row);
        });
    }

    template <typename Walker>
    Step Take(const Oid& request, Walker walker) {
        oid name[MAX_OID_LEN];
        std::ranges::copy(request, name);
        std::size_t length = request.size();
        Step step;
        step.result = walker(name, &length, step);
        step.name.assign(name, name + length);
        if (step.result != 0) {
            EXPECT_EQ(step.name, request) << "a failed walk changed the request";
        }
        return step;
    }

    variable vp{};
};

const std::string kFirst = "1000020000000100", kSecond = "1000020000000200",
                  kThird = "1000020000000300";

TEST_F(WalkersTest, UnitsFollowOneAnother) {
    const std::pair<Oid, Oid> steps[] = {
        {{1, 3}, Row(kFirst)},
        {kColumn, Row(kFirst)},
        {{1, 3, 6, 1, 3, 94, 1, 7, 1, 1, 5, 5}, Row(kFirst)},  // before the column
        {Row(""), Row(kFirst)},
        {Row(kFirst), Row(kSecond)},
        {Row(kFirst, 0), Row(kSecond)},
        {Row("1000020000000101"), Row(kSecond)},
        {Row(kSecond), Row(kThird)},
    };
    for (const auto& [request, expected] : steps) {
        const Step step = NextUnit(request);
        EXPECT_EQ(step.result, 0);
        EXPECT_EQ(step.name, expected);
    }
    EXPECT_EQ(NextUnit(Row(kSecond)).unit, 2);
    EXPECT_EQ(NextUnit(Row(kThird)).result, -1);
    EXPECT_EQ(NextUnit(Row("ffffffffffffffff")).result, -1);
    EXPECT_EQ(NextUnit({1, 3, 6, 1, 3, 94, 1, 7, 1, 3}).result, -1);
    EXPECT_EQ(NextUnit({2}).result, -1);
}

TEST_F(WalkersTest, RevisionsRollOverToTheNextUnit) {
    Oid name = kColumn;
    std::vector<Oid> rows;
    for (Step step = NextRevision(name); step.result == 0; step = NextRevision(step.name)) {
        rows.push_back(step.name);
    }
    EXPECT_EQ(rows,
              (std::vector<Oid>{Row(kFirst, 1), Row(kFirst, 2), Row(kFirst, 3), Row(kSecond, 1),
                                Row(kSecond, 2), Row(kSecond, 3), Row(kSecond, 4), Row(kThird, 1),
                                Row(kThird, 2), Row(kThird, 3)}));
    // A unit between two begins the next one's rows anew; so does a short index.
    EXPECT_EQ(NextRevision(Row("1000020000000101", 3)).name, Row(kSecond, 1));
    Oid half = Row(kSecond);
    half.resize(half.size() - 4);
    EXPECT_EQ(NextRevision(half).name, Row(kSecond, 1));
    const Step last = NextRevision(Row(kSecond, 3));
    EXPECT_EQ(last.unit, 1);
    EXPECT_EQ(last.row, 3u);
}

TEST_F(WalkersTest, UnitsWithoutRowsAreSkipped) {
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->chassis = 0; });
    EXPECT_EQ(NextRevision(Row(kFirst, 3)).name, Row(kThird, 1));
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(1)->chassis = 0; });
    EXPECT_EQ(NextRevision(Row(kFirst, 3)).result, -1);
}

// Neither numbers beyond 16 bits nor units with one WWN, nor WWNs in mixed case, which are sorted
// as texts, may lead a manager round in circles or hide the units behind them.
TEST_F(WalkersTest, WalksGoOnPastOddNumbersAndWwns) {
    for (const oid number : {3u, 65535u, 65536u, 65537u, 4294967295u}) {
        EXPECT_EQ(NextRevision(Row(kFirst, number)).name, Row(kSecond, 1)) << number;
    }
    const std::pair<std::vector<std::string>, std::size_t> fabrics[] = {
        {{"1000020000000100", "1000020000000100", "1000020000000300"}, 2},
        {{"10000200000002B0", "10000200000002a0", "10000200000002c0"}, 2},
    };
    for (const auto& [wwns, count] : fabrics) {
        server.WithFabric([&, list = &wwns](sim::Fabric& fabric) {
            for (std::size_t i = 0; i < list->size(); ++i) {
                fabric.switches[i].wwn = (*list)[i];
            }
        });
        ASSERT_EQ(UpdateConnUnitTable(), 0);
        std::vector<Oid> units;
        for (Step step = NextUnit(kColumn); step.result == 0; step = NextUnit(step.name)) {
            ASSERT_TRUE(units.empty() || step.name > units.back());
            units.push_back(step.name);
        }
        EXPECT_EQ(units.size(), count);
        EXPECT_EQ(units.back(), Row(wwns.back()));
    }
}

TEST_F(WalkersTest, AnswersAlwaysLieBehindTheRequest) {
    std::uint32_t seed = 1;
    const auto random = [&](std::size_t count) {
        seed = seed * 1664525 + 1013904223;
        return (seed >> 16) % count;
    };
    const std::string wwns[] = {"", kFirst, kSecond, kThird, "f000020000000900"};
    const oid numbers[] = {0, 1, 2, 3, 65535, 65536, 65537, 4294967295u};
    const auto probe = [&](auto walker) {
        int answered = 0;
        for (int i = 0; i < 2000; ++i) {
            Oid request = Row(wwns[random(5)], numbers[random(8)]);
            if (random(2) == 0) {
                request[random(request.size())] = numbers[random(8)];
            }
            if (random(4) == 0) {
                request.resize(random(request.size() + 1));
            }
            const Step step = walker(request);
            answered += step.result == 0 ? 1 : 0;
            ASSERT_TRUE(step.result != 0 || step.name > request);
        }
        EXPECT_GT(answered, 500);
    };
    probe([&](const Oid& request) { return NextUnit(request); });
    probe([&](const Oid& request) { return NextRevision(request); });
    server.WithFabric([](sim::Fabric& fabric) {
        std::erase_if(fabric.switches, [](const sim::Switch& s) { return s.domain != 2; });
    });
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    ASSERT_EQ(GetRowsEnd(), 3);  // units of the earlier fabric lie behind the end
    probe([&](const Oid& request) { return NextUnit(request); });
}

TEST_F(WalkersTest, EndsSayWhatCausedThem) {
    TraceEverything();
    NextUnit({2});
    EXPECT_TRUE(Logged(":OID mismatch caused MATCH_FAILED return"));
    NextUnit(Row(kThird));
    EXPECT_TRUE(Logged(":GetWWNfromIndex caused MATCH_FAILED return"));
    NextUnit(Row("ff"));
    EXPECT_TRUE(Logged(":GetWwnIndexFromWwnOID caused MATCH_FAILED return"));
    NextRevision(Row("ff", 1));
    EXPECT_TRUE(Logged("snmpoid.c "));
    NextRevision(Row(kThird, 3));
    EXPECT_TRUE(Logged(":Unit Index = 3 caused MATCH_FAILED return"));
    NextRevision(kColumn);
    EXPECT_TRUE(Logged("First time through or oid just got incremented"));
    NextRevision(Row(kFirst, 1));
    EXPECT_TRUE(Logged("Oid already has unit and index values attached"));
}

}  // namespace
}  // namespace snmpmain
