#include "src/link/switch_info.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <string_view>

#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/worked_with.h"

namespace snmpmain {
namespace {

std::uint32_t MergeModeFrom(const char* reply) {
    const std::string_view mode = reply;
    return mode == "NonSW2" ? kMergeNonSW2 : mode == "Interop_2" ? kMergeInterop2 : kMergeOther;
}

std::uint32_t ContainsTrue(const char* reply) {
    return std::strstr(reply, "True") != nullptr ? 1 : 0;
}

std::uint32_t IsTrue(const char* reply) {
    return std::strcmp(reply, "True") == 0 ? 1 : 0;
}

struct FactRow {
    const char* command;
    Worker worker;  // who works with the local switch's
    ConversionType type = kInteger;
    std::uint32_t (*numberFrom)(const char* reply) = nullptr;  // of a fact that comes as a word
    void (*handDown)(std::uint32_t number) = nullptr;  // to where it is kept instead of here
    const char* unknown = "";                          // text without an answer
};

// By Fact.
constexpr FactRow kFacts[] = {
    {"Get.Oper.Switch.DomainID", Worker::kUnitTable, kInteger, nullptr, SetLocalDomainId},
    {"Get.Config.Zoning.MergeMode", Worker::kUnitTable, kString, MergeModeFrom, SetMergeMode},
    {"Get.Config.Snmp.ProxyEnable", Worker::kUnitTable, kString, ContainsTrue},
    {"Get.Oper.Switch.Type", Worker::kSwitchInfo, kString},
    {"Get.Oper.Switch.Chassis", Worker::kSwitchInfo},
    {"Get.Oper.Chassis.0.Blades", Worker::kSwitchInfo},
    {kMaxPortsCommand, Worker::kSwitchInfo},
    {"Get.Config.Mfg.WWN", Worker::kSwitchInfo, kString, nullptr, nullptr, kNoWwn},
    {"Get.Oper.Chassis.0.PowerSupplies", Worker::kSwitchInfo},
    {"Get.Oper.Chassis.0.Fans", Worker::kSwitchInfo},
    {"Get.Oper.Blade.%d.TempSensors", Worker::kSwitchInfo},
    {"Get.Config.Snmp.SysObjectID", Worker::kSwitchInfo, kString, nullptr, nullptr, "0.0.0.0"},
    {"Get.Config.Mfg.Allow4GPorts", Worker::kSwitchInfo, kString, IsTrue, nullptr, "False"},
};
constexpr std::size_t kFactCount = std::size(kFacts);
static_assert(kFactCount == static_cast<std::size_t>(Fact::kAllow4GPorts) + 1);

constexpr std::size_t kTextSize = 32;

// What another switch has answered in a period of keeping; 0 is none. Each row of its tables asks
// for the same counts, and a request may be for several columns of it.
struct AnsweredNumber {
    std::uint32_t period = 0;
    std::uint32_t domain = 0;
    std::uint32_t number = 0;
};

// The blades' temperature sensors have places of their own.
constexpr std::size_t kPlaces = kFactCount + kMaxBlades;

struct SwitchInfo {
    std::array<std::atomic<std::uint32_t>, kPlaces> numbers{};
    std::array<std::array<char, kTextSize>, kFactCount> texts{};
    std::array<AnsweredNumber, kPlaces> others{};
    std::uint32_t periods = 0;
    std::uint32_t period = 0;  // the present one

