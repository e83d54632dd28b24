// Fabric files: TOML to the model and back.
#include <toml++/toml.h>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <utility>

#include "sim/fabric.h"
#include "sim/frame.h"

namespace sim {
namespace {

// ---- Reading

[[noreturn]] void Fail(const std::string& file, unsigned line, const std::string& what) {
    throw FabricError(file + ":" + std::to_string(line) + ": " + what);
}

/// Reads the keys of one table and afterwards complains about those that nobody asked for, so that
/// a misspelt key does not go unnoticed.
class TableReader {
  public:
    TableReader(const toml::table& table, const std::string& file) : table_(table), file_(file) {}

    [[noreturn]] void FailAt(const toml::node& node, const std::string& what) const {
        Fail(file_, node.source().begin.line, what);
    }

    const toml::node* Take(const std::string& key) {
        taken_.insert(key);
        return table_.get(key);
    }

    void Read(const std::string& key, std::string& value) {
        if (const toml::node* node = Take(key)) {
            value = Text(*node, key);
        }
    }

    void Read(const std::string& key, bool& value) {
        if (const toml::node* node = Take(key)) {
            const auto found = node->value_exact<bool>();
            if (!found) {
                FailAt(*node, "\"" + key + "\" must be true or false");
            }
            value = *found;
        }
    }

    template <class Number>
    void ReadNumber(const std::string& key, Number& value) {
        if (const toml::node* node = Take(key)) {
            value = NumberOf<Number>(*node, key);
        }
    }

    void Read(const std::string& key, std::vector<std::string>& values) {
        values.clear();
        ForEach(key, [&](const toml::node& node) { values.push_back(Text(node, key)); });
    }

    void Read(const std::string& key, std::vector<std::uint32_t>& values) {
        values.clear();
        ForEach(key, [&](const toml::node& node) {
            values.push_back(NumberOf<std::uint32_t>(node, key));
        });
    }

    /// Calls `one` with a reader for each table of an array of tables.
    template <class Function>
    void ForEachTable(const std::string& key, Function one) {
        ForEach(key, [&](const toml::node& node) {
            TableReader reader(TableOf(node, key), file_);
            one(reader, node);
            reader.Finish();
        });
    }

    /// Calls `one` with each key and node of a table below this one.
    template <class Function>
    void ForEachKey(const std::string& key, Function one) {
        if (const toml::node* node = Take(key)) {
            for (const auto& [name, value] : TableOf(*node, key)) {
                one(std::string(name.str()), value);
            }
        }
    }

    template <class T>
    void ReadFields(T& part, const Fields<T>& fields) {
        for (const TextField<T>& field : fields.texts) {
            Read(field.key, part.*field.member);
        }
        for (const NumberField<T>& field : fields.numbers) {
            ReadNumber(field.key, part.*field.member);
        }
        for (const BoolField<T>& field : fields.bools) {
            Read(field.key, part.*field.member);
        }
    }

    template <class T>
    void ReadParts(const std::string& key, std::vector<T>& parts, const Fields<T>& fields) {
        ForEachTable(key, [&](TableReader& reader, const toml::node&) {
            reader.ReadFields(parts.emplace_back(), fields);
        });
    }

    void Finish() const {
        for (const auto& [key, node] : table_) {
            if (!taken_.contains(std::string(key.str()))) {
                Fail(file_, key.source().begin.line,
                     "unknown key \"" + std::string(key.str()) + "\"");
            }
        }
    }

    std::string Text(const toml::node& node, const std::string& key) const {
        const auto found = node.value_exact<std::string>();
        if (!found) {
            FailAt(node, "\"" + key + "\" must be a text");
        }
        if (found->size() > kMaxReplyText) {
            FailAt(node, "\"" + key + "\" has " + std::to_string(found->size()) +
                             " characters, more than the " + std::to_string(kMaxReplyText) +
                             " that a reply holds");
        }
        if (found->find('\0') != std::string::npos) {
            FailAt(node, "\"" + key + "\" holds a NUL character");
        }
        return *found;
    }

