// What switches do with settings and actions that they are sent.
#include "sim/sets.h"

#include <gtest/gtest.h>

#include "sim/server.h"
#include "tests/sim/client.h"
#include "tests/support/loopback.h"

namespace {

using simtest::Client;

constexpr std::uint16_t kSet = 1025, kOn = 1027;
constexpr int kShort = 100;  // milliseconds in which nothing is expected

const std::string kTake = "Cmd.Switch.ReqAdmin;";
const std::string kGive = "Cmd.Switch.RelAdmin";

std::string InSwitchConfig(const std::string& settings) {
    return kTake + "Cmd.Switch.EditConfig;" + settings +
           ";Cmd.Switch.SaveConfig;Cmd.Switch.ActConfig;" + kGive;
}
std::string InSnmpSetup(const std::string& settings) {
    return kTake + "Cmd.Snmp.StartSetup;" + settings + ";Cmd.Snmp.SaveSetup;Cmd.Snmp.ActSetup;" +
           kGive;
}
std::string InSystemSetup(const std::string& settings) {
    return kTake + "Cmd.System.StartSetup;" + settings +
           ";Cmd.System.SaveSetup;Cmd.System.ActSetup;" + kGive;
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

struct Case {
    std::vector<std::string> lines;
    std::string replies;  // the errors, blank-separated; none is "ok"
    std::vector<std::pair<std::string, std::string>> values;
    std::string told;
};

TEST(Sets, PutInForceWhatIsSavedAndActivatedOrNothing) {
    const std::string p3 = "UserPort.0.3.";
    const std::string name = "Config.Switch.SymName", addr = "Config.Snmp.TrapAddr";
    const std::string first = addr + "1.7F000001;Config.Snmp.TrapPort1.65535;";
    const Case cases[] = {
        {{InSwitchConfig("Config.Switch.SymName.a.b c;Config.Switch.R_T_TOV.500;"
                         "Config.Switch.InbandEnable.False;Config.UserPort.0.3.SymPortName.p.3;"
                         "Config.UserPort.0.3.AdminState.Diagnostics")},
         "ok",
         {{name, "a.b c"},
          {"Config.Switch.R_T_TOV", "500"},
          {"Config.Switch.InbandEnable", "False"},
          {"Oper." + p3 + "SymPortName", "p.3"},
          {"Config." + p3 + "AdminState", "Diagnostics"},
          {"Oper." + p3 + "OperState", "Diagnostics"}},
         "2;0;0;0;0 4;0;0;0;3 27;0;0;0;3 28;0;0;0;3"},
        {{InSwitchConfig("Config.Switch.AdminState.Offline") + ";"},
         "ok",
         {{"Oper.Switch.OperState", "Offline"}, {"Config.Switch.AdminState", "Offline"}},
         "2;0;0;0;0 13;0;0;0;0"},
        {{InSystemSetup("Config.System.IPAddress.0A0000fe")},
         "ok",
         {{"Config.System.IPAddress", "0A0000FE"}},
         "3;0;0;0;0"},
        {{InSnmpSetup("Config.Snmp.Contact.;Config.Snmp.TrapComm.x;Config.Snmp.TrapAuth.True")},
         "ok",
         {{"Config.Snmp.Contact", ""}, {"Config.Snmp.TrapComm", "x"}},
         "1;0;0;0;0"},
        // The trap table comes in lines of its own between those that open and close.
        {{kTake + "Cmd.Snmp.StartSetup;Cmd.Snmp.BypassDuplicates",
          "Config.Snmp.TrapAddr.7F000001;Config.Snmp.TrapPort.65535;Config.Snmp.TrapSeverity.mark;"
          "Config.Snmp.TrapEnable.True",
          first + "Config.Snmp.TrapSeverity1.info;Config.Snmp.TrapEnable1.False",
          "Cmd.Snmp.SaveSetup;Cmd.Snmp.ActSetup;" + kGive, InSnmpSetup("Config.Snmp.Location.x")},
         "ok ok ok ok ok",
         {{addr, "7F000001"},
          {addr + "1", "7F000001"},
          {"Config.Snmp.TrapPort1", "65535"},
          {"Config.Snmp.TrapSeverity", "mark"},
          {"Config.Snmp.TrapEnable1", "False"}},
         "1;0;0;0;0 1;0;0;0;0"},
        {{InSnmpSetup(addr + ".7F000001;Config.Snmp.TrapPort.65535;" + first)}, "#1", {}, ""},
        {{InSnmpSetup(first + addr + "2.7F000001;Config.Snmp.TrapPort2.65535")}, "#5", {}, ""},
        // Nothing of a line that fails is left, nor are edits when the rights are given back.
        {{InSwitchConfig(name + ".x;Config.UserPort.0.99.AdminState.Online"), "Cmd.Switch.Reset"},
         "#2 #4",
         {{name, "core-local"}},
         ""},
        {{kTake + "Cmd.Switch.EditConfig;" + name + ".x;" + kGive, InSwitchConfig(kTake)},
         "ok #1",
         {{name, "core-local"}},
         ""},
        {{kTake + "Cmd.Switch.EditConfig;" + name + ".x;" + kGive,
          kTake + "Cmd.Switch.EditConfig;Cmd.Switch.SaveConfig;Cmd.Switch.ActConfig"},
         "ok ok",
         {{name, "core-local"}},
         ""},
        {{kTake + "Cmd.Switch.EditConfig;" + name + ".x;Cmd.Switch.SaveConfig;" + kGive,
          kTake + "Cmd.Switch.ActConfig"},
         "ok ok",
         {{name, "x"}},
         "2;0;0;0;0"},
        {{kTake + "Cmd.UserPort.0.3.AdminState.Offline;" + kGive,
          kTake + "Cmd.Switch.SysLogLevel.None;Cmd.UserPort.0.3.ClearCounters;Cmd.Switch.Reset"},
         "ok ok",
         {{"Config." + p3 + "AdminState", "Offline"},
          {"Oper.Switch.SysLogLevel", "None"},
          {"Oper." + p3 + "TotalTxFrames", "0"}},
         "27;0;0;0;3 28;0;0;0;3 12;0;0;0;0 17;0;0;0;0[TIME][0][0x0][Reset]\n"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.lines.front());
        sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
        server.WithFabric([](sim::Fabric& fabric) {
            fabric.Find(0)->ports[3].counters["TotalTxFrames"] = 5;
            fabric.Find(0)->symbolicName = "core-local";
        });
        Client agent(LoopbackAddress(0).c_str()), sender(LoopbackAddress(0).c_str());
        EXPECT_EQ(agent.Ask(kOn, ""), "");
        std::string replies;
        for (const std::string& line : each.lines) {
            const std::string reply = sender.Ask(kSet, line);
            replies += (replies.empty() ? "" : " ") + (reply.empty() ? "ok" : reply);
        }
        EXPECT_EQ(replies, each.replies);
        for (const auto& [path, value] : each.values) {
            EXPECT_EQ(sender.Get(path), value) << path;
        }
        EXPECT_EQ(Told(agent), each.told);
    }
}

TEST(Sets, RefuseWhatCannotBe) {
    sim::Switch unit;
    unit.ports.resize(4);
    const sim::Switch before = unit;
    const std::string longest(128, 'x');
    const struct {
        std::string line;
        const char* reply;
    } cases[] = {
        {"", "#1"},
        {kTake + ";" + kGive, "#1"},
        {"Cmd.Switch.Bogus", "#1"},
        {"Cmd.Switch.EditConfig", "#4"},
        {kGive, "#4"},
        {kTake + "Config.Switch.SymName.x", "#3"},
        {kTake + "Cmd.Snmp.StartSetup;Config.Switch.SymName.x", "#3"},
        {kTake + "Cmd.Snmp.SaveSetup", "#3"},
        {InSwitchConfig("Config.Switch.SymName"), "#1"},
        {InSwitchConfig("Config.Mfg.WWN.1000020000000100"), "#1"},
        {InSwitchConfig("Config.UserPort.0.3.WWN.1000020000000100"), "#1"},
        {InSwitchConfig("Config.UserPort.1.3.AdminState.Online"), "#2"},
        {InSwitchConfig("Config.UserPort.0.4.AdminState.Online"), "#2"},
        {InSwitchConfig("Config.UserPort.0.3.AdminState.Down"), "#5"},
        {InSwitchConfig("Config.Switch.AdminState.online"), "#5"},
        {InSwitchConfig("Config.Switch.InbandEnable.true"), "#5"},
        {InSwitchConfig("Config.Switch.R_T_TOV.0"), "#5"},
        {InSwitchConfig("Config.Switch.E_D_TOV.20001"), "#5"},
        {InSwitchConfig("Config.Switch.R_A_TOV.4294967296"), "#5"},
        {InSwitchConfig("Config.Switch.Comment." + longest + "x"), "#5"},
        {InSwitchConfig("Config.Switch.Comment.a\tb"), "#5"},
        {InSystemSetup("Config.System.IPAddress.10.0.0.1"), "#5"},
        {InSystemSetup("Config.System.IPAddress.A000001"), "#5"},
        {InSnmpSetup("Config.Snmp.TrapPort.65536"), "#5"},
        {InSnmpSetup("Config.Snmp.TrapSeverity.warn"), "#5"},
        {InSnmpSetup("Config.Snmp.TrapVersion.3"), "#5"},
        {InSnmpSetup("Config.Snmp.TrapPort5.162"), "#2"},
        {InSnmpSetup("Config.Snmp.TrapPort0.162"), "#2"},
        {kTake + "Cmd.Switch.SysLogLevel.Loud", "#5"},
        {kTake + "Cmd.UserPort.0.4.ClearCounters", "#2"},
        {InSwitchConfig("Config.Switch.Comment." + longest), ""},
    };
    sim::Sets sets;
    for (const auto& each : cases) {
        EXPECT_EQ(unit, before) << each.line;
        EXPECT_EQ(sets.Run(unit, each.line, {1, {}, 0}).reply, each.reply) << each.line;
    }
    EXPECT_EQ(unit.comment, longest);
}

TEST(Sets, KeepOthersOutWhileAdminRightsAreInUse) {
    sim::Switch unit, other;
    other.domain = 2;
    sim::Sets sets;
    const auto set = [&](std::uint64_t who, int seconds, const std::string& line) {
        const sim::Requester from{who, {}, 0};
        return sets.Run(unit, line, {who, from.now + std::chrono::seconds(seconds), 0}).reply;
    };
    EXPECT_EQ(set(1, 0, kTake + "Cmd.Switch.EditConfig"), "");
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
    EXPECT_EQ(set(1, 84, kTake), "");
}

}  // namespace
