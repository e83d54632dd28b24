#include "src/link/log_level.h"

#include <cstdio>
#include <cstring>

#include "src/base/main_thread.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"

namespace snmpmain {
namespace {

struct LevelName {
    const char* name;
    int level;
};

// The first name that the setting contains decides.
constexpr LevelName kLevelNames[] = {
    {"Critical", kSevere},
    {"Warn", kError},
    {"Info", kTrace},
};

}  // namespace

int InitLogLevel() {
    AssertMainThread();
    ReplyText reply;
    if (SwitchMgmtQuery(0, "Get.Oper.Switch.DevLogComp", reply, kString) != 0) {
        std::fputs("SNMP:Failed to get remote component\n", stderr);
        return -1;
    }
    if (std::strstr(reply.data(), "Snmp") == nullptr) {
        return 0;
    }
    OpenTraceLog();
    if (SwitchMgmtQuery(0, "Get.Oper.Switch.DevLogLevel", reply, kString) != 0) {
        std::fputs("SNMP:Failed to get logging level\n", stderr);
        return -1;
    }
    for (const LevelName& known : kLevelNames) {
        if (std::strstr(reply.data(), known.name) != nullptr) {
            SetDiagnosticLevel(static_cast<std::uint8_t>(known.level));
            break;
        }
    }
    return 0;
}

}  // namespace snmpmain
