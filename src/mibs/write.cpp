#include "src/mibs/write.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>

#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmptables/row_numbers.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

constexpr const char* kUnprintable = "non-printable characters";

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

int RefuseWith(const char* object, const char* reason, int status) {
    TraceLog(kSevere, "write to %s: %s", object, reason);
    return status;
}

const char* LaterName(const WrittenObject& object) {
    return object.laterName != nullptr ? object.laterName : object.name;
}

// The current value of the instance, or null. What the handler returned may no longer be there: all
// instances share the module's buffer, and between the phases of a request with several variables,
// and those of another manager, the handlers of others have answered. It is read anew then.
const void* CurrentValue(const WrittenObject& object, const WriteRequest& request,
                         const Instance& instance, MibValue& again) {
    const std::less_equal<const void*> notBehind;
    const bool isShared = object.buffer != nullptr && notBehind(object.buffer, request.current) &&
                          !notBehind(object.buffer + 1, request.current);
    if (!isShared || object.buffer->answers.IsFor(request.name)) {
        return request.current;
    }
    const Column* column = FindColumn(*object.table, object.magic);
    const bool isRead = column != nullptr && column->source.read(*column, instance, again) == 0;
    return isRead ? again.data : nullptr;
}

int SendSetting(const WrittenObject& object, const Instance& instance, const char* setting) {
    char completed[kCommandSize];
    CompleteCommand(setting, instance, completed);
    if (SendConfigCommand(instance.domain, completed, object.mode) != 0) {
        return RefuseWith(LaterName(object), object.sendFailure, SNMP_ERR_COMMITFAILED);
    }
    return SNMP_ERR_NOERROR;
}

bool IsPrintable(u_char c) {
    return c >= 0x20 && c <= 0x7E;
}

int CheckText(const WrittenObject& object, const WriteRequest& request) {
    if (request.type != ASN_OCTET_STR) {
        return Refuse(object.name, SNMP_ERR_WRONGTYPE);
    }
    if (request.length < 1 || request.length > object.longest) {
        return Refuse(object.name, SNMP_ERR_WRONGLENGTH);
    }
    if (!std::ranges::all_of(std::span(request.value, request.length), IsPrintable)) {
        return RefuseWith(object.name, kUnprintable, SNMP_ERR_WRONGVALUE);
    }
    return SNMP_ERR_NOERROR;
}

}  // namespace

int Refuse(const char* object, int status) {
    return RefuseWith(object, NameOfStatus(status), status);
}

int TakeInteger(const char* object, const WriteRequest& request, std::int32_t& number) {
    if (request.type != ASN_INTEGER) {
        return Refuse(object, SNMP_ERR_WRONGTYPE);
    }
    if (request.length == sizeof(number)) {
        std::memcpy(&number, request.value, sizeof(number));
        return SNMP_ERR_NOERROR;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    long value = 0;
    if (request.length == sizeof(value)) {
        std::memcpy(&value, request.value, sizeof(value));
        if (value >= Limits::min() && value <= Limits::max()) {
            number = static_cast<std::int32_t>(value);
            return SNMP_ERR_NOERROR;
        }
    }
    return Refuse(object, SNMP_ERR_WRONGLENGTH);
}

int WriteText(const WrittenObject& object, const WriteRequest& request) {
    if (!IsWritingPhase(request.action)) {
        return SNMP_ERR_NOERROR;
    }
    const int status = CheckText(object, request);
    if (status != SNMP_ERR_NOERROR || request.action == RESERVE1) {
        return status;
    }
    Instance instance;
    if (object.find(request.name, instance) != 0) {
        return Refuse(LaterName(object), SNMP_ERR_NOSUCHNAME);
    }
    const std::string_view text(reinterpret_cast<const char*>(request.value), request.length);
    MibValue again;
    const void* current = CurrentValue(object, request, instance, again);
    if (current != nullptr && text == static_cast<const char*>(current)) {
        return SNMP_ERR_NOERROR;
    }
    char terminated[kCommandSize];
    terminated[text.copy(terminated, sizeof(terminated) - 1)] = '\0';
    instance.texts[0] = terminated;
    return SendSetting(object, instance, object.textSetting);
}

int WriteNumber(const WrittenObject& object, const WriteRequest& request) {
    if (!IsWritingPhase(request.action)) {
        return SNMP_ERR_NOERROR;
    }
    std::int32_t number = 0;
    if (const int status = TakeInteger(object.name, request, number); status != SNMP_ERR_NOERROR) {
        return status;
    }
    const auto choice = std::ranges::find(object.choices, number, &WrittenObject::Choice::value);
    if (choice == object.choices.end()) {
        return Refuse(object.name, SNMP_ERR_WRONGVALUE);
    }
    if (request.action == RESERVE1) {
        return SNMP_ERR_NOERROR;
    }
    Instance instance;
    if (object.find(request.name, instance) != 0) {
        return Refuse(LaterName(object), SNMP_ERR_NOSUCHNAME);
    }
    MibValue again;
    const void* current = CurrentValue(object, request, instance, again);
    if (current != nullptr && std::memcmp(current, &number, sizeof(number)) == 0) {
        return SNMP_ERR_NOERROR;
    }
    return SendSetting(object, instance, choice->setting);
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

}  // namespace snmpmain
