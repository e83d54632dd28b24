// Handlers of tables in the SNMP library's form, and their registration with it. Main thread only.
#pragma once

#include <algorithm>
#include <array>
#include <vector>

#include "src/mibs/table.h"
#include "src/mibs/write.h"
#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// The handler of a table, or of several groups of scalars.
template <const ServedTable&... kTables>
u_char* Handle(variable* vp, oid* name, std::size_t* length, int exact, std::size_t* valueLength,
               WriteMethod** writeMethod) {
    static constexpr ServedColumns kServed[] = {{kTables, Write<kTables>}...};
    return Serve(kServed, {vp, name, length, exact != 0, valueLength, writeMethod});
}

// Makes the length of a value the one that the library can take for its type: 4 octets for whatever
// travels as an integer, since all of these stand in 32-bit cells here. Returns false for a value
// that it could not take at all: an object id of half a sub-identifier, an address that is no IPv4
// address, a type that no column has.
bool FitValueLength(std::uint8_t type, std::size_t& length);

// Stands between a handler and the library, which logs a length that it does not expect and then
// reads through a null pointer.
template <FindVarMethod* kHandler>
u_char* Guarded(variable* vp, oid* name, std::size_t* length, int exact, std::size_t* valueLength,
                WriteMethod** writeMethod) {
    u_char* value = kHandler(vp, name, length, exact, valueLength, writeMethod);
    return value != nullptr && FitValueLength(static_cast<std::uint8_t>(vp->type), *valueLength)
               ? value
               : nullptr;
}

// An object id in the library's form.
template <std::size_t kLength>
constexpr std::array<oid, kLength> OidOf(const std::array<std::uint32_t, kLength>& numbers) {
    std::array<oid, kLength> names{};
    std::ranges::copy(numbers, names.begin());
    return names;
}

// A table with its handler as the library calls it.
struct RegisteredTable {
    const ServedTable& table;
    FindVarMethod* handler;
};

// The library's records of a module's columns, of the form that has room for its object ids.
template <class Record>
std::vector<Record> MakeVariables(const MibModule& module) {
    std::vector<Record> records;
    for (const auto& [table, handler] : module.tables) {
        u_char magic = table.firstMagic;
        for (const Column& column : table.columns) {
            Record& record = records.emplace_back();
            record.magic = magic++;
            record.type = column.type;
            record.acl = column.set.access == Access::kReadOnly ? NETSNMP_OLDAPI_RONLY
                                                                : NETSNMP_OLDAPI_RWRITE;
            record.findVar = handler;
            record.namelen = static_cast<u_char>(LengthOf(table.entry) + 1);
            *std::copy_n(table.entry.begin(), LengthOf(table.entry), record.name) = column.suffix;
        }
    }
    return records;
}

// Registers a module's records. A failure is reported to the library's debug output; the agent runs
// on without the module.
void RegisterRecords(const MibModule& module, variable* records, std::size_t recordSize,
                     std::size_t count);

template <class Record>
void RegisterModule(const MibModule& module, std::vector<Record>& records) {
    RegisterRecords(module, reinterpret_cast<variable*>(records.data()), sizeof(Record),
                    records.size());
}

}  // namespace snmpmain
