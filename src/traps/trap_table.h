// TrapTable: the agent's copy of the switch's five trap destinations, which is also the trap
// registration table of FCMGMT-MIB. Managers change it; the switch then has to be told
// (trap_table_update.h). Every operation locks the rows for its own length only, so that any thread
// may call it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>

#include "src/base/progress.h"

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

// Clears all rows; for tests.
void ResetTrapTable();

// Replaces the rows with the switch's destinations, in use from row 0 on, without doubles, sorted
// by address and port. Rows with changes that the switch has not been told of yet stay as they are;
// MarkTrapTableTold then asks for another reading. One that the switch was told of meanwhile begins
// anew. Returns 0, or -1 (and the rows stay) when a
// query fails. Not within a receiver of notifications. "Get.Config.Snmp.TrapAddr%d", "TrapPort%d",
// "TrapSeverity%d", "TrapEnable%d", "TrapVersion%d"
int ReadTrapDestinations();

// The same in steps of one query each.
class TrapReading {
  public:
    Progress Step();

  private:
    Progress Replace();

    TrapTable rows_;
    int used_ = 0;
    std::uint16_t destination_ = 0;
    std::size_t setting_ = 0;
    std::uint32_t toldBefore_ = 0;
};

// A copy of all rows.
TrapTable GetTrapTable();

// A copy of one row. Returns 0, or -1 (logged) for one that is not in use.
int GetTrapRow(std::uint32_t index, TrapRow& row);

// What the switch has as a version at the place of a destination (0 to 4), read or set last: it
// stays there whatever destination is put into that place. Nothing for a place that was empty when
// the destinations were read.
std::optional<std::uint32_t> GetPlaceVersion(std::uint16_t place);
void NotePlaceVersion(std::uint16_t place, std::optional<std::uint32_t> version);

// The version at a place, asked of the switch; SNMPv2c where it knows none. Not within a receiver
// of notifications. "Get.Config.Snmp.TrapVersion%d"
std::uint32_t AskPlaceVersion(std::uint16_t place);

// The number of a destination in its commands: the first one's carry none.
using PlaceDigits = std::array<char, 8>;
PlaceDigits DigitsOfPlace(std::uint16_t place);

// Rows in use from row 0 on.
std::uint16_t GetTrapRowCount();

// The row of a destination given by a text, where no OID names it: one whose address contains the
// text and whose port is equal. Returns 0 when there is one, 1 when there is none (`index` is then
// the first free row), -1 when all rows are taken by others.
int FindTrapRow(const char* address, std::uint32_t port, std::uint16_t& index);

// Fills a row, clears it, sets its filter (a severity, 1 to 10). Return 0, or -1 when there is no
// such row. A clear row may stay between rows in use until the next reading.
int AddTrapClient(std::uint16_t index, const char* address, std::uint32_t port, std::uint32_t state,
                  std::uint32_t filter, std::uint32_t version);
int RemoveTrapClient(std::uint16_t index);
int SetTrapRowFilter(std::uint16_t index, std::uint32_t filter);

// While it is held, no reading replaces the rows: to be held from finding a row until it is
// changed. Not for the time of a query.
[[nodiscard]] std::unique_lock<std::mutex> KeepTrapRows();

// How often the rows have been changed. Who tells the switch takes this number before it copies the
// rows, and hands it back when done, successful or not. Returns whether a reading was left out for
// the sake of these changes, so that it is to be made up for.
std::uint32_t CountTrapTableChanges();
bool MarkTrapTableTold(std::uint32_t changes);

// Writes the rows to the diagnostic log, level 0.
void DumpTrapTable();

}  // namespace snmpmain
