// What is meant by the plain row numbers of the event, sensor, revision and port tables of a
// unit. Nothing is kept here: every call asks the unit, or the switch information for its counts.
// Main thread only.
#pragma once

#include <array>
#include <cstdint>

#include "src/link/link.h"
#include "src/link/switch_info.h"

namespace snmpmain {

// The agent shows at most this many log entries of a unit, the newest.
constexpr std::uint32_t MAX_LOG_ENTRIES = 30;

// What a sensor or revision row refers to. The kinds of the two tables differ.
struct SensorRef {
    std::uint16_t chassis;
    std::uint16_t blade;
    std::uint16_t kind;
    std::uint16_t number;  // within the kind, from 0
};

constexpr std::uint16_t kPowerSupplySensor = 0;
constexpr std::uint16_t kFanSensor = 1;
constexpr std::uint16_t kBladeTempSensor = 2;     // temperature status, one per blade
constexpr std::uint16_t kBoardTempSensor = 3;     // temperature readings of a blade
constexpr std::uint16_t kBladeVoltageSensor = 4;  // voltage status, where there are several blades

constexpr std::uint16_t kActiveFirmwareRevision = 0;
constexpr std::uint16_t kFlasherRevision = 1;
constexpr std::uint16_t kBladeRevision = 2;

// Entries in a unit's log that the agent shows, at most MAX_LOG_ENTRIES; 0 when the unit does not
// answer.
constexpr const char* kLogCountCommand = "Get.Oper.Switch.LogEntries";
std::uint16_t GetLogEntryCount(std::uint32_t domain);

// Id of the newest log entry, from the text after its first "[": 0 when there is none or the unit
// does not answer. Returns -1 when no number follows the "[".
constexpr const char* kLastLogEntryCommand = "Get.Oper.Switch.LastLogEntry";
int GetLastLogEntryId(std::uint32_t domain, std::uint32_t& id);

// Id of the oldest log entry shown, 0 when the unit does not answer, and that of the newest one, on
// which it depends; `last` is 0 as well where the first query failed. Returns -1 when the oldest
// entry carries no id or the newest one's is unavailable. "Get.Oper.Switch.FirstLogEntry"
int GetFirstLogEntryId(std::uint32_t domain, std::uint32_t& id, std::uint32_t& last);

// The first log entry shown after the one with this id. Returns 0, or -1 when there is none. An
// entry whose own id does not lie after ends the log. "Get.Oper.Switch.NextLogEntry.%i"
int AskNextEvent(std::uint32_t domain, std::uint32_t after, std::uint32_t& id);

// The first link of a unit after the one with this index. Returns 0, or -1 when there is none.
// "Get.Oper.Link.NextLinkEntry.%i"
int AskNextLink(std::uint32_t domain, std::uint32_t after, std::uint32_t& link);

// A unit's numbers of parts for the length of one request: each is asked when it is first needed.
// At most kMaxChassis and kMaxBlades.
class PartCounts {
  public:
    explicit PartCounts(std::uint32_t domain) : domain_(domain) {}

    std::uint32_t Chassis();
    std::uint32_t PowerSupplies();
    std::uint32_t Fans();
    std::uint32_t Blades();
    std::uint32_t TempSensors(std::uint32_t blade);

    // Whether all counts so far were answered.
    bool Answered() const {
        return answered_;
    }

  private:
    struct Count {
        bool known = false;
        std::uint32_t value = 0;
    };
    std::uint32_t domain_;
    Count chassis_, powerSupplies_, fans_, blades_;
    std::array<Count, kMaxBlades> tempSensors_;
    bool answered_ = true;

    template <typename Question>
    std::uint32_t Known(Count& count, Question question);
};

// Rows of the sensor and revision tables of a unit; sensors beyond kMaxSensors have none.
constexpr std::uint32_t kMaxSensors = 65535;
std::uint16_t GetSensorCount(std::uint32_t domain);
std::uint16_t GetRevisionCount(std::uint32_t domain);

// What the row (counted from 0) refers to. Returns 0, or -1 past the last row and when the switch
// does not say how many parts it has.
int GetSensorFromIndex(std::uint32_t domain, std::uint32_t row, SensorRef& sensor);
int GetRevisionFromIndex(std::uint32_t domain, std::uint32_t row, SensorRef& revision);

// What a revision row below GetRevisionCount refers to, without asking anything.
SensorRef RevisionOfFirstChassis(std::uint32_t row);

// Module (always 0) and port of a port number of a unit. Returns 0, or -1 when the unit has no
// such port.
int GetModuleAndPort(std::uint32_t domain, std::uint32_t portNumber, std::uint32_t& module,
                     std::uint32_t& port);

}  // namespace snmpmain
