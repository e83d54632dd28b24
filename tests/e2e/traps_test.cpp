// What managers receive as traps, and what the switch's agent tells the agents of other switches.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

// The local switch's destinations. Each trap has a severity, and goes where that is not above the
// highest one that the destination admits.
struct Destination {
    int port;
    std::string severity;
    unsigned most;
    bool enabled;
    std::string version;
};
const std::vector<Destination> kDestinations = {{1165, "info", 8, true, "1"},
                                                {1164, "mark", 10, true, "2"},
                                                {1163, "critical", 4, true, "1"},
                                                {1162, "notify", 7, true, "2"},
                                                {1166, "mark", 10, false, "2"}};

// Units by their domains: 2 is the local one; 7 takes events, 1 does not.
constexpr unsigned kLocal = 2, kEdge = 7, kAnnex = 1;

// In the order of the names.
std::string NumberOf(unsigned unit) {
    return unit == kLocal ? "1" : unit == kEdge ? "2" : "3";
}

struct Trap {
    unsigned severity;
    std::string enterprise;
    unsigned number;
    Values bindings;
};

// It has no severity: every active destination gets it.
const Trap kColdStart = {0, ".1.3.6.1.6.3.1.1.5", 1, {}};

// As snmptrapd writes it.
std::string Line(const Trap& trap, const std::string& version) {
    const bool isGeneric = trap.enterprise == kColdStart.enterprise;
    const std::string number = std::to_string(trap.number);
    std::string line = version == "1" ? "TRAP, SNMP v1" : "TRAP2, SNMP v2c";
    line += ", community " + kTrapCommunity;
    if (version == "1") {
        line += ", " + trap.enterprise + (isGeneric ? " 0 0 |" : " 6 ." + number);
    } else {
        line += " | .1.3.6.1.2.1.1.3.0 = ticks | .1.3.6.1.6.3.1.1.4.1.0 = OID: " + trap.enterprise;
        line += isGeneric ? "." + number + " | .1.3.6.1.6.3.1.1.4.3.0 = OID: " + trap.enterprise
                          : ".0." + number;
    }
    for (const auto& [oid, value] : trap.bindings) {
        line += " | " + oid + " = " + value;
    }
    return line;
}

Trap StatusTrap(unsigned unit, unsigned status, unsigned state, unsigned severity = 8) {
    const Values bindings = {{At(kUnits + ".6", unit), Integer(status)},
                             {At(kUnits + ".5", unit), Integer(state)}};
    return {severity, kFcmgmt, 1, bindings};
}

Trap DeletedTrap(unsigned unit) {
    return {8,
            kFcmgmt,
            3,
            {{At(kUnits + ".1", unit),
              "Hex-STRING: 10 00 02 00 00 00 0" + NumberOf(unit) + " 00 00 00 00 00 00 00 00 00"}}};
}

Trap SensorTrap(unsigned unit, unsigned sensor, unsigned status) {
    return {4, kFcmgmt, 5, {{At(kSensors + ".4", unit, sensor), Integer(status)}}};
}

Trap PortTrap(unsigned unit, unsigned port, unsigned state, unsigned severity = 8) {
    const Values bindings = {{At(kPorts + ".7", unit, port), Integer(2)},
                             {At(kPorts + ".6", unit, port), Integer(state)}};
    return {severity, kFcmgmt, 6, bindings};
}

Trap LinkTrap(unsigned unit, unsigned port, unsigned admin, unsigned oper) {
    const std::string index = "." + NumberOf(unit) + "." + std::to_string(port);
    const Values bindings = {{kVendorMib + ".10.1.1.3" + index, Integer(admin)},
                             {kVendorMib + ".10.1.1.4" + index, Integer(oper)}};
    return {8, kVendorMib, oper == 1 ? 11u : 10u, bindings};
}

