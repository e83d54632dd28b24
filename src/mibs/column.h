// MIB objects as data: what a column is called, what type it has, how its value comes about and
// what managers may set it to. Each module lists its columns in constexpr tables; the array that
// the SNMP library wants, the handlers' answers and the write methods are made from them. Main
// thread only.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "src/base/words.h"
#include "src/link/link.h"
#include "src/mibs/setting.h"
#include "src/snmpoid/snmp_headers.h"
#include "src/snmptables/row_numbers.h"

namespace snmpmain {

// A module's result buffer: what a handler returns points into it and holds until the module's next
// request.
struct MibValue {
    // Whose value it is, kept for those that may be written.
    struct Name {
        std::array<oid, 40> names;
        std::size_t length = 0;  // 0: of no writable instance

        bool IsFor(std::span<const oid> other) const;
        void Set(std::span<const oid> other);  // a longer one than any of these tables' is not kept
    };
    Name answers = {};

    const void* data = nullptr;
    std::size_t length = 0;  // octets

    std::uint32_t number = 0;  // INTEGER and TimeTicks travel as 4 octets
    ReplyText text{};
    std::array<std::uint8_t, 64> octets{};
};

// Each makes one of the buffer's parts the value and returns 0.
int SetNumber(MibValue& value, std::uint32_t number);
int SetText(MibValue& value);  // the text in value.text
int SetText(MibValue& value, const char* text);
int SetOctets(MibValue& value, std::span<const std::uint8_t> octets);
// `size` octets from a hexadecimal text, zeros where it ends early.
int SetHexOctets(MibValue& value, const char* hexText, std::size_t size);

// The instance that a request asks for.
struct Instance {
    std::uint16_t domain = 0;     // domain id that commands go to, 0 for the local switch
    std::uint16_t unit = 0;       // row of connUnitTbl
    std::uint32_t row = 0;        // number within the unit, from 0
    std::uint32_t lastIndex = 0;  // last sub-identifier of the instance, as it stands
    SensorRef part = {};          // what a sensor or revision row refers to

    // What the instance is called in commands, in the order of their places: numbers stand for
    // "%d" and "%i", texts for "%s". The texts belong to the table that the row comes from.
    std::array<std::uint32_t, kMostNumbers> numbers = {};
    std::array<const char*, kMostTexts> texts = {"", "", ""};
};

// Sends a command, completed with the instance's numbers and texts, to the instance's switch.
// Returns as SwitchMgmtQuery does.
std::uint16_t Ask(const Instance& instance, const char* command, ReplyText& reply,
                  ConversionType type = kString, std::uint32_t* number = nullptr);

// Writes the command with the instance's numbers and texts in their places. One that does not fit
// is cut, and too long to be sent then.
void CompleteCommand(const char* command, const Instance& instance, std::span<char> completed);

struct Column;

// Gives a column's value for one instance. Returns 0, or -1 for no such instance.
using ValueReader = int (*)(const Column& column, const Instance& instance, MibValue& value);

// Where a value comes from: made by one of the functions below.
struct ValueSource {
    ValueReader read = nullptr;  // null: never answers
    const char* command = nullptr;
    const WordTable* words = nullptr;
    std::uint32_t number = 0;
    const char* text = nullptr;
    std::size_t place = 0;  // among the instance's texts

    // For those who want to know, where no single command tells.
    const char* origin = nullptr;
    std::span<const char* const> commands = {};
};

struct Column {
    std::uint8_t suffix;           // last sub-identifier of the object
    std::uint8_t type;             // ASN.1 type
    const char* object = nullptr;  // name in the MIB; null where only tools/ needs one
    ValueSource source = {};
    Setting set = {};
};

// Strings that managers show in one line are cut at this length.
constexpr std::size_t kShortStringLength = 79;

int ReadConstant(const Column& column, const Instance& instance, MibValue& value);
int ReadConstantText(const Column& column, const Instance& instance, MibValue& value);
int ReadConstantOctets(const Column& column, const Instance& instance, MibValue& value);
int QueryNumber(const Column& column, const Instance& instance, MibValue& value);
int QueryText(const Column& column, const Instance& instance, MibValue& value);
int QueryShortText(const Column& column, const Instance& instance, MibValue& value);
int QueryWord(const Column& column, const Instance& instance, MibValue& value);
int QueryWholeWord(const Column& column, const Instance& instance, MibValue& value);
int QueryHexOctets(const Column& column, const Instance& instance, MibValue& value);
int ReadIndexText(const Column& column, const Instance& instance, MibValue& value);
int ReadIndexOctets(const Column& column, const Instance& instance, MibValue& value);
int ReadLastIndex(const Column& column, const Instance& instance, MibValue& value);

// A constant, without a query.
consteval ValueSource Constant(std::uint32_t number) {
    return {.read = ReadConstant, .number = number};
}
consteval ValueSource ConstantText(const char* text) {
    return {.read = ReadConstantText, .text = text};
}
template <std::size_t kSize>
consteval ValueSource ConstantOctets(const char (&octets)[kSize]) {
    return {.read = ReadConstantOctets, .number = kSize - 1, .text = octets};
}
// The reply to a command sent to the instance's switch: as a number, as it stands, or cut to 79
// characters.
consteval ValueSource NumberOf(const char* command) {
    return {.read = QueryNumber, .command = Checked(command)};
}
consteval ValueSource TextOf(const char* command) {
    return {.read = QueryText, .command = Checked(command)};
}
consteval ValueSource ShortTextOf(const char* command) {
    return {.read = QueryShortText, .command = Checked(command)};
}
// The number of the first word that the reply contains, or of the word that it is; one octet where
// the column is an OCTET STRING.
consteval ValueSource WordOf(const char* command, const WordTable& words) {
    return {.read = QueryWord, .command = Checked(command), .words = &words};
}
consteval ValueSource WordOf(const WordQuestion& question) {
    return WordOf(question.command, question.words);
}
consteval ValueSource WholeWordOf(const char* command, const WordTable& words) {
    return {.read = QueryWholeWord, .command = Checked(command), .words = &words};
}
// `size` octets from the reply's hexadecimal text, zeros where it ends early.
consteval ValueSource HexOctetsOf(const char* command, std::uint32_t size) {
    return {.read = QueryHexOctets, .command = Checked(command), .number = size};
}
// The instance's text at `place`, as it stands or as `size` octets.
consteval ValueSource IndexText(std::size_t place) {
    return {.read = ReadIndexText, .place = place};
}
consteval ValueSource IndexOctets(std::size_t place, std::uint32_t size) {
    return {.read = ReadIndexOctets, .number = size, .place = place};
}
// The last sub-identifier of the instance.
consteval ValueSource LastIndex() {
    return {.read = ReadLastIndex};
}
// A function of its own, for the reply to a command. The function takes the command from here, or,
// where it stands below the MIBs, from where the column has it too.
consteval ValueSource Computed(ValueReader read, const char* command) {
    return {.read = read, .command = Checked(command)};
}
// The same for a value of several commands, or of what the agent keeps, told in words.
consteval ValueSource Derived(ValueReader read, const char* origin,
                              std::span<const char* const> commands = {}) {
    return {.read = read, .origin = origin, .commands = commands};
}
consteval ValueSource Derived(ValueReader read, std::span<const char* const> commands) {
    return Derived(read, nullptr, commands);
}
consteval ValueSource NeverAnswers() {
    return {};
}

}  // namespace snmpmain
