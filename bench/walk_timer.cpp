// Times plain walks as a manager makes them, one GETNEXT per value over one session, without the
// start-up of a tool in the figure.
//
//   walk_timer PEER RUNS OID...
//
// Prints for each OID the number of values below it and the median time per value in nanoseconds.
// The OIDs are walked in turn, so that all meet the same machine.

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

struct Walked {
    std::string name;
    Oid root;
    std::size_t values = 0;
    std::vector<long> nanosecondsPerValue;
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

void Walk(netsnmp_session* session, Walked& walked) {
    const Clock::time_point begin = Clock::now();
    walked.values = 0;
    for (Oid name = Next(session, walked.root, walked.root); !name.empty();
         name = Next(session, name, walked.root)) {
        ++walked.values;
    }
    const std::chrono::nanoseconds taken = Clock::now() - begin;
    walked.nanosecondsPerValue.push_back(
        static_cast<long>(taken.count() / static_cast<long>(walked.values + 1)));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("usage: walk_timer PEER RUNS OID...\n", stderr);
        return EXIT_FAILURE;
    }
    ::setenv("MIBS", "", 1);
    init_snmp("walk_timer");
    netsnmp_session settings;
    snmp_sess_init(&settings);
    settings.version = SNMP_VERSION_2c;
    settings.peername = argv[1];
    settings.community = reinterpret_cast<u_char*>(const_cast<char*>("public"));
    settings.community_len = std::strlen("public");
    settings.timeout = 10L * 1000 * 1000;  // microseconds
    netsnmp_session* session = snmp_open(&settings);
    if (session == nullptr) {
        snmp_sess_perror("walk_timer", &settings);
        return EXIT_FAILURE;
    }

    std::vector<Walked> walks;
    for (int i = 3; i < argc; ++i) {
        Walked& walked = walks.emplace_back();
        walked.name = argv[i];
        walked.root.resize(MAX_OID_LEN);
        std::size_t length = walked.root.size();
        if (read_objid(argv[i], walked.root.data(), &length) == 0) {
            std::fprintf(stderr, "walk_timer: \"%s\" is no OID\n", argv[i]);
            return EXIT_FAILURE;
        }
        walked.root.resize(length);
    }
    for (int run = 0; run < std::atoi(argv[2]); ++run) {
        for (Walked& walked : walks) {
            Walk(session, walked);
        }
    }
    for (Walked& walked : walks) {
        std::vector<long>& times = walked.nanosecondsPerValue;
        std::ranges::sort(times);
        std::printf("%s %zu %ld\n", walked.name.c_str(), walked.values, times[times.size() / 2]);
    }
    snmp_close(session);
    return EXIT_SUCCESS;
}
