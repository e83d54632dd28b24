#include "src/conf/snmpd_conf.h"

#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>

#include "src/base/paths.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/conf/conf_file.h"
#include "src/conf/conf_keys.h"
#include "src/link/config_command.h"
#include "src/link/link.h"

namespace snmpmain {
namespace {

constexpr const char* kConfigurationFile = "/kelmor/conf/etc/snmpd.conf";
constexpr const char* kPersistentFile = "/var/ucd-snmp/snmpd.conf";
constexpr const char* kPidFile = "/var/run/snmpd.pid";
constexpr int kLineSize = 256;  // bytes with the terminator; the rest of a longer line is another

// Of the daemon's own file, when it was looked at last; with nanoseconds, since the daemon writes
// it in pieces.
timespec savedTime{};

bool cyclePending = false;  // the last one failed

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
int ReloadSnmpd() {
    const File file = OpenForReading(kPidFile);
    if (file == nullptr) {
        return 0;
    }
    char line[kLineSize] = "";
    std::fgets(line, sizeof(line), file.get());
    // 0 and less would address whole groups of processes, this one among them.
    const long pid = std::strtol(line, nullptr, 10);
    return pid > 0 && pid <= INT_MAX && ::kill(static_cast<pid_t>(pid), SIGHUP) == 0 ? 0 : -1;
}

// What managers can set at the daemon itself.
struct SharedSetting {
    const char* key;
    const char* command;
    ConfigMode mode;
    char saved[kConfValueSize] = "";  // what the daemon had saved when its file was read last
};
SharedSetting sharedSettings[] = {
    {"psyslocation", "Config.Snmp.Location.", ConfigMode::kSnmpSetup},
    {"psyscontact", "Config.Snmp.Contact.", ConfigMode::kSnmpSetup},
    {"psysname", "Config.Switch.SymName.", ConfigMode::kSwitchConfiguration},
};

// A line of the daemon's file with one of these settings.
struct SavedLine {
    ConfKey& row;           // that of the first key found anywhere in the line, also in the text
    SharedSetting* shared;  // the setting that the row has; null when it is another row
    std::string_view value;
};

template <typename Function>
void TakeLine(std::string_view line, Function take) {
    const auto isIn = [&](const char* key) { return line.find(key) != line.npos; };
    if (std::ranges::none_of(sharedSettings, isIn, &SharedSetting::key)) {
        return;
    }
    const auto row = std::ranges::find_if(V2Section(), [&](const ConfKey& candidate) {
        return candidate.key[0] != '\0' && isIn(candidate.key);
    });
    const auto shared =
        std::ranges::find(sharedSettings, std::string_view(row->key), &SharedSetting::key);
    const std::size_t begin = std::min(std::strlen(row->key) + 1, line.size());
    take(SavedLine{*row, shared != std::end(sharedSettings) ? shared : nullptr,
                   line.substr(begin, kConfValueSize - 1)});
}

template <typename Function>
void ReadPersistentFile(Function take) {
    const File file = OpenForReading(kPersistentFile);
    char line[kLineSize];
    // At its end the daemon's file is still being written: a line without an end does not count.
    while (file != nullptr && std::fgets(line, sizeof(line), file.get()) != nullptr &&
           std::feof(file.get()) == 0) {
        line[std::strcspn(line, "\n")] = '\0';
        TakeLine(line, take);
    }
}

void Remember(const SavedLine& line) {
    if (line.shared != nullptr) {
        CopyText(line.shared->saved, sizeof(line.shared->saved), line.value.data());
    }
}

// Takes over what is new in the daemon's file: neither what was written for it, nor what it had
// saved before (it keeps a setting that is cleared at the switch). Returns whether there was
// something.
bool TakeWhatIsNew() {
    bool anyNew = false;
    ReadPersistentFile([&](const SavedLine& line) {
        const bool isKnown = WrittenValue(line.row.value) == line.value ||
                             (line.shared != nullptr && line.shared->saved == line.value);
        Remember(line);
        if (!isKnown) {
            CopyText(line.row.value, sizeof(line.row.value), line.value.data());
            anyNew = true;
        }
    });
    return anyNew;
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

int RunCycle() {
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
    ReadPersistentFile(Remember);
    std::fputs("SNMP:Forcing snmpd configuration update\n", stderr);
    if (ReloadSnmpd() != 0) {
        std::fputs("SNMP:Error restarting snmpd with correct configuration data\n", stderr);
    }
    std::fputs("SNMP:Configuration parameters initialized\n", stderr);
    return 0;
}

}  // namespace

int InitSnmpdConf() {
    cyclePending = RunCycle() != 0;
    return cyclePending ? -1 : 0;
}

void RefreshSnmpdConf() {
    if (SnmpdConfChanged()) {
        SyncSnmpdPersistent();
    }
    InitSnmpdConf();
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
    GetModificationTime(savedTime);  // first: what is written meanwhile is read the next time
    if (TakeWhatIsNew()) {
        for (const SharedSetting& setting : sharedSettings) {
            if (SendBack(setting) != 0) {
                break;
            }
        }
    }
    if (cyclePending) {
        InitSnmpdConf();
    }
}

}  // namespace snmpmain