// `text` begins "KIND;ID;". The event is about a port, or about the unit.
Trap EventTrap(unsigned unit, const std::string& text, unsigned severity = 8, unsigned port = 0) {
    const std::string object = At(port == 0 ? kUnits + ".1" : kPorts + ".23", unit, port);
    const Values bindings = {
        {At(kEvents + ".3", unit, 1), Integer(std::stoul(text.substr(text.find(';') + 1)))},
        {At(kEvents + ".7", unit, 1), Integer(3)},
        {At(kEvents + ".8", unit, 1), "OID: " + object},
        {At(kEvents + ".9", unit, 1), "STRING: \"" + text + "\""}};
    return {severity, kFcmgmt, 4, bindings};
}

// A notification that the agent completes: with the time (its zone here) and a name.
std::string Noted(unsigned kind, const std::string& name, const std::string& zone = "ABC") {
    return std::to_string(kind) + ";0;0;0;0;[time " + zone + "][0][0x0][" + name + "]";
}

// With each date in brackets replaced by the word "time" and its zone.
std::string Timeless(const std::string& text) {
    return Replaced(text,
                    "\\[[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} ([A-Z]+) 20[0-9]{2}\\]",
                    "[time $1]");
}

// Carried texts have the top bit set in each byte.
std::string Escaped(std::string text) {
    std::ranges::for_each(text, [](char& c) { c = static_cast<char>(c | 0x80); });
    return text;
}

// With braces around what is escaped.
std::string Readable(const std::string& text) {
    std::string readable;
    bool wasEscaped = false;
    for (const char c : text + '\0') {
        const bool isEscaped = (c & 0x80) != 0;
        readable += isEscaped == wasEscaped ? "" : isEscaped ? "{" : "}";
        readable += static_cast<char>(c & 0x7F);
        wasEscaped = isEscaped;
    }
    readable.pop_back();
    return readable;
}

const std::string kEvent = "7 Set.Cmd.Snmp.PrivateEvent.";

std::string EventOf(unsigned kind, const std::string& text) {
    return kEvent + "[Event change][" + std::to_string(kind) + "][2][{" + text + "}";
}

class Traps : public testing::Test {
  protected:
    using Change = std::function<void()>;

    sim::Fabric FabricWithDestinations() const {
        sim::Fabric fabric = sim::DefaultFabric();
        fabric.Find(0)->trapComm = kTrapCommunity;
        for (std::size_t i = 0; i < kDestinations.size(); ++i) {
            const auto& [port, severity, most, enabled, version] = kDestinations[i];
            fabric.Find(0)->traps[i] = {stack_.Address(), static_cast<std::uint32_t>(port),
                                        severity, enabled, version};
        }
        return fabric;
    }

    // The daemon has all receivers among its own trap sinks, as on a switch, and proves it.
    void Start(const sim::Fabric& fabric) {
        Words sinks = {"trapcommunity " + kTrapCommunity};
        for (const Destination& to : kDestinations) {
            stack_.StartReceiver(to.port);
            sinks.push_back((to.version == "1" ? "trapsink " : "trap2sink ") + stack_.Address() +
                            ":" + std::to_string(to.port));
        }
        stack_.StartSwitch(fabric);
        stack_.StartSnmpd(sinks);
        for (const Destination& to : kDestinations) {
            ASSERT_TRUE(Within(5, [&] { return stack_.Traps(to.port).size() == 1; }));
            seen_[to.port] = 1;
        }
        StartAgent({"--notrap"});
    }
    void Start() {
        Start(FabricWithDestinations());
    }
    void StartAgent(const Words& options) {
        stack_.StartAgent({"TZ=ABC-1"}, options);
        ASSERT_TRUE(stack_.AwaitAgent());
    }

