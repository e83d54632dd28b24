// Table indexes as OID sub-identifiers and back: unit ids, row numbers, IPv4 addresses, hexadecimal
// texts. Sub-identifiers hold 32 bits, whatever the width of the library's `oid` is. Main thread
// only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// A unit id: the 8 bytes of the WWN, then 8 zeros. Per-unit tables add one row number.
constexpr std::size_t WWN_OID_LEN = 16;
constexpr std::size_t kUnitRowIndexLength = WWN_OID_LEN + 1;

// "255.255.255.255" and its terminator; four unchecked 32-bit numbers need more.
constexpr std::size_t kIpTextSize = 48;

// An OID being put together, with room for any that the library passes.
struct WorkingOid {
    oid names[MAX_OID_LEN];
    std::size_t length;
};

// Converts a hexadecimal text two characters at a time into the outputs, zeros where it ends early.
// Always 0.
int MakeOIDfromHexStr(const char* text, std::span<oid> names);
int MakeBytesFromHexStr(const char* text, std::span<std::uint8_t> bytes);

// Writes two lower-case digits per sub-identifier and a terminator into `text`. Returns 0, or -1
// for a sub-identifier above 255 (logged) or a text without room.
int MakeHexStrFromOID(std::span<const oid> names, std::span<char> text);

// Writes the unit id of a row of connUnitTbl. Returns 0, or -1 (logged) for an unused row.
int MakeOIDfromIndex(std::span<oid, WWN_OID_LEN> names, std::uint32_t index);

// Finds the first row of connUnitTbl whose unit id is not smaller than the request's. Returns 0
// when it is equal, 1 when it is greater, -1 when there is none.
int GetWwnIndexFromWwnOID(std::span<const oid, WWN_OID_LEN> names, std::uint16_t& index);

// Takes an OID ending in a unit id and a row number apart: the WWN text (17 bytes) and the row
// number - 1 (set even when it turns out invalid). Looks at the low 16 bits of each sub-identifier
// only. Returns 0, or -1 (logged).
int GetWWNandIndexFromOID(std::span<const oid> name, std::span<char> wwn, std::uint16_t& index);

// The four bytes of a dotted IPv4 address, zeros when the text holds no ".". Always 0.
int MakeOIDfromIPAddr(const char* text, std::span<oid, 4> names);

// The address and UDP port that end an OID. The text is written even when it turns out invalid.
// Returns 0, or -1 for an invalid address (logged) or an OID that is too short.
int GetIPAddrAndPortFromOID(std::span<const oid> name, std::span<char> address,
                            std::uint32_t& port);

// A row of the trap registration table as an index: its IPv4 address as a dotted text, and its UDP
// port. A lookup returns 0, or -1 for a row that is not in use. Rows in use may have gaps.
constexpr std::uint16_t kTrapRows = 5;
struct TrapRowIndex {
    char address[kIpTextSize];
    std::uint32_t port;
};
using TrapRowLookup = int (*)(std::uint16_t row, TrapRowIndex& index);

// Four sub-identifiers of the address, then the port.
constexpr std::size_t kTrapIndexLength = 5;
void MakeOIDfromTrapIndex(const TrapRowIndex& index, std::span<oid, kTrapIndexLength> names);

// Finds the first row in use whose index is not smaller than the request's. Returns 0 when it is
// equal, 1 when it is greater, -1 when there is none.
int GetTrapIndexFromTrapOID(TrapRowLookup rowAt, std::span<const oid, kTrapIndexLength> names,
                            std::uint16_t& row);

// The row in use with exactly this index, also where the rows are out of order. Returns 0 or -1.
int FindTrapIndex(TrapRowLookup rowAt, std::span<const oid, kTrapIndexLength> names,
                  std::uint16_t& row);

// Splits a dotted text into its numbers, as many as there is room for. Leaves numbers and count
// alone when the text holds no ".".
void SplitDottedNumbers(const char* text, std::span<std::uint32_t> numbers, std::size_t& count);

// For a caller that wants the local switch's system object id as an OID: writes it and returns its
// number of sub-identifiers. "Get.Config.Snmp.SysObjectID"
std::size_t GetSysObjectIDOID(std::span<oid> names);

// Makes `fitted` the variable's name followed by exactly `indexLength` sub-identifiers: those of
// the request, with zeros where it has fewer.
void FitOIDtoIndexLength(const variable* vp, std::span<const oid> request, std::size_t indexLength,
                         WorkingOid& fitted);

}  // namespace snmpmain
