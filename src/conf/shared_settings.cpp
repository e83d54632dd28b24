#include "src/conf/shared_settings.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "src/base/main_thread.h"
#include "src/base/paths.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/conf/conf_file.h"
#include "src/conf/conf_keys.h"
#include "src/link/config_command.h"
#include "src/link/link.h"
#include "src/link/reachability.h"

namespace snmpmain {
namespace {

constexpr const char* kPersistentFile = "/var/ucd-snmp/snmpd.conf";
constexpr int kLineSize = 256;  // bytes with the terminator; the rest of a longer line is another

struct SharedSetting {
    const char* key;  // of its row in ConfKeyTable
    const char* setting;
    ConfigMode mode;
    std::optional<std::string> agreed;  // as it stands in the daemon's file; unknown before
    std::string saved;                  // what the daemon's file said when it was read last
    bool unsent = false;                // `saved` is still to go to the switch
    int attempts = 0;                   // to send it
};

// Somebody else may hold the admin rights for a while.
constexpr int kMostAttempts = 5;

// What the daemon never comes to say must not keep it reading.
constexpr int kReminders = 2;

struct State {
    SharedSetting settings[3] = {
        {"psyslocation", "Config.Snmp.Location.", ConfigMode::kSnmpSetup, {}, {}},
        {"psyscontact", "Config.Snmp.Contact.", ConfigMode::kSnmpSetup, {}, {}},
        {"psysname", "Config.Switch.SymName.", ConfigMode::kSwitchConfiguration, {}, {}},
    };
    timespec readTime{};  // of the daemon's file when it was read; it is written in pieces
    // When the daemon was told to read what was written for it; zero when it was not.
    timespec writtenTime{};
    int remindersLeft = 0;
};

State state;

using File = std::unique_ptr<std::FILE, decltype([](std::FILE* file) { std::fclose(file); })>;

// Calls `take` for every whole line. At its end the daemon's file may still be being written: a
// line without an end does not count.
template <typename Function>
void ForEachLine(const char* path, Function take) {
    const File file(std::fopen(path, "re"));
    char line[kLineSize];
    while (file != nullptr && std::fgets(line, sizeof(line), file.get()) != nullptr &&
           std::feof(file.get()) == 0) {
        line[std::strcspn(line, "\n")] = '\0';
        take(std::string_view(line));
    }
}

int GetModificationTime(const char* path, timespec& time) {
    struct stat status {};
    if (::stat(path, &status) != 0) {
        return -1;
    }
    time = status.st_mtim;
    return 0;
}

bool IsBefore(const timespec& a, const timespec& b) {
    return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

// snmpd drops the blanks around what it reads.
std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

bool IsSame(std::string_view a, std::string_view b) {
    return Trimmed(a) == Trimmed(b);
}

const ConfKey& RowOf(const SharedSetting& setting) {
    return *std::ranges::find(GetConfKeys(), std::string_view(setting.key), &ConfKey::key);
}

// What a line of the daemon's file says, and to which row that belongs: the one of the first key
// that is found anywhere in the line, also in the text.
struct SavedLine {
    const ConfKey& row;
    SharedSetting* setting;  // null when it is another row
    std::string_view value;
};

template <typename Function>
void ForEachSavedLine(const char* path, Function take) {
    ForEachLine(path, [&](std::string_view line) {
        const auto isIn = [&](const char* key) { return line.find(key) != line.npos; };
        if (std::ranges::none_of(state.settings, isIn, &SharedSetting::key)) {
            return;
        }
        const auto row = std::ranges::find_if(
            GetConfKeys(), [&](const ConfKey& row) { return row.key[0] != '\0' && isIn(row.key); });
        const auto setting =
            std::ranges::find(state.settings, std::string_view(row->key), &SharedSetting::key);
        const std::size_t begin = std::min(std::strlen(row->key) + 1, line.size());
        take(SavedLine{*row, setting != std::end(state.settings) ? setting : nullptr,
                       line.substr(begin, kMostConfText)});
    });
}

// Whether the daemon has read what was written for it: it does so at once, and then saves its file.
bool HasReadWhatWasWritten() {
    return state.writtenTime.tv_sec != 0 && state.readTime.tv_sec > state.writtenTime.tv_sec + 1;
}

// Whether the daemon says something that managers have set there. What it said before is not new
// until it has read what was written for it, nor after the setting was cleared at the switch: it
// never takes over an empty text.
bool IsNewAtDaemon(const SharedSetting& setting, std::string_view value) {
    const bool isOld =
        IsSame(value, setting.saved) && (setting.agreed == "" || !HasReadWhatWasWritten());
    return setting.agreed.has_value() && !isOld && !IsSame(value, *setting.agreed);
}

void TakeLine(const SavedLine& line) {
    if (line.setting == nullptr) {
        if (!IsSame(line.value, WrittenValue(*line.row.value))) {
            *line.row.value = line.value;
        }
        return;
    }
    line.setting->unsent = line.setting->unsent || IsNewAtDaemon(*line.setting, line.value);
    line.setting->saved = line.value;
}

void ReadDaemonSide() {
    const std::string path = RootedPath(kPersistentFile);
    // First: what is written meanwhile is read the next time.
    if (GetModificationTime(path.c_str(), state.readTime) != 0) {
        return;
    }
    ForEachSavedLine(path.c_str(), TakeLine);
}

// Brings what the daemon says to the switch, unless that has come to say the same. Returns 0 or -1.
int Send(SharedSetting& setting) {
    const ConfKey& row = RowOf(setting);
    *row.value = setting.saved;
    ReplyText reply;
    const std::uint16_t result = SwitchMgmtQuery(0, row.command, reply, row.type);
    if (result == kQueryFailed) {
        return -1;
    }
    // There are texts that the switch takes but cannot tell.
    const std::string before = result == 0 ? WrittenValue(reply.data()) : *setting.agreed;
    if (IsSame(before, setting.saved)) {
        return 0;
    }
    if (!IsSame(before, *setting.agreed)) {
        TraceLog(kSevere, "%s was set at snmpd and at the switch: \"%s\" replaces \"%s\"",
                 setting.key, setting.saved.c_str(), before.c_str());
    }
    char command[kCommandSize];
    FormatText(command, "%s%s", setting.setting, setting.saved.c_str());
    return SendConfigCommand(0, command, setting.mode);
}

}  // namespace

void RecallAgreement(const char* path) {
    if (GetModificationTime(path, state.writtenTime) != 0) {
        return;
    }
    ForEachSavedLine(path, [](const SavedLine& line) {
        if (line.setting != nullptr) {
            line.setting->agreed = line.value;
        }
    });
    // What the daemon has saved since then is news; what it had before, it may go on saying.
    const std::string own = RootedPath(kPersistentFile);
    timespec saved{};
    const bool isNews =
        GetModificationTime(own.c_str(), saved) == 0 && IsBefore(state.writtenTime, saved);
    ForEachSavedLine(own.c_str(), [isNews](const SavedLine& line) {
        if (line.setting != nullptr) {
            const std::string agreed = line.setting->agreed.value_or("");
            line.setting->saved = isNews && !agreed.empty() ? agreed : std::string(line.value);
        }
    });
}

bool SnmpdConfChanged() {
    AssertMainThread();
    timespec time{};
    if (GetModificationTime(RootedPath(kPersistentFile).c_str(), time) != 0) {
        TraceLog(kSevere, "stat command failed on snmpd.conf file");
        return false;
    }
    return IsBefore(time, state.readTime) || IsBefore(state.readTime, time);
}

bool SnmpdHasOwnFile() {
    timespec ignored{};
    return GetModificationTime(RootedPath(kPersistentFile).c_str(), ignored) == 0;
}

bool CarryToSwitch() {
    AssertMainThread();
    ReadDaemonSide();
    bool sent = false;
    for (SharedSetting& setting : state.settings) {
        if (!setting.unsent) {
            continue;
        }
        const bool isDone = Send(setting) == 0;
        if (isDone || (IsAnswering(0) && ++setting.attempts >= kMostAttempts)) {
            // What the switch will not take is given up: with the next cycle the daemon gets what
            // the switch has.
            setting.agreed = setting.saved;
            setting.unsent = false;
            setting.attempts = 0;
            sent = true;
        }
    }
    return sent;
}

bool HasUnsentSettings() {
    return std::ranges::any_of(state.settings, &SharedSetting::unsent);
}

void NoteAgreement() {
    for (SharedSetting& setting : state.settings) {
        const std::string& value = *RowOf(setting).value;
        if (!setting.unsent) {
            setting.agreed = IsLeftOut(value) ? "" : WrittenValue(value);
        }
    }
    state.writtenTime = {};
    state.remindersLeft = kReminders;
}

void NoteDaemonTold() {
    ::clock_gettime(CLOCK_REALTIME, &state.writtenTime);
}

bool TakeDaemonBehind() {
    const bool isBehind = std::ranges::any_of(state.settings, [](const SharedSetting& setting) {
        return !setting.unsent && !setting.agreed.value_or("").empty() &&
               !IsSame(setting.saved, *setting.agreed);
    });
    return isBehind && state.remindersLeft-- > 0;
}

void ResetSharedSettings() {
    state = {};
}

}  // namespace snmpmain
