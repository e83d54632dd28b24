// The column tables of FCMGMT-MIB, one per handler or group, in column order.
#pragma once

#include <span>

#include "src/mibs/column.h"

namespace snmpmain::fcmgmt {

// Scalars by the node they lie under.
extern const std::span<const Column> kConnSetScalars;   // 1.c
extern const std::span<const Column> kTrapRegScalars;   // 2.c
extern const std::span<const Column> kRevisionScalars;  // c
extern const std::span<const Column> kServiceScalars;   // 5.1.c

extern const std::span<const Column> kUnitColumns;              // 1.6.1.c
extern const std::span<const Column> kRevisionColumns;          // 1.7.1.c
extern const std::span<const Column> kSensorColumns;            // 1.8.1.c
extern const std::span<const Column> kPortColumns;              // 1.10.1.c
extern const std::span<const Column> kEventColumns;             // 1.11.1.c
extern const std::span<const Column> kLinkColumns;              // 1.12.1.c
extern const std::span<const Column> kZoneColumns;              // 1.13.1.c
extern const std::span<const Column> kAliasColumns;             // 1.14.1.c
extern const std::span<const Column> kTrapRegistrationColumns;  // 2.3.1.c
extern const std::span<const Column> kPortStatisticsColumns;    // 4.5.1.c
extern const std::span<const Column> kNameServerColumns;        // 5.2.1.1.c
extern const std::span<const Column> kPlatformColumns;          // 5.2.2.1.c

// Writes the records of the whole MIB in the order of registration and returns their number.
std::size_t MakeFcmgmtVariables(std::span<variable7> variables);

}  // namespace snmpmain::fcmgmt
