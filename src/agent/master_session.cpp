#include "src/agent/master_session.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "src/base/text.h"
#include "src/snmpoid/snmp_headers.h"
//
#include <net-snmp/agent/agent_callbacks.h>
#include <net-snmp/library/fd_event_manager.h>

// The library exports these, but has no header for them.
extern "C" {
int subagent_open_master_session(void);
int subagent_startup(int majorID, int minorID, void* serverarg, void* clientarg);
}

namespace snmpmain {
namespace {

constexpr timeval kTryInterval{0, 250'000};
constexpr int kFirstWait = 1000;       // milliseconds
constexpr int kAnswerTimeout = 1;      // seconds, to a registration
constexpr timeval kSendTimeout{1, 0};  // of an answer to snmpd that does not fit its socket

struct Master {
    std::string socketPath;
    netsnmp_session* session = nullptr;  // null while there is none
    int probe = -1;                      // a connection on which snmpd was asked for a sign of life
    unsigned alarm = 0;                  // of the library, while there is no session
};

Master master;

// An AgentX ping outside of any session, byte by byte as RFC 2741 has its header: the master
// answers that there is no such session.
constexpr std::size_t kHeaderSize = 20;
constexpr std::uint8_t kVersion = 1, kPing = 13, kNetworkByteOrder = 0x10;
constexpr std::array<std::uint8_t, kHeaderSize> kPingMessage{kVersion, kPing, kNetworkByteOrder};

void CloseProbe() {
    if (master.probe >= 0) {
        unregister_readfd(master.probe);
        ::close(master.probe);
        master.probe = -1;
    }
}

int SocketOf(netsnmp_session* session) {
    const netsnmp_transport* transport = snmp_sess_transport(snmp_sess_pointer(session));
    return transport == nullptr ? -1 : transport->sock;
}

// A session stands: by the library's own account, from within its opening.
int NoteSession(int, int, void* session, void*) {
    master.session = static_cast<netsnmp_session*>(session);
    snmp_alarm_unregister(master.alarm);
    master.alarm = 0;
    ::setsockopt(SocketOf(master.session), SOL_SOCKET, SO_SNDTIMEO, &kSendTimeout,
                 sizeof(kSendTimeout));
    return SNMPERR_SUCCESS;
}

// After a registration: when snmpd stopped answering in the middle of them, the hundreds that are
// left would wait in vain each. The connection's end has everything begun anew.
int GiveUpSilentMaster(int, int, void*, void*) {
    if (master.session != nullptr && master.session->s_snmp_errno == SNMPERR_TIMEOUT) {
        ::shutdown(SocketOf(master.session), SHUT_RDWR);
    }
    return SNMPERR_SUCCESS;
}

void OpenSession() {
    if (subagent_open_master_session() != 0) {
        return;
    }
    register_mib_detach();  // what is registered without a session counts as attached
    register_mib_reattach();
}

void TakeAnswer(int, void*) {
    std::array<std::uint8_t, 64> answer;
    const ssize_t received = ::recv(master.probe, answer.data(), answer.size(), MSG_DONTWAIT);
    CloseProbe();
    if (received >= static_cast<ssize_t>(kHeaderSize)) {
        OpenSession();
    }
}

// Asks snmpd for a sign of life, unless it still owes the last one.
void AskForSign(unsigned, void*) {
    if (master.probe >= 0) {
        return;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    CopyText(address.sun_path, sizeof(address.sun_path), master.socketPath.c_str());
    master.probe = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (master.probe < 0) {
        return;
    }
    register_readfd(master.probe, TakeAnswer, nullptr);
    if (::connect(master.probe, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) !=
            0 ||
        ::send(master.probe, kPingMessage.data(), kPingMessage.size(), MSG_NOSIGNAL) !=
            static_cast<ssize_t>(kPingMessage.size())) {
        CloseProbe();
    }
}

void KeepAsking() {
    master.alarm = snmp_alarm_register_hr(kTryInterval, SA_REPEAT, AskForSign, nullptr);
}

int NoteEnd(int, int, void*, void*) {
    master.session = nullptr;
    std::fputs("SNMP:Connecting to snmpd again as soon as it answers.\n", stderr);
    KeepAsking();
    return SNMPERR_SUCCESS;
}

}  // namespace

void TakeOverConnecting() {
    snmp_unregister_callback(SNMP_CALLBACK_LIBRARY, SNMP_CALLBACK_POST_READ_CONFIG,
                             subagent_startup, nullptr, 1);
    netsnmp_ds_set_int(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_AGENTX_PING_INTERVAL, 0);
}

void KeepMasterSession(const char* socketPath) {
    master.socketPath = socketPath;
    netsnmp_ds_set_int(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_TIMEOUT, kAnswerTimeout);
    netsnmp_ds_set_int(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_RETRIES, 0);
    snmp_register_callback(SNMP_CALLBACK_APPLICATION, SNMPD_CALLBACK_INDEX_START, NoteSession,
                           nullptr);
    snmp_register_callback(SNMP_CALLBACK_APPLICATION, SNMPD_CALLBACK_INDEX_STOP, NoteEnd, nullptr);
    netsnmp_register_callback(SNMP_CALLBACK_APPLICATION, SNMPD_CALLBACK_REGISTER_OID,
                              GiveUpSilentMaster, nullptr, NETSNMP_CALLBACK_LOWEST_PRIORITY);
    KeepAsking();
    AskForSign(0, nullptr);
    pollfd answer{master.probe, POLLIN, 0};
    if (master.probe >= 0 && ::poll(&answer, 1, kFirstWait) == 1) {
        TakeAnswer(master.probe, nullptr);
    }
}

}  // namespace snmpmain
