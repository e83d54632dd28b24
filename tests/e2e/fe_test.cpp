// What a manager reads and sets in FIBRE-CHANNEL-FE-MIB and the vendor's MIB.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/e2e/stack.h"

namespace e2e {
namespace {

// "A.2.5 i 3" as snmpset takes it: A and R are columns of fcFxPortPhysTable, F and V the subtrees.
Words Assignments(const std::string& text) {
    const std::map<char, std::string> places = {{'A', kFe + ".2.2.1.1"},
                                                {'R', kFe + ".2.2.1.4"},
                                                {'F', kFe},
                                                {'V', kVendorMib + ".10.1.1"}};
    std::istringstream words(text);
    Words assignments;
    for (std::string word; words >> word; assignments.push_back(word)) {
        if (const auto place = places.find(word[0]); place != places.end()) {
            word.replace(0, 1, place->second);
        }
    }
    return assignments;
}

class Fe : public testing::Test {
  protected:
    void Start(const sim::Fabric& fabric = StillFabric()) {
        stack_.StartSwitch(fabric);
        stack_.StartAll();
    }

    // In requests for many variables each; values that follow on each other also by GETNEXT.
    void ExpectGets(const Values& expected, bool isWalk = true) {
        const Words oids = OidsOf(expected);
        for (std::size_t first = 0; first < oids.size(); first += 100) {
            const std::size_t end = std::min(first + 100, oids.size());
            const Values wanted(&expected[first], &expected[0] + end);
            EXPECT_TRUE(Same(stack_.Get({&oids[first], &oids[0] + end}), wanted));
            if (isWalk) {
                const Values next = stack_.GetNext({&oids[first], &oids[0] + end - 1});
                EXPECT_TRUE(Same(next, {wanted.begin() + 1, wanted.end()}));
            }
        }
    }

    // A request as Assignments takes it, why it is refused (if it is), and what it changes: the
    // domain and the setting, or nothing, and then the fabric stays as it is.
    void ExpectSet(const std::string& request, const std::string& reason,
                   const std::string& change) {
        SCOPED_TRACE(request);
        sim::Fabric before, after;
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) { before = fabric; });
        stack_.Switch().TakeCommands();
        const Words words = Assignments(request);
        const Finished set = stack_.Set(words);
        EXPECT_EQ(set.status == 0, reason.empty());
        EXPECT_NE(set.output.find(reason.empty() ? "" : "Reason: " + reason), std::string::npos)
            << set.output;
        EXPECT_TRUE(!reason.empty() || stack_.GetOne(words[0]).ends_with(": " + words[2]));
        std::string sent;
        for (const sim::ReceivedCommand& command : stack_.Switch().TakeCommands()) {
            if (command.text.starts_with("Set.Cmd.Switch.ReqAdmin;")) {
                sent +=
                    std::to_string(command.domain == 0 ? 2 : command.domain) + " " + command.text;
            }
        }
        std::string line = change;
        if (!change.empty()) {
            const bool saves = change.substr(2).starts_with("Config.");
            line = change.substr(0, 2) + "Set.Cmd.Switch.ReqAdmin;" +
                   (saves ? "Cmd.Switch.EditConfig;" : "") + change.substr(2) +
                   (saves ? ";Cmd.Switch.SaveConfig;Cmd.Switch.ActConfig" : "") +
                   ";Cmd.Switch.RelAdmin";
        }
        EXPECT_EQ(sent, line);
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) { after = fabric; });
        EXPECT_EQ(after == before, !reason.empty() || change.empty());
    }

    Stack stack_;
};

