#include "sim/commands.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <unordered_set>

namespace sim {
namespace {

constexpr const char* kUptimePath = "Oper.Switch.Uptime";
constexpr std::string_view kOwnNames = "Oper.NameServer.";
constexpr std::string_view kNamesOf = "Oper.NameServerAll.";
constexpr std::string_view kNextLog = "Oper.Switch.NextLogEntry.";
constexpr std::string_view kNextLink = "Oper.Link.NextLinkEntry.";

std::string BoolText(bool value) {
    return value ? "True" : "False";
}

std::string HexText(std::uint64_t value, int digits) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*llX", digits, static_cast<unsigned long long>(value));
    return text;
}

std::string AddressText(const std::string& dotted) {
    in_addr address{};
    inet_pton(AF_INET, dotted.c_str(), &address);
    return HexText(ntohl(address.s_addr), 8);
}

std::string LogText(const LogEntry& entry) {
    return "[" + std::to_string(entry.id) + "][" + entry.time + "]" + entry.text;
}

std::string EndText(const Fabric& fabric) {
    return fabric.endMark ? "*end*" : ErrorText(CommandError::kNoSuchEntry);
}

/// Adds the plain fields of a switch or of a part of it; `prefix` and `suffix` enclose the path
/// that the table of fields gives.
template <class T>
void AddFields(ReplyMap& map, const T& part, const Fields<T>& fields, const std::string& prefix,
               const std::string& suffix = {}) {
    const auto reply = [&](const char* path) -> std::string& {
        std::string key = prefix;
        return map[key.append(path).append(suffix)];
    };
    for (const TextField<T>& field : fields.texts) {
        const std::string& text = part.*field.member;
        if (field.path == nullptr || (field.form == Form::kOptional && text.empty())) {
            continue;
        }
        reply(field.path) = field.form == Form::kAddress ? AddressText(text) : text;
    }
    for (const NumberField<T>& field : fields.numbers) {
        if (field.path != nullptr) {
            reply(field.path) = std::to_string(part.*field.member);
        }
    }
    for (const BoolField<T>& field : fields.bools) {
        if (field.path != nullptr) {
            reply(field.path) = BoolText(part.*field.member);
        }
    }
}

/// Adds a First/Next pair: `first` gives the first key, `next` + "." + key the one after it.
void AddList(ReplyMap& map, const std::string& first, const std::string& next,
             const std::vector<std::string>& keys, const std::string& end) {
    map[first] = keys.empty() ? end : keys.front();
    for (std::size_t i = 0; i < keys.size(); i++) {
        map[next + "." + keys[i]] = i + 1 < keys.size() ? keys[i + 1] : end;
    }
}

void AddHardware(ReplyMap& map, const Switch& unit) {
    for (std::uint32_t c = 0; c < unit.chassis; c++) {
        const std::string chassis = "Oper.Chassis." + std::to_string(c) + ".";
        map[chassis + "Blades"] = std::to_string(unit.blades.size());
        map[chassis + "PowerSupplies"] = std::to_string(unit.powerSupplies.size());
        map[chassis + "Fans"] = std::to_string(unit.fans.size());
        for (std::size_t i = 0; i < unit.powerSupplies.size(); i++) {
            map[chassis + "PowerSupply." + std::to_string(i)] = unit.powerSupplies[i];
        }
        for (std::size_t i = 0; i < unit.fans.size(); i++) {
            map[chassis + "Fan." + std::to_string(i)] = unit.fans[i];
        }
    }
    for (std::size_t b = 0; b < unit.blades.size(); b++) {
        const Blade& blade = unit.blades[b];
        const std::string prefix = "Oper.Blade." + std::to_string(b) + ".";
        AddFields(map, blade, BladeFields(), prefix);
        map[prefix + "TempSensors"] = std::to_string(blade.boardTemps.size());
        for (std::size_t i = 0; i < blade.boardTemps.size(); i++) {
            map[prefix + "BoardTemp." + std::to_string(i)] = std::to_string(blade.boardTemps[i]);
        }
    }
}

void AddPort(ReplyMap& map, const Port& port, const std::string& index) {
    const std::string userPort = "UserPort.0." + index + ".";
    const std::string topology = "Oper.Topology.0." + index + ".";
    AddFields(map, port, PortFields(), "Oper." + userPort);
    map["Config." + userPort + "AdminState"] = port.adminState;
    map["LowerRange." + userPort + "BBCredit"] = std::to_string(port.minCredit);
    map["UpperRange." + userPort + "BBCredit"] = std::to_string(port.topCredit);
    map[topology + "LocalPortID"] = port.portId;
    map[topology + "LocalPortType"] = port.topologyType;
    for (const char* name : kCounterNames) {
        const auto found = port.counters.find(name);
        const std::uint64_t value = found == port.counters.end() ? 0 : found->second;
        map["Oper." + userPort + "C64." + name] = HexText(value, 16);
        // The short counters are 32 bits wide and wrap.
        map["Oper." + userPort + name] = std::to_string(static_cast<std::uint32_t>(value));
    }
}

void AddPorts(ReplyMap& map, const Switch& unit) {
    map["Oper.Switch.MaxPorts"] = std::to_string(unit.ports.size());
    std::vector<unsigned> links(unit.ports.size());
    for (const Link& link : unit.links) {
        if (link.localPort < links.size()) {
            links[link.localPort]++;
        }
    }
    for (std::size_t p = 0; p < unit.ports.size(); p++) {
        const std::string index = std::to_string(p);
        AddPort(map, unit.ports[p], index);
        map["Oper.Link.Port.0." + index + ".LinkEntries"] = std::to_string(links[p]);
    }
}

void AddLinks(ReplyMap& map, const Switch& unit) {
    const std::string count = std::to_string(unit.links.size());
    map["Oper.Link.LinkEntries"] = count;
    map["Oper.Link.LastLinkEntry"] = count;
    for (std::size_t i = 0; i < unit.links.size(); i++) {
        AddFields(map, unit.links[i], LinkFields(),
                  "Oper.Link.Entry." + std::to_string(i + 1) + ".");
    }
}

/// A switch's name server, without what paths to it begin with.
ReplyMap RenderNameServer(const Fabric& fabric, const Switch& unit) {
    ReplyMap map;
    std::vector<std::string> keys;
    for (const NsEntry& entry : unit.nameServer) {
        keys.push_back(entry.portId);
        AddFields(map, entry, NsFields(), "Entry." + entry.portId + ".");
    }
    map["Entries"] = std::to_string(keys.size());
    AddList(map, "FirstNsEntry", "NextNsEntry", keys, EndText(fabric));
    return map;
}

void AddLog(ReplyMap& map, const Fabric& fabric, const Switch& unit) {
    map["Oper.Switch.LogEntries"] = std::to_string(unit.log.size());
    map["Oper.Switch.FirstLogEntry"] =
        unit.log.empty() ? EndText(fabric) : LogText(unit.log.front());
    map["Oper.Switch.LastLogEntry"] = unit.log.empty() ? EndText(fabric) : LogText(unit.log.back());
}

/// Zones and aliases have the same members under paths of their own.
void AddMembers(ReplyMap& map, const Fabric& fabric, const Zone& zone, const std::string& path) {
    std::vector<std::string> keys;
    for (const ZoneMember& member : zone.members) {
        keys.push_back(member.id);
        map[path + ".ZoneMember." + member.id + ".Type"] = member.type;
    }
    map[path + ".MemberEntries"] = std::to_string(keys.size());
    AddList(map, path + ".FirstZoneMember", path + ".NextZoneMember", keys, EndText(fabric));
}

void AddZoning(ReplyMap& map, const Fabric& fabric) {
    const std::string set = "Oper.Zoning.ActiveZoneSet";
    map[set] = fabric.activeZoneSet.empty() ? EndText(fabric) : fabric.activeZoneSet;
    map[set + ".ZoneEntries"] = std::to_string(fabric.zones.size());
    std::vector<std::string> names;
    for (const Zone& zone : fabric.zones) {
        names.push_back(zone.name);
        map["Oper.Zoning.Zone." + zone.name + ".ZoneType"] = zone.type;
        AddMembers(map, fabric, zone, "Oper.Zoning.ActiveZone." + zone.name);
    }
    AddList(map, set + ".FirstZone", set + ".NextZone", names, EndText(fabric));

    std::vector<std::string> aliases;
    for (const Zone& alias : fabric.aliases) {
        aliases.push_back(alias.name);
        AddMembers(map, fabric, alias, "Oper.Zoning.Alias." + alias.name);
    }
    map["Oper.Zoning.AliasEntries"] = std::to_string(aliases.size());
    AddList(map, "Oper.Zoning.FirstAlias", "Oper.Zoning.NextAlias", aliases, EndText(fabric));
}

/// What a switch answers about itself. Only what moves with the time or stands in a sparse list is
/// left out.
ReplyMap RenderSwitch(const Fabric& fabric, const Switch& unit) {
    ReplyMap map;
    map["Oper.Switch.Nop"] = "Ok";
    map["Oper.Switch.DomainID"] = std::to_string(unit.domain);
    map["Config.Zoning.MergeMode"] = fabric.mergeMode;
    map["Config.Snmp.ProxyEnable"] = BoolText(fabric.proxy);
    AddFields(map, unit, SwitchFields(), "");
    for (const auto& [name, version] : unit.softwareVersions) {
        map["Oper.Switch.SwVersion." + name] = version;
    }
    for (std::size_t i = 0; i < unit.traps.size(); i++) {
        AddFields(map, unit.traps[i], TrapFields(), "Config.Snmp.",
                  i == 0 ? "" : std::to_string(i));
    }
    AddHardware(map, unit);
    AddPorts(map, unit);
    AddLinks(map, unit);
    AddLog(map, fabric, unit);
    for (const auto& [path, text] : unit.values) {
        map[path] = text.value_or(ErrorText(CommandError::kFailed));
    }
    return map;
}

/// What every switch answers about the fabric, but for the name servers.
ReplyMap RenderFabric(const Fabric& fabric) {
    ReplyMap map;
    std::vector<std::string> domains;
    map["Oper.Switch.WhoIsPrincipal"] = EndText(fabric);
    for (const Switch& unit : fabric.switches) {
        const std::string domain = std::to_string(unit.domain);
        domains.push_back(domain);
        map["Oper.Fabric.Entry." + domain + ".WWN"] = unit.wwn;
        if (unit.principal) {
            map["Oper.Switch.WhoIsPrincipal"] = unit.wwn;
        }
    }
    AddList(map, "Oper.Fabric.FirstDomainID", "Oper.Fabric.NextDomainID", domains, EndText(fabric));
    AddZoning(map, fabric);
    return map;
}

bool IsKey(std::string_view element) {
    const auto all = [element](const char* set) {
        return element.find_first_not_of(set) == std::string_view::npos;
    };
    return !element.empty() &&
           (all("0123456789") ||
            ((element.size() == 6 || element.size() == 16) && all("0123456789abcdefABCDEF")));
}

/// The path with "*" for every index or key, or an empty text when it has none.
std::string Shape(std::string_view path) {
    std::string shape;
    bool hasKey = false;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('.', begin), path.size());
        const std::string_view element = path.substr(begin, end - begin);
        hasKey = hasKey || IsKey(element);
        shape += IsKey(element) ? "*" : element;
        shape += '.';
        begin = end + 1;
    }
    return hasKey ? shape : std::string();
}

