#include "src/conf/conf_file.h"

#include "src/base/main_thread.h"
#include "src/link/switch_info.h"

namespace snmpmain {
namespace {

constexpr std::string_view kTrue = "True";
constexpr std::string_view kNone = "None";

std::string Printable(std::string_view setting) {
    std::string text(setting);
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            c = ' ';
        }
    }
    return text;
}

std::string Line(const char* key, std::string_view value) {
    return std::string(key) + " " + Printable(value) + "\n";
}

std::string PlainLine(const char* key, std::string_view value) {
    return IsLeftOut(value) ? "" : Line(key, WrittenValue(value));
}

bool Contains(std::string_view text, const char* word) {
    return text.find(word) != text.npos;
}

// The type and the phrase between double quotes, or nothing for type "None".
std::string Credential(const std::string& type, const std::string& phrase) {
    return type == kNone ? "" : " " + type + " \"" + phrase + "\"";
}

std::string V3UserLines(const char* directive, const V3UserSettings& user) {
    const std::string authentication = Credential(user.authType, user.authPhrase);
    const char* level = authentication.empty()   ? "noauth"
                        : user.privType == "DES" ? "priv"
                                                 : "auth";
    const std::string privacy =
        authentication.empty() ? "" : Credential(user.privType, user.privPhrase);
    return Line(directive, user.name + " " + level) +
           Line("createUser", user.name + authentication + privacy);
}

}  // namespace

std::string ConfText(const ConfSettings& settings) {
    AssertMainThread();
    std::string text = PlainLine("master", settings.master) + PlainLine("proc", settings.proc);
    if (!IsV3Enabled(settings)) {
        text += PlainLine("rocommunity", settings.readCommunity) +
                PlainLine("rwcommunity", settings.writeCommunity);
    }
    text += Line("trapcommunity", settings.trapCommunity) +
            PlainLine("authtrapenable", settings.authTraps);
    for (const TrapSinkSettings& sink : settings.sinks) {
        if (sink.enabled == kTrue) {
            text +=
                Line("informsink", sink.address + " " + settings.trapCommunity + " " + sink.port);
        }
    }
    text += PlainLine("psyslocation", settings.location) +
            PlainLine("psyscontact", settings.contact) + PlainLine("psysname", settings.name) +
            PlainLine("sysdescr", settings.description) +
            PlainLine("sysobjectid", settings.objectId);
    if (IsBladeType()) {  // told from its neighbours by its own identifier
        text += Line("engineID", "177 " + settings.engineId);
    }
    text += PlainLine("sysServices", settings.services);
    if (IsV3Enabled(settings)) {
        text +=
            V3UserLines("rouser", settings.readOnly) + V3UserLines("rwuser", settings.readWrite);
    }
    return text;
}

bool IsV3Enabled(const ConfSettings& settings) {
    return settings.v3Enabled == kTrue;
}

bool IsLeftOut(std::string_view value) {
    const bool isNone = Contains(value, "0.0.0.0") || Contains(value, "255.255.255.255");
    return isNone && WrittenValue(value) == Printable(value);
}

std::string WrittenValue(std::string_view value) {
    return Contains(value, "True") ? "1" : Contains(value, "False") ? "2" : Printable(value);
}

}  // namespace snmpmain
