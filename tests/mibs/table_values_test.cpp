// Values of the sensor, port, event, link, zoning and name-server columns for replies that the
// default fabric does not give, and what each asks the switches.
#include "tests/support/mib_test.h"

namespace snmpmain {
namespace {

class TableValuesTest : public MibTest {
  protected:
    // A column's value by reply: rows of the unit of domain 7.
    struct Case {
        const char* column;
        oid row;
        const char* path;
        std::optional<std::string> reply;
        std::string value;
    };
    void Check(const std::vector<Case>& cases) {
        for (const Case& c : cases) {
            server.SetValue(7, c.path, c.reply);
            EXPECT_EQ(Get(c.column, Unit(7, {c.row})), c.value)
                << c.column << " " << c.reply.value_or("(fails)");
        }
    }
};

std::string Octets(std::initializer_list<int> octets, std::size_t size = 0) {
    std::string text(octets.begin(), octets.end());
    text.resize(std::max(size, text.size()));
    return text;
}

// Sensor rows of domain 7: supplies 1 and 2, fans 3 and 4, blades 5 and 6, boards 7 to 11, voltages
// 12 and 13.
TEST_F(TableValuesTest, SensorsByKind) {
    Check({{"1.8.1.4", 2, "Oper.Chassis.0.PowerSupply.1", "Bad, was Good", "3"},
           {"1.8.1.4", 2, "Oper.Chassis.0.PowerSupply.1", "Bad", "5"},
           {"1.8.1.4", 2, "Oper.Chassis.0.PowerSupply.1", "Absent", "1"},
           {"1.8.1.6", 2, "Oper.Chassis.0.PowerSupply.1", "Absent", "Absent"},
           {"1.8.1.4", 3, "Oper.Chassis.0.Fan.0", "Good", "3"},
           {"1.8.1.4", 3, "Oper.Chassis.0.Fan.0", std::nullopt, "none"},
           {"1.8.1.6", 3, "Oper.Chassis.0.Fan.0", std::nullopt, "none"},
           {"1.8.1.4", 5, "Oper.Blade.0.TempStatus", "Good", "1"},
           {"1.8.1.4", 5, "Oper.Blade.0.TempStatus", "Overheating", "5"},
           {"1.8.1.4", 5, "Oper.Blade.0.TempStatus", "Warm, not Overheating", "4"},
           {"1.8.1.4", 5, "Oper.Blade.0.TempStatus", "Normal", "3"},
           {"1.8.1.6", 8, "Oper.Blade.0.BoardTemp.1", "41", "41 degrees C"},
           {"1.8.1.6", 8, "Oper.Blade.0.BoardTemp.1", "hot", "none"},
           {"1.8.1.4", 13, "Oper.Blade.1.VoltageStatus", "Good", "3"},
           {"1.8.1.3", 5, "Oper.Blade.0.Type", "X", "Temperature Status Blade X-1 in Slot 0"},
           {"1.8.1.3", 12, "Oper.Blade.0.Instance", "9", "Voltage Status Blade X-9 in Slot 0"},
           {"1.8.1.3", 12, "Oper.Blade.0.Instance", std::nullopt, "none"},
           {"1.8.1.3", 12, "Oper.Blade.0.Type", "NotApplicable", "Voltage Status"},
           {"1.8.1.3", 5, "Oper.Blade.0.Type", std::nullopt, "Temperature Status"}});
    TakeTexts();
    EXPECT_EQ(Get("1.8.1.4", Unit(7, {8})), "3");
    EXPECT_EQ(CountTexts("BoardTemp"), 0) << "a reading has no state to ask for";
    EXPECT_EQ(Get("1.8.1.3", Unit(7, {3})), "Fan 1 Status");
    for (const oid row : {0u, 14u, 65537u}) {
        EXPECT_EQ(Get("1.8.1.2", Unit(7, {row})), "none") << row;
    }
    // Nonsensical counts lead nowhere.
    server.SetValue(7, "Oper.Chassis.0.PowerSupplies", "4294967295");
    EXPECT_EQ(Get("1.8.1.2", Unit(7, {0})), "none");
    EXPECT_EQ(Get("1.8.1.2", Unit(7, {65536})), "none");
    server.SetValue(7, "Oper.Chassis.0.PowerSupplies", "0");
    server.SetValue(7, "Oper.Chassis.0.Blades", "4000000000");
    EXPECT_EQ(Get("1.8.1.7", Unit(7, {2 + 256})), "8");
    EXPECT_EQ(Get("1.8.1.2", Unit(7, {2 + 256 + 5 + 256 + 1})), "none");
}

TEST_F(TableValuesTest, PortWords) {
    const char* type = "Oper.UserPort.0.4.RunningType";
    const char* state = "Oper.UserPort.0.4.OperState";
    const char* transceiver = "Oper.UserPort.0.4.GBICType";
    const char* speed = "Oper.UserPort.0.4.LinkSpeed";
    const char* control = "Oper.UserPort.0.4.AdminState";
    Check({{"1.10.1.3", 5, type, "GL", "10"},
           {"1.10.1.3", 5, type, "xG", "10"},
           {"1.10.1.3", 5, type, "FL", "7"},
           {"1.10.1.5", 5, type, "FL", Octets({0, 0x0C})},
           {"1.10.1.3", 5, type, "F", "8"},
           {"1.10.1.5", 5, type, "F", Octets({0, 0x0C})},
           {"1.10.1.3", 5, type, "E", "9"},
           {"1.10.1.5", 5, type, "E", Octets({0, 0x0D})},
           {"1.10.1.3", 5, type, "Unknown", "1"},
           {"1.10.1.3", 5, type, "TF", "2"},
           {"1.10.1.5", 5, type, "F ", Octets({0, 0x0D})},
           {"1.10.1.6", 5, state, "Diagnostics", "5"},
           {"1.10.1.6", 5, state, "Down", "3"},
           {"1.10.1.6", 5, state, "Down, will be Online", "2"},
           {"1.10.1.6", 5, state, "Testing", "1"},
           {"1.10.1.8", 5, transceiver, "SL or LC", "4"},
           {"1.10.1.8", 5, transceiver, "LC", "8"},
           {"1.10.1.8", 5, transceiver, "SN", "9"},
           {"1.10.1.8", 5, transceiver, "SFP", "1"},
           {"1.10.1.8", 5, transceiver, "NotInstalled SL", "3"},
           {"1.10.1.9", 5, speed, "10Gb/s", "2"},
           {"1.10.1.9", 5, speed, "8Gb/s", "9"},
           {"1.10.1.15", 5, speed, "10Gb/s", "1062500"},
           {"1.10.1.15", 5, speed, "8Gb/s", "212500"},
           {"1.10.1.15", 5, "Config.Mfg.Allow4GPorts", "True", "425000"},
           {"1.10.1.15", 5, speed, "1Gb/s", "106250"},
           {"1.10.1.16", 5, control, "Diagnostics", "6"},
           {"1.10.1.16", 5, control, "Disabled", "1"},
           {"1.10.1.11", 5, "Oper.UserPort.0.4.PortID", "01ff", Octets({1, 0xFF, 0})},
           {"1.10.1.10", 5, "Oper.UserPort.0.4.WWN", "00112233445566778899",
            Octets({0, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99}, 16)},
           {"1.10.1.17", 5, "Oper.UserPort.0.4.SymPortName", std::string(300, 'n'),
            std::string(300, 'n')},
           {"4.5.1.6", 5, "Oper.UserPort.0.4.C64.TotalTxWords", "0000000000000101",
            Octets({0, 0, 0, 0, 0, 0, 4, 4})},
           {"4.5.1.4", 5, "Oper.UserPort.0.4.C64.TotalTxFrames", "none", std::string(8, '\0')},
           {"4.5.1.4", 5, "Oper.UserPort.0.4.C64.TotalTxFrames", std::nullopt, "none"}});
}

TEST_F(TableValuesTest, HardwareStateAsksNoFurtherThanItMust) {
    const char* port = "Oper.UserPort.0.4.";
    const auto check = [&](const char* path, std::optional<std::string> reply, const char* value,
                           long questions) {
        server.SetValue(2, std::string(port) + path, reply);
        TakeTexts();
        EXPECT_EQ(Get("1.10.1.23", Unit(2, {5})), value) << path;
        EXPECT_EQ(CountTexts(port), questions) << path;
    };
    check("SyncStatus", "SyncAcquired", "4", 3);
    check("SyncStatus", "SyncLost", "8", 3);
    check("SyncStatus", "SyncUnknown", "1", 3);
    check("SyncStatus", std::nullopt, "none", 3);
    check("GBICType", "NotInstalled", "7", 2);
    check("GBICType", std::nullopt, "none", 2);
    check("DiagStatus", "Failed", "2", 1);
    check("DiagStatus", std::nullopt, "none", 1);
}

TEST_F(TableValuesTest, ConstantsAskNothingOfTheLocalSwitch) {
    TakeTexts();
    EXPECT_EQ(Get("1.10.1.4", Unit(2, {16})), Octets({0, 0x0D}));
    EXPECT_EQ(Get("1.10.1.7", Unit(2, {16})), "2");
    EXPECT_EQ(Get("1.10.1.18", Unit(2, {16})), "15");
    EXPECT_EQ(Get("1.10.1.20", Unit(2, {16})), Octets({0, 3}));
    EXPECT_EQ(Get("1.10.1.22", Unit(2, {16})), Octets({0x10, 0, 2, 0, 0, 0, 1, 0}));
    EXPECT_EQ(Get("4.5.1.9", Unit(2, {16})), Octets({0x80}, 8));
    EXPECT_EQ(Get("1.10.1.7", Unit(2, {17})), "none");
    EXPECT_EQ(Get("4.5.1.9", Unit(2, {17})), "none");
    EXPECT_EQ(CountTexts(""), 0);
    const Oid statObject = {1, 3, 6, 1, 3, 94, 4, 5, 1, 1};
    EXPECT_EQ(Get("1.10.1.19", Unit(2, {1})),
              std::string(reinterpret_cast<const char*>(statObject.data()),
                          statObject.size() * sizeof(oid)));
}

TEST_F(TableValuesTest, EventsAndLinks) {
    Check({{"1.11.1.4", 2, "Oper.Switch.NextLogEntry.1", "[2][Wed Nov 14 21:38:13 2026][I] x",
            "14112026 213813"},
           {"1.11.1.9", 2, "Oper.Switch.NextLogEntry.1", "[2][Wed", "[2][Wed"},
           {"1.11.1.4", 2, "Oper.Switch.NextLogEntry.1", "[2] no time", "none"},
           {"1.11.1.2", 4, "Oper.Switch.FirstLogEntry", "[1]", "none"},
           {"1.11.1.2", 1, "Oper.Switch.FirstLogEntry", "[2]", "none"},
           {"1.11.1.2", 2, "Oper.Switch.FirstLogEntry", "[x]", "none"},
           {"1.12.1.12", 1, "Oper.Link.Entry.1.RemoteUnitType", "Switch", "4"},
           {"1.12.1.12", 1, "Oper.Link.Entry.1.RemoteUnitType", "Switches", "1"},
           {"1.12.1.9", 1, "Oper.Link.Entry.1.RemoteAgentAddr", "0A010203",
            Octets({0, 0, 0, 10, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3})},
           {"1.12.1.9", 1, "Oper.Link.Entry.1.RemoteAgentAddr", "0", std::string(16, '\0')},
           {"1.12.1.9", 1, "Oper.Link.Entry.1.RemoteAgentAddr", "127.0.0.15",
            Octets({0, 0, 0, 127, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 15})},
           {"1.12.1.9", 1, "Oper.Link.Entry.1.RemoteAgentAddr", "n.a.", "none"},
           {"1.12.1.9", 1, "Oper.Link.Entry.1.RemoteAgentAddr", std::nullopt, "none"},
           {"1.12.1.4", 1, "Oper.Link.Entry.1.LocalPortNumber", "?", "none"},
           {"1.12.1.13", 1, "Oper.Link.Entry.1.RemoteConnID", "0102030405", Octets({1, 2, 3})}});
    EXPECT_EQ(Get("1.12.1.10", Unit(7, {0})), "none");
    EXPECT_EQ(Get("1.12.1.10", Unit(7, {1000})), "none");
    EXPECT_EQ(Get("1.12.1.10", Unit(7, {2})), "1");
}

TEST_F(TableValuesTest, ZonesAreTheLocalSwitchsToTell) {
    const std::pair<const char*, const char*> types[] = {
        {"PortID or WWN", "3"}, {"WWN", "1"}, {"DomainPort", "2"}, {"?", "255"}};
    const auto ask = [&](const char* column, const Oid& index, const char* path,
                         const std::string& reply) {
        server.SetValue(2, path, reply);
        return Get(column, index);
    };
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.zones = {{"Z", "Soft", {{"0102", "WWN"}}}};
        fabric.aliases = {{"A", "Soft", {{"0304", "WWN"}}}};
    });
    for (const auto& [word, value] : types) {
        EXPECT_EQ(ask("1.13.1.10", {1, 1}, "Oper.Zoning.ActiveZone.Z.ZoneMember.0102.Type", word),
                  value);
        EXPECT_EQ(ask("1.14.1.6", {1, 1}, "Oper.Zoning.Alias.A.ZoneMember.0304.Type", word), value);
    }
    EXPECT_EQ(ask("1.13.1.7", {1, 1}, "Oper.Zoning.Zone.Z.ZoneType", "Softly"), "\x80");
    EXPECT_EQ(ask("1.13.1.7", {1, 1}, "Oper.Zoning.Zone.Z.ZoneType", "Hard"), "\x40");
    EXPECT_EQ(ask("1.13.1.3", {1, 1}, "Oper.Zoning.ActiveZoneSet", std::string(99, 's')),
              std::string(79, 's'));
    EXPECT_EQ(Get("1.13.1.11", {1, 1}), Octets({1, 2}, 16));
    EXPECT_EQ(Get("1.14.1.7", {1, 1}), Octets({3, 4}, 16));
    TraceEverything();
    EXPECT_EQ(Get("1.13.1.8", {1, 1}), "none");
    EXPECT_TRUE(Logged("Unknown oid sent to fcmgmt"));
    for (const Oid& index : {Oid{1}, Oid{1, 2}, Oid{2, 1}, Oid{1, 1, 0}, Oid{0, 1}}) {
        EXPECT_EQ(Get("1.13.1.1", index), "none");
        EXPECT_EQ(Get("1.14.1.1", index), "none");
    }
}

