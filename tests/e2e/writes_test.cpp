// What managers set: what the switches are told, and what is refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "sim/frame.h"
#include "tests/e2e/walks.h"
#include "tests/sim/client.h"
#include "tests/support/trap_sink.h"

namespace e2e {
namespace {

// Of the unit of a domain, or of its port.
std::string Oid(unsigned column, unsigned domain, unsigned port = 0) {
    return At((port == 0 ? kUnits : kPorts) + "." + std::to_string(column), domain, port);
}

// How a setting is sent: "DOMAIN COMMAND".
std::string Sent(unsigned domain, const std::string& setting) {
    const bool snmp = setting.starts_with("Config.Snmp.");
    const std::string area = snmp ? "Cmd.Snmp." : "Cmd.Switch.", what = snmp ? "Setup;" : "Config;";
    return std::to_string(domain) + " Set.Cmd.Switch.ReqAdmin;" + area + (snmp ? "Start" : "Edit") +
           what + setting + ";" + area + "Save" + what + area + "Act" + what +
           "Cmd.Switch.RelAdmin";
}

// The same of a command that changes no configuration.
std::string SentAsIs(unsigned domain, const std::string& command) {
    return std::to_string(domain) + " Set.Cmd.Switch.ReqAdmin;" + command + ";Cmd.Switch.RelAdmin";
}

// "A.2.5 i 3 R.1.1 u 20" as snmpset takes it, with an OID for each of these letters.
Words Assignments(const std::string& text, const std::map<char, std::string>& places) {
    std::istringstream words(text);
    Words assignments;
    for (std::string word; words >> word; assignments.push_back(word)) {
        if (const auto place = places.find(word[0]); place != places.end()) {
            word.replace(0, 1, place->second);
        }
    }
    return assignments;
}

class Writes : public testing::Test {
  protected:
    void SetUp() override {
        Start(StillFabric());
    }
    void Start(const sim::Fabric& fabric) {
        stack_.StartSwitch(fabric);
        stack_.StartAll();
    }

    sim::Fabric Now() {
        sim::Fabric now;
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) { now = fabric; });
        return now;
    }

    // The changes that arrived at the switches; what their agents tell each other is none.
    Words Changes() {
        Words changes;
        for (const auto& [domain, type, sequence, text, local] : stack_.Switch().TakeCommands()) {
            if (text.starts_with("Set.") && text.find("Event.") == std::string::npos) {
                changes.push_back(std::to_string(domain == 0 ? 2 : domain) + " " + text);
            }
        }
        return changes;
    }

    // What the manager sees as the reason when it is refused.
    std::string Set(const Words& assignments) {
        const std::string output = stack_.Set(assignments).output;
        const std::size_t at = output.find_first_not_of("(", output.find("Reason: ") + 8);
        return output.starts_with(".") ? ""
                                       : output.substr(at, output.find_first_of(" )\n", at) - at);
    }

    // One request, and what is read then. When nothing is sent, everything stays as it is.
    void Expect(const Words& assignments, const std::string& reason, const Words& changes = {},
                const Words& values = {}) {
        SCOPED_TRACE(testing::PrintToString(assignments));
        const sim::Fabric before = Now();
        Changes();
        EXPECT_EQ(Set(assignments), reason);
        EXPECT_EQ(Changes(), changes);
        EXPECT_TRUE(!changes.empty() || Now() == before);
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(stack_.GetOne(assignments[i * 3]), values[i]) << i;
        }
    }

    Stack stack_;
};

TEST_F(Writes, OfTexts) {
    const std::string kOdd = " 50 % of %s%n.b=\"\\ ";
    const struct {
        unsigned column, port;
        const char* setting;
        std::size_t most;
    } kObjects[] = {{20, 0, "Config.Switch.SymName.", 32},
                    {21, 0, "Config.Switch.Comment.", 64},
                    {23, 0, "Config.Snmp.Contact.", 64},
                    {24, 0, "Config.Snmp.Location.", 64},
                    {17, 1, "Config.UserPort.0.0.SymPortName.", 32},
                    {17, 8, "Config.UserPort.0.7.SymPortName.", 32}};
    for (const unsigned domain : {2u, 7u, 1u}) {
        for (const auto& [column, port, setting, most] : kObjects) {
            const std::string oid = Oid(column, domain, port);
            for (const std::string& value : {std::string(most, '~'), kOdd}) {
                Expect({oid, "s", value}, "", {Sent(domain, setting + value)}, {Text(value)});
                Expect({oid, "s", value}, "");  // is so already
            }
            Expect({oid, "s", ""}, "wrongLength");
            Expect({oid, "s", std::string(most + 1, 'n')}, "wrongLength");
            for (const char* value : {"tab\there", "\n", "\x1F", "\x7F", "A\xC3\xA4"}) {
                Expect({oid, "s", value}, "wrongValue");
            }
            Expect({oid, "x", "410042"}, "wrongValue");
            Expect({oid, "i", "5"}, "wrongType");
        }
    }
    Expect({Oid(20, 1), "s", "a;Cmd.Switch.Nothing"}, "commitFailed",
           {Sent(1, "Config.Switch.SymName.a;Cmd.Switch.Nothing")}, {Text(kOdd)});
}

