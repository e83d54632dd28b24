// A manager that asks without a pause: one SNMPv2c session in this process.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/e2e/stack.h"

namespace trust {

class Session {
  public:
    // To "ADDRESS:PORT", without repetitions. Throws std::runtime_error when it cannot be opened.
    explicit Session(const std::string& peer, double timeoutSeconds = 25);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // A value as a text: digits of a number, octets as they are. "none" for no such instance or
    // object; nothing for an error or no answer.
    std::optional<std::string> Get(const std::string& oid);

    // Asks for many values at once. Whether there was an answer without error.
    bool GetAll(const std::vector<std::string>& oids);

    // Walks what is below an OID, request by request. Returns the number of values, or -1 when the
    // walk broke off or did not ascend.
    long Walk(const std::string& oid);

  private:
    void* session_;  // of the single-session interface, which threads may use side by side
};

// Waits until the agent's tables are served: a daemon may be up without its settings, and then does
// not answer.
bool AwaitTables(const e2e::Stack& stack, double seconds = 20);

}  // namespace trust
