// Times requests as a manager makes them, one after the other over one session, without the
// start-up of a tool in the figure.
//
//   walk_timer RUNS REQUEST PEER OID... [PEER OID...]...
//
// REQUEST is "next", a walk of one GETNEXT per value; "bulk", a walk of GETBULKs for 10 values
// each; "get", a GET for each value that a walk has found. Prints for each OID a line "PEER OID
// VALUES NANOSECONDS": how many values are below it, and the median over the runs of the mean time
// per value. All walks of a run go on side by side, some requests of each in turn and a shorter one
// again and again, so that all meet the same machine. The request that finds the end of a walk is
// not counted.

#include <net-snmp/net-snmp-config.h>
//
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Oid = std::vector<oid>;

constexpr int kRequestsPerTurn = 25;
constexpr long kFewestTimed = 1000;
constexpr long kRepetitions = 10;  // of a GETBULK

struct Sum {
    long values = 0;
    std::chrono::nanoseconds time{};
};

struct Walked {
    std::string peer, name;
    netsnmp_session* session = nullptr;
    Oid root;
    std::vector<Oid> found;                 // what GETs ask for
    long values = 0;                        // of one walk
    std::vector<long> nanosecondsPerValue;  // of each run
    // Within a run:
    Oid at;
    std::size_t asked = 0;  // of `found`
    Sum walk, run;          // of the walk under way; of those that are finished
    bool finished = false;
};

// The instances below `root` that an answer to a request for `name` gives, in their order.
std::vector<Oid> Ask(netsnmp_session* session, int command, const Oid& name, const Oid& root) {
    netsnmp_pdu* request = snmp_pdu_create(command);
    if (command == SNMP_MSG_GETBULK) {
        request->non_repeaters = 0;
        request->max_repetitions = kRepetitions;
    }
    snmp_add_null_var(request, name.data(), name.size());
    netsnmp_pdu* response = nullptr;
    std::vector<Oid> instances;
    if (snmp_synch_response(session, request, &response) == STAT_SUCCESS &&
        response->errstat == SNMP_ERR_NOERROR) {
        for (const netsnmp_variable_list* value = response->variables; value != nullptr;
             value = value->next_variable) {
            const bool isThere = value->type != SNMP_ENDOFMIBVIEW &&
                                 value->type != SNMP_NOSUCHINSTANCE &&
                                 value->type != SNMP_NOSUCHOBJECT;
            if (isThere && value->name_length > root.size() &&
                std::equal(root.begin(), root.end(), value->name)) {
                instances.emplace_back(value->name, value->name + value->name_length);
            }
        }
    }
    if (response != nullptr) {
        snmp_free_pdu(response);
    }
    return instances;
}

// The next request of a walk. Returns the number of its values, 0 at the end.
long AskOnce(int command, Walked& walked) {
    if (command == SNMP_MSG_GET) {
        if (walked.asked == walked.found.size()) {
            return 0;
        }
        return static_cast<long>(
            Ask(walked.session, command, walked.found[walked.asked++], walked.root).size());
    }
    const std::vector<Oid> instances = Ask(walked.session, command, walked.at, walked.root);
    if (!instances.empty()) {
        walked.at = instances.back();
    }
    return static_cast<long>(instances.size());
}

void Find(Walked& walked) {
    std::vector<Oid> next{walked.root};
    while (next = Ask(walked.session, SNMP_MSG_GETNEXT, next.back(), walked.root), !next.empty()) {
        walked.found.push_back(next.back());
    }
}

void TakeTurn(int command, Walked& walked) {
    for (int request = 0; request < kRequestsPerTurn; ++request) {
        const Clock::time_point begin = Clock::now();
        if (const long values = AskOnce(command, walked); values > 0) {
            walked.walk.values += values;
            walked.walk.time += Clock::now() - begin;
            continue;
        }
        walked.finished = true;
        walked.values = walked.walk.values;
        walked.run.values += walked.walk.values;
        walked.run.time += walked.walk.time;
        walked.walk = {};
        walked.at = walked.root;
        walked.asked = 0;
    }
}

void Run(int command, std::vector<Walked>& walks) {
    for (Walked& walked : walks) {
        walked.at = walked.root;
        walked.asked = 0;
        walked.walk = walked.run = {};
        walked.finished = false;
    }
    const auto isMeasured = [](const Walked& walked) {
        return walked.finished && (walked.values == 0 || walked.run.values >= kFewestTimed);
    };
    while (!std::ranges::all_of(walks, isMeasured)) {
        for (Walked& walked : walks) {
            TakeTurn(command, walked);
        }
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
    static const std::map<std::string, int> kCommands = {
        {"get", SNMP_MSG_GET}, {"next", SNMP_MSG_GETNEXT}, {"bulk", SNMP_MSG_GETBULK}};
    const auto command = kCommands.find(argc < 5 ? "" : argv[2]);
    if (command == kCommands.end() || argv[3][0] == '.') {
        std::fputs("usage: walk_timer RUNS get|next|bulk PEER OID... [PEER OID...]...\n", stderr);
        return EXIT_FAILURE;
    }
    ::setenv("MIBS", "", 1);
    init_snmp("walk_timer");

    std::vector<Walked> walks;
    char* peer = nullptr;
    netsnmp_session* session = nullptr;
    for (int i = 3; i < argc; ++i) {
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
        if (command->second == SNMP_MSG_GET) {
            Find(walked);
        }
    }
    for (int run = 0; run < std::atoi(argv[1]); ++run) {
        Run(command->second, walks);
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
