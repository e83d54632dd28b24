// TrapTable: the agent's copy of the switch's five trap destinations, which is also the trap
// registration table of FCMGMT-MIB. Every operation locks the rows for its own length only, so that
// any thread may call it; reading from the switch and the changes belong to the main thread.
#pragma once

#include <array>
#include <cstdint>

namespace snmpmain {

constexpr std::uint16_t kTrapDestinations = 5;

// trapRegRowState codes.
constexpr std::uint32_t kTrapRowCleared = 0;
constexpr std::uint32_t kTrapRowInactive = 2;
constexpr std::uint32_t kTrapRowActive = 3;

constexpr std::uint32_t kTrapVersion1 = 0;
constexpr std::uint32_t kTrapVersion2c = 1;

struct TrapRow {
    char address[16] = "";     // dotted IPv4 address; "" in a row that is not in use
    std::uint32_t port = 162;  // UDP
    std::uint32_t filter = 6;  // the least severe events that the destination takes
    std::uint32_t state = kTrapRowCleared;
    std::uint32_t version = kTrapVersion2c;
};

using TrapTable = std::array<TrapRow, kTrapDestinations>;

// Clears all rows; part of start-up.
void ResetTrapTable();

// Replaces the rows with the switch's destinations, in use from row 0 on, without doubles, sorted
// by address and port. Returns 0, or -1 (and the rows stay) when a query fails.
// "Get.Config.Snmp.TrapAddr%d", "TrapPort%d", "TrapSeverity%d", "TrapEnable%d", "TrapVersion%d"
int ReadTrapDestinations();

// A copy of all rows.
TrapTable GetTrapTable();

// A copy of one row. Returns 0, or -1 for one that is not in use.
int GetTrapRow(std::uint32_t index, TrapRow& row);

// Rows in use from row 0 on.
std::uint16_t GetTrapRowCount();

// The row of a destination: one whose address contains the text and whose port is equal. Returns 0
// when there is one, 1 when there is none (`index` is then the first free row), -1 when all rows
// are taken by others.
int FindTrapRow(const char* address, std::uint32_t port, std::uint16_t& index);

// Writes the rows to the diagnostic log, level 0.
void DumpTrapTable();

}  // namespace snmpmain