TEST_F(Writes, OfNumbers) {
    const std::string level = "Cmd.Switch.SysLogLevel.", state = "Config.Switch.AdminState.",
                      port = "Config.UserPort.0.";
    const struct {
        unsigned column, domain, port;
        const char* value;
        std::string setting;  // nothing is sent when the value is in force already
        unsigned reads;
    } kAccepted[] = {{22, 2, 0, "6", "", 6},
                     {22, 2, 0, "5", state + "Offline", 5},
                     {22, 2, 0, "6", state + "Online", 6},
                     {22, 7, 0, "5", "", 5},  // that is how "Diagnostics" reads
                     {22, 7, 0, "6", state + "Online", 6},
                     {22, 7, 0, "3", "Cmd.Switch.Reset", 6},
                     {22, 2, 0, "3", "Cmd.Switch.Reset", 6},
                     {25, 2, 0, "1", level + "None", 1},
                     {25, 2, 0, "2", level + "Critical", 4},
                     {25, 2, 0, "4", "", 4},
                     {25, 2, 0, "5", level + "Warn", 6},
                     {25, 7, 0, "7", level + "Info", 8},
                     {25, 1, 0, "10", level + "Debug", 9},
                     {25, 1, 0, "9", "", 9},
                     {16, 2, 1, "6", port + "0.AdminState.Offline", 6},
                     {16, 2, 8, "6", "", 6},  // "Diagnostics"
                     {16, 7, 24, "7", port + "23.AdminState.Online", 7},
                     {16, 7, 6, "8", "Cmd.UserPort.0.5.ClearCounters", 7}};
    for (const auto& [column, domain, at, value, setting, reads] : kAccepted) {
        const Words changes(setting.empty() ? 0 : 1, Sent(domain, setting));
        Expect({Oid(column, domain, at), "i", value}, "", changes, {Integer(reads)});
    }
    EXPECT_TRUE(Now().Find(7)->ports[5].counters.empty());
    for (const auto& [oid, numbers] : std::map<std::string, Words>{
             {Oid(22, 1), {"-1", "0", "1", "2", "4", "7", "2147483647"}},
             {Oid(25, 7), {"-1", "0", "11", "257", "65537", "-2147483648"}},
             {Oid(16, 2, 1), {"-1", "0", "1", "5", "9", "263"}}}) {
        for (const std::string& number : numbers) {
            Expect({oid, "i", number}, "wrongValue");
        }
        for (const char* type : {"u", "s", "x", "t"}) {
            Expect({oid, type, "06"}, "wrongType");
        }
    }
}

TEST_F(Writes, OfWhatCannotBeWritten) {
    const std::string none = UnitIndex("10000200000001FF"), sink = ".127.0.0.1.16200";
    for (const std::string& oid :
         {kFcmgmt + ".1.1.0", kFcmgmt + ".1.2.0", Oid(5, 2), Oid(10, 2), Oid(19, 7), Oid(6, 2, 1),
          kTraps + ".2" + sink, kTraps + ".3" + sink + ".1", kTraps + ".3.127.0.0.1.1",
          kUnits + ".20" + none, kUnits + ".22" + none, kPorts + ".16" + none + ".1",
          Oid(20, 2) + ".1", Oid(16, 2, 17), Oid(16, 1, 9), Oid(17, 2, 65537)}) {
        for (const char* type : {"i", "s"}) {
            Expect({oid, type, "6"}, "notWritable");
        }
    }
}

