#include <cstring>

#include "src/mibs/conversions.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/row_numbers.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr std::uint32_t kStatusEvent = 3;

// A log entry is "[id][time]..."; one without a time has none to show.
int ReadEventTime(const Column& column, const Instance& instance, MibValue& value) {
    ReplyText entry;
    if (Ask(instance, column.source.command, entry) != 0) {
        return -1;
    }
    const char* id = std::strchr(entry.data(), '[');
    const char* time = id == nullptr ? nullptr : std::strchr(id + 1, '[');
    if (time == nullptr) {
        return -1;
    }
    ConvertEventTime(time + 1, value.text);
    return SetText(value);
}

constexpr Column kEvents[] = {
    {1, ASN_OCTET_STR, "connUnitEventUnitId", UnitId()},
    {2, ASN_INTEGER, "connUnitEventIndex", LastIndex()},
    {kConnUnitEventId, ASN_INTEGER, "connUnitEventId", NeverAnswers()},
    {4, ASN_OCTET_STR, "connUnitREventTime",
     Computed(ReadEventTime, "Get.Oper.Switch.NextLogEntry.%i")},
    {5, ASN_TIMETICKS, "connUnitSEventTime", NeverAnswers()},
    {6, ASN_INTEGER, "connUnitEventSeverity", NeverAnswers()},
    {kConnUnitEventType, ASN_INTEGER, "connUnitEventType", Constant(kStatusEvent)},
    {kConnUnitEventObject, ASN_OBJECT_ID, "connUnitEventObject", NeverAnswers()},
    {kConnUnitEventDescr, ASN_OCTET_STR, "connUnitEventDescr",
     TextOf("Get.Oper.Switch.NextLogEntry.%i")},
};

// A log entry is asked for as the one after its predecessor.
int CompleteEvent(const HandlerCall& call, Instance& instance) {
    if (CompleteUnit(call, instance) != 0) {
        return -1;
    }
    instance.numbers[0] = instance.lastIndex - 1;
    return 0;
}

int ResolveEvent(const HandlerCall& call, Instance& instance) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    if (ResolveUnitIndex(call, instance) != 0 ||
        GetFirstLogEntryId(instance.domain, first, last) != 0 || first == 0 ||
        instance.lastIndex < first || instance.lastIndex > last) {
        return -1;
    }
    return CompleteEvent(call, instance);
}

int NextEvent(const HandlerCall& call, Instance& instance) {
    if (GetNextUnitEvent(call.vp, call.name, call.length, instance.unit, instance.row) != 0) {
        return -1;
    }
    return CompleteEvent(call, instance);
}

}  // namespace

constinit const ServedTable kEventTable =
    Table(kModule, kEventEntry, 82, kEvents, {ResolveEvent, NextEvent});

}  // namespace snmpmain::fcmgmt
