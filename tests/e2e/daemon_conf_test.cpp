// The daemon's settings: those that the agent writes for it, and those that managers change in it.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/e2e/expected_values.h"
#include "tests/e2e/stack.h"

namespace e2e {
namespace {

const std::string kContact = ".1.3.6.1.2.1.1.4.0", kName = ".1.3.6.1.2.1.1.5.0",
                  kLocation = ".1.3.6.1.2.1.1.6.0", kUnitCount = kFcmgmt + ".1.1.0",
                  kUnitName = kUnits + ".20" + Index("1000020000000100", 16);

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
        std::stringstream text;
        text << std::ifstream(stack_.Path("kelmor/conf/etc/snmpd.conf")).rdbuf();
        return text.str();
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

TEST_F(DaemonConf, IsWhatTheSwitchSays) {
    const sim::Fabric fabric = sim::DefaultFabric();
    const std::string path = stack_.Path("kelmor/conf/etc/snmpd.conf"), longText(127, 'l');
    std::ofstream(path) << std::string(5000, 'x');
    ::chmod(path.c_str(), 0644);
    stack_.StartAll();
    const Words v2 = {
        "master on\nproc snmpmain 10 1\n",
        "rocommunity public\nrwcommunity private\ntrapcommunity public\nauthtrapenable 2\n",
        "informsink 127.0.0.1 public 16200\ninformsink 127.0.0.1 public 16201\n",
        "psyslocation Hall 1, rack 7\n",
        "psyscontact Storage team, phone 1200\n",
        "psysname core-local\n",
        "sysdescr " + fabric.Find(0)->sysDescr + "\n",
        "sysobjectid 1.3.6.1.4.1.32473.1.16\nsysServices 2\n"};
    struct stat facts {};
    EXPECT_EQ(::stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600u);
    // The pieces that are not as above.
    const struct {
        Change change;
        std::map<std::size_t, std::string> pieces;
    } kConfigurations[] = {
        {[](auto&) {}, {}},
        {[](auto& unit) {
             unit.readComm = "0.0.0.0", unit.writeComm = "Falsehood", unit.trapComm = "True";
             unit.trapAuth = true, unit.traps[0].enabled = false;
             unit.traps[4] = {"10.1.2.255", 65535, "mark", true, "1"};
             unit.location = "False, or True", unit.sysDescr = "x255.255.255.255";
         },
         {{1, "rwcommunity 2\ntrapcommunity True\nauthtrapenable 1\n"},
          {2, "informsink 127.0.0.1 True 16201\ninformsink 10.1.2.255 True 65535\n"},
          {3, "psyslocation 1\n"},
          {6, ""}}},
        {[&](auto& unit) {
             unit.location = "", unit.contact = "\tme\nrwcommunity open\r\x7F.";
             unit.symbolicName = longText + "beyond", unit.traps[2].address = "0.0.0.0";
         },
         {{2, "informsink 127.0.0.1 public 16200\ninformsink 0.0.0.0 public 16201\n"},
          {3, "psyslocation \n"},
          {4, "psyscontact  me rwcommunity open  .\n"},
          {5, "psysname " + longText + "\n"}}},
        {[](auto& unit) { unit.v3Enable = true; },
         {{1, "trapcommunity public\nauthtrapenable 2\n"},
          {8,
           "rouser monitor auth\ncreateUser monitor MD5 \"sample-phrase-1\"\n"
           "rwuser admin priv\n"
           "createUser admin MD5 \"sample-phrase-2\" DES \"sample-phrase-3\"\n"}}},
        {[](auto& unit) {
             unit.v3Enable = true;
             unit.roAuthType = "None", unit.roPrivType = "DES";
             unit.rwAuthType = "SHA", unit.rwPrivType = "DES3";
             unit.rwAuthPhrase = "two words\nrwuser open noauth";
         },
         {{1, "trapcommunity public\nauthtrapenable 2\n"},
          {8,
           "rouser monitor noauth\ncreateUser monitor\nrwuser admin auth\ncreateUser admin "
           "SHA \"two words rwuser open noauth\" DES3 \"sample-phrase-3\"\n"}}}};
    for (const auto& [change, pieces] : kConfigurations) {
        std::string expected;
        for (std::size_t i = 0; i <= v2.size(); ++i) {
            expected += pieces.contains(i) ? pieces.at(i) : i < v2.size() ? v2[i] : "";
        }
        Set([&](sim::Switch& unit) { change(unit = *fabric.Find(0)); });
        Within(5, [&] { return File() == expected; });
        EXPECT_EQ(File(), expected);
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
    std::jthread manager([&] {
        while (!isOver) {
            EXPECT_EQ(stack_.GetOne(kUnitCount), "INTEGER: 3");
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

TEST_F(DaemonConf, ChangedByManagersReachesTheSwitch) {
    StartAsOnASwitch(sim::DefaultFabric());
    Words sent;  // the settings of all changes so far
    const auto poke = [&] {
        EXPECT_EQ(stack_.GetOne(kUnitCount), "INTEGER: 3");  // has the agent look
        for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
            if (command.text.find("Set.Cmd.Switch.ReqAdmin") == 0) {
                sent.push_back(command.text.substr(command.text.find("Config.")));
                sent.back().erase(sent.back().find(';'));
            }
        }
    };
    const auto expect = [&](const Words& assignments, const Words& all, const Words& texts) {
        poke();
        sent.clear();
        EXPECT_EQ(stack_.Set(assignments).status, 0);
        Within(5, [&] {
            poke();
            return !all.empty() && sent.size() >= all.size();
        });
        for (int i = 0; i < 50; ++i) {
            poke();
        }
        EXPECT_EQ(sent, all);  // and that was all
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) {
            const sim::Switch& unit = *fabric.Find(0);
            EXPECT_EQ((Words{unit.location, unit.contact, unit.symbolicName}), texts);
        });
    };
    const std::string location = "Config.Snmp.Location.", contact = "Config.Snmp.Contact.";
    expect({kLocation, "s", "Roof"}, {location + "Roof"},
           {"Roof", "Storage team, phone 1200", "core-local"});
    expect({kContact, "s", "Anyone"}, {contact + "Anyone"}, {"Roof", "Anyone", "core-local"});
    expect({kName, "s", "c 2", kLocation, "s", "Cellar"},
           {location + "Cellar", "Config.Switch.SymName.c 2"}, {"Cellar", "Anyone", "c 2"});
    // The word of another setting.
    expect({kLocation, "s", "Room of the master"}, {}, {"Cellar", "Anyone", "c 2"});
    Set([](sim::Switch& unit) { unit.trapAuth = true; });
    EXPECT_TRUE(Within(5, [&] { return File().starts_with("master ation Room of the master\n"); }));
    expect({kContact, "s", "Nobody"}, {contact + "Nobody"}, {"Cellar", "Nobody", "c 2"});
    // What the switch is told comes to the daemon, and nothing comes back.
    EXPECT_EQ(stack_.Set({kUnitName, "s", "c 4"}).status, 0);
    EXPECT_TRUE(Within(5, [&] { return stack_.GetOne(kName) == Text("c 4"); }));
    expect({kLocation, "s", "Roof"}, {location + "Roof"}, {"Roof", "Nobody", "c 4"});
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

TEST_F(DaemonConf, WaitsForTheDaemonAndOutlivesIt) {
    stack_.StartSwitch();
    stack_.StartAgent();
    EXPECT_TRUE(Within(10, [&] {
        return Says(
            "SNMP:Saving configuration file stats\n"
            "SNMP:Error saving SNMP configuration file stats\n"
            "Configuration file initialization failed. Reinitializing.\n");
    }));
    stack_.StartSnmpdOfSwitch();
    EXPECT_TRUE(stack_.AwaitAgent());
    stack_.Stop("snmpd", SIGKILL);
    std::filesystem::remove(stack_.Path("var/ucd-snmp/snmpd.conf"));
    stack_.StartSnmpdOfSwitch();
    EXPECT_TRUE(Within(40, [&] { return stack_.GetOne(kUnitCount) == "INTEGER: 3"; }));
    Set([](sim::Switch& unit) { unit.readComm = "changed"; });
    EXPECT_TRUE(CanSoon(Community("changed")));
}

}  // namespace
}  // namespace e2e
