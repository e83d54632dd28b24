#include "src/mibs/write.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/row_numbers.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

const char* NameOfStatus(int status) {
    switch (status) {
        case SNMP_ERR_NOSUCHNAME:
            return "SNMP_ERR_NOSUCHNAME";
        case SNMP_ERR_WRONGTYPE:
            return "SNMP_ERR_WRONGTYPE";
        case SNMP_ERR_WRONGLENGTH:
            return "SNMP_ERR_WRONGLENGTH";
        case SNMP_ERR_WRONGVALUE:
            return "SNMP_ERR_WRONGVALUE";
        case SNMP_ERR_NOCREATION:
            return "SNMP_ERR_NOCREATION";
        case SNMP_ERR_RESOURCEUNAVAILABLE:
            return "SNMP_ERR_RESOURCEUNAVAILABLE";
        default:
            return "SNMP_ERR_COMMITFAILED";
    }
}

int RefuseWith(const WrittenObject& object, const char* name, const char* reason, int status) {
    TraceLog(kSevere, "%s%s: %s", object.messageStart, name, reason);
    return status;
}

// About the instance or the sending.
int RefuseLater(const WrittenObject& object, const char* reason, int status) {
    const char* name = object.laterName != nullptr ? object.laterName : object.name;
    return name[0] != '\0' ? RefuseWith(object, name, reason, status) : status;
}

template <typename Number, typename Wide>
int TakeCell(std::uint8_t type, const WriteRequest& request, Number& number) {
    if (request.type != type) {
        return SNMP_ERR_WRONGTYPE;
    }
    if (request.length == sizeof(number)) {
        std::memcpy(&number, request.value, sizeof(number));
        return SNMP_ERR_NOERROR;
    }
    using Limits = std::numeric_limits<Number>;
    Wide wide = 0;
    if (request.length == sizeof(wide)) {
        std::memcpy(&wide, request.value, sizeof(wide));
        if (wide >= Limits::min() && wide <= Limits::max()) {
            number = static_cast<Number>(wide);
            return SNMP_ERR_NOERROR;
        }
    }
    return SNMP_ERR_WRONGLENGTH;
}

bool IsPrintable(u_char c) {
    return c >= 0x20 && c <= 0x7E;
}

int CheckText(const WrittenObject& object, const WriteRequest& request) {
    if (request.type != ASN_OCTET_STR) {
        return Refuse(object, SNMP_ERR_WRONGTYPE);
    }
    if (request.length < 1 || request.length > object.longest) {
        return Refuse(object, SNMP_ERR_WRONGLENGTH);
    }
    if (!std::ranges::all_of(std::span(request.value, request.length), IsPrintable)) {
        return RefuseWith(object, object.name, "non-printable characters", SNMP_ERR_WRONGVALUE);
    }
    return SNMP_ERR_NOERROR;
}

// `choice` becomes that of the value.
int CheckNumber(const WrittenObject& object, const WriteRequest& request,
                const WrittenObject::Choice*& choice) {
    std::int32_t number = 0;
    if (const int status = TakeInteger(request, number); status != SNMP_ERR_NOERROR) {
        return Refuse(object, status);
    }
    const auto found = std::ranges::find(object.choices, number, &WrittenObject::Choice::value);
    if (found == object.choices.end()) {
        return Refuse(object, SNMP_ERR_WRONGVALUE);
    }
    choice = &*found;
    return SNMP_ERR_NOERROR;
}

int SendSetting(const WrittenObject& object, const Instance& instance, const char* setting) {
    char completed[kCommandSize];
    CompleteCommand(setting, instance, completed);
    if (object.send(instance.domain, completed, object.mode) != 0) {
        return RefuseLater(object, object.sendFailure, SNMP_ERR_COMMITFAILED);
    }
    return SNMP_ERR_NOERROR;
}

// Finds the instance and sends the setting, unless the current value is already the one wanted.
template <typename Equals>
int Apply(const WrittenObject& object, const WriteRequest& request, const char* setting,
          const char* text, Equals equals) {
    Instance instance;
    if (object.find(request.name, instance) != 0) {
        return RefuseLater(object, NameOfStatus(SNMP_ERR_NOSUCHNAME), SNMP_ERR_NOSUCHNAME);
    }
    MibValue again;
    const void* current = CurrentValue(object, request, instance, again);
    if (current != nullptr && equals(current)) {
        return SNMP_ERR_NOERROR;
    }
    instance.texts[0] = text;
    return SendSetting(object, instance, setting);
}

}  // namespace

