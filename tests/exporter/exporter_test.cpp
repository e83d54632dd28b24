#include <fcntl.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/e2e/stack.h"

namespace {

using e2e::Within;
using nlohmann::json;

constexpr int kPort = 9943;

// A program with pipes to its descriptors 3 and 4, over which Chromium is driven.
class Program {
  public:
    explicit Program(e2e::Words words) {
        int in[2], out[2];
        EXPECT_TRUE(::pipe2(in, O_CLOEXEC) == 0 && ::pipe2(out, O_CLOEXEC) == 0);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            const int read = ::fcntl(in[0], F_DUPFD, 10), write = ::fcntl(out[1], F_DUPFD, 10);
            ::dup2(read, 3);
            ::dup2(write, 4);
            std::vector<char*> argv;
            for (std::string& word : words) {
                argv.push_back(word.data());
            }
            argv.push_back(nullptr);
            ::execvp(argv[0], argv.data());
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        to_ = in[1];
        from_ = out[0];
    }
    ~Program() {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
        ::close(to_);
        ::close(from_);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // A command of the browser and its result.
    json Ask(const char* method, const json& parameters, const std::string& session = "") {
        json command = {{"id", ++id_}, {"method", method}, {"params", parameters}};
        if (!session.empty()) {
            command["sessionId"] = session;
        }
        const std::string text = command.dump();
        EXPECT_EQ(::write(to_, text.c_str(), text.size() + 1), ssize_t(text.size() + 1));
        for (;;) {
            std::string answer;
            for (char c = 1; c != '\0';) {
                if (::read(from_, &c, 1) != 1) {
                    ADD_FAILURE() << "the browser ended";
                    return {};
                }
                answer += c;
            }
            answer.pop_back();
            json parsed = json::parse(answer);
            if (parsed.value("id", 0) == id_) {
                return parsed["result"];
            }
        }
    }

  private:
    pid_t pid_ = 0;
    int to_ = -1, from_ = -1;
    int id_ = 0;
};

// The exporter's page in a browser without a window.
class Page {
  public:
    explicit Page(const e2e::Stack& stack)
        : browser_({"chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--log-level=3",
                    "--remote-debugging-pipe", "--user-data-dir=" + stack.Path("chromium")}) {
        const json target =
            browser_.Ask("Target.createTarget", {{"url", "http://" + stack.Address() + ":9943/"}});
        session_ = browser_.Ask("Target.attachToTarget",
                                {{"targetId", target["targetId"]}, {"flatten", true}})["sessionId"];
    }
    // What an expression gives, as text.
    std::string Evaluate(const std::string& expression) {
        const json result = browser_.Ask("Runtime.evaluate",
                                         {{"expression", "String(" + expression + ")"}}, session_);
        return result["result"].value("value", "");
    }

  private:
    Program browser_;
    std::string session_;
};

bool HasBrowser() {
    return e2e::RunProgram({"chromium", "--version"}).status == 0;
}

std::string Fetch(const e2e::Stack& stack, const char* path) {
    httplib::Client client(stack.Address(), kPort);
    client.set_read_timeout(20);
    const auto answer = client.Get(path);
    return answer ? answer->body : "";
}

// The value of the first series of a name whose labels contain a text; "" when there is none.
std::string ValueOf(const std::string& metrics, const std::string& name, const std::string& label) {
    std::istringstream lines(metrics);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name + "{") && line.find(label) != std::string::npos) {
            return line.substr(line.rfind(' ') + 1);
        }
    }
    return "";
}

// All lines of one fabric about switches, without its name.
std::string SeriesOf(const std::string& metrics, const std::string& fabric) {
    std::istringstream lines(metrics);
    const std::string label = "{fabric=\"" + fabric + "\",";
    std::string series;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t found = line.find(label);
        if (found != std::string::npos && !line.starts_with("fc_switch_uptime")) {
            series += line.replace(found, label.size(), "{") + "\n";
        }
    }
    return series;
}

std::string PortClass(int domain, int port) {
    return "[...document.querySelectorAll('article')].find(a => a.textContent.includes('domain " +
           std::to_string(domain) + " ')).querySelectorAll('.port')[" + std::to_string(port) +
           "].className";
}

