#include "tests/e2e/stack.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <regex.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include "tests/support/loopback.h"

namespace e2e {
namespace {

constexpr const char* kSnmpPort = "1161";

[[noreturn]] void Become(const Words& command, const Words& environment, int output) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // nothing outlives the test, however it ends
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    for (const std::string& setting : environment) {
        ::putenv(const_cast<char*>(setting.c_str()));
    }
    std::vector<char*> argv;
    for (const std::string& word : command) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    ::execvp(argv[0], argv.data());
    ::_exit(127);
}

int StatusOf(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus);
}

// "Hex-STRING: 41 42" as "STRING: "AB"", unless one of the octets is no printable character.
std::string Readable(const std::string& value) {
    constexpr std::string_view kHex = "Hex-STRING:";
    if (!value.starts_with(kHex)) {
        return value;
    }
    std::istringstream octets(value.substr(kHex.size()));
    std::string text;
    for (int octet; octets >> std::hex >> octet;) {
        if (octet < ' ' || octet > '~') {
            return value;
        }
        text += static_cast<char>(octet);
    }
    return Text(text);
}

}  // namespace

std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

void SendTrapsTo(sim::Switch& unit, const std::string& address, int port) {
    unit.trapComm = kTrapCommunity;
    unit.traps = {};
    unit.traps[0] = {address, static_cast<std::uint32_t>(port), "mark", true, "2"};
}

bool Within(double seconds, const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

Values ParseValues(const std::string& output) {
    Values values;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find(" = ");
        if (line.starts_with(".") && equals != std::string::npos) {
            std::string value = line.substr(equals + 3);
            value.erase(value.find_last_not_of(' ') + 1);
            values.emplace_back(line.substr(0, equals), value);
        } else if (!values.empty() && !line.empty()) {
            values.back().second += " " + line;  // long octet strings go on in the next line
            values.back().second.erase(values.back().second.find_last_not_of(' ') + 1);
        }
    }
    for (auto& [oid, value] : values) {
        value = Readable(value);
    }
    return values;
}

std::string Text(const std::string& text) {
    return text.empty() ? "\"\"" : "STRING: \"" + text + "\"";
}

std::string Integer(std::uint64_t number) {
    return "INTEGER: " + std::to_string(number);
}

std::string UnitIndex(const std::string& wwn) {
    std::string index;
    for (std::size_t i = 0; i < 16; i += 2) {
        index += "." + std::to_string(std::stoi(wwn.substr(i, 2), nullptr, 16));
    }
    return index + ".0.0.0.0.0.0.0.0";
}

std::string At(const std::string& column, unsigned domain, unsigned row) {
    const char number = domain == 2 ? '1' : domain == 7 ? '2' : '3';
    return column + UnitIndex(std::string("1000020000000") + number + "00") +
           (row == 0 ? "" : "." + std::to_string(row));
}

Values Below(const Values& values, const std::string& oid) {
    Values below;
    std::ranges::copy_if(values, std::back_inserter(below),
                         [&](const Value& value) { return value.first.starts_with(oid + "."); });
    return below;
}

std::vector<unsigned long> SubIds(const std::string& oid) {
    std::vector<unsigned long> numbers;
    std::istringstream text(oid.substr(1));
    for (std::string number; std::getline(text, number, '.');) {
        numbers.push_back(std::stoul(number));
    }
    return numbers;
}

Words OidsOf(const Values& values) {
    Words oids;
    for (const auto& [name, value] : values) {
        oids.push_back(name);
    }
    return oids;
}

testing::AssertionResult Same(const Values& actual, const Values& expected) {
    const std::map<std::string, std::string> got(actual.begin(), actual.end());
    const std::map<std::string, std::string> wanted(expected.begin(), expected.end());
    auto result = actual == expected ? testing::AssertionSuccess() : testing::AssertionFailure();
    int left = 5;
    for (const auto& [name, value] : expected) {
        if (const auto found = got.find(name); found == got.end() && left-- > 0) {
            result << "\n" << name << " is missing";
        } else if (found != got.end() && found->second != value && left-- > 0) {
            result << "\n" << name << " is " << found->second << ", expected " << value;
        }
    }
    for (const auto& [name, value] : actual) {
        if (!wanted.contains(name) && left-- > 0) {
            result << "\n" << name << " is too many: " << value;
        }
    }
    return result << "\n" << actual.size() << " values, expected " << expected.size();
}

std::string Replaced(const std::string& text, const char* pattern, const std::string& by) {
    regex_t compiled;
    EXPECT_EQ(::regcomp(&compiled, pattern, REG_EXTENDED), 0) << pattern;
    std::string result;
    const char* rest = text.c_str();
    regmatch_t match[2];
    while (::regexec(&compiled, rest, 2, match, 0) == 0 && match[0].rm_eo > 0) {
        const std::string group(rest + match[1].rm_so, rest + match[1].rm_eo);
        result.append(rest, static_cast<std::size_t>(match[0].rm_so));
        result += by.substr(0, by.find("$1")) + group + by.substr(by.find("$1") + 2);
        rest += match[0].rm_eo;
    }
    ::regfree(&compiled);
    return result + rest;
}