    // A change of a switch about which it tells, and what a switch may tell at any time.
    template <class Function>
    Change Of(std::uint16_t domain, Function how) {
        return [=, this] {
            stack_.Switch().ChangeAndNotify(
                [&](sim::Fabric& fabric) { how(*fabric.Find(domain)); });
        };
    }
    Change Notices(std::uint16_t domain, const Words& texts, const std::string& rest = "") {
        return [=, this] {
            for (const std::string& text : texts) {
                stack_.Switch().SendNotification(domain, text + rest);
            }
        };
    }

    Words NewTraps(int port) {
        const Words all = stack_.Traps(port);
        Words fresh;
        std::transform(all.begin() + seen_[port], all.end(), std::back_inserter(fresh), Timeless);
        return fresh;
    }

    void TakeCommands() {
        for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
            if (command.text.starts_with("Set.") && !command.text.ends_with(".Hello")) {
                events_.push_back(std::to_string(command.domain) + " " +
                                  Timeless(Readable(command.text)));
            }
        }
    }

    // Whether a change leads to exactly these traps, in this order, at the destinations that
    // admitted them before the change, and to these commands to the own and to other switches:
    // "DOMAIN COMMAND". A last trap, which all active destinations admit, marks the end.
    void Expect(const std::string& what, const std::vector<Trap>& traps, const Words& events,
                const Change& change) {
        SCOPED_TRACE(what);
        const std::vector<Destination> before = destinations_;
        TakeCommands();
        events_.clear();
        change();
        const std::string mark = "16;" + std::to_string(++marks_) + ";0;0;0[mark]";
        Notices(0, {mark + "\n"})();
        const auto isMark = [&](const std::string& event) { return event.find(mark) != mark.npos; };
        Within(units_ > 1 ? 5 : 0, [&] {
            TakeCommands();
            return std::ranges::any_of(events_, isMark);
        });
        std::erase_if(events_, isMark);
        EXPECT_EQ(events_, events);
        for (std::size_t i = 0; i < before.size(); ++i) {
            const auto& [port, severity, most, enabled, version] = before[i];
            Words expected, received;
            for (const Trap& trap : traps) {
                if (enabled && trap.severity <= most) {
                    expected.push_back(Line(trap, version));
                }
            }
            if (destinations_[i].enabled) {
                expected.push_back(Line(EventTrap(kLocal, mark, 4), version));
            }
            Within(2,
                   [&, at = port] { return (received = NewTraps(at)).size() >= expected.size(); });
            EXPECT_EQ(received, expected) << port;
            seen_[port] += static_cast<std::ptrdiff_t>(received.size());
        }
    }

    void AwaitUnits(std::size_t count) {
        units_ = count;
        EXPECT_TRUE(Within(2, [&] { return stack_.GetOne(kFcmgmt + ".1.1.0") == Integer(count); }));
    }

    // A trap that took the way through the daemon would be sent before the daemon answers.
    void ExpectNoMore() {
        Expect("no more", {}, {}, [&] { ReadStatuses(); });
    }

    // A unit's status may be reported as it was read last within three seconds; the one read last
    // here is not changed.
    void ReadStatuses() {
        (void)stack_.Walk(kUnits + ".6");
    }

    Stack stack_;
    std::vector<Destination> destinations_ = kDestinations;
    std::map<int, std::ptrdiff_t> seen_;
    Words events_;
    std::size_t units_ = 3;  // that the agent knows
    unsigned marks_ = 0;
};

