// The program as a script sees it: output, signals and exit status.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "tests/sim/client.h"
#include "tests/support/loopback.h"

namespace {

class Program {
  public:
    explicit Program(std::vector<std::string> arguments) {
        int ends[2];
        if (pipe(ends) != 0) {
            return;
        }
        arguments.insert(arguments.begin(), SWITCHSIM);
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        pid_ = fork();
        if (pid_ == 0) {
            dup2(ends[1], 1);
            dup2(ends[1], 2);
            close(ends[0]);
            close(ends[1]);
            execv(SWITCHSIM, argv.data());
            _exit(127);
        }
        close(ends[1]);
        output_ = fdopen(ends[0], "r");
    }
    ~Program() {
        Signal(SIGKILL);
        Wait();
        std::fclose(output_);
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
        if (pid_ > 0) {
            kill(pid_, number);
        }
    }
    int Wait() {
        int status = -1;
        if (pid_ > 0) {
            waitpid(pid_, &status, 0);
            pid_ = 0;
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t pid_ = 0;
    FILE* output_ = nullptr;
};

TEST(Program, SaysWhenReadyLogsCommandsAndEndsCleanlyOnASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        const std::string address = LoopbackAddress(0);
        const std::string agent = LoopbackAddress(1);
        Program program(
            {"--listen", address, "--log", "--silent-domain", "7", "--agent", "1=" + agent});
        EXPECT_EQ(program.Line(),
                  "switchsim: listening on " + address + ":5001, 3 switches, local domain 2\n");
        EXPECT_EQ(program.Line(),
                  "switchsim: listening on " + agent + ":5001 for the agent of domain 1\n");
        simtest::Client client(agent.c_str());
        EXPECT_EQ(client.Get("Oper.Switch.Type"), "SmallSwitch8");
        EXPECT_TRUE(program.Line().ends_with(" Get.Oper.Switch.Type -> SmallSwitch8\n"));
        client.Send(simtest::Frame(1024, "Oper.Switch.Nop", 7 << 16));
        EXPECT_TRUE(program.Line().ends_with(" Get.Oper.Switch.Nop -> (no answer)\n"));
        Program second({"--listen", address});
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
    Program program({"--listen", address, "--only-domain", "7"});
    EXPECT_TRUE(program.Line().ends_with(":5001, 1 switches, local domain 7\n"));
    simtest::Client client(address.c_str());
    EXPECT_EQ(client.Get("Oper.Switch.MaxPorts"), "24");
    EXPECT_EQ(client.Get("Oper.Switch.WhoIsPrincipal"), client.Get("Config.Mfg.WWN", 7));
    EXPECT_EQ(client.Get("Oper.Fabric.NextDomainID.7"), "#2");
}

TEST(Program, RefusesOptionsThatMakeNoSense) {
    const std::vector<std::string> cases[] = {
        {"--lose", "1.5"},
        {"--domains", "240"},
        {"--domains", "0"},
        {"--unknown"},
        {"--listen", "192.0.2.1"},
        {"--silent-domain", "3"},
        {"--delay", "-1"},
        {"--domains", "2", "--fabric", "x"},
        {"--names", "20"},
        {"--domains", "2", "--names", "3585"},
        {"--only-domain", "3"},
        {"--agent", "1"},
        {"--agent", "3=127.0.0.9"},
        {"--agent", "1=192.0.2.1"},
        {"--agent", "1=127.0.0.300"},
    };
    for (const auto& arguments : cases) {
        Program program(arguments);
        EXPECT_NE(program.Rest(), "");
        EXPECT_EQ(program.Wait(), 1) << arguments.front();
    }
}

}  // namespace
