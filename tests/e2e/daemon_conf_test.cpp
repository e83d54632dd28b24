// The daemon's settings: those that the agent writes for it, and those that managers change in it.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/e2e/walks.h"

namespace e2e {
namespace {

const std::string kName = ".1.3.6.1.2.1.1.5.0", kUnitCount = kFcmgmt + ".1.1.0",
                  kUnitName = At(kUnits + ".20", 2);

class DaemonConf : public testing::Test {
  protected:
    using Change = std::function<void(sim::Switch&)>;

    // Changes the local switch, which tells about it.
    void Set(const Change& change) {
        stack_.Switch().ChangeAndNotify([&](sim::Fabric& fabric) { change(*fabric.Find(0)); });
    }
    void StartAsOnASwitch(const sim::Fabric& fabric) {
        stack_.StartSwitch(fabric);
        stack_.StartSnmpdOfSwitch();
        stack_.StartAgent();
        ASSERT_TRUE(Within(20, [&] { return Says("up and running"); }));
    }
    bool Says(const std::string& text) {
        return stack_.Output("snmpmain").find(text) != std::string::npos;
    }
    std::string File() {
        return ReadFile(stack_.Path("kelmor/conf/etc/snmpd.conf"));
    }

    // Whether a tool of a user or of a community succeeds, at once or soon.
    bool Can(Words command, const Words& object = {kUnitCount}) {
        command.insert(command.end(), {"-r", "0", "-t", "0.7", stack_.SnmpAddress()});
        command.insert(command.end(), object.begin(), object.end());
        return RunProgram(command).status == 0;
    }
    bool CanSoon(const Words& command) {
        return Within(5, [&] { return Can(command); });
    }
    static Words Community(const std::string& name) {
        return {"snmpget", "-v2c", "-c", name};
    }
    static Words User(const std::string& tool, const std::string& name, const std::string& phrase,
                      const std::string& privacy) {
        return {tool,  "-v3", "-l",   "authPriv", "-u",  name, "-a",
                "MD5", "-A",  phrase, "-x",       "DES", "-X", privacy};
    }

