#include "exporter/walk.h"

#include <algorithm>
#include <cstdlib>

namespace fcexporter {
namespace {

// snmpd hands out 100 values at most for one request. Columns of one row cost the agent less than
// as many rows: what is asked to find the row is asked once.
constexpr std::size_t kValuesOfRequest = 100;
constexpr std::size_t kSideBySide = 10;

// More rows than any fabric has: an agent that hands out more is at fault.
constexpr std::size_t kMaxRows = 200'000;

constexpr std::size_t kUnitLength = 16;  // sub-identifiers: 8 of the WWN, 8 zeros
constexpr std::uint64_t kNotCounted = 0x8000'0000'0000'0000;

// A column under way.
struct Cursor {
    const Column* column;
    std::size_t place;  // in the row
    std::size_t base;   // length of the column's own name
    Oid within;         // what names of its rows begin with
    Oid last;
    bool done = false;
};

Oid ParseOid(const char* text) {
    Oid name = {1, 3, 6, 1, 3, 94, 1};
    if (*text == '.') {
        name.clear();
        text++;
    }
    for (char* end = nullptr; *text != '\0'; text = *end == '.' ? end + 1 : end) {
        name.push_back(static_cast<std::uint32_t>(std::strtoul(text, &end, 10)));
    }
    return name;
}

std::vector<Cursor> CursorsOf(std::span<const Column> columns) {
    std::vector<Cursor> cursors;
    for (std::size_t i = 0; i < columns.size(); i++) {
        const Oid base = ParseOid(columns[i].oid);
        cursors.push_back({&columns[i], i, base.size(), base, base});
    }
    return cursors;
}

// The row that a name belongs to. 0, or -1 when the name is none of the cursor's rows.
int KeyOf(const Oid& name, const Cursor& cursor, Index index, Key& key) {
    std::size_t rest = cursor.base;
    if (!std::equal(
            cursor.within.begin(), cursor.within.end(), name.begin(),
            name.begin() + static_cast<long>(std::min(cursor.within.size(), name.size())))) {
        return -1;
    }
    if (index == Index::kUnit) {
        rest += kUnitLength;
        for (std::size_t i = cursor.base; i < cursor.base + 8 && i < name.size(); i++) {
            key.unit = key.unit << 8 | (name[i] & 0xFF);
        }
    }
    if (name.size() < rest) {
        return -1;
    }
    key.rest.assign(name.begin() + static_cast<long>(rest), name.end());
    return 0;
}

Value Converted(Kind kind, Value value) {
    auto* octets = std::get_if<std::string>(&value);
    if ((kind == Kind::kNumber) != (octets == nullptr)) {
        return {};
    }
    if (kind == Kind::kText) {
        // One octet that is no UTF-8 would cost Prometheus the whole reading.
        std::replace_if(
            octets->begin(), octets->end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    }
    if (kind == Kind::kCounter64) {
        const std::uint64_t count = WwnOf(*octets);
        return octets->size() == 8 && count != kNotCounted ? Value(count) : Value();
    }
    return value;
}

// Takes one value: it moves its column on, or ends it. -1 when the names do not ascend.
int Take(Cursor& cursor, Binding& binding, Index index, std::size_t width, Rows& rows) {
    Key key;
    cursor.done = cursor.done || KeyOf(binding.name, cursor, index, key) != 0;
    if (cursor.done) {
        return 0;
    }
    if (binding.name <= cursor.last || rows.size() > kMaxRows) {
        return -1;
    }
    Row& row = rows[key];
    row.resize(width);
    row[cursor.place] = Converted(cursor.column->kind, std::move(binding.value));
    cursor.last = std::move(binding.name);
    return 0;
}

// One request for the columns that are not at their end, and what it brings.
int Step(Session& session, std::vector<Cursor*>& open, std::size_t repetitions, Index index,
         std::size_t width, Rows& rows) {
    std::vector<Oid> names;
    for (const Cursor* cursor : open) {
        names.push_back(cursor->last);
    }
    std::vector<Binding> bindings;
    if (session.GetBulk(names, static_cast<int>(repetitions), bindings) != 0) {
        return -1;
    }
    if (bindings.size() < open.size()) {
        return session.Fail("an answer is too short");
    }
    for (std::size_t i = 0; i < bindings.size(); i++) {
        if (Take(*open[i % open.size()], bindings[i], index, width, rows) != 0) {
            return session.Fail("a table does not end");
        }
    }
    std::erase_if(open, [](const Cursor* cursor) { return cursor->done; });
    return 0;
}

}  // namespace

int ReadRows(Session& session, std::span<const Column> columns, Index index, Rows& rows) {
    std::vector<Cursor> cursors = CursorsOf(columns);
    for (std::size_t first = 0; first < cursors.size(); first += kSideBySide) {
        std::vector<Cursor*> open;
        for (std::size_t i = first; i < std::min(first + kSideBySide, cursors.size()); i++) {
            open.push_back(&cursors[i]);
        }
        const std::size_t expected = rows.size();  // known after the first columns
        for (std::size_t read = 0; !open.empty();) {
            const std::size_t most = kValuesOfRequest / open.size();
            // One row more than there are shows the end.
            const std::size_t count = expected > read ? std::min(expected - read + 1, most) : most;
            if (Step(session, open, count, index, columns.size(), rows) != 0) {
                return -1;
            }
            read += count;
        }
    }
    return 0;
}

int ReadRowsAfter(Session& session, std::span<const Column> columns, const Key& after,
                  std::size_t count, Rows& rows) {
    std::vector<Cursor> cursors = CursorsOf(columns);
    std::vector<Cursor*> open;
    for (Cursor& cursor : cursors) {
        for (std::size_t i = 0; i < kUnitLength; i++) {
            cursor.within.push_back(i < 8 ? after.unit >> (56 - 8 * i) & 0xFF : 0);
        }
        cursor.last = cursor.within;
        cursor.last.insert(cursor.last.end(), after.rest.begin(), after.rest.end());
        open.push_back(&cursor);
    }
    return Step(session, open, count, Index::kUnit, columns.size(), rows);
}

std::uint64_t WwnOf(const std::string& octets) {
    std::uint64_t wwn = 0;
    for (std::size_t i = 0; i < 8 && octets.size() >= 8; i++) {
        wwn = wwn << 8 | static_cast<unsigned char>(octets[i]);
    }
    return wwn;
}

}  // namespace fcexporter
