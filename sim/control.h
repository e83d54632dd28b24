// `switchsim ctl`: commands that change a fabric while it is simulated, and the socket over which
// they reach the running program.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "sim/server.h"

namespace sim {

/// The end in the running program: a Unix socket in the abstract namespace, named after the
/// address on which the server listens.
class Control {
  public:
    /// Throws std::system_error. The server must outlive this.
    Control(Server& server, const std::string& address);
    ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// Readable when a command waits.
    int Descriptor() const {
        return fd_;
    }

    /// Takes one command, carries it out and answers.
    void ServeOne();

    /// Carries out a command; returns what to tell, or throws with what is wrong.
    std::string Run(const std::vector<std::string>& words);

    /// A switch that has left the fabric, and its place in the list.
    struct Absent {
        Switch unit;
        std::size_t place = 0;
    };

  private:
    Server& server_;
    std::map<std::uint16_t, Absent> absent_;
    int fd_ = -1;
};

/// The other end: `arguments` are what follows "switchsim ctl". Returns the exit status.
int RunControlClient(std::vector<std::string> arguments);

}  // namespace sim