/// True for a path that would be known with other indices or keys.
bool HasKnownShape(std::string_view path) {
    static const std::unordered_set<std::string> kShapes = [] {
        const Fabric sample = GenerateFabric(2);
        const Switch& unit = sample.switches.front();
        std::unordered_set<std::string> shapes;
        const auto add = [&shapes](const ReplyMap& map, const std::string& prefix) {
            for (const auto& reply : map) {
                shapes.insert(Shape(prefix + reply.first));
            }
        };
        add(RenderFabric(sample), "");
        add(RenderSwitch(sample, unit), "");
        add(RenderNameServer(sample, unit), std::string(kOwnNames));
        add(RenderNameServer(sample, unit), std::string(kNamesOf) + "1.");
        shapes.erase("");
        return shapes;
    }();
    return path.starts_with("Oper.Zoning.") || path.starts_with("Oper.Switch.SwVersion.") ||
           kShapes.contains(Shape(path));
}

std::optional<std::uint32_t> NumberAfter(std::string_view path, std::string_view prefix) {
    std::uint32_t number = 0;
    if (!path.starts_with(prefix)) {
        return std::nullopt;
    }
    const char* end = path.data() + path.size();
    const auto read = std::from_chars(path.data() + prefix.size(), end, number);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::string ErrorText(CommandError error) {
    return "#" + std::to_string(static_cast<int>(error));
}

Commands::Commands(const Fabric& fabric) : fabric_(fabric) {
    Forget();
}

void Commands::Forget() {
    fabricWide_.reset();
    byDomain_.fill(nullptr);
    rendered_ = {};
    nameServers_ = {};
    for (const Switch& unit : fabric_.switches) {
        byDomain_[unit.domain & 0xFF] = &unit;
    }
}

const Switch* Commands::Find(std::uint32_t domain) const {
    const std::uint32_t wanted = domain == 0 ? fabric_.localDomain : domain;
    return wanted < byDomain_.size() ? byDomain_[wanted] : nullptr;
}

const std::string* Commands::FindRendered(const Switch& unit, std::string_view path) {
    const auto find = [](const ReplyMap& map, std::string_view key) -> const std::string* {
        const auto found = map.find(key);
        return found == map.end() ? nullptr : &found->second;
    };
    std::unique_ptr<ReplyMap>& own = rendered_[unit.domain & 0xFF];
    if (own == nullptr) {
        own = std::make_unique<ReplyMap>(RenderSwitch(fabric_, unit));
    }
    if (const std::string* text = find(*own, path)) {
        return text;
    }
    const Switch* named = nullptr;
    std::string_view key;
    if (path.starts_with(kOwnNames)) {
        named = &unit;
        key = path.substr(kOwnNames.size());
    } else if (path.starts_with(kNamesOf)) {
        const std::size_t end = std::min(path.find('.', kNamesOf.size()), path.size());
        const std::uint32_t domain = NumberAfter(path.substr(0, end), kNamesOf).value_or(0);
        named = domain < byDomain_.size() ? byDomain_[domain] : nullptr;
        key = path.substr(std::min(end + 1, path.size()));
    }
    if (named != nullptr) {
        std::unique_ptr<ReplyMap>& names = nameServers_[named->domain & 0xFF];
        if (names == nullptr) {
            names = std::make_unique<ReplyMap>(RenderNameServer(fabric_, *named));
        }
        return find(*names, key);
    }
    if (fabricWide_ == nullptr) {
        fabricWide_ = std::make_unique<ReplyMap>(RenderFabric(fabric_));
    }
    return find(*fabricWide_, path);
}

std::string Commands::Get(const Switch& unit, std::string_view path, std::uint32_t runningSeconds) {
    const std::string* text = FindRendered(unit, path);
    return text != nullptr ? *text : GetUnrendered(unit, path, runningSeconds);
}

std::string Commands::GetUnrendered(const Switch& unit, std::string_view path,
                                    std::uint32_t runningSeconds) const {
    if (path == kUptimePath) {
        return std::to_string(unit.uptime + runningSeconds);
    }
    // A log's ids need not be dense: any number below an entry's leads to that entry.
    if (const auto id = NumberAfter(path, kNextLog)) {
        const auto next =
            std::upper_bound(unit.log.begin(), unit.log.end(), *id,
                             [](std::uint32_t wanted, const LogEntry& e) { return wanted < e.id; });
        return next == unit.log.end() ? EndText(fabric_) : LogText(*next);
    }
    if (const auto link = NumberAfter(path, kNextLink)) {
        return *link < unit.links.size() ? std::to_string(*link + 1) : EndText(fabric_);
    }
    return ErrorText(HasKnownShape(path) ? CommandError::kNoSuchEntry
                                         : CommandError::kUnknownCommand);
}

}  // namespace sim
