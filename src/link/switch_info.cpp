#include "src/link/switch_info.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <string_view>

#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/worked_with.h"

namespace snmpmain {
namespace {

constexpr std::size_t kShortTextSize = 32;

struct SwitchInfo {
    std::atomic<std::uint32_t> localDomainId{0};
    std::atomic<std::uint32_t> mergeMode{kMergeOther};
    std::atomic<std::uint32_t> proxyEnable{0};
    std::array<char, kShortTextSize> switchType{};
    std::uint32_t chassis = 0;
    std::uint32_t blades = 0;
    std::uint32_t maxPorts = 0;
    std::array<char, kWwnTextSize> wwn{};
    std::uint32_t powerSupplies = 0;
    std::uint32_t fans = 0;
    std::array<std::uint32_t, kMaxBlades> tempSensors{};
    std::array<char, kShortTextSize> sysObjectId{};
    std::uint32_t allow4GPorts = 0;

    // Shared by all accessors: the last reply.
    ReplyText reply{};
    std::uint32_t value = 0;
    bool answered = true;  // for a count
};

SwitchInfo info;

// Whoever keeps a fact of the local switch has it compared later.
Answer AskFact(Worker worker, std::uint32_t domain, const char* command, ConversionType type,
               std::uint32_t* value = nullptr) {
    const Answer answer = AskSwitch(domain, command, info.reply, type, value);
    if (IsLocalDomain(domain)) {
        NoteWorkedWith(worker, command, type, answer, info.reply);
    }
    return answer;
}

int AskText(std::uint32_t domain, const char* command, Worker worker = Worker::kSwitchInfo) {
    return AskFact(worker, domain, command, kString).code == 0 ? 0 : -1;
}

int ReadCount(std::uint32_t domain, const char* command, std::uint32_t& kept) {
    const Answer answer = AskFact(Worker::kSwitchInfo, domain, command, kInteger, &info.value);
    info.answered = answer.outcome != Outcome::kNoAnswer;
    if (answer.code != 0) {
        return -1;
    }
    if (IsLocalDomain(domain)) {
        kept = info.value;
    }
    return 0;
}

template <std::size_t N>
int ReadText(std::uint32_t domain, const char* command, std::array<char, N>& kept) {
    if (AskText(domain, command) != 0) {
        return -1;
    }
    if (IsLocalDomain(domain)) {
        CopyText(kept.data(), kept.size(), info.reply.data());
    }
    return 0;
}

// What another switch has answered in the present period of keeping; 0 is none. Each row of its
// tables asks for the same counts, and a request may be for several columns of it.
struct AnsweredCount {
    std::uint32_t period = 0;
    std::uint32_t domain = 0;
    std::uint32_t count = 0;
};

struct Keeping {
    std::uint32_t periods = 0;
    std::uint32_t current = 0;
};

Keeping keeping;

// The kept count of a local domain, else what the accessor reads, 0 when it fails. Each fact has an
// `answered` of its own.
template <class Read>
std::uint32_t CountOf(std::uint32_t domain, std::uint32_t kept, AnsweredCount& answered,
                      const Read& read) {
    info.answered = true;
    if (IsLocalDomain(domain)) {
        return kept;
    }
    if (keeping.current != 0 && answered.period == keeping.current && answered.domain == domain) {
        return answered.count;
    }
    if (read(domain) != 0) {
        return 0;
    }
    answered = {keeping.current, domain, info.value};
    return info.value;
}

const char* TextOf(std::uint32_t domain, const char* kept, int (*read)(std::uint32_t),
                   const char* unknown) {
    if (IsLocalDomain(domain)) {
        return kept;
    }
    return read(domain) == 0 ? info.reply.data() : unknown;
}

// What is read first, in this order; then the blades' sensors and the rest.
constexpr int (*kFacts[])() = {
    ReadLocalDomainId,
    ReadMergeMode,
    ReadProxyEnable,
    ReadSwitchType,
    [] { return ReadChassisCount(GetLocalDomainId()); },
    [] { return ReadBladeCount(GetLocalDomainId()); },
    [] { return ReadMaxPorts(GetLocalDomainId()); },
    [] { return ReadSwitchWwn(GetLocalDomainId()); },
    [] { return ReadPowerSupplyCount(GetLocalDomainId()); },
    [] { return ReadFanCount(GetLocalDomainId()); },
};

struct InfoReading {
    std::size_t fact = 0;
    std::uint32_t blade = 0;
    bool idRead = false;
};

InfoReading reading;

constexpr std::string_view kBladeTypes[] = {
    "SwitchBlade",     "GenericBlade",     "TelcoSwitchBlade",     "TelcoGenericBlade",
    "SwitchBlade20",   "GenericBlade20",   "TelcoSwitchBlade20",   "TelcoGenericBlade20",
    "4GSwitchBlade20", "4GGenericBlade20", "4GTelcoSwitchBlade20", "4GTelcoGenericBlade20",
};

}  // namespace

int ReadLocalDomainId() {
    if (AskFact(Worker::kUnitTable, 0, "Get.Oper.Switch.DomainID", kInteger, &info.value).code !=
        0) {
        return -1;
    }
    info.localDomainId = info.value;
    return 0;
}

int ReadMergeMode() {
    if (AskText(0, "Get.Config.Zoning.MergeMode", Worker::kUnitTable) != 0) {
        return -1;
    }
    const std::string_view mode = info.reply.data();
    info.mergeMode = mode == "NonSW2"      ? kMergeNonSW2
                     : mode == "Interop_2" ? kMergeInterop2
                                           : kMergeOther;
    return 0;
}

int ReadProxyEnable() {
    if (AskText(0, "Get.Config.Snmp.ProxyEnable", Worker::kUnitTable) != 0) {
        return -1;
    }
    info.proxyEnable = std::strstr(info.reply.data(), "True") != nullptr ? 1 : 0;
    return 0;
}

int ReadSwitchType() {
    return ReadText(0, "Get.Oper.Switch.Type", info.switchType);
}

int ReadChassisCount(std::uint32_t domain) {
    return ReadCount(domain, "Get.Oper.Switch.Chassis", info.chassis);
}

int ReadBladeCount(std::uint32_t domain) {
    return ReadCount(domain, "Get.Oper.Chassis.0.Blades", info.blades);
}

int ReadMaxPorts(std::uint32_t domain) {
    return ReadCount(domain, kMaxPortsCommand, info.maxPorts);
}

int ReadSwitchWwn(std::uint32_t domain) {
    return ReadText(domain, "Get.Config.Mfg.WWN", info.wwn);
}

int ReadPowerSupplyCount(std::uint32_t domain) {
    return ReadCount(domain, "Get.Oper.Chassis.0.PowerSupplies", info.powerSupplies);
}

int ReadFanCount(std::uint32_t domain) {
    return ReadCount(domain, "Get.Oper.Chassis.0.Fans", info.fans);
}

int ReadTempSensorCount(std::uint32_t domain, std::uint32_t blade) {
    std::array<char, kCommandSize> command;
    FormatText(command, "Get.Oper.Blade.%d.TempSensors", static_cast<int>(blade));
    std::uint32_t unkept = 0;
    return ReadCount(domain, command.data(), blade < kMaxBlades ? info.tempSensors[blade] : unkept);
}

int ReadSysObjectId(std::uint32_t domain) {
    return ReadText(domain, "Get.Config.Snmp.SysObjectID", info.sysObjectId);
}

std::uint32_t ReadAllow4GPorts(std::uint32_t domain) {
    const bool answered = AskText(domain, "Get.Config.Mfg.Allow4GPorts") == 0;
    const std::uint32_t allowed = answered && std::strcmp(info.reply.data(), "True") == 0 ? 1 : 0;
    if (IsLocalDomain(domain)) {
        info.allow4GPorts = allowed;
    }
    return allowed;
}

std::uint32_t GetChassisCount(std::uint32_t domain) {
    static AnsweredCount answered;
    return CountOf(domain, info.chassis, answered, ReadChassisCount);
}

std::uint32_t GetBladeCount(std::uint32_t domain) {
    static AnsweredCount answered;
    return CountOf(domain, info.blades, answered, ReadBladeCount);
}

std::uint32_t GetMaxPorts(std::uint32_t domain) {
    static AnsweredCount answered;
    return CountOf(domain, info.maxPorts, answered, ReadMaxPorts);
}

std::uint32_t GetPowerSupplyCount(std::uint32_t domain) {
    static AnsweredCount answered;
    return CountOf(domain, info.powerSupplies, answered, ReadPowerSupplyCount);
}

std::uint32_t GetFanCount(std::uint32_t domain) {
    static AnsweredCount answered;
    return CountOf(domain, info.fans, answered, ReadFanCount);
}

std::uint32_t GetTempSensorCount(std::uint32_t domain, std::uint32_t blade) {
    static std::array<AnsweredCount, kMaxBlades> answered;
    if (blade >= kMaxBlades) {
        return 0;
    }
    return CountOf(domain, info.tempSensors[blade], answered[blade],
                   [&](std::uint32_t asked) { return ReadTempSensorCount(asked, blade); });
}

const char* GetSwitchWwn(std::uint32_t domain) {
    const char* wwn = TextOf(domain, info.wwn.data(), ReadSwitchWwn, kNoWwn);
    if (wwn == info.reply.data()) {
        info.reply[kWwnTextSize - 1] = '\0';
    }
    return wwn;
}

const char* GetSysObjectId(std::uint32_t domain) {
    return TextOf(domain, info.sysObjectId.data(), ReadSysObjectId, "0.0.0.0");
}

std::uint32_t GetAllow4GPorts(std::uint32_t domain) {
    return IsLocalDomain(domain) ? info.allow4GPorts : ReadAllow4GPorts(domain);
}

std::uint32_t GetMergeMode() {
    return info.mergeMode;
}

std::uint32_t GetLocalDomainId() {
    return info.localDomainId;
}

std::uint32_t GetProxyEnable() {
    return info.proxyEnable;
}

bool IsLocalDomain(std::uint32_t domain) {
    return domain == 0 || domain == info.localDomainId;
}

bool IsLocalPort(std::uint32_t port) {
    return port < GetMaxPorts(0);
}

bool IsBladeType() {
    return std::ranges::find(kBladeTypes, std::string_view(info.switchType.data())) !=
           std::end(kBladeTypes);
}

int InitSwitchInfo() {
    BeginSwitchInfo();
    return DoAll(StepSwitchInfo);
}

void BeginSwitchInfo() {
    ForgetWorkedWith(Worker::kSwitchInfo);  // there may be fewer blades now
    reading = {};
}

Progress StepSwitchInfo() {
    int result = 0;
    if (reading.fact < std::size(kFacts)) {
        result = kFacts[reading.fact++]();
    } else if (reading.blade < std::min(info.blades, kMaxBlades)) {
        result = ReadTempSensorCount(GetLocalDomainId(), reading.blade++);
    } else if (!reading.idRead) {
        result = ReadSysObjectId(GetLocalDomainId());
        reading.idRead = true;
    } else {
        ReadAllow4GPorts(GetLocalDomainId());
        return Progress::kDone;
    }
    return result == 0 ? Progress::kMore : Progress::kFailed;
}

bool WasAnswered() {
    return info.answered;
}

void KeepAnsweredCounts() {
    keeping.periods = keeping.periods == UINT32_MAX ? 1 : keeping.periods + 1;
    keeping.current = keeping.periods;
}

void ForgetAnsweredCounts() {
    keeping.current = 0;
}

void ResetSwitchInfo() {
    info.localDomainId = 0;
    info.mergeMode = kMergeOther;
    info.proxyEnable = 0;
    info.switchType.fill('\0');
    info.chassis = info.blades = info.maxPorts = info.powerSupplies = info.fans = 0;
    info.wwn.fill('\0');
    info.tempSensors.fill(0);
    info.sysObjectId.fill('\0');
    info.allow4GPorts = 0;
}

}  // namespace snmpmain
