// Traps as SNMP messages. Any thread: nothing is shared, and of the SNMP library only its encoders
// for single values are used.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "src/traps/trap.h"

namespace snmpmain {

// Room for a trap with the longest text and the longest community.
using TrapMessage = std::array<std::uint8_t, 2048>;

// What a trap is, in the terms of both versions.
struct TrapHeader {
    TrapOid oid;         // SNMPv2: snmpTrapOID.0
    TrapOid enterprise;  // SNMPv1
    std::uint32_t generic;
    std::uint32_t specific;
    // SNMPv2: snmpTrapEnterprise.0 ends the bindings. As with the SNMP library's own traps, only of
    // the standard traps: the OIDs of others tell the enterprise.
    bool namesEnterprise;
};

// An enterprise-specific trap: the OID is the enterprise, 0, and the specific number.
TrapHeader MakeTrapHeader(const TrapOid& oid);

// The standard coldStart.
TrapHeader MakeColdStartHeader();

// What differs from message to message.
struct TrapEnvelope {
    const char* community;
    std::uint32_t upTime;        // hundredths of a second
    std::uint32_t requestId;     // SNMPv2
    std::uint32_t agentAddress;  // SNMPv1; network order
};

// Write the message and return its size in bytes, 0 when it does not fit.
std::size_t EncodeV1Trap(const TrapEnvelope& envelope, const TrapHeader& header,
                         std::span<const TrapBinding> bindings, TrapMessage& message);
std::size_t EncodeV2Trap(const TrapEnvelope& envelope, const TrapHeader& header,
                         std::span<const TrapBinding> bindings, TrapMessage& message);

}  // namespace snmpmain
