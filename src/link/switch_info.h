// The basic facts about the switches: read from switch management at start-up and kept for the
// local switch, asked for every time for the other switches of the fabric. Main thread only, except
// where a function says otherwise.
#pragma once

#include <cstddef>
#include <cstdint>

#include "src/base/progress.h"

namespace snmpmain {

// Zoning merge modes, "Get.Config.Zoning.MergeMode".
constexpr std::uint32_t kMergeOther = 0;
constexpr std::uint32_t kMergeNonSW2 = 1;    // "NonSW2"
constexpr std::uint32_t kMergeInterop2 = 2;  // "Interop_2": domains are addressed with an offset

constexpr std::size_t kWwnTextSize = 17;  // 16 hexadecimal characters and the terminator
constexpr const char* kNoWwn = "0000000000000000";

// Parts beyond these numbers are not looked at: far more than a switch has, and a bound on what a
// nonsensical count can cost.
constexpr std::uint32_t kMaxChassis = 256;
constexpr std::uint32_t kMaxBlades = 256;
constexpr std::uint32_t kMaxPortsAsked = 4096;

constexpr const char* kMaxPortsCommand = "Get.Oper.Switch.MaxPorts";

// Reads all facts of the local switch, the first failure ending it. Returns 0 or -1.
int InitSwitchInfo();

// The same in steps of one fact each.
void BeginSwitchInfo();
Progress StepSwitchInfo();

// Accessors: ask a switch and return 0, or -1 when the query fails. The value goes into the kept
// record only when the domain is local; a failure leaves the record as it was. The first four
// always ask the local switch.
int ReadLocalDomainId();                         // "Get.Oper.Switch.DomainID"
int ReadMergeMode();                             // "Get.Config.Zoning.MergeMode"
int ReadProxyEnable();                           // "Get.Config.Snmp.ProxyEnable"
int ReadSwitchType();                            // "Get.Oper.Switch.Type"
int ReadChassisCount(std::uint32_t domain);      // "Get.Oper.Switch.Chassis"
int ReadBladeCount(std::uint32_t domain);        // "Get.Oper.Chassis.0.Blades"
int ReadMaxPorts(std::uint32_t domain);          // kMaxPortsCommand
int ReadSwitchWwn(std::uint32_t domain);         // "Get.Config.Mfg.WWN"
int ReadPowerSupplyCount(std::uint32_t domain);  // "Get.Oper.Chassis.0.PowerSupplies"
int ReadFanCount(std::uint32_t domain);          // "Get.Oper.Chassis.0.Fans"
int ReadTempSensorCount(std::uint32_t domain,
                        std::uint32_t blade);  // "Get.Oper.Blade.%d.TempSensors"
int ReadSysObjectId(std::uint32_t domain);     // "Get.Config.Snmp.SysObjectID"
// The flag itself, 1 or 0; a failed query counts as "False". "Get.Config.Mfg.Allow4GPorts"
std::uint32_t ReadAllow4GPorts(std::uint32_t domain);

// Getters: the kept value for a local domain; for any other a fresh one (a count may be kept, see
// KeepAnsweredCounts), or the default where the switch does not answer: 0,
// kNoWwn, "0.0.0.0". A returned text holds until the next call here.
std::uint32_t GetChassisCount(std::uint32_t domain);
std::uint32_t GetBladeCount(std::uint32_t domain);
std::uint32_t GetMaxPorts(std::uint32_t domain);
std::uint32_t GetPowerSupplyCount(std::uint32_t domain);
std::uint32_t GetFanCount(std::uint32_t domain);
std::uint32_t GetTempSensorCount(std::uint32_t domain, std::uint32_t blade);
const char* GetSwitchWwn(std::uint32_t domain);
const char* GetSysObjectId(std::uint32_t domain);
std::uint32_t GetAllow4GPorts(std::uint32_t domain);

// Whether the last count asked for was answered, be it with a no: a default that stands for silence
// must not become a value.
bool WasAnswered();

// From here on, until they are forgotten, a count that another switch has answered is asked once.
// For the length of a manager's request.
void KeepAnsweredCounts();
void ForgetAnsweredCounts();

// Kept values, without a query. Any thread.
std::uint32_t GetMergeMode();
std::uint32_t GetLocalDomainId();
std::uint32_t GetProxyEnable();

// Whether a domain id means the local switch: 0 or the local domain id. Any thread.
bool IsLocalDomain(std::uint32_t domain);

// Whether a port number is below the local switch's maximum ports.
bool IsLocalPort(std::uint32_t port);

// Whether the local switch is a blade in a server chassis, by its type.
bool IsBladeType();

// Forgets everything kept.
void ResetSwitchInfo();

}  // namespace snmpmain
