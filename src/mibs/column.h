// MIB objects as data: what a column is called, what type it has, and how its value comes about.
// Each module lists its columns in constexpr tables; the array that the SNMP library wants and the
// handlers' answers are made from them. Main thread only.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "src/base/words.h"
#include "src/link/link.h"
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
    std::array<std::uint32_t, 2> numbers = {};
    std::array<const char*, 3> texts = {"", "", ""};
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
    std::size_t place = 0;         // among the instance's texts
    const char* origin = nullptr;  // in words, where no single command tells
};

// A SET of what is read-create may make the instance: nothing need be there before.
enum class Access : std::uint8_t { kReadOnly, kReadWrite, kReadCreate };

struct Column {
    std::uint8_t suffix;  // last sub-identifier of the object
    std::uint8_t magic;
    std::uint8_t type;  // ASN.1 type
    Access access;
    const char* object;  // name in the MIB; null where it has none
    ValueSource source = {};
    WriteMethod* write = nullptr;  // what handlers hand to the library; null: nothing
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

// A command as it stands in a column, with no more places than an instance can fill.
consteval const char* Checked(const char* command) {
    std::size_t numbers = 0;
    std::size_t texts = 0;
    for (const char* at = command; at != nullptr && *at != '\0'; ++at) {
        if (*at == '%') {
            ++(*++at == 's' ? texts : numbers);
        }
    }
    if (numbers > Instance{}.numbers.size() || texts > Instance{}.texts.size()) {
        throw "a command has too many places";
    }
    return command;
}

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
// A function of its own. The command is the one that the value rests on, where that is a single
// one: the function takes it from here, or, where it stands below the MIBs, it is told for the
// record.
consteval ValueSource Computed(ValueReader read, const char* command = nullptr) {
    return {.read = read, .command = Checked(command)};
}
// The same for a value of several commands, or of what the agent keeps: in words for those who want
// to know.
consteval ValueSource Derived(ValueReader read, const char* origin) {
    return {.read = read, .origin = origin};
}
consteval ValueSource NeverAnswers() {
    return {};
}

// Objects with a common OID and handler, in the order of registration.
struct ColumnGroup {
    std::array<std::uint8_t, 6> prefix;  // below the module's OID
    std::uint8_t prefixLength;
    FindVarMethod* handler;
    std::span<const Column> columns;
};

// What a handler is called with.
struct HandlerCall {
    variable* vp;
    oid* name;
    std::size_t* length;
    bool exact;
    std::size_t* valueLength;
    WriteMethod** writeMethod;
};

// How a table resolves instances; both return 0 or -1. `resolve` takes a request for exactly one
// instance; `next` finds the first one behind the request and rewrites it.
struct TableShape {
    int (*resolve)(const HandlerCall& call, Instance& instance);
    int (*next)(const HandlerCall& call, Instance& instance);
};

// A table or group of scalars as its handler serves it.
struct ServedTable {
    // What messages call the module's source; up to its dot it is the module's name. Null: nothing
    // is said of unknown objects.
    const char* source;
    std::span<const std::span<const Column>> columns;
    TableShape shape;
};

// The column of an object by its name, or null.
const Column* FindColumn(const ServedTable& table, const char* object);

// Serves one request: finds the column by the variable's magic, resolves the instance, reads the
// value. Returns the value, or null for no such instance.
u_char* Serve(const ServedTable& table, const HandlerCall& call, MibValue& value);

// Shapes that several tables have.
int ResolveScalar(const HandlerCall& call, Instance& instance);
int ResolveUnit(const HandlerCall& call, Instance& instance);
int NextUnit(const HandlerCall& call, Instance& instance);
constexpr TableShape kScalarShape{ResolveScalar, ResolveScalar};  // instance 0
constexpr TableShape kUnitShape{ResolveUnit, NextUnit};           // index: unit id

// Resolves an exact request for a unit id and a number + 1: sets all of `instance`.
int ResolveUnitRow(const HandlerCall& call, Instance& instance);

// The same for an index that is taken as it stands; `row` is left alone.
int ResolveUnitIndex(const HandlerCall& call, Instance& instance);

// Completes an instance whose unit is known. Returns 0, or -1 when the unit is not in use.
int CompleteUnit(const HandlerCall& call, Instance& instance);

}  // namespace snmpmain
