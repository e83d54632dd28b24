// Values that more than one of the MIBs has.
#pragma once

#include "src/mibs/column.h"

namespace snmpmain {

// Sizes in octets. Unit ids are a WWN and 8 zeros.
constexpr std::uint32_t kWwnSize = 8;
constexpr std::uint32_t kUnitIdSize = 16;
constexpr std::uint32_t kPortIdSize = 3;

// Bit mask of the classes of service that ports support: class F, 2 and 3.
constexpr const char kSupportedClasses[] = "\x0D";

// The WWN text of the instance's unit, that of the local one as read at start-up, of others as in
// connUnitTbl; zeros when it is not known.
const char* WwnOfUnit(const Instance& instance);

// The column's command gives a list of classes of service: one octet, see conversions.h.
int QueryClasses(const Column& column, const Instance& instance, MibValue& value);

// The instance's port status as the vendor's MIB numbers it; see part_status.h for the commands.
int ReadAdminStatusOfPort(const Column& column, const Instance& instance, MibValue& value);
int ReadOperStatusOfPort(const Column& column, const Instance& instance, MibValue& value);

// Index: unit + 1, port + 1. The instance's numbers are the module and the port.
int ResolveModulePort(const HandlerCall& call, Instance& instance);
int NextModulePort(const HandlerCall& call, Instance& instance);
constexpr TableShape kModulePortShape{ResolveModulePort, NextModulePort};

}  // namespace snmpmain
