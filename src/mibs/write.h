// Writing: what the objects that managers may set have in common. The library calls a write method
// in phases: RESERVE1 checks the value, ACTION checks it again, finds the instance and sends the
// setting to its switch. All other phases have nothing to do: what was sent stays in force, also
// when a later variable of the same request fails. Refusals are traced. Main thread only.
#pragma once

#include <cstdint>
#include <span>

#include "src/link/config_command.h"
#include "src/mibs/column.h"
#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// What a write method is called with.
struct WriteRequest {
    int action;             // phase
    const u_char* value;    // as the library holds it: an INTEGER is a long
    u_char type;            // ASN.1 type of the value
    std::size_t length;     // octets of the value
    const u_char* current;  // what the read handler returned before, or null
    std::span<const oid> name;
};

// Finds the instance that an OID names. Returns 0 or -1.
using InstanceFinder = int (*)(std::span<const oid> name, Instance& instance);
int FindWrittenLocalSwitch(std::span<const oid> name, Instance& instance);  // whatever the OID
int FindWrittenUnit(std::span<const oid> name, Instance& instance);  // its last 16 sub-identifiers
int FindWrittenPort(std::span<const oid> name, Instance& instance);  // unit id, number + 1
// Unit + 1, port + 1, both modulo 65536.
int FindWrittenModulePort(std::span<const oid> name, Instance& instance);

// An object whose value becomes a setting of a switch.
struct WrittenObject {
    const char* name;  // in messages
    InstanceFinder find = nullptr;
    ConfigMode mode = ConfigMode::kSwitchConfiguration;
    int (*send)(std::uint32_t domain, const char* setting, ConfigMode mode) = SendConfigCommand;

    // A string of 1 to `longest` printable characters: a setting with a place for it, behind those
    // of the instance's numbers.
    std::size_t longest = 0;
    const char* textSetting = nullptr;

    // An INTEGER: one setting per value; other values are refused.
    struct Choice {
        std::int32_t value;
        const char* setting;
    };
    std::span<const Choice> choices = {};

    // How the current value is read: the column that has the object's name.
    const MibValue* buffer = nullptr;  // of the module
    const ServedTable* table = nullptr;

    // Messages: how they begin, the name in those about the instance and the sending where that is
    // another's ("": there are none), and what they say when the sending fails.
    const char* messageStart = "write to ";
    const char* laterName = nullptr;
    const char* sendFailure = "SNMP_ERR_COMMITFAILED";
};

// Each serves one phase for one object and returns an SNMP error status.
int WriteText(const WrittenObject& object, const WriteRequest& request);
int WriteNumber(const WrittenObject& object, const WriteRequest& request);

// Checks the value in RESERVE1, and leaves it at that: what is accepted changes nothing.
int AcceptText(const WrittenObject& object, const WriteRequest& request);
int AcceptNumber(const WrittenObject& object, const WriteRequest& request);

// The write method of an object.
template <const WrittenObject& kObject>
int Write(int action, u_char* value, u_char type, std::size_t length, u_char* current, oid* name,
          std::size_t nameLength) {
    return (kObject.textSetting != nullptr ? WriteText : WriteNumber)(
        kObject, {action, value, type, length, current, {name, nameLength}});
}

// The write method of an object that a value is accepted for and nothing more.
template <const WrittenObject& kObject>
int Accept(int action, u_char* value, u_char type, std::size_t length, u_char* current, oid* name,
           std::size_t nameLength) {
    return (kObject.longest != 0 ? AcceptText : AcceptNumber)(
        kObject, {action, value, type, length, current, {name, nameLength}});
}

// Whether a phase is one that does something.
constexpr bool IsWritingPhase(int action) {
    return action == RESERVE1 || action == ACTION;
}

// Traces "write to OBJECT: STATUS" with the status by its name, and returns it.
int Refuse(const WrittenObject& object, int status);

// Check type and length of an INTEGER or a Gauge32 and take its value: 4 octets, or the library's
// long if the number in it has 32 bits. Return a status, for which there is no message yet.
int TakeInteger(const WriteRequest& request, std::int32_t& number);
int TakeGauge(const WriteRequest& request, std::uint32_t& number);

// The current value of the instance, or null. What the handler returned may no longer be there: all
// instances share the module's buffer, and between the phases of a request with several variables,
// and those of another manager, the handlers of others have answered. It is read anew then.
const void* CurrentValue(const WrittenObject& object, const WriteRequest& request,
                         const Instance& instance, MibValue& again);

}  // namespace snmpmain