Words AgentCommand() {
    const char* words = std::getenv("SNMPMAIN_AGENT");
    if (words == nullptr) {
        return {AGENT_PROGRAM};
    }
    std::istringstream command(words);
    return {std::istream_iterator<std::string>(command), {}};
}

Finished RunProgram(const Words& command) {
    int ends[2];
    EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        Become(command, {}, ends[1]);
    }
    ::close(ends[1]);
    Finished finished{};
    char buffer[4096];
    for (ssize_t count; (count = ::read(ends[0], buffer, sizeof(buffer))) > 0;) {
        finished.output.append(buffer, static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    finished.status = StatusOf(status);
    return finished;
}

Stack::Stack(int lane) : address_(LoopbackAddress(lane)) {
    char name[] = "/tmp/snmpmain_e2e.XXXXXX";
    root_ = ::mkdtemp(name);
    for (const char* folder : {"var/agentx", "var/run", "var/ucd-snmp", "kelmor/conf/etc"}) {
        std::filesystem::create_directories(Path(folder));
    }
    // net-snmp's programs read no settings and MIB modules of this machine, and keep nothing there.
    ::setenv("SNMPCONFPATH", root_.c_str(), 1);
    ::setenv("SNMP_PERSISTENT_DIR", Path("var/ucd-snmp").c_str(), 1);
    ::setenv("MIBS", "", 1);
    ::setenv("MIBDIRS", "", 1);
    ::unsetenv("MIBFILES");
    ::unsetenv("SNMP_PERSISTENT_FILE");
}

Stack::~Stack() {
    for (const auto& [name, pid] : processes_) {
        EXPECT_EQ(Output(name).find("Sanitizer"), std::string::npos) << name;
    }
    if (testing::Test::HasFailure()) {
        for (const auto& [name, pid] : processes_) {
            if (name.starts_with("snmptrapd")) {
                continue;  // the tests tell which traps they received
            }
            std::printf("--- %s\n%s\n", name.c_str(), Output(name).c_str());
        }
    }
    while (!processes_.empty()) {
        Stop(processes_.begin()->first, SIGKILL);
    }
    std::filesystem::remove_all(root_);
}

std::string Stack::Path(const std::string& name) const {
    return root_ + "/" + name;
}

const std::string& Stack::Address() const {
    return address_;
}

std::string Stack::SnmpAddress() const {
    return address_ + ":" + kSnmpPort;
}

void Stack::Start(const std::string& name, const Words& command, const Words& environment) {
    const int output =
        ::open(Path(name + ".log").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const pid_t child = ::fork();
    if (child == 0) {
        Become(command, environment, output);
    }
    ::close(output);
    processes_[name] = child;
}

void Stack::StartSwitch(sim::Fabric fabric, sim::Faults faults) {
    switch_ = std::make_unique<sim::Server>(std::move(fabric), address_, faults);
}

void Stack::StartSimulatorProgram(const Words& options) {
    Words command = {SIMULATOR_PROGRAM, "--listen", address_};
    command.insert(command.end(), options.begin(), options.end());
    Start("switchsim", command);
}

sim::Server& Stack::Switch() {
    return *switch_;
}

void Stack::StartSnmpd(const Words& settings) {
    {
        std::ofstream file(Path("snmpd.conf"));
        file << "master agentx\n"
             << "agentXSocket " << Path("var/agentx/master") << "\n"
             << "rocommunity public\nrwcommunity private\n";
        for (const std::string& line : settings) {
            file << line << "\n";
        }
    }
    Start("snmpd",
          {"/usr/sbin/snmpd", "-f", "-LE", "4", "-I", "-smux", "-C", "-c", Path("snmpd.conf"), "-p",
           Path("snmpd.pid"), "udp:" + address_ + ":" + kSnmpPort},
          {"SNMP_PERSISTENT_DIR=" + Path("var/ucd-snmp")});
    const std::string upTime = ".1.3.6.1.2.1.1.3.0";
    EXPECT_TRUE(Within(10, [&] {
        return RunProgram({"snmpget", "-v2c", "-c", "public", "-r", "0", "-t", "0.2",
                           address_ + ":" + kSnmpPort, upTime})
                   .status == 0;
    })) << "snmpd does not answer";
}

void Stack::StartSnmpdOfSwitch() {
    Start("snmpd",
          {"/usr/sbin/snmpd", "-f", "-LE", "4", "-I", "-smux", "-x", Path("var/agentx/master"),
           "-p", Path("var/run/snmpd.pid"), "udp:" + address_ + ":" + kSnmpPort},
          {"SNMP_PERSISTENT_DIR=" + Path("var/ucd-snmp"),
           "SNMPCONFPATH=" + Path("var/ucd-snmp") + ":" + Path("kelmor/conf/etc")});
    EXPECT_TRUE(Within(10, [&] {
        return std::filesystem::exists(Path("var/ucd-snmp/snmpd.conf"));
    })) << "snmpd does not start";
}

void Stack::StartAgent(const Words& environment, const Words& options) {
    Words all = {"SNMPMAIN_ROOT=" + root_};
    all.insert(all.end(), environment.begin(), environment.end());
    Words command = AgentCommand();
    command.insert(command.end(), {"--remote", address_});
    command.insert(command.end(), options.begin(), options.end());
    Start("snmpmain", command, all);
}

bool Stack::AwaitAgent(double seconds) {
    return Within(seconds, [this] {
        return Output("snmpmain").find("up and running") != std::string::npos &&
               GetOne(kFcmgmt + ".1.1.0").starts_with("INTEGER");
    });
}

bool Stack::AwaitTables(double seconds) const {
    return Within(seconds, [this] { return GetOne(kFcmgmt + ".1.1.0", 1) == "INTEGER: 3"; });
}

void Stack::StartAll() {
    if (switch_ == nullptr && !processes_.contains("switchsim")) {
        StartSwitch();
    }
    StartSnmpd();
    StartAgent();
    ASSERT_TRUE(AwaitAgent());
}

void Stack::StartPatiently() {
    StartSnmpd({"agentXTimeout 120", "agentXRetries 0"});
    StartAgent();
    ASSERT_TRUE(AwaitAgent(60));
}

void Stack::StartReceiver(int port) {
    const std::string name = "snmptrapd" + std::to_string(port);
    // Each trap stands between two control characters, since texts may have several lines.
    std::ofstream(Path(name + ".conf"))
        << "disableAuthorization no\nauthCommunity log " << kTrapCommunity << "\n"
        << "format1 \2%P, %N %w %q%V | % | %v\3\\n\nformat2 \2%P%V | % | %v\3\\n\n";
    Start(name, {"/usr/sbin/snmptrapd", "-f", "-Le", "-n", "-X", "-On", "-Ot", "-C", "-c",
                 Path(name + ".conf"), "udp:" + address_ + ":" + std::to_string(port)});
    EXPECT_TRUE(
        Within(10, [&] { return Output(name).find("NET-SNMP version") != std::string::npos; }))
        << name << " does not start";
}

Words Stack::Traps(int port) const {
    std::istringstream log(Output("snmptrapd" + std::to_string(port)));
    Words traps;
    std::string text;
    while (std::getline(log, text, '\2') && std::getline(log, text, '\3')) {
        traps.push_back(
            Replaced(Replaced(text, " +( \\| |$)", "$1"), "(\\.1\\.3\\.0 = )[0-9]+", "$1ticks"));
    }
    return traps;
}

void Stack::Signal(const std::string& name, int number) {
    ASSERT_EQ(::kill(processes_.at(name), number), 0);
}

void Stack::Stop(const std::string& name, int number) {
    const int pid = processes_.at(name);
    ::kill(pid, number);
    ::kill(pid, SIGCONT);
    ::waitpid(pid, nullptr, 0);
    processes_.erase(name);
}

bool Stack::IsRunning(const std::string& name) {
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(processes_.at(name)), &ended, WEXITED | WNOHANG | WNOWAIT);
    return ended.si_pid == 0;
}

int Stack::Pid(const std::string& name) const {
    return processes_.at(name);
}

std::string Stack::Output(const std::string& name) const {
    return ReadFile(Path(name + ".log"));
}

Finished Stack::Manage(const std::string& tool, const Words& words, double patience) const {
    Words command = {tool,
                     "-v2c",
                     "-c",
                     "private",
                     "-On",
                     "-Ox",
                     "-Ot",
                     "-r",
                     "0",
                     "-t",
                     std::to_string(patience),
                     SnmpAddress()};
    command.insert(command.end(), words.begin(), words.end());
    return RunProgram(command);
}

Values Stack::Get(const Words& oids) const {
    return ParseValues(Manage("snmpget", oids).output);
}

std::string Stack::GetOne(const std::string& oid, double patience) const {
    const Values values = ParseValues(Manage("snmpget", {oid}, patience).output);
    return values.empty() ? "no answer" : values[0].second;
}

Values Stack::GetNext(const Words& oids) const {
    return ParseValues(Manage("snmpgetnext", oids).output);
}

Values Stack::Walk(const std::string& oid) const {
    return ParseValues(Manage("snmpwalk", {oid}).output);
}

Values Stack::BulkWalk(const std::string& oid) const {
    return ParseValues(Manage("snmpbulkwalk", {oid}).output);
}

std::optional<std::size_t> Stack::CountWalked(const std::string& oid, double patience) const {
    const Finished walk = Manage("snmpwalk", {oid}, patience);
    return walk.status == 0 ? std::optional(ParseValues(walk.output).size()) : std::nullopt;
}

Finished Stack::Set(const Words& assignments) const {
    return Manage("snmpset", assignments);
}

}  // namespace e2e
