// The replies by which something was done last: snmpd's configuration written, the trap
// destinations read, the unit table filled. The sweep asks the same again and compares the raw
// replies, not what was made of them: a value that was rewritten or left out would differ for ever.
// Any thread.
#pragma once

#include <cstdint>
#include <string>

#include "src/link/link.h"

namespace snmpmain {

// Who did it.
enum class Worker : std::uint8_t { kSwitchInfo, kUnitTable, kSnmpdConf, kTrapDestinations };

// Keeps a reply of the local switch to a command, asked with this conversion; a refusal is one.
// Where there was no answer, the next one counts as another.
void NoteWorkedWith(Worker worker, const char* command, ConversionType type, const Answer& answer,
                    const ReplyText& reply);

// The work failed: whatever the switch replies now, it is to be done again.
void NoteWorkFailed(Worker worker);

// What has been noted, by number.
struct WorkedWith {
    Worker worker;
    std::string command;
    ConversionType type;
};
std::size_t CountWorkedWith();
bool GetWorkedWith(std::size_t number, WorkedWith& noted);

// Whether a reply is another than the one noted.
bool DiffersFromWorkedWith(std::size_t number, const Answer& answer, const ReplyText& reply);

// Forgets everything; part of start-up.
void ResetWorkedWith();

}  // namespace snmpmain
