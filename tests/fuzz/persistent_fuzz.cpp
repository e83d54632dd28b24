// snmpd's own file and the switch's settings, both of any content, on their way to the
// configuration that is written for snmpd.
//
// An input is a list of texts with a byte 0xFF behind each. The first is what snmpd has saved, the
// others are the switch's settings in the order of ConfKeyTable; those that are missing are the
// simulated switch's own. In front of all that stands a byte:
//
//   bit 0  the local switch is a blade
//   bit 1  the switch refuses changes
//
// Other bits mean nothing, so that inputs may begin with a printable character.

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "src/conf/conf_keys.h"
#include "src/conf/snmpd_conf.h"
#include "src/link/switch_info.h"
#include "tests/fuzz/surroundings.h"

namespace snmpmain {
namespace {

using fuzz::Datagram;
using fuzz::Reader;
using fuzz::Require;

constexpr std::uint8_t kBlade = 1 << 0;
constexpr std::uint8_t kRefusing = 1 << 1;
constexpr std::uint8_t kTextEnd = 0xFF;

// Not taken from ConfKeyTable: an error there is to be found as well.
constexpr std::string_view kDirectives[] = {
    "master",      "proc",     "rocommunity",  "rwcommunity", "trapcommunity", "authtrapenable",
    "informsink",  "psysname", "psyslocation", "psyscontact", "sysdescr",      "sysobjectid",
    "sysServices", "engineID", "rouser",       "rwuser",      "createUser",
};

// Where the agent finds its files, for one input. It holds no pid file: nobody is signalled.
class Root {
  public:
    Root() {
        char name[] = "/dev/shm/snmpmain_fuzz.XXXXXX";  // memory is faster than a disk
        Require(::mkdtemp(name) != nullptr, "a temporary folder");
        path_ = name;
        std::filesystem::create_directories(path_ + "/var/ucd-snmp");
        std::filesystem::create_directories(path_ + "/kelmor/conf/etc");
        ::setenv("SNMPMAIN_ROOT", name, 1);
    }
    ~Root() {
        std::filesystem::remove_all(path_);
    }
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    void Save(std::string_view text) const {
        std::ofstream(path_ + "/var/ucd-snmp/snmpd.conf", std::ios::binary) << text;
    }
    std::string Written() const {
        return path_ + "/kelmor/conf/etc/snmpd.conf";
    }

  private:
    std::string path_;
};

void CheckWritten(const std::string& path) {
    struct stat status {};
    Require(::stat(path.c_str(), &status) == 0 && (status.st_mode & 0777) == 0600,
            "for its owner only");
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        Require(std::ranges::none_of(line, [](unsigned char c) { return c < 0x20 || c == 0x7F; }),
                "no control characters");
        const std::size_t end = line.find(' ');
        Require(end != line.npos && std::ranges::count(kDirectives, line.substr(0, end)) == 1,
                "every line begins with a known keyword");
    }
}

class Agent {
  public:
    Agent() {
        Require(InitSwitchInfo() == 0, "switch information");
    }

    void Take(Reader input) {
        const std::uint8_t bits = input.Byte();
        const auto saved = input.UpTo(kTextEnd);
        std::map<std::string_view, std::string> texts;
        for (const ConfKey& row : GetConfKeys()) {
            if (row.command[0] != '\0' && !input.AtEnd()) {
                const auto text = input.UpTo(kTextEnd);
                texts[row.command].assign(text.begin(), text.end());
            }
        }
        if ((bits & kBlade) != 0) {
            texts["Get.Oper.Switch.Type"] = "SwitchBlade";
        }

        const Root root;
        ForgetTheLast(root);
        switch_.server.SetReplyOverride([&](const sim::ReceivedCommand& command, Datagram proper) {
            return std::optional(Answer(texts, (bits & kRefusing) != 0, command, proper));
        });
        ReadFact(Fact::kSwitchType);
        Require(InitSnmpdConf() == 0, "both sides agree");
        changes_ = 0;
        root.Save({reinterpret_cast<const char*>(saved.data()), saved.size()});
        SyncSnmpdPersistent();
        Require(changes_ <= 3, "each setting goes out once at most");
        Require(!SnmpdConfChanged(), "the file has been looked at");
        Require(InitSnmpdConf() == 0, "the configuration is written");
        switch_.SetScene(fuzz::kNormal);
        CheckWritten(root.Written());
        switch_.CheckRequests();
    }

  private:
    // Has the agent take the daemon for one that has saved nothing.
    static void ForgetTheLast(const Root& root) {
        root.Save("psyslocation \npsyscontact \npsysname \n");
        ResetSharedSettings();
    }

    Datagram Answer(const std::map<std::string_view, std::string>& texts, bool refusing,
                    const sim::ReceivedCommand& command, const Datagram& proper) {
        if (!command.text.starts_with("Get.")) {
            ++changes_;
            return refusing ? fuzz::ReplyTo(command, "#6") : proper;
        }
        const auto found = texts.find(command.text);
        return found == texts.end() ? proper : fuzz::ReplyTo(command, found->second);
    }

    fuzz::Switch switch_;
    std::atomic<int> changes_{0};  // asked for by the agent
};

}  // namespace
}  // namespace snmpmain

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const agent = new snmpmain::Agent;  // its threads never end
    agent->Take(fuzz::Reader({data, size}));
    return 0;
}
