#include "src/traps/trap_table.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <mutex>
#include <utility>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/worked_with.h"
#include "src/traps/event_kinds.h"

namespace snmpmain {
namespace {

struct GuardedTable {
    std::mutex mutex;
    std::mutex kept;  // taken before the other
    TrapTable rows;
    std::uint32_t changes = 0;  // made to the rows in this process
    std::uint32_t told = 0;     // of these, known to the switch
    bool readingWanted = false;
    std::array<std::optional<std::uint32_t>, kTrapDestinations> placeVersions;
};

GuardedTable table;

// Changes one row. Returns 0, or -1 when there is no such row.
template <typename Change>
int ChangeRow(std::uint16_t index, Change change) {
    const std::lock_guard lock(table.mutex);
    if (index >= table.rows.size()) {
        return -1;
    }
    change(table.rows[index]);
    ++table.changes;
    return 0;
}

enum class Replaced { kDone, kLater, kReadAnew };

// Shows what the switch holds, unless a manager had changed that before the reading began and the
// switch did not know yet, or has changed it since. The thread that tells the switch asks for
// another reading then, unless it has ended.
Replaced ReplaceRows(const TrapTable& rows, std::uint32_t toldBefore) {
    const std::scoped_lock locks(table.kept, table.mutex);
    if (table.changes == toldBefore) {
        table.rows = rows;
        return Replaced::kDone;
    }
    table.readingWanted = table.changes != table.told;
    return table.readingWanted ? Replaced::kLater : Replaced::kReadAnew;
}

std::uint32_t CountToldChanges() {
    const std::lock_guard lock(table.mutex);
    return table.told;
}

bool IsUsed(const TrapRow& row) {
    return row.address[0] != '\0';
}

std::pair<std::uint32_t, std::uint32_t> IndexOf(const TrapRow& row) {
    return {ntohl(::inet_addr(row.address)), row.port};
}

bool IsSameDestination(const TrapRow& a, const TrapRow& b) {
    return std::strcmp(a.address, b.address) == 0 && a.port == b.port;
}

// Asks for one setting of a destination.
int AskSetting(const char* setting, std::uint16_t destination, ReplyText& reply,
               ConversionType type = kString, std::uint32_t* number = nullptr) {
    std::array<char, kCommandSize> command;
    FormatText(command, "Get.Config.Snmp.%s%s", setting, DigitsOfPlace(destination).data());
    const Answer answer = AskSwitch(0, command.data(), reply, type, number);
    NoteWorkedWith(Worker::kTrapDestinations, command.data(), type, answer, reply);
    return answer.outcome == Outcome::kAnswered ? 0 : -1;
}

// Asks whether there is a destination, and where. Returns 0 or -1.
int ReadAddress(std::uint16_t destination, TrapRow& row) {
    ReplyText address;
    if (AskSetting("TrapAddr", destination, address, kIpAddress) != 0) {
        return -1;
    }
    if (std::strcmp(address.data(), "0.0.0.0") == 0 ||
        std::strcmp(address.data(), "255.255.255.255") == 0) {
        NotePlaceVersion(destination, std::nullopt);
    } else {
        CopyText(row.address, sizeof(row.address), address.data());
    }
    return 0;
}

int ReadPort(std::uint16_t destination, TrapRow& row) {
    ReplyText reply;
    return AskSetting("TrapPort", destination, reply, kInteger, &row.port);
}

int ReadFilter(std::uint16_t destination, TrapRow& row) {
    ReplyText reply;
    if (AskSetting("TrapSeverity", destination, reply) != 0) {
        return -1;
    }
    row.filter = SeverityFromName(reply.data());
    return 0;
}

int ReadState(std::uint16_t destination, TrapRow& row) {
    ReplyText reply;
    if (AskSetting("TrapEnable", destination, reply) != 0) {
        return -1;
    }
    row.state = std::strstr(reply.data(), "True") != nullptr ? kTrapRowActive : kTrapRowInactive;
    return 0;
}

int ReadVersion(std::uint16_t destination, TrapRow& row) {
    row.version = AskPlaceVersion(destination);
    return 0;
}

// What is read of a destination, in this order.
constexpr int (*kSettings[])(std::uint16_t destination, TrapRow& row) = {
    ReadAddress, ReadPort, ReadFilter, ReadState, ReadVersion};

// Removes rows that repeat an earlier one. The row that moves into a removed one's place is not
// compared with that earlier one again: of three equal rows two remain.
void RemoveDoubles(TrapTable& rows, int& used) {
    for (int i = 0; i < used; ++i) {
        for (int j = i + 1; j < used; ++j) {
            const auto row = rows.begin() + j;
            if (IsSameDestination(rows[static_cast<std::size_t>(i)], *row)) {
                std::move(row + 1, rows.begin() + used, row);
                --used;
                rows[static_cast<std::size_t>(used)] = {};
            }
        }
    }
}

const char* NameOfState(std::uint32_t state) {
    return state == kTrapRowActive ? "Active" : state == kTrapRowInactive ? "Inactive" : "";
}

}  // namespace

void ResetTrapTable() {
    const std::lock_guard lock(table.mutex);
    table.rows = {};
    table.changes = table.told = 0;
    table.readingWanted = false;
    table.placeVersions = {};
}

int ReadTrapDestinations() {
    TrapReading reading;
    return DoAll([&reading] { return reading.Step(); });
}

Progress TrapReading::Step() {
    if (destination_ == kTrapDestinations) {
        return Replace();
    }
    if (destination_ == 0 && setting_ == 0) {
        ForgetWorkedWith(Worker::kTrapDestinations);  // places may be empty now
        toldBefore_ = CountToldChanges();
    }
    TrapRow& row = rows_[static_cast<std::size_t>(used_)];
    if (kSettings[setting_](destination_, row) != 0) {
        NoteWorkFailed(Worker::kTrapDestinations);
        return Progress::kFailed;
    }
    const bool isLast = !IsUsed(row) || setting_ + 1 == std::size(kSettings);
    used_ += IsUsed(row) && isLast ? 1 : 0;
    destination_ = static_cast<std::uint16_t>(destination_ + (isLast ? 1 : 0));
    setting_ = isLast ? 0 : setting_ + 1;
    return Progress::kMore;
}

Progress TrapReading::Replace() {
    RemoveDoubles(rows_, used_);
    std::stable_sort(rows_.begin(), rows_.begin() + used_,
                     [](const TrapRow& a, const TrapRow& b) { return IndexOf(a) < IndexOf(b); });
    if (ReplaceRows(rows_, toldBefore_) == Replaced::kReadAnew) {
        *this = {};
        return Progress::kMore;
    }
    DumpTrapTable();
    return Progress::kDone;
}

TrapTable GetTrapTable() {
    const std::lock_guard lock(table.mutex);
    return table.rows;
}

int GetTrapRow(std::uint32_t index, TrapRow& row) {
    const std::lock_guard lock(table.mutex);
    if (index >= table.rows.size() || !IsUsed(table.rows[index])) {
        TraceLog(kSevere, "Trap table index: %i, out of range\n", static_cast<int>(index));
        return -1;
    }
    row = table.rows[index];
    return 0;
}

std::optional<std::uint32_t> GetPlaceVersion(std::uint16_t place) {
    const std::lock_guard lock(table.mutex);
    return table.placeVersions[place];
}

void NotePlaceVersion(std::uint16_t place, std::optional<std::uint32_t> version) {
    const std::lock_guard lock(table.mutex);
    table.placeVersions[place] = version;
}

std::uint32_t AskPlaceVersion(std::uint16_t place) {
    ReplyText reply;
    std::array<char, kCommandSize> command;
    FormatText(command, "Get.Config.Snmp.TrapVersion%s", DigitsOfPlace(place).data());
    const Answer answer = AskSwitch(0, command.data(), reply, kString);
    NoteWorkedWith(Worker::kTrapDestinations, command.data(), kString, answer, reply);
    const Outcome outcome = answer.outcome;
    // Older switches know no version.
    const bool version1 =
        outcome == Outcome::kAnswered && std::strchr(reply.data(), '1') != nullptr;
    const std::uint32_t version = version1 ? kTrapVersion1 : kTrapVersion2c;
    if (outcome != Outcome::kNoAnswer) {
        NotePlaceVersion(place, version);
    }
    return version;
}

PlaceDigits DigitsOfPlace(std::uint16_t place) {
    PlaceDigits digits{};
    if (place > 0) {
        FormatText(digits, "%d", place);
    }
    return digits;
}

std::uint16_t GetTrapRowCount() {
    const std::lock_guard lock(table.mutex);
    const auto unused = std::ranges::find_if_not(table.rows, IsUsed);
    return static_cast<std::uint16_t>(unused - table.rows.begin());
}

int FindTrapRow(const char* address, std::uint32_t port, std::uint16_t& index) {
    const std::lock_guard lock(table.mutex);
    index = kTrapDestinations;
    for (std::uint16_t row = 0; row < kTrapDestinations; ++row) {
        const TrapRow& candidate = table.rows[row];
        if (!IsUsed(candidate)) {
            index = std::min(index, row);
        } else if (std::strstr(candidate.address, address) != nullptr && candidate.port == port) {
            index = row;
            return 0;
        }
    }
    return index < kTrapDestinations ? 1 : -1;
}

int AddTrapClient(std::uint16_t index, const char* address, std::uint32_t port, std::uint32_t state,
                  std::uint32_t filter, std::uint32_t version) {
    TraceLog(kTrace, "Adding trap client: %d\n", index);
    return ChangeRow(index, [&](TrapRow& row) {
        row = {.port = port, .filter = filter, .state = state, .version = version};
        CopyText(row.address, sizeof(row.address), address);
    });
}

int RemoveTrapClient(std::uint16_t index) {
    TraceLog(kTrace, "Removing trap client: %d\n", index);
    return ChangeRow(index, [](TrapRow& row) { row = {}; });
}

int SetTrapRowFilter(std::uint16_t index, std::uint32_t filter) {
    return ChangeRow(index, [&](TrapRow& row) { row.filter = filter; });
}

std::unique_lock<std::mutex> KeepTrapRows() {
    return std::unique_lock(table.kept);
}

std::uint32_t CountTrapTableChanges() {
    const std::lock_guard lock(table.mutex);
    return table.changes;
}

bool MarkTrapTableTold(std::uint32_t changes) {
    const std::lock_guard lock(table.mutex);
    table.told = std::max(table.told, changes);
    return std::exchange(table.readingWanted, false);
}

void DumpTrapTable() {
    if (!IsTraced(kTrace)) {
        return;
    }
    TraceLog(kTrace, "\nTrapTable:");
    TraceLog(kTrace, "Index  IP Address       Port Filter State    Version");
    int index = 0;
    for (const TrapRow& row : GetTrapTable()) {
        if (IsUsed(row)) {
            TraceLog(kTrace, "%-7i%-17s%-5i%-7i%-9s%-8s", index, row.address,
                     static_cast<int>(row.port), static_cast<int>(row.filter),
                     NameOfState(row.state), row.version == kTrapVersion1 ? "V1" : "V2");
        }
        ++index;
    }
    TraceLog(kTrace, "%s", "");
}

}  // namespace snmpmain
