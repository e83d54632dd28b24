#include "src/snmpoid/walkers.h"

#include <functional>
#include <map>

#include "src/base/text.h"
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

// An OID that breaks off within its index.
Oid Half(Oid name, std::size_t indexLength) {
    name.resize(kColumn.size() + indexLength);
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

    // A walker over a unit and a row number as Take wants it.
    auto Rows(int (*walker)(const variable*, oid*, std::size_t*, std::uint16_t&, std::uint32_t&)) {
        return [this, walker](oid* name, std::size_t* length, Step& step) {
            return walker(&vp, name, length, step.unit, step.row);
        };
    }

    Oid NextRow(int (*walker)(const variable*, oid*, std::size_t*, std::uint16_t&, std::uint32_t&),
                const Oid& request) {
        const Step step = Take(request, Rows(walker));
        return step.result == 0 ? step.name : Oid{};
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

    // The rows of a walk as their index values, at most 40 of them.
    template <typename Walker>
    std::vector<Oid> WalkAll(Walker walker, Oid name = kColumn) {
        std::vector<Oid> rows;
        for (Step step = Take(name, walker); step.result == 0 && rows.size() < 40;
             step = Take(step.name, walker)) {
            rows.emplace_back(step.name.begin() + static_cast<long>(kColumn.size()),
                              step.name.end());
        }
        return rows;
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
        {Half(Row(kSecond), 8), Row(kSecond)},  // stands before the unit whose name it begins
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
    EXPECT_EQ(NextRevision(Half(Row(kSecond), 12)).name, Row(kSecond, 1));
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

TEST_F(WalkersTest, PortsKeepTheirNumberFromUnitToUnit) {
    EXPECT_EQ(NextRow(GetNextUnitPort, kColumn), Row(kFirst, 1));
    EXPECT_EQ(NextRow(GetNextUnitPort, Row(kFirst, 15)), Row(kFirst, 16));
    EXPECT_EQ(NextRow(GetNextUnitPort, Row(kFirst, 16)), Row(kSecond, 1));
    EXPECT_EQ(NextRow(GetNextUnitPort, Row("1000020000000101", 5)), Row(kSecond, 6));
    EXPECT_EQ(NextRow(GetNextUnitPort, Row("1000020000000101", 65541)), Row(kSecond, 6));
    EXPECT_EQ(NextRow(GetNextUnitPort, Row(kFirst, 65537)), Row(kSecond, 1));  // 2 lies before it
    EXPECT_EQ(NextRow(GetNextUnitPort, Row(kThird, 8)), Oid{});
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->ports.clear(); });
    EXPECT_EQ(NextRow(GetNextUnitPort, Row(kFirst, 16)), Row(kThird, 1));
}

TEST_F(WalkersTest, ValuesPassOverUnitsThatTheRequestDoesNotName) {
    const auto walker = [&](oid* name, std::size_t* length, Step& step) {
        return GetNextUnitValue(&vp, name, length, 2, step.unit, step.row);
    };
    EXPECT_EQ(WalkAll(walker).size(), 6u);
    EXPECT_EQ(Take(Row(kFirst, 1), walker).name, Row(kFirst, 2));
    EXPECT_EQ(Take(Row(kFirst, 2), walker).name, Row(kSecond, 1));
    EXPECT_EQ(Take(Row("1000020000000101", 1), walker).name, Row(kThird, 1));
    EXPECT_EQ(Take(Row("1000020000000201", 1), walker).result, -1);
}

TEST_F(WalkersTest, SensorsComeWithWhatTheyReferTo) {
    SensorRef part{};
    const auto walker = [&](oid* name, std::size_t* length, Step& step) {
        return GetNextUnitSensor(&vp, name, length, step.unit, step.row, part);
    };
    EXPECT_EQ(Take(Row(kSecond, 11), walker).name, Row(kSecond, 12));
    EXPECT_EQ(part.kind, kBladeVoltageSensor);
    EXPECT_EQ(Take(Row(kSecond, 13), walker).name, Row(kThird, 1));
    EXPECT_EQ(part.kind, kPowerSupplySensor);
    EXPECT_EQ(Take(Row("1000020000000101", 5), walker).name, Row(kSecond, 1));
}

// Logs: 61 to 105 at the first unit, 1 to 3 at the second, none at the third.
TEST_F(WalkersTest, EventsAreTheNewestOfEachLog) {
    EXPECT_EQ(NextRow(GetNextUnitEvent, kColumn), Row(kFirst, 76));
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kFirst, 20)), Row(kFirst, 76));
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kFirst, 104)), Row(kFirst, 105));
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kFirst, 105)), Row(kSecond, 1));
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kFirst, 4294967295u)), Row(kSecond, 1));
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row("1000020000000101", 2)), Row(kSecond, 3));
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kSecond, 3)), Oid{});
    server.SetValue(7, "Oper.Switch.NextLogEntry.3", "[4000000][beyond the newest]");
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kSecond, 3)), Oid{});
    server.SetValue(7, "Oper.Switch.NextLogEntry.2", "no id");
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kSecond, 2)), Row(kSecond, 3));
    for (const char* answer : {"*end*", "[2][again]"}) {
        server.SetValue(7, "Oper.Switch.NextLogEntry.2", answer);
        EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kSecond, 2)), Oid{}) << answer;
    }
    // Ids that are missing lead to the entry behind them, each in its turn.
    server.WithFabric(
        [](sim::Fabric& fabric) { fabric.Find(7)->log.erase(fabric.Find(7)->log.begin() + 1); });
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kSecond, 1)), Row(kSecond, 2));
    server.SetValue(7, "Oper.Switch.FirstLogEntry", "[0][never]");
    EXPECT_EQ(NextRow(GetNextUnitEvent, Row(kFirst, 105)), Oid{});
}

