#include "src/snmptables/row_numbers.h"

#include <algorithm>
#include <cstring>

#include "src/base/text.h"
#include "src/link/link.h"
#include "src/link/switch_info.h"

namespace snmpmain {
namespace {

enum class EntryId { kNoBracket, kNoNumber, kFound };

EntryId ReadEntryId(const ReplyText& entry, std::uint32_t& id) {
    const char* bracket = std::strchr(entry.data(), '[');
    if (bracket == nullptr) {
        return EntryId::kNoBracket;
    }
    if (!IsDecimalDigit(bracket[1])) {
        return EntryId::kNoNumber;
    }
    id = ReadDecimal(bracket + 1);
    return EntryId::kFound;
}

// Whether the log goes on after the entry with this id.
bool HasNextLogEntry(std::uint32_t domain, std::uint32_t id) {
    ReplyText entry;
    if (SwitchMgmtQueryf(domain, entry, kString, nullptr, "Get.Oper.Switch.NextLogEntry.%u", id) !=
            0 ||
        std::strcmp(entry.data(), kListEnd) == 0) {
        return false;
    }
    std::uint32_t found = 0;
    return ReadEntryId(entry, found) != EntryId::kFound || found > id;
}

std::uint32_t ChassisOf(std::uint32_t domain) {
    return std::min(AskNumber(domain, Fact::kChassis), kMaxChassis);
}

std::uint32_t BladesOf(std::uint32_t domain) {
    return std::min(AskNumber(domain, Fact::kBlades), kMaxBlades);
}

// Counts `row` down by `rows`. True when it lies within them; then it is the number among them.
bool LiesWithin(std::uint32_t& row, std::uint32_t rows) {
    if (row < rows) {
        return true;
    }
    row -= rows;
    return false;
}

SensorRef MakeRef(std::uint32_t chassis, std::uint32_t blade, std::uint16_t kind,
                  std::uint32_t number) {
    return {static_cast<std::uint16_t>(chassis), static_cast<std::uint16_t>(blade), kind,
            static_cast<std::uint16_t>(number)};
}

}  // namespace

std::uint16_t GetLogEntryCount(std::uint32_t domain) {
    ReplyText reply;
    std::uint32_t count = 0;
    if (SwitchMgmtQuery(domain, kLogCountCommand, reply, kInteger, &count) != 0) {
        return 0;
    }
    return static_cast<std::uint16_t>(std::min(count, MAX_LOG_ENTRIES));
}

int GetLastLogEntryId(std::uint32_t domain, std::uint32_t& id) {
    id = 0;
    ReplyText reply;
    if (SwitchMgmtQuery(domain, kLastLogEntryCommand, reply, kString) != 0) {
        return 0;
    }
    return ReadEntryId(reply, id) == EntryId::kNoNumber ? -1 : 0;
}

int GetFirstLogEntryId(std::uint32_t domain, std::uint32_t& id, std::uint32_t& last) {
    id = 0;
    last = 0;
    ReplyText reply;
    if (SwitchMgmtQuery(domain, "Get.Oper.Switch.FirstLogEntry", reply, kString) != 0) {
        return 0;
    }
    if (ReadEntryId(reply, id) != EntryId::kFound || GetLastLogEntryId(domain, last) != 0) {
        return -1;
    }
    if (last > MAX_LOG_ENTRIES) {
        id = last - (MAX_LOG_ENTRIES - 1);
    }
    return 0;
}

int AskNextEvent(std::uint32_t domain, std::uint32_t after, std::uint32_t& id) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    if (GetFirstLogEntryId(domain, first, last) != 0 || first == 0) {
        return -1;
    }
    const std::uint32_t before = std::max(after, first - 1);
    if (before >= last || !HasNextLogEntry(domain, before)) {
        return -1;
    }
    id = before + 1;
    return 0;
}

int AskNextLink(std::uint32_t domain, std::uint32_t after, std::uint32_t& link) {
    ReplyText reply;
    if (SwitchMgmtQueryf(domain, reply, kString, nullptr, "Get.Oper.Link.NextLinkEntry.%u",
                         after) != 0) {
        return -1;
    }
    link = ReadDecimal(reply.data());
    return link > 0 ? 0 : -1;
}

// The count, asked if it is not known yet.
template <typename Question>
std::uint32_t PartCounts::Known(Count& count, Question question) {
    if (!count.known) {
        count = {true, question()};
        answered_ = answered_ && WasAnswered();
    }
    return count.value;
}

