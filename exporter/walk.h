// Reading tables of an agent: their columns side by side, several rows with each request.
#pragma once

#include <compare>
#include <map>
#include <span>

#include "exporter/session.h"

namespace fcexporter {

// Which row: the unit's WWN where the table's index begins with one, and the rest of the index.
struct Key {
    std::uint64_t unit = 0;
    Oid rest;
    auto operator<=>(const Key&) const = default;
};

struct Rows {
    bool ofUnits = true;  // the index begins with a unit
    std::map<Key, Row> all;
};

// Adds all rows of these columns; or those of one unit that follow the row `after`, up to `count`,
// which one request brings. 0, or -1: see the session's error.
int ReadRows(Session& session, std::span<const Column> columns, Rows& rows);
int ReadRowsAfter(Session& session, std::span<const Column> columns, const Key& after,
                  std::size_t count, Rows& rows);

// The first 8 octets as a number, 0 when there are fewer.
std::uint64_t WwnOf(const std::string& octets);

}  // namespace fcexporter
