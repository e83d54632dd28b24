#include "src/conf/conf_keys.h"

#include <algorithm>

#include "src/base/main_thread.h"
#include "src/link/link.h"
#include "src/link/worked_with.h"

namespace snmpmain {
namespace {

ConfSettings settings;

constexpr ConfKey ConfKeyTable[] = {
    {"master", &settings.master},
    {"proc", &settings.proc},
    {"V3Enable", &settings.v3Enabled, "Get.Config.Snmp.V3SecurityEnable"},
    {"rocommunity", &settings.readCommunity, "Get.Config.Snmp.ReadComm"},
    {"rwcommunity", &settings.writeCommunity, "Get.Config.Snmp.WriteComm"},
    {"trapcommunity", &settings.trapCommunity, "Get.Config.Snmp.TrapComm"},
    {"authtrapenable", &settings.authTraps, "Get.Config.Snmp.TrapAuth"},
    {"informsink", &settings.sinks[0].address, "Get.Config.Snmp.TrapAddr", kIpAddress},
    {"", &settings.sinks[0].enabled, "Get.Config.Snmp.TrapEnable"},
    {"", &settings.sinks[0].port, "Get.Config.Snmp.TrapPort"},
    {"informsink", &settings.sinks[1].address, "Get.Config.Snmp.TrapAddr1", kIpAddress},
    {"", &settings.sinks[1].enabled, "Get.Config.Snmp.TrapEnable1"},
    {"", &settings.sinks[1].port, "Get.Config.Snmp.TrapPort1"},
    {"informsink", &settings.sinks[2].address, "Get.Config.Snmp.TrapAddr2", kIpAddress},
    {"", &settings.sinks[2].enabled, "Get.Config.Snmp.TrapEnable2"},
    {"", &settings.sinks[2].port, "Get.Config.Snmp.TrapPort2"},
    {"informsink", &settings.sinks[3].address, "Get.Config.Snmp.TrapAddr3", kIpAddress},
    {"", &settings.sinks[3].enabled, "Get.Config.Snmp.TrapEnable3"},
    {"", &settings.sinks[3].port, "Get.Config.Snmp.TrapPort3"},
    {"informsink", &settings.sinks[4].address, "Get.Config.Snmp.TrapAddr4", kIpAddress},
    {"", &settings.sinks[4].enabled, "Get.Config.Snmp.TrapEnable4"},
    {"", &settings.sinks[4].port, "Get.Config.Snmp.TrapPort4"},
    {"psyslocation", &settings.location, "Get.Config.Snmp.Location"},
    {"psyscontact", &settings.contact, "Get.Config.Snmp.Contact"},
    {"psysname", &settings.name, "Get.Config.Switch.SymName"},
    {"sysdescr", &settings.description, "Get.Config.Snmp.SysDescr"},
    {"sysobjectid", &settings.objectId, "Get.Config.Snmp.SysObjectID"},
    {"engineID", &settings.engineId, "Get.Oper.Mfg.UUID"},
    {"sysServices", &settings.services},
    {"", &settings.readOnly.name, "Get.Config.Snmp.ROUser"},
    {"", &settings.readWrite.name, "Get.Config.Snmp.RWUser"},
    {"", &settings.readOnly.authType, "Get.Config.Snmp.ROAuthType"},
    {"", &settings.readOnly.authPhrase, "Get.Config.Snmp.ROAuthPhrase"},
    {"", &settings.readOnly.privType, "Get.Config.Snmp.ROPrivType"},
    {"", &settings.readOnly.privPhrase, "Get.Config.Snmp.ROPrivPhrase"},
    {"", &settings.readWrite.authType, "Get.Config.Snmp.RWAuthType"},
    {"", &settings.readWrite.authPhrase, "Get.Config.Snmp.RWAuthPhrase"},
    {"", &settings.readWrite.privType, "Get.Config.Snmp.RWPrivType"},
    {"", &settings.readWrite.privPhrase, "Get.Config.Snmp.RWPrivPhrase"},
};

// Without one of these nobody gets in.
constexpr const std::string* kWayIn[] = {&settings.v3Enabled, &settings.readCommunity,
                                         &settings.writeCommunity};

struct Reading {
    std::size_t row = 0;
    bool failed = false;
};

Reading reading;

// Returns 0, or -1 when a value without which nobody gets in was never told.
int ReadRow(const ConfKey& row) {
    ReplyText reply;
    const Answer answer = AskSwitch(0, row.command, reply, row.type);
    NoteWorkedWith(Worker::kSnmpdConf, row.command, row.type, answer, reply);
    if (answer.outcome == Outcome::kAnswered) {
        *row.value = std::string(reply.data()).substr(0, kMostConfText);
    }
    const bool unknown = answer.outcome == Outcome::kNoAnswer && row.value->empty() &&
                         std::ranges::find(kWayIn, row.value) != std::end(kWayIn);
    return unknown ? -1 : 0;
}

}  // namespace

const ConfSettings& GetConfSettings() {
    return settings;
}

std::span<const ConfKey> GetConfKeys() {
    return ConfKeyTable;
}

void BeginConfSettings() {
    AssertMainThread();
    reading = {};
}

Progress StepConfSettings() {
    AssertMainThread();
    while (reading.row < std::size(ConfKeyTable) && ConfKeyTable[reading.row].command[0] == '\0') {
        ++reading.row;
    }
    if (reading.row == std::size(ConfKeyTable)) {
        return reading.failed ? Progress::kFailed : Progress::kDone;
    }
    if (ReadRow(ConfKeyTable[reading.row++]) != 0) {
        reading.failed = true;
    }
    return Progress::kMore;
}

}  // namespace snmpmain
