#include "src/mibs/fcmgmt/trap_registration_writes.h"

#include <algorithm>
#include <limits>

#include "src/base/text.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/traps/trap_table.h"

namespace snmpmain {
namespace {

constexpr const char* kFilter = "trapRegFilter";
constexpr const char* kRowState = "trapRegRowState";
constexpr std::int32_t kDestroy = 1;
constexpr std::int32_t kMostFilter = 10;

// The instance that an OID names, and the row that has it if there is one.
struct Registration {
    TrapRowIndex index;
    bool isThere = false;
    std::uint16_t row = 0;
    TrapRow settings;  // those of a new row where there is none
};

// Checks what both objects have in common. Returns a status; refusals are traced.
int TakeValue(const char* object, const WriteRequest& request, std::int32_t most,
              std::int32_t& number) {
    int status = TakeInteger(request, number);
    if (status == SNMP_ERR_NOERROR && (number < 1 || number > most)) {
        status = SNMP_ERR_WRONGVALUE;
    }
    return status == SNMP_ERR_NOERROR ? status : Refuse(object, status);
}

// Returns 0, or -1 for an OID that is no address and UDP port after a column.
int FindRegistration(std::span<const oid> name, Registration& found) {
    if (name.size() != ColumnLength(fcmgmt::kTrapRegistrationTable) + kTrapIndexLength ||
        GetIPAddrAndPortFromOID(name, found.index.address, found.index.port) != 0 ||
        found.index.port > std::numeric_limits<std::uint16_t>::max()) {
        return -1;
    }
    found.isThere =
        FindTrapIndex(fcmgmt::TrapRowAt, name.last<kTrapIndexLength>(), found.row) == 0 &&
        GetTrapRow(found.row, found.settings) == 0;
    return 0;
}

// The main loop tells the switch.
int Changed(const char* object, int result) {
    return result == 0 ? SNMP_ERR_NOERROR : Refuse(object, SNMP_ERR_COMMITFAILED);
}

int SetFilter(const WriteRequest& request) {
    std::int32_t filter = 0;
    if (const int status = TakeValue(kFilter, request, kMostFilter, filter);
        status != SNMP_ERR_NOERROR || request.action == RESERVE1) {
        return status;
    }
    Registration registration;
    if (FindRegistration(request.name, registration) != 0) {
        return Refuse(kFilter, SNMP_ERR_NOSUCHNAME);
    }
    if (!registration.isThere) {
        return Refuse(kFilter, SNMP_ERR_NOCREATION);
    }
    const auto value = static_cast<std::uint16_t>(filter);
    if (registration.settings.filter == value) {
        return SNMP_ERR_NOERROR;
    }
    return Changed(kFilter, SetTrapRowFilter(registration.row, value));
}

// The first slot that is not in use. Returns 0 or -1.
int FindFreeSlot(std::uint16_t& slot) {
    const TrapTable rows = GetTrapTable();
    const auto unused =
        std::ranges::find(rows, '\0', [](const TrapRow& row) { return row.address[0]; });
    slot = static_cast<std::uint16_t>(unused - rows.begin());
    return unused != rows.end() ? 0 : -1;
}

int SetRowState(const WriteRequest& request) {
    std::int32_t state = 0;
    if (const int status = TakeValue(kRowState, request, kTrapRowActive, state);
        status != SNMP_ERR_NOERROR || request.action == RESERVE1) {
        return status;
    }
    Registration registration;
    if (FindRegistration(request.name, registration) != 0 ||
        (state == kDestroy && !registration.isThere)) {
        return Refuse(kRowState, SNMP_ERR_NOSUCHNAME);
    }
    if (state == kDestroy) {
        return Changed(kRowState, RemoveTrapClient(registration.row));
    }
    const TrapRow& row = registration.settings;
    const auto wanted = static_cast<std::uint32_t>(state);
    if (registration.isThere && row.state == wanted) {
        return SNMP_ERR_NOERROR;
    }
    if (!registration.isThere && FindFreeSlot(registration.row) != 0) {
        return Refuse(kRowState, SNMP_ERR_RESOURCEUNAVAILABLE);
    }
    return Changed(kRowState,
                   AddTrapClient(registration.row, registration.index.address,
                                 registration.index.port, wanted, row.filter, row.version));
}

}  // namespace

int write_trapRegFilter(int action, u_char* value, u_char type, std::size_t length, u_char* current,
                        oid* name, std::size_t nameLength) {
    const auto lock = KeepTrapRows();
    return IsWritingPhase(action)
               ? SetFilter({action, value, type, length, current, {name, nameLength}})
               : SNMP_ERR_NOERROR;
}

int write_trapRegRowState(int action, u_char* value, u_char type, std::size_t length,
                          u_char* current, oid* name, std::size_t nameLength) {
    const auto lock = KeepTrapRows();
    return IsWritingPhase(action)
               ? SetRowState({action, value, type, length, current, {name, nameLength}})
               : SNMP_ERR_NOERROR;
}

}  // namespace snmpmain
