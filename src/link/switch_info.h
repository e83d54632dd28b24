// The basic facts about the switches: read from switch management at start-up and kept for the
// local switch, asked for every time for the other switches of the fabric. Main thread only, except
// where a function says otherwise.
#pragma once

#include <cstddef>
#include <cstdint>

#include "src/base/progress.h"
#include "src/link/addressing.h"

namespace snmpmain {

// In the order in which they are read at start-up. The first four are the local switch's only.
enum class Fact : std::uint8_t {
    kLocalDomainId,  // "Get.Oper.Switch.DomainID"
    kMergeMode,      // "Get.Config.Zoning.MergeMode", one of kMerge...
    kProxyEnable,    // "Get.Config.Snmp.ProxyEnable", 1 or 0
    kSwitchType,     // "Get.Oper.Switch.Type", a text
    kChassis,        // "Get.Oper.Switch.Chassis"
    kBlades,         // "Get.Oper.Chassis.0.Blades"
    kMaxPorts,       // kMaxPortsCommand
    kWwn,            // "Get.Config.Mfg.WWN", a text of at most 16 characters
    kPowerSupplies,  // "Get.Oper.Chassis.0.PowerSupplies"
    kFans,           // "Get.Oper.Chassis.0.Fans"
    kTempSensors,    // "Get.Oper.Blade.%d.TempSensors", of a blade
    kSysObjectId,    // "Get.Config.Snmp.SysObjectID", a text
    kAllow4GPorts,   // "Get.Config.Mfg.Allow4GPorts", 1 or 0
};

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

// Reads one fact of the local switch. Returns 0, or -1 when the query fails, which leaves what was
// kept; but without an answer no 4 Gb/s ports are allowed.
int ReadFact(Fact fact, std::uint32_t blade = 0);

// A number of a switch: the kept one of the local switch; any other is asked (an answer may be
// kept, see KeepAnsweredCounts), 0 when it does not answer. Not the first two, which addressing.h
// keeps.
std::uint32_t AskNumber(std::uint32_t domain, Fact fact, std::uint32_t blade = 0);

// A text of a switch, likewise: kNoWwn or "0.0.0.0" when it does not answer. It holds until the
// next call here.
const char* AskText(std::uint32_t domain, Fact fact);

// Whether the last number asked for was answered, be it with a no: a default that stands for
// silence must not become a value.
bool WasAnswered();

// From here on, until they are forgotten, a number that another switch has answered is asked once.
// For the length of a manager's request.
void KeepAnsweredCounts();
void ForgetAnsweredCounts();

// The kept value. Any thread.
std::uint32_t GetProxyEnable();

// Whether the local switch is a blade in a server chassis, by its type.
bool IsBladeType();

// Forgets everything kept; part of start-up.
void ResetSwitchInfo();

}  // namespace snmpmain
