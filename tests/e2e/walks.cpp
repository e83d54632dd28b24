#include "tests/e2e/walks.h"

#include <algorithm>
#include <fstream>

namespace e2e {
namespace {

std::string PathOf(const std::string& file) {
    return std::string(REVIEWED_FOLDER "/") + file;
}

}  // namespace

sim::Fabric StillFabric() {
    sim::Fabric fabric = sim::DefaultFabric();
    for (sim::Switch& unit : fabric.switches) {
        unit.values["Oper.Switch.Uptime"] = std::to_string(unit.uptime);
    }
    return fabric;
}

sim::Fabric OddFabric() {
    sim::Fabric fabric = StillFabric();
    sim::Switch& small = fabric.switches[0];
    sim::Switch& local = fabric.switches[1];
    sim::Switch& edge = fabric.switches[2];
    edge.ports.clear();
    edge.links.clear();
    edge.log.clear();
    edge.chassis = 2;
    edge.operState = "Waiting";
    small.nameServer.clear();
    small.log = {{5, "Mon dec 31 23:59:59 2026", "[A][ids are missing around this one]"},
                 {33, "Mon Foo  7 01:02:03 2027", "[C][no such month]"}};
    small.operState = "Offline for Diagnostics";
    small.sysDescr = std::string(300, 'd');
    small.rATov = 0xFFFFFFFF;
    small.allow4GPorts = true;
    small.ports[0].linkSpeed = small.ports[1].linkSpeed = local.ports[1].linkSpeed = "8Gb/s";
    small.ports[0].operState = "Diagnostics, then Offline";
    small.ports[1].adminState = small.ports[1].operState = "Isolated";
    small.ports[2].runningType = "TL";
    small.ports[3].runningType = "GF";
    small.ports[3].name = "";
    small.ports[4].counters = {{"LinkFailures", 0xFFFFFFFF}, {"Class2WordsIn", 0x300000005}};
    small.ports[5].runningType = "NFL";

    local.ports.resize(10);
    std::erase_if(local.links, [](const sim::Link& link) {
        return link.localPort == 4 || link.localPort >= 10;
    });
    local.ports[0].counters = {{"TotalTxWords", 0x3FFFFFFFFFFFFFFF},
                               {"TotalRxWords", 0x4000000000000000}};
    local.ports[6].diagStatus = "Failed";  // with no transceiver
    local.ports[8].topologyType = "E";
    local.ports[9].portId = "02ff00";
    local.links[0].remoteAgentAddress = "10.1.2.255";
    local.links[0].remoteUnitType = "Switches";
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
    local.nameServer[0].portType = "NVMe";
    local.nameServer[0].symNodeName = "";
    local.nameServer[1].portType = "B";
    local.nameServer[1].fc4Types.replace(0, 6, "A00f91");

    fabric.zones.insert(fabric.zones.begin(), {"EmptyToo", "Soft", {}});
    fabric.zones.push_back({"Last", "None", {{"0a", "Unknown"}}});
    fabric.zones.push_back({"EmptyAtTheEnd", "Soft", {}});
    fabric.aliases.insert(fabric.aliases.begin() + 1, {"EmptyAlias", "Soft", {}});
    fabric.aliases[0].members[0].type = "Other";
    return fabric;
}

sim::Fabric BareFabric() {
    sim::Fabric fabric = StillFabric();
    fabric.zones.clear();
    fabric.aliases.clear();
    for (sim::Switch& unit : fabric.switches) {
        unit.powerSupplies.clear();
        unit.fans.clear();
        unit.blades.clear();
        unit.ports.clear();
        unit.log.clear();
        unit.links.clear();
        unit.nameServer.clear();
    }
    return fabric;
}

std::string ReviewedText(const std::string& file, const std::string& current) {
    if (std::getenv("SNMPMAIN_WRITE_REVIEWED") != nullptr) {
        std::ofstream(PathOf(file)) << current;
    }
    return ReadFile(PathOf(file));
}

Values Reviewed(const std::string& name, const std::string& below) {
    static std::map<std::string, Values> walks;
    if (!walks.contains(name)) {
        walks[name] = ParseValues(ReadFile(PathOf(name + ".txt")));
    }
    return Below(walks[name], below);
}

testing::AssertionResult ReadsAsReviewed(const Stack& stack, const std::string& name) {
    Values walked;
    std::string text;
    for (const std::string& subtree : {kFe, kFcmgmt, kVendorMib}) {
        for (const Value& value : stack.BulkWalk(subtree)) {
            walked.push_back(value);
            text += value.first + " = " + value.second + "\n";
        }
    }
    return Same(walked, ParseValues(ReviewedText(name + ".txt", text)));
}

}  // namespace e2e
