// State and status of a unit as a whole, computed from what its parts report. The MIB columns and
// the reports of changes both take the values from here. Main thread only.
#pragma once

#include <cstdint>
#include <ctime>

#include "src/base/progress.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {

// connUnitState codes.
constexpr std::uint16_t kUnitStateUnknown = 1;
constexpr std::uint16_t kUnitStateOnline = 2;
constexpr std::uint16_t kUnitStateOffline = 3;

// The connUnitState code of a unit: offline while it is being reset, else after its reply. Returns
// 0, or -1 (with state unknown) when the unit does not answer.
constexpr const char* kUnitStateCommand = "Get.Oper.Switch.OperState";
int ReadUnitState(std::uint32_t domain, std::uint16_t& state);

// The connUnitStatus code of a unit: ok, warning or failed after its power supplies, fans, blades,
// ports and its own state, one query each; the row's last status while it is being reset. The
// outcome, a failure too, is remembered for three seconds for the unit asked last. Stores the
// status in the unit's row. Returns 0, or -1 (with status unknown) when a query failed.
int ReadUnitStatus(std::uint32_t domain, std::uint16_t& status);

// The same in steps of one query each, for one unit at a time.
class UnitStatusReading {
  public:
    // Whether an outcome that is remembered will do.
    enum class Memo : std::uint8_t { kIsUsed, kIgnored };

    explicit UnitStatusReading(std::uint32_t domain, Memo use = Memo::kIsUsed)
        : domain_(domain), use_(use) {}

    // kFailed when a query failed; kDone.
    Progress Step();

    // After the last step; unknown when it failed.
    std::uint16_t Status() const {
        return status_;
    }

  private:
    enum class Part : std::uint8_t {
        kBegin,
        kCounts,
        kPowerSupplies,
        kFans,
        kBlades,
        kPorts,
        kUnit
    };

    Progress Begin();
    Progress End(int result);
    int Judge();
    int JudgeRedundantPart(const char* path);
    int JudgeBlade();
    int JudgePort();
    int JudgeOperState();
    std::uint32_t CountOf(Part part) const;

    std::uint32_t domain_;
    Memo use_;
    std::time_t began_ = 0;
    Part part_ = Part::kBegin;
    std::uint32_t index_ = 0;  // within the part
    std::uint32_t counts_[4] = {};
    std::uint32_t good_ = 0;  // of redundant parts
    bool warning_ = false;
    bool failure_ = false;
    std::uint16_t status_ = kUnitUnknown;
};

// Forgets the remembered outcome.
void ResetUnitStatusMemo();

}  // namespace snmpmain
