#include "src/snmpoid/walkers.h"

#include <functional>
#include <sstream>

#include "src/base/text.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using Oid = std::vector<oid>;

const Oid kColumn = {1, 3, 6, 1, 3, 94, 1, 7, 1, 2};

// The OID at an index written as "1.2", or as "100:2" where it begins with a unit: one with these
// last digits of its WWN. "start" is the column itself, "end" none.
Oid At(const std::string& place) {
    if (place == "end") {
        return {};
    }
    Oid name = kColumn;
    const std::size_t colon = place.find(':');
    if (colon != std::string::npos) {
        name.resize(kColumn.size() + WWN_OID_LEN);
        MakeOIDfromHexStr(("1000020000000" + place.substr(0, colon)).c_str(),
                          std::span(name).subspan(kColumn.size()));
    }
    std::istringstream numbers(place == "start" ? "" : place.substr(colon + 1));
    for (std::string number; std::getline(numbers, number, '.');) {
        name.push_back(std::stoul(number));
    }
    return name;
}

// An OID that breaks off within its index.
Oid Half(Oid name, std::size_t indexLength) {
    name.resize(kColumn.size() + indexLength);
    return name;
}

class WalkersTest : public SwitchTest {
  protected:
    using Walker = std::function<int(oid*, std::size_t*)>;

    WalkersTest() {
        Discover();
        vp.namelen = static_cast<u_char>(kColumn.size());
        std::ranges::copy(kColumn, vp.name);
    }

    template <typename... Found>
    Walker Of(int (*walker)(const variable*, oid*, std::size_t*, Found&...), Found&... found) {
        return [this, walker, &found...](oid* name, std::size_t* length) {
            return walker(&vp, name, length, found...);
        };
    }

    // Where a request leads; nowhere at the end of the column.
    static Oid Next(const Oid& request, const Walker& walker) {
        oid name[MAX_OID_LEN];
        std::ranges::copy(request, name);
        std::size_t length = request.size();
        const int result = walker(name, &length);
        const Oid found(name, name + length);
        EXPECT_TRUE(result == 0 || found == request) << "a failed walk changed the request";
        return result == 0 ? found : Oid{};
    }

    // Steps as "FROM>TO", blank-separated.
    static void Expect(const Walker& walker, const std::string& steps) {
        std::istringstream words(steps);
        for (std::string step; words >> step;) {
            const std::size_t arrow = step.find('>');
            EXPECT_EQ(Next(At(step.substr(0, arrow)), walker), At(step.substr(arrow + 1))) << step;
        }
    }

    // A whole walk, blank-separated.
    static void ExpectWalk(const Walker& walker, const std::string& places) {
        std::string steps, from = "start";
        std::istringstream words(places + " end");
        for (std::string place; words >> place; from = place) {
            steps += from + ">" + place + " ";
        }
        Expect(walker, steps);
    }

    variable vp{};
    std::uint16_t unit = 0;
    std::uint32_t row = 0;
    SensorRef part{};
    const ZoneMemberNode* member = nullptr;
    NameServerMatch entry{};
    Login login{};
    const Walker units = Of(GetNextUnit, unit), ports = Of(GetNextUnitPort, unit, row),
                 sensors = Of(GetNextUnitSensor, unit, row, part),
                 revisions = Of(GetNextUnitRevision, unit, row),
                 events = Of(GetNextUnitEvent, unit, row), links = Of(GetNextUnitLink, unit, row),
                 zones = Of(GetNextZoneMember, member), aliases = Of(GetNextAliasMember, member),
                 names = Of(GetNextNameServerEntry, entry), logins = Of(GetNextLogin, unit, login),
                 modulePorts = Of(GetNextModulePort, unit, row);
};

