// Which notification leads to which traps and private events.
#include "src/traps/trap_decision.h"

#include "src/base/text.h"
#include "src/traps/local_state.h"
#include "src/traps/private_events.h"
#include "src/traps/trap_sender.h"
#include "src/traps/trap_table.h"
#include "tests/support/switch_test.h"
#include "tests/support/trap_sink.h"

namespace snmpmain {
namespace {

using Strings = std::vector<std::string>;

// Unit ids, as the end of an OID: of domain 2 (the local switch), 7 and 1.
const std::string kLocal = ".16.0.2.0.0.0.1.0.0.0.0.0.0.0.0.0",
                  k7 = ".16.0.2.0.0.0.2.0.0.0.0.0.0.0.0.0";
const std::string kUnit = "1.3.6.1.3.94.1.6.1.", kSensor = "1.3.6.1.3.94.1.8.1.",
                  kPort = "1.3.6.1.3.94.1.10.1.", kEvent = "1.3.6.1.3.94.1.11.1.",
                  kVendor = "1.3.6.1.4.1.32473.1.3.";

std::string Bound(const std::string& name, const std::string& value) {
    return " (" + name + " " + value + ")";
}

std::string Trap2(const std::string& oid, const std::string& bindings) {
    return "(1 'public' T7(id 0 0 ((1.3.6.1.2.1.1.3.0 t) (1.3.6.1.6.3.1.1.4.1.0 " + oid + ")" +
           bindings + ")))";
}

std::string StatusTrap(const std::string& unit, const char* status, const char* state) {
    return Trap2("1.3.6.1.3.94.0.1",
                 Bound(kUnit + "6" + unit, status) + Bound(kUnit + "5" + unit, state));
}

std::string EventTrap(const std::string& unit, const char* id, const std::string& object,
                      const std::string& text) {
    return Trap2("1.3.6.1.3.94.0.4", Bound(kEvent + "3" + unit + ".1", id) +
                                         Bound(kEvent + "7" + unit + ".1", "3") +
                                         Bound(kEvent + "8" + unit + ".1", object) +
                                         Bound(kEvent + "9" + unit + ".1", "'" + text + "'"));
}

class TrapDecisionTest : public SwitchTest {
  protected:
    TrapDecisionTest() : sink(LoopbackAddress(3)) {
        server.WithFabric([&](sim::Fabric& fabric) {
            fabric.Find(0)->traps = {};
            fabric.Find(0)->traps[0] = {sink.Address(), sink.Port(), "mark", true, "2"};
        });
        Discover();
        EXPECT_EQ(ReadTrapDestinations(), 0);
        EXPECT_EQ(InitLocalStateTable(), 0);
        SetTrapCommunity("public");
        server.TakeCommands();
    }

    Strings Process(std::uint16_t domain, std::uint16_t kind, const std::string& text) {
        ResetUnitStatusMemo();
        char buffer[512];
        CopyText(buffer, sizeof(buffer), text.c_str());
        ProcessNotificationForTraps(domain, kind, buffer);
        return sink.Take();
    }

    // Private events and other Sets since the last look, with their domains.
    Strings Sets() {
        Strings sets;
        for (const sim::ReceivedCommand& command : server.TakeCommands()) {
            if (command.text.starts_with("Set.")) {
                sets.push_back(std::to_string(command.domain) + " " + command.text);
            }
        }
        return sets;
    }

    void Set(const std::string& path, const std::string& value) {
        server.SetValue(0, path, value);
        server.SetValue(7, path, value);
    }

