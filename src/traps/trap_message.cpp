#include "src/traps/trap_message.h"

#include <algorithm>
#include <cstring>

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {
namespace {

constexpr std::uint8_t kIntegerTag = ASN_INTEGER;
constexpr std::uint8_t kOctetsTag = ASN_OCTET_STR;
constexpr std::uint8_t kObjectIdTag = ASN_OBJECT_ID;
constexpr std::uint8_t kSequenceTag = ASN_SEQUENCE | ASN_CONSTRUCTOR;

// A message under construction. A value that does not fit spoils it.
class Encoder {
  public:
    explicit Encoder(TrapMessage& message)
        : begin_(message.data()), at_(message.data()), left_(message.size()) {}

    void Integer(std::uint32_t number) {
        const long value = static_cast<std::int32_t>(number);
        Advance([&] { return asn_build_int(at_, &left_, kIntegerTag, &value, sizeof(value)); });
    }

    void TimeTicks(std::uint32_t ticks) {
        const u_long value = ticks;
        Advance([&] {
            return asn_build_unsigned_int(at_, &left_, ASN_TIMETICKS, &value, sizeof(value));
        });
    }

    void Octets(std::uint8_t tag, std::span<const std::uint8_t> octets) {
        Advance([&] { return asn_build_string(at_, &left_, tag, octets.data(), octets.size()); });
    }

    void ObjectId(const TrapOid& objectId) {
        std::array<oid, std::tuple_size_v<decltype(TrapOid::names)>> names;
        std::ranges::copy(objectId.Names(), names.begin());
        Advance([&] {
            return asn_build_objid(at_, &left_, kObjectIdTag, names.data(), objectId.length);
        });
    }

    // Writes what `content` writes as one constructed value.
    template <typename Content>
    void Constructed(std::uint8_t tag, Content content) {
        std::uint8_t* const header = at_;
        Advance([&] { return asn_build_sequence(at_, &left_, tag, 0); });
        std::uint8_t* const body = at_;
        content();
        if (at_ != nullptr) {
            std::size_t room = static_cast<std::size_t>(body - header);
            asn_build_sequence(header, &room, tag, static_cast<std::size_t>(at_ - body));
        }
    }

    std::size_t Size() const {
        return at_ == nullptr ? 0 : static_cast<std::size_t>(at_ - begin_);
    }

  private:
    template <typename Build>
    void Advance(Build build) {
        if (at_ != nullptr) {
            at_ = build();
        }
    }

    std::uint8_t* begin_;
    std::uint8_t* at_;
    std::size_t left_;
};

std::span<const std::uint8_t> OctetsOf(const char* text) {
    return {reinterpret_cast<const std::uint8_t*>(text), std::strlen(text)};
}

TrapOid MakeOid(std::initializer_list<std::uint32_t> names) {
    TrapOid objectId;
    objectId.Append(names);
    return objectId;
}

void EncodeBinding(Encoder& encoder, const TrapBinding& binding) {
    encoder.Constructed(kSequenceTag, [&] {
        encoder.ObjectId(binding.name);
        switch (binding.type) {
            case TrapValueType::kInteger:
                encoder.Integer(binding.number);
                break;
            case TrapValueType::kOctets:
                encoder.Octets(kOctetsTag, binding.octets);
                break;
            case TrapValueType::kObjectId:
                encoder.ObjectId(binding.objectId);
                break;
        }
    });
}

void EncodeObjectIdBinding(Encoder& encoder, const TrapOid& name, const TrapOid& value) {
    TrapBinding binding;
    binding.name = name;
    binding.type = TrapValueType::kObjectId;
    binding.objectId = value;
    EncodeBinding(encoder, binding);
}

template <typename Pdu>
std::size_t EncodeMessage(std::uint32_t version, const char* community, TrapMessage& message,
                          Pdu pdu) {
    Encoder encoder(message);
    encoder.Constructed(kSequenceTag, [&] {
        encoder.Integer(version);
        encoder.Octets(kOctetsTag, OctetsOf(community));
        pdu(encoder);
    });
    return encoder.Size();
}

}  // namespace

TrapHeader MakeTrapHeader(const TrapOid& oid) {
    TrapHeader header{oid, oid, SNMP_TRAP_ENTERPRISESPECIFIC, 0, false};
    header.specific = oid.length == 0 ? 0 : oid.names[oid.length - 1];
    header.enterprise.length = oid.length < 2 ? 0 : oid.length - 2;
    return header;
}

TrapHeader MakeColdStartHeader() {
    return {MakeOid({1, 3, 6, 1, 6, 3, 1, 1, 5, 1}), MakeOid({1, 3, 6, 1, 6, 3, 1, 1, 5}),
            SNMP_TRAP_COLDSTART, 0, true};
}

std::size_t EncodeV1Trap(const TrapEnvelope& envelope, const TrapHeader& header,
                         std::span<const TrapBinding> bindings, TrapMessage& message) {
    const auto pdu = [&](Encoder& encoder) {
        encoder.Constructed(SNMP_MSG_TRAP, [&] {
            std::array<std::uint8_t, sizeof(envelope.agentAddress)> address;
            std::memcpy(address.data(), &envelope.agentAddress, address.size());
            encoder.ObjectId(header.enterprise);
            encoder.Octets(ASN_IPADDRESS, address);
            encoder.Integer(header.generic);
            encoder.Integer(header.specific);
            encoder.TimeTicks(envelope.upTime);
            encoder.Constructed(kSequenceTag, [&] {
                for (const TrapBinding& binding : bindings) {
                    EncodeBinding(encoder, binding);
                }
            });
        });
    };
    return EncodeMessage(SNMP_VERSION_1, envelope.community, message, pdu);
}

std::size_t EncodeV2Trap(const TrapEnvelope& envelope, const TrapHeader& header,
                         std::span<const TrapBinding> bindings, TrapMessage& message) {
    const auto bindingList = [&](Encoder& encoder) {
        encoder.Constructed(kSequenceTag, [&] {
            encoder.ObjectId(MakeOid({1, 3, 6, 1, 2, 1, 1, 3, 0}));
            encoder.TimeTicks(envelope.upTime);
        });
        EncodeObjectIdBinding(encoder, MakeOid({1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0}), header.oid);
        for (const TrapBinding& binding : bindings) {
            EncodeBinding(encoder, binding);
        }
        if (header.namesEnterprise) {
            EncodeObjectIdBinding(encoder, MakeOid({1, 3, 6, 1, 6, 3, 1, 1, 4, 3, 0}),
                                  header.enterprise);
        }
    };
    const auto pdu = [&](Encoder& encoder) {
        encoder.Constructed(SNMP_MSG_TRAP2, [&] {
            encoder.Integer(envelope.requestId);
            encoder.Integer(0);  // error status
            encoder.Integer(0);  // error index
            encoder.Constructed(kSequenceTag, [&] { bindingList(encoder); });
        });
    };
    return EncodeMessage(SNMP_VERSION_2c, envelope.community, message, pdu);
}

}  // namespace snmpmain
