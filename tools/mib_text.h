// What the MIB modules say beyond the agent's tables: names of tables and where they hang, types
// and words for numbers, units, descriptions.
#pragma once

#include <span>

#include "src/mibs/table.h"

namespace snmpmain {

struct ObjectText {
    const char* object;
    const char* text;
    const char* syntax =
        nullptr;  // null: what the type of the column says, DisplayString for octets
    const char* units = nullptr;  // null: none
};

// A table, or a group of scalars.
struct TableText {
    const ServedTable& served;
    std::span<const ObjectText> objects;  // those of its columns, in their order
    const char* name;                     // of the table; null: scalars
    const char* parent;                   // the node that the table or the scalars hang below
    const char* index = nullptr;          // the clause that tells a row's index
    const char* row = nullptr;            // what each row is
    // An index that is no column of the agent, number 1 of the entry; null: none.
    const ObjectText* indexObject = nullptr;
};

struct ModuleText {
    const char* name;
    bool isVersion2;  // of the SMI, in which it is written
    const char* head;
    std::span<const TableText> tables;
    const char* tail;
};

extern const ModuleText kFcmgmtText;
extern const ModuleText kFeText;

}  // namespace snmpmain