TEST_F(WalkersTest, LinksAreNumberedByTheirUnit) {
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.Find(2)->links.resize(2);
        fabric.Find(7)->links.clear();
        fabric.Find(1)->links.resize(1);
    });
    server.SetValue(2, "Oper.Link.NextLinkEntry.1", "9");
    server.SetValue(2, "Oper.Link.NextLinkEntry.9", "9");  // does not lead on
    EXPECT_EQ(NextRow(GetNextUnitLink, kColumn), Row(kFirst, 1));
    EXPECT_EQ(NextRow(GetNextUnitLink, Row(kFirst, 1)), Row(kFirst, 9));
    EXPECT_EQ(NextRow(GetNextUnitLink, Row(kFirst, 9)), Row(kThird, 1));
    EXPECT_EQ(NextRow(GetNextUnitLink, Row(kThird, 1)), Oid{});
    EXPECT_EQ(NextRow(GetNextUnitLink, Row("1000020000000001", 1)), Row(kFirst, 9));
    for (const std::optional<std::string>& answer :
         {std::optional<std::string>("*end*"), std::optional<std::string>("0"), {}}) {
        server.SetValue(2, "Oper.Link.NextLinkEntry.1", answer);
        EXPECT_EQ(NextRow(GetNextUnitLink, Row(kFirst, 1)), Row(kThird, 1));
    }
}

TEST_F(WalkersTest, MembersFollowZoneAndMemberNumbers) {
    RefreshZoningTable();
    RefreshAliasTable();
    const auto zones = [&](oid* name, std::size_t* length, Step&) {
        const ZoneMemberNode* member = nullptr;
        return GetNextZoneMember(&vp, name, length, member);
    };
    EXPECT_EQ(WalkAll(zones), (std::vector<Oid>{{1, 1}, {1, 2}, {3, 1}, {3, 2}}));
    Oid behind = kColumn;
    behind.insert(behind.end(), {1, 4294967295u, 5});
    EXPECT_EQ(WalkAll(zones, behind), (std::vector<Oid>{{3, 1}, {3, 2}}));
    const auto aliases = [&](oid* name, std::size_t* length, Step&) {
        const ZoneMemberNode* member = nullptr;
        return GetNextAliasMember(&vp, name, length, member);
    };
    EXPECT_EQ(WalkAll(aliases).front(), (Oid{1, 1}));
}

TEST_F(WalkersTest, NameServerEntriesFollowWwnsWhateverElseIsInTheIndex) {
    RefreshNameServerTable();
    NameServerMatch entry;
    const auto walker = [&](oid* name, std::size_t* length, Step&) {
        return GetNextNameServerEntry(&vp, name, length, entry);
    };
    EXPECT_EQ(WalkAll(walker).size(), GetNameServerTotal());
    const Step first = Take(kColumn, walker);
    EXPECT_STREQ(entry.portId, "020c00");
    const Step second = Take(first.name, walker);
    EXPECT_STREQ(entry.portId, "020900");
    Oid odd = first.name;
    odd.back() = 255;
    EXPECT_EQ(Take(odd, walker).name, second.name);
    odd.back() = 256;
    EXPECT_EQ(Take(odd, walker).result, -1);
    EXPECT_EQ(Take(Half(second.name, 24), walker).name, second.name);
    // What lies behind a switch's name in the index counts for the order of OIDs all the same.
    odd = first.name;
    odd[kColumn.size() + 8] = 1;
    EXPECT_EQ(Take(odd, walker).result, 0);
    EXPECT_EQ(entry.domainId, 7);
}

