// Values of the columns for replies that the default fabric does not give, and what each asks the
// switches.
#include <sstream>

#include "tests/support/mib_test.h"

namespace snmpmain {
namespace {

class TableValuesTest : public MibTest {
  protected:
    // A column's value by reply: a row of the unit of domain 7, or of the unit itself for row 0.
    struct Case {
        const char* column;
        oid row;
        std::string path;
        std::optional<std::string> reply;
        std::string value;
    };
    void Check(const std::vector<Case>& cases) {
        for (const auto& [column, row, path, reply, value] : cases) {
            server.SetValue(7, path, reply);
            EXPECT_EQ(Get(column, row == 0 ? Unit(7) : Unit(7, {row})), value)
                << column << " " << reply.value_or("(fails)");
        }
    }

    // The same for several replies: "REPLY=VALUE|REPLY=VALUE".
    void CheckWords(const char* column, oid row, const std::string& path,
                    const std::string& words) {
        std::istringstream stream(words);
        for (std::string reply, value;
             std::getline(stream, reply, '=') && std::getline(stream, value, '|');) {
            Check({{column, row, path, reply, value}});
        }
    }
};

std::string Octets(std::initializer_list<int> octets, std::size_t size = 0) {
    std::string text(octets.begin(), octets.end());
    text.resize(std::max(size, text.size()));
    return text;
}

TEST_F(TableValuesTest, WordsBecomeNumbersInTheOrderOfTheTests) {
    const std::string state = "Oper.Switch.OperState", port = "Oper.UserPort.0.4.";
    CheckWords("1.6.1.13", 0, "Oper.Switch.PrincipalSwitch", "True, not False=3|Maybe=1");
    CheckWords("1.6.1.5", 0, state, "Online, was Offline=3|Online=2|Booting=1");
    CheckWords("1.6.1.22", 0, state, "Offline, was Online=6|Offline=5|Booting=1");
    CheckWords("1.6.1.25", 0, "Oper.Switch.SysLogLevel", "Warn, Critical=4|Debug=9|None=1");
    CheckWords("1.8.1.4", 2, "Oper.Chassis.0.PowerSupply.1", "Bad, was Good=3|Absent=1");
    CheckWords("1.8.1.4", 5, "Oper.Blade.0.TempStatus", "Good=1|Warm, not Overheating=4");
    CheckWords("1.10.1.3", 5, port + "RunningType", "xG=10|TF=2");
    CheckWords("1.10.1.6", 5, port + "OperState", "Down, will be Online=2|Down=3|Testing=1");
    CheckWords("1.10.1.8", 5, port + "GBICType", "SL or LC=4|SFP=1|NotInstalled SL=3");
    CheckWords("1.10.1.9", 5, port + "LinkSpeed", "10Gb/s =9");
    CheckWords("1.10.1.15", 5, port + "LinkSpeed", "10Gb/s=1062500|10Gb/s =212500");
    CheckWords("1.10.1.15", 5, "Config.Mfg.Allow4GPorts", "True=425000");
    CheckWords("1.10.1.16", 5, port + "AdminState", "Diagnostics, not Offline=6|Disabled=1");
    CheckWords("1.12.1.12", 1, "Oper.Link.Entry.1.RemoteUnitType", "Switch=4|Switches=1");
}

TEST_F(TableValuesTest, NumbersAndTextsOfAnyReply) {
    const std::string port = "Oper.UserPort.0.4.", counters = port + "C64.";
    CheckWords("1.6.1.9", 0, "Oper.Switch.Uptime", "12=1200|soon=none");
    CheckWords("1.6.1.28", 0, "Oper.Switch.LastLogEntry", "no entry=0|[x]=none");
    CheckWords("1.6.1.30", 0, "Oper.Link.LinkEntries", "4294967295=4294967295");
    CheckWords("1.12.1.4", 1, "Oper.Link.Entry.1.LocalPortNumber", "?=none");
    Check({{"1.6.1.5", 0, "Oper.Switch.OperState", std::nullopt, "none"},
           {"1.10.1.5", 5, port + "RunningType", "F ", Octets({0, 0x0D})},
           {"1.10.1.11", 5, port + "PortID", "01ff", Octets({1, 0xFF, 0})},
           {"1.10.1.10", 5, port + "WWN", "00112233445566778899",
            Octets({0, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99}, 16)},
           {"1.10.1.17", 5, port + "SymPortName", std::string(300, 'n'), std::string(300, 'n')},
           {"4.5.1.6", 5, counters + "TotalTxWords", "0000000000000101",
            Octets({0, 0, 0, 0, 0, 0, 4, 4})},
           {"4.5.1.4", 5, counters + "TotalTxFrames", "none", std::string(8, '\0')},
           {"4.5.1.4", 5, counters + "TotalTxFrames", std::nullopt, "none"},
           {"1.12.1.13", 1, "Oper.Link.Entry.1.RemoteConnID", "0102030405", Octets({1, 2, 3})}});
}

// Sensor rows of domain 7: supplies 1 and 2, fans 3 and 4, blades 5 and 6, boards 7 to 11, voltages
// 12 and 13.
TEST_F(TableValuesTest, SensorsByKind) {
    Check({{"1.8.1.4", 3, "Oper.Chassis.0.Fan.0", std::nullopt, "none"},
           {"1.8.1.6", 3, "Oper.Chassis.0.Fan.0", std::nullopt, "none"},
           {"1.8.1.6", 8, "Oper.Blade.0.BoardTemp.1", "hot", "none"},
           {"1.8.1.3", 5, "Oper.Blade.0.Type", "X", "Temperature Status Blade X-1 in Slot 0"},
           {"1.8.1.3", 12, "Oper.Blade.0.Instance", std::nullopt, "none"},
           {"1.8.1.3", 12, "Oper.Blade.0.Type", "NotApplicable", "Voltage Status"},
           {"1.8.1.3", 5, "Oper.Blade.0.Type", std::nullopt, "Temperature Status"}});
    TakeTexts();
    EXPECT_EQ(Get("1.8.1.4", Unit(7, {8})), "3");
    EXPECT_EQ(CountTexts("BoardTemp"), 0) << "a reading has no state to ask for";
    // Nonsensical counts lead nowhere.
    server.SetValue(7, "Oper.Chassis.0.PowerSupplies", "4294967295");
    EXPECT_EQ(Get("1.8.1.2", Unit(7, {0})), "none");
    EXPECT_EQ(Get("1.8.1.2", Unit(7, {65536})), "none");
    server.SetValue(7, "Oper.Chassis.0.PowerSupplies", "0");
    server.SetValue(7, "Oper.Chassis.0.Blades", "4000000000");
    EXPECT_EQ(Get("1.8.1.7", Unit(7, {2 + 256})), "8");
    EXPECT_EQ(Get("1.8.1.2", Unit(7, {2 + 256 + 5 + 256 + 1})), "none");
}

TEST_F(TableValuesTest, HardwareStateAsksNoFurtherThanItMust) {
    const std::string port = "Oper.UserPort.0.4.";
    const struct {
        const char* word;
        std::optional<std::string> reply;
        const char* value;
        long questions;
    } cases[] = {{"SyncStatus", "SyncUnknown", "1", 3}, {"SyncStatus", std::nullopt, "none", 3},
                 {"GBICType", "NotInstalled", "7", 2},  {"GBICType", std::nullopt, "none", 2},
                 {"DiagStatus", "Failed", "2", 1},      {"DiagStatus", std::nullopt, "none", 1}};
    for (const auto& [word, reply, value, questions] : cases) {
        server.SetValue(2, port + word, reply);
        TakeTexts();
        EXPECT_EQ(Get("1.10.1.23", Unit(2, {5})), value) << word;
        EXPECT_EQ(CountTexts(port), questions) << word;
    }
}

TEST_F(TableValuesTest, EventsAndLinks) {
    const std::string entry = "Oper.Switch.NextLogEntry.1", first = "Oper.Switch.FirstLogEntry",
                      address = "Oper.Link.Entry.1.RemoteAgentAddr";
    CheckWords("1.12.1.9", 1, address, "n.a.=none");
    Check({{"1.11.1.9", 2, entry, "[2][Wed", "[2][Wed"},
           {"1.11.1.4", 2, entry, "[2] no time", "none"},
           {"1.11.1.2", 4, first, "[1]", "none"},
           {"1.11.1.2", 1, first, "[2]", "none"},
           {"1.11.1.2", 2, first, "[x]", "none"},
           {"1.12.1.9", 1, address, "0A010203",
            Octets({0, 0, 0, 10, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3})},
           {"1.12.1.9", 1, address, "0", std::string(16, '\0')},
           {"1.12.1.9", 1, address, std::nullopt, "none"}});
}

// The numbers of links have gaps: each row of a walk has a GET all the same, which asks for its
// value alone.
TEST_F(TableValuesTest, LinksByTheirNumberAsItStands) {
    server.SetValue(7, "Oper.Link.NextLinkEntry.1", "900");
    server.SetValue(7, "Oper.Link.Entry.900.LocalPortNumber", "5");
    Oid link = Unit(7, {1});
    EXPECT_EQ(GetNext("1.12.1.4", link), "5");
    TakeTexts();
    EXPECT_EQ(Get("1.12.1.4", link), "5");
    EXPECT_EQ(Get("1.12.1.4", Unit(7, {901})), "none");
    EXPECT_EQ(TakeTexts(), (std::vector<std::string>{"Get.Oper.Link.Entry.900.LocalPortNumber",
                                                     "Get.Oper.Link.Entry.901.LocalPortNumber"}));
    EXPECT_EQ(Get("1.12.1.2", Unit(7, {901})), "901");
    EXPECT_EQ(CountTexts(""), 0);
}

TEST_F(TableValuesTest, ZonesAreTheLocalSwitchsToTell) {
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.zones = {{"Z", "Soft", {{"0102", "WWN"}}}};
        fabric.aliases = {{"A", "Soft", {{"0304", "WWN"}}}};
    });
    const std::string longest(79, 's'), longer = longest + "s";
    for (const auto& [column, path, reply, value] :
         {std::tuple("1.13.1.10", "ActiveZone.Z.ZoneMember.0102.Type", "PortID or WWN", "3"),
          std::tuple("1.14.1.6", "Alias.A.ZoneMember.0304.Type", "DomainPort", "2"),
          std::tuple("1.13.1.7", "Zone.Z.ZoneType", "Softly", "\x80"),
          std::tuple("1.13.1.3", "ActiveZoneSet", longer.c_str(), longest.c_str())}) {
        server.SetValue(2, std::string("Oper.Zoning.") + path, reply);
        EXPECT_EQ(Get(column, {1, 1}), value);
    }
    for (const Oid& index : {Oid{1}, Oid{1, 2}, Oid{2, 1}, Oid{1, 1, 0}, Oid{0, 1}}) {
        EXPECT_EQ(Get("1.13.1.1", index), "none");
        EXPECT_EQ(Get("1.14.1.1", index), "none");
    }
}

