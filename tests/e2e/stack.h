// The processes of an end-to-end test: the real snmpd, the agent's program and a switch, in a
// folder and on a loopback address of their own, and a manager's view of them. Everything that a
// stack started ends with it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/server.h"

namespace e2e {

using Words = std::vector<std::string>;

// OID and value, both as net-snmp's tools print them: ".1.3.6...", "INTEGER: 4".
using Value = std::pair<std::string, std::string>;
using Values = std::vector<Value>;

inline const std::string kFcmgmt = ".1.3.6.1.3.94";
inline const std::string kUnits = kFcmgmt + ".1.6.1";
inline const std::string kRevisions = kFcmgmt + ".1.7.1";
inline const std::string kSensors = kFcmgmt + ".1.8.1";
inline const std::string kPorts = kFcmgmt + ".1.10.1";
inline const std::string kEvents = kFcmgmt + ".1.11.1";
inline const std::string kLinks = kFcmgmt + ".1.12.1";
inline const std::string kZones = kFcmgmt + ".1.13.1";
inline const std::string kAliases = kFcmgmt + ".1.14.1";
inline const std::string kStatistics = kFcmgmt + ".4.5.1";
inline const std::string kNameServer = kFcmgmt + ".5.2.1.1";
inline const std::string kTraps = kFcmgmt + ".2.3.1";
inline const std::string kFe = ".1.3.6.1.2.1.75.1";
inline const std::string kLogins = kFe + ".2.3.1";
inline const std::string kVendorMib = ".1.3.6.1.4.1." VENDOR_ENTERPRISE_NUMBER ".1.3";
inline const std::string kTrapCommunity = "watchers";
inline const std::string kNoInstance = "No Such Instance currently exists at this OID";

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kIsSanitized = true;  // is slow, and keeps what is freed
#else
inline constexpr bool kIsSanitized = false;
#endif
// An agent that SNMPMAIN_AGENT names is likely to be emulated.
inline const bool kIsSlow = kIsSanitized || std::getenv("SNMPMAIN_AGENT") != nullptr;

std::string ReadFile(const std::string& path);

// Has a switch send its traps to one destination only, an SNMPv2c one that admits all.
void SendTrapsTo(sim::Switch& unit, const std::string& address, int port);

// Polls until `condition` holds; false when it does not within the time.
bool Within(double seconds, const std::function<bool()>& condition);

// The OID's numbers, which compare as OIDs do.
std::vector<unsigned long> SubIds(const std::string& oid);

// Values as a tool prints them, or a file holds them: "OID = VALUE" in each line. Octets that are
// printable characters, all of them, become a text: STRING: "..."
Values ParseValues(const std::string& output);

std::string Text(const std::string& text);
std::string Integer(std::uint64_t number);

// The index of a unit by its WWN's 16 digits; the instance of a unit of the default fabric, or of
// its row, by the unit's domain.
std::string UnitIndex(const std::string& wwn);
std::string At(const std::string& column, unsigned domain, unsigned row = 0);

// Those whose OIDs begin with that one.
Values Below(const Values& values, const std::string& oid);

// The names of values, in their order.
Words OidsOf(const Values& values);

// Failure tells the first values that are missing, wrong or too many.
testing::AssertionResult Same(const Values& actual, const Values& expected);

// The text with every match of an extended POSIX pattern replaced; "$1" in `by` is its group.
std::string Replaced(const std::string& text, const char* pattern, const std::string& by);

// The agent's program, or the command that the environment variable SNMPMAIN_AGENT names instead.
Words AgentCommand();

// Runs a program to its end. Its standard output and error are returned.
struct Finished {
    int status;  // exit status, or 128 + the signal that ended it
    std::string output;
};
Finished RunProgram(const Words& command);

class Stack {
  public:
    // `lane`, 0 to 3, tells the stacks of one test apart.
    explicit Stack(int lane = 0);
    ~Stack();
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    // A switch in this process, and the program; a stack has one or the other.
    void StartSwitch(sim::Fabric fabric = sim::DefaultFabric(), sim::Faults faults = {});
    void StartSimulatorProgram(const Words& options);
    sim::Server& Switch();

    // Starts the daemon, with these lines added to its settings, and waits until it answers.
    void StartSnmpd(const Words& settings = {});
    // Starts the daemon as a switch does: the agent writes its settings and has them read.
    void StartSnmpdOfSwitch();
    // Starts the agent; `AwaitAgent` waits until it serves requests.
    void StartAgent(const Words& environment = {}, const Words& options = {"--notrap"});
    bool AwaitAgent(double seconds = 20);
    // The same when a daemon may be up without its settings, and then does not answer.
    bool AwaitTables(double seconds = 20) const;
    void StartAll();
    // The same with a daemon that waits two minutes for the agent, and does not ask it again.
    void StartPatiently();

    // Starts a snmptrapd that takes traps of kTrapCommunity at a port of this stack's address.
    void StartReceiver(int port);
    // What it received so far, a line each: "TRAP, SNMP v1, community COMMUNITY, ENTERPRISE GENERIC
    // .SPECIFIC" or "TRAP2, SNMP v2c, community COMMUNITY", then " | OID = TYPE: value" for each
    // binding. Of the time that a notification begins with, only the word "ticks" is left.
    Words Traps(int port) const;

    // By name: "snmpd", "snmpmain", "switchsim", "snmptrapd" and its port.
    void Signal(const std::string& name, int number);
    void Stop(const std::string& name, int number = 15);
    bool IsRunning(const std::string& name);
    int Pid(const std::string& name) const;
    std::string Output(const std::string& name) const;

    Values Get(const Words& oids) const;
    // "no answer" when none comes within `patience` seconds.
    std::string GetOne(const std::string& oid, double patience = 25) const;
    Values GetNext(const Words& oids) const;
    Values Walk(const std::string& oid) const;
    Values BulkWalk(const std::string& oid) const;
    // The number of values; nothing when the walk broke off or did not ascend.
    std::optional<std::size_t> CountWalked(const std::string& oid, double patience = 25) const;
    Finished Set(const Words& assignments) const;

    std::string Path(const std::string& name) const;
    const std::string& Address() const;
    std::string SnmpAddress() const;  // of the daemon, for other managers

  private:
    void Start(const std::string& name, const Words& command, const Words& environment = {});
    Finished Manage(const std::string& tool, const Words& words, double patience = 25) const;

    std::string root_;
    std::string address_;
    std::map<std::string, int> processes_;
    std::unique_ptr<sim::Server> switch_;
};

}  // namespace e2e