    TrapSink sink;
};

// Only domain 7 takes private events beside the local switch.
TEST_F(TrapDecisionTest, LocalChangesAreReportedOnceAndToldTheFabric) {
    EXPECT_EQ(Process(2, 28, "28;0;0;0;3[x]"), Strings{}) << "nothing has changed";
    EXPECT_EQ(Sets(), Strings{});
    Set("Oper.UserPort.0.3.OperState", "Offline");
    EXPECT_EQ(Process(2, 28, "28;0;0;0;3[x]"),
              (Strings{Trap2("1.3.6.1.3.94.0.6", Bound(kPort + "7" + kLocal + ".4", "2") +
                                                     Bound(kPort + "6" + kLocal + ".4", "3")),
                       Trap2(kVendor + "0.10", Bound(kVendor + "10.1.1.3.1.4", "1") +
                                                   Bound(kVendor + "10.1.1.4.1.4", "2"))}));
    EXPECT_EQ(Sets(), (Strings{"7 Set.Cmd.Snmp.PrivateEvent.[Port status change][28][2][3]",
                               "7 Set.Cmd.Snmp.PrivateEvent.[Port link state change][28][2][3]"}));
    EXPECT_EQ(Process(2, 28, "28;0;0;0;3[x]"), Strings{});
    Set("Oper.UserPort.0.3.OperState", "Online");
    const Strings online = Process(2, 27, "27;0;0;0;3[x]");
    ASSERT_EQ(online.size(), 2u);
    EXPECT_NE(online[1].find(kVendor + "0.11"), std::string::npos);

    Set("Oper.Switch.OperState", "Diagnostics");
    EXPECT_EQ(Process(2, 13, "13;"), Strings{StatusTrap(kLocal, "4", "3")});
    EXPECT_EQ(Process(2, 12, "12;"), Strings{});
    Sets();
    Set("Oper.Chassis.0.Fan.2", "Bad");
    EXPECT_EQ(Process(2, 21, "21;0;0;0;0[t][0][0x0][Fan:3 is Bad]\n"),
              Strings{Trap2("1.3.6.1.3.94.0.5", Bound(kSensor + "4" + kLocal + ".5", "5"))});
    EXPECT_EQ(Sets(), Strings{"7 Set.Cmd.Snmp.PrivateEvent.[Sensor state change][21][2][4]"});
    EXPECT_EQ(Process(2, 22, "22;0;0;0;0[t][0][0x0][Fan:3 is Bad]\n"), Strings{});
}

TEST_F(TrapDecisionTest, OtherSwitchesAreReportedWhileProxying) {
    const Strings port = {Trap2("1.3.6.1.3.94.0.6", Bound(kPort + "7" + k7 + ".4", "2") +
                                                        Bound(kPort + "6" + k7 + ".4", "2"))};
    EXPECT_EQ(Process(7, 4, "4;0;0;0;3[x]"), port);
    EXPECT_EQ(Process(7, 4, "4;0;0;0;3[x]"), port) << "compared with nothing";
    EXPECT_EQ(Process(7, 18, "18;"), Strings{StatusTrap(k7, "5", "3")});
    EXPECT_EQ(Process(7, 19, "[Power Supply:1]"),
              Strings{Trap2("1.3.6.1.3.94.0.5", Bound(kSensor + "4" + k7 + ".1", "3"))});
    EXPECT_EQ(Process(7, 25, "[Temperature:9]"),  // behind two supplies and two fans
              Strings{Trap2("1.3.6.1.3.94.0.5", Bound(kSensor + "4" + k7 + ".5", "4"))});
    EXPECT_EQ(Process(7, 10, "10;"), Strings{});
    EXPECT_EQ(Sets(), Strings{});
    server.WithFabric([](sim::Fabric& fabric) { fabric.proxy = false; });
    ASSERT_EQ(ReadProxyEnable(), 0);
    EXPECT_EQ(Process(7, 18, "18;"), Strings{});
}

TEST_F(TrapDecisionTest, EventsCarryTheirTexts) {
    EXPECT_EQ(Process(2, 14, "14;77;x[one]\n"),
              Strings{EventTrap(kLocal, "77", kUnit + "1" + kLocal, "14;77;x[one]")});
    EXPECT_EQ(Process(7, 8, "!"), Strings{EventTrap(k7, "0", kUnit + "1" + k7, "")});
    const Strings sets = Sets();
    ASSERT_EQ(sets.size(), 2u);
    std::string carried = "14;77;x[one]";
    EscapeEventText(carried.data());
    EXPECT_EQ(sets[0], "7 Set.Cmd.Snmp.PrivateEvent.[Event change][14][2][" + carried);
    EXPECT_EQ(Process(2, 29, "29;4;[Port HW state change. Port:5]"),
              Strings{EventTrap(kLocal, "4", kPort + "23" + kLocal + ".6",
                                "29;4;[Port HW state change. Port:5]")});
    EXPECT_EQ(Process(2, 29, "29;something else"), Strings{});
    // The longest text still fits the command and the trap.
    const std::string longest(511, 'x');
    EXPECT_EQ(Process(2, 16, longest),
              Strings{EventTrap(kLocal, "0", kUnit + "1" + kLocal, longest.substr(1))});
    EXPECT_EQ(Sets().size(), 1u);
}

TEST_F(TrapDecisionTest, ResetsAreReportedOncePerReset) {
    ResetUnitStatusMemo();
    const Strings reset = {StatusTrap(k7, "1", "3")};  // not read yet, and offline by the reset
    EXPECT_EQ(Process(7, 17, "17;"), reset);
    EXPECT_EQ(Process(7, 17, "17;"), Strings{});
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(Process(7, 17, "17;"), reset);
    EXPECT_EQ(Process(9, 17, "17;"), Strings{});
}

TEST_F(TrapDecisionTest, DepartedUnitIsNamed) {
    const std::string gone = ".16.0.2.0.0.0.9.0.0.0.0.0.0.0.0.0";
    const Strings traps = Process(2, 38, "1000020000000900");
    ASSERT_EQ(traps.size(), 1u);
    EXPECT_NE(traps[0].find("1.3.6.1.3.94.0.3) (" + kUnit + "1" + gone), std::string::npos);
    // It goes out with the severity of kind 10.
    server.WithFabric([&](sim::Fabric& fabric) { fabric.Find(0)->traps[0].severity = "notify"; });
    ASSERT_EQ(ReadTrapDestinations(), 0);
    EXPECT_EQ(Process(2, 38, "1000020000000900"), Strings{});
}

TEST_F(TrapDecisionTest, PrivateEventsOfOtherAgents) {
    const auto event = [&](const std::string& fields) {
        return Process(2, 32, "32;0;0;0;0" + fields);
    };
    EXPECT_EQ(event("[Unit status change][13][7]"), Strings{StatusTrap(k7, "5", "3")});
    EXPECT_EQ(event("[Sensor state change][19][7][0]"),
              Strings{Trap2("1.3.6.1.3.94.0.5", Bound(kSensor + "4" + k7 + ".1", "3"))});
    EXPECT_EQ(event("[Port status change][28][7][3]").size(), 1u);
    EXPECT_NE(event("[Port link state change][28][7][3]")[0].find(kVendor + "10.1.1.3.2.4"),
              std::string::npos);
    std::string text = "39;4;0;0;0[t][0][0x0][Port HW state change. Port:3]";
    std::string carried = text;
    EscapeEventText(carried.data());
    EXPECT_EQ(event("[Port HW state change][28][7][3][" + carried),
              Strings{EventTrap(k7, "4", kPort + "23" + k7 + ".4", text)});
    EXPECT_EQ(event("[Event change][14][7][" + carried),
              Strings{EventTrap(k7, "4", kUnit + "1" + k7, text)});
    EXPECT_NE(event("[connUnit deleted][7][9]")[0].find(kUnit + "1" + k7), std::string::npos);
    EXPECT_EQ(event("[Fabric update]"), Strings{});
    for (const char* broken :
         {"[Unit status change][13", "[Sensor state change][19][7", "[Port status change][28][7",
          "[Event change][14][7", "Unit status change", "[Port link state change][28][9][3]"}) {
        EXPECT_EQ(event(broken), Strings{}) << broken;
    }
    // The severity is that of the kind that the event carries; an unknown kind passes no filter.
    EXPECT_EQ(event("[Unit status change][99][7]"), Strings{});
    EXPECT_EQ(Sets(), Strings{}) << "what others have told is not told again";
}

TEST_F(TrapDecisionTest, FiltersStatesAndVersionsOfDestinations) {
    TrapSink second(LoopbackAddress(2));
    server.WithFabric([&](sim::Fabric& fabric) {
        auto& traps = fabric.Find(0)->traps;
        traps[0] = {sink.Address(), sink.Port(), "info", true, "1"};
        traps[1] = {second.Address(), second.Port(), "notify", true, "2"};
    });
    ASSERT_EQ(ReadTrapDestinations(), 0);
    Set("Oper.Switch.OperState", "Diagnostics");
    const Strings v1 = Process(2, 13, "13;");  // severity 8
    ASSERT_EQ(v1.size(), 1u);
    EXPECT_EQ(
        v1[0].substr(0, v1[0].find(" t ")),
        "(0 'public' T4(1.3.6.1.3.94 '\x7F" + v1[0].substr(v1[0].find('\x7F') + 1, 3) + "' 6 1");
    EXPECT_EQ(second.Take(), Strings{});
    EXPECT_EQ(Process(2, 8, "8;!").size(), 1u);  // severity 4
    EXPECT_EQ(second.Take().size(), 1u);
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(0)->traps[0].enabled = false; });
    ASSERT_EQ(ReadTrapDestinations(), 0);
    EXPECT_EQ(Process(2, 8, "8;!"), Strings{});
    EXPECT_EQ(second.Take().size(), 1u);
    SendColdStartTrap();
    EXPECT_EQ(sink.Take(), Strings{});
    EXPECT_EQ(second.Take(), Strings{Trap2("1.3.6.1.6.3.1.1.5.1",
                                           Bound("1.3.6.1.6.3.1.1.4.3.0", "1.3.6.1.6.3.1.1.5"))});
    Sets();
    server.SetValue(0, "Oper.Switch.ResetReason", "HotReset");
    SendColdStartTrap();
    EXPECT_EQ(Sets(), (Strings{"7 Set.Cmd.Snmp.PrivateEvent.[Fabric update]",
                               "7 Set.Cmd.Snmp.PrivateEvent.[Unit status change][13][2]"}));
}

TEST(EventText, PortStandsBehindTheFourthSemicolon) {
    EXPECT_EQ(GetPortFromEventText("28;1;2;3;Port 14[9]"), 14);
    EXPECT_EQ(GetPortFromEventText("28;1;2;3"), 65535);
    EXPECT_EQ(GetPortFromEventText("28;1;2;3;"), 0);
    EXPECT_EQ(GetPortFromEventText(""), 65535);
}

}  // namespace
}  // namespace snmpmain
