// What managers may set an object to, and the setting of a switch that it becomes. A column's last
// part, made by one of the functions below.
#pragma once

#include <cstdint>
#include <span>

#include "src/link/config_command.h"
#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// How many places of a kind a command may have.
constexpr std::size_t kMostNumbers = 2;
constexpr std::size_t kMostTexts = 3;

// A command or setting as it stands in a column, with no more places than an instance can fill.
consteval const char* Checked(const char* command) {
    std::size_t numbers = 0;
    std::size_t texts = 0;
    for (const char* at = command; at != nullptr && *at != '\0'; ++at) {
        if (*at == '%') {
            ++(*++at == 's' ? texts : numbers);
        }
    }
    if (numbers > kMostNumbers || texts > kMostTexts) {
        throw "a command has too many places";
    }
    return command;
}

// A SET of what is read-create may make the instance: nothing need be there before.
enum class Access : std::uint8_t { kReadOnly, kReadWrite, kReadCreate };

// A value that an INTEGER may be set to. Without a setting it is accepted and changes nothing.
struct Choice {
    std::int32_t value;
    const char* setting = nullptr;
};

// Sends a setting to a switch. Returns 0 or -1.
using SettingSender = int (*)(std::uint32_t domain, const char* setting);

template <ConfigMode kMode>
int SendTo(std::uint32_t domain, const char* setting) {
    return SendConfigCommand(domain, setting, kMode);
}

struct Setting {
    Access access = Access::kReadOnly;
    WriteMethod* method = nullptr;  // null: what follows says it all

    std::size_t longest = 0;  // a string of 1 to so many printable characters, or
    std::span<const Choice> choices = {};

    // With places for the instance's numbers, then for the string; null: accepted, changes nothing.
    const char* format = nullptr;
    SettingSender send = nullptr;

    // How messages about a refusal begin, and the object's name in those about the instance and the
    // sending where that is another's ("": there are none).
    const char* messageStart = "write to ";
    const char* laterName = nullptr;
};

// A string, or one of several numbers, that becomes a setting of the switch.
consteval Setting Text(std::size_t longest, const char* format = nullptr,
                       SettingSender send = SendTo<ConfigMode::kSwitchConfiguration>) {
    return {
        .access = Access::kReadWrite, .longest = longest, .format = Checked(format), .send = send};
}

consteval Setting OneOf(std::span<const Choice> choices,
                        SettingSender send = SendTo<ConfigMode::kSwitchConfiguration>) {
    for (const Choice& choice : choices) {
        Checked(choice.setting);
    }
    return {.access = Access::kReadWrite, .choices = choices, .send = send};
}

// What has steps of its own.
consteval Setting WrittenBy(WriteMethod* method, Access access = Access::kReadWrite) {
    return {.access = access, .method = method};
}

// Managers are told that the object cannot be set: its write method is never handed out.
consteval Setting NotOffered(Setting setting) {
    setting.access = Access::kReadOnly;
    return setting;
}

consteval Setting MessagesStart(const char* start, Setting setting) {
    setting.messageStart = start;
    return setting;
}

consteval Setting ReportedLaterAs(const char* laterName, Setting setting) {
    setting.laterName = laterName;
    return setting;
}

}  // namespace snmpmain