TEST_F(Traps, TellOfPorts) {
    Start();
    const auto port3 = [&](std::uint16_t domain, std::string sim::Port::*member,
                           const std::string& word) {
        return Of(domain, [=](sim::Switch& unit) { unit.ports[3].*member = word; });
    };
    const std::string status = kEvent + "[Port status change][28][2][3]",
                      link = kEvent + "[Port link state change][28][2][3]",
                      words = "[time ABC][0][0x0][Port HW state change. Port:3]";
    Expect("down", {PortTrap(kLocal, 4, 3), LinkTrap(kLocal, 4, 1, 2)}, {status, link},
           port3(2, &sim::Port::operState, "Offline"));
    Expect("another word for down", {LinkTrap(kLocal, 4, 1, 4)}, {link},
           port3(2, &sim::Port::operState, "Down"));
    Expect("no light", {},
           {kEvent + "[Port HW state change][27][2][3][{39;0;0;0;0" + words + "}",
            "0 Set.Cmd.Switch.GenericEvent." + words},
           port3(2, &sim::Port::syncStatus, "SyncLost"));
    Expect("to be tested", {}, {}, port3(2, &sim::Port::adminState, "Diagnostics"));
    Expect("in test", {PortTrap(kLocal, 4, 5), LinkTrap(kLocal, 4, 3, 3)}, {status, link},
           port3(2, &sim::Port::operState, "Diagnostics"));
    Expect("up", {PortTrap(kLocal, 4, 2), LinkTrap(kLocal, 4, 3, 1)}, {status, link},
           port3(2, &sim::Port::operState, "Online"));
    Expect("renamed", {}, {}, port3(2, &sim::Port::name, "Backup"));
    Expect("as before", {}, {}, Notices(0, {"4", "10", "11", "27", "28"}, ";0;0;0;3"));
    // What another switch says is not compared.
    Expect("down elsewhere", {PortTrap(kEdge, 4, 3)}, {},
           port3(7, &sim::Port::operState, "Offline"));
    Expect("as before elsewhere", {PortTrap(kEdge, 4, 3, 4)}, {}, Notices(7, {"11;0;0;0;3"}));

    const std::string text = "29;52;0;0;0[now][0][0x0][Port HW state change. Port:5]\n";
    Expect("hardware", {EventTrap(kLocal, text, 6, 6)}, {}, Notices(0, {text}));
    Expect("hardware elsewhere", {EventTrap(kEdge, text, 6, 6)}, {}, Notices(7, {text}));
    Expect("other hardware", {}, {}, Notices(0, {"29;52;0;0;0[now][0][0x0][Fan:5]\n"}));
    ExpectNoMore();
}

TEST_F(Traps, TellOfSensors) {
    Start();
    const std::string sensor = kEvent + "[Sensor state change]";
    Expect("supply", {SensorTrap(kLocal, 2, 3)}, {sensor + "[20][2][1]"},
           Of(2, [](sim::Switch& unit) { unit.powerSupplies[1] = "Good"; }));
    Expect("no supply", {SensorTrap(kLocal, 1, 5), SensorTrap(kLocal, 2, 5)},
           {sensor + "[19][2][0]", sensor + "[19][2][1]"},
           Of(2, [](sim::Switch& unit) { unit.powerSupplies.assign(2, "Bad"); }));
    Expect("fan", {SensorTrap(kLocal, 5, 5)}, {sensor + "[21][2][4]"},
           Of(2, [](sim::Switch& unit) { unit.fans[2] = "Bad"; }));
    Expect("warm", {SensorTrap(kLocal, 6, 4)}, {sensor + "[25][2][5]"},
           Of(2, [](sim::Switch& unit) { unit.blades[0].tempStatus = "Warm"; }));
    Expect("as before", {}, {},
           Notices(0, {"19", "20", "21", "22", "24", "25", "26", "33", "34", "35"},
                   ";0;0;0;0[now][0][0x0][Part:1 is what it was]\n"));
    // A switch with one blade has no sensor for its voltage; the first sensor stands for it.
    stack_.Switch().SetValue(0, "Oper.Chassis.0.PowerSupply.0", "Good");
    Expect("voltage", {SensorTrap(kLocal, 1, 3)}, {sensor + "[35][2][0]"},
           Of(2, [](sim::Switch& unit) { unit.blades[0].voltageStatus = "Bad"; }));
    Expect("elsewhere", {SensorTrap(kEdge, 2, 5), SensorTrap(kEdge, 3, 5), SensorTrap(kEdge, 5, 3)},
           {}, Of(7, [](sim::Switch& unit) {
               unit.powerSupplies[1] = "Bad";
               unit.fans[0] = "Bad";
               unit.blades[0].tempStatus = "Normal";
           }));
    Expect("voltage elsewhere", {}, {},  // compared with the own sensor of that number
           Of(7, [](sim::Switch& unit) { unit.blades[0].voltageStatus = "Bad"; }));
    ExpectNoMore();
}

