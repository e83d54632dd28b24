#include "src/upkeep/sweep.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/link/notify_queue.h"
#include "src/link/reachability.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/link/worked_with.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/fabric_lists.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/part_status.h"
#include "src/snmptables/row_numbers.h"
#include "src/snmptables/unit_table.h"
#include "src/snmptables/zoning.h"
#include "src/traps/event_kinds.h"
#include "src/traps/local_state.h"
#include "src/traps/trap_decision.h"
#include "src/upkeep/dispatch.h"
#include "src/upkeep/upkeep.h"

namespace snmpmain {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr double kRound = 57;              // seconds, at most between two comparisons
constexpr double kQuietShare = 50.0 / 57;  // of a round, in a quiet moment
constexpr double kFirstShare = 30.0 / 57;  // of a round, before the first
constexpr double kListRounds = 63;         // an hour
constexpr double kCommandsPerSecond = 25;
constexpr std::chrono::seconds kQuiet{1};
constexpr double kLooks = 200;  // a round, for what is due: often enough for the commands allowed

// A part of what is swept: as many objects as `count` says, each compared by calls of `step` until
// it is finished.
struct Part {
    std::size_t (*count)();
    Progress (*step)(std::size_t object);
    double rounds;  // between two comparisons
};

constexpr const char* kZoningCommands[] = {"Get.Oper.Zoning.ActiveZoneSet",
                                           "Get.Oper.Zoning.ActiveZoneSet.ZoneEntries",
                                           "Get.Oper.Zoning.AliasEntries"};

constexpr std::size_t kParts = 9;

struct State {
    Seconds round{kRound};
    bool isStarted = false;
    std::array<std::vector<Clock::time_point>, kParts> compared;  // when, by object
    std::size_t part = 0, object = 0;  // which comes next, or is under way
    bool isUnderWay = false;
    Clock::time_point nextLook{};
    double allowance = 0;  // commands
    Clock::time_point allowedAt{};
    std::uint32_t sentBefore = 0;
    Clock::time_point lastBusy{};
    // The list of domains that is being read, and the replies about the other lists.
    KeyWalk domainWalk{kDomainList};
    std::vector<std::uint16_t> domains;
    std::array<std::optional<std::size_t>, std::size(kZoningCommands)> zoningReplies;  // hashes
};

State state;

// ---- what is compared ----

Progress RenewRegistration(std::size_t unit) {
    std::uint16_t domain = connUnitTbl[unit].domainId;
    domain = IsLocalDomain(domain) ? 0 : domain;
    if (IsAnswering(domain)) {
        Tell(std::span(&domain, 1), "NotifyOn", StatusByte::kIsIgnored, nullptr);
    }
    return Progress::kDone;
}

// Does what the notification would have done that was not received.
void ActAs(std::uint16_t kind, std::size_t number) {
    const ComparedStates compared;
    NotificationRecord record{};
    record.domainId = static_cast<std::uint16_t>(GetLocalDomainId());
    record.kind = kind;
    FormatText(record.text, "%d;0;0;0;%d", kind, static_cast<int>(number));
    TraceLog(kError, "Found by comparing, without a notification: %s", record.text);
    ActOnNotification(record);
}

Progress CompareUnitStates(std::size_t) {
    if (!state.isUnderWay) {
        BeginComparingUnit();
    }
    Compared result{};
    const Progress progress = CompareUnit(result);
    if (result == Compared::kDiffers) {
        ActAs(kSwitchState, 0);
    }
    return progress;
}

// The kind of notification that tells of a sensor's present status.
std::uint16_t KindOf(const SensorRef& sensor, std::uint16_t status) {
    switch (sensor.kind) {
        case kPowerSupplySensor:
            return status == kSensorOk ? kPowerSupplyGood : kPowerSupplyBad;
        case kFanSensor:
            return status == kSensorOk ? kFanGood : kFanBad;
        case kBladeTempSensor:
        case kBoardTempSensor:
            return status == kSensorOk        ? kTempNormal
                   : status == kSensorWarning ? kTempWarm
                                              : kTempOverheating;
        default:
            return status == kSensorOk       ? kVoltageFirst
                   : status == kSensorFailed ? kVoltageLast
                                             : kVoltageFirst + 1;
    }
}

Progress CompareSensorStatus(std::size_t number) {
    const auto sensor = static_cast<std::uint16_t>(number);
    std::uint16_t status = 0;
    SensorRef part{};
    if (CompareSensor(sensor, status) == Compared::kDiffers &&
        GetSensorFromIndex(0, sensor, part) == 0) {
        const ComparedStates compared;
        TraceLog(kError, "Found by comparing, without a notification: sensor %d", sensor);
        DecideLocalSensor(KindOf(part, status), sensor);
    }
    return Progress::kDone;
}

Progress ComparePortStates(std::size_t port) {
    if (ComparePort(static_cast<std::uint16_t>(port)) == Compared::kDiffers) {
        ActAs(kPortOper, port);
    }
    return Progress::kDone;
}

Progress CompareInband(std::size_t) {
    if (CompareInbandEnable() == Compared::kDiffers) {
        const ComparedStates compared;
        FollowInbandEnable();
    }
    return Progress::kDone;
}

Progress CompareDomains(std::size_t) {
    if (!state.isUnderWay) {
        state.domainWalk = KeyWalk(kDomainList);
        state.domains.clear();
    }
    std::uint16_t domain = 0;
    const DomainStep step = NextDomain(state.domainWalk, domain);
    if (step == DomainStep::kFound) {
        state.domains.push_back(domain);
        return Progress::kMore;
    }
    if (step == DomainStep::kEnd && !std::ranges::equal(state.domains, GetWalkedDomains())) {
        TraceLog(kError, "Found by comparing, without a notification: another list of domains");
        MarkUpkeep(Upkeep::kUnitTable);
    }
    return Progress::kDone;
}

// The fetch of zones and aliases asks for no numbers: they are compared with those of the last
// round.
Progress CompareZoning(std::size_t object) {
    ReplyText reply;
    const Answer answer = AskSwitch(0, kZoningCommands[object], reply, kString);
    if (const auto hash = HashOfReply(answer, reply); hash) {
        const auto before = std::exchange(state.zoningReplies[object], hash);
        if (before && before != hash) {
            MarkZoningStale();
        }
    }
    return Progress::kDone;
}

// In the order of Worker: has the work done again.
constexpr std::array<void (*)(), kWorkers> kRedo = {
    [] { MarkUpkeep(Upkeep::kSwitchInfo); },
    [] { MarkUpkeep(Upkeep::kUnitTable); },
    [] { MarkUpkeep(Upkeep::kSnmpdConf); },
    [] { MarkUpkeep(Upkeep::kTrapDestinations); },
    MarkNameServerStale,
};

Progress CompareReply(std::size_t number) {
    std::string command;
    ConversionType type{};
    if (!GetWorkedWith(number, command, type)) {
        return Progress::kDone;
    }
    ReplyText reply;
    const Answer answer = AskSwitch(0, command.c_str(), reply, type);
    const Workers workers = WhoWorkedWithAnother(number, answer, reply);
    if (workers.any()) {
        TraceLog(kError, "Found by comparing, without a notification: %s", command.c_str());
    }
    for (std::size_t worker = 0; worker < kWorkers; ++worker) {
        if (workers[worker]) {
            kRedo[worker]();
        }
    }
    return Progress::kDone;
}

// What the lists hold while their numbers stay.
Progress RenewLists(std::size_t) {
    MarkNameServerStale();
    MarkZoningStale();
    return Progress::kDone;
}

std::size_t One() {
    return 1;
}

constexpr std::array<Part, kParts> kTable = {{
    {[]() -> std::size_t { return GetUnitCount(); }, RenewRegistration, 1},
    {One, CompareUnitStates, 1},
    {[]() -> std::size_t { return CountKeptSensors(); }, CompareSensorStatus, 1},
    {[]() -> std::size_t { return CountKeptPorts(); }, ComparePortStates, 1},
    {One, CompareInband, 1},
    {One, CompareDomains, 1},
    {[]() -> std::size_t { return std::size(kZoningCommands); }, CompareZoning, 1},
    {CountWorkedWith, CompareReply, 1},
    {One, RenewLists, kListRounds},
}};

// ---- when ----

bool IsQuiet(Clock::time_point now) {
    if (CountSent() != state.sentBefore || NotifyQueue::Pending()) {
        state.sentBefore = CountSent();
        state.lastBusy = now;
    }
    return now - state.lastBusy >= kQuiet;
}

void RenewAllowance(Clock::time_point now) {
    const double rate = kCommandsPerSecond * kRound / state.round.count();
    state.allowance =
        std::min(rate, state.allowance + rate * Seconds(now - state.allowedAt).count());
    state.allowedAt = now;
}

// Objects that are new have been read just now.
Clock::time_point& TimeOf(std::size_t part, std::size_t object, Clock::time_point now) {
    auto& times = state.compared[part];
    if (object >= times.size()) {
        times.resize(object + 1, now);
    }
    return times[object];
}

bool IsDue(Clock::time_point now, bool isQuiet) {
    const Clock::time_point last = TimeOf(state.part, state.object, now);
    const Seconds most = state.round * kTable[state.part].rounds;
    return last == Clock::time_point::min() || now - last >= (isQuiet ? most * kQuietShare : most);
}

// Moves to the next object. False at the end of the parts.
bool MoveOn(Clock::time_point now) {
    ++state.object;
    while (state.part < kParts && state.object >= kTable[state.part].count()) {
        state.compared[state.part].resize(kTable[state.part].count(), now);
        state.object = 0;
        ++state.part;
    }
    if (state.part < kParts) {
        return true;
    }
    state.part = 0;
    return false;
}

// Goes on to an object that is due. False when there is none.
bool FindDue(Clock::time_point now, bool isQuiet) {
    for (bool isSecondTime = false;;) {
        if (state.object < kTable[state.part].count() && IsDue(now, isQuiet)) {
            return true;
        }
        if (!MoveOn(now) && std::exchange(isSecondTime, true)) {
            return false;
        }
    }
}

}  // namespace