TEST_F(WalkersTest, UnitsFollowOneAnother) {
    ExpectWalk(units, "100: 200: 300:");
    Expect(units, "100:0>200: 101:>200: fff:>end");
    for (const Oid& before : {Oid{1, 3}, Oid{1, 3, 6, 1, 3, 94, 1, 7, 1, 1, 5, 5}}) {
        EXPECT_EQ(Next(before, units), At("100:"));
    }
    for (const Oid& behind : {Oid{1, 3, 6, 1, 3, 94, 1, 7, 1, 3}, Oid{2}}) {
        EXPECT_EQ(Next(behind, units), Oid{});
    }
    // Stands before the unit whose name it begins.
    EXPECT_EQ(Next(Half(At("200:"), 8), units), At("200:"));
    Expect(units, "200:>300:");
    EXPECT_EQ(unit, 2);
}

TEST_F(WalkersTest, RevisionsRollOverToTheNextUnitThatHasSome) {
    ExpectWalk(revisions, "100:1 100:2 100:3 200:1 200:2 200:3 200:4 300:1 300:2 300:3");
    // A unit between two begins the next one's rows anew; so does a short index.
    Expect(revisions, "101:3>200:1");
    EXPECT_EQ(Next(Half(At("200:"), 12), revisions), At("200:1"));
    Expect(revisions, "200:3>200:4");
    EXPECT_EQ(unit, 1);
    EXPECT_EQ(row, 3u);
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->chassis = 0; });
    Expect(revisions, "100:3>300:1");
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(1)->chassis = 0; });
    Expect(revisions, "100:3>end");
}

// Neither numbers beyond 16 bits nor units with one WWN, nor WWNs in mixed case, which are sorted
// as texts, may lead a manager round in circles or hide the units behind them.
TEST_F(WalkersTest, WalksGoOnPastOddNumbersAndWwns) {
    Expect(revisions, "100:65535>200:1 100:65536>200:1 100:65537>200:1 100:4294967295>200:1");
    const std::pair<std::vector<std::string>, const char*> fabrics[] = {
        {{"100", "100", "300"}, "100: 300:"}, {{"2B0", "2a0", "2c0"}, "2B0: 2c0:"}};
    for (const auto& [wwns, walk] : fabrics) {
        server.WithFabric([&, list = &wwns](sim::Fabric& fabric) {
            for (std::size_t i = 0; i < list->size(); ++i) {
                fabric.switches[i].wwn = "1000020000000" + (*list)[i];
            }
        });
        ASSERT_EQ(UpdateConnUnitTable(), 0);
        ExpectWalk(units, walk);
    }
}

TEST_F(WalkersTest, PortsKeepTheirNumberFromUnitToUnit) {
    Expect(ports, "start>100:1 100:15>100:16 100:16>200:1 101:5>200:6 300:8>end");
    Expect(ports, "101:65541>200:6 100:65537>200:1");  // what 16 bits leave of it lies before it
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->ports.clear(); });
    Expect(ports, "100:16>300:1");
}

TEST_F(WalkersTest, SensorsComeWithWhatTheyReferTo) {
    Expect(sensors, "101:5>200:1 200:11>200:12");
    EXPECT_EQ(part.kind, kBladeVoltageSensor);
    Expect(sensors, "200:13>300:1");
    EXPECT_EQ(part.kind, kPowerSupplySensor);
}

// Logs: 61 to 105 at the first unit, 1 to 3 at the second, none at the third.
TEST_F(WalkersTest, EventsAreTheNewestOfEachLog) {
    Expect(events, "start>100:76 100:20>100:76 100:104>100:105 100:105>200:1 101:2>200:3");
    Expect(events, "100:4294967295>200:1 200:3>end");
    server.SetValue(7, "Oper.Switch.NextLogEntry.3", "[4000000][beyond the newest]");
    Expect(events, "200:3>end");
    server.SetValue(7, "Oper.Switch.NextLogEntry.2", "no id");
    Expect(events, "200:2>200:3");
    for (const char* answer : {"*end*", "[2][again]"}) {
        server.SetValue(7, "Oper.Switch.NextLogEntry.2", answer);
        Expect(events, "200:2>end");
    }
    // Ids that are missing lead to the entry behind them, each in its turn.
    server.WithFabric(
        [](sim::Fabric& fabric) { fabric.Find(7)->log.erase(fabric.Find(7)->log.begin() + 1); });
    Expect(events, "200:1>200:2");
    server.SetValue(7, "Oper.Switch.FirstLogEntry", "[0][never]");
    Expect(events, "100:105>end");
}

