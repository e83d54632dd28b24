// An SNMP session with one agent. Each belongs to one thread. The library keeps users and engine
// times of SNMPv3 for all sessions together, so it is entered by one thread at a time; nobody waits
// for an agent meanwhile.
#pragma once

#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "exporter/columns.h"
#include "exporter/config.h"

struct snmp_pdu;
struct snmp_session;
struct variable_list;

namespace fcexporter {

using Oid = std::vector<std::uint32_t>;

struct Binding {
    Oid name;
    Value value;
};

// Makes the library ready; before any session. It reads no file.
void StartLibrary();

// Where the library leaves the answer to the one request under way.
struct Answer {
    bool awaited = false;
    int operation = 0;  // NETSNMP_CALLBACK_OP_...
    int report = 0;     // SNMPERR_..., of SNMPv3
    long error = 0;     // SNMP_ERR_...
    variable_list* variables = nullptr;
};

class Session {
  public:
    // Throws std::runtime_error when the target's options are wrong; the library says why.
    explicit Session(const Target& target);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Opens the session if it is not open. 0 or -1, see Error().
    int Open();
    void Close();
    void StopBy(std::stop_token stop);

    // What follows each of the names, up to `repetitions` times, as the agent orders it: one of
    // each name, then the next of each. It may be cut anywhere. 0 or -1; -1 soon when told to stop.
    int GetBulk(const std::vector<Oid>& names, int repetitions, std::vector<Binding>& bindings);

    // Why the last call failed; Fail() says so of what came with it, and returns -1.
    const std::string& Error() const {
        return error_;
    }
    int Fail(const std::string& why);

  private:
    int Connect(snmp_session& session);
    int FindEngine(std::string& engine);
    int Await(snmp_pdu* pdu);

    const std::string address_;
    std::vector<std::string> words_;       // as on a command line
    std::unique_ptr<snmp_session> asked_;  // what they ask for; refers to them
    std::stop_token stop_;
    void* handle_ = nullptr;
    int descriptor_ = -1;
    Answer answer_;
    std::string error_;
};

}  // namespace fcexporter