    ReplyText reply{};     // the last one
    bool answered = true;  // was there one
};

SwitchInfo info;

struct InfoReading {
    std::uint32_t fact = 0;
    std::uint32_t blade = 0;
};

InfoReading reading;

const FactRow& RowOf(Fact fact) {
    return kFacts[static_cast<std::size_t>(fact)];
}

std::size_t PlaceOf(Fact fact, std::uint32_t blade = 0) {
    return fact == Fact::kTempSensors ? kFactCount + blade : static_cast<std::size_t>(fact);
}

void Keep(Fact fact, std::uint32_t blade, std::uint32_t number, const char* text) {
    const std::size_t place = PlaceOf(fact, blade);
    if (RowOf(fact).handDown != nullptr) {
        RowOf(fact).handDown(number);
        return;
    }
    info.numbers[place] = number;
    if (place < kFactCount) {
        CopyText(info.texts[place].data(), kTextSize, text);
    }
}

// Asks a switch, and keeps what the local one answers. What is worked with is compared later.
// Returns 0, or -1 when the query fails; but a missing 4 Gb/s flag is a "False".
int Ask(std::uint32_t domain, Fact fact, std::uint32_t blade, std::uint32_t& number) {
    AssertMainThread();
    const FactRow& row = RowOf(fact);
    std::array<char, kCommandSize> command;
    FormatText(command, row.command, blade);
    const Answer answer = AskSwitch(domain, command.data(), info.reply, row.type, &number);
    info.answered = answer.outcome != Outcome::kNoAnswer;
    if (IsLocalDomain(domain)) {
        NoteWorkedWith(row.worker, command.data(), row.type, answer, info.reply);
    }
    if (answer.code != 0 && fact != Fact::kAllow4GPorts) {
        return -1;
    }
    if (fact == Fact::kWwn) {
        info.reply[kWwnTextSize - 1] = '\0';
    }
    const char* text = answer.code == 0 ? info.reply.data() : row.unknown;
    if (row.numberFrom != nullptr) {
        number = row.numberFrom(text);
    }
    if (IsLocalDomain(domain)) {
        Keep(fact, blade, number, text);
    }
    return 0;
}

constexpr std::string_view kBladeTypes[] = {
    "SwitchBlade",     "GenericBlade",     "TelcoSwitchBlade",     "TelcoGenericBlade",
    "SwitchBlade20",   "GenericBlade20",   "TelcoSwitchBlade20",   "TelcoGenericBlade20",
    "4GSwitchBlade20", "4GGenericBlade20", "4GTelcoSwitchBlade20", "4GTelcoGenericBlade20",
};

}  // namespace

int InitSwitchInfo() {
    BeginSwitchInfo();
    return DoAll(StepSwitchInfo);
}

void BeginSwitchInfo() {
    AssertMainThread();
    ForgetWorkedWith(Worker::kSwitchInfo);  // there may be fewer blades now
    reading = {};
}

Progress StepSwitchInfo() {
    const std::uint32_t blades = std::min(AskNumber(0, Fact::kBlades), kMaxBlades);
    if (static_cast<Fact>(reading.fact) == Fact::kTempSensors && reading.blade >= blades) {
        ++reading.fact;
    }
    const auto fact = static_cast<Fact>(reading.fact);
    const int result = ReadFact(fact, reading.blade);
    (fact == Fact::kTempSensors ? reading.blade : reading.fact) += 1;
    return result != 0                  ? Progress::kFailed
           : reading.fact == kFactCount ? Progress::kDone
                                        : Progress::kMore;
}

int ReadFact(Fact fact, std::uint32_t blade) {
    const std::uint32_t domain = fact <= Fact::kSwitchType ? 0 : GetLocalDomainId();
    std::uint32_t number = 0;
    return Ask(domain, fact, blade, number);
}

std::uint32_t AskNumber(std::uint32_t domain, Fact fact, std::uint32_t blade) {
    AssertMainThread();
    if (blade >= kMaxBlades) {
        return 0;
    }
    info.answered = true;
    const std::size_t place = PlaceOf(fact, blade);
    if (IsLocalDomain(domain)) {
        return info.numbers[place];
    }
    AnsweredNumber& other = info.others[place];
    if (info.period != 0 && other.period == info.period && other.domain == domain) {
        return other.number;
    }
    std::uint32_t number = 0;
    if (Ask(domain, fact, blade, number) != 0) {
        return 0;
    }
    other = {info.period, domain, number};
    return number;
}

const char* AskText(std::uint32_t domain, Fact fact) {
    AssertMainThread();
    if (IsLocalDomain(domain)) {
        return info.texts[PlaceOf(fact)].data();
    }
    std::uint32_t number = 0;
    return Ask(domain, fact, 0, number) == 0 ? info.reply.data() : RowOf(fact).unknown;
}

bool WasAnswered() {
    return info.answered;
}

void KeepAnsweredCounts() {
    AssertMainThread();
    info.periods = info.periods == UINT32_MAX ? 1 : info.periods + 1;
    info.period = info.periods;
}

void ForgetAnsweredCounts() {
    info.period = 0;
}

std::uint32_t GetProxyEnable() {
    return info.numbers[PlaceOf(Fact::kProxyEnable)];
}

bool IsBladeType() {
    const std::string_view type = AskText(0, Fact::kSwitchType);
    return std::ranges::find(kBladeTypes, type) != std::end(kBladeTypes);
}

void ResetSwitchInfo() {
    SetLocalDomainId(0);
    SetMergeMode(kMergeOther);
    for (std::atomic<std::uint32_t>& number : info.numbers) {
        number = 0;
    }
    info.texts = {};
}

}  // namespace snmpmain