std::uint32_t PartCounts::Chassis() {
    return Known(chassis_, [&] { return ChassisOf(domain_); });
}

std::uint32_t PartCounts::PowerSupplies() {
    return Known(powerSupplies_, [&] { return AskNumber(domain_, Fact::kPowerSupplies); });
}

std::uint32_t PartCounts::Fans() {
    return Known(fans_, [&] { return AskNumber(domain_, Fact::kFans); });
}

std::uint32_t PartCounts::Blades() {
    return Known(blades_, [&] { return BladesOf(domain_); });
}

std::uint32_t PartCounts::TempSensors(std::uint32_t blade) {
    return Known(tempSensors_[blade],
                 [&] { return AskNumber(domain_, Fact::kTempSensors, blade); });
}

std::uint16_t GetSensorCount(std::uint32_t domain) {
    PartCounts parts(domain);
    const std::uint32_t chassis = parts.Chassis();
    if (chassis == 0) {
        return 0;
    }
    const std::uint32_t blades = parts.Blades();
    std::uint32_t perChassis = parts.PowerSupplies();
    perChassis += parts.Fans();
    perChassis += blades > 1 ? blades : 0;
    for (std::uint32_t blade = 0; blade < blades; ++blade) {
        perChassis += 1 + parts.TempSensors(blade);
    }
    return static_cast<std::uint16_t>(chassis * perChassis);
}

std::uint16_t GetRevisionCount(std::uint32_t domain) {
    return ChassisOf(domain) == 0 ? std::uint16_t{0}
                                  : static_cast<std::uint16_t>(BladesOf(domain) + 2);
}

namespace {

int FindSensor(PartCounts& parts, std::uint32_t row, SensorRef& sensor) {
    for (std::uint32_t chassis = 0; chassis < parts.Chassis(); ++chassis) {
        if (LiesWithin(row, parts.PowerSupplies())) {
            sensor = MakeRef(chassis, 0, kPowerSupplySensor, row);
            return 0;
        }
        if (LiesWithin(row, parts.Fans())) {
            sensor = MakeRef(chassis, 0, kFanSensor, row);
            return 0;
        }
        const std::uint32_t blades = parts.Blades();
        if (LiesWithin(row, blades)) {
            sensor = MakeRef(chassis, row, kBladeTempSensor, 0);
            return 0;
        }
        for (std::uint32_t blade = 0; blade < blades; ++blade) {
            if (LiesWithin(row, parts.TempSensors(blade))) {
                sensor = MakeRef(chassis, blade, kBoardTempSensor, row);
                return 0;
            }
        }
        if (blades > 1 && LiesWithin(row, blades)) {
            sensor = MakeRef(chassis, row, kBladeVoltageSensor, 0);
            return 0;
        }
    }
    return -1;
}

}  // namespace

int GetSensorFromIndex(std::uint32_t domain, std::uint32_t row, SensorRef& sensor) {
    if (row >= kMaxSensors) {
        return -1;
    }
    PartCounts parts(domain);
    const int result = FindSensor(parts, row, sensor);
    return parts.Answered() ? result : -1;
}

int GetRevisionFromIndex(std::uint32_t domain, std::uint32_t row, SensorRef& revision) {
    PartCounts parts(domain);
    for (std::uint32_t chassis = 0; chassis < parts.Chassis(); ++chassis) {
        if (row < kBladeRevision || row - kBladeRevision < parts.Blades()) {
            revision = RevisionOfFirstChassis(row);
            revision.chassis = static_cast<std::uint16_t>(chassis);
            return 0;
        }
        row -= kBladeRevision + parts.Blades();
    }
    return -1;
}

SensorRef RevisionOfFirstChassis(std::uint32_t row) {
    if (row < kBladeRevision) {
        return MakeRef(0, 0, static_cast<std::uint16_t>(row), 0);
    }
    return MakeRef(0, row - kBladeRevision, kBladeRevision, row - kBladeRevision);
}

int GetModuleAndPort(std::uint32_t domain, std::uint32_t portNumber, std::uint32_t& module,
                     std::uint32_t& port) {
    if (portNumber >= AskNumber(domain, Fact::kMaxPorts)) {
        return -1;
    }
    module = 0;
    port = portNumber;
    return 0;
}

}  // namespace snmpmain