TEST_F(Fe, ReadsAsTheFabricIs) {
    const sim::Fabric fabric = StillFabric();
    Start(fabric);
    const Values element = ExpectedFe(fabric, kFe), vendor = ExpectedFe(fabric, kVendorMib);
    EXPECT_TRUE(Same(stack_.Walk(kFe), element));
    EXPECT_TRUE(Same(stack_.BulkWalk(kFe), element));
    ExpectGets(element);
    EXPECT_TRUE(Same(stack_.Walk(kVendorMib), vendor));
    ExpectGets(vendor);
    // The agent's values among all that the daemon serves.
    Values expected = element, walked = stack_.Walk(".1.3.6.1");
    for (const Values& more : {Expected(fabric), vendor}) {
        expected.insert(expected.end(), more.begin(), more.end());
    }
    std::erase_if(walked, [](const Value& value) {
        const auto holds = [&](const std::string& oid) {
            return value.first.starts_with(oid + ".");
        };
        return !holds(kFe) && !holds(kFcmgmt) && !holds(kVendorMib);
    });
    EXPECT_TRUE(Same(walked, expected));
    EXPECT_TRUE(stack_.IsRunning("snmpmain"));
    EXPECT_TRUE(stack_.Switch().Complaints().empty());
}

// A switch without ports between two others, one without names for its links, words that say
// nothing, and ports with more or fewer links than devices.
sim::Fabric OddFabric() {
    sim::Fabric fabric = StillFabric();
    sim::Switch& small = fabric.switches[0];
    sim::Switch& local = fabric.switches[1];
    sim::Switch& edge = fabric.switches[2];
    edge.ports.clear();
    edge.operState = "Waiting";
    small.nameServer.clear();
    small.operState = "Offline for Diagnostics";
    small.sysDescr = std::string(300, 'd');
    small.rATov = 0xFFFFFFFF;
    small.ports[0].operState = "Diagnostics, then Offline";
    small.ports[1].adminState = small.ports[1].operState = "Isolated";
    small.ports[2].runningType = "NFL";
    small.ports[3].runningType = "GF";
    small.ports[4].counters = {{"LinkFailures", 0xFFFFFFFF}, {"Class2WordsIn", 0x300000005}};
    std::erase_if(local.links, [](const sim::Link& link) { return link.localPort == 4; });
    local.ports[8].topologyType = "E";
    local.ports[9].portId = "02ff00";
    const struct {
        std::size_t port;
        const char* lastOctet;
        long place;
        std::size_t links;
    } kDevices[] = {{1, "ef", 0, 1}, {1, "01", 2, 1}, {1, "80", 6, 3},  // a loop of four
                    {0, "01", 0, 0},                                    // one link, two devices
                    {2, "01", 1, 1},                                    // behind an E port
                    {9, "e4", 1, 1}};
    for (const auto& [port, lastOctet, place, links] : kDevices) {
        sim::NsEntry entry = local.nameServer[0];
        entry.portId = local.ports[port].portId.substr(0, 4) + lastOctet;
        entry.portWwn.replace(8, 8, "00" + entry.portId);
        entry.classes = "1,F,3,9";
        local.nameServer.insert(local.nameServer.begin() + place, entry);
        local.links.resize(local.links.size() + links,
                           {.localPort = static_cast<std::uint32_t>(port)});
    }
    return fabric;
}

TEST_F(Fe, OddFabricReadsAsItIsHoweverListsEnd) {
    Start(OddFabric());
    for (const bool endMark : {false, true}) {
        stack_.Switch().WithFabric([&](sim::Fabric& fabric) { fabric.endMark = endMark; });
        for (const std::string& subtree : {kFe, kVendorMib}) {
            EXPECT_TRUE(Same(stack_.BulkWalk(subtree), ExpectedFe(OddFabric(), subtree)))
                << endMark;
        }
        ExpectGets(ExpectedFe(OddFabric(), kLogins));
    }
}