    Stack stack_;
};

TEST_F(DaemonConf, IsAsReviewed) {
    const sim::Fabric fabric = sim::DefaultFabric();
    const std::string path = stack_.Path("kelmor/conf/etc/snmpd.conf"), old(5000, 'x');
    std::ofstream(path) << old;
    ::chmod(path.c_str(), 0644);
    stack_.StartAll();
    struct stat facts {};
    EXPECT_EQ(::stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600u);
    const std::pair<const char*, Change> kConfigurations[] = {
        {"v2", [](auto&) {}},
        {"odd-words",
         [](auto& unit) {
             unit.readComm = "0.0.0.0", unit.writeComm = "Falsehood", unit.trapComm = "True";
             unit.trapAuth = true, unit.traps[0].enabled = false;
             unit.traps[4] = {"10.1.2.255", 65535, "mark", true, "1"};
             unit.location = "False, or True", unit.sysDescr = "x255.255.255.255";
         }},
        {"odd-texts",
         [](auto& unit) {
             unit.location = "", unit.contact = "\tme\nrwcommunity open\r\x7F.";
             unit.symbolicName = std::string(127, 'l') + "beyond",
             unit.traps[2].address = "0.0.0.0";
         }},
        {"v3", [](auto& unit) { unit.v3Enable = true; }},
        {"v3-odd", [](auto& unit) {
             unit.v3Enable = true;
             unit.roAuthType = "None", unit.roPrivType = "DES";
             unit.rwAuthType = "SHA", unit.rwPrivType = "DES3";
             unit.rwAuthPhrase = "two words\nrwuser open noauth";
         }}};
    std::string file = old;
    for (const auto& [name, change] : kConfigurations) {
        Set([&](sim::Switch& unit) { change(unit = *fabric.Find(0)); });
        EXPECT_TRUE(Within(5, [&] { return File() != file; })) << name;
        const std::string conf = std::string("snmpd-") + name + ".conf";
        // A cycle that was under way may write half of the change first.
        Within(5, [&] { return (file = File()) == ReviewedText(conf, file); });
        EXPECT_EQ(file, ReviewedText(conf, file));
    }
    for (const std::string v3 : {"", "SNMP:Writing v3 configuration information to file\n"}) {
        EXPECT_TRUE(
            Says("SNMP:Initializing configuration paramenters\n"
                 "SNMP:Writing configuration information to file\n" +
                 v3 +
                 "SNMP:Saving configuration file stats\n"
                 "SNMP:Forcing snmpd configuration update\n"
                 "SNMP:Configuration parameters initialized\n"));
    }
    for (const std::string type : {"4GTelcoSwitchBlade20", "SwitchBlade200"}) {
        stack_.Stop("snmpmain");
        Set([&](sim::Switch& unit) { unit = *fabric.Find(0), unit.type = type; });
        stack_.StartAgent();
        ASSERT_TRUE(stack_.AwaitAgent());
        EXPECT_EQ(File().ends_with(".16\nengineID 177 0000000000000000000000000000c002\n"
                                   "sysServices 2\n"),
                  type == "4GTelcoSwitchBlade20");
    }
    // Where it cannot be written, nobody is stopped.
    std::filesystem::remove_all(stack_.Path("kelmor"));
    stack_.Stop("snmpmain");
    Set([&](sim::Switch& unit) { unit.v3Enable = true; });
    stack_.StartAgent();
    EXPECT_TRUE(stack_.AwaitAgent());
}

TEST_F(DaemonConf, IsReadAgainWhileTablesAreServed) {
    StartAsOnASwitch(sim::DefaultFabric());
    std::atomic<bool> isOver = false;
    int settings = 0;
    std::jthread manager([&] {
        while (!isOver) {
            EXPECT_EQ(stack_.GetOne(kUnitCount), "INTEGER: 3");
            EXPECT_EQ(stack_.Set({At(kUnits + ".21", 7), "s", std::to_string(++settings)}).status,
                      0);
        }
    });
    for (const char* text : {"first", "second"}) {
        Set([&](sim::Switch& unit) { unit.readComm = text; });
        EXPECT_TRUE(CanSoon(Community(text)));
        Set([&](sim::Switch& unit) { unit.symbolicName = text; });
        EXPECT_TRUE(Within(5, [&] { return stack_.GetOne(kName) == Text(text); }));
    }
    isOver = true;
    EXPECT_FALSE(Can(Community("public")));
    EXPECT_FALSE(Can(Community("first")));
}

TEST_F(DaemonConf, LetsUsersInAndNobodyElse) {
    sim::Fabric fabric = sim::DefaultFabric();
    sim::Switch& local = *fabric.Find(0);
    local.v3Enable = true;
    local.roPrivType = "DES", local.roPrivPhrase = "sample-phrase-4";
    local.devLogComp = "Snmp", local.devLogLevel = "Info";
    StartAsOnASwitch(fabric);
    const Words reader = User("snmpwalk", "monitor", "sample-phrase-1", "sample-phrase-4");
    EXPECT_TRUE(CanSoon(reader));
    EXPECT_FALSE(Can(User("snmpwalk", "monitor", "sample-phrase-1", "sample-phrase-3")));
    EXPECT_FALSE(Can({"snmpget", "-v3", "-l", "noAuthNoPriv", "-u", "monitor"}));
    EXPECT_FALSE(Can(Community("public")));
    EXPECT_FALSE(Can(Community("private")));
    const auto name = [&](const std::string& user, const std::string& number) {
        const Words tool = User("snmpset", user, "sample-phrase-" + number,
                                user == "admin" ? "sample-phrase-3" : "sample-phrase-4");
        return Can(tool, {kUnitName, "s", user});
    };
    EXPECT_FALSE(name("monitor", "1"));
    EXPECT_TRUE(name("admin", "2"));
    stack_.Switch().WithFabric(
        [](sim::Fabric& now) { EXPECT_EQ(now.Find(0)->symbolicName, "admin"); });
    Set([](sim::Switch& unit) { unit.roAuthPhrase = "sample-phrase-5"; });
    EXPECT_TRUE(CanSoon(User("snmpwalk", "monitor", "sample-phrase-5", "sample-phrase-4")));
    EXPECT_FALSE(Can(reader));
    Set([](sim::Switch& unit) { unit.v3Enable = false, unit.readComm = "sample-phrase-6"; });
    EXPECT_TRUE(CanSoon(Community("sample-phrase-6")));
    EXPECT_FALSE(Says("sample-phrase"));
}

}  // namespace
}  // namespace e2e
