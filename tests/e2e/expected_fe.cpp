// What a manager should read of a fabric in FIBRE-CHANNEL-FE-MIB and the vendor's MIB, where units
// are modules with the numbers of their places, and ports have numbers from 1.
#include <algorithm>

#include "tests/e2e/expected_values.h"

namespace e2e {
namespace {

const Numbers kOperWords = {{"Online", 1}, {"Offline", 2}, {"Diagnostics", 3}};
const Numbers kAdminWords = {{"Online", 1}, {"Diagnostics", 3}};
const Numbers kModeWords = {{"FL", 3}, {"F", 2}};

std::string Gauge(std::size_t number) {
    return "Gauge32: " + std::to_string(number);
}

// Takes the columns of a row from column 1 on; an empty text is a column that does not answer.
using Add = std::function<void(const std::string& table, const Words& columns)>;

void AddPort(const sim::Switch& unit, const sim::Port& port, const Add& add) {
    const std::string admin = Integer(Containing(port.adminState, kAdminWords, 2));
    const std::string oper = Integer(Containing(port.operState, kOperWords, 4));
    const std::string one = Integer(1), two = Integer(2), classes = Hex({0x0D});
    const auto count = [&](const char* name) {  // the low 32 bits
        const auto found = port.counters.find(name);
        return "Counter32: " +
               std::to_string(found == port.counters.end() ? 0 : found->second & 0xFFFFFFFF);
    };
    add(kFe + ".1.5.1",
        {"", Hex(port.wwn, 8), Integer(32), Integer(9), Integer(port.maxCredit), Integer(2112),
         Gauge(unit.rATov), Gauge(unit.eDTov), classes, two, one, one, one, Gauge(unit.eDTov)});
    add(kFe + ".2.1.1",
        {Hex(port.portId, 3), "", Integer(Containing(port.runningType, kModeWords, 1))});
    add(kFe + ".2.2.1", {admin, oper, "", Gauge(unit.rTTov)});
    add(kFe + ".3.1.1", {count("LinkFailures"), count("LossOfSyncs"), "", count("PrimSeqErrors"),
                         count("DecodeErrors"), count("InvalidCRCs"), "", count("InvDestAddr"),
                         count("RxLinkResets"), count("TxLinkResets"), count("RxOfflineSeq"),
                         count("TxOfflineSeq")});
    add(kFe + ".4.2.1",
        {count("Class2FramesIn"), count("Class2FramesOut"), count("Class2WordsIn"),
         count("Class2WordsOut"), "Counter32: 0", count("FBusys"), count("FRejects")});
    add(kFe + ".4.3.1", {count("Class3FramesIn"), count("Class3FramesOut"), count("Class3WordsIn"),
                         count("Class3WordsOut"), count("Class3Tosses")});
    add(kFe + ".5.1.1",
        {Integer(32), Integer(9), Integer(port.topCredit), Integer(port.minCredit), Integer(2112),
         Integer(128), classes, two, one, one, one, Gauge(unit.eDTovMax), Gauge(unit.eDTovMin)});
    add(kVendorMib + ".10.1.1", {"", "", admin, oper});
}

}  // namespace

Values ExpectedFe(const sim::Fabric& fabric, const std::string& below) {
    std::map<std::vector<unsigned long>, Value> all;  // in the order of a walk
    std::string index = ".0";
    const Add add = [&](const std::string& table, const Words& columns) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const std::string oid = table + "." + std::to_string(i + 1) + index;
            if (!columns[i].empty() && oid.starts_with(below + ".")) {
                all[SubIds(oid)] = {oid, columns[i]};
            }
        }
    };
    const Values classes = Expected(fabric, kNameServer + ".6");  // the octets are the same
    const std::map<std::string, std::string> classesOf(classes.begin(), classes.end());
    const auto principal = std::ranges::find_if(fabric.switches, &sim::Switch::principal);
    add(kFe + ".1",
        {Hex(principal->wwn, 8), Hex(fabric.Find(0)->wwn, 8), Gauge(fabric.switches.size())});
    std::size_t modules = 0;
    for (const sim::Switch* unit : UnitsInOrder(fabric)) {
        const std::string module = index = "." + std::to_string(++modules);
        add(kFe + ".1.4.1", {"", Text(unit->sysDescr), "OID: ." + unit->sysObjectId,
                             Integer(Containing(unit->operState, kOperWords, 4)), "",
                             Gauge(unit->ports.size()), Hex(unit->wwn, 8)});
        for (std::size_t p = 0; p < unit->ports.size(); ++p) {
            const sim::Port& port = unit->ports[p];
            const std::string place = index = module + "." + std::to_string(p + 1);
            AddPort(*unit, port, add);
            // Devices whose port ids begin as an F port's, as many as the port has links.
            const bool isF = port.topologyType.find('F') != std::string::npos;
            const auto links = isF ? std::ranges::count(unit->links, p, &sim::Link::localPort) : 0;
            int logins = 0;
            for (const sim::NsEntry& entry : unit->nameServer) {
                if (logins < links && entry.portId.starts_with(port.portId.substr(0, 4))) {
                    const std::string& octet =
                        classesOf.at(kNameServer + ".6" + Index(unit->wwn, 16) +
                                     Index(entry.portWwn, 8) + Index(entry.portId, 3));
                    index = place + "." + std::to_string(++logins);
                    add(kLogins, {"", "", "", "", octet, Integer(2), Integer(1), Integer(1),
                                  Integer(1), Hex(entry.portWwn, 8), "", Integer(2)});
                }
            }
        }
    }
    Values values;
    for (const auto& [numbers, value] : all) {
        values.push_back(value);
    }
    return values;
}

}  // namespace e2e