TEST_F(Traps, TellOfUnits) {
    Start();
    const std::string unitStatus = kEvent + "[Unit status change]";
    Expect("as before", {}, {}, Notices(0, {"12", "18", "23"}, ";0;0;0;0"));
    Expect("offline", {StatusTrap(kLocal, 4, 3)}, {unitStatus + "[13][2]"},
           Of(2, [](sim::Switch& unit) { unit.operState = "Offline"; }));
    ReadStatuses();
    stack_.Switch().SetValue(0, "Oper.Chassis.0.PowerSupply.0", "Bad");
    Expect("failed", {StatusTrap(kLocal, 5, 3)}, {unitStatus + "[23][2]"},
           Of(2, [](sim::Switch& unit) { unit.blades[0].asicVersion = "B4"; }));
    Expect("elsewhere", {StatusTrap(kEdge, 5, 2)}, {},
           Of(7, [](sim::Switch& unit) { unit.operState = "Online"; }));

    const Words reset = {"17;0;0;0;0[now][0][0x0][Reset]\n"};
    ReadStatuses();
    Expect("reset", {StatusTrap(kLocal, 5, 3, 4)}, {}, Notices(0, reset));
    Expect("reset, once more", {}, {}, Notices(0, reset));
    for (const char* each : {"reset elsewhere", "again"}) {  // each with a look at the fabric
        ReadStatuses();
        Expect(each, {StatusTrap(kEdge, 5, 3, 4)}, {}, Notices(7, reset));
    }
    ReadStatuses();
    Expect("since then", {StatusTrap(kLocal, 5, 3, 4)}, {}, Notices(0, reset));

    const std::string text = Noted(5, "Fabric oper change");
    const auto fabricFrom = [&](const std::string& first, std::size_t count) {
        return [=, this] {  // a switch that is not listed answers all the same
            stack_.Switch().SetValue(0, "Oper.Fabric.FirstDomainID", first);
            Notices(0, {"5;0;0;0;0"})();
            AwaitUnits(count);
        };
    };
    Expect("left", {EventTrap(kLocal, text), DeletedTrap(kAnnex)}, {EventOf(5, text)},
           fabricFrom("2", 2));
    Expect("joined", {EventTrap(kLocal, text)}, {EventOf(5, text)}, fabricFrom("1", 3));
    ExpectNoMore();
}

TEST_F(Traps, TellOfEvents) {
    Start();
    const auto expect = [&](unsigned unit, unsigned severity, unsigned kind,
                            const std::string& text, const Change& change) {
        Expect(text, {EventTrap(unit, text, severity)}, {EventOf(kind, text)}, change);
    };
    expect(kLocal, 8, 7, Noted(7, "Zoning change"), Notices(0, {"7;0;0;0;0"}));
    expect(kEdge, 8, 9, Noted(9, "NameServer oper change"), Notices(7, {"9;0;0;0;0"}));
    // The end of the line is cut, or what is there instead.
    expect(kLocal, 6, 14, "14;4711;0;0;0[now][a]", Notices(0, {"14;4711;0;0;0[now][a]\n"}));
    expect(kEdge, 4, 8, "8;12;0;0;0", Notices(7, {"8;12;0;0;0."}));
    expect(kLocal, 8, 37, Noted(37, "Time zone has changed"), Notices(0, {"37;0;0;0;0"}));
    std::string zone = RunProgram({"env", "-u", "TZ", "date", "+%Z"}).output;
    zone.pop_back();
    const std::string config = Noted(2, "Switch config change", zone);
    expect(kLocal, 8, 2, config, Of(2, [](sim::Switch& unit) { unit.comment = ""; }));
    Expect("in-band", {EventTrap(kLocal, config)}, {EventOf(2, config), kEvent + "[Fabric update]"},
           Of(2, [](sim::Switch& unit) { unit.inbandEnable = false; }));
    ExpectNoMore();
}