TEST(Exporter, ShowsAFabricByBothVersionsOfSnmpAndWhatChangesInIt) {
    e2e::Stack stack;
    stack.StartSwitch();
    stack.StartSnmpd({"createUser reader SHA authphrase AES privphrase", "rouser reader priv"});
    stack.StartAgent();
    ASSERT_TRUE(stack.AwaitAgent());
    std::ofstream(stack.Path("exporter.toml"))
        << "listen = \"" << stack.Address() << ":9943\"\ninterval = 1\n"
        << "[[target]]\nfabric = \"two\"\naddress = \"" << stack.SnmpAddress() << "\"\n"
        << "[[target]]\nfabric = \"three\"\naddress = \"" << stack.SnmpAddress() << "\"\n"
        << "options = ['-v3', '-l', 'authPriv', '-u', 'reader', '-a', 'SHA', '-A', 'authphrase', "
           "'-x', 'AES', '-X', 'privphrase']\n"
        << "[[target]]\nfabric = \"none\"\naddress = \"127.9.9.9:1161\"\n";
    const Program exporter({EXPORTER_PROGRAM, "--config", stack.Path("exporter.toml")});
    std::string metrics;
    const auto shows = [&](const std::string& name, const std::string& label,
                           const std::string& value) {
        return Within(40, [&] {
            metrics = Fetch(stack, "/metrics");
            return ValueOf(metrics, name, label) == value;
        });
    };
    ASSERT_TRUE(shows("fcexporter_up", "two", "1"));
    ASSERT_TRUE(shows("fcexporter_up", "three", "1")) << metrics;
    EXPECT_TRUE(Within(40, [&] {  // each was read by itself
        metrics = Fetch(stack, "/metrics");
        return SeriesOf(metrics, "two") == SeriesOf(metrics, "three");
    })) << metrics;
    EXPECT_EQ(ValueOf(metrics, "fcexporter_up", "none"), "0");

    // Each port and sensor is there; a word is 4 octets; a counter that is full stays so.
    std::size_t ports = 0;
    sim::Fabric fabric = sim::DefaultFabric();
    for (const sim::Switch& unit : fabric.switches) {
        ports += unit.ports.size();
    }
    const std::string series = SeriesOf(metrics, "two");
    std::size_t found = 0;
    for (std::size_t at = 0;
         (at = series.find("fc_port_sent_bytes_total{", at)) != std::string::npos; at++) {
        found++;
    }
    EXPECT_EQ(found, ports);
    const std::uint64_t words = fabric.Find(2)->ports[0].counters.at("TotalTxWords");
    const std::string first = ValueOf(series, "fc_port_sent_bytes_total", "port=\"0\"");
    EXPECT_EQ(std::stod(first), 4.0 * static_cast<double>(words));
    EXPECT_NE(series.find("port=\"10\",attached=\"annex-small\""), std::string::npos) << series;
    EXPECT_EQ(ValueOf(series, "fc_sensor_status", "Power supply 2"), "5");

    std::unique_ptr<Page> page;
    if (HasBrowser()) {
        page = std::make_unique<Page>(stack);
        EXPECT_TRUE(Within(40, [&] { return page->Evaluate(PortClass(2, 4)) == "port online"; }));
    }
    stack.Switch().WithFabric([](sim::Fabric& all) {
        all.Find(2)->ports[4].operState = "Offline";
        all.Find(1)->silent = true;
    });
    EXPECT_TRUE(
        shows("fc_port_state", "\"core-local\",wwn=\"10:00:02:00:00:00:01:00\",port=\"4\"", "3"));
    EXPECT_TRUE(shows("fc_switch_up", "annex-small", "0")) << metrics;
    EXPECT_EQ(ValueOf(metrics, "fc_port_state", "annex-small\",wwn"), "");
    EXPECT_NE(metrics.find("port=\"10\",attached=\"annex-small\""), std::string::npos);
    if (page != nullptr) {
        EXPECT_TRUE(Within(40, [&] {
            return page->Evaluate(PortClass(2, 4)).starts_with("port lost");
        })) << page->Evaluate("document.body.innerText");
        EXPECT_TRUE(Within(40, [&] {
            return page->Evaluate("document.querySelector('.silent h3').textContent") ==
                   "annex-small";
        })) << page->Evaluate("document.body.innerText");
    }
    stack.Stop("snmpd");
    EXPECT_TRUE(shows("fcexporter_up", "two", "0"));
    EXPECT_EQ(SeriesOf(metrics, "two"), "");
}

