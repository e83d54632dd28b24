// Registration of the MIB modules with the SNMP library. Main thread only.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "src/mibs/column.h"
#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

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

// Writes the library's records of a module's groups, of the form that has room for the module's
// object ids. Returns how many there are; no more than fit are written.
template <class Record>
std::size_t MakeVariables(std::span<const ColumnGroup> groups, std::span<Record> records) {
    std::size_t count = 0;
    for (const ColumnGroup& group : groups) {
        for (const Column& column : group.columns) {
            if (count < records.size()) {
                Record& record = records[count];
                record.magic = column.magic;
                record.type = column.type;
                record.acl = column.access == Access::kReadOnly ? NETSNMP_OLDAPI_RONLY
                                                                : NETSNMP_OLDAPI_RWRITE;
                record.findVar = group.handler;
                record.namelen = static_cast<u_char>(group.prefixLength + 1);
                std::copy_n(group.prefix.begin(), group.prefixLength, record.name);
                record.name[group.prefixLength] = column.suffix;
            }
            ++count;
        }
    }
    return count;
}

struct MibModule {
    const char* name;             // under which it is registered
    std::span<const oid> prefix;  // of all its objects
    std::span<const ColumnGroup> groups;
};

// Registers a module's records. A failure is reported to the library's debug output; the agent runs
// on without the module.
void RegisterRecords(const MibModule& module, variable* records, std::size_t recordSize,
                     std::size_t count);

// Makes and registers the records of a module. They stay where they are for the process's life.
template <class Record, std::size_t kCount>
void RegisterModule(const MibModule& module, std::array<Record, kCount>& records) {
    const std::size_t count =
        std::min(MakeVariables(module.groups, std::span<Record>(records)), records.size());
    RegisterRecords(module, reinterpret_cast<variable*>(records.data()), sizeof(Record), count);
}

}  // namespace snmpmain
