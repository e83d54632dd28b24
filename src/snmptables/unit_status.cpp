#include "src/snmptables/unit_status.h"

#include <algorithm>
#include <cstring>
#include <ctime>

#include "src/link/link.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"

namespace snmpmain {
namespace {

constexpr std::time_t kMemoLifetime = 3;  // seconds

struct StatusMemo {
    std::time_t time = 0;  // when it was computed; 0 when nothing is remembered
    std::uint32_t domain = 0;
    std::uint16_t status = kUnitUnknown;
    int result = 0;
};

StatusMemo memo;

struct Findings {
    bool warning = false;
    bool failure = false;
};

// Seconds on a clock that nobody sets: the memo must not outlive a change of the date.
std::time_t MonotonicSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

bool Contains(const ReplyText& text, const char* word) {
    return std::strstr(text.data(), word) != nullptr;
}

bool IsBeingReset(std::uint32_t domain) {
    std::uint32_t reset = 0;
    return GetUnitReset(domain, reset) == 0 && reset == 1;
}

// Redundant parts: one bad one is a warning, none left good a failure of the unit. `path` names
// their kind.
int JudgeRedundantParts(std::uint32_t domain, const char* path, std::uint32_t count,
                        Findings& findings) {
    std::uint32_t good = 0;
    for (std::uint32_t part = 0; part < count; ++part) {
        ReplyText reply;
        if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.Chassis.0.%s.%d", path,
                             static_cast<int>(part)) != 0) {
            return -1;
        }
        if (Contains(reply, "Good")) {
            ++good;
        }
    }
    if (good != count) {
        findings.warning = true;
        findings.failure = findings.failure || good == 0;
    }
    return 0;
}

// A blade whose temperature is unavailable counts as cool.
void JudgeBlades(std::uint32_t domain, std::uint32_t count, Findings& findings) {
    for (std::uint32_t blade = 0; blade < std::min(count, kMaxBlades); ++blade) {
        ReplyText reply;
        if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.Blade.%d.TempStatus",
                             static_cast<int>(blade)) != 0) {
            continue;
        }
        findings.warning = findings.warning || Contains(reply, "Warm");
        findings.failure = findings.failure || Contains(reply, "Overheating");
    }
}

int JudgePorts(std::uint32_t domain, std::uint32_t count, Findings& findings) {
    for (std::uint32_t port = 0; port < count; ++port) {
        ReplyText reply;
        if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.UserPort.0.%d.OperState",
                             static_cast<int>(port)) != 0) {
            return -1;
        }
        findings.warning = findings.warning || Contains(reply, "Down");
    }
    return 0;
}

int JudgeOperState(std::uint32_t domain, Findings& findings) {
    ReplyText reply;
    if (SwitchMgmtQuery(domain, "Get.Oper.Switch.OperState", reply, kString) != 0) {
        return -1;
    }
    findings.warning =
        findings.warning || Contains(reply, "Offline") || Contains(reply, "Diagnostics");
    findings.failure = findings.failure || Contains(reply, "Down");
    return 0;
}

int ComputeUnitStatus(std::uint32_t domain, std::uint16_t& status) {
    bool answered = true;
    const auto count = [&](std::uint32_t (*get)(std::uint32_t)) {
        const std::uint32_t parts = get(domain);
        answered = answered && WasAnswered();
        return parts;
    };
    const std::uint32_t powerSupplies = count(GetPowerSupplyCount);
    const std::uint32_t fans = count(GetFanCount);
    const std::uint32_t blades = count(GetBladeCount);
    const std::uint32_t ports = count(GetMaxPorts);

    Findings findings;
    if (!answered || JudgeRedundantParts(domain, "PowerSupply", powerSupplies, findings) != 0 ||
        JudgeRedundantParts(domain, "Fan", fans, findings) != 0) {
        return -1;
    }
    JudgeBlades(domain, blades, findings);
    if (JudgePorts(domain, ports, findings) != 0 || JudgeOperState(domain, findings) != 0) {
        return -1;
    }
    status = findings.failure ? kUnitFailed : findings.warning ? kUnitWarning : kUnitOk;
    SetUnitStatus(domain, status);
    return 0;
}

}  // namespace

int ReadUnitState(std::uint32_t domain, std::uint16_t& state) {
    if (IsBeingReset(domain)) {
        state = kUnitStateOffline;
        return 0;
    }
    state = kUnitStateUnknown;
    ReplyText reply;
    if (SwitchMgmtQuery(domain, "Get.Oper.Switch.OperState", reply, kString) != 0) {
        return -1;
    }
    if (Contains(reply, "Offline") || Contains(reply, "Diagnostics")) {
        state = kUnitStateOffline;
    } else if (Contains(reply, "Online")) {
        state = kUnitStateOnline;
    }
    return 0;
}

int ReadUnitStatus(std::uint32_t domain, std::uint16_t& status) {
    const std::time_t now = MonotonicSeconds();
    const bool remembered =
        memo.time > 0 && memo.domain == domain && now - memo.time < kMemoLifetime;
    if (!remembered) {
        memo = {now, domain, kUnitUnknown, 0};
        if (IsBeingReset(domain)) {
            GetUnitStatus(domain, memo.status);
        } else {
            memo.result = ComputeUnitStatus(domain, memo.status);
            if (memo.result != 0 && !IsAnswering(domain)) {
                memo.time = 0;  // perhaps nothing was even asked
            }
        }
    }
    status = memo.status;
    return memo.result;
}

void ResetUnitStatusMemo() {
    memo = {};
}

}  // namespace snmpmain