// The agents of other switches tell what they saw through the local switch.
const std::string kText = "39;0;0;0;0[now][0][0x0][Port HW state change. Port:5]";
const std::vector<std::pair<std::string, std::vector<Trap>>> kHeard = {
    {"[Unit status change][13][7]", {StatusTrap(kEdge, 5, 3)}},
    {"[Sensor state change][21][7][2]", {SensorTrap(kEdge, 3, 3)}},
    {"[Port status change][28][7][21]", {PortTrap(kEdge, 22, 3)}},
    {"[Port link state change][28][7][21]", {LinkTrap(kEdge, 22, 1, 4)}},
    {"[Port link state change][28][9][21]", {}},  // nobody knows that switch
    {"[Port HW state change][27][7][5][" + Escaped(kText), {EventTrap(kEdge, kText, 8, 6)}},
    {"[Event change][14][7][" + Escaped("14;7;[a]"), {EventTrap(kEdge, "14;7;[a]", 6)}},
    {"[connUnit deleted][7][1]", {DeletedTrap(kEdge)}},  // one number stands for both
    {"[Sensor state change][21][7", {}},
    {"[Event change][14][7]", {}},
    {"[Fabric update]", {}}};

TEST_F(Traps, TellWhatOtherAgentsSaw) {
    Start();
    for (const auto& [event, traps] : kHeard) {
        Expect(Readable(event), traps, {}, Notices(0, {"32;0;0;0;0" + event}));
    }
    ExpectNoMore();
}

TEST_F(Traps, TellOfOtherSwitchesWithProxyOnly) {
    sim::Fabric fabric = FabricWithDestinations();
    fabric.proxy = false;
    units_ = 1;
    Start(fabric);
    for (const auto& [event, traps] : kHeard) {
        Expect(Readable(event), {}, {}, Notices(0, {"32;0;0;0;0" + event}));
    }
    Expect("other switches", {}, {},
           Notices(7, {"28;0;0;0;2", "7;0;0;0;0", "13;0;0;0;0", "19;0;0;0;0[Fan:1]\n"}));
    const std::string zoning = Noted(7, "Zoning change"), config = Noted(1, "Snmp config change");
    Expect("own switch", {EventTrap(kLocal, zoning)}, {}, Notices(0, {"7;0;0;0;0"}));
    const auto setProxy = [&](bool on) {
        return [=, this] {
            stack_.Switch().ChangeAndNotify([&](sim::Fabric& changed) { changed.proxy = on; });
            AwaitUnits(on ? 3 : 1);
        };
    };
    // Each switch tells; only those at which the agent has registered are heard.
    Expect("on", {EventTrap(kLocal, config)}, {}, setProxy(true));
    Expect("now with others", {EventTrap(kEdge, zoning)}, {EventOf(7, zoning)},
           Notices(7, {"7;0;0;0;0"}));
    Expect("off",
           {EventTrap(kAnnex, config), EventTrap(kLocal, config), DeletedTrap(kEdge),
            DeletedTrap(kAnnex)},
           {EventOf(1, config), EventOf(1, config)}, setProxy(false));
    ExpectNoMore();
}