TEST_F(TableValuesTest, NameServerEntryByIndexAlone) {
    Oid index;
    EXPECT_EQ(GetNext("5.2.1.1.3", index), Octets({2, 0x0C, 0}));  // device names run backwards
    const std::string entry = "Oper.NameServerAll.2.Entry.020c00.";
    server.SetValue(2, "Oper.NameServer.Entry.020c00.PortNumber", "77");
    EXPECT_EQ(Get("5.2.1.1.2", index), "77");
    server.SetValue(0, entry + "PortType", "NLX");
    EXPECT_EQ(Get("5.2.1.1.10", index), std::string(1, '\0'));
    server.SetValue(0, entry + "FC4TypeBitMap", "01");
    EXPECT_EQ(Get("5.2.1.1.9", index), Octets({1}, 32));
    for (const std::size_t part : {0u, 8u, 15u, 16u, 24u, 26u}) {
        for (const oid number : {index[part] + 1, oid{256}}) {
            Oid other = index;
            other[part] = number;
            EXPECT_EQ(Get("5.2.1.1.3", other), "none") << part << " " << number;
        }
    }
}

// Every value of a walk costs the commands that it must, at the switch that knows it.
TEST_F(TableValuesTest, CommandsPerValue) {
    ReadNameServerIfStale();
    ReadZonesIfStale();
    Oid firstName;
    GetNext("5.2.1.1.3", firstName);
    const std::string port = "Oper.UserPort.0.3.", zones = "Oper.Zoning.ActiveZone.";
    // The domain, then what it is asked.
    const std::tuple<const char*, Oid, int, std::vector<std::string>> cases[] = {
        {"1.10.1.6", Unit(2, {3}), 2, {port + "OperState"}},
        {"1.10.1.6", Unit(7, {3}), 7, {"Oper.Switch.MaxPorts", port + "OperState"}},
        {"1.10.1.4", Unit(2, {3}), 2, {}},
        {"1.10.1.7", Unit(2, {3}), 2, {}},
        {"1.10.1.18", Unit(2, {3}), 2, {}},
        {"1.10.1.22", Unit(2, {3}), 2, {}},
        {"4.5.1.40", Unit(2, {3}), 2, {port + "C64.InvalidCRCs"}},
        {"4.5.1.8", Unit(2, {3}), 2, {}},
        {"1.8.1.4",
         Unit(7, {11}),
         7,
         {"Oper.Switch.Chassis", "Oper.Chassis.0.PowerSupplies", "Oper.Chassis.0.Fans",
          "Oper.Chassis.0.Blades", "Oper.Blade.0.TempSensors", "Oper.Blade.1.TempSensors",
          "Oper.Blade.0.VoltageStatus"}},
        {"1.11.1.7",
         Unit(7, {1}),
         7,
         {"Oper.Switch.FirstLogEntry", "Oper.Switch.LastLogEntry", "Oper.Switch.NextLogEntry.1"}},
        {"1.12.1.7",
         Unit(7, {1}),
         7,
         {"Oper.Link.NextLinkEntry.1", "Oper.Link.Entry.2.RemotePortNumber"}},
        {"1.13.1.5", {1, 1}, 0, {}},
        {"1.13.1.9", {1, 1}, 0, {zones + "ZoneHosts.MemberEntries"}},
        {"5.2.1.1.4", firstName, 0, {}},
        {"5.2.1.1.5", {}, 0, {"Oper.NameServerAll.2.Entry.020c00.NodeWwn"}},
    };
    for (const auto& [column, behind, domain, paths] : cases) {
        server.TakeCommands();
        Oid index = behind;
        EXPECT_NE(GetNext(column, index), "none") << column;
        std::vector<std::string> asked;
        for (const sim::ReceivedCommand& command : server.TakeCommands()) {
            EXPECT_EQ(command.domain, static_cast<std::uint32_t>(domain)) << command.text;
            asked.push_back(command.text.substr(4));  // without "Get."
        }
        EXPECT_EQ(asked, paths) << column;
    }
    server.TakeCommands();
    EXPECT_EQ(Get("1.10.1.7", Unit(2, {16})), "2");
    EXPECT_EQ(Get("4.5.1.9", Unit(2, {17})), "none");
    EXPECT_EQ(CountTexts(""), 0);
}

}  // namespace
}  // namespace snmpmain
