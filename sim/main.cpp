// switchsim: switch management of a whole fabric on one loopback address.
#include <CLI/CLI.hpp>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/control.h"
#include "sim/load.h"
#include "sim/server.h"

namespace {

constexpr int kLoadEveryMs = 500;

struct Options {
    std::string listen = "127.0.0.1";
    std::string fabricFile;
    unsigned domains = 0;  // 0: not given
    sim::GeneratedSizes sizes;
    std::optional<std::uint16_t> onlyDomain;
    bool printFabric = false;
    bool log = false;
    bool load = false;
    std::vector<std::uint16_t> silentDomains;
    std::vector<std::string> agents;  // "DOMAIN=ADDR"
    sim::Faults faults;
};

void Declare(CLI::App& app, Options& options) {
    app.add_option("--listen", options.listen, "Address in 127.0.0.0/8 to listen on, port 5001")
        ->capture_default_str();
    auto* file = app.add_option("--fabric", options.fabricFile, "Fabric file (TOML)");
    auto* domains =
        app.add_option("--domains", options.domains, "Generate a fabric of so many switches")
            ->check(CLI::Range(1u, sim::kMaxSwitches))
            ->excludes(file);
    app.add_option("--names", options.sizes.names, "Devices of each generated switch")
        ->check(CLI::Range(0u, sim::kMaxGeneratedNames))
        ->capture_default_str()
        ->needs(domains);
    app.add_option("--zone-members", options.sizes.zoneMembers, "Zone members of that fabric")
        ->check(CLI::Range(0u, 100'000u))
        ->capture_default_str()
        ->needs(domains);
    app.add_option("--only-domain", options.onlyDomain, "Keep one switch, as the local one");
    app.add_flag("--print-fabric", options.printFabric, "Print the fabric as a file and end");
    app.add_flag("--log", options.log, "Print one line per command");
    app.add_flag("--load", options.load, "Let the counters of online ports go up");
    app.add_option("--agent", options.agents, "DOMAIN=ADDR: where this switch is the local one");
    app.add_option("--silent-domain", options.silentDomains, "A switch that never answers");

    const auto probability = [&](const char* name, double& value, const char* what) {
        app.add_option(name, value, what)->check(CLI::Range(0.0, 1.0))->group("Faults (P is 0..1)");
    };
    sim::Faults& faults = options.faults;
    probability("--lose", faults.lose, "Probability P that a reply is not sent");
    probability("--lose-notifications", faults.loseNotices,
                "Probability P that a notification is not sent to one receiver");
    app.add_option("--delay", faults.delayMs, "Milliseconds before each reply")
        ->group("Faults (P is 0..1)");
    probability("--duplicate", faults.duplicate, "Probability P that a reply is sent twice");
    probability("--reorder", faults.reorder, "Probability P that a reply follows the next one");
    probability("--wrong-sequence", faults.wrongSequence,
                "Probability P that a stray reply comes before the real one");
    probability("--status-byte", faults.statusByte,
                "Probability P that a reply carries a status byte");
    app.add_option("--seed", faults.seed, "Seed of the dice")
        ->capture_default_str()
        ->group("Faults (P is 0..1)");
}

sim::Switch& FindDomain(sim::Fabric& fabric, const char* option, std::uint16_t domain) {
    sim::Switch* unit = fabric.Find(domain);
    if (unit == nullptr) {
        throw std::out_of_range(std::string(option) + ": no switch has domain " +
                                std::to_string(domain));
    }
    return *unit;
}

sim::Fabric ChooseFabric(const Options& options) {
    sim::Fabric fabric = !options.fabricFile.empty() ? sim::LoadFabric(options.fabricFile)
                         : options.domains > 0 ? sim::GenerateFabric(options.domains, options.sizes)
                                               : sim::DefaultFabric();
    if (options.onlyDomain) {
        sim::Switch unit = FindDomain(fabric, "--only-domain", *options.onlyDomain);
        unit.principal = true;
        fabric.localDomain = unit.domain;
        fabric.switches = {std::move(unit)};
    }
    for (const std::string& agent : options.agents) {
        unsigned domain = 0;
        char address[16] = "";
        if (std::sscanf(agent.c_str(), "%3u=%15s", &domain, address) != 2) {
            throw std::invalid_argument("--agent: \"" + agent + "\" is not DOMAIN=ADDR");
        }
        FindDomain(fabric, "--agent", static_cast<std::uint16_t>(domain)).agentAddress = address;
    }
    for (const std::uint16_t domain : options.silentDomains) {
        FindDomain(fabric, "--silent-domain", domain).silent = true;
    }
    return fabric;
}

void Run(const Options& options) {
    // The signals are waited for below, so no thread may be interrupted by them.
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);

    const sim::Fabric fabric = ChooseFabric(options);
    if (options.printFabric) {
        std::fputs(sim::PrintFabric(fabric).c_str(), stdout);
        return;
    }
    sim::Server server(fabric, options.listen, options.faults);
    sim::Control control(server, options.listen);
    server.SetRecording(false);
    if (options.log) {
        server.SetLog([](const std::string& line) { std::printf("%s\n", line.c_str()); });
    }
    std::printf("switchsim: listening on %s:%u, %zu switches, local domain %u\n",
                options.listen.c_str(), unsigned{sim::kPort}, fabric.switches.size(),
                unsigned{fabric.localDomain});
    for (const sim::Switch& unit : fabric.switches) {
        if (unit.agentAddress != "0.0.0.0") {
            std::printf("switchsim: listening on %s:%u for the agent of domain %u\n",
                        unit.agentAddress.c_str(), unsigned{sim::kPort}, unsigned{unit.domain});
        }
    }
    pollfd waited[] = {{signalfd(-1, &ends, SFD_CLOEXEC), POLLIN, 0},
                       {control.Descriptor(), POLLIN, 0}};
    const auto seconds = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    };
    double loaded = seconds();
    while (poll(waited, std::size(waited), options.load ? kLoadEveryMs : -1) < 0 ||
           waited[0].revents == 0) {
        if (waited[1].revents != 0) {
            control.ServeOne();
        }
        if (options.load) {
            const double from = std::exchange(loaded, seconds());
            server.WithFabric([&](sim::Fabric& all) { sim::AddLoad(all, from, loaded); });
        }
    }
    close(waited[0].fd);
    server.Stop();
    const sim::Totals totals = server.GetTotals();
    std::fprintf(stderr,
                 "switchsim: %llu requests answered, %llu not answered, %llu frames refused\n",
                 static_cast<unsigned long long>(totals.answered),
                 static_cast<unsigned long long>(totals.unanswered),
                 static_cast<unsigned long long>(totals.refused));
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        if (argc > 1 && argv[1] == std::string_view("ctl")) {
            return sim::RunControlClient({argv + 2, argv + argc});
        }
        CLI::App app("switchsim: simulates the switch management of a Fibre Channel fabric",
                     "switchsim");
        app.set_version_flag("--version", "switchsim " SNMPMAIN_VERSION,
                             "Print the version and end");
        app.footer("switchsim ctl --help: commands to a switchsim that runs");
        Options options;
        Declare(app, options);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        Run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "switchsim: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
