#include "src/traps/trap_table_update.h"

#include <arpa/inet.h>
#include <pthread.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/base/thread_stack.h"
#include "src/base/trace_log.h"
#include "src/link/config_command.h"
#include "src/link/link.h"
#include "src/traps/event_kinds.h"
#include "src/traps/trap_table.h"

namespace snmpmain {
namespace {

std::mutex trapTableLock;  // held by an update for its whole length
std::atomic<bool> updateWaits = false;
std::uint32_t changesStartedFor = 0;  // as CountTrapTableChanges counts them

int Send(const char* command) {
    ReplyText ignored;
    return SwitchMgmtQuery(0, command, ignored, kString) == 0 ? 0 : -1;
}

// The rows move from place to place, but versions stay with the places: one that differs there is
// set for its own.
int SendVersion(std::uint16_t destination, const TrapRow& row) {
    if (row.address[0] == '\0') {
        return 0;
    }
    const std::optional<std::uint32_t> known = GetPlaceVersion(destination);
    if ((known ? *known : AskPlaceVersion(destination)) == row.version) {
        return 0;
    }
    char command[kCommandSize];
    FormatText(command, "Set.Config.Snmp.TrapVersion%s.%s", DigitsOfPlace(destination).data(),
               row.version == kTrapVersion1 ? "1" : "2");
    if (Send(command) != 0) {
        return -1;
    }
    NotePlaceVersion(destination, row.version);
    return 0;
}

// The row's four settings in one line.
int SendRow(std::uint16_t destination, const TrapRow& row) {
    const PlaceDigits place = DigitsOfPlace(destination);
    const char* digits = place.data();
    in_addr address{};  // 0.0.0.0 for a row that is not in use
    ::inet_pton(AF_INET, row.address, &address);
    char command[kCommandSize];
    FormatText(command,
               "Set.Config.Snmp.TrapAddr%s.%08x;Config.Snmp.TrapPort%s.%d;"
               "Config.Snmp.TrapSeverity%s.%s;Config.Snmp.TrapEnable%s.%s",
               digits, static_cast<unsigned>(ntohl(address.s_addr)), digits,
               static_cast<int>(row.port), digits, NameOfSeverity(row.filter), digits,
               row.state == kTrapRowActive ? "True" : "False");
    return Send(command);
}

int SendRows() {
    if (Send("Set.Cmd.Switch.ReqAdmin;Cmd.Snmp.StartSetup;Cmd.Snmp.BypassDuplicates") != 0) {
        return -1;
    }
    std::uint16_t destination = 0;
    for (const TrapRow& row : GetTrapTable()) {
        if (SendRow(destination, row) != 0 || SendVersion(destination, row) != 0) {
            return -1;
        }
        ++destination;
    }
    return 0;
}

int Reported(int result) {
    if (result != 0) {
        TraceLog(kSevere, "Trap table update thread failed");
    }
    return result;
}

// Sends all rows and puts them in force. Returns 0 or -1.
int Push() {
    const auto lock = LockLocalConfiguration();
    const int sent = Reported(SendRows());
    const int saved =
        Reported(Send("Set.Cmd.Snmp.SaveSetup;Cmd.Snmp.ActSetup;Cmd.Switch.RelAdmin"));
    return sent == 0 ? saved : -1;
}

void* UpdateThread(void*) {
    const std::lock_guard lock(trapTableLock);
    updateWaits = false;
    TraceLog(kTrace, "Updating switch trap table thread started.");
    const std::uint32_t changes = CountTrapTableChanges();
    const int pushed = Push();
    if (MarkTrapTableTold(changes) || pushed != 0) {
        ReadTrapDestinations();  // the table shows what the switch holds
    }
    TraceLog(kTrace, "Updating switch trap table thread ended.");
    return nullptr;
}

// Without attributes of its own the thread gets a stack of the usual size, and is detached later.
int StartDetached(pthread_attr_t* attributes) {
    pthread_t thread;
    if (const int error = ::pthread_create(&thread, attributes, UpdateThread, nullptr);
        error != 0) {
        TraceLog(kSevere, "Failed to start trap table update thread. %s", std::strerror(error));
        return -1;
    }
    if (attributes == nullptr) {
        ::pthread_detach(thread);
    }
    return 0;
}

int StartThread() {
    pthread_attr_t attributes;
    if (const int error = ::pthread_attr_init(&attributes); error != 0) {
        TraceLog(kSevere, "pthread_attr_init() failed. %s", std::strerror(error));
        return StartDetached(nullptr);
    }
    if (const int error = ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        error != 0) {
        TraceLog(kSevere, "pthread_attr_setdetachstate failed. %s", std::strerror(error));
    }
    int result = -1;
    if (const int error = ::pthread_attr_setstacksize(&attributes, SmallStackSize()); error != 0) {
        std::fprintf(stderr, "SNMP:pthread_attr_setstacksize failed. %s\n", std::strerror(error));
    } else {
        result = StartDetached(&attributes);
    }
    ::pthread_attr_destroy(&attributes);
    return result;
}

}  // namespace

bool IsTrapTableUpdateDue() {
    return CountTrapTableChanges() != changesStartedFor;
}

int StartTrapTableUpdate() {
    AssertMainThread();
    changesStartedFor = CountTrapTableChanges();
    if (updateWaits.exchange(true)) {
        return 0;
    }
    if (StartThread() != 0) {
        updateWaits = false;
        if (MarkTrapTableTold(CountTrapTableChanges())) {
            ReadTrapDestinations();
        }
        return -1;
    }
    return 0;
}

}  // namespace snmpmain
