// Writing: what the objects that managers may set have in common. The library calls a write method
// in phases: RESERVE1 checks the value, ACTION checks it again, finds the instance and sends the
// setting to its switch. All other phases have nothing to do: what was sent stays in force, also
// when a later variable of the same request fails. Refusals are traced. Main thread only.
#pragma once

#include <cstdint>
#include <span>

#include "src/mibs/table.h"
#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// What a write method is called with.
struct WriteRequest {
    int action;             // phase
    const u_char* value;    // as the library holds it: an INTEGER is a long
    u_char type;            // ASN.1 type of the value
    std::size_t length;     // octets of the value
    const u_char* current;  // what the read handler returned before, or null
    std::span<oid> name;
};

// Serves one phase for an object of the table that its column says all about. Returns an SNMP error
// status.
int WriteColumn(const ServedTable& table, const WriteRequest& request);

// The write method of a table's columns.
template <const ServedTable& kTable>
int Write(int action, u_char* value, u_char type, std::size_t length, u_char* current, oid* name,
          std::size_t nameLength) {
    return WriteColumn(kTable, {action, value, type, length, current, {name, nameLength}});
}

// Whether a phase is one that does something.
constexpr bool IsWritingPhase(int action) {
    return action == RESERVE1 || action == ACTION;
}

// Traces "write to OBJECT: STATUS" with the status by its name, and returns it.
int Refuse(const char* object, int status);

// Checks that a value is a string of 1 to `longest` printable characters. Returns a status; a
// refusal is traced.
int CheckText(const char* object, std::size_t longest, const WriteRequest& request);

// Check type and length of an INTEGER or a Gauge32 and take its value: 4 octets, or the library's
// long if the number in it has 32 bits. Return a status, for which there is no message yet.
int TakeInteger(const WriteRequest& request, std::int32_t& number);
int TakeGauge(const WriteRequest& request, std::uint32_t& number);

// The instance that a request names, found as for reading, but not with the SNMP library's own
// functions: nothing in those tables becomes a setting. Returns 0 or -1.
int FindInstance(const ServedTable& table, const WriteRequest& request, Instance& instance);

// The column of the object that a request names.
const Column& ColumnOf(const ServedTable& table, const WriteRequest& request);

// The current value of the instance, or null. What the handler returned may no longer be there: all
// instances share the module's buffer, and between the phases of a request with several variables,
// and those of another manager, the handlers of others have answered. It is read anew then.
const void* CurrentValue(const ServedTable& table, const WriteRequest& request,
                         const Instance& instance, MibValue& again);

}  // namespace snmpmain