TEST_F(Writes, OfSeveralInOneRequest) {
    const std::string name = "Config.Switch.SymName.", level = "Cmd.Switch.SysLogLevel.",
                      port = "Config.UserPort.0.", local = Oid(20, 2), annex = Oid(20, 1);
    // Each new value is the current one of the other, or of itself.
    Expect({local, "s", "annex-small", annex, "s", "core-local"}, "",
           {Sent(2, name + "annex-small"), Sent(1, name + "core-local")},
           {Text("annex-small"), Text("core-local")});
    Expect({annex, "s", "annex-small", local, "s", "annex-small"}, "",
           {Sent(1, name + "annex-small")});
    Expect({local, "s", "core", annex, "s", "annex-small"}, "", {Sent(2, name + "core")});
    Expect({Oid(25, 1), "i", "8", Oid(25, 2), "i", "4", Oid(25, 7), "i", "6"}, "",
           {Sent(1, level + "Info"), Sent(2, level + "Critical")},
           {Integer(8), Integer(4), Integer(6)});
    Expect({Oid(16, 2, 1), "i", "6", Oid(16, 2, 2), "i", "7", Oid(16, 2, 7), "i", "7"}, "",
           {Sent(2, port + "0.AdminState.Offline"), Sent(2, port + "6.AdminState.Online")},
           {Integer(6), Integer(7), Integer(7)});
    // Nobody hears of any when one is refused.
    const Words good = {Oid(23, 2),    "s", "me",    Oid(24, 7),    "s", "here",
                        Oid(17, 2, 3), "s", "Port0", Oid(17, 2, 4), "s", "Port3"};
    for (const auto& [reason, bad] :
         std::map<std::string, Words>{{"wrongLength", {local, "s", ""}},
                                      {"wrongValue", {Oid(22, 7), "i", "4"}},
                                      {"wrongType", {Oid(16, 2, 3), "u", "6"}},
                                      {"notWritable", {Oid(12, 2), "i", "3"}}}) {
        for (const bool isFirst : {false, true}) {
            Words request = good;
            request.insert(isFirst ? request.begin() : request.end(), bad.begin(), bad.end());
            Expect(request, reason);
        }
    }
    Expect(good, "",
           {Sent(2, "Config.Snmp.Contact.me"), Sent(7, "Config.Snmp.Location.here"),
            Sent(2, port + "2.SymPortName.Port0")},
           {Text("me"), Text("here"), Text("Port0"), Text("Port3")});
    // What was in force before a switch refused stays so.
    simtest::Client other(stack_.Address().c_str());
    EXPECT_EQ(other.Ask(sim::kSetType, "Cmd.Switch.ReqAdmin", 1), "");
    Expect({local, "s", "first", annex, "s", "second"}, "commitFailed",
           {Sent(2, name + "first"), Sent(1, name + "second")},
           {Text("first"), Text("annex-small")});
    EXPECT_EQ(other.Ask(sim::kSetType, "Cmd.Switch.RelAdmin", 1), "");
    Expect({local, "s", "first", annex, "s", "second"}, "", {Sent(1, name + "second")});
}

class WritesByModule : public Writes {
  protected:
    void SetUp() override {}
};