TEST_F(WalkersTest, TrapEntriesFollowAddressAndPort) {
    const TrapRowLookup rowAt = [](std::uint16_t row, TrapRowIndex& index) {
        const std::pair<const char*, std::uint32_t> rows[] = {
            {"10.0.0.2", 163}, {"", 0}, {"10.0.0.2", 162}, {"10.0.0.2", 162}, {"", 0}};
        if (rows[row].first[0] == '\0') {
            return -1;
        }
        CopyText(index.address, sizeof(index.address), rows[row].first);
        index.port = rows[row].second;
        return 0;
    };
    const auto walker = [&](oid* name, std::size_t* length, Step& step) {
        return GetNextTrapEntry(rowAt, &vp, name, length, step.unit);
    };
    EXPECT_EQ(WalkAll(walker), (std::vector<Oid>{{10, 0, 0, 2, 162}, {10, 0, 0, 2, 163}}));
    Oid behind = kColumn;
    behind.insert(behind.end(), {10, 0, 0, 2, 162, 9});
    EXPECT_EQ(WalkAll(walker, behind), (std::vector<Oid>{{10, 0, 0, 2, 163}}));
    behind[kColumn.size() + 4] = 161;
    EXPECT_EQ(WalkAll(walker, behind).size(), 2u);
    behind[kColumn.size() + 3] = 300;
    EXPECT_EQ(Take(behind, walker).result, -1);
}

TEST_F(WalkersTest, ModulesAndPortsCountFromOne) {
    const auto start = [](Oid index) {
        index.insert(index.begin(), kColumn.begin(), kColumn.end());
        return index;
    };
    EXPECT_EQ(NextRow(GetNextModulePort, kColumn), start({1, 1}));
    EXPECT_EQ(NextRow(GetNextModulePort, start({0, 5})), start({1, 1}));
    EXPECT_EQ(NextRow(GetNextModulePort, start({1, 15})), start({1, 16}));
    EXPECT_EQ(NextRow(GetNextModulePort, start({1, 65536})), start({2, 1}));
    EXPECT_EQ(NextRow(GetNextModulePort, start({3, 8})), Oid{});
    EXPECT_EQ(NextRow(GetNextModulePort, start({65537, 1})), Oid{});
    std::uint16_t unit = 0, port = 0;
    const Oid name = start({3, 0});
    EXPECT_EQ(CheckModulePortOID(&vp, name.data(), name.size(), &unit, &port), 0);
    EXPECT_EQ(unit, 2);
    EXPECT_EQ(port, 65535);
    EXPECT_EQ(CheckModulePortOID(&vp, name.data(), name.size() - 1, &unit, &port), -1);
    EXPECT_EQ(CheckModulePortOID(&vp, name.data(), name.size(), &unit, nullptr), -1);
}

// A login is a name-server entry of an F port's own domain and area.
TEST_F(WalkersTest, LoginsAreDevicesAtFabricPorts) {
    server.WithFabric([](sim::Fabric& fabric) {
        for (sim::Switch& unit : fabric.switches) {
            unit.nameServer.clear();
            unit.links.clear();
        }
        sim::Switch& local = *fabric.Find(2);
        for (const char* portId : {"020100", "0201e1", "02ffff", "0201e2", "020200"}) {
            sim::NsEntry entry;
            entry.portId = portId;
            local.nameServer.push_back(entry);
        }
        for (const std::uint32_t port : {1u, 1u, 2u, 4u}) {  // 2 is an E port, 4 has no device
            sim::Link link;
            link.localPort = port;
            local.links.push_back(link);
        }
        sim::NsEntry entry;
        entry.portId = "010100";
        fabric.Find(1)->nameServer.push_back(entry);
        fabric.Find(1)->links.emplace_back().localPort = 1;
        entry.portId = "010000";
        fabric.Find(1)->nameServer.push_back(entry);
        fabric.Find(1)->links.emplace_back().localPort = 0;
    });
    Login login{};
    const auto walker = [&](oid* name, std::size_t* length, Step&) {
        return GetNextLogin(&vp, name, length, login);
    };
    TakeTexts();
    EXPECT_EQ(WalkAll(walker), (std::vector<Oid>{{1, 2, 1}, {1, 2, 2}, {3, 1, 1}, {3, 2, 1}}));
    Oid behind = kColumn;
    behind.insert(behind.end(), {1, 2, 1});
    Take(behind, walker);
    EXPECT_STREQ(login.portId, "0201e1");
    // From the local switch's last login on: its name server is not read twice for port 4.
    behind.back() = 2;
    TakeTexts();
    Take(behind, walker);
    EXPECT_EQ(login.unit, 2);
    const std::vector<std::string> texts = TakeTexts();
    EXPECT_EQ(std::ranges::count(texts, "Get.Oper.NameServer.FirstNsEntry"), 2);
    // A zero begins anew what lies below it; a start beyond the ports does not skip a login.
    for (const auto& [index, next] :
         {std::pair(Oid{0, 9, 9}, Oid{1, 2, 1}), std::pair(Oid{1, 0, 1}, Oid{1, 2, 1}),
          std::pair(Oid{1, 2, 0}, Oid{1, 2, 1}), std::pair(Oid{2, 99, 7}, Oid{3, 1, 1}),
          std::pair(Oid{3, 0, 7}, Oid{3, 1, 1})}) {
        Oid request = kColumn;
        request.insert(request.end(), index.begin(), index.end());
        EXPECT_EQ(WalkAll(walker, request).front(), next);
    }
    server.SetValue(1, "Oper.UserPort.0.0.PortID", std::nullopt);
    EXPECT_EQ(WalkAll(walker).back(), (Oid{3, 2, 1}));
    EXPECT_EQ(WalkAll(walker).size(), 3u);
    server.SetValue(1, "Oper.Link.Port.0.0.LinkEntries", "many");
    EXPECT_EQ(WalkAll(walker).size(), 3u);
}

