// fcexporter: shows fabrics to Prometheus and to people, as their agents tell by SNMP.
#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <exception>
#include <thread>

#include "exporter/server.h"

namespace fcexporter {
namespace {

void Run(const Config& config) {
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);  // all threads begin with this mask

    StartLibrary();
    Fabrics fabrics;
    Reading none;
    none.started = Now();
    for (const Target& target : config.targets) {
        fabrics.emplace_back(
            new Fabric{target,
                       config.interval,
                       Session(target),
                       {},
                       {.reading = std::make_shared<Reading>(none), .samples = {}, .error = {}}});
    }
    httplib::Server server;
    std::vector<std::jthread> readers;  // stop and join when this returns, whatever the reason
    for (const auto& fabric : fabrics) {
        readers.emplace_back([&](const std::stop_token& stop) { ReadOn(*fabric, stop); });
    }
    std::jthread ender([&](const std::stop_token& stop) {
        const timespec slice = {0, 100'000'000};
        while (!stop.stop_requested() && sigtimedwait(&ends, nullptr, &slice) < 0) {
        }
        server.stop();
    });
    Serve(fabrics, config.listen, server);
}

int ParseAndRun(int argc, char** argv) {
    CLI::App app("fcexporter: metrics and a page of Fibre Channel fabrics", "fcexporter");
    Config config;
    std::vector<std::string> targets;
    std::string community = "public";
    // In this order: what the command line says goes before the file.
    app.add_option_function<std::string>(
        "--config", [&](const std::string& path) { LoadConfig(path, config); },
        "File with targets (TOML)");
    app.add_option("--target", targets, "[FABRIC=]ADDRESS of an agent; may be repeated");
    app.add_option("--community", community, "Of the agents named with --target")
        ->capture_default_str();
    app.add_option("--listen", config.listen, "ADDRESS:PORT to serve at")->capture_default_str();
    app.add_option("--interval", config.interval, "Seconds between readings")
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    for (const std::string& text : targets) {
        config.targets.push_back(ParseTarget(text));
        config.targets.back().options = {"-c", community};
    }
    CheckConfig(config);
    Run(config);
    return 0;
}

}  // namespace
}  // namespace fcexporter

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        return fcexporter::ParseAndRun(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fcexporter: %s\n", error.what());
        return 1;
    }
}
