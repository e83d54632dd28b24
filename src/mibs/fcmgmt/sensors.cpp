#include <array>

#include "src/base/text.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/part_status.h"

namespace snmpmain::fcmgmt {
namespace {

// What is the same for all sensors of a kind.
struct SensorKind {
    const char* name;
    const char* nameEnd;  // follows the number; null where the blade is named instead
    std::uint32_t type;
    std::uint32_t characteristic;
};

constexpr std::array kSensorKinds = {
    SensorKind{"Power supply", "Status", 5, 9},
    SensorKind{"Fan", "Status", 4, 7},
    SensorKind{"Temperature Status", nullptr, 8, 3},
    SensorKind{"Temperature Sensor", "Value", 8, 3},
    SensorKind{"Voltage Status", nullptr, 8, 9},
};
static_assert(kSensorKinds.size() == kBladeVoltageSensor + 1);

const SensorKind& KindOf(const Instance& instance) {
    return kSensorKinds[instance.part.kind];
}

int ReadName(const Column&, const Instance& instance, MibValue& value) {
    const SensorKind& kind = KindOf(instance);
    if (kind.nameEnd == nullptr) {
        return ReadBladePartName(instance, instance.part.blade, kind.name, kind.name, value);
    }
    FormatText(value.text, "%s %d %s", kind.name, instance.part.number + 1, kind.nameEnd);
    return SetText(value);
}

int ReadStatus(const Column&, const Instance& instance, MibValue& value) {
    std::uint32_t status = 0;
    return ReadSensorStatus(instance.domain, instance.part, status) == 0 ? SetNumber(value, status)
                                                                         : -1;
}

int ReadMessage(const Column&, const Instance& instance, MibValue& value) {
    char command[kSensorCommandSize];
    MakeSensorCommand(instance.part, command);
    if (instance.part.kind != kBoardTempSensor) {
        return Ask(instance, command, value.text) == 0 ? SetText(value) : -1;
    }
    std::uint32_t degrees = 0;
    if (Ask(instance, command, value.text, kInteger, &degrees) != 0) {
        return -1;
    }
    FormatText(value.text, "%d degrees C", static_cast<int>(degrees));
    return SetText(value);
}

int ReadType(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, KindOf(instance).type);
}

int ReadCharacteristic(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, KindOf(instance).characteristic);
}

constexpr Column kSensors[] = {
    {1, ASN_OCTET_STR, "connUnitSensorUnitId", UnitId()},
    {2, ASN_INTEGER, "connUnitSensorIndex", LastIndex()},
    {3, ASN_OCTET_STR, "connUnitSensorName",
     Derived(ReadName, "number of the sensor", kBladeNameCommands)},
    {kConnUnitSensorStatus, ASN_INTEGER, "connUnitSensorStatus",
     Derived(ReadStatus, "as connUnitSensorMessage; always 3 for a board's temperature")},
    {5, ASN_OCTET_STR, "connUnitSensorInfo", NeverAnswers()},
    {6, ASN_OCTET_STR, "connUnitSensorMessage", Derived(ReadMessage, kSensorCommands)},
    {7, ASN_INTEGER, "connUnitSensorType", Derived(ReadType, "kind of the sensor")},
    {8, ASN_INTEGER, "connUnitSensorCharacteristic",
     Derived(ReadCharacteristic, "kind of the sensor")},
};

int ResolveSensor(const HandlerCall& call, Instance& instance) {
    if (ResolveUnitRow(call, instance) != 0) {
        return -1;
    }
    return GetSensorFromIndex(instance.domain, instance.row, instance.part);
}

int NextSensor(const HandlerCall& call, Instance& instance) {
    if (GetNextUnitSensor(call.vp, call.name, call.length, instance.unit, instance.row,
                          instance.part) != 0) {
        return -1;
    }
    return CompleteUnit(call, instance);
}

}  // namespace

constinit const ServedTable kSensorTable =
    Table(kModule, kSensorEntry, 47, kSensors, {ResolveSensor, NextSensor});

}  // namespace snmpmain::fcmgmt