TEST_F(TableValuesTest, NameServerEntryByIndexAlone) {
    Oid index;
    EXPECT_EQ(GetNext("5.2.1.1.3", index), Octets({2, 0x0C, 0}));  // device names run backwards
    EXPECT_EQ(index.size(), 27u);
    const auto ask = [&](const char* column, std::uint16_t domain, const std::string& path,
                         const std::string& reply) {
        server.SetValue(domain, path, reply);
        return Get(column, index);
    };
    const std::string entry = "Oper.NameServerAll.2.Entry.020c00.";
    EXPECT_EQ(ask("5.2.1.1.2", 2, "Oper.NameServer.Entry.020c00.PortNumber", "77"), "77");
    EXPECT_EQ(ask("5.2.1.1.6", 0, entry + "COSList", "2,3"), "\x06");
    EXPECT_EQ(ask("5.2.1.1.10", 0, entry + "PortType", "NL"), "\x02");
    EXPECT_EQ(ask("5.2.1.1.10", 0, entry + "PortType", "E"), "\x84");
    EXPECT_EQ(ask("5.2.1.1.10", 0, entry + "PortType", "NLX"), std::string(1, '\0'));
    EXPECT_EQ(ask("5.2.1.1.9", 0, entry + "FC4TypeBitMap", "01"), Octets({1}, 32));
    EXPECT_EQ(ask("5.2.1.1.14", 0, entry + "SymPortName", ""), "");
    EXPECT_EQ(Get("5.2.1.1.7", index), "none");
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
    struct Case {
        const char* column;
        Oid behind;
        std::vector<std::pair<std::uint32_t, std::string>> commands;
    };
    RefreshNameServerTable();
    RefreshZoningTable();
    const Oid lastOfLocal = Unit(2, {16});
    Oid firstName;
    GetNext("5.2.1.1.3", firstName);
    const Case cases[] = {
        {"1.10.1.6", Unit(2, {3}), {{2, "Get.Oper.UserPort.0.3.OperState"}}},
        {"1.10.1.6",
         Unit(7, {3}),
         {{7, "Get.Oper.Switch.MaxPorts"}, {7, "Get.Oper.UserPort.0.3.OperState"}}},
        {"4.5.1.40", Unit(2, {3}), {{2, "Get.Oper.UserPort.0.3.C64.InvalidCRCs"}}},
        {"4.5.1.8", Unit(2, {3}), {}},
        {"1.8.1.4",
         Unit(7, {11}),
         {{7, "Get.Oper.Switch.Chassis"},
          {7, "Get.Oper.Chassis.0.PowerSupplies"},
          {7, "Get.Oper.Chassis.0.Fans"},
          {7, "Get.Oper.Chassis.0.Blades"},
          {7, "Get.Oper.Blade.0.TempSensors"},
          {7, "Get.Oper.Blade.1.TempSensors"},
          {7, "Get.Oper.Blade.0.VoltageStatus"}}},
        {"1.11.1.7",
         Unit(7, {1}),
         {{7, "Get.Oper.Switch.FirstLogEntry"},
          {7, "Get.Oper.Switch.LastLogEntry"},
          {7, "Get.Oper.Switch.NextLogEntry.1"}}},
        {"1.12.1.7",
         Unit(7, {1}),
         {{7, "Get.Oper.Link.NextLinkEntry.1"}, {7, "Get.Oper.Link.Entry.2.RemotePortNumber"}}},
        {"1.13.1.5", {1, 1}, {}},
        {"1.13.1.9", {1, 1}, {{0, "Get.Oper.Zoning.ActiveZone.ZoneHosts.MemberEntries"}}},
        {"5.2.1.1.4", firstName, {}},
        {"5.2.1.1.5", {}, {{0, "Get.Oper.NameServerAll.2.Entry.020c00.NodeWwn"}}},
    };
    for (const Case& c : cases) {
        server.TakeCommands();
        Oid index = c.behind;
        EXPECT_NE(GetNext(c.column, index), "none") << c.column;
        std::vector<std::pair<std::uint32_t, std::string>> commands;
        for (const sim::ReceivedCommand& command : server.TakeCommands()) {
            commands.emplace_back(command.domain, command.text);
        }
        EXPECT_EQ(commands, c.commands) << c.column;
    }
}

}  // namespace
}  // namespace snmpmain
