// How values print, and how rows make a walk. For the expectations only.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/e2e/stack.h"

namespace e2e {

using Octets = std::vector<unsigned>;
std::string Integer(std::uint64_t number);
std::string Hex(const Octets& octets);
std::string Text(const std::string& text, std::size_t most = 512);
// `count` octets that begin with those of the digits; the rest is zero.
std::string Hex(const std::string& digits, std::size_t count);
std::string Index(const std::string& digits, std::size_t count);

// The number of the first word that the text contains, or is; else `none`.
using Numbers = std::vector<std::pair<const char*, unsigned>>;
unsigned Containing(const std::string& text, const Numbers& words, unsigned none = 1);
unsigned Exactly(const std::string& text, const Numbers& words, unsigned none = 1);

std::string AddressUrl(const sim::Switch& unit);

// A walk goes through a table column by column, and in each through the rows as they are listed.
using Columns = std::map<int, std::string>;  // those that answer, by number
using Rows = std::vector<std::pair<std::string, Columns>>;
Values Walked(const std::string& table, const Rows& rows);

// Tables of what units have: the first column is the unit, the second the number of the row.
using UnitRows = std::map<std::uint64_t, Columns>;
Values WalkedByUnit(const std::string& table, const sim::Fabric& fabric,
                    const std::function<UnitRows(const sim::Switch&)>& rowsOf);
std::vector<const sim::Switch*> UnitsInOrder(const sim::Fabric& fabric);
UnitRows SensorRows(const sim::Switch& unit);

}  // namespace e2e
