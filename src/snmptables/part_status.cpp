#include "src/snmptables/part_status.h"

#include "src/base/text.h"
#include "src/base/words.h"
#include "src/link/link.h"

namespace snmpmain {
namespace {

constexpr Word kGoodOrBad[] = {{"Good", kSensorOk}, {"Bad", kSensorFailed}};
constexpr WordTable kConditions{kGoodOrBad, kSensorUnknown};

constexpr Word kTempWords[] = {
    {"Normal", kSensorOk}, {"Warm", kSensorWarning}, {"Overheating", kSensorFailed}};
constexpr WordTable kTemps{kTempWords, kSensorUnknown};

constexpr Word kPortStateWords[] = {{"Online", 2}, {"Offline", 3}, {"Down", 3}, {"Diagnostics", 5}};
constexpr WordTable kPortStates{kPortStateWords, kPortStateUnknown};

constexpr Word kAdminWords[] = {{"Online", 1}, {"Diagnostics", 3}};
constexpr WordTable kAdminStatuses{kAdminWords, kPortAdminOffline};

constexpr Word kOperWords[] = {{"Online", kPortOperOnline}, {"Offline", 2}, {"Diagnostics", 3}};
constexpr WordTable kOperStatuses{kOperWords, kPortOperOther};

// What decides a port's hardware state, in this order.
constexpr std::uint32_t kUndecided = 0;
constexpr Word kDiagWords[] = {{"Failed", 2}};
constexpr Word kNoTransceiver[] = {{"NotInstalled", 7}};
constexpr Word kSyncWords[] = {{"SyncLost", 8}, {"SyncAcquired", 4}};
struct HwQuestion {
    const char* command;
    WordTable words;
};
constexpr HwQuestion kHwQuestions[] = {
    {"Get.Oper.UserPort.%u.%u.DiagStatus", {kDiagWords, kUndecided}},
    {"Get.Oper.UserPort.%u.%u.GBICType", {kNoTransceiver, kUndecided}},
    {"Get.Oper.UserPort.%u.%u.SyncStatus", {kSyncWords, 1}},
};

}  // namespace

void MakeSensorCommand(const SensorRef& sensor, char (&command)[kSensorCommandSize]) {
    switch (sensor.kind) {
        case kPowerSupplySensor:
            FormatText(command, "Get.Oper.Chassis.%d.PowerSupply.%d", sensor.chassis,
                       sensor.number);
            break;
        case kFanSensor:
            FormatText(command, "Get.Oper.Chassis.%d.Fan.%d", sensor.chassis, sensor.number);
            break;
        case kBladeTempSensor:
            FormatText(command, "Get.Oper.Blade.%d.TempStatus", sensor.blade);
            break;
        case kBoardTempSensor:
            FormatText(command, "Get.Oper.Blade.%d.BoardTemp.%d", sensor.blade, sensor.number);
            break;
        default:
            FormatText(command, "Get.Oper.Blade.%d.VoltageStatus", sensor.blade);
            break;
    }
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

int ReadPortState(std::uint32_t domain, std::uint32_t module, std::uint32_t port,
                  std::uint32_t& state) {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.UserPort.%u.%u.OperState",
                         module, port) != 0) {
        return -1;
    }
    state = FirstContained(kPortStates, reply.data());
    return 0;
}

int ReadPortHwState(std::uint32_t domain, std::uint32_t module, std::uint32_t port,
                    std::uint32_t& state) {
    for (const HwQuestion& question : kHwQuestions) {
        ReplyText reply;
        if (SwitchMgmtQueryf(domain, reply, kString, nullptr, question.command, module, port) !=
            0) {
            return -1;
        }
        state = FirstContained(question.words, reply.data());
        if (state != kUndecided) {
            break;
        }
    }
    return 0;
}

int ReadStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state) {
    std::uint32_t module = 0;
    return GetModuleAndPort(domain, port, module, port) == 0
               ? ReadPortState(domain, module, port, state)
               : -1;
}

int ReadHwStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state) {
    std::uint32_t module = 0;
    return GetModuleAndPort(domain, port, module, port) == 0
               ? ReadPortHwState(domain, module, port, state)
               : -1;
}

int ReadPortAdminStatus(std::uint32_t domain, std::uint32_t port, std::uint32_t& status) {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.UserPort.0.%u.AdminState",
                         port) != 0) {
        return -1;
    }
    status = FirstContained(kAdminStatuses, reply.data());
    return 0;
}

int ReadPortOperStatus(std::uint32_t domain, std::uint32_t port, std::uint32_t& status) {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.UserPort.0.%u.OperState",
                         port) != 0) {
        return -1;
    }
    status = FirstContained(kOperStatuses, reply.data());
    return 0;
}

}  // namespace snmpmain
