// The GETNEXT resolution of every table shape: each walker finds the first row after a request,
// rewrites the request to that row's OID and returns the row's index values. Returns 0, or -1 with
// the request untouched at the end of the column. No state is kept between calls: the order of the
// units is that of connUnitTbl at the moment. Main thread only.
//
// `unit` is a row of connUnitTbl. Where a request names a unit that does not exist, a walk goes on
// with the one after it; its first row is then the one that the request names (ports, events,
// links), the first of all (sensors, revisions), or the unit is passed over (values).
#pragma once

#include <cstdint>

#include "src/snmpoid/index_codec.h"
#include "src/snmpoid/snmp_headers.h"
#include "src/snmptables/logins.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/row_numbers.h"
#include "src/snmptables/zoning.h"

namespace snmpmain {

// Index: unit id.
int GetNextUnit(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit);

// Index: unit id, value number + 1; every unit has `bound` values. `value` counts from 0. For
// tables of as many rows in every unit; there is none yet.
int GetNextUnitValue(const variable* vp, oid* name, std::size_t* length, std::uint32_t bound,
                     std::uint16_t& unit, std::uint32_t& value);

// Index: unit id, port number + 1. `port` counts from 0.
int GetNextUnitPort(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& port);

// Index: unit id, sensor number + 1. `sensor` counts from 0, `part` is what it refers to.
int GetNextUnitSensor(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                      std::uint32_t& sensor, SensorRef& part);

// Index: unit id, revision number + 1. `revision` counts from 0.
int GetNextUnitRevision(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                        std::uint32_t& revision);

// Index: unit id, log entry id; the entries shown (see row_numbers.h) that the unit's log has.
int GetNextUnitEvent(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                     std::uint32_t& eventId);

// Index: unit id, link index as the unit counts it.
int GetNextUnitLink(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                    std::uint32_t& link);

// Index: switch WWN as a unit id, port WWN (8), port id (3).
constexpr std::size_t kPortWwnOidLength = 8;
constexpr std::size_t kPortIdOidLength = 3;
constexpr std::size_t kNameServerIndexLength = WWN_OID_LEN + kPortWwnOidLength + kPortIdOidLength;
int GetNextNameServerEntry(const variable* vp, oid* name, std::size_t* length,
                           NameServerMatch& entry);

// Finds the entry that has exactly this index. Returns 0, or -1 when there is none.
int FindNameServerEntry(std::span<const oid, kNameServerIndexLength> names, NameServerMatch& entry);

// Index: IPv4 address (4), UDP port; rows of the table that `rowAt` reads.
int GetNextTrapEntry(TrapRowLookup rowAt, const variable* vp, oid* name, std::size_t* length,
                     std::uint16_t& row);

// Index: zone or alias number, member number.
constexpr std::size_t kMemberIndexLength = 2;
int GetNextZoneMember(const variable* vp, oid* name, std::size_t* length,
                      const ZoneMemberNode*& member);
int GetNextAliasMember(const variable* vp, oid* name, std::size_t* length,
                       const ZoneMemberNode*& member);

// Index: unit + 1, port + 1. `port` counts from 0.
constexpr std::size_t kModulePortIndexLength = 2;
int GetNextModulePort(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                      std::uint32_t& port);

// Takes such an index of an exact request apart, both numbers modulo 65536 and unchecked. Returns
// 0, or -1 for an OID of another length (or without a place for the numbers).
int CheckModulePortOID(const variable* vp, const oid* name, std::size_t length, std::uint16_t* unit,
                       std::uint16_t* port);

// Index: unit + 1, local port + 1, login + 1.
constexpr std::size_t kLoginIndexLength = 3;
int GetNextLogin(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                 Login& found);

// The login with exactly this index, asked of its switch (see logins.h). Returns 0, or -1 when
// there is none.
int ReadLoginAt(std::span<const oid, kLoginIndexLength> index, std::uint16_t& unit, Login& found);

}  // namespace snmpmain