int Refuse(const WrittenObject& object, int status) {
    return RefuseWith(object, object.name, NameOfStatus(status), status);
}

int TakeInteger(const WriteRequest& request, std::int32_t& number) {
    return TakeCell<std::int32_t, long>(ASN_INTEGER, request, number);
}

int TakeGauge(const WriteRequest& request, std::uint32_t& number) {
    return TakeCell<std::uint32_t, unsigned long>(ASN_GAUGE, request, number);
}

const void* CurrentValue(const WrittenObject& object, const WriteRequest& request,
                         const Instance& instance, MibValue& again) {
    if (request.current == nullptr || object.buffer == nullptr ||
        object.buffer->answers.IsFor(request.name)) {
        return request.current;
    }
    const Column* column = FindColumn(*object.table, object.name);
    const bool isRead = column != nullptr && column->source.read(*column, instance, again) == 0;
    return isRead ? again.data : nullptr;
}

int WriteText(const WrittenObject& object, const WriteRequest& request) {
    if (!IsWritingPhase(request.action)) {
        return SNMP_ERR_NOERROR;
    }
    const int status = CheckText(object, request);
    if (status != SNMP_ERR_NOERROR || request.action == RESERVE1) {
        return status;
    }
    const std::string_view text(reinterpret_cast<const char*>(request.value), request.length);
    char terminated[kCommandSize];
    terminated[text.copy(terminated, sizeof(terminated) - 1)] = '\0';
    return Apply(object, request, object.textSetting, terminated,
                 [&](const void* current) { return text == static_cast<const char*>(current); });
}

int WriteNumber(const WrittenObject& object, const WriteRequest& request) {
    if (!IsWritingPhase(request.action)) {
        return SNMP_ERR_NOERROR;
    }
    const WrittenObject::Choice* choice = nullptr;
    const int status = CheckNumber(object, request, choice);
    if (status != SNMP_ERR_NOERROR || request.action == RESERVE1) {
        return status;
    }
    return Apply(object, request, choice->setting, "", [&](const void* current) {
        return std::memcmp(current, &choice->value, sizeof(choice->value)) == 0;
    });
}

int AcceptText(const WrittenObject& object, const WriteRequest& request) {
    return request.action == RESERVE1 ? CheckText(object, request) : SNMP_ERR_NOERROR;
}

int AcceptNumber(const WrittenObject& object, const WriteRequest& request) {
    const WrittenObject::Choice* choice = nullptr;
    return request.action == RESERVE1 ? CheckNumber(object, request, choice) : SNMP_ERR_NOERROR;
}

int FindWrittenLocalSwitch(std::span<const oid>, Instance&) {
    return 0;
}

int FindWrittenUnit(std::span<const oid> name, Instance& instance) {
    return name.size() >= WWN_OID_LEN &&
                   GetWwnIndexFromWwnOID(name.last<WWN_OID_LEN>(), instance.unit) == 0 &&
                   GetDomainIdFromIndex(instance.unit, instance.domain) == 0
               ? 0
               : -1;
}

int FindWrittenPort(std::span<const oid> name, Instance& instance) {
    char wwn[kWwnTextSize];
    std::uint16_t number = 0;
    // The unit is found by its id as for reading: its WWN may be written in capitals.
    if (GetWWNandIndexFromOID(name, wwn, number) != 0 ||
        FindWrittenUnit(name.first(name.size() - 1), instance) != 0) {
        return -1;
    }
    auto& [module, port] = instance.numbers;
    return GetModuleAndPort(instance.domain, number, module, port);
}

int FindWrittenModulePort(std::span<const oid> name, Instance& instance) {
    if (name.size() < kModulePortIndexLength) {
        return -1;
    }
    const auto index = name.last<kModulePortIndexLength>();
    instance.unit = static_cast<std::uint16_t>(index[0] - 1);
    const auto number = static_cast<std::uint16_t>(index[1] - 1);
    if (GetDomainIdFromIndex(instance.unit, instance.domain) != 0) {
        return -1;
    }
    auto& [module, port] = instance.numbers;
    return GetModuleAndPort(instance.domain, number, module, port);
}

}  // namespace snmpmain
