#include "src/conf/snmpd_conf.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "src/conf/conf_keys.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class SnmpdConfTest : public SwitchTest {
  protected:
    SnmpdConfTest() {
        ResetSharedSettings();
        char name[] = "/tmp/snmpmain_conf.XXXXXX";
        root_ = ::mkdtemp(name);
        ::setenv("SNMPMAIN_ROOT", root_.c_str(), 1);
        for (const char* folder : {"/var/ucd-snmp", "/kelmor/conf/etc"}) {
            std::filesystem::create_directories(root_ + folder);
        }
        Save("");
    }
    ~SnmpdConfTest() override {
        std::filesystem::remove_all(root_);
    }

    // What the daemon saves.
    void Save(const std::string& text) {
        std::ofstream(root_ + "/var/ucd-snmp/snmpd.conf") << text;
    }

    std::string Path() const {
        return root_ + "/kelmor/conf/etc/snmpd.conf";
    }

    std::string root_;
};

TEST_F(SnmpdConfTest, SecretsAreNotInTheMessageLog) {
    server.WithFabric([](sim::Fabric& fabric) {
        sim::Switch& unit = *fabric.Find(0);
        for (auto member : {&sim::Switch::readComm, &sim::Switch::writeComm, &sim::Switch::trapComm,
                            &sim::Switch::roAuthPhrase, &sim::Switch::roPrivPhrase,
                            &sim::Switch::rwAuthPhrase, &sim::Switch::rwPrivPhrase}) {
            unit.*member = "Sesame";
        }
        unit.contact = "Ali Baba";
        unit.v3Enable = true;
    });
    TraceEverything();
    ASSERT_EQ(InitSnmpdConf(), 0);
    const std::vector<std::string> logged = TakeLogged();
    const auto has = [&](const char* text) {
        return std::ranges::any_of(
            logged, [&](const std::string& line) { return line.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(has("Get.Config.Snmp.ROAuthPhrase"));
    EXPECT_TRUE(has("Ali Baba"));
    EXPECT_FALSE(has("Sesame"));
}

// Line by line: what is sent back, or nothing.
TEST_F(SnmpdConfTest, OnlyWhatTheDaemonWasNotToldIsSentBack) {
    server.WithFabric([](sim::Fabric& fabric) {
        fabric.Find(0)->symbolicName = "True North";  // stands as 1 in the daemon's file
        fabric.Find(0)->location = "Hall 7";
        fabric.Find(0)->contact = "me";
    });
    ASSERT_EQ(InitSnmpdConf(), 0);
    EXPECT_FALSE(SnmpdConfChanged());
    const std::pair<std::string, long> cases[] = {
        {"psyslocation Hall 7\npsysname 1\npsyscontact me\n", 0},
        {"psyslocation", 0},     // still being written
        {"psyscontact him", 0},  // this too
        {"engineBoots 3\npsyscontact him\n", 1},
        {"psyscontact him\n", 0},
        {"psyscontact me\npsyslocation Roof\n", 2},
        {"psyscontact him\n", 1},
        {"psyslocation of the master key\n", 0},  // "master" has it
        {"psyslocation Hall 7\n", 1},
        {"psysname\n", 1},
    };
    for (const auto& [saved, commands] : cases) {
        Save(saved);
        EXPECT_TRUE(SnmpdConfChanged()) << saved;
        server.TakeCommands();
        SyncSnmpdPersistent();
        EXPECT_EQ(CountTexts("Set."), commands) << saved;
        EXPECT_FALSE(SnmpdConfChanged());
    }
    EXPECT_EQ(GetConfSettings().master, "ation of the master key");
    server.WithFabric([](sim::Fabric& fabric) {
        EXPECT_EQ(fabric.Find(0)->contact, "him");
        EXPECT_EQ(fabric.Find(0)->location, "Hall 7");
        EXPECT_EQ(fabric.Find(0)->symbolicName, "");
    });
}

}  // namespace
}  // namespace snmpmain
