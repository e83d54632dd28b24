#include "src/snmpoid/index_codec.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/switch_info.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

// Compares 16 request sub-identifiers with a row's unit id: -1, 0 or 1.
int CompareWithUnitId(std::span<const oid, WWN_OID_LEN> names, const ConnUnitEntry& row) {
    std::array<oid, WWN_OID_LEN> unitId;
    MakeOIDfromHexStr(row.wwn, unitId);
    return snmp_oid_compare(names.data(), names.size(), unitId.data(), unitId.size());
}

std::uint16_t LowBits(oid name) {
    return static_cast<std::uint16_t>(name);
}

}  // namespace

int MakeOIDfromHexStr(const char* text, std::span<oid> names) {
    ReadHexText(text, names);
    return 0;
}

int MakeBytesFromHexStr(const char* text, std::span<std::uint8_t> bytes) {
    ReadHexText(text, bytes);
    return 0;
}

int MakeHexStrFromOID(std::span<const oid> names, std::span<char> text) {
    constexpr oid kMostByte = 255;
    if (text.empty()) {
        return -1;
    }
    text[0] = '\0';
    std::size_t written = 0;
    for (const oid name : names) {
        if (name > kMostByte) {
            TraceLog(kSevere, "MakeHexStrFromOID(): Unable to convert hex value in OID: %d",
                     static_cast<int>(name));
            return -1;
        }
        if (written + 2 >= text.size()) {
            return -1;
        }
        FormatText(text.subspan(written), "%02x", static_cast<unsigned>(name));
        written += 2;
    }
    return 0;
}

int MakeOIDfromIndex(std::span<oid, WWN_OID_LEN> names, std::uint32_t index) {
    const char* wwn = GetWWNfromIndex(index);
    if (wwn == nullptr) {
        TraceLog(kSevere, "MakeOIDfromIndex(): No WWN at index: %d", static_cast<int>(index));
        return -1;
    }
    return MakeOIDfromHexStr(wwn, names);
}

int GetWwnIndexFromWwnOID(std::span<const oid, WWN_OID_LEN> names, std::uint16_t& index) {
    const auto first = connUnitTbl.begin();
    const auto ascendingEnd = first + GetAscendingRows();
    const auto end = first + GetRowsEnd();
    auto row = std::partition_point(first, ascendingEnd, [&](const ConnUnitEntry& unit) {
        return CompareWithUnitId(names, unit) > 0;
    });
    if (row == ascendingEnd) {
        // Rows of an earlier, larger fabric lie after gaps and in no order.
        row = std::find_if(row, end, [&](const ConnUnitEntry& unit) {
            return unit.domainId != 0 && CompareWithUnitId(names, unit) <= 0;
        });
    }
    if (row == end) {
        return -1;
    }
    index = static_cast<std::uint16_t>(row - first);
    return CompareWithUnitId(names, *row) == 0 ? 0 : 1;
}

int GetWWNandIndexFromOID(std::span<const oid> name, std::span<char> wwn, std::uint16_t& index) {
    constexpr std::uint16_t kMostByte = 255;
    if (name.size() <= WWN_OID_LEN) {
        TraceLog(kSevere, "GetWWNandIndexFromOID():Incorrect OID length");
        return -1;
    }
    index = static_cast<std::uint16_t>(LowBits(name.back()) - 1);
    if (index > kMostByte) {
        TraceLog(kSevere, "GetWWNandIndexFromOID():Invalid Index found in OID");
        return -1;
    }
    std::array<oid, 8> bytes;
    const auto unitId = name.last(kUnitRowIndexLength).first(bytes.size());
    std::ranges::transform(unitId, bytes.begin(), LowBits);
    if (std::ranges::any_of(bytes, [](oid byte) { return byte > kMostByte; })) {
        TraceLog(kSevere, "GetWWNandIndexFromOID():Invalid WWN found in OID");
        return -1;
    }
    return MakeHexStrFromOID(bytes, wwn);
}

