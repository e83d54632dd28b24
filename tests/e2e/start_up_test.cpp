// How the agent starts: its messages, its options, and every order of the processes.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

// The output with time stamps made equal.
std::string Messages(const Stack& stack) {
    constexpr std::size_t kStampLength = 10;
    std::string text = stack.Output("snmpmain");
    for (std::size_t at = 0; (at = text.find('[', at)) != std::string::npos; ++at) {
        const std::string stamp = text.substr(at, kStampLength);
        if (stamp.size() == kStampLength && stamp[3] == ':' && stamp[6] == ':' && stamp[9] == ']') {
            text.replace(at, kStampLength, "[time]");
        }
    }
    return text;
}

const std::string kLinkMessages =
    "[time]] SNMP is starting...\n"
    "SNMP:Initializing UPD Sockets\n"
    "SNMP:UPD Sockets Initialized\n"
    "SNMP:Initializing Send/Receive semaphores\n"
    "SNMP:Send/Receive semaphores initialized\n";

TEST(StartUp, AgentFirstThenSwitchThenSnmpd) {
    Stack stack;
    stack.StartAgent();
    ASSERT_TRUE(Within(5, [&] { return Messages(stack) == kLinkMessages; })) << Messages(stack);
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(Messages(stack), kLinkMessages);  // waits for switch management without a word
    stack.StartSwitch();
    const auto saysTwice = [&](const std::string& message) {
        return Within(
            15, [&] { return Messages(stack).find(message) != Messages(stack).rfind(message); });
    };
    EXPECT_TRUE(saysTwice("Configuration file initialization failed. Reinitializing.\n"));
    std::ofstream(stack.Path("var/ucd-snmp/snmpd.conf"));  // of a daemon that has ended
    EXPECT_TRUE(saysTwice("SNMP:Pinging snmpd.\n"));
    stack.StartSnmpd();
    EXPECT_TRUE(stack.AwaitAgent());
    EXPECT_NE(Messages(stack).find("SNMP:Updating connUnitTable..."), std::string::npos);
    EXPECT_TRUE(Messages(stack).ends_with("[time]] SNMP is up and running!\n")) << Messages(stack);
}

TEST(StartUp, CachePassIsRepeatedWithItsMessageUntilItSucceeds) {
    Stack stack;
    stack.StartSwitch();
    stack.Switch().SetValue(0, "Oper.Switch.MaxPorts", std::nullopt);
    stack.StartSnmpd();
    stack.StartAgent();
    EXPECT_TRUE(Within(10, [&] {
        return Messages(stack) == kLinkMessages +
                                      "Cache initialization failed. Reinitializing.\n"
                                      "Cache initialization failed. Reinitializing.\n";
    })) << Messages(stack);
    stack.Switch().SetValue(0, "Oper.Switch.MaxPorts", "16");
    stack.Switch().SetValue(0, "Oper.Fabric.FirstDomainID", std::nullopt);
    EXPECT_TRUE(Within(10, [&] {
        return Messages(stack).find("Unit table initialization failed. Reinitializing.\n") !=
               std::string::npos;
    }));
    stack.Switch().SetValue(0, "Oper.Fabric.FirstDomainID", "1");
    EXPECT_TRUE(stack.AwaitAgent());
}

TEST(StartUp, UsageEndsTheProgram) {
    Words command = AgentCommand();
    command.emplace_back("--nonsense");
    const Finished finished = RunProgram(command);
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.output.find("\nUsage: snmpmain [--remote 10.0.0.1] [--notrap]\n\n"),
              std::string::npos);
}

// The library would read configuration, keep an index of certificates and write a persistent file.
TEST(StartUp, LibraryNeitherReadsNorWritesFiles) {
    Stack stack;
    stack.StartSwitch();
    stack.StartSnmpd();
    const std::string settings = stack.Path("settings"), kept = stack.Path("kept");
    std::filesystem::create_directories(settings);
    std::filesystem::create_directories(kept);
    for (const char* name : {"/snmp.conf", "/SnmpMain.conf"}) {
        std::ofstream(settings + name) << "agentXSocket tcp:127.0.0.1:1\nagentXPingInterval 0\n"
                                       << "nonsense directive\n";
    }
    stack.StartAgent({"SNMPCONFPATH=" + settings, "SNMP_PERSISTENT_DIR=" + kept, "HOME=" + settings,
                      "MIBS=ALL", "MIBDIRS=" + settings});
    ASSERT_TRUE(stack.AwaitAgent());
    stack.Stop("snmpmain");
    EXPECT_TRUE(std::filesystem::is_empty(kept));
    EXPECT_EQ(Messages(stack).find("nonsense"), std::string::npos);
}

}  // namespace
}  // namespace e2e
