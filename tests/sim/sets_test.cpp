// What switches do with settings and actions that they are sent.
#include "sim/sets.h"

#include <gtest/gtest.h>

#include <sstream>

#include "sim/server.h"
#include "tests/sim/client.h"
#include "tests/support/loopback.h"

namespace {

using simtest::Client;

constexpr std::uint16_t kSet = 1025, kOn = 1027;
constexpr int kShort = 100;  // milliseconds in which nothing is expected

const std::string kTake = "Cmd.Switch.ReqAdmin;";
const std::string kGive = "Cmd.Switch.RelAdmin";
const std::string kEdit = kTake + "Cmd.Switch.EditConfig;";
const std::string kSnmp = kTake + "Cmd.Snmp.StartSetup;";
const std::string kSystem = kTake + "Cmd.System.StartSetup;";
const std::string kEndEdit = ";Cmd.Switch.SaveConfig;Cmd.Switch.ActConfig;" + kGive;
const std::string kEndSnmp = ";Cmd.Snmp.SaveSetup;Cmd.Snmp.ActSetup;" + kGive;

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// The texts of all notifications that wait, with TIME for the time, blank-separated.
std::string Told(Client& agent) {
    std::string told;
    while (const auto frame = agent.Receive(kShort)) {
        std::string text = simtest::Text(*frame);
        if (const std::size_t time = text.find('['); time != text.npos) {
            text.replace(time + 1, text.find(']') - time - 1, "TIME");
        }
        told += (told.empty() ? "" : " ") + text;
    }
    return told;
}

TEST(Sets, PutInForceWhatIsSavedAndActivatedOrNothing) {
    const std::string name = "Config.Switch.SymName", port = "UserPort.0.3.";
    const std::string trap = "Config.Snmp.Trap", one = trap + "Addr1.7F000001;" + trap + "Port1.9;";
    const struct {
        std::string lines;    // one to each line
        std::string replies;  // "ok" for no error
        std::string values;   // "PATH=VALUE,..."
        const char* told;
    } cases[] = {
        // The trap table comes in lines of its own between those that open and close; equal
        // destinations in force do not keep anyone from changing something else.
        {kSnmp + "Cmd.Snmp.BypassDuplicates\n" + trap + "Addr.7F000001;" + trap + "Port.9;" + trap +
             "Enable.True\n" + one + trap + "Severity1.info\nCmd.Snmp.SaveSetup;" +
             "Cmd.Snmp.ActSetup;" + kGive + "\n" + kSnmp + "Config.Snmp.Location.x" + kEndSnmp,
         "ok ok ok ok ok",
         trap + "Addr=7F000001," + trap + "Addr1=7F000001," + trap + "Severity1=info",
         "1;0;0;0;0 1;0;0;0;0"},
        {kSnmp + one + trap + "Addr2.7F000001;" + trap + "Port2.9" + kEndSnmp, "#5", "", ""},
        // Of a line that fails nothing is left, and of edits nothing when the rights are gone.
        {kEdit + name + ".x;Config.UserPort.0.99.AdminState.Online" + kEndEdit + "\n" + kGive,
         "#2 #4", name + "=old", ""},
        {kEdit + name + ".x;" + kGive + "\n" + kEdit + "Config.Switch.Comment.x" + kEndEdit,
         "ok ok", name + "=old", "2;0;0;0;0"},
        {kEdit + name + ".x;Cmd.Switch.SaveConfig;" + kGive + "\n" + kTake + "Cmd.Switch.ActConfig",
         "ok ok", name + "=x", "2;0;0;0;0"},
        {kTake + "Cmd." + port + "AdminState.Offline;" + kGive + "\n" + kTake + "Cmd." + port +
             "ClearCounters;Cmd.Switch.SysLogLevel.None;Cmd.Switch.Reset",
         "ok ok",
         "Config." + port + "AdminState=Offline,Oper.Switch.SysLogLevel=None,Oper." + port +
             "TotalTxFrames=0",
         "27;0;0;0;3 28;0;0;0;3 12;0;0;0;0 17;0;0;0;0[TIME][0][0x0][Reset]\n"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.lines);
        sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
        server.WithFabric([](sim::Fabric& fabric) {
            fabric.Find(0)->ports[3].counters["TotalTxFrames"] = 5;
            fabric.Find(0)->symbolicName = "old";
        });
        Client agent(LoopbackAddress(0).c_str()), sender(LoopbackAddress(0).c_str());
        EXPECT_EQ(agent.Ask(kOn, ""), "");
        std::string replies;
        for (const std::string& line : Split(each.lines, '\n')) {
            const std::string reply = sender.Ask(kSet, line);
            replies += (replies.empty() ? "" : " ") + (reply.empty() ? "ok" : reply);
        }
        EXPECT_EQ(replies, each.replies);
        for (const std::string& value : Split(each.values, ',')) {
            const std::string path = value.substr(0, value.find('='));
            EXPECT_EQ(path + "=" + sender.Get(path), value);
        }
        EXPECT_EQ(Told(agent), each.told);
    }
}

TEST(Sets, RefuseWhatCannotBe) {
    sim::Switch unit;
    unit.ports.resize(4);
    const sim::Switch before = unit;
    const std::string longest = "Config.Switch.Comment." + std::string(128, 'x');
    const struct {
        const char* reply;
        std::string begin;
        std::string commands;  // one to each line
    } cases[] = {
        {"#1", "", ";\nCmd.Switch.Bogus\nConfig.Bogus.x"},
        {"#4", "", "Cmd.Switch.EditConfig\nConfig.Switch.SymName.x\nCmd.Switch.RelAdmin"},
        {"#5", kTake, "Cmd.Switch.SysLogLevel.Loud"},
        {"#2", kTake, "Cmd.UserPort.0.4.ClearCounters"},
        {"#3", kSnmp, "Config.Switch.SymName.x\nCmd.Switch.SaveConfig"},
        {"#1", kEdit, "Config.Switch.SymName\nConfig.Mfg.WWN.x\nConfig.UserPort.0.3.WWN.x"},
        {"#2", kEdit, "Config.UserPort.1.3.AdminState.Online\nConfig.UserPort.0.4.SymPortName.x"},
        {"#5", kEdit, "Config.UserPort.0.3.AdminState.Down\nConfig.Switch.AdminState.online"},
        {"#5", kEdit, "Config.Switch.InbandEnable.true\nConfig.Switch.R_A_TOV.4294967296"},
        {"#5", kEdit, "Config.Switch.R_T_TOV.0\nConfig.Switch.E_D_TOV.20001"},
        {"#5", kEdit, longest + "x\nConfig.Switch.Comment.a\tb"},
        {"#5", kSystem, "Config.System.IPAddress.10.0.0.1\nConfig.System.IPAddress.A0001"},
        {"#2", kSnmp, "Config.Snmp.TrapPort5.162\nConfig.Snmp.TrapPort0.162"},
        {"#5", kSnmp, "Config.Snmp.TrapPort.65536\nConfig.Snmp.TrapSeverity.warn"},
    };
    sim::Sets sets;
    for (const auto& each : cases) {
        for (const std::string& command : Split(each.commands, '\n')) {
            EXPECT_EQ(sets.Run(unit, each.begin + command, {1, {}, 0}).reply, each.reply)
                << each.begin << command;
        }
    }
    EXPECT_EQ(unit, before);
    EXPECT_EQ(sets.Run(unit, kEdit + longest + kEndEdit, {1, {}, 0}).reply, "");
    unit.uptime = 86400;
    EXPECT_EQ(sets.Run(unit, kTake + "Cmd.Switch.Reset", {1, {}, 40}).reply, "");
    EXPECT_EQ(unit.uptime + 40, 0u);  // as it is read then
}

TEST(Sets, KeepOthersOutWhileAdminRightsAreInUse) {
    sim::Switch unit, other;
    other.domain = 2;
    sim::Sets sets;
    const auto set = [&](unsigned who, int seconds, const std::string& line) {
        return sets.Run(unit, line, {who, sim::Requester{}.now + std::chrono::seconds(seconds), 0})
            .reply;
    };
    EXPECT_EQ(set(1, 0, kEdit), "");
    EXPECT_EQ(sets.Run(other, kTake, {2, {}, 0}).reply, "");
    EXPECT_EQ(set(2, 20, kTake), "#6");
    EXPECT_EQ(set(2, 20, "Config.Switch.SymName.x"), "#4");
    EXPECT_EQ(set(1, 25, "Config.Switch.SymName.x"), "");
    EXPECT_EQ(set(1, 50, kTake + "Bogus"), "#1");  // it had the rights before
    EXPECT_EQ(set(2, 80, kTake), "#6");
    EXPECT_EQ(set(2, 81, kTake), "");
    EXPECT_EQ(set(1, 81, "Cmd.Switch.SaveConfig"), "#4");
    EXPECT_EQ(set(2, 82, "Cmd.Switch.SaveConfig"), "#3");
    EXPECT_EQ(set(2, 83, kGive), "");
    EXPECT_EQ(set(1, 84, kTake + "Bogus"), "#1");  // and gives back what it just took
    EXPECT_EQ(set(2, 84, kTake), "");
}

}  // namespace
