// The replies by which something was done last: snmpd's configuration written, the trap
// destinations read, the unit table filled. The sweep asks the same again and compares the raw
// replies, not what was made of them: a value that was rewritten or left out would differ for ever.
// Any thread.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>

#include "src/link/link.h"

namespace snmpmain {

// Who did it.
enum class Worker : std::uint8_t {
    kSwitchInfo,
    kUnitTable,
    kSnmpdConf,
    kTrapDestinations,
    kNameServer
};
constexpr std::size_t kWorkers = 5;
using Workers = std::bitset<kWorkers>;

// The work begins anew: what it asked last time it may not ask this time.
void ForgetWorkedWith(Worker worker);

// Keeps a reply of the local switch to a command, asked with this conversion; a refusal is one.
// Where there was no answer, the next one counts as another.
void NoteWorkedWith(Worker worker, const char* command, ConversionType type, const Answer& answer,
                    const ReplyText& reply);

// The work failed: whatever the switch replies now, it is to be done again.
void NoteWorkFailed(Worker worker);

// The commands that have been noted, by number. False for one that nobody works with any more.
std::size_t CountWorkedWith();
bool GetWorkedWith(std::size_t number, std::string& command, ConversionType& type);

// Those who worked with another reply to that command. None where there was no answer.
Workers WhoWorkedWithAnother(std::size_t number, const Answer& answer, const ReplyText& reply);

// What stands for a reply here, since pass phrases are not kept: a hash, nothing for no answer.
std::optional<std::size_t> HashOfReply(const Answer& answer, const ReplyText& reply);

// Forgets everything; for tests.
void ResetWorkedWith();

}  // namespace snmpmain