TEST(Exporter, ReadsALargeFabricAsFastAsABulkWalkAndDrawsItWithinASecond) {
    e2e::Stack stack;
    stack.StartSimulatorProgram({"--domains", "239"});
    stack.StartAll();
    const auto begun = std::chrono::steady_clock::now();
    std::size_t walked = 0;
    for (const char* column : {".1.10.1.6", ".4.5.1.6", ".4.5.1.40"}) {
        walked += stack.BulkWalk(e2e::kFcmgmt + column).size();
    }
    const std::chrono::duration<double> walk = std::chrono::steady_clock::now() - begun;
    ASSERT_EQ(walked, 3u * 239 * 16);

    const Program exporter({EXPORTER_PROGRAM, "--target", "large=" + stack.SnmpAddress(),
                            "--listen", stack.Address() + ":9943", "--interval", "600"});
    ASSERT_TRUE(Within(
        120, [&] { return Fetch(stack, "/state.json").find("switch-239") != std::string::npos; }));
    const std::string metrics = Fetch(stack, "/metrics");
    std::size_t series = 0;
    for (const char c : metrics) {
        series += c == '\n';
    }
    const double reading = std::stod(ValueOf(metrics, "fcexporter_reading_duration_seconds", ""));
    EXPECT_LT(reading / static_cast<double>(series),
              1.2 * walk.count() / static_cast<double>(walked));
    if (!HasBrowser()) {
        GTEST_SKIP() << "no Chromium";
    }
    Page page(stack);
    std::string drawn = "undefined";
    EXPECT_TRUE(Within(20, [&] {
        drawn = page.Evaluate("document.body.dataset.drawn");
        return drawn != "undefined" &&
               page.Evaluate("document.querySelectorAll('.port').length") == "3829";
    })) << page.Evaluate("document.querySelectorAll('.port').length");
    EXPECT_LT(std::atoi(drawn.c_str()), 1000);
}

TEST(TrapHandler, WritesEachTrapOfBothVersionsAsALineOfJson) {
    e2e::Stack stack;
    const std::string address = stack.Address() + ":1162", lines = stack.Path("traps.jsonl");
    std::ofstream(stack.Path("snmptrapd.conf"))
        << "authCommunity log,execute public\ntraphandle default " TRAP_HANDLER " " << lines
        << "\n";
    const Program receiver({"/usr/sbin/snmptrapd", "-f", "-n", "-Lf", stack.Path("snmptrapd.log"),
                            "-On", "-C", "-c", stack.Path("snmptrapd.conf"), "udp:" + address});
    const auto read = [&] {
        std::ifstream file(lines);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string text = "a \"quoted\" back\\slash\nand a second line";
    EXPECT_TRUE(Within(20, [&] {  // until it listens
        e2e::RunProgram({"snmptrap", "-v2c", "-c", "public", address, "5", ".1.3.6.1.3.94.0.4",
                         ".1.3.6.1.3.94.1.11.1.9.1", "s", text});
        return Within(1, [&] { return read().ends_with("}\n"); });
    }));
    const json trap = json::parse(read().substr(0, read().find('\n')));
    EXPECT_EQ(trap["trap"], ".1.3.6.1.3.94.0.4");
    EXPECT_EQ(trap["values"][".1.3.6.1.3.94.1.11.1.9.1"],
              "a \"quoted\" back\\slash and a second line");
    e2e::RunProgram({"snmptrap", "-v1", "-c", "public", address, ".1.3.6.1.3.94", "10.1.2.3", "6",
                     "6", "5", ".1.3.6.1.3.94.1.10.1.6.1", "i", "3"});
    EXPECT_TRUE(Within(40, [&] { return read().find(".1.3.6.1.3.94.0.6\"") != std::string::npos; }))
        << read();
    EXPECT_NE(read().find("\".1.3.6.1.3.94.1.10.1.6.1\":\"3\""), std::string::npos) << read();
}

TEST(Exporter, NamesMistakesInItsFile) {
    e2e::Stack stack;
    const std::pair<const char*, const char*> mistakes[] = {
        {"interval = \"often\"", ":1: unknown key or wrong type: interval"},
        {"[[target]]\nadress = \"a\"", ":2: unknown key or wrong type: adress"},
        {"listen = ", ":1: "},
        {"[[target]]\naddress = \"a\"", "a target needs a fabric and an address"},
        {"[[target]]\nfabric = \"a\"\naddress = \"a\"\noptions = [\"-v3\", \"-a\", \"ROT13\"]",
         "target a: its options are wrong"},
        {"interval = 5", "no target"},
    };
    for (const auto& [text, message] : mistakes) {
        std::ofstream(stack.Path("exporter.toml")) << text << "\n";
        const e2e::Finished finished =
            e2e::RunProgram({EXPORTER_PROGRAM, "--config", stack.Path("exporter.toml")});
        EXPECT_EQ(finished.status, 1) << text;
        EXPECT_NE(finished.output.find(message), std::string::npos) << finished.output;
    }
}

}  // namespace
