#include "exporter/session.h"

#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>
#include <poll.h>

#include <cstdlib>
#include <mutex>
#include <stdexcept>

namespace fcexporter {
namespace {

constexpr int kStopCheckMs = 100;

std::mutex libraryMutex;

// Runs within the library, which frees the PDU, but not what is taken out of it.
int TakeAnswer(int operation, netsnmp_session*, int, netsnmp_pdu* pdu, void* magic) {
    auto* answer = static_cast<Answer*>(magic);
    answer->operation = operation;
    answer->awaited = false;
    if (operation != NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE) {
        return 1;
    }
    if (pdu->command == SNMP_MSG_REPORT) {
        answer->report = snmpv3_get_report_type(pdu);
        // The library takes the clock of the report and sends the request once more.
        answer->awaited = answer->report == SNMPERR_NOT_IN_TIME_WINDOW;
        return 1;
    }
    answer->report = 0;
    answer->error = pdu->errstat;
    answer->variables = pdu->variables;
    pdu->variables = nullptr;
    return 1;
}

Value ValueOf(const netsnmp_variable_list& variable) {
    switch (variable.type) {
        case ASN_INTEGER:
        case ASN_COUNTER:
        case ASN_GAUGE:
        case ASN_TIMETICKS:
            return std::uint64_t{static_cast<std::uint32_t>(*variable.val.integer)};
        case ASN_OCTET_STR:
            return std::string(reinterpret_cast<const char*>(variable.val.string),
                               variable.val_len);
        default:
            return {};
    }
}

netsnmp_pdu* NewPdu(int command) {
    const std::lock_guard lock(libraryMutex);  // request ids are counted for all sessions
    return snmp_pdu_create(command);
}

}  // namespace

void StartLibrary() {
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_READ_CONFIGS, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
    ::setenv("MIBS", "", 1);  // names are of no use here
    init_snmp("fcexporter");
}

// An agent may need 4 seconds for a switch that falls silent. What comes later in the words goes.
Session::Session(const Target& target)
    : address_(target.address),
      words_({"fcexporter", "-v2c", "-cpublic", "-t10", "-r1"}),
      asked_(new netsnmp_session) {
    words_.insert(words_.end(), target.options.begin(), target.options.end());
    words_.push_back(target.address);
    std::vector<char*> argv;
    for (std::string& word : words_) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const int used =
        snmp_parse_args(static_cast<int>(words_.size()), argv.data(), asked_.get(), "", nullptr);
    if (used != static_cast<int>(words_.size()) || asked_->version == SNMP_VERSION_1) {
        throw std::runtime_error("target " + target.fabric + ": its options are wrong");
    }
    snmp_disable_log();
}

Session::~Session() {
    Close();
}

void Session::Close() {
    if (handle_ != nullptr) {
        const std::lock_guard lock(libraryMutex);
        snmp_sess_close(handle_);
        handle_ = nullptr;
    }
}

int Session::Fail(const std::string& why) {
    error_ = why;
    return -1;
}

void Session::StopBy(std::stop_token stop) {
    stop_ = std::move(stop);
}

// Names are looked up without the mutex: that may take as long as it likes.
int Session::Connect(netsnmp_session& session) {
    netsnmp_transport* transport = netsnmp_transport_open_client("snmp", address_.c_str());
    if (transport == nullptr) {
        return Fail("cannot reach " + address_);
    }
    descriptor_ = transport->sock;
    session.flags |= SNMP_FLAGS_DONT_PROBE;
    const std::lock_guard lock(libraryMutex);
    handle_ = snmp_sess_add(&session, transport, nullptr, nullptr);
    if (handle_ == nullptr) {
        return Fail("cannot open a session");
    }
    // The library would look for the engine by itself and wait for it, and all others with it.
    snmp_sess_session(handle_)->flags |= SNMP_FLAGS_DONT_PROBE;
    return 0;
}

// An agent tells its engine, in a report, to whoever asks without naming one.
int Session::FindEngine(std::string& engine) {
    netsnmp_session session = *asked_;
    session.securityModel = SNMP_SEC_MODEL_USM;
    session.securityLevel = SNMP_SEC_LEVEL_NOAUTH;
    if (Connect(session) != 0) {
        return -1;
    }
    netsnmp_pdu* pdu = NewPdu(SNMP_MSG_GET);
    pdu->securityName = ::strdup("");
    Await(pdu);
    const netsnmp_session* known = snmp_sess_session(handle_);
    engine.assign(reinterpret_cast<const char*>(known->securityEngineID),
                  known->securityEngineIDLen);
    Close();
    return engine.empty() ? -1 : 0;
}

int Session::Open() {
    if (handle_ != nullptr) {
        return 0;
    }
    netsnmp_session session = *asked_;
    std::string engine;
    if (session.version == SNMP_VERSION_3) {
        if (FindEngine(engine) != 0) {
            return -1;
        }
        session.securityModel = SNMP_SEC_MODEL_USM;
        session.securityEngineID = reinterpret_cast<u_char*>(engine.data());
        session.securityEngineIDLen = engine.size();
    }
    return Connect(session);
}

// Sends a request and waits for the answer.
int Session::Await(netsnmp_pdu* pdu) {
    answer_ = {.awaited = true};
    {
        const std::lock_guard lock(libraryMutex);
        if (snmp_sess_async_send(handle_, pdu, TakeAnswer, &answer_) == 0) {
            snmp_free_pdu(pdu);
            return Fail("cannot send");
        }
    }
    while (answer_.awaited) {
        pollfd waited = {descriptor_, POLLIN, 0};
        const int ready = ::poll(&waited, 1, kStopCheckMs);
        if (stop_.stop_requested()) {
            return Fail("stopped");
        }
        const std::lock_guard lock(libraryMutex);
        if (ready > 0) {
            fd_set descriptors;
            FD_ZERO(&descriptors);
            FD_SET(descriptor_, &descriptors);
            snmp_sess_read(handle_, &descriptors);
        } else {
            snmp_sess_timeout(handle_);
        }
    }
    if (answer_.operation != NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE) {
        return Fail("no answer");
    }
    return answer_.report == 0 ? 0 : Fail(snmp_api_errstring(answer_.report));
}

int Session::GetBulk(const std::vector<Oid>& names, int repetitions,
                     std::vector<Binding>& bindings) {
    netsnmp_pdu* pdu = NewPdu(SNMP_MSG_GETBULK);
    pdu->non_repeaters = 0;
    pdu->max_repetitions = repetitions;
    for (const Oid& name : names) {
        const std::vector<oid> wide(name.begin(), name.end());
        snmp_add_null_var(pdu, wide.data(), wide.size());
    }
    if (Await(pdu) != 0) {
        return -1;
    }
    for (const auto* each = answer_.variables; each != nullptr; each = each->next_variable) {
        bindings.push_back({Oid(each->name, each->name + each->name_length), ValueOf(*each)});
    }
    snmp_free_varbind(answer_.variables);
    return answer_.error == 0 ? 0 : Fail(snmp_errstring(static_cast<int>(answer_.error)));
}

}  // namespace fcexporter
