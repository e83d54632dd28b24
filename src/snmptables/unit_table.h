// connUnitTbl: the switches of the fabric, one row per domain that answers. A row's position is the
// unit index of every per-unit MIB table; its WWN is the index that managers see. Main thread only,
// where nothing else is said.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "src/link/switch_info.h"

namespace snmpmain {

constexpr std::uint16_t MAX_CONN_UNITS = 256;

// connUnitStatus codes.
constexpr std::uint16_t kUnitUnknown = 1;
constexpr std::uint16_t kUnitOk = 3;
constexpr std::uint16_t kUnitWarning = 4;
constexpr std::uint16_t kUnitFailed = 5;

struct ConnUnitEntry {
    std::uint16_t domainId;      // 0 ends the table for lookups by domain id
    std::uint32_t fcAddress;     // Fibre Channel address, from the reply to the probe
    std::uint16_t status;        // connUnitStatus code, as last computed
    char wwn[kWwnTextSize];      // as switch management gives it; "" marks an unused row
    std::uint32_t reset;         // 1 while a reset that a manager asked for is under way
    std::uint32_t eventSupport;  // 1 when the unit accepts private events
};

// The rows, sorted by WWN; the row after the last has domain id 0 and no WWN. Rows further on may
// still hold units of an earlier, larger fabric: lookups by WWN see them, other lookups do not.
// Only ReplaceUnits writes domain ids and WWNs, since searches rely on the order that it notes.
extern std::array<ConnUnitEntry, MAX_CONN_UNITS> connUnitTbl;

// ---- maintenance ----

// Empties the table; part of start-up.
void ResetConnUnitTable();

// Replaces the rows by those of a finished discovery, sorted by WWN. A unit's status and reset flag
// that were set after NoteChangesFromNowOn stay.
void NoteChangesFromNowOn();
void ReplaceUnits(std::span<ConnUnitEntry> rows);

// A unit in the table has answered: takes its Fibre Channel address, and whether it accepts private
// events. Nothing for one that is not in the table.
void NoteGreeting(std::uint16_t domain, std::uint32_t fcAddress);
void SetUnitEventSupport(std::uint16_t domain, bool supports);

// Writes the table to the diagnostic log, level 0.
void DumpConnUnitTable();

// ---- lookups ----
// Results are 0, or -1 (logged at level 1 by those with a message). Those that take domain id 0 for
// the local switch say so.

// Number of units: the rows in use from the first on.
std::uint16_t GetUnitCount();

// The row of a domain, or null, without a message.
const ConnUnitEntry* FindUnit(std::uint32_t domain);

// The WWN text of a row, or null.
const char* GetWWNfromIndex(std::uint32_t index);
// `domain` becomes 0 on failure.
int GetDomainIdFromIndex(std::uint32_t index, std::uint16_t& domain);
// By the text as it stands, for a caller that has no OID; requests are resolved by their bytes.
int GetIndexFromWwn(const char* wwn, std::uint16_t& index);
int GetDomainIdFromWwn(const char* wwn, std::uint16_t& domain);
// 0 is the local switch.
int GetIndexFromDomainId(std::uint32_t domain, std::uint16_t& index);
// Any thread. 0 is the local switch.
int GetWwnFromDomainId(std::uint32_t domain, char (&wwn)[kWwnTextSize]);
// The address, or 0xFFFFFFFF, for a caller that names a switch by it. 0 is the local switch.
std::uint32_t GetFcAddressFromDomainId(std::uint32_t domain);

// Any thread. 0 is not taken for the local switch.
int GetUnitStatus(std::uint32_t domain, std::uint16_t& status);
int SetUnitStatus(std::uint32_t domain, std::uint16_t status);

// Any thread. 0 is the local switch in the getter, but not in the setter. The setter takes 0 and 1;
// it ends a reset by hand, where a discovery would do so otherwise.
int GetUnitReset(std::uint32_t domain, std::uint32_t& reset);
int SetUnitReset(std::uint32_t domain, std::uint32_t reset);
// Any thread, and one step: marks a unit as being reset and gives the status that it keeps
// meanwhile. Returns 0, or -1 for a unit that is marked already or not in use.
int BeginUnitReset(std::uint32_t domain, std::uint16_t& status);

// The flag of a row, used or not; -1 beyond the table.
std::int32_t GetUnitEventSupport(std::uint32_t index);

struct FlatPort {
    std::uint16_t domain;
    std::uint16_t unitIndex;
    std::uint32_t port;  // within the unit
};

// Finds a port that is counted through all units in row order, for tables without a unit in their
// index. Asks each unit for its number of ports. Returns 0 or -1.
int GetUnitAndPortFromFlatPort(std::uint32_t flatPort, FlatPort& found);

// ---- order ----

using WwnBytes = std::array<std::uint8_t, 8>;

// The bytes that a WWN text stands for, 0 where the text is short.
WwnBytes BytesOfWwn(const char* wwn);

// Rows 0 to GetAscendingRows() - 1 are in use with ascending WWN bytes, so that a search may halve
// them; rows in use from there up to GetRowsEnd() are in any order.
std::uint16_t GetAscendingRows();
std::uint16_t GetRowsEnd();

}  // namespace snmpmain