// Random requests at every walker, while units, ports, zones and names come and go.
TEST_F(WalkersTest, AnswersAlwaysLieBehindTheRequest) {
    std::uint32_t seed = 1;
    const auto random = [&](std::size_t count) {
        seed = seed * 1664525 + 1013904223;
        return (seed >> 16) % count;
    };
    using Walker = std::function<int(oid*, std::size_t*, Step&)>;
    const ZoneMemberNode* member = nullptr;
    NameServerMatch entry;
    Login login{};
    const std::vector<std::pair<std::size_t, Walker>> walkers = {
        {16, [&](oid* n, std::size_t* l, Step& s) { return GetNextUnit(&vp, n, l, s.unit); }},
        {17, Rows(GetNextUnitPort)},
        {17, Rows(GetNextUnitRevision)},
        {17, Rows(GetNextUnitEvent)},
        {17, Rows(GetNextUnitLink)},
        {17, [&](oid* n, std::size_t* l,
                 Step& s) { return GetNextUnitValue(&vp, n, l, 3, s.unit, s.row); }},
        {2, Rows(GetNextModulePort)},
        {2, [&](oid* n, std::size_t* l, Step&) { return GetNextZoneMember(&vp, n, l, member); }},
        {3, [&](oid* n, std::size_t* l, Step&) { return GetNextLogin(&vp, n, l, login); }},
        {27,
         [&](oid* n, std::size_t* l, Step&) { return GetNextNameServerEntry(&vp, n, l, entry); }},
    };
    const auto change = [&] {
        server.WithFabric([&](sim::Fabric& fabric) {
            fabric = sim::DefaultFabric();
            sim::Switch& unit = *fabric.Find(7);
            unit.ports.resize(random(24));
            unit.log.resize(random(4));
            unit.links.resize(random(5));
            fabric.Find(1)->nameServer.resize(random(5));
            fabric.zones.resize(random(4));
            if (random(3) == 0) {
                std::erase_if(fabric.switches, [](const auto& s) { return s.domain == 1; });
            }
        });
        ASSERT_EQ(UpdateConnUnitTable(), 0);
        BuildZoningTable();
        BuildNameServerTable();
    };
    const oid numbers[] = {0, 1, 2, 3, 65535, 65536, 65537, 4294967295u};
    const std::string wwns[] = {"", kFirst, kSecond, kThird, "f000020000000900"};
    std::map<std::size_t, int> answered;
    Oid last = kColumn;
    for (int i = 0; i < 3000; ++i) {
        if (i % 300 == 299) {
            change();
        }
        const std::size_t chosen = random(walkers.size());
        const auto& [indexLength, walker] = walkers[chosen];
        Oid request = random(3) == 0 ? last : Row(wwns[random(5)]);
        request.resize(kColumn.size() + indexLength, numbers[random(8)]);
        if (random(2) == 0) {
            request[random(request.size())] = numbers[random(8)];
        }
        if (random(4) == 0) {
            request.resize(random(request.size() + 1));
        }
        const Step step = Take(request, walker);
        ASSERT_TRUE(step.result != 0 || step.name > request) << "walker " << chosen;
        if (step.result == 0) {
            ++answered[chosen];
            last = step.name;
        }
    }
    EXPECT_EQ(answered.size(), walkers.size());
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
    NextRow(GetNextUnitPort, Row(kFirst, 4));
    EXPECT_TRUE(Logged("Starting port index... 4"));
    NextRow(GetNextUnitEvent, Row(kFirst, 80));
    EXPECT_TRUE(Logged("Ending event id....... 81"));
    NextRow(GetNextUnitLink, Row(kFirst, 1));
    EXPECT_TRUE(Logged("Ending link index.... 2"));
}

}  // namespace
}  // namespace snmpmain
