#include "src/snmptables/part_status.h"

#include "src/base/text.h"
#include "src/link/link.h"

namespace snmpmain {
namespace {

constexpr Word kGoodOrBad[] = {{"Good", kSensorOk}, {"Bad", kSensorFailed}};
constexpr WordTable kConditions{kGoodOrBad, kSensorUnknown};

constexpr Word kTempWords[] = {
    {"Normal", kSensorOk}, {"Warm", kSensorWarning}, {"Overheating", kSensorFailed}};
constexpr WordTable kTemps{kTempWords, kSensorUnknown};

// The words that decide a port's hardware state, by command.
constexpr std::uint32_t kUndecided = 0;
constexpr Word kDiagWords[] = {{"Failed", 2}};
constexpr Word kNoTransceiver[] = {{"NotInstalled", 7}};
constexpr Word kSyncWords[] = {{"SyncLost", 8}, {"SyncAcquired", 4}};
constexpr std::array<WordTable, kPortHwCommands.size()> kPortHwWords = {
    {{kDiagWords, kUndecided}, {kNoTransceiver, kUndecided}, {kSyncWords, 1}}};

// The numbers fill the places of the command.
template <typename... Numbers>
int AskWord(std::uint32_t domain, const WordQuestion& question, std::uint32_t& code,
            Numbers... numbers) {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain, reply, kString, nullptr, question.command, numbers...) != 0) {
        return -1;
    }
    code = FirstContained(question.words, reply.data());
    return 0;
}

}  // namespace

void MakeSensorCommand(const SensorRef& sensor, char (&command)[kSensorCommandSize]) {
    const bool isOfChassis = sensor.kind == kPowerSupplySensor || sensor.kind == kFanSensor;
    FormatText(command, kSensorCommands[sensor.kind], isOfChassis ? sensor.chassis : sensor.blade,
               sensor.number);
}

int ReadSensorStatus(std::uint32_t domain, const SensorRef& sensor, std::uint32_t& status) {
    if (sensor.kind == kBoardTempSensor) {
        status = kSensorOk;
        return 0;
    }
    char command[kSensorCommandSize];
    MakeSensorCommand(sensor, command);
    ReplyText reply;
    if (SwitchMgmtQuery(domain, command, reply, kString) != 0) {
        return -1;
    }
    status = FirstContained(sensor.kind == kBladeTempSensor ? kTemps : kConditions, reply.data());
    return 0;
}

int ReadPortHwState(std::uint32_t domain, std::uint32_t module, std::uint32_t port,
                    std::uint32_t& state) {
    state = kUndecided;
    for (std::size_t i = 0; i < kPortHwCommands.size() && state == kUndecided; ++i) {
        if (AskWord(domain, {kPortHwCommands[i], kPortHwWords[i]}, state, module, port) != 0) {
            return -1;
        }
    }
    return 0;
}

int ReadStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state) {
    std::uint32_t module = 0;
    return GetModuleAndPort(domain, port, module, port) == 0
               ? AskWord(domain, kPortStateQuestion, state, module, port)
               : -1;
}

int ReadHwStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state) {
    std::uint32_t module = 0;
    return GetModuleAndPort(domain, port, module, port) == 0
               ? ReadPortHwState(domain, module, port, state)
               : -1;
}

int ReadPortAdminStatus(std::uint32_t domain, std::uint32_t port, std::uint32_t& status) {
    return AskWord(domain, kPortAdminQuestion, status, port);
}

int ReadPortOperStatus(std::uint32_t domain, std::uint32_t port, std::uint32_t& status) {
    return AskWord(domain, kPortOperQuestion, status, port);
}

}  // namespace snmpmain