TEST_F(WalkersTest, LinksAreNumberedByTheirUnit) {
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.Find(2)->links.resize(2);
        fabric.Find(7)->links.clear();
        fabric.Find(1)->links.resize(1);
    });
    server.SetValue(2, "Oper.Link.NextLinkEntry.1", "9");
    server.SetValue(2, "Oper.Link.NextLinkEntry.9", "9");  // does not lead on
    ExpectWalk(links, "100:1 100:9 300:1");
    Expect(links, "001:1>100:9");
    for (const std::optional<std::string>& answer :
         {std::optional<std::string>("*end*"), std::optional<std::string>("0"), {}}) {
        server.SetValue(2, "Oper.Link.NextLinkEntry.1", answer);
        Expect(links, "100:1>300:1");
    }
}

TEST_F(WalkersTest, MembersFollowZoneAndMemberNumbers) {
    ReadZonesIfStale();
    ReadAliasesIfStale();
    ExpectWalk(zones, "1.1 1.2 3.1 3.2");
    Expect(zones, "1.4294967295.5>3.1");
    EXPECT_EQ(member, GetZoneMember(3, 1));
    Expect(aliases, "start>1.1");
    EXPECT_EQ(member, GetAliasMember(1, 1));
}

TEST_F(WalkersTest, NameServerEntriesFollowWwnsWhateverElseIsInTheIndex) {
    ReadNameServerIfStale();
    const Oid first = Next(kColumn, names);
    EXPECT_STREQ(entry.portId, "020c00");
    const Oid second = Next(first, names);
    EXPECT_STREQ(entry.portId, "020900");
    Oid odd = first;
    odd.back() = 255;
    EXPECT_EQ(Next(odd, names), second);
    odd.back() = 256;
    EXPECT_EQ(Next(odd, names), Oid{});
    EXPECT_EQ(Next(Half(second, 24), names), second);
    // What lies behind a switch's name in the index counts for the order of OIDs all the same.
    odd = first;
    odd[kColumn.size() + 8] = 1;
    EXPECT_NE(Next(odd, names), Oid{});
    EXPECT_EQ(entry.domainId, 7);
}

TEST_F(WalkersTest, TrapEntriesFollowAddressAndPort) {
    const TrapRowLookup rowAt = [](std::uint16_t row, TrapRowIndex& index) {
        const std::uint32_t ports[] = {163, 0, 162, 162, 0};
        CopyText(index.address, sizeof(index.address), "10.0.0.2");
        index.port = ports[row];
        return index.port == 0 ? -1 : 0;
    };
    const Walker traps = [&](oid* name, std::size_t* length) {
        return GetNextTrapEntry(rowAt, &vp, name, length, unit);
    };
    ExpectWalk(traps, "10.0.0.2.162 10.0.0.2.163");
    Expect(traps, "10.0.0.2.162.9>10.0.0.2.163 10.0.0.2.161.9>10.0.0.2.162 10.0.0.300.161>end");
}

TEST_F(WalkersTest, ModulesAndPortsCountFromOne) {
    Expect(modulePorts, "start>1.1 0.5>1.1 1.15>1.16 1.65536>2.1 3.8>end 65537.1>end");
    std::uint16_t port = 0;
    const Oid name = At("3.0");
    EXPECT_EQ(CheckModulePortOID(&vp, name.data(), name.size(), &unit, &port), 0);
    EXPECT_EQ(unit, 2);
    EXPECT_EQ(port, 65535);
    EXPECT_EQ(CheckModulePortOID(&vp, name.data(), name.size() - 1, &unit, &port), -1);
    EXPECT_EQ(CheckModulePortOID(&vp, name.data(), name.size(), &unit, nullptr), -1);
}

