#include "sim/fabric.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "sim/commands.h"

namespace {

using sim::Fabric;

std::string Ask(const Fabric& fabric, std::uint32_t domain, const std::string& path) {
    sim::Commands commands(fabric);
    return commands.Get(*commands.Find(domain), path, 0);
}

/// Walks a First/Next pair until it ends; the last element is how it ended.
std::vector<std::string> Walk(const Fabric& fabric, std::uint32_t domain, const std::string& first,
                              const std::string& next) {
    sim::Commands commands(fabric);
    const sim::Switch& unit = *commands.Find(domain);
    std::vector<std::string> found{commands.Get(unit, first, 0)};
    while (found.back()[0] != '#' && found.back() != "*end*") {
        found.push_back(commands.Get(unit, next + "." + found.back(), 0));
    }
    return found;
}

TEST(Lists, EndInAnErrorOrInTheEndMark) {
    Fabric fabric = sim::DefaultFabric();
    using List = std::vector<std::string>;
    for (const std::string end : {"#2", "*end*"}) {
        fabric.endMark = end == "*end*";
        EXPECT_EQ(Walk(fabric, 7, "Oper.Fabric.FirstDomainID", "Oper.Fabric.NextDomainID"),
                  (List{"1", "2", "7", end}));
        EXPECT_EQ(Walk(fabric, 0, "Oper.Zoning.ActiveZone.ZoneEmpty.FirstZoneMember", ""),
                  List{end});
        EXPECT_EQ(Ask(fabric, 1, "Oper.Switch.FirstLogEntry"), end);
        EXPECT_EQ(Ask(fabric, 0, "Oper.Switch.NextLogEntry.105"), end);
        const std::string last = Ask(fabric, 0, "Oper.Link.LastLinkEntry");
        EXPECT_EQ(Ask(fabric, 0, "Oper.Link.NextLinkEntry." + last), end);
    }
}

TEST(Errors, TellAnUnknownCommandFromAnEntryThatIsNotThere) {
    const Fabric fabric = sim::DefaultFabric();
    for (const char* path :
         {"Oper.UserPort.0.16.OperState", "Oper.UserPort.1.0.C64.FBusys", "Oper.Chassis.1.Fans",
          "Oper.Blade.9.Type", "Oper.Fabric.Entry.3.WWN", "Oper.Link.Entry.0.LocalPortWwn",
          "Oper.NameServer.Entry.ffffff.PortWwn", "Oper.Switch.SwVersion.x"}) {
        EXPECT_EQ(Ask(fabric, 0, path), "#2") << path;
    }
    for (const char* path : {"", "Oper.Switch", "Oper.UserPort.0.1.OperSate", "Oper.Blade.0.C64"}) {
        EXPECT_EQ(Ask(fabric, 0, path), "#1") << path;
    }
}

TEST(GeneratedFabric, HasUniqueNamesInAnotherOrderThanItsDomains) {
    for (const unsigned size : {1u, 2u, 239u}) {
        const Fabric fabric = sim::GenerateFabric(size);
        ASSERT_EQ(fabric.switches.size(), size);
        EXPECT_EQ(sim::CheckFabric(fabric), "");
        std::set<std::string> names, portNames;
        for (const sim::Switch& unit : fabric.switches) {
            names.insert(unit.wwn);
            EXPECT_EQ(unit.ports.size(), 16u);
            for (const sim::Port& port : unit.ports) {
                portNames.insert(port.wwn);
            }
        }
        EXPECT_EQ(names.size(), size);
        EXPECT_EQ(portNames.size(), size * 16);
        EXPECT_EQ(*names.begin(), fabric.switches.back().wwn);
    }
    EXPECT_THROW(sim::GenerateFabric(0), std::out_of_range);
    EXPECT_THROW(sim::GenerateFabric(240), std::out_of_range);
    EXPECT_THROW(sim::GenerateFabric(1, {.names = sim::kMaxGeneratedNames + 1}), std::out_of_range);
}

TEST(GeneratedFabric, ListsAsManyDevicesAndZoneMembersAsWanted) {
    const struct {
        unsigned switches;
        sim::GeneratedSizes sizes;
    } cases[] = {{2, {0, 0}}, {1, {sim::kMaxGeneratedNames, 41}}, {3, {20, 2000}}};
    for (const auto& [switches, sizes] : cases) {
        const Fabric fabric = sim::GenerateFabric(switches, sizes);
        EXPECT_EQ(sim::CheckFabric(fabric), "");
        std::set<std::string> devices;
        for (const sim::Switch& unit : fabric.switches) {
            const std::string names = "Oper.NameServerAll." + std::to_string(unit.domain) + ".";
            EXPECT_EQ(Walk(fabric, 0, names + "FirstNsEntry", names + "NextNsEntry").size(),
                      sizes.names + 1);
            for (const sim::NsEntry& entry : unit.nameServer) {
                devices.insert(entry.portWwn);
            }
            const std::size_t neighbours = (unit.domain > 1) + (unit.domain < switches);
            EXPECT_EQ(Ask(fabric, unit.domain, "Oper.Link.LinkEntries"),
                      std::to_string(sizes.names + neighbours));
        }
        EXPECT_EQ(devices.size(), switches * sizes.names);
        std::size_t members = 0;
        for (const sim::Zone& zone : fabric.zones) {
            members += zone.members.size();
        }
        EXPECT_EQ(members, sizes.zoneMembers);
    }
}

TEST(FabricFile, ReadsBackWhatWasPrinted) {
    Fabric fabric = sim::DefaultFabric();
    fabric.endMark = true;
    fabric.proxy = false;
    sim::Switch& unit = fabric.switches[0];
    unit.comment = "quote \" back\\slash, tab\t, \x7f and caf\xc3\xa9";
    unit.silent = true;
    unit.ports[0].counters = {{"TotalErrors", ~std::uint64_t{0}}};
    unit.values = {{"Oper.Switch.Type", "x"}, {"Config.Mfg.WWN", std::nullopt}};
    EXPECT_TRUE(sim::ParseFabric(sim::PrintFabric(fabric), "copy") == fabric);
    const Fabric large = sim::GenerateFabric(239, {.names = 16, .zoneMembers = 50});
    EXPECT_TRUE(sim::ParseFabric(sim::PrintFabric(large), "copy") == large);
}

TEST(FabricFile, NamesTheLineOfAMistake) {
    const std::pair<const char*, std::string> cases[] = {
        {"proxy = maybe\n", "f:1: "},
        {"proxy = \"yes\"\n", "f:1: \"proxy\" must be true or false"},
        {"[[switch]]\ndomain = 1\ncolour = 3\n", "f:3: unknown key \"colour\""},
        {"[[switch]]\ndomain = 1\n\n[[switch]]\ndomain = 1\n", "f:4: two switches have domain 1"},
        {"[[switch]]\ndomain = 240\n", "f:1: domain 240 is outside 1..239"},
        {"[[switch]]\ndomain = -1\n", "f:2: \"domain\" must be a number from 0 to 65535"},
        {"[[switch]]\nwwn = \"12\"\n",
         "f:1: domain 1: wwn is \"12\", expected 16 hexadecimal digits"},
        {"[[switch]]\n[[switch.port]]\ncounters = { Frames = 1 }\n",
         "f:3: no counter is called \"Frames\""},
        {"[[switch]]\n[switch.values]\n\"Oper.Switch.Type\" = true\n",
         "f:3: \"Oper.Switch.Type\" must be a text"},
        {"[[zone]]\nname = \"Z\"\n[[zone]]\nname = \"Z\"\n", "f:3: a second zone is called \"Z\""},
        {"[[alias]]\nmembers = [{ id = \"1\" }, { id = \"2\" },\n{ id = \"1\" }]\n",
         "f:3: \"1\" is a member twice"},
        {"[[switch]]\n[[switch.name_server]]\n[[switch.name_server]]\n",
         "f:1: domain 1: two name_server entries have the port id 000000"},
        {"\nlocal_domain = 9\n[[switch]]\ndomain = 1\n", "f:2: no switch has the local domain 9"},
        {"", "f:1: no switch has the local domain 1"},
    };
    for (const auto& [file, message] : cases) {
        try {
            sim::ParseFabric(file, "f");
            ADD_FAILURE() << "accepted: " << file;
        } catch (const sim::FabricError& error) {
            EXPECT_EQ(std::string(error.what()).substr(0, message.size()), message);
        }
    }
    EXPECT_THROW(sim::LoadFabric("/no/such/file"), sim::FabricError);
}

}  // namespace
