#include "src/conf/conf_keys.h"

#include <algorithm>
#include <string_view>

#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/worked_with.h"

namespace snmpmain {
namespace {

// A trap destination takes three rows: its address, whether it is enabled, and its port.
constexpr decltype(ConfKeyTable) kInitialTable = {{
    {"master", "on", "", kString},
    {"proc", "snmpmain 10 1", "", kString},
    {"V3Enable", "", "Get.Config.Snmp.V3SecurityEnable", kString},
    {"rocommunity", "", "Get.Config.Snmp.ReadComm", kString},
    {"rwcommunity", "", "Get.Config.Snmp.WriteComm", kString},
    {"trapcommunity", "", "Get.Config.Snmp.TrapComm", kString},
    {"authtrapenable", "", "Get.Config.Snmp.TrapAuth", kString},
    {"informsink", "", "Get.Config.Snmp.TrapAddr", kIpAddress},
    {"", "", "Get.Config.Snmp.TrapEnable", kString},
    {"", "", "Get.Config.Snmp.TrapPort", kString},
    {"informsink", "", "Get.Config.Snmp.TrapAddr1", kIpAddress},
    {"", "", "Get.Config.Snmp.TrapEnable1", kString},
    {"", "", "Get.Config.Snmp.TrapPort1", kString},
    {"informsink", "", "Get.Config.Snmp.TrapAddr2", kIpAddress},
    {"", "", "Get.Config.Snmp.TrapEnable2", kString},
    {"", "", "Get.Config.Snmp.TrapPort2", kString},
    {"informsink", "", "Get.Config.Snmp.TrapAddr3", kIpAddress},
    {"", "", "Get.Config.Snmp.TrapEnable3", kString},
    {"", "", "Get.Config.Snmp.TrapPort3", kString},
    {"informsink", "", "Get.Config.Snmp.TrapAddr4", kIpAddress},
    {"", "", "Get.Config.Snmp.TrapEnable4", kString},
    {"", "", "Get.Config.Snmp.TrapPort4", kString},
    {"psyslocation", "", "Get.Config.Snmp.Location", kString},
    {"psyscontact", "", "Get.Config.Snmp.Contact", kString},
    {"psysname", "", "Get.Config.Switch.SymName", kString},
    {"sysdescr", "", "Get.Config.Snmp.SysDescr", kString},
    {"sysobjectid", "", "Get.Config.Snmp.SysObjectID", kString},
    {"engineID", "", "Get.Oper.Mfg.UUID", kString},
    {"sysServices", "2", "", kString},
    {"*endv2*", "", "", kString},
    {"rouser", "", "Get.Config.Snmp.ROUser", kString},
    {"rwuser", "", "Get.Config.Snmp.RWUser", kString},
    {"roAuthType", "", "Get.Config.Snmp.ROAuthType", kString},
    {"roAuthPhrase", "", "Get.Config.Snmp.ROAuthPhrase", kString},
    {"roPrivType", "", "Get.Config.Snmp.ROPrivType", kString},
    {"roPrivPhrase", "", "Get.Config.Snmp.ROPrivPhrase", kString},
    {"rwAuthType", "", "Get.Config.Snmp.RWAuthType", kString},
    {"rwAuthPhrase", "", "Get.Config.Snmp.RWAuthPhrase", kString},
    {"rwPrivType", "", "Get.Config.Snmp.RWPrivType", kString},
    {"rwPrivPhrase", "", "Get.Config.Snmp.RWPrivPhrase", kString},
    {"*endv3*", "", "", kString},
}};

struct Reading {
    std::size_t row = 0;
    bool failed = false;
};

Reading reading;

// Returns 0, or -1 when a value without which nobody gets in was never told.
int ReadRow(ConfKey& row) {
    constexpr std::string_view kWayIn[] = {"V3Enable", "rocommunity", "rwcommunity"};
    ReplyText reply;
    const Answer answer = AskSwitch(0, row.command, reply, row.type);
    NoteWorkedWith(Worker::kSnmpdConf, row.command, row.type, answer, reply);
    const Outcome outcome = answer.outcome;
    if (outcome == Outcome::kAnswered) {
        CopyText(row.value, sizeof(row.value), reply.data());
    }
    const bool unknown = outcome == Outcome::kNoAnswer && row.value[0] == '\0' &&
                         std::ranges::find(kWayIn, row.key) != std::end(kWayIn);
    return unknown ? -1 : 0;
}

}  // namespace

decltype(ConfKeyTable) ConfKeyTable = kInitialTable;

void BeginConfSettings() {
    reading = {};
}

Progress StepConfSettings() {
    while (reading.row < ConfKeyTable.size() && ConfKeyTable[reading.row].command[0] == '\0') {
        ++reading.row;
    }
    if (reading.row == ConfKeyTable.size()) {
        return reading.failed ? Progress::kFailed : Progress::kDone;
    }
    if (ReadRow(ConfKeyTable[reading.row++]) != 0) {
        reading.failed = true;
    }
    return Progress::kMore;
}

const char* V3Value(const char* key) {
    const auto row = std::ranges::find(V3Section(), std::string_view(key), &ConfKey::key);
    return row == V3Section().end() ? "" : row->value;
}

void ResetConfKeyTable() {
    ConfKeyTable = kInitialTable;
}

}  // namespace snmpmain
