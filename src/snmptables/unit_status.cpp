#include "src/snmptables/unit_status.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "src/base/main_thread.h"
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

constexpr Fact kCounts[] = {Fact::kPowerSupplies, Fact::kFans, Fact::kBlades, Fact::kMaxPorts};

}  // namespace

int ReadUnitState(std::uint32_t domain, std::uint16_t& state) {
    if (IsBeingReset(domain)) {
        state = kUnitStateOffline;
        return 0;
    }
    state = kUnitStateUnknown;
    ReplyText reply;
    if (SwitchMgmtQuery(domain, kUnitStateCommand, reply, kString) != 0) {
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
    UnitStatusReading reading(domain);
    const int result = DoAll([&reading] { return reading.Step(); });
    status = reading.Status();
    return result;
}

Progress UnitStatusReading::Step() {
    AssertMainThread();
    if (part_ == Part::kBegin) {
        return Begin();
    }
    while (index_ >= CountOf(part_)) {
        // One bad part of several is a warning, none left good a failure of the unit.
        if ((part_ == Part::kPowerSupplies || part_ == Part::kFans) && good_ != index_) {
            warning_ = true;
            failure_ = failure_ || good_ == 0;
        }
        if (part_ == Part::kUnit) {
            return End(0);
        }
        part_ = static_cast<Part>(static_cast<int>(part_) + 1);
        index_ = good_ = 0;
    }
    const int result = Judge();
    ++index_;
    return result == 0 ? Progress::kMore : End(result);
}

Progress UnitStatusReading::Begin() {
    began_ = MonotonicSeconds();
    if (use_ == Memo::kIsUsed && memo.time > 0 && memo.domain == domain_ &&
        began_ - memo.time < kMemoLifetime) {
        status_ = memo.status;
        return memo.result == 0 ? Progress::kDone : Progress::kFailed;
    }
    if (IsBeingReset(domain_)) {
        GetUnitStatus(domain_, status_);
        memo = {began_, domain_, status_, 0};
        return Progress::kDone;
    }
    part_ = Part::kCounts;
    return Progress::kMore;
}

Progress UnitStatusReading::End(int result) {
    if (result == 0) {
        status_ = failure_ ? kUnitFailed : warning_ ? kUnitWarning : kUnitOk;
        SetUnitStatus(domain_, status_);
    }
    memo = {began_, domain_, status_, result};
    if (result != 0 && !IsAnswering(domain_)) {
        memo.time = 0;  // perhaps nothing was even asked
    }
    return result == 0 ? Progress::kDone : Progress::kFailed;
}

std::uint32_t UnitStatusReading::CountOf(Part part) const {
    switch (part) {
        case Part::kPowerSupplies:
            return counts_[0];
        case Part::kFans:
            return counts_[1];
        case Part::kBlades:
            return std::min(counts_[2], kMaxBlades);
        case Part::kPorts:
            return counts_[3];
        case Part::kUnit:
            return 1;
        default:
            return std::size(kCounts);
    }
}

int UnitStatusReading::Judge() {
    switch (part_) {
        case Part::kPowerSupplies:
            return JudgeRedundantPart("PowerSupply");
        case Part::kFans:
            return JudgeRedundantPart("Fan");
        case Part::kBlades:
            return JudgeBlade();
        case Part::kPorts:
            return JudgePort();
        case Part::kUnit:
            return JudgeOperState();
        default:
            counts_[index_] = AskNumber(domain_, kCounts[index_]);
            return WasAnswered() ? 0 : -1;
    }
}

int UnitStatusReading::JudgeRedundantPart(const char* path) {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain_, reply, kString, nullptr, "Get.Oper.Chassis.0.%s.%d", path,
                         static_cast<int>(index_)) != 0) {
        return -1;
    }
    good_ += Contains(reply, "Good") ? 1 : 0;
    return 0;
}

// A blade whose temperature is unavailable counts as cool.
int UnitStatusReading::JudgeBlade() {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain_, reply, kString, nullptr, "Get.Oper.Blade.%d.TempStatus",
                         static_cast<int>(index_)) == 0) {
        warning_ = warning_ || Contains(reply, "Warm");
        failure_ = failure_ || Contains(reply, "Overheating");
    }
    return 0;
}

int UnitStatusReading::JudgePort() {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain_, reply, kString, nullptr, "Get.Oper.UserPort.0.%d.OperState",
                         static_cast<int>(index_)) != 0) {
        return -1;
    }
    warning_ = warning_ || Contains(reply, "Down");
    return 0;
}

int UnitStatusReading::JudgeOperState() {
    ReplyText reply;
    if (SwitchMgmtQuery(domain_, kUnitStateCommand, reply, kString) != 0) {
        return -1;
    }
    warning_ = warning_ || Contains(reply, "Offline") || Contains(reply, "Diagnostics");
    failure_ = failure_ || Contains(reply, "Down");
    return 0;
}

void ResetUnitStatusMemo() {
    memo = {};
}

}  // namespace snmpmain