// In FIBRE-CHANNEL-FE-MIB and the vendor's MIB: A and R are columns of fcFxPortPhysTable.
TEST_F(WritesByModule, GoToTheSwitchWhosePortIsNamedOrNowhere) {
    const std::map<char, std::string> kPlaces = {{'A', kFe + ".2.2.1.1"},
                                                 {'R', kFe + ".2.2.1.4"},
                                                 {'F', kFe},
                                                 {'V', kVendorMib + ".10.1.1"}};
    sim::Fabric changed = StillFabric();
    changed.Find(7)->rTTovMin = 20;
    changed.Find(7)->rTTovMax = 300;
    // What the agent sees and the switch refuses, and a limit that cannot be had.
    changed.Find(7)->values = {{"Oper.Switch.MaxPorts", "25"},
                               {"Config.UserPort.0.24.AdminState", "Online"},
                               {"Oper.UserPort.0.24.AdminState", "Online"},
                               {"UpperRange.Switch.R_T_TOV", "301"}};
    changed.Find(1)->values = {{"LowerRange.Switch.R_T_TOV", std::nullopt}};
    Start(changed);
    const struct {
        std::string reason;  // why it is refused, if it is
        std::string change;  // what is sent
        Words requests;
    } kRequests[] = {
        {"", Sent(7, "Config.UserPort.0.4.AdminState.Diagnostics"), {"A.2.5 i 3"}},
        {"", "", {"A.2.5 i 3", "A.2.24 i 2"}},  // are so already; any other word reads as offline
        {"", Sent(7, "Config.UserPort.0.4.AdminState.Online"), {"A.2.5 i 1"}},
        {"", Sent(2, "Config.UserPort.0.15.AdminState.Offline"), {"A.1.16 i 2"}},
        {"", Sent(1, "Config.UserPort.0.0.AdminState.Offline"), {"A.3.1 i 2"}},
        {"", SentAsIs(7, "Cmd.UserPort.0.4.AdminState.Diagnostics"), {"V.3.2.5 i 3"}},
        {"", "", {"V.3.2.5 i 3"}},
        {"", SentAsIs(2, "Cmd.UserPort.0.15.AdminState.Online"), {"V.3.1.16 i 1"}},
        {"", SentAsIs(1, "Cmd.UserPort.0.7.AdminState.Offline"), {"V.3.3.8 i 2"}},
        {"", Sent(7, "Config.Switch.R_T_TOV.300"), {"R.2.24 u 300"}},
        {"", "", {"R.2.1 u 300"}},
        {"", Sent(7, "Config.Switch.R_T_TOV.20"), {"R.2.1 u 20"}},
        {"", Sent(2, "Config.Switch.R_T_TOV.500"), {"R.1.2 u 500"}},
        {"", Sent(2, "Config.Switch.R_T_TOV.1"), {"R.1.16 u 1"}},
        // Two at once, of which the second one is so already or is refused.
        {"", Sent(2, "Config.UserPort.0.0.AdminState.Offline"), {"A.1.1 i 2 A.3.1 i 2"}},
        {"", SentAsIs(2, "Cmd.UserPort.0.1.AdminState.Offline"), {"V.3.1.2 i 2 V.3.3.1 i 2"}},
        {"", Sent(2, "Config.Switch.R_T_TOV.20"), {"R.1.1 u 20 R.2.1 u 20"}},
        {"wrongValue", "", {"A.1.3 i 2 V.3.1.4 i 4", "V.3.1.3 i 2 R.1.1 u 501"}},
        {"wrongValue",
         "",
         {"A.2.5 i 0", "A.2.5 i 4", "A.2.5 i -1", "V.3.2.5 i 0", "V.3.2.5 i 4", "R.1.1 u 0",
          "R.1.1 u 501", "R.1.1 u 4294967295", "R.2.1 u 19"}},
        {"wrongType", "", {"A.2.5 u 2", "A.2.5 s 2", "V.3.2.5 u 2", "R.1.1 i 200"}},
        {"commitFailed", Sent(7, "Config.UserPort.0.24.AdminState.Offline"), {"A.2.25 i 2"}},
        {"commitFailed", SentAsIs(7, "Cmd.UserPort.0.24.AdminState.Offline"), {"V.3.2.25 i 2"}},
        {"commitFailed", Sent(7, "Config.Switch.R_T_TOV.301"), {"R.2.1 u 301"}},
        {"commitFailed", "", {"R.3.1 u 200"}},
        // No such port, and objects that take nothing.
        {"notWritable",
         "",
         {"A.0.1 i 2", "A.1.0 i 2", "A.1.17 i 2", "A.4.1 i 2", "V.3.0.1 i 2", "V.3.1.17 i 2",
          "V.3.1.1.1 i 2", "R.4.1 u 200", "R.1.17 u 200", "F.1.1.0 s core", "F.1.2.0 s core",
          "F.1.4.1.7.1 s core", "F.2.1.1.4.1.1 i 2", "F.2.2.1.2.1.1 i 2", "F.2.3.1.12.1.1.1 i 1",
          "V.4.1.1 i 2"}},
    };
    for (const auto& [reason, change, requests] : kRequests) {
        for (const std::string& request : requests) {
            const Words assignments = Assignments(request, kPlaces);
            const std::string type = assignments[1] == "u" ? "Gauge32: " : "INTEGER: ";
            Expect(assignments, reason, change.empty() ? Words{} : Words{change},
                   reason.empty() ? Words{type + assignments[2]} : Words{});
        }
    }
}

class TrapRegistrations : public Writes {
  protected:
    void SetUp() override {
        Writes::SetUp();
        stack_.Switch().ChangeAndNotify([&](sim::Fabric& fabric) {
            auto& traps = fabric.Find(0)->traps;
            traps = {};
            traps[1] = {stack_.Address(), 300, "warning", true, "2"};
            traps[3] = {stack_.Address(), 200, "mark", false, "1"};
        });
        ExpectRows({"", "300 warning on", "", "200 mark off", ""});
    }

