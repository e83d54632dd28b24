// States of a unit's sensors and ports as the MIBs number them. The MIB columns and the reports of
// changes both take the values from here. Main thread only.
#pragma once

#include <cstdint>

#include "src/snmptables/row_numbers.h"

namespace snmpmain {

// connUnitSensorStatus codes.
constexpr std::uint32_t kSensorUnknown = 1;
constexpr std::uint32_t kSensorOk = 3;
constexpr std::uint32_t kSensorWarning = 4;
constexpr std::uint32_t kSensorFailed = 5;

// The command that tells of a sensor, complete with its numbers. Its reply is the sensor's state,
// for a temperature sensor of a board a reading in degrees Celsius.
// "Get.Oper.Chassis.%d.PowerSupply.%d", "Get.Oper.Chassis.%d.Fan.%d",
// "Get.Oper.Blade.%d.TempStatus", "Get.Oper.Blade.%d.BoardTemp.%d",
// "Get.Oper.Blade.%d.VoltageStatus"
constexpr std::size_t kSensorCommandSize = 64;
void MakeSensorCommand(const SensorRef& sensor, char (&command)[kSensorCommandSize]);

// The connUnitSensorStatus code of a sensor; that of a board's temperature sensor is always ok,
// without a query. Returns 0, or -1 when the unit does not answer.
int ReadSensorStatus(std::uint32_t domain, const SensorRef& sensor, std::uint32_t& status);

// connUnitPortStatus: the switches report none, so it is always "unused".
constexpr std::uint32_t kPortStatus = 2;

// connUnitPortState of a port that cannot be asked.
constexpr std::uint32_t kPortStateUnknown = 1;

// The connUnitPortState code of a port. Returns 0, or -1 when the unit does not answer.
// "Get.Oper.UserPort.%d.%d.OperState"
int ReadPortState(std::uint32_t domain, std::uint32_t module, std::uint32_t port,
                  std::uint32_t& state);

// The connUnitPortHWState code of a port. Returns 0, or -1 when the unit does not answer.
// "Get.Oper.UserPort.%d.%d.DiagStatus", ".GBICType", ".SyncStatus", as many as it takes
int ReadPortHwState(std::uint32_t domain, std::uint32_t module, std::uint32_t port,
                    std::uint32_t& state);

// The same for a port number of a unit; -1 also for one that the unit does not have.
int ReadStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state);
int ReadHwStateOfPort(std::uint32_t domain, std::uint32_t port, std::uint32_t& state);

// The status of a port as the vendor MIB numbers it. The commands name blade 0 always. Return 0, or
// -1 when the unit does not answer.
constexpr std::uint32_t kPortAdminOffline = 2;
constexpr std::uint32_t kPortOperOnline = 1;
constexpr std::uint32_t kPortOperOther = 4;
int ReadPortAdminStatus(std::uint32_t domain, std::uint32_t port,
                        std::uint32_t& status);  // "Get.Oper.UserPort.0.%d.AdminState"
int ReadPortOperStatus(std::uint32_t domain, std::uint32_t port,
                       std::uint32_t& status);  // "Get.Oper.UserPort.0.%d.OperState"

}  // namespace snmpmain