// A login is a name-server entry of an F port's own domain and area.
TEST_F(WalkersTest, LoginsAreDevicesAtFabricPorts) {
    server.WithFabric([](sim::Fabric& fabric) {
        for (sim::Switch& each : fabric.switches) {
            each.nameServer.clear();
            each.links.clear();
        }
        const auto attach = [&](std::uint16_t domain, const std::vector<const char*>& portIds,
                                const std::vector<std::uint32_t>& ports) {
            for (const char* portId : portIds) {
                fabric.Find(domain)->nameServer.emplace_back().portId = portId;
            }
            for (const std::uint32_t port : ports) {
                fabric.Find(domain)->links.emplace_back().localPort = port;
            }
        };
        // 2 is an E port, 4 has no device.
        attach(2, {"020100", "0201e1", "02ffff", "0201e2", "020200"}, {1, 1, 2, 4});
        attach(1, {"010100", "010000"}, {1, 0});
    });
    ExpectWalk(logins, "1.2.1 1.2.2 3.1.1 3.2.1");
    Expect(logins, "1.2.1>1.2.2");
    EXPECT_STREQ(login.portId, "0201e1");
    Expect(logins, "1.2.2>3.1.1");
    EXPECT_EQ(unit, 2);
    // A zero begins anew what lies below it; a start beyond the ports does not skip a login.
    Expect(logins, "0.9.9>1.2.1 1.0.1>1.2.1 1.2.0>1.2.1 2.99.7>3.1.1 3.0.7>3.1.1");
    for (const auto& [path, reply] :
         {std::pair("Oper.UserPort.0.0.PortID", std::optional<std::string>()),
          std::pair("Oper.Link.Port.0.0.LinkEntries", std::optional<std::string>("many"))}) {
        server.WithFabric([](sim::Fabric& fabric) { fabric.Find(1)->values.clear(); });
        server.SetValue(1, path, reply);
        ResetLogins();
        ExpectWalk(logins, "1.2.1 1.2.2 3.2.1");
    }
}

// What one port refuses hides no other port. Silence ends the switch and is not remembered; what
// another has answered is, for three seconds.
TEST_F(WalkersTest, LoginsGoOnAfterARefusalAndComeBackAfterSilence) {
    const std::string refused = "Get.Oper.Link.Port.0.0.LinkEntries";
    // One question is refused, and one is not answered.
    const auto answer = [&](const std::string& silent) {
        server.SetReplyOverride([refused, silent](const sim::ReceivedCommand& command,
                                                  std::vector<std::uint8_t> reply) {
            reply[2] = command.text == refused ? 1 : 0;  // the status byte
            return command.text == silent && command.domain == 2 ? std::nullopt
                                                                 : std::optional(reply);
        });
    };
    answer("");
    for (const char* text :
         {"Get.Oper.NameServer.NextNsEntry.020900", "Get.Oper.Link.Port.0.1.LinkEntries"}) {
        ResetLogins();
        Expect(logins, "2.2.2>2.5.1 2.1.1>2.2.1");
        EXPECT_EQ(CountTexts("FirstNsEntry"), 1);
        answer(text);
        Expect(logins, "1.1.1>2.2.1");
        EXPECT_EQ(CountTexts("FirstNsEntry"), 2) << "longer than three seconds";
        answer("");
        Expect(logins, "1.1.1>1.2.1");
        EXPECT_GT(CountTexts(text), 0);
    }
}

// Rows cost commands by their number, not by its square, and a GET finds what a walk shows.
TEST_F(WalkersTest, LoginsCostNoMoreEachWhereThereAreMore) {
    double commandsPerRow[2];
    for (const unsigned few : {1u, 0u}) {
        const unsigned names = few == 1 ? 32 : 128;
        server.WithFabric(
            [&](sim::Fabric& fabric) { fabric = sim::GenerateFabric(2, {.names = names}); });
        Discover();
        ResetLogins();
        unsigned rows = 0;
        for (Oid row = Next(kColumn, logins); !row.empty(); row = Next(row, logins), ++rows) {
            const Login walked = login;
            ASSERT_EQ(ReadLoginAt(std::span(row).last<kLoginIndexLength>(), unit, login), 0);
            ASSERT_STREQ(login.portId, walked.portId);
        }
        EXPECT_EQ(rows, 2 * names);
        commandsPerRow[few] = static_cast<double>(CountTexts("")) / rows;
    }
    EXPECT_LE(commandsPerRow[0], 1.3 * commandsPerRow[1]);
}

}  // namespace
}  // namespace snmpmain