    // "L.PORT" is a row's severity level, "S.PORT" its state.
    Words To(const std::string& changes) {
        return Assignments(changes, {{'L', kTraps + ".3." + stack_.Address()},
                                     {'S', kTraps + ".4." + stack_.Address()}});
    }

    // A walk of the switch's destinations.
    static Values Table(const sim::Fabric& fabric) {
        static const Words kSeverities = {"emergency", "alert", "critical", "error", "warning",
                                          "notify",    "info",  "debug",    "mark"};
        std::map<std::uint32_t, sim::TrapDestination> sorted;
        for (const sim::TrapDestination& trap : fabric.Find(0)->traps) {
            if (trap.address != "0.0.0.0") {
                sorted[trap.port] = trap;
            }
        }
        Values values;
        for (const int column : {1, 2, 3, 4}) {
            for (const auto& [port, trap] : sorted) {
                const auto level = std::ranges::find(kSeverities, trap.severity);
                const Words columns = {
                    "", "IpAddress: " + trap.address, Integer(port),
                    Integer(static_cast<std::uint64_t>(level - kSeverities.begin() + 2)),
                    Integer(trap.enabled ? 3 : 2)};
                values.emplace_back(kTraps + "." + std::to_string(column) + "." + trap.address +
                                        "." + std::to_string(port),
                                    columns[static_cast<std::size_t>(column)]);
            }
        }
        return values;
    }

    // "PORT SEVERITY on", "PORT SEVERITY off" or nothing, in the switch's order.
    void ExpectRows(const Words& expected) {
        Words rows;
        const auto isSame = [&] {
            rows.clear();
            const sim::Fabric now = Now();
            for (const auto& [address, port, severity, on, version] : now.Find(0)->traps) {
                const std::string row = std::to_string(port) + " " + severity;
                rows.push_back(address == "0.0.0.0" ? "" : row + (on ? " on" : " off"));
            }
            return rows == expected && stack_.Walk(kTraps) == Table(now);
        };
        Within(5, isSame);
        EXPECT_EQ(rows, expected);
        EXPECT_TRUE(Same(stack_.Walk(kTraps), Table(Now())));
    }

    // All rows are brought to the switch. Each destination keeps its version: 1 at port 200,
    // else 2.
    void ExpectPush(const std::string& changes, const Words& rows) {
        SCOPED_TRACE(changes);
        const auto before = Now().Find(0)->traps;
        Changes();
        EXPECT_EQ(Set(To(changes)), "");
        ExpectRows(rows);
        char digits[9];
        std::snprintf(digits, sizeof(digits), "%08x", ntohl(::inet_addr(stack_.Address().c_str())));
        Words lines = {"2 Set.Cmd.Switch.ReqAdmin;Cmd.Snmp.StartSetup;Cmd.Snmp.BypassDuplicates"};
        for (std::size_t i = 0; i < 5; ++i) {
            std::istringstream words(rows[i].empty() ? "162 warning off" : rows[i]);
            std::string port, severity, state, number = (i == 0 ? "" : std::to_string(i)) + ".";
            words >> port >> severity >> state;
            lines.push_back(
                "2 Set.Config.Snmp.TrapAddr" + number + (rows[i].empty() ? "00000000" : digits) +
                ";Config.Snmp.TrapPort" + number + port + ";Config.Snmp.TrapSeverity" + number +
                severity + ";Config.Snmp.TrapEnable" + number + (state == "on" ? "True" : "False"));
            const std::string version = port == "200" ? "1" : "2";
            if (!rows[i].empty() && before[i].version != version) {
                lines.push_back("2 Set.Config.Snmp.TrapVersion" + number + version);
            }
            EXPECT_TRUE(rows[i].empty() || Now().Find(0)->traps[i].version == version);
        }
        lines.push_back("2 Set.Cmd.Snmp.SaveSetup;Cmd.Snmp.ActSetup;Cmd.Switch.RelAdmin");
        EXPECT_EQ(Changes(), lines);
    }
};

