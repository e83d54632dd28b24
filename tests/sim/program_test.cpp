// The program as a script sees it: output, signals and exit status.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tests/sim/client.h"
#include "tests/support/loopback.h"

namespace {

/// Runs with the arguments as a shell reads them.
class Program {
  public:
    explicit Program(const std::string& arguments)
        : output_(popen(("echo $$; exec " SWITCHSIM " " + arguments + " 2>&1").c_str(), "r")) {
        pid_ = std::stoi(Line());
    }
    ~Program() {
        if (output_ != nullptr) {
            Signal(SIGKILL);
            Wait();
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string Line() {
        char line[2048] = "";
        return std::fgets(line, sizeof line, output_) != nullptr ? line : "";
    }
    std::string Rest() {
        std::string text;
        for (std::string line = Line(); !line.empty(); line = Line()) {
            text += line;
        }
        return text;
    }
    void Signal(int number) const {
        kill(pid_, number);
    }
    int Wait() {
        const int status = pclose(std::exchange(output_, nullptr));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    FILE* output_;
    pid_t pid_;
};

TEST(Program, SaysWhenReadyLogsCommandsAndEndsCleanlyOnASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        const std::string address = LoopbackAddress(0);
        const std::string agent = LoopbackAddress(1);
        Program program("--listen " + address + " --log --silent-domain 7 --agent 1=" + agent);
        EXPECT_EQ(program.Line(),
                  "switchsim: listening on " + address + ":5001, 3 switches, local domain 2\n");
        EXPECT_EQ(program.Line(),
                  "switchsim: listening on " + agent + ":5001 for the agent of domain 1\n");
        simtest::Client client(agent.c_str());
        EXPECT_EQ(client.Get("Oper.Switch.Type"), "SmallSwitch8");
        EXPECT_TRUE(program.Line().ends_with(" Get.Oper.Switch.Type -> SmallSwitch8\n"));
        client.Send(simtest::Frame(1024, "Oper.Switch.Nop", 7 << 16));
        EXPECT_TRUE(program.Line().ends_with(" Get.Oper.Switch.Nop -> (no answer)\n"));
        Program second("--listen " + address);
        EXPECT_EQ(second.Rest(),
                  "switchsim: cannot listen on " + address + ":5001: Address already in use\n");
        EXPECT_EQ(second.Wait(), 1);
        program.Signal(signal);
        EXPECT_EQ(program.Rest(),
                  "switchsim: 1 requests answered, 1 not answered, 0 frames refused\n");
        EXPECT_EQ(program.Wait(), 0);
    }
}

TEST(Program, KeepsOneSwitchOfAFabricAsTheLocalAndPrincipalOne) {
    const std::string address = LoopbackAddress(0);
    Program program("--listen " + address + " --only-domain 7");
    EXPECT_TRUE(program.Line().ends_with(":5001, 1 switches, local domain 7\n"));
    simtest::Client client(address.c_str());
    EXPECT_EQ(client.Get("Oper.Switch.MaxPorts"), "24");
    EXPECT_EQ(client.Get("Oper.Switch.WhoIsPrincipal"), client.Get("Config.Mfg.WWN", 7));
    EXPECT_EQ(client.Get("Oper.Fabric.NextDomainID.7"), "#2");
}

/// What "switchsim ctl" prints, and its exit status.
std::string Ctl(const std::string& address, const std::string& words) {
    Program program("ctl --listen " + address + " " + words);
    const std::string output = program.Rest();
    return std::to_string(program.Wait()) + " " + output;
}

TEST(Control, ChangesTheFabricAndTellsTheAgents) {
    const std::string address = LoopbackAddress(0);
    Program program("--listen " + address);
    ASSERT_NE(program.Line(), "");
    simtest::Client agent(address.c_str());
    for (const std::uint32_t domain : {0u, 7u}) {
        ASSERT_EQ(agent.Ask(1027, "", domain), "");
    }
    const struct {
        const char* words;
        std::vector<const char*> told;
        const char* path;  // at domain 7
        const char* reply;
    } cases[] = {
        {"port 7.3 offline",
         {"27;0;0;0;3", "28;0;0;0;3"},
         "Config.UserPort.0.3.AdminState",
         "Offline"},
        {"port 7.3 down", {"28;0;0;0;3"}, "Oper.UserPort.0.3.OperState", "Down"},
        {"port 7.3 max_credit 9", {"4;0;0;0;3"}, "Oper.UserPort.0.3.MaxCredit", "9"},
        {"sensor 7.supply.1 bad", {"19;0;0;0;0["}, "Oper.Chassis.0.PowerSupply.1", "Bad"},
        {"sensor 7.fan.1 good", {"22;0;0;0;0["}, "Oper.Chassis.0.Fan.1", "Good"},
        {"blade 7.0 overheating", {"26;0;0;0;0["}, "Oper.Blade.0.TempStatus", "Overheating"},
        {"switch 7 online", {"13;0;0;0;0"}, "Oper.Switch.OperState", "Online"},
        {"set 7 symbolic_name 'a b'", {"2;0;0;0;0"}, "Config.Switch.SymName", "a b"},
        {"set 7 inband_enable false", {"2;0;0;0;0"}, "Config.Switch.InbandEnable", "False"},
        {"trap 7.4 127.0.0.9 162 info on 1", {"1;0;0;0;0"}, "Config.Snmp.TrapAddr4", "7F000009"},
        {"leave 7", {"5;0;0;0;0"}, "Oper.Switch.Nop", "(none)"},
        {"join 7", {"5;0;0;0;0"}, "Config.Switch.SymName", "a b"},
        {"notify 7 '29;x'", {"29;x"}, "Oper.Switch.Nop", "Ok"},
        {"flood 3 0 '5;x'", {"5;x", "5;x", "5;x"}, "Oper.Switch.Nop", "Ok"},
    };
    for (const auto& each : cases) {
        const std::size_t count = each.told.size();
        EXPECT_EQ(Ctl(address, each.words), "0 " + std::to_string(count) + " notification" +
                                                (count == 1 ? "" : "s") + " sent\n");
        for (const char* text : each.told) {
            const auto frame = agent.Receive();
            EXPECT_TRUE(frame && simtest::Text(*frame).starts_with(text)) << text;
        }
        EXPECT_EQ(agent.Ask(1024, each.path, 7, 300), each.reply) << each.path;
    }
    const std::string type = "Oper.Switch.Type";
    for (const auto& [text, reply] :
         {std::pair("x", "x"), {"--fail", "#7"}, {"--clear", "EdgeSwitch24"}}) {
        EXPECT_EQ(Ctl(address, "value 7 " + type + " " + text), "0 done\n");
        EXPECT_EQ(agent.Get(type, 7), reply);
    }
    EXPECT_EQ(Ctl(address, "silent 7 on"), "0 done\n");
    EXPECT_EQ(agent.Ask(1024, type, 7, 300), "(none)");
}

TEST(Control, RefusesWhatMakesNoSense) {
    const std::string address = LoopbackAddress(0);
    Program program("--listen " + address);
    ASSERT_NE(program.Line(), "");
    const std::string longer = "set 2 comment " + std::string(491, 'x');
    for (const char* words :
         {"fly", "leave", "leave 2", "leave 3", "join 7", "port 2.16 online", "port 2 online",
          "port 2.fan.1 online", "port 2.1 broken", "port 2.1 wwn 12", "sensor 2.heater.0 bad",
          "set 2 color red", longer.c_str(), "set 2 principal yes",
          "trap 2.5 127.0.0.1 162 info on 2", "trap 2.0 nowhere 162 info on 2", "flood 1000001 0 x",
          "notify 240 x"}) {
        const std::string told = Ctl(address, words);
        EXPECT_TRUE(told.starts_with("1 switchsim: ctl: ")) << words << ": " << told;
    }
    EXPECT_TRUE(Ctl(LoopbackAddress(1), "leave 7").starts_with("1 switchsim: no switchsim"));
    EXPECT_TRUE(Ctl(address, "--help").starts_with("0 Usage: "));
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Rest(), "switchsim: 0 requests answered, 0 not answered, 0 frames refused\n");
}

}  // namespace