    template <class Number>
    Number NumberOf(const toml::node& node, const std::string& key) const {
        const auto found = node.value_exact<std::int64_t>();
        if (!found || !std::in_range<Number>(*found)) {
            FailAt(node, "\"" + key + "\" must be a number from 0 to " +
                             std::to_string(std::numeric_limits<Number>::max()));
        }
        return static_cast<Number>(*found);
    }

  private:
    const toml::table& TableOf(const toml::node& node, const std::string& key) const {
        if (!node.is_table()) {
            FailAt(node, "\"" + key + "\" must be a table");
        }
        return *node.as_table();
    }

    template <class Function>
    void ForEach(const std::string& key, Function one) {
        const toml::node* node = Take(key);
        if (node == nullptr) {
            return;
        }
        if (!node->is_array()) {
            FailAt(*node, "\"" + key + "\" must be a list");
        }
        for (const toml::node& element : *node->as_array()) {
            one(element);
        }
    }

    const toml::table& table_;
    const std::string& file_;
    std::set<std::string> taken_;
};

/// A counter is a number, or 16 hexadecimal digits for the upper half of the 64-bit range, which
/// TOML's numbers do not reach.
std::uint64_t ReadCounter(const TableReader& reader, const toml::node& node,
                          const std::string& name) {
    if (node.is_integer()) {
        return reader.NumberOf<std::uint64_t>(node, name);
    }
    const std::string text = reader.Text(node, name);
    if (text.size() != 16 || text.find_first_not_of("0123456789abcdefABCDEF") != text.npos) {
        reader.FailAt(node, "\"" + name + "\" must be a number or 16 hexadecimal digits");
    }
    return std::stoull(text, nullptr, 16);
}

void ReadPort(TableReader& reader, Port& port) {
    reader.ReadFields(port, PortFields());
    reader.ForEachKey("counters", [&](const std::string& name, const toml::node& node) {
        if (std::find(kCounterNames.begin(), kCounterNames.end(), name) == kCounterNames.end()) {
            reader.FailAt(node, "no counter is called \"" + name + "\"");
        }
        port.counters[name] = ReadCounter(reader, node, name);
    });
}

void ReadTraps(TableReader& reader, Switch& unit) {
    std::size_t count = 0;
    reader.ForEachTable("trap", [&](TableReader& trap, const toml::node& node) {
        if (count == kTrapDestinations) {
            reader.FailAt(node, "a switch has at most 5 trap destinations");
        }
        trap.ReadFields(unit.traps[count++], TrapFields());
    });
}

void ReadLog(TableReader& reader, Switch& unit) {
    reader.ForEachTable("log", [&](TableReader& log, const toml::node&) {
        LogEntry& entry = unit.log.emplace_back();
        log.ReadNumber("id", entry.id);
        log.Read("time", entry.time);
        log.Read("text", entry.text);
    });
}

void ReadSwitch(TableReader& reader, Switch& unit) {
    reader.ReadNumber("domain", unit.domain);
    reader.ReadFields(unit, SwitchFields());
    reader.ForEachKey("software_versions", [&](const std::string& name, const toml::node& node) {
        unit.softwareVersions[name] = reader.Text(node, name);
    });
    reader.Read("power_supplies", unit.powerSupplies);
    reader.Read("fans", unit.fans);
    reader.ForEachTable("blade", [&](TableReader& blade, const toml::node&) {
        Blade& part = unit.blades.emplace_back();
        blade.ReadFields(part, BladeFields());
        blade.Read("board_temps", part.boardTemps);
    });
    reader.ForEachTable("port", [&](TableReader& port, const toml::node&) {
        ReadPort(port, unit.ports.emplace_back());
    });
    ReadTraps(reader, unit);
    ReadLog(reader, unit);
    reader.ReadParts("link", unit.links, LinkFields());
    reader.ReadParts("name_server", unit.nameServer, NsFields());
    reader.ForEachKey("values", [&](const std::string& path, const toml::node& node) {
        if (node.value_exact<bool>() == false) {
            unit.values[path] = std::nullopt;
        } else {
            unit.values[path] = reader.Text(node, path);
        }
    });
}

void ReadZones(TableReader& reader, const std::string& key, std::vector<Zone>& zones) {
    // A key that stands twice in a list would lead a walk round in circles.
    std::set<std::string> names;
    reader.ForEachTable(key, [&](TableReader& zone, const toml::node& node) {
        Zone& part = zones.emplace_back();
        zone.Read("name", part.name);
        zone.Read("type", part.type);
        if (!names.insert(part.name).second) {
            zone.FailAt(node, "a second " + key + " is called \"" + part.name + "\"");
        }
        std::set<std::string> ids;
        zone.ForEachTable("members", [&](TableReader& member, const toml::node& element) {
            ZoneMember& each = part.members.emplace_back();
            member.Read("id", each.id);
            member.Read("type", each.type);
            if (!ids.insert(each.id).second) {
                member.FailAt(element, "\"" + each.id + "\" is a member twice");
            }
        });
    });
}

Fabric ReadFabric(const toml::table& table, const std::string& file) {
    Fabric fabric;
    TableReader reader(table, file);
    reader.Read("merge_mode", fabric.mergeMode);
    reader.Read("proxy", fabric.proxy);
    reader.ReadNumber("local_domain", fabric.localDomain);
    reader.Read("end_mark", fabric.endMark);
    reader.Read("active_zone_set", fabric.activeZoneSet);
    ReadZones(reader, "zone", fabric.zones);
    ReadZones(reader, "alias", fabric.aliases);
    // A contradiction is reported at the switch that brings it in.
    std::vector<unsigned> lines;
    reader.ForEachTable("switch", [&](TableReader& unit, const toml::node& node) {
        lines.push_back(node.source().begin.line);
        ReadSwitch(unit, fabric.switches.emplace_back());
    });
    reader.Finish();
    const toml::node* local = table.get("local_domain");
    lines.push_back(local == nullptr ? 1 : local->source().begin.line);
    std::size_t culprit = 0;
    if (const std::string wrong = CheckFabric(fabric, &culprit); !wrong.empty()) {
        Fail(file, lines[culprit], wrong);
    }
    return fabric;
}

// ---- Writing

std::string Quote(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X",
                          unsigned{static_cast<unsigned char>(c)});
            quoted += escape;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

void Line(std::string& out, const std::string& key, const std::string& value) {
    out += key + " = " + value + "\n";
}

std::string BoolWord(bool value) {
    return value ? "true" : "false";
}

template <class T, class Function>
std::string List(const std::vector<T>& values, Function one) {
    std::string text = "[";
    for (const T& value : values) {
        text += (text.size() > 1 ? ", " : "") + one(value);
    }
    return text + "]";
}

template <class T>
void PrintFields(std::string& out, const T& part, const Fields<T>& fields) {
    for (const TextField<T>& field : fields.texts) {
        Line(out, field.key, Quote(part.*field.member));
    }
    for (const NumberField<T>& field : fields.numbers) {
        Line(out, field.key, std::to_string(part.*field.member));
    }
    for (const BoolField<T>& field : fields.bools) {
        Line(out, field.key, BoolWord(part.*field.member));
    }
}

template <class Parts, class T>
void PrintParts(std::string& out, const char* heading, const Parts& parts,
                const Fields<T>& fields) {
    for (const T& part : parts) {
        out += std::string("\n[[") + heading + "]]\n";
        PrintFields(out, part, fields);
    }
}

void PrintPort(std::string& out, const Port& port) {
    out += "\n[[switch.port]]\n";
    PrintFields(out, port, PortFields());
    std::string counters;
    for (const auto& [name, value] : port.counters) {
        char hex[24];
        std::snprintf(hex, sizeof hex, "\"%016llX\"", static_cast<unsigned long long>(value));
        counters += (counters.empty() ? "" : ", ") + name + " = " +
                    (std::in_range<std::int64_t>(value) ? std::to_string(value) : hex);
    }
    Line(out, "counters", counters.empty() ? "{}" : "{ " + counters + " }");
}

void PrintSwitch(std::string& out, const Switch& unit) {
    out += "\n[[switch]]\n";
    Line(out, "domain", std::to_string(unit.domain));
    PrintFields(out, unit, SwitchFields());
    std::string versions;
    for (const auto& [name, version] : unit.softwareVersions) {
        versions += (versions.empty() ? "" : ", ") + Quote(name) + " = " + Quote(version);
    }
    Line(out, "software_versions", versions.empty() ? "{}" : "{ " + versions + " }");
    Line(out, "power_supplies", List(unit.powerSupplies, Quote));
    Line(out, "fans", List(unit.fans, Quote));
    if (!unit.values.empty()) {
        out += "\n[switch.values]\n";
    }
    for (const auto& [path, text] : unit.values) {
        Line(out, Quote(path), text ? Quote(*text) : "false");
    }
    PrintParts(out, "switch.trap", unit.traps, TrapFields());
    for (const Blade& blade : unit.blades) {
        out += "\n[[switch.blade]]\n";
        PrintFields(out, blade, BladeFields());
        Line(out, "board_temps",
             List(blade.boardTemps, [](std::uint32_t t) { return std::to_string(t); }));
    }
    for (const Port& port : unit.ports) {
        PrintPort(out, port);
    }
    PrintParts(out, "switch.link", unit.links, LinkFields());
    PrintParts(out, "switch.name_server", unit.nameServer, NsFields());
    for (const LogEntry& entry : unit.log) {
        out += "\n[[switch.log]]\n";
        Line(out, "id", std::to_string(entry.id));
        Line(out, "time", Quote(entry.time));
        Line(out, "text", Quote(entry.text));
    }
}

void PrintZones(std::string& out, const char* heading, const std::vector<Zone>& zones) {
    for (const Zone& zone : zones) {
        out += std::string("\n[[") + heading + "]]\n";
        Line(out, "name", Quote(zone.name));
        Line(out, "type", Quote(zone.type));
        Line(out, "members", List(zone.members, [](const ZoneMember& member) {
                 return "{ id = " + Quote(member.id) + ", type = " + Quote(member.type) + " }";
             }));
    }
}

}  // namespace

Fabric ParseFabric(std::string_view toml, const std::string& name) {
    try {
        const toml::table table = toml::parse(toml, name);
        return ReadFabric(table, name);
    } catch (const toml::parse_error& error) {
        Fail(name, error.source().begin.line, std::string(error.description()));
    }
}

Fabric LoadFabric(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    if (file.peek() == std::ifstream::traits_type::eof() && file.is_open() && !file.bad()) {
        return ParseFabric("", path);
    }
    if (!file || !(text << file.rdbuf())) {
        throw FabricError(path + ": cannot be read");
    }
    return ParseFabric(text.str(), path);
}

std::string PrintFabric(const Fabric& fabric) {
    std::string out;
    Line(out, "merge_mode", Quote(fabric.mergeMode));
    Line(out, "proxy", BoolWord(fabric.proxy));
    Line(out, "local_domain", std::to_string(fabric.localDomain));
    Line(out, "end_mark", BoolWord(fabric.endMark));
    Line(out, "active_zone_set", Quote(fabric.activeZoneSet));
    PrintZones(out, "zone", fabric.zones);
    PrintZones(out, "alias", fabric.aliases);
    for (const Switch& unit : fabric.switches) {
        PrintSwitch(out, unit);
    }
    return out;
}

}  // namespace sim