TEST_F(TrapRegistrations, AreCreatedChangedAndDestroyed) {
    ExpectPush("S.250 i 3", {"200 mark off", "300 warning on", "250 warning on", "", ""});
    ExpectPush("L.250 i 2", {"200 mark off", "250 emergency on", "300 warning on", "", ""});
    ExpectPush("S.300 i 2", {"200 mark off", "250 emergency on", "300 warning off", "", ""});
    ExpectPush("S.250 i 1", {"200 mark off", "", "300 warning off", "", ""});
    // Each new value is the current one of the other row.
    ExpectPush("L.200 i 6 L.300 i 10 S.200 i 3", {"200 warning on", "300 mark off", "", "", ""});
    ExpectPush("S.100 i 3 S.65535 i 2 S.250 i 3",
               {"200 warning on", "300 mark off", "100 warning on", "65535 warning off",
                "250 warning on"});
    for (const auto& [reason, requests] : std::map<std::string, Words>{
             {"resourceUnavailable", {"S.400 i 3", "S.400 i 2"}},
             {"noSuchName", {"S.400 i 1"}},
             {"notWritable", {"L.400 i 6"}},
             {"wrongValue",
              {"S.100 i 0", "S.400 i 4", "L.100 i 0", "L.100 i 65542", "L.100 i 9 L.200 i 11"}},
             {"", {"L.100 i 6", "S.100 i 3", "S.300 i 2"}}}) {  // are so already
        for (const std::string& request : requests) {
            Expect(To(request), reason);
        }
    }
    for (const std::string& oid : {To("S.100 i 3")[0], To("S.400 i 3")[0], To("L.100 i 3")[0]}) {
        Expect({oid, "s", "3"}, "wrongType");
        Expect({oid, "u", "3"}, "wrongType");
    }
    Expect({kTraps + ".4.127.0.0.256.100", "i", "3"}, "noSuchName");
    // 1 is none of the switch's severities, which takes the next one.
    ExpectPush("L.100 i 1 S.200 i 1 S.250 i 1 S.65535 i 1",
               {"100 emergency on", "", "", "300 mark off", ""});
}

TEST_F(TrapRegistrations, ShowWhatTheSwitchHoldsWhenItRefuses) {
    simtest::Client other(stack_.Address().c_str());
    EXPECT_EQ(other.Ask(sim::kSetType, "Cmd.Switch.ReqAdmin"), "");
    EXPECT_EQ(Set(To("L.200 i 3 S.250 i 3 S.300 i 1")), "");
    ExpectRows({"", "300 warning on", "", "200 mark off", ""});
    EXPECT_EQ(other.Ask(sim::kSetType, "Cmd.Switch.RelAdmin"), "");
    ExpectPush("L.200 i 3", {"200 alert off", "300 warning on", "", "", ""});
}

// After each change of its SNMP settings, also by others, the agent reads what the switch has. By
// then there may be newer rows.
TEST_F(TrapRegistrations, LoseNoneOfManyChanges) {
    for (int round = 0; round < 3; ++round) {
        for (const char* change :
             {"L.200 i 9", "S.400 i 3", "S.300 i 2", "L.400 i 2", "S.200 i 3", "L.300 i 8",
              "S.400 i 1", "L.200 i 5", "S.200 i 2", "S.300 i 3", "L.300 i 7"}) {
            for (int i = 0; i < 8; ++i) {
                stack_.Switch().ChangeAndNotify([](sim::Fabric& fabric) {
                    fabric.Find(0)->trapAuth = !fabric.Find(0)->trapAuth;
                });
            }
            EXPECT_EQ(Set(To(change)), "") << change;
        }
        ExpectRows({"200 error off", "300 notify on", "", "", ""});
    }
}

TEST_F(TrapRegistrations, ReceiveTrapsAsTheirFilterSays) {
    snmpmain::TrapSink sink(stack_.Address());
    const std::string port = std::to_string(sink.Port());
    const std::tuple<std::string, Words, std::size_t, std::size_t> kSteps[] = {
        {"S." + port + " i 3",
         {"200 mark off", "300 warning on", port + " warning on", "", ""},
         0,
         1},
        {"L." + port + " i 8", {"200 mark off", "300 warning on", port + " info on", "", ""}, 1, 1},
        {"S." + port + " i 1", {"200 mark off", "300 warning on", "", "", ""}, 0, 0}};
    for (const auto& [change, rows, mild, grave] : kSteps) {
        ExpectPush(change, rows);
        sink.Take(300);  // of the setting
        stack_.Switch().SendNotification(0, "9;0;0;0;0");
        EXPECT_EQ(sink.Take(300).size(), mild) << change;
        stack_.Switch().SendNotification(0, "14;1;0;0;0[now][a]\n");
        EXPECT_EQ(sink.Take(300).size(), grave) << change;
    }
}

}  // namespace
}  // namespace e2e
