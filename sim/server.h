// The simulator's UDP server: receives requests on port 5001, answers them from a fabric, injects
// faults, and lets a test look and reach in.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/fabric.h"
#include "sim/faults.h"

namespace sim {

inline constexpr std::uint16_t kPort = 5001;
inline constexpr std::size_t kMaxRecorded = 200'000;  // commands and, likewise, complaints

struct ReceivedCommand {
    std::uint32_t domain = 0;  // as addressed; 0 = the local switch
    std::uint16_t type = 0;
    std::uint32_t sequence = 0;
    std::string text;         // with its prefix "Get." etc.
    std::uint16_t local = 0;  // domain of the local switch where it arrived
};

struct Totals {
    std::uint64_t answered = 0;    // requests that got a reply (lost ones do not count)
    std::uint64_t unanswered = 0;  // well-formed requests that got none
    std::uint64_t refused = 0;     // malformed frames
};

/// Runs a thread of its own; every operation may be called from any thread. The callbacks run on
/// the server's thread, outside its lock, and may call the server, except Stop.
class Server {
  public:
    /// Binds `address` (dotted, in 127.0.0.0/8), where the fabric's local switch is the local one,
    /// and the address of each switch that has one of its own for its agent, and starts. Throws
    /// std::system_error when that fails and FabricError for a fabric that CheckFabric refuses.
    Server(Fabric fabric, const std::string& address, Faults faults = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Stop closes the sockets, so that requests meet a closed port; Start binds again. The fabric
    /// stays; registrations, admin rights, edits, delayed replies and the last requester are
    /// forgotten, as with a process that is started anew.
    void Stop();
    void Start();

    void SetFaults(const Faults& faults);

    /// While paused, requests are checked and recorded, but have no effect and get no answer.
    void Pause(bool silent);

    /// From now on every request is answered at once and changes nothing: a Get from a switch that
    /// is not there gets an error, and all but a Get an empty text. For fuzzers, whose inputs shall
    /// neither wait nor find what an earlier one has set.
    void AnswerAll();

    /// All well-formed requests since the last call, in order; the oldest are dropped beyond
    /// kMaxRecorded.
    std::vector<ReceivedCommand> TakeCommands();
    void SetRecording(bool on);  // on at first

    /// What was wrong with each refused frame, and with whose.
    std::vector<std::string> Complaints() const;
    Totals GetTotals() const;

    /// Changes the fabric between two requests, and tells nobody.
    void WithFabric(const std::function<void(Fabric&)>& change);

    /// Changes the fabric between two requests and lets each switch concerned tell what happened to
    /// all that registered there, as the real ones do; returns how many notifications went out. A
    /// change that throws, or that CheckFabric refuses (FabricError), is undone.
    std::size_t ChangeAndNotify(const std::function<void(Fabric&)>& change);

    /// Sets what the switch of a domain (0 = the local one) answers to a path ("Oper.Switch.Type");
    /// nullopt makes the query fail. A domain that is not in the fabric is std::out_of_range.
    void SetValue(std::uint16_t domain, std::string path, std::optional<std::string> text);

    /// Called with one line per well-formed request:
    /// "<domain> <sender> <command> -> <reply text>", or "(no answer)" for the reply. Bytes that
    /// are no printable ASCII are shown as \xNN. A reply that an override replaced is not shown.
    void SetLog(std::function<void(const std::string& line)> log);

    /// Sends a notification from a domain (0 = the local switch, and then the frame's target word
    /// is 0 too for those who see it as theirs) to all that registered at this domain and to the
    /// last requester at the server's first address, once to each. Returns how many it sent.
    std::size_t SendNotification(std::uint16_t domain, std::string_view text);

    /// Sends any bytes from the server's first address to the last requester there.
    void SendRaw(std::span<const std::uint8_t> datagram);

    /// Test hook: gives the frame to send in place of the normal reply, or none to send nothing.
    /// Faults act on what it returns. Not called for requests that are not answered anyway.
    using ReplyOverride = std::function<std::optional<std::vector<std::uint8_t>>(
        const ReceivedCommand&, std::vector<std::uint8_t> normalReply)>;
    void SetReplyOverride(ReplyOverride change);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace sim
