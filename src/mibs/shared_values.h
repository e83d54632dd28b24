// Values that more than one of the MIBs has.
#pragma once

#include "src/link/switch_info.h"
#include "src/mibs/table.h"

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

// The number of ports of the instance's unit; no value when it does not answer.
int ReadPortCount(const Column& column, const Instance& instance, MibValue& value);
consteval ValueSource PortCount() {
    return Computed(ReadPortCount, kMaxPortsCommand);
}

// The number of units in the fabric.
int ReadUnitCount(const Column& column, const Instance& instance, MibValue& value);
consteval ValueSource UnitCount() {
    return Derived(ReadUnitCount, "number of units");
}

// 8 octets from the WWN of the instance's unit.
int ReadUnitWwn(const Column& column, const Instance& instance, MibValue& value);
consteval ValueSource UnitWwn() {
    return Derived(ReadUnitWwn, "the unit's WWN");
}

// Index: unit + 1, port + 1. The instance's numbers are the module and the port.
int ResolveModulePort(const HandlerCall& call, Instance& instance);
int NextModulePort(const HandlerCall& call, Instance& instance);
constexpr TableShape kModulePortShape{ResolveModulePort, NextModulePort};

}  // namespace snmpmain
