#include "src/conf/snmpd_conf.h"

#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "src/base/paths.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/conf/conf_keys.h"
#include "src/conf/daemon_file.h"
#include "src/link/config_command.h"
#include "src/link/link.h"

namespace snmpmain {
namespace {

constexpr const char* kConfigurationFile = "/kelmor/conf/etc/snmpd.conf";
constexpr const char* kPersistentFile = "/var/ucd-snmp/snmpd.conf";
constexpr const char* kPidFile = "/var/run/snmpd.pid";
constexpr int kLineSize = 256;  // bytes with the terminator; the rest of a longer line is another

// With nanoseconds: the daemon writes its file in pieces.
timespec savedTime{};

int GetModificationTime(timespec& time) {
    struct stat status {};
    if (::stat(RootedPath(kPersistentFile).c_str(), &status) != 0) {
        return -1;
    }
    time = status.st_mtim;
    return 0;
}

using File = std::unique_ptr<std::FILE, decltype([](std::FILE* file) { std::fclose(file); })>;

File OpenForReading(const char* path) {
    return File(std::fopen(RootedPath(path).c_str(), "re"));
}

// Signals the daemon that its pid file names. Returns 0, also when there is none, or -1.
int RestartSnmpd() {
    const File file = OpenForReading(kPidFile);
    if (file == nullptr) {
        return 0;
    }
    char line[kLineSize] = "";
    std::fgets(line, sizeof(line), file.get());
    // 0 and less would address whole groups of processes, this one among them.
    const long pid = std::strtol(line, nullptr, 10);
    return pid > 0 && ::kill(static_cast<pid_t>(pid), SIGHUP) == 0 ? 0 : -1;
}

// What managers can set at the daemon itself.
struct SharedSetting {
    const char* key;
    const char* command;
    ConfigMode mode;
};
constexpr SharedSetting kSharedSettings[] = {
    {"psyslocation", "Config.Snmp.Location.", ConfigMode::kSnmpSetup},
    {"psyscontact", "Config.Snmp.Contact.", ConfigMode::kSnmpSetup},
    {"psysname", "Config.Switch.SymName.", ConfigMode::kSwitchConfiguration},
};

// Takes a line of the daemon's file over. The first key found anywhere in the line has it, also one
// that only stands in the text. Returns whether that is something new.
bool TakeLine(std::string_view line) {
    const auto isIn = [&](const char* key) { return line.find(key) != line.npos; };
    if (std::ranges::none_of(kSharedSettings, isIn, &SharedSetting::key)) {
        return false;
    }
    const auto row = std::ranges::find_if(V2Section(), [&](const ConfKey& candidate) {
        return candidate.key[0] != '\0' && isIn(candidate.key);
    });
    const std::size_t begin = std::min(std::strlen(row->key) + 1, line.size());
    const char* saved = line.substr(begin).data();
    if (WrittenValue(row->value) == line.substr(begin, sizeof(row->value) - 1)) {
        return false;
    }
    CopyText(row->value, sizeof(row->value), saved);
    return true;
}

// Returns whether snmpd's file says something new.
bool ReadPersistentFile() {
    const File file = OpenForReading(kPersistentFile);
    if (file == nullptr) {
        return false;
    }
    bool isNew = false;
    char line[kLineSize];
    // At its end the daemon's file is still being written: a line without an end does not count.
    while (std::fgets(line, sizeof(line), file.get()) != nullptr && std::feof(file.get()) == 0) {
        line[std::strcspn(line, "\n")] = '\0';
        isNew = TakeLine(line) || isNew;
    }
    return isNew;
}

int SendBack(const SharedSetting& setting) {
    const auto row = std::ranges::find(V2Section(), std::string_view(setting.key), &ConfKey::key);
    char command[kCommandSize];
    FormatText(command, "%s%s", setting.command, row->value);
    return SendConfigCommand(0, command, setting.mode);
}

int WriteConfiguration() {
    const std::string path = RootedPath(kConfigurationFile);
    std::fputs("SNMP:Writing configuration information to file\n", stderr);
    bool v3Enabled = false;
    if (WriteV2Section(path.c_str(), v3Enabled) != 0) {
        std::fputs("SNMP:Error writing SNMP configuration data\n", stderr);
        return -1;
    }
    if (v3Enabled) {
        std::fputs("SNMP:Writing v3 configuration information to file\n", stderr);
        if (AppendV3Section(path.c_str()) != 0) {
            std::fputs("SNMP:Error writing SNMP v3 configuration data\n", stderr);
            return -1;
        }
    }
    return 0;
}

}  // namespace

int InitSnmpdConf() {
    // The misspelling is known to those who watch for this line.
    std::fputs("SNMP:Initializing configuration paramenters\n", stderr);
    ReadConfSettings();
    if (WriteConfiguration() != 0) {
        return -1;
    }
    std::fputs("SNMP:Saving configuration file stats\n", stderr);
    if (GetModificationTime(savedTime) != 0) {
        std::fputs("SNMP:Error saving SNMP configuration file stats\n", stderr);
        return -1;
    }
    std::fputs("SNMP:Forcing snmpd configuration update\n", stderr);
    if (RestartSnmpd() != 0) {
        std::fputs("SNMP:Error restarting snmpd with correct configuration data\n", stderr);
    }
    std::fputs("SNMP:Configuration parameters initialized\n", stderr);
    return 0;
}

bool SnmpdConfChanged() {
    timespec time{};
    if (GetModificationTime(time) != 0) {
        TraceLog(kSevere, "stat command failed on snmpd.conf file");
        return false;
    }
    return time.tv_sec != savedTime.tv_sec || time.tv_nsec != savedTime.tv_nsec;
}

void SyncSnmpdPersistent() {
    const bool isNew = ReadPersistentFile();
    GetModificationTime(savedTime);  // also of a file that may not be read: once is enough
    if (!isNew) {
        return;
    }
    for (const SharedSetting& setting : kSharedSettings) {
        if (SendBack(setting) != 0) {
            return;
        }
    }
}

}  // namespace snmpmain
