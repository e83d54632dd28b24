// The switch's trap destinations as managers see them.
#include <algorithm>
#include <array>

#include "src/base/text.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/trap_registration_writes.h"
#include "src/snmpoid/walkers.h"
#include "src/traps/trap_table.h"

namespace snmpmain::fcmgmt {
namespace {

static_assert(kTrapRows == kTrapDestinations);

// The row that a request asks for, as it was when it was found: a reading of the destinations on
// another thread may move the rows.
TrapRow found;

template <auto kMember>
int ReadMember(const Column&, const Instance&, MibValue& value) {
    return SetNumber(value, found.*kMember);
}

int ReadAddress(const Column&, const Instance&, MibValue& value) {
    std::array<oid, 4> numbers;
    MakeOIDfromIPAddr(found.address, numbers);
    std::array<std::uint8_t, 4> octets;
    std::ranges::transform(numbers, octets.begin(),
                           [](oid number) { return static_cast<std::uint8_t>(number); });
    return SetOctets(value, octets);
}

constexpr Column kTrapRegistrations[] = {
    {1, ASN_IPADDRESS, "trapRegIpAddress", Derived(ReadAddress, "a row of the trap table")},
    {2, ASN_INTEGER, "trapRegPort", Derived(ReadMember<&TrapRow::port>, "a row of the trap table")},
    {3, ASN_INTEGER, "trapRegFilter",
     Derived(ReadMember<&TrapRow::filter>, "a row of the trap table"),
     WrittenBy(write_trapRegFilter)},
    {4, ASN_INTEGER, "trapRegRowState",
     Derived(ReadMember<&TrapRow::state>, "a row of the trap table"),
     WrittenBy(write_trapRegRowState, Access::kReadCreate)},
};

int ResolveRegistration(const HandlerCall& call, Instance&) {
    if (*call.length != call.vp->namelen + kTrapIndexLength) {
        return -1;
    }
    const auto lock = KeepTrapRows();
    const std::span name(call.name, *call.length);
    std::uint16_t row = 0;
    return FindTrapIndex(TrapRowAt, name.last<kTrapIndexLength>(), row) == 0
               ? GetTrapRow(row, found)
               : -1;
}

int NextRegistration(const HandlerCall& call, Instance&) {
    const auto lock = KeepTrapRows();
    std::uint16_t row = 0;
    return GetNextTrapEntry(TrapRowAt, call.vp, call.name, call.length, row) == 0
               ? GetTrapRow(row, found)
               : -1;
}

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

constinit const ServedTable kTrapRegistrationTable =
    Table(kModule, {2, 3, 1}, 133, kTrapRegistrations, {ResolveRegistration, NextRegistration});

}  // namespace snmpmain::fcmgmt