void StartSweep() {
    state = {};
    if (const char* seconds = std::getenv("SNMPMAIN_SWEEP"); seconds != nullptr) {
        state.round = Seconds(std::max(1.0, std::atof(seconds)));
    }
    state.isStarted = true;
    state.allowedAt = Clock::now();
    // All parts have been read just now; the first round begins earlier than that.
    const auto read = Clock::now() - std::chrono::duration_cast<Clock::duration>(
                                         state.round * (kQuietShare - kFirstShare));
    for (std::size_t part = 0; part < kParts; ++part) {
        state.compared[part].assign(kTable[part].count(), read);
    }
}

void HurrySweep() {
    for (auto& times : state.compared) {
        std::ranges::fill(times, Clock::time_point::min());
    }
    state.nextLook = {};
}

Progress StepSweep() {
    AssertMainThread();
    const Clock::time_point now = Clock::now();
    if (!state.isStarted || now < state.nextLook) {
        return Progress::kDone;
    }
    const bool isQuiet = IsQuiet(now);
    RenewAllowance(now);
    if (NotifyQueue::TakeLost()) {
        HurrySweep();
    }
    if (state.allowance < 1 || !IsAnswering(0) || !(state.isUnderWay || FindDue(now, isQuiet))) {
        state.nextLook = now + std::chrono::duration_cast<Clock::duration>(state.round / kLooks);
        return Progress::kDone;
    }
    const std::uint32_t sent = CountSent();
    const Progress progress = kTable[state.part].step(state.object);
    state.allowance -= static_cast<double>(CountSent() - sent);
    state.sentBefore = CountSent();
    state.isUnderWay = progress == Progress::kMore;
    if (!state.isUnderWay) {
        TimeOf(state.part, state.object, now) = now;
        MoveOn(now);
    }
    return Progress::kMore;
}

}  // namespace snmpmain
