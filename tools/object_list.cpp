// Prints docs/objects.md: every object that the agent serves, from the tables that it serves them
// with.
#include <cstdio>
#include <cstring>
#include <string>

#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/norbex/norbex.h"

namespace snmpmain {
namespace {

const char* NameOfType(std::uint8_t type) {
    switch (type) {
        case ASN_INTEGER:
            return "INTEGER";
        case ASN_OCTET_STR:
            return "OCTET STRING";
        case ASN_OBJECT_ID:
            return "OBJECT IDENTIFIER";
        case ASN_IPADDRESS:
            return "IpAddress";
        case ASN_COUNTER:
            return "Counter32";
        case ASN_GAUGE:
            return "Gauge32";
        default:
            return "TimeTicks";
    }
}

std::string Octets(const ValueSource& source) {
    std::string text = "octets";
    for (std::uint32_t i = 0; i < source.number; ++i) {
        char digits[8];
        std::snprintf(digits, sizeof(digits), " %02X", static_cast<unsigned char>(source.text[i]));
        text += digits;
    }
    return text;
}

std::string Origin(const ValueSource& source) {
    if (source.read == nullptr) {
        return "never answers";
    }
    if (source.command != nullptr) {
        return "`" + std::string(source.command) + "`";
    }
    if (source.read == ReadConstant) {
        return "always " + std::to_string(source.number);
    }
    if (source.read == ReadConstantText) {
        return "always \"" + std::string(source.text) + "\"";
    }
    if (source.read == ReadConstantOctets) {
        return "always " + Octets(source);
    }
    std::string text = source.origin != nullptr ? source.origin : "";
    const char* separator = source.origin != nullptr ? "; " : "";
    for (const char* command : source.commands) {
        text += std::string(separator) + "`" + command + "`";
        separator = ", ";
    }
    return text.empty() ? "index" : text;
}

const char* NameOfAccess(const Column& column) {
    switch (column.set.access) {
        case Access::kReadOnly:
            return "read-only";
        case Access::kReadCreate:
            return "read-create";
        default:
            return column.source.read != nullptr ? "read-write" : "read-write, refused";
    }
}

void Print(const MibModule& module) {
    std::string prefix;
    for (const oid number : module.prefix) {
        prefix += "." + std::to_string(number);
    }
    std::printf("\n## %s, %s\n\n", module.name, prefix.c_str() + 1);
    std::printf("| below | object | type | access | value |\n|---|---|---|---|---|\n");
    for (const auto& [table, handler] : module.tables) {
        std::string suffix;
        for (std::size_t i = 0; i < LengthOf(table.entry); ++i) {
            suffix += std::to_string(table.entry[i]) + ".";
        }
        for (const Column& column : table.columns) {
            std::printf("| %s%d | %s | %s | %s | %s |\n", suffix.c_str(), column.suffix,
                        column.object != nullptr ? column.object : "-", NameOfType(column.type),
                        NameOfAccess(column), Origin(column.source).c_str());
        }
    }
}

}  // namespace
}  // namespace snmpmain

int main() {
    std::printf(
        "# Objects served\n\n"
        "Made by the program `object_list` from the agent's own tables; `script/test` checks that "
        "it\n"
        "is up to date.\n\n"
        "The value's column gives the command that is sent to the switch, with places for a\n"
        "blade's and a port's number or for a key. Other values are constants, come from the\n"
        "instance's index, or are made of several replies or of what the agent keeps.\n");
    snmpmain::Print(snmpmain::fcmgmt::kModule);
    snmpmain::Print(snmpmain::femgmt::kModule);
    snmpmain::Print(snmpmain::norbex::kModule);
}