int MakeOIDfromIPAddr(const char* text, std::span<oid, 4> names) {
    std::ranges::fill(names, oid{0});
    if (std::strchr(text, '.') == nullptr) {
        return 0;
    }
    const std::uint32_t address = ntohl(::inet_addr(text));
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = (address >> (24 - 8 * i)) & 0xFF;
    }
    return 0;
}

int GetIPAddrAndPortFromOID(std::span<const oid> name, std::span<char> address,
                            std::uint32_t& port) {
    constexpr std::size_t kAddressAndPort = 5;
    constexpr oid kMostByte = 255;
    if (name.size() < kAddressAndPort) {
        return -1;
    }
    const auto parts = name.last(kAddressAndPort);
    const auto part = [&](std::size_t i) { return static_cast<unsigned>(parts[i]); };
    FormatText(address, "%u.%u.%u.%u", part(0), part(1), part(2), part(3));
    port = static_cast<std::uint32_t>(parts.back());
    if (std::ranges::any_of(parts.first(4), [](oid byte) { return byte > kMostByte; })) {
        TraceLog(kError, "Invalid IP address found in OID- %s", address.data());
        return -1;
    }
    return 0;
}

void MakeOIDfromTrapIndex(const TrapRowIndex& index, std::span<oid, kTrapIndexLength> names) {
    MakeOIDfromIPAddr(index.address, names.first<4>());
    names.back() = index.port;
}

namespace {

// The order of a row's index and another one: below 0, 0 or above; -2 for a row not in use.
constexpr int kRowNotInUse = -2;
int CompareTrapRow(TrapRowLookup rowAt, std::uint16_t row,
                   std::span<const oid, kTrapIndexLength> names) {
    TrapRowIndex index;
    if (rowAt(row, index) != 0) {
        return kRowNotInUse;
    }
    std::array<oid, kTrapIndexLength> present;
    MakeOIDfromTrapIndex(index, present);
    return snmp_oid_compare(present.data(), present.size(), names.data(), names.size());
}

}  // namespace

int GetTrapIndexFromTrapOID(TrapRowLookup rowAt, std::span<const oid, kTrapIndexLength> names,
                            std::uint16_t& row) {
    for (row = 0; row < kTrapRows; ++row) {
        if (const int order = CompareTrapRow(rowAt, row, names); order >= 0) {
            return order == 0 ? 0 : 1;
        }
    }
    return -1;
}

int FindTrapIndex(TrapRowLookup rowAt, std::span<const oid, kTrapIndexLength> names,
                  std::uint16_t& row) {
    for (row = 0; row < kTrapRows; ++row) {
        if (CompareTrapRow(rowAt, row, names) == 0) {
            return 0;
        }
    }
    return -1;
}

void SplitDottedNumbers(const char* text, std::span<std::uint32_t> numbers, std::size_t& count) {
    if (std::strchr(text, '.') == nullptr) {
        return;
    }
    count = 0;
    while (text != nullptr && count < numbers.size()) {
        numbers[count++] = ReadDecimal(text);
        text = std::strchr(text, '.');
        text = text == nullptr ? nullptr : text + 1;
    }
}

std::size_t GetSysObjectIDOID(std::span<oid> names) {
    std::array<std::uint32_t, MAX_OID_LEN> numbers;
    std::size_t count = 0;
    SplitDottedNumbers(AskText(0, Fact::kSysObjectId), numbers, count);
    count = std::min(count, names.size());
    std::copy_n(numbers.begin(), count, names.begin());
    return count;
}

void FitOIDtoIndexLength(const variable* vp, std::span<const oid> request, std::size_t indexLength,
                         WorkingOid& fitted) {
    const std::size_t nameLength = std::min<std::size_t>(vp->namelen, MAX_OID_LEN);
    fitted.length = std::min<std::size_t>(nameLength + indexLength, MAX_OID_LEN);
    std::fill_n(fitted.names, fitted.length, oid{0});
    std::copy_n(vp->name, nameLength, fitted.names);
    if (request.size() < fitted.length) {
        std::ranges::copy(request, fitted.names);
    } else {
        std::ranges::copy(request.subspan(nameLength, fitted.length - nameLength),
                          fitted.names + nameLength);
    }
}

}  // namespace snmpmain
