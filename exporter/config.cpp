#include "exporter/config.h"

#include <toml++/toml.h>
#include <set>
#include <stdexcept>

namespace fcexporter {
namespace {

// A session's socket has to fit the descriptor set that the library takes.
constexpr std::size_t kMaxTargets = 200;

[[noreturn]] void Complain(const toml::source_region& where, const std::string& what) {
    throw std::runtime_error(*where.path + ":" + std::to_string(where.begin.line) + ": " + what);
}

// The value of a known key. False when it is of another type.
bool Take(const toml::node& node, std::string& value) {
    value = node.value_or(std::string());
    return node.is_string();
}

bool Take(const toml::node& node, double& value) {
    value = node.value_or(0.0);
    return node.is_number();
}

bool Take(const toml::node& node, std::vector<std::string>& values) {
    for (std::size_t i = 0; node.is_array() && i < node.as_array()->size(); i++) {
        values.push_back((*node.as_array())[i].value_or(std::string()));
    }
    return node.is_array() && node.as_array()->is_homogeneous(toml::node_type::string);
}

Target LoadTarget(const toml::table& table) {
    Target target;
    for (const auto& [key, node] : table) {
        const bool known = key == "fabric"    ? Take(node, target.fabric)
                           : key == "address" ? Take(node, target.address)
                           : key == "options" ? Take(node, target.options)
                                              : false;
        if (!known) {
            Complain(node.source(), "unknown key or wrong type: " + std::string(key));
        }
    }
    return target;
}

bool Take(const toml::node& node, std::vector<Target>& targets) {
    for (std::size_t i = 0; node.is_array_of_tables() && i < node.as_array()->size(); i++) {
        targets.push_back(LoadTarget(*(*node.as_array())[i].as_table()));
    }
    return node.is_array_of_tables();
}

void Require(bool right, const std::string& what) {
    if (!right) {
        throw std::runtime_error(what);
    }
}

}  // namespace

void LoadConfig(const std::string& path, Config& config) {
    try {
        for (const auto& [key, node] : toml::parse_file(path)) {
            const bool known = key == "listen"     ? Take(node, config.listen)
                               : key == "interval" ? Take(node, config.interval)
                               : key == "target"   ? Take(node, config.targets)
                                                   : false;
            if (!known) {
                Complain(node.source(), "unknown key or wrong type: " + std::string(key));
            }
        }
    } catch (const toml::parse_error& error) {
        Complain(error.source(), std::string(error.description()));
    }
}

void CheckConfig(const Config& config) {
    Require(!config.targets.empty(), "no target: name one with --target or in a file");
    Require(config.targets.size() <= kMaxTargets, "too many targets");
    Require(config.interval >= 1 && config.interval <= 3600, "interval is not in 1 to 3600");
    std::set<std::string> fabrics;
    for (const Target& target : config.targets) {
        Require(!target.fabric.empty() && !target.address.empty(),
                "a target needs a fabric and an address");
        Require(fabrics.insert(target.fabric).second, "two targets are called " + target.fabric);
    }
}

Target ParseTarget(const std::string& text) {
    const std::size_t equals = text.find('=');
    return {.fabric = text.substr(0, equals),
            .address = equals == std::string::npos ? text : text.substr(equals + 1),
            .options = {}};
}

}  // namespace fcexporter
