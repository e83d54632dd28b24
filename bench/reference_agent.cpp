// The sub-agent to compare with: the least that a program can do which serves values it has to ask
// for. It registers the columns of one table and answers each value with one UDP round trip to
// switch management, made on the spot by the library's own thread; nothing is checked, retried,
// cached or converted. Without columns it is the empty sub-agent.
//
//   reference_agent AGENTX_SOCKET ADDRESS COLUMNS ROWS
//
// The table lies at 1.3.6.1.4.1.32473.99.1; its index has 17 sub-identifiers like that of a
// per-unit table: a unit's 16 and the row number.

#include <arpa/inet.h>
#include <net-snmp/net-snmp-config.h>
//
#include <net-snmp/net-snmp-includes.h>
//
#include <net-snmp/agent/net-snmp-agent-includes.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr oid kTableOid[] = {1, 3, 6, 1, 4, 1, 32473, 99, 1};
constexpr std::size_t kIndexLength = 17;
constexpr int kMaxColumns = 200;

struct State {
    int socket = -1;
    sockaddr_in peer{};
    oid rows = 0;
    std::uint32_t sequence = 0x10001;
    std::array<char, 512> reply{};
};

State state;

void Store32(std::uint8_t* at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) {
        at[i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
}

// One request for an operational value, as switch management wants it.
bool AskSwitch() {
    static constexpr char kText[] = "Oper.Switch.OperState";
    constexpr std::size_t kRounded = sizeof(kText) & ~std::size_t{3};
    std::array<std::uint8_t, kRounded + 24> frame{};
    state.sequence = state.sequence >= 0x20002 ? 0x10001 : state.sequence + 1;
    Store32(frame.data(), 0x11000000);
    Store32(frame.data() + 8, 1024u << 16 | (kRounded + 8));
    Store32(frame.data() + 12, state.sequence);
    std::memcpy(frame.data() + 16, kText, sizeof(kText));
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : frame) {
        sum += byte;
    }
    Store32(frame.data() + frame.size() - 4, sum);
    ::sendto(state.socket, frame.data(), frame.size(), 0,
             reinterpret_cast<const sockaddr*>(&state.peer), sizeof(state.peer));
    return ::recv(state.socket, state.reply.data(), state.reply.size(), 0) > 16;
}

// Whether a request names a row; else it is rewritten to the next row's OID, false at the end of
// the column.
bool FindRow(const variable* vp, oid* name, std::size_t* length, bool exact) {
    const std::size_t full = vp->namelen + kIndexLength;
    if (exact) {
        return *length == full && name[full - 1] >= 1 && name[full - 1] <= state.rows;
    }
    oid row = 1;
    if (*length >= full && snmp_oid_compare(name, vp->namelen, vp->name, vp->namelen) == 0) {
        row = name[full - 1] + 1;
    }
    if (row > state.rows) {
        return false;
    }
    std::memcpy(name, vp->name, vp->namelen * sizeof(oid));
    std::memset(name + vp->namelen, 0, kIndexLength * sizeof(oid));
    name[full - 1] = row;
    *length = full;
    return true;
}

u_char* ServeColumn(variable* vp, oid* name, std::size_t* length, int exact, std::size_t* size,
                    WriteMethod**) {
    if (!FindRow(vp, name, length, exact != 0) || !AskSwitch()) {
        return nullptr;
    }
    *size = ::strnlen(state.reply.data() + 16, 80);
    return reinterpret_cast<u_char*>(state.reply.data() + 16);
}

void RegisterColumns(int columns) {
    static std::array<variable2, kMaxColumns> variables;
    for (int i = 0; i < columns; ++i) {
        variables[static_cast<std::size_t>(i)] = {
            static_cast<u_char>(i + 1), ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY, ServeColumn, 1,
            {static_cast<oid>(i + 1)}};
    }
    register_mib("reference", reinterpret_cast<variable*>(variables.data()), sizeof(variable2),
                 static_cast<std::size_t>(columns), kTableOid, sizeof(kTableOid) / sizeof(oid));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: reference_agent AGENTX_SOCKET ADDRESS COLUMNS ROWS\n", stderr);
        return EXIT_FAILURE;
    }
    const int columns = std::atoi(argv[3]);
    if (columns > kMaxColumns) {
        return EXIT_FAILURE;
    }
    state.rows = static_cast<oid>(std::atol(argv[4]));
    state.socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    state.peer.sin_family = AF_INET;
    state.peer.sin_port = htons(5001);
    state.peer.sin_addr.s_addr = ::inet_addr(argv[2]);

    // The same set-up as the agent's: no files, no MIB modules.
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    netsnmp_ds_set_string(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_X_SOCKET, argv[1]);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
    set_persistent_directory("/dev/null");
    set_configuration_directory("/dev/null");
    ::setenv("MIBS", "", 1);
    ::setenv("MIBDIRS", "", 1);
    snmp_enable_stderrlog();
    init_agent("reference");
    init_snmp("reference");
    RegisterColumns(columns);
    for (;;) {
        agent_check_and_process(1000000);
    }
}
