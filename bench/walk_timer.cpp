// Times plain walks as a manager makes them, one GETNEXT per value over one session, without the
// start-up of a tool in the figure.
//
//   walk_timer RUNS PEER OID... [PEER OID...]...
//
// Prints for each OID a line "PEER OID VALUES NANOSECONDS": how many values are below it, and the
// median over the runs of the mean time per value. All walks of a run go on side by side, some
// requests of each in turn and a shorter one again and again, so that all meet the same machine.
// The request that finds the end of a walk is not counted.

#include <net-snmp/net-snmp-config.h>
//
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Oid = std::vector<oid>;

constexpr int kRequestsPerTurn = 25;
constexpr long kFewestTimed = 1000;

struct Sum {
    long values = 0;
    std::chrono::nanoseconds time{};
};

struct Walked {
    std::string peer, name;
    netsnmp_session* session = nullptr;
    Oid root;
    long values = 0;                        // of one walk
    std::vector<long> nanosecondsPerValue;  // of each run
    // Within a run:
    Oid at;
    Sum walk, run;  // of the walk under way; of those that are finished
    bool finished = false;
};

// The first instance behind `name` and below `root`; empty where there is none.
Oid Next(netsnmp_session* session, const Oid& name, const Oid& root) {
    netsnmp_pdu* request = snmp_pdu_create(SNMP_MSG_GETNEXT);
    snmp_add_null_var(request, name.data(), name.size());
    netsnmp_pdu* response = nullptr;
    Oid next;
    if (snmp_synch_response(session, request, &response) == STAT_SUCCESS &&
        response->errstat == SNMP_ERR_NOERROR) {
        const netsnmp_variable_list* value = response->variables;
        if (value->type != SNMP_ENDOFMIBVIEW && value->name_length > root.size() &&
            std::equal(root.begin(), root.end(), value->name)) {
            next.assign(value->name, value->name + value->name_length);
        }
    }
    if (response != nullptr) {
        snmp_free_pdu(response);
    }
    return next;
}

void TakeTurn(Walked& walked) {
    for (int request = 0; request < kRequestsPerTurn; ++request) {
        const Clock::time_point begin = Clock::now();
        walked.at = Next(walked.session, walked.at, walked.root);
        if (!walked.at.empty()) {
            ++walked.walk.values;
            walked.walk.time += Clock::now() - begin;
            continue;
        }
        walked.finished = true;
        walked.values = walked.walk.values;
        walked.run.values += walked.walk.values;
        walked.run.time += walked.walk.time;
        walked.walk = {};
        walked.at = walked.root;
    }
}

void Run(std::vector<Walked>& walks) {
    for (Walked& walked : walks) {
        walked.at = walked.root;
        walked.walk = walked.run = {};
        walked.finished = false;
    }
    const auto isMeasured = [](const Walked& walked) {
        return walked.finished && (walked.values == 0 || walked.run.values >= kFewestTimed);
    };
    while (!std::ranges::all_of(walks, isMeasured)) {
        std::ranges::for_each(walks, TakeTurn);
    }
    for (Walked& walked : walks) {
        walked.nanosecondsPerValue.push_back(
            static_cast<long>(walked.run.time.count() / std::max(walked.run.values, 1L)));
    }
}

netsnmp_session* Open(char* peer) {
    netsnmp_session settings;
    snmp_sess_init(&settings);
    settings.version = SNMP_VERSION_2c;
    settings.peername = peer;
    settings.community = reinterpret_cast<u_char*>(const_cast<char*>("public"));
    settings.community_len = std::strlen("public");
    settings.timeout = 30L * 1000 * 1000;  // microseconds
    netsnmp_session* session = snmp_open(&settings);
    if (session == nullptr) {
        snmp_sess_perror("walk_timer", &settings);
        std::exit(EXIT_FAILURE);
    }
    return session;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4 || argv[2][0] == '.') {
        std::fputs("usage: walk_timer RUNS PEER OID... [PEER OID...]...\n", stderr);
        return EXIT_FAILURE;
    }
    ::setenv("MIBS", "", 1);
    init_snmp("walk_timer");

    std::vector<Walked> walks;
    char* peer = nullptr;
    netsnmp_session* session = nullptr;
    for (int i = 2; i < argc; ++i) {
        if (argv[i][0] != '.') {
            peer = argv[i];
            session = Open(peer);
            continue;
        }
        Oid root(MAX_OID_LEN);
        std::size_t length = root.size();
        if (read_objid(argv[i], root.data(), &length) == 0) {
            std::fprintf(stderr, "walk_timer: \"%s\" is no OID\n", argv[i]);
            return EXIT_FAILURE;
        }
        root.resize(length);
        Walked& walked = walks.emplace_back();
        walked.peer = peer;
        walked.name = argv[i];
        walked.session = session;
        walked.root = root;
    }
    for (int run = 0; run < std::atoi(argv[1]); ++run) {
        Run(walks);
    }
    for (Walked& walked : walks) {
        std::vector<long>& times = walked.nanosecondsPerValue;
        std::ranges::sort(times);
        std::printf("%s %s %ld %ld\n", walked.peer.c_str(), walked.name.c_str(), walked.values,
                    times[times.size() / 2]);
    }
    snmp_close_sessions();
    return EXIT_SUCCESS;
}
