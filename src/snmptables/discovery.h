// Discovery: the walk over the fabric that fills connUnitTbl, at start-up and after every change,
// and the reading of the units' statuses that follows it. Requests are served from the table in
// force until the new one is whole. Main thread only.
#pragma once

#include <cstdint>
#include <span>

#include "src/base/progress.h"
#include "src/link/notify_queue.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {

// Empties the table, waits for the local switch as long as it takes, and walks the fabric once;
// announces it on standard output. Returns 0 or -1.
int InitConnUnitTable();

// Walks the fabric once: asks for every domain, greets the units (the local one only, unless
// proxying is enabled) and replaces the table. A unit that is in the table and still listed stays
// as it was when the walk does not reach it, unless it has been silent for ten seconds. Returns 0,
// or -1 with the table as it was.
int UpdateConnUnitTable();

// The walk with up to three repetitions, one second apart, with notifications off meanwhile; then
// reports every unit that has left. A step is one command. kFailed, with a line in the system log,
// when the third walk failed as well; at once while the local switch does not answer.
void BeginConnUnitTableRefresh();
Progress RefreshConnUnitTable();

// Asks a unit for a sign of life, completes its row and says Hello, whose answer is noted when it
// comes. Returns 0, or -1 when there was no sign.
// "Get.Oper.Switch.Nop", "Set.Cmd.Snmp.PrivateEvent.Hello"
int HelloUnit(std::uint16_t domain, ConnUnitEntry& row);

// The same for a unit in the table that answers again.
void GreetUnit(std::uint16_t domain);

// One step, of one query, of the refresh of the units' statuses in row order; does nothing unless
// `unitStatusRefreshPending`. Always 0.
int RefreshNextUnitStatus();

// 1 while statuses of units remain to be read: of all after a walk, of one after WantUnitStatus.
extern std::uint16_t unitStatusRefreshPending;
void WantUnitStatus(std::uint16_t domain);

// What a refresh asks of the modules above. The departure handler receives a record {local domain,
// kind 38, WWN} for each unit that has left the fabric; the registration handler has all units told
// to notify (true) or the remote ones to stop (false). Null for none.
constexpr std::uint16_t kUnitDeletedKind = 38;
void SetDepartureHandler(void (*handler)(NotificationRecord& record));
void SetRegistrationHandler(void (*handler)(bool on));

// The domains in the order in which the last walk that replaced the table has met them.
std::span<const std::uint16_t> WalkedDomains();

// Forgets a refresh under way; part of start-up.
void ResetDiscovery();

}  // namespace snmpmain
