// The switch's trap destinations as managers see them.
#include <algorithm>
#include <array>

#include "src/base/text.h"
#include "src/mibs/fcmgmt/tables.h"
#include "src/mibs/fcmgmt/writes.h"
#include "src/snmpoid/walkers.h"
#include "src/traps/trap_table.h"

namespace snmpmain::fcmgmt {
namespace {

static_assert(kTrapRows == kTrapDestinations);

// A value of the instance's row, which may have gone since it was found.
template <typename Value>
int ReadRow(const Instance& instance, MibValue& value, Value TrapRow::*member) {
    TrapRow row;
    return GetTrapRow(instance.row, row) == 0 ? SetNumber(value, row.*member) : -1;
}

int ReadPort(const Column&, const Instance& instance, MibValue& value) {
    return ReadRow(instance, value, &TrapRow::port);
}

int ReadFilter(const Column&, const Instance& instance, MibValue& value) {
    return ReadRow(instance, value, &TrapRow::filter);
}

int ReadState(const Column&, const Instance& instance, MibValue& value) {
    return ReadRow(instance, value, &TrapRow::state);
}

int ReadAddress(const Column&, const Instance& instance, MibValue& value) {
    TrapRow row;
    if (GetTrapRow(instance.row, row) != 0) {
        return -1;
    }
    std::array<oid, 4> numbers;
    MakeOIDfromIPAddr(row.address, numbers);
    std::array<std::uint8_t, 4> octets;
    std::ranges::transform(numbers, octets.begin(),
                           [](oid number) { return static_cast<std::uint8_t>(number); });
    return SetOctets(value, octets);
}

constexpr Column kTrapRegistrations[] = {
    {1, 133, ASN_IPADDRESS, Access::kReadOnly, "trapRegIpAddress", Computed(ReadAddress)},
    {2, 134, ASN_INTEGER, Access::kReadOnly, "trapRegPort", Computed(ReadPort)},
    {3, 135, ASN_INTEGER, Access::kReadWrite, "trapRegFilter", Computed(ReadFilter),
     write_trapRegFilter},
    {4, 136, ASN_INTEGER, Access::kReadWrite, "trapRegRowState", Computed(ReadState),
     write_trapRegRowState, true},
};

int ResolveRegistration(const HandlerCall& call, Instance& instance) {
    if (*call.length != call.vp->namelen + kTrapIndexLength) {
        return -1;
    }
    const std::span name(call.name, *call.length);
    std::uint16_t row = 0;
    if (FindTrapIndex(TrapRowAt, name.last<kTrapIndexLength>(), row) != 0) {
        return -1;
    }
    instance.row = row;
    return 0;
}

int NextRegistration(const HandlerCall& call, Instance& instance) {
    std::uint16_t row = 0;
    if (GetNextTrapEntry(TrapRowAt, call.vp, call.name, call.length, row) != 0) {
        return -1;
    }
    instance.row = row;
    return 0;
}

constexpr std::span<const Column> kTrapRegistrationColumns = kTrapRegistrations;

}  // namespace

int TrapRowAt(std::uint16_t index, TrapRowIndex& found) {
    TrapRow row;
    if (GetTrapRow(index, row) != 0) {
        return -1;
    }
    CopyText(found.address, sizeof(found.address), row.address);
    found.port = row.port;
    return 0;
}

constinit const ServedTable kTrapRegistrationTable{
    "fcmgmt", {&kTrapRegistrationColumns, 1}, {ResolveRegistration, NextRegistration}};

}  // namespace snmpmain::fcmgmt
