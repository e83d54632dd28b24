#include "exporter/walk.h"

#include <algorithm>
#include <sstream>

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
    Kind kind;
    std::size_t place;  // in the row
    std::size_t base;   // length of the column's own name
    Oid within;         // what names of its rows begin with
    Oid last;
    bool done = false;
};

std::vector<Cursor> CursorsOf(std::span<const Column> columns) {
    std::vector<Cursor> cursors;
    for (std::size_t i = 0; i < columns.size(); i++) {
        const std::string below = *columns[i].oid == '.' ? "" : ".1.3.6.1.3.94.1.";
        std::istringstream text(below + columns[i].oid);
        Oid name;
        std::uint32_t number = 0;
        for (char dot = 0; text >> dot >> number;) {
            name.push_back(number);
        }
        cursors.push_back({columns[i].kind, i, name.size(), name, name});
    }
    return cursors;
}

Value Converted(Kind kind, Value value) {
    auto* octets = std::get_if<std::string>(&value);
    if ((kind == Kind::kNumber) != (octets == nullptr)) {
        return {};
    }
    if (kind == Kind::kText) {
        // One octet that is no UTF-8 would cost Prometheus the whole reading.
        const auto odd = [](char c) { return c < ' ' || c > '~'; };
        std::replace_if(octets->begin(), octets->end(), odd, '?');
    }
    if (kind == Kind::kCounter64) {
        const std::uint64_t count = WwnOf(*octets);
        return octets->size() == 8 && count != kNotCounted ? Value(count) : Value();
    }
    return value;
}

// Takes one value: it moves its column on, or ends it. -1 when the names do not ascend.
int Take(Cursor& cursor, Binding& binding, std::size_t width, Rows& rows) {
    const Oid& name = binding.name;
    const std::size_t rest = cursor.base + (rows.ofUnits ? kUnitLength : 0);
    cursor.done = cursor.done || name.size() < rest ||
                  !std::equal(cursor.within.begin(), cursor.within.end(), name.begin());
    if (cursor.done) {
        return 0;
    }
    if (name <= cursor.last || rows.all.size() > kMaxRows) {
        return -1;
    }
    Key key{0, Oid(name.begin() + static_cast<long>(rest), name.end())};
    for (std::size_t i = cursor.base; i < std::min(cursor.base + 8, rest); i++) {
        key.unit = key.unit << 8 | (name[i] & 0xFF);
    }
    Row& row = rows.all[key];
    row.resize(width);
    row[cursor.place] = Converted(cursor.kind, std::move(binding.value));
    cursor.last = std::move(binding.name);
    return 0;
}

// One request for the columns that are not at their end, and what it brings.
int Step(Session& session, std::size_t repetitions, std::size_t width, std::span<Cursor> cursors,
         Rows& rows) {
    std::vector<Oid> names;
    std::vector<Cursor*> open;
    for (Cursor& cursor : cursors) {
        if (!cursor.done) {
            names.push_back(cursor.last);
            open.push_back(&cursor);
        }
    }
    std::vector<Binding> bindings;
    if (session.GetBulk(names, static_cast<int>(repetitions), bindings) != 0) {
        return -1;
    }
    if (bindings.size() < open.size()) {
        return session.Fail("an answer is too short");
    }
    for (std::size_t i = 0; i < bindings.size(); i++) {
        if (Take(*open[i % open.size()], bindings[i], width, rows) != 0) {
            return session.Fail("a table does not end");
        }
    }
    return 0;
}

}  // namespace

int ReadRows(Session& session, std::span<const Column> columns, Rows& rows) {
    std::vector<Cursor> cursors = CursorsOf(columns);
    const auto isOpen = [](const Cursor& cursor) { return !cursor.done; };
    for (std::size_t first = 0; first < cursors.size(); first += kSideBySide) {
        const std::span<Cursor> some =
            std::span(cursors).subspan(first, std::min(kSideBySide, cursors.size() - first));
        const std::size_t expected = rows.all.size();  // known after the first columns
        std::size_t read = 0;
        while (const auto open = std::count_if(some.begin(), some.end(), isOpen)) {
            std::size_t count = kValuesOfRequest / static_cast<std::size_t>(open);
            if (expected > read) {
                count = std::min(count, expected - read + 1);  // one more shows the end
            }
            if (Step(session, count, columns.size(), some, rows) != 0) {
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
    for (Cursor& cursor : cursors) {
        for (std::size_t i = 0; i < kUnitLength; i++) {
            cursor.within.push_back(i < 8 ? after.unit >> (56 - 8 * i) & 0xFF : 0);
        }
        cursor.last = cursor.within;
        cursor.last.insert(cursor.last.end(), after.rest.begin(), after.rest.end());
    }
    return Step(session, count, columns.size(), cursors, rows);
}

std::uint64_t WwnOf(const std::string& octets) {
    std::uint64_t wwn = 0;
    for (std::size_t i = 0; i < 8 && octets.size() >= 8; i++) {
        wwn = wwn << 8 | static_cast<unsigned char>(octets[i]);
    }
    return wwn;
}

}  // namespace fcexporter
