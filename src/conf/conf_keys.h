// The switch's settings that snmpd's configuration file is made of. They hold community strings and
// pass phrases. Main thread only.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "src/base/progress.h"
#include "src/link/reply_parser.h"

namespace snmpmain {

struct TrapSinkSettings {
    std::string address, enabled, port;
};

struct V3UserSettings {
    std::string name, authType, authPhrase, privType, privPhrase;
};

// Each is what the switch replied last, as long as kMostConfText at most; what has a value here
// is asked of nobody.
struct ConfSettings {
    std::string master = "on";
    std::string proc = "snmpmain 10 1";
    std::string v3Enabled, readCommunity, writeCommunity, trapCommunity, authTraps;
    TrapSinkSettings sinks[5];
    std::string location, contact, name, description, objectId, engineId;
    std::string services = "2";
    V3UserSettings readOnly, readWrite;
};

constexpr std::size_t kMostConfText = 127;  // characters

const ConfSettings& GetConfSettings();

// A row of ConfKeyTable: how a setting is found and asked for.
struct ConfKey {
    const char* key;  // snmpd's keyword, by which a line of the daemon's file is found; or ""
    std::string* value;
    const char* command = "";  // asks the local switch for it; "" for what never changes
    ConversionType type = kString;
};

// In the order in which they are asked for, and in which keys are looked for in a line.
std::span<const ConfKey> GetConfKeys();

// Asks the local switch for every value, in steps of one each; one that is unavailable stays as it
// is. kFailed when the switch left the way in (communities, or whether SNMPv3 takes their place)
// unanswered and never told it before: a file written now would let nobody in.
void BeginConfSettings();
Progress StepConfSettings();

}  // namespace snmpmain