TEST_F(Fe, FailedQueryHidesNothingElse) {
    Start();
    Values all = ExpectedFe(StillFabric(), kFe), walked = all;
    const struct {
        std::uint16_t domain;
        const char* path;
        std::string column;
        const char* index;
    } kFailures[] = {
        {2, "Oper.Switch.WhoIsPrincipal", kFe + ".1.1", ".0"},
        {7, "Config.Snmp.SysObjectID", kFe + ".1.4.1.3", ".2"},
        {2, "Oper.UserPort.0.3.MaxCredit", kFe + ".1.5.1.5", ".1.4"},
        {7, "Oper.Topology.0.0.LocalPortID", kFe + ".2.1.1.1", ".2.1"},
        {1, "Config.UserPort.0.7.AdminState", kFe + ".2.2.1.1", ".3.8"},
        {7, "Oper.NameServer.Entry.07012a.COSList", kLogins + ".5", ".2.2.2"},
        {7, "Oper.UserPort.0.1.DecodeErrors", kFe + ".3.1.1.5", ".2.2"},
        {2, "Oper.UserPort.0.15.FRejects", kFe + ".4.2.1.7", ".1.16"},
        {7, "UpperRange.UserPort.0.23.BBCredit", kFe + ".5.1.1.3", ".2.24"},
    };
    for (const auto& [domain, path, column, index] : kFailures) {
        stack_.Switch().SetValue(domain, path, std::nullopt);
        const auto failed = std::ranges::find(all, column + index, &Value::first);
        ASSERT_NE(failed, all.end()) << column << index;
        failed->second = kNoInstance;
        std::erase_if(walked, [&](const Value& value) { return value.first == column + index; });
    }
    ExpectGets(all, false);
    EXPECT_TRUE(Same(stack_.Walk(kFe), walked));
}

TEST_F(Fe, IndicesOfNoRowAndSilentColumnsHaveNoInstanceAndLeadOn) {
    Start();
    const std::string huge = ".4294967295";
    const struct {
        std::string table;
        Words columns, indices;
    } kMissing[] = {
        {kFe + ".1.4.1", {".2", ".7"}, {"", ".0", ".4", ".1.1", huge}},
        {kFe,
         {".1.5.1.5", ".2.2.1.1", ".3.1.1.1", ".5.1.1.1"},
         {"", ".1", ".0.1", ".1.0", ".1.17", ".1.1.1", ".2.25", ".4.1", ".1" + huge, huge + ".1",
          huge + huge, ".1.65536", ".65536.1"}},
        {kVendorMib, {".10.1.1.3"}, {".1", ".0.1", ".1.0", ".3.9", ".4.1", ".1" + huge}},
        {kLogins,
         {".6", ".10"},
         {"", ".1.1", ".1.1.0", ".1.1.2", ".1.0.1", ".0.1.1", ".1.3.1", ".2.2.3", ".4.1.1",
          ".1.1.1.1", ".1.1" + huge, ".1" + huge + ".1", ".1.1.65536"}},
        {kLogins, {".2", ".3", ".4", ".11"}, {".1.1.1"}},
        {kFe, {".1.4.1.5"}, {".1"}},
        {kFe,
         {".2.1.1.2", ".2.1.1.4", ".2.2.1.3", ".3.1.1.3", ".3.1.1.7", ".4.1.1.1", ".4.1.1.5",
          ".4.1.1.10"},
         {".1.1", ".3.8"}},
    };
    for (const auto& [table, columns, indices] : kMissing) {
        for (const std::string& column : columns) {
            Words oids;
            for (const std::string& index : indices) {
                oids.push_back(table + column + index);
            }
            for (const auto& [oid, value] : stack_.Get(oids)) {
                EXPECT_EQ(value, kNoInstance) << oid;
            }
            const Words next = OidsOf(stack_.GetNext(oids));
            ASSERT_EQ(next.size(), oids.size()) << column;
            for (std::size_t i = 0; i < oids.size(); ++i) {
                EXPECT_GT(SubIds(next[i]), SubIds(oids[i])) << next[i];
            }
        }
    }
}

