#include "sim/fabric.h"

#include <gtest/gtest.h>

#include "sim/commands.h"

namespace {

using sim::Fabric;

std::string Ask(const Fabric& fabric, std::uint32_t domain, const std::string& path) {
    sim::Commands commands(fabric);
    return commands.Get(*commands.Find(domain), path, 0);
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

TEST(GeneratedFabric, HasTheSizesWantedAndNamesInAnotherOrderThanItsDomains) {
    const Fabric fabric = sim::GenerateFabric(239, {.names = 20, .zoneMembers = 2000});
    EXPECT_EQ(sim::CheckFabric(fabric), "");  // no WWN twice
    ASSERT_EQ(fabric.switches.size(), 239u);
    EXPECT_GT(fabric.switches.front().wwn, fabric.switches.back().wwn);
    EXPECT_EQ(fabric.switches[1].links.size(), 20u + 2);
    EXPECT_EQ(fabric.switches[1].nameServer.size(), 20u);
    std::size_t members = 0;
    for (const sim::Zone& zone : fabric.zones) {
        members += zone.members.size();
    }
    EXPECT_EQ(members, 2000u);
    EXPECT_THROW(sim::GenerateFabric(240), std::out_of_range);
    EXPECT_THROW(sim::GenerateFabric(1, {.names = sim::kMaxGeneratedNames + 1}), std::out_of_range);
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
