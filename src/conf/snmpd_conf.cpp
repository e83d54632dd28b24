#include "src/conf/snmpd_conf.h"

#include <signal.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "src/base/main_thread.h"
#include "src/base/paths.h"
#include "src/base/trace_log.h"
#include "src/base/whole_file.h"
#include "src/conf/conf_file.h"
#include "src/conf/conf_keys.h"

namespace snmpmain {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kConfigurationFile = "/kelmor/conf/etc/snmpd.conf";
constexpr const char* kPidFile = "/var/run/snmpd.pid";
constexpr int kPidLineSize = 256;
constexpr std::chrono::seconds kRetryInterval{30};

// Managers may set something while the text is made: it is then made anew, this often.
constexpr int kAttempts = 5;

enum class Pending {
    kNothing,
    kCycle,  // the last one failed
    kFile    // it could not write its file
};
Pending pending = Pending::kNothing;
Clock::time_point nextRetry;
bool underWay = false;

std::string ConfigurationPath() {
    return RootedPath(kConfigurationFile);
}

// Signals the daemon that its pid file names. Returns 0, also when there is none, or -1.
int ReloadSnmpd() {
    const std::unique_ptr<std::FILE, decltype([](std::FILE* file) { std::fclose(file); })> file(
        std::fopen(RootedPath(kPidFile).c_str(), "re"));
    if (file == nullptr) {
        return 0;
    }
    char line[kPidLineSize];
    const char* text = std::fgets(line, sizeof(line), file.get());
    // 0 and less would address whole groups of processes, this one among them.
    const long pid = text == nullptr ? 0 : std::strtol(text, nullptr, 10);
    if (pid <= 0 || pid > INT_MAX || ::kill(static_cast<pid_t>(pid), SIGHUP) != 0) {
        return -1;
    }
    NoteDaemonTold();
    return 0;
}

// A file that cannot be opened is left as it is, and so is one that cannot be written. Returns 0 or
// -1 (both logged).
int WriteConfiguration() {
    const FileResult result = ReplaceFile(ConfigurationPath(), ConfText(GetConfSettings()));
    if (result == FileResult::kCannotOpen) {
        TraceLog(kSevere, "Failed to open 'snmpd.conf' file");
    } else if (result == FileResult::kCannotWrite) {
        TraceLog(kSevere, "Failed to write 'snmpd.conf' file: %s", std::strerror(errno));
    }
    return result == FileResult::kReplaced ? 0 : -1;
}

// What managers set at the daemon from now on until it reads the file would be lost: it is looked
// for once more when the file is written.
int WriteBothSides() {
    std::fputs("SNMP:Writing configuration information to file\n", stderr);
    int written = -1;
    for (int i = 0; i < kAttempts && (i == 0 || SnmpdConfChanged()); ++i) {
        CarryToSwitch();
        written = WriteConfiguration();
    }
    if (IsV3Enabled(GetConfSettings())) {
        std::fputs("SNMP:Writing v3 configuration information to file\n", stderr);
    }
    if (written != 0) {
        std::fputs("SNMP:Error writing SNMP configuration data\n", stderr);
    }
    return written;
}

// What is done with the settings that have been read. Returns 0 or -1.
int PutInForce() {
    const int written = WriteBothSides();
    std::fputs("SNMP:Saving configuration file stats\n", stderr);
    if (!SnmpdHasOwnFile()) {
        std::fputs("SNMP:Error saving SNMP configuration file stats\n", stderr);
        return -1;
    }
    std::fputs("SNMP:Forcing snmpd configuration update\n", stderr);
    if (written == 0) {
        NoteAgreement();
    }
    if (ReloadSnmpd() != 0) {
        std::fputs("SNMP:Error restarting snmpd with correct configuration data\n", stderr);
    }
    std::fputs("SNMP:Configuration parameters initialized\n", stderr);
    pending = written == 0 ? Pending::kNothing : Pending::kFile;
    return 0;
}

}  // namespace

void RecallSnmpdConf() {
    RecallAgreement(ConfigurationPath().c_str());
}

int InitSnmpdConf() {
    BeginSnmpdConf();
    return DoAll(StepSnmpdConf);
}

void BeginSnmpdConf() {
    AssertMainThread();
    underWay = true;
    pending = Pending::kCycle;
    nextRetry = Clock::now() + kRetryInterval;
    // The misspelling is known to those who watch for this line.
    std::fputs("SNMP:Initializing configuration paramenters\n", stderr);
    BeginConfSettings();
}

bool IsSnmpdConfUnderWay() {
    return underWay;
}

Progress StepSnmpdConf() {
    AssertMainThread();
    const Progress read = StepConfSettings();
    if (read == Progress::kMore) {
        return read;
    }
    underWay = false;
    if (read == Progress::kFailed) {
        std::fputs("SNMP:Error reading SNMP configuration data\n", stderr);
        return read;
    }
    return PutInForce() == 0 ? Progress::kDone : Progress::kFailed;
}

void SyncSnmpdPersistent() {
    AssertMainThread();
    const bool sent = CarryToSwitch();
    if (pending == Pending::kCycle) {
        BeginSnmpdConf();
        return;
    }
    if (sent) {
        // The switch will tell of its change, and that leads to another cycle. But a daemon that is
        // started before has to find what its managers have set.
        if (WriteConfiguration() == 0) {
            NoteAgreement();
        }
    }
    if (TakeDaemonBehind()) {
        ReloadSnmpd();
    }
}

void ResumeSnmpdConf() {
    AssertMainThread();
    if ((pending == Pending::kNothing && !HasUnsentSettings()) || Clock::now() < nextRetry) {
        return;
    }
    nextRetry = Clock::now() + kRetryInterval;
    if (pending == Pending::kNothing) {
        SyncSnmpdPersistent();
    } else if (pending == Pending::kCycle || WriteConfiguration() == 0) {
        // The daemon is not made to read a file that is as it was.
        BeginSnmpdConf();
    }
}

}  // namespace snmpmain
