// States of a unit's sensors and ports as the MIBs number them. The MIB columns and the reports of
// changes both take the values from here. Main thread only.
#pragma once

#include <array>
#include <cstdint>

#include "src/base/words.h"
#include "src/snmptables/row_numbers.h"

namespace snmpmain {

// connUnitSensorStatus codes.
constexpr std::uint32_t kSensorUnknown = 1;
constexpr std::uint32_t kSensorOk = 3;
constexpr std::uint32_t kSensorWarning = 4;
constexpr std::uint32_t kSensorFailed = 5;

// What is asked about a sensor, by its kind; its chassis or blade and its number fill the places.
inline constexpr std::array kSensorCommands = {
    "Get.Oper.Chassis.%d.PowerSupply.%d", "Get.Oper.Chassis.%d.Fan.%d",
    "Get.Oper.Blade.%d.TempStatus",       "Get.Oper.Blade.%d.BoardTemp.%d",
    "Get.Oper.Blade.%d.VoltageStatus",
};
static_assert(kSensorCommands.size() == kBladeVoltageSensor + 1);

// The command that tells of a sensor. Its reply is the sensor's state, for a temperature sensor of
// a board a reading in degrees Celsius.
constexpr std::size_t kSensorCommandSize = 64;
void MakeSensorCommand(const SensorRef& sensor, char (&command)[kSensorCommandSize]);

// The connUnitSensorStatus code of a sensor; that of a board's temperature sensor is always ok,
// without a query. Returns 0, or -1 when the unit does not answer.
int ReadSensorStatus(std::uint32_t domain, const SensorRef& sensor, std::uint32_t& status);

// connUnitPortStatus: the switches report none, so it is always "unused".
constexpr std::uint32_t kPortStatus = 2;

// connUnitPortState of a port.
constexpr std::uint32_t kPortStateUnknown = 1;
inline constexpr Word kPortStateWords[] = {
    {"Online", 2}, {"Offline", 3}, {"Down", 3}, {"Diagnostics", 5}};
inline constexpr WordQuestion kPortStateQuestion{"Get.Oper.UserPort.%d.%d.OperState",
                                                 {kPortStateWords, kPortStateUnknown}};

// What decides connUnitPortHWState of a port, asked in this order until one does.
inline constexpr std::array kPortHwCommands = {"Get.Oper.UserPort.%d.%d.DiagStatus",
                                               "Get.Oper.UserPort.%d.%d.GBICType",
                                               "Get.Oper.UserPort.%d.%d.SyncStatus"};

// The connUnitPortHWState code of a port. Returns 0, or -1 when the unit does not answer.
int ReadPortHwState(std::uint32_t domain, std::uint32_t module, std::uint32_t port,
                    std::uint32_t& state);

// Both states for a port number of a unit. Return 0, or -1 when the unit does not have the port or
// does not answer.
int ReadStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state);
int ReadHwStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state);

// The status of a port as the vendor MIB numbers it. The commands name blade 0 always.
constexpr std::uint32_t kPortAdminOffline = 2;
inline constexpr Word kPortAdminWords[] = {{"Online", 1}, {"Diagnostics", 3}};
inline constexpr WordQuestion kPortAdminQuestion{"Get.Oper.UserPort.0.%d.AdminState",
                                                 {kPortAdminWords, kPortAdminOffline}};

constexpr std::uint32_t kPortOperOnline = 1;
inline constexpr Word kPortOperWords[] = {
    {"Online", kPortOperOnline}, {"Offline", 2}, {"Diagnostics", 3}};
inline constexpr WordQuestion kPortOperQuestion{"Get.Oper.UserPort.0.%d.OperState",
                                                {kPortOperWords, 4}};

// Return 0, or -1 when the unit does not answer.
int ReadPortAdminStatus(std::uint32_t domain, std::uint32_t port, std::uint32_t& status);
int ReadPortOperStatus(std::uint32_t domain, std::uint32_t port, std::uint32_t& status);

}  // namespace snmpmain