TEST_F(Fe, ChangesGoToTheSwitchWhosePortIsNamedOrNowhere) {
    sim::Fabric changed = StillFabric();
    changed.Find(7)->rTTovMin = 20;
    changed.Find(7)->rTTovMax = 300;
    // What the agent sees and the switch refuses, and a limit that cannot be had.
    changed.Find(7)->values = {{"Oper.Switch.MaxPorts", "25"},
                               {"Config.UserPort.0.24.AdminState", "Online"},
                               {"Oper.UserPort.0.24.AdminState", "Online"},
                               {"UpperRange.Switch.R_T_TOV", "301"}};
    changed.Find(1)->values = {{"LowerRange.Switch.R_T_TOV", std::nullopt}};
    Start(changed);
    const struct {
        std::string reason;  // why it is refused, if it is
        std::string change;  // the domain and what is changed there
        Words requests;
    } kRequests[] = {
        {"", "7 Config.UserPort.0.4.AdminState.Diagnostics", {"A.2.5 i 3"}},
        {"", "", {"A.2.5 i 3", "A.2.24 i 2"}},  // are so already; any other word reads as offline
        {"", "7 Config.UserPort.0.4.AdminState.Online", {"A.2.5 i 1"}},
        {"", "2 Config.UserPort.0.15.AdminState.Offline", {"A.1.16 i 2"}},
        {"", "1 Config.UserPort.0.0.AdminState.Offline", {"A.3.1 i 2"}},
        {"", "7 Cmd.UserPort.0.4.AdminState.Diagnostics", {"V.3.2.5 i 3"}},
        {"", "", {"V.3.2.5 i 3"}},
        {"", "2 Cmd.UserPort.0.15.AdminState.Online", {"V.3.1.16 i 1"}},
        {"", "1 Cmd.UserPort.0.7.AdminState.Offline", {"V.3.3.8 i 2"}},
        {"", "7 Config.Switch.R_T_TOV.300", {"R.2.24 u 300"}},
        {"", "", {"R.2.1 u 300"}},
        {"", "7 Config.Switch.R_T_TOV.20", {"R.2.1 u 20"}},
        {"", "2 Config.Switch.R_T_TOV.500", {"R.1.2 u 500"}},
        {"", "2 Config.Switch.R_T_TOV.1", {"R.1.16 u 1"}},
        // Two at once, of which the second one is so already or is refused.
        {"", "2 Config.UserPort.0.0.AdminState.Offline", {"A.1.1 i 2 A.3.1 i 2"}},
        {"", "2 Cmd.UserPort.0.1.AdminState.Offline", {"V.3.1.2 i 2 V.3.3.1 i 2"}},
        {"", "2 Config.Switch.R_T_TOV.20", {"R.1.1 u 20 R.2.1 u 20"}},
        {"wrongValue", "", {"A.1.3 i 2 V.3.1.4 i 4", "V.3.1.3 i 2 R.1.1 u 501"}},
        {"wrongValue",
         "",
         {"A.2.5 i 0", "A.2.5 i 4", "A.2.5 i -1", "V.3.2.5 i 0", "V.3.2.5 i 4", "R.1.1 u 0",
          "R.1.1 u 501", "R.1.1 u 4294967295", "R.2.1 u 19"}},
        {"wrongType", "", {"A.2.5 u 2", "A.2.5 s 2", "V.3.2.5 u 2", "R.1.1 i 200"}},
        {"commitFailed", "7 Config.UserPort.0.24.AdminState.Offline", {"A.2.25 i 2"}},
        {"commitFailed", "7 Cmd.UserPort.0.24.AdminState.Offline", {"V.3.2.25 i 2"}},
        {"commitFailed", "7 Config.Switch.R_T_TOV.301", {"R.2.1 u 301"}},
        {"commitFailed", "", {"R.3.1 u 200"}},
        // No such port, and objects that take nothing.
        {"notWritable",
         "",
         {"A.0.1 i 2", "A.1.0 i 2", "A.1.17 i 2", "A.4.1 i 2", "V.3.0.1 i 2", "V.3.1.17 i 2",
          "V.3.1.1.1 i 2", "R.4.1 u 200", "R.1.17 u 200", "F.1.1.0 s core", "F.1.2.0 s core",
          "F.1.4.1.7.1 s core", "F.2.1.1.4.1.1 i 2", "F.2.2.1.2.1.1 i 2", "F.2.3.1.12.1.1.1 i 1",
          "V.4.1.1 i 2"}},
    };
    for (const auto& [reason, change, requests] : kRequests) {
        for (const std::string& request : requests) {
            ExpectSet(request, reason, change);
        }
    }
}

TEST_F(Fe, LoginsCostFewCommandsEach) {
    Start();
    const Values logins = ExpectedFe(StillFabric(), kLogins);
    stack_.Switch().TakeCommands();
    EXPECT_TRUE(Same(stack_.Walk(kLogins), logins));
    EXPECT_LE(stack_.Switch().TakeCommands().size(), 5 * logins.size() / 2);
}

}  // namespace
}  // namespace e2e
