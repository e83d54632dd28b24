#include "src/mibs/write.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

#include "src/base/main_thread.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"

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

int RefuseWith(const char* start, const char* object, const char* reason, int status) {
    TraceLog(kSevere, "%s%s: %s", start, object, reason);
    return status;
}

int RefuseValue(const Column& column, int status) {
    return RefuseWith(column.set.messageStart, column.object, NameOfStatus(status), status);
}

// About the instance or the sending.
int RefuseLater(const Column& column, int status) {
    const char* name = column.set.laterName != nullptr ? column.set.laterName : column.object;
    return name[0] != '\0' ? RefuseWith(column.set.messageStart, name, NameOfStatus(status), status)
                           : status;
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

// What a request makes of an object.
struct Wanted {
    const char* setting = nullptr;
    std::int32_t number = 0;  // of an INTEGER
    char text[kCommandSize] = "";

    bool IsAlready(const Column& column, const void* current) const {
        return column.set.longest != 0 ? std::strcmp(text, static_cast<const char*>(current)) == 0
                                       : std::memcmp(&number, current, sizeof(number)) == 0;
    }
};

int TakeText(const Column& column, const WriteRequest& request, Wanted& wanted) {
    if (const int status = CheckText(column.object, column.set.longest, request);
        status != SNMP_ERR_NOERROR) {
        return status;
    }
    const std::string_view text(reinterpret_cast<const char*>(request.value), request.length);
    wanted.text[text.copy(wanted.text, sizeof(wanted.text) - 1)] = '\0';
    wanted.setting = column.set.format;
    return SNMP_ERR_NOERROR;
}

int TakeChoice(const Column& column, const WriteRequest& request, Wanted& wanted) {
    if (const int status = TakeInteger(request, wanted.number); status != SNMP_ERR_NOERROR) {
        return RefuseValue(column, status);
    }
    const auto found = std::ranges::find(column.set.choices, wanted.number, &Choice::value);
    if (found == column.set.choices.end()) {
        return RefuseValue(column, SNMP_ERR_WRONGVALUE);
    }
    wanted.setting = found->setting;
    return SNMP_ERR_NOERROR;
}

// Finds the instance and sends the setting, unless the current value is already the one wanted.
int Apply(const ServedTable& table, const Column& column, const WriteRequest& request,
          const Wanted& wanted) {
    Instance instance;
    if (FindInstance(table, request, instance) != 0) {
        return RefuseLater(column, SNMP_ERR_NOSUCHNAME);
    }
    MibValue again;
    const void* current = CurrentValue(table, request, instance, again);
    if (current != nullptr && wanted.IsAlready(column, current)) {
        return SNMP_ERR_NOERROR;
    }
    instance.texts[0] = wanted.text;
    char completed[kCommandSize];
    CompleteCommand(wanted.setting, instance, completed);
    return column.set.send(instance.domain, completed) == 0
               ? SNMP_ERR_NOERROR
               : RefuseLater(column, SNMP_ERR_COMMITFAILED);
}

}  // namespace

int Refuse(const char* object, int status) {
    return RefuseWith("write to ", object, NameOfStatus(status), status);
}

int CheckText(const char* object, std::size_t longest, const WriteRequest& request) {
    if (request.type != ASN_OCTET_STR) {
        return Refuse(object, SNMP_ERR_WRONGTYPE);
    }
    if (request.length < 1 || request.length > longest) {
        return Refuse(object, SNMP_ERR_WRONGLENGTH);
    }
    if (!std::ranges::all_of(std::span(request.value, request.length), IsPrintable)) {
        return RefuseWith("write to ", object, "non-printable characters", SNMP_ERR_WRONGVALUE);
    }
    return SNMP_ERR_NOERROR;
}

int TakeInteger(const WriteRequest& request, std::int32_t& number) {
    return TakeCell<std::int32_t, long>(ASN_INTEGER, request, number);
}

int TakeGauge(const WriteRequest& request, std::uint32_t& number) {
    return TakeCell<std::uint32_t, unsigned long>(ASN_GAUGE, request, number);
}

int FindInstance(const ServedTable& table, const WriteRequest& request, Instance& instance) {
    variable vp{};
    vp.namelen = static_cast<u_char>(ColumnLength(table));
    std::size_t length = request.name.size();
    return table.shape.resolve({&vp, request.name.data(), &length, true, nullptr, nullptr},
                               instance);
}

const Column& ColumnOf(const ServedTable& table, const WriteRequest& request) {
    return *std::ranges::find(table.columns, request.name[ColumnLength(table) - 1],
                              &Column::suffix);
}

const void* CurrentValue(const ServedTable& table, const WriteRequest& request,
                         const Instance& instance, MibValue& again) {
    if (request.current == nullptr || table.module.result.answers.IsFor(request.name)) {
        return request.current;
    }
    const Column& column = ColumnOf(table, request);
    return column.source.read(column, instance, again) == 0 ? again.data : nullptr;
}

int WriteColumn(const ServedTable& table, const WriteRequest& request) {
    AssertMainThread();
    if (!IsWritingPhase(request.action)) {
        return SNMP_ERR_NOERROR;
    }
    const Column& column = ColumnOf(table, request);
    Wanted wanted;
    const int status = (column.set.longest != 0 ? TakeText : TakeChoice)(column, request, wanted);
    if (status != SNMP_ERR_NOERROR || request.action == RESERVE1 || wanted.setting == nullptr) {
        return status;
    }
    return Apply(table, column, request, wanted);
}

}  // namespace snmpmain
