// What is read, how often, and where the results are served: from a TOML file and the command line.
#pragma once

#include <string>
#include <vector>

namespace fcexporter {

struct Target {
    std::string fabric;                // the label of all its metrics
    std::string address;               // as net-snmp's tools take it: "host", "host:port" ...
    std::vector<std::string> options;  // as of net-snmp's tools: {"-v3", "-u", "reader" ...}
};

struct Config {
    std::string listen = "127.0.0.1:9943";
    double interval = 30;  // seconds from the start of one reading to the next
    std::vector<Target> targets;
};

// Adds what a file says. Throws std::runtime_error with a text for the user, as CheckConfig does.
void LoadConfig(const std::string& path, Config& config);
void CheckConfig(const Config& config);

// Of "[FABRIC=]ADDRESS"; without a name the fabric is called like the address.
Target ParseTarget(const std::string& text);

}  // namespace fcexporter
