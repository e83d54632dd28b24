#include "src/conf/conf_file.h"

#include <string_view>

#include "src/conf/conf_keys.h"
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

std::string Line(const ConfKey& row, std::string_view value) {
    return std::string(row.key) + " " + Printable(value) + "\n";
}

bool Contains(std::string_view text, const char* word) {
    return text.find(word) != text.npos;
}

std::string PlainLine(const ConfKey& row) {
    return IsLeftOut(row.value) ? "" : Line(row, WrittenValue(row.value));
}

std::string InformSinkLine(std::span<const ConfKey> rows, std::string_view community) {
    const ConfKey& address = rows[0];
    const ConfKey& enabled = rows[1];
    const ConfKey& port = rows[2];
    if (enabled.value != kTrue) {
        return "";
    }
    return Line(address,
                std::string(address.value) + " " + std::string(community) + " " + port.value);
}

struct V3User {
    const char* directive;  // and key of the name
    const char* authType;
    const char* authPhrase;
    const char* privType;
    const char* privPhrase;
};
constexpr V3User kV3Users[] = {
    {"rouser", "roAuthType", "roAuthPhrase", "roPrivType", "roPrivPhrase"},
    {"rwuser", "rwAuthType", "rwAuthPhrase", "rwPrivType", "rwPrivPhrase"},
};

// The type and the phrase between double quotes, or nothing for type "None".
std::string Credential(const char* typeKey, const char* phraseKey) {
    const std::string type = V3Value(typeKey);
    return type == kNone ? "" : " " + type + " \"" + V3Value(phraseKey) + "\"";
}

std::string V3UserLines(const V3User& user) {
    const std::string name = V3Value(user.directive);
    const std::string authentication = Credential(user.authType, user.authPhrase);
    const bool isPrivate = V3Value(user.privType) == std::string_view("DES");
    const char* level = authentication.empty() ? "noauth" : isPrivate ? "priv" : "auth";
    const std::string privacy =
        authentication.empty() ? "" : Credential(user.privType, user.privPhrase);
    return Printable(std::string(user.directive) + " " + name + " " + level) + "\n" +
           Printable("createUser " + name + authentication + privacy) + "\n";
}

}  // namespace

bool IsLeftOut(const char* value) {
    const bool isNone = Contains(value, "0.0.0.0") || Contains(value, "255.255.255.255");
    return isNone && WrittenValue(value) == Printable(value);
}

std::string WrittenValue(const char* value) {
    return Contains(value, "True") ? "1" : Contains(value, "False") ? "2" : Printable(value);
}

std::string V2Text(bool& v3Enabled) {
    const std::span<const ConfKey> rows = V2Section();
    std::string text;
    std::string_view community;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const ConfKey& row = rows[i];
        const std::string_view key = row.key;
        if (key == "V3Enable") {
            v3Enabled = row.value == kTrue;
            i += v3Enabled ? 2 : 0;  // without the two communities
        } else if (key == "engineID") {
            // A blade is told from its neighbours by its own identifier.
            text += IsBladeType() ? Line(row, std::string("177 ") + row.value) : "";
        } else if (key == "informsink") {
            text += InformSinkLine(rows.subspan(i, 3), community);
            i += 2;
        } else if (key == "trapcommunity") {
            community = row.value;
            text += Line(row, row.value);
        } else {
            text += PlainLine(row);
        }
    }
    return text;
}

std::string V3Text() {
    std::string text;
    for (const V3User& user : kV3Users) {
        text += V3UserLines(user);
    }
    return text;
}

}  // namespace snmpmain
