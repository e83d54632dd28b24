// MIB tables and groups of scalars: their columns, where they stand, and how their instances are
// found. Main thread only.
#pragma once

#include <span>

#include "src/mibs/column.h"
#include "src/snmpoid/snmp_headers.h"
#include "src/traps/trap_objects.h"

namespace snmpmain {

// What a handler is called with.
struct HandlerCall {
    variable* vp;
    oid* name;
    std::size_t* length;
    bool exact;
    std::size_t* valueLength;
    WriteMethod** writeMethod;
};

// How a table resolves instances; both return 0 or -1. `resolve` takes a request for exactly one
// instance; `next` finds the first one after the request and rewrites it.
struct TableShape {
    int (*resolve)(const HandlerCall& call, Instance& instance);
    int (*next)(const HandlerCall& call, Instance& instance);
};

struct RegisteredTable;

struct MibModule {
    const char* name;                         // under which it is registered
    const char* source;                       // in messages about unknown objects; null: none
    std::span<const oid> prefix;              // of all its objects
    std::span<const RegisteredTable> tables;  // in the order of registration
    MibValue& result;                         // what its handlers return points into this
};

// A table or group of scalars as its handler serves it.
struct ServedTable {
    const MibModule& module;
    EntryOid entry;
    std::uint8_t firstMagic;  // the columns' are consecutive
    std::span<const Column> columns;
    TableShape shape;
};

consteval ServedTable Table(const MibModule& module, const EntryOid& entry, std::uint8_t firstMagic,
                            std::span<const Column> columns, TableShape shape) {
    if (firstMagic + columns.size() > 256) {
        throw "a magic is an octet";
    }
    for (std::size_t i = 1; i < columns.size(); ++i) {
        if (columns[i].suffix <= columns[i - 1].suffix) {
            throw "columns stand in the order of their numbers";
        }
    }
    return {module, entry, firstMagic, columns, shape};
}

// Sub-identifiers of a column's whole OID.
std::size_t ColumnLength(const ServedTable& table);

// A table as its handler knows it, with the write method of its columns.
struct ServedColumns {
    const ServedTable& table;
    WriteMethod* write;
};

// Serves one request: finds the column by the variable's magic, resolves the instance, reads the
// value. Returns the value, or null for no such instance.
u_char* Serve(std::span<const ServedColumns> tables, const HandlerCall& call);

// Shapes that several tables have.
int ResolveScalar(const HandlerCall& call, Instance& instance);
int ResolveUnit(const HandlerCall& call, Instance& instance);
int NextUnit(const HandlerCall& call, Instance& instance);
constexpr TableShape kScalarShape{ResolveScalar, ResolveScalar};  // instance 0
constexpr TableShape kUnitShape{ResolveUnit, NextUnit};           // index: unit id

// Resolves an exact request for a unit id and a number + 1: sets all of `instance`.
int ResolveUnitRow(const HandlerCall& call, Instance& instance);

// The same for an index that is taken as it stands; `row` is left alone.
int ResolveUnitIndex(const HandlerCall& call, Instance& instance);

// Completes an instance whose unit is known. Returns 0, or -1 when the unit is not in use.
int CompleteUnit(const HandlerCall& call, Instance& instance);

}  // namespace snmpmain
