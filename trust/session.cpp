#include "trust/session.h"

#include <net-snmp/net-snmp-config.h>
//
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <vector>

#include "trust/measure.h"

namespace trust {
namespace {

std::vector<oid> ReadOid(const std::string& dotted) {
    std::vector<oid> names;
    for (std::size_t at = 0; at != std::string::npos; at = dotted.find('.', at + 1)) {
        names.push_back(std::stoul(dotted.substr(at + 1)));
    }
    return names;
}

struct Response {
    netsnmp_pdu* pdu = nullptr;
    ~Response() {
        snmp_free_pdu(pdu);
    }
};

// Returns the first variable of an answer without error, or null.
const netsnmp_variable_list* Ask(void* session, int command,
                                 const std::vector<std::vector<oid>>& names, Response& response) {
    netsnmp_pdu* request = snmp_pdu_create(command);
    for (const std::vector<oid>& name : names) {
        snmp_add_null_var(request, name.data(), name.size());
    }
    return snmp_sess_synch_response(session, request, &response.pdu) == STAT_SUCCESS &&
                   response.pdu->errstat == SNMP_ERR_NOERROR
               ? response.pdu->variables
               : nullptr;
}

}  // namespace

Session::Session(const std::string& peer, double timeoutSeconds) {
    static std::once_flag initialised;
    std::call_once(initialised, [] {
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
        init_snmp("trust");
    });
    netsnmp_session settings;
    snmp_sess_init(&settings);
    std::string name = peer, community = "private";
    settings.version = SNMP_VERSION_2c;
    settings.peername = name.data();
    settings.community = reinterpret_cast<u_char*>(community.data());
    settings.community_len = community.size();
    settings.timeout = static_cast<long>(timeoutSeconds * 1e6);
    settings.retries = 0;
    session_ = snmp_sess_open(&settings);
    if (session_ == nullptr) {
        throw std::runtime_error("no session to " + peer);
    }
}

Session::~Session() {
    snmp_sess_close(session_);
}

std::optional<std::string> Session::Get(const std::string& oid) {
    Response response;
    const netsnmp_variable_list* value = Ask(session_, SNMP_MSG_GET, {ReadOid(oid)}, response);
    if (value == nullptr) {
        return std::nullopt;
    }
    switch (value->type) {
        case SNMP_NOSUCHINSTANCE:
        case SNMP_NOSUCHOBJECT:
            return "none";
        case ASN_OCTET_STR:
            return std::string(reinterpret_cast<const char*>(value->val.string), value->val_len);
        default:
            return std::to_string(*value->val.integer);
    }
}

bool Session::GetAll(const std::vector<std::string>& oids) {
    std::vector<std::vector<oid>> names;
    std::ranges::transform(oids, std::back_inserter(names), ReadOid);
    Response response;
    return Ask(session_, SNMP_MSG_GET, names, response) != nullptr;
}

long Session::Walk(const std::string& oid) {
    const std::vector<::oid> root = ReadOid(oid);
    std::vector<::oid> at = root;
    for (long values = 0;; ++values) {
        Response response;
        const netsnmp_variable_list* next = Ask(session_, SNMP_MSG_GETNEXT, {at}, response);
        if (next == nullptr) {
            return -1;
        }
        const std::vector<::oid> name(next->name, next->name + next->name_length);
        if (next->type == SNMP_ENDOFMIBVIEW || name.size() < root.size() ||
            !std::equal(root.begin(), root.end(), name.begin())) {
            return values;
        }
        if (!(at < name)) {
            return -1;
        }
        at = name;
    }
}

bool AwaitTables(const e2e::Stack& stack, double seconds) {
    Session manager(stack.SnmpAddress(), 1);
    return e2e::Within(seconds, [&] { return manager.Get(kUnitCount) == "3"; });
}

}  // namespace trust
