// A trap before it is sent: its OID and bindings, in a form that needs no memory from the heap, so
// that each thread builds its own on its stack (about 2 KiB).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace snmpmain {

struct TrapOid {
    std::array<std::uint32_t, 32> names{};
    std::size_t length = 0;

    // Appends sub-identifiers, as many as there is room for.
    void Append(std::span<const std::uint32_t> more) {
        for (const std::uint32_t name : more) {
            if (length < names.size()) {
                names[length++] = name;
            }
        }
    }
    void Append(std::initializer_list<std::uint32_t> more) {
        Append(std::span(more.begin(), more.size()));
    }
    std::span<const std::uint32_t> Names() const {
        return std::span(names).first(length);
    }
};

enum class TrapValueType : std::uint8_t { kInteger, kOctets, kObjectId };

struct TrapBinding {
    TrapOid name;
    TrapValueType type = TrapValueType::kInteger;
    std::uint32_t number = 0;
    TrapOid objectId;
    std::span<const std::uint8_t> octets;  // must outlive the trap, or be the trap's own
};

struct Trap {
    TrapOid oid;
    std::array<TrapBinding, 4> bindings;  // after snmpTrapOID.0
    std::size_t bindingCount = 0;
    std::array<std::uint8_t, 16> unitId{};  // octets that a binding may point to

    Trap() = default;
    Trap(const Trap&) = delete;
    Trap& operator=(const Trap&) = delete;

    // Makes it a trap of a MIB, by its number there, without bindings.
    void Begin(std::span<const std::uint32_t> mib, std::uint32_t number) {
        oid = {};
        oid.Append(mib);
        oid.Append({0, number});
        bindingCount = 0;
    }

    // Adds a binding, an INTEGER 0 with an empty name at first.
    TrapBinding& Add() {
        TrapBinding& binding = bindings.at(bindingCount++);
        binding = {};
        return binding;
    }
};

}  // namespace snmpmain