TEST_F(Traps, GoToActiveDestinationsOnly) {
    Start();
    const std::string config = Noted(1, "Snmp config change"), zoning = Noted(7, "Zoning change");
    const auto set = [&](const std::string& what, bool enabled, const std::string& address) {
        Expect(what, {EventTrap(kLocal, config)}, {EventOf(1, config)},
               Of(2, [=, this](sim::Switch& unit) {
                   for (std::size_t i = 0; i < destinations_.size(); ++i) {
                       destinations_[i].enabled = enabled && kDestinations[i].enabled;
                       unit.traps[i].enabled = destinations_[i].enabled;
                       unit.traps[i].address = address;
                   }
                   unit.traps[4] = unit.traps[0];  // the same port: the first one counts
                   unit.traps[4].version = "2";
               }));
        Expect("after that", {EventTrap(kLocal, zoning)}, {EventOf(7, zoning)},
               Notices(0, {"7;0;0;0;0"}));
    };
    set("inactive", false, stack_.Address());
    set("active", true, stack_.Address());
    set("none", false, "0.0.0.0");
    set("some again", true, stack_.Address());
    ExpectNoMore();
}

TEST_F(Traps, BeginWithAColdStart) {
    Start();
    Expect("start without", {}, {}, [] {});
    const auto restart = [&](const Words& options, const std::optional<std::string>& reason) {
        return [=, this] {
            stack_.Switch().SetValue(0, "Oper.Switch.ResetReason", reason);
            stack_.Stop("snmpmain");
            StartAgent(options);
        };
    };
    Expect("start", {kColdStart}, {}, restart({}, "PowerUp"));
    Expect("hot reset", {kColdStart},
           {kEvent + "[Fabric update]", kEvent + "[Unit status change][13][2]"},
           restart({}, "HotReset"));
    EXPECT_NE(stack_.Output("snmpmain").find("Sending ColdStart trap\n"), std::string::npos);
    Expect("hot reset without", {}, {}, restart({"--notrap"}, "HotReset"));
    Expect("reset for unknown reason", {}, {}, restart({}, std::nullopt));
    EXPECT_NE(stack_.Output("snmpmain").find("Error sending Cold/Warmstart trap\n"),
              std::string::npos);
    ExpectNoMore();
}

// Each switch with its own agent. Both are registered at all switches, and tell each other.
TEST_F(Traps, ComeFromEachAgentOfTheFabric) {
    Stack other(1);
    sim::Fabric fabric = FabricWithDestinations();
    sim::Switch& edge = *fabric.Find(7);
    edge.agentAddress = other.Address();
    edge.trapComm = kTrapCommunity;
    edge.traps[0] = {other.Address(), 1165, "info", true, "1"};
    Start(fabric);
    other.StartReceiver(1165);
    other.StartSnmpd();
    other.StartAgent();
    ASSERT_TRUE(other.AwaitAgent());
    Words own, others;
    for (const unsigned state : {3u, 2u}) {
        const std::string port = Line(PortTrap(kLocal, 4, state), "1"),
                          link = Line(LinkTrap(kLocal, 4, 1, state == 2 ? 1 : 2), "1");
        own.insert(own.end(), {port, link});
        // The other agent hears of the port from the switch and from this agent.
        others.insert(others.end(), {port, port, link});
        Of(2, [=](sim::Switch& unit) {
            unit.ports[3].operState = state == 2 ? "Online" : "Offline";
        })();
        EXPECT_TRUE(Within(5, [&] { return other.Traps(1165).size() >= others.size(); }));
    }
    // And a last one, of which both hear from the switch only.
    const std::string text = "29;1;0;0;0[now][0][0x0][Port HW state change. Port:1]\n";
    own.push_back(Line(EventTrap(kLocal, text, 6, 2), "1"));
    others.push_back(own.back());
    Notices(0, {text})();
    Within(5, [&] { return NewTraps(1165).size() >= own.size(); });
    Within(5, [&] { return other.Traps(1165).size() >= others.size(); });
    EXPECT_EQ(NewTraps(1165), own);
    EXPECT_EQ(other.Traps(1165), others);
    for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
        EXPECT_FALSE(command.local == 7 && command.text.find("Event.[") != std::string::npos)
            << Readable(command.text);
    }
}

}  // namespace
}  // namespace e2e
