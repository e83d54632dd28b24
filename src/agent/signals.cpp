#include "src/agent/signals.h"

#include <atomic>
#include <csignal>

#include "src/base/trace_log.h"

namespace snmpmain {
namespace {

std::atomic<int> caughtSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "used in a signal handler");

struct sigaction savedSegvAction;

void HandlePipe(int number) {
    caughtSignal = number;
    // Some systems reset a handler when it is called.
    std::signal(SIGPIPE, HandlePipe);
}

// The threads need no ending of their own: the signal raised again ends the whole process.
void HandleSegv(int number) {
    savedSegvAction.sa_flags = 0;
    ::sigaction(number, &savedSegvAction, nullptr);
    std::raise(number);
}

}  // namespace

int InitSignals() {
    std::signal(SIGPIPE, HandlePipe);
    struct sigaction action {};
    action.sa_handler = HandleSegv;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    const int result = ::sigaction(SIGSEGV, &action, &savedSegvAction);
    SetDiagnosticLevel(kSilentLevel);
    return result;
}

void LogCaughtSignals() {
    const int number = caughtSignal.exchange(0);
    if (number == SIGPIPE) {
        TraceLog(kSevere, "Snmp caught and ignored SIGPIPE.\n");
    } else if (number != 0) {
        TraceLog(kSevere, "Snmp received signal %d\n", number);
    }
}

}  // namespace snmpmain
