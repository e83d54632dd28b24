#include "src/mibs/column.h"

#include <net-snmp/agent/util_funcs/header_generic.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>

#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/reachability.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

template <typename Predicate>
const Column* FindColumnIf(const ServedTable& table, Predicate predicate) {
    for (const std::span<const Column> columns : table.columns) {
        const auto column = std::ranges::find_if(columns, predicate);
        if (column != columns.end()) {
            return &*column;
        }
    }
    return nullptr;
}

std::span<const oid> RequestOf(const HandlerCall& call) {
    return {call.name, *call.length};
}

// Finds the unit whose id stands behind the variable's name, in an OID of exactly the given length.
int ResolveUnitId(const HandlerCall& call, std::size_t indexLength, Instance& instance) {
    if (*call.length != call.vp->namelen + indexLength) {
        return -1;
    }
    const auto unitId = RequestOf(call).subspan(call.vp->namelen).first<WWN_OID_LEN>();
    if (GetWwnIndexFromWwnOID(unitId, instance.unit) != 0) {
        return -1;
    }
    return CompleteUnit(call, instance);
}

// Reads the value of the instance that a request names.
int ReadExactly(const ServedTable& table, const Column& column, const HandlerCall& call,
                MibValue& value) {
    Instance instance;
    if (table.shape.resolve(call, instance) != 0) {
        return -1;
    }
    // Before the value is asked for: what cannot be read may still be set.
    if (column.write != nullptr) {
        *call.writeMethod = column.write;
    }
    return column.source.read(column, instance, value);
}

// Reads the value of the next row that has one: a row whose value is unavailable does not hide
// those after it. Rows of silent switches are passed over without a question. Of others a request
// takes only so many refusals, and waits in vain only once.
int ReadNext(const ServedTable& table, const Column& column, const HandlerCall& call,
             MibValue& value) {
    using Clock = std::chrono::steady_clock;
    constexpr int kMostRefusals = 64;
    constexpr std::chrono::milliseconds kMostRefused{500};
    constexpr std::chrono::seconds kWait{2};  // at least: longer than any wait for a probe's answer
    Clock::duration refused{};
    int refusals = 0;
    int waits = 0;
    while (refusals < kMostRefusals && refused < kMostRefused && waits < 2) {
        Instance instance;
        if (table.shape.next(call, instance) != 0) {
            return -1;
        }
        const Clock::time_point start = Clock::now();
        if (column.source.read(column, instance, value) == 0) {
            return 0;
        }
        const Clock::duration took = Clock::now() - start;
        if (AdviceFor(instance.domain) == Advice::kAsk) {
            refused += took;
            ++refusals;
        } else if (took >= kWait) {
            ++waits;
        }
    }
    return -1;
}

// A word's code in the column's type.
int SetCode(const Column& column, MibValue& value, std::uint32_t code) {
    if (column.type == ASN_OCTET_STR) {
        return SetOctets(value, std::array{static_cast<std::uint8_t>(code)});
    }
    return SetNumber(value, code);
}

}  // namespace

int ResolveScalar(const HandlerCall& call, Instance&) {
    return header_generic(call.vp, call.name, call.length, call.exact ? 1 : 0, call.valueLength,
                          call.writeMethod) == MATCH_SUCCEEDED
               ? 0
               : -1;
}

int ResolveUnit(const HandlerCall& call, Instance& instance) {
    return ResolveUnitId(call, WWN_OID_LEN, instance);
}

int NextUnit(const HandlerCall& call, Instance& instance) {
    if (GetNextUnit(call.vp, call.name, call.length, instance.unit) != 0) {
        return -1;
    }
    return CompleteUnit(call, instance);
}

int SetNumber(MibValue& value, std::uint32_t number) {
    value.number = number;
    value.data = &value.number;
    value.length = sizeof(value.number);
    static_assert(sizeof(value.number) == 4 && sizeof(int) == 4);
    return 0;
}

int SetText(MibValue& value) {
    value.data = value.text.data();
    value.length = std::strlen(value.text.data());
    return 0;
}

int SetText(MibValue& value, const char* text) {
    CopyText(value.text.data(), value.text.size(), text);
    return SetText(value);
}

int SetOctets(MibValue& value, std::span<const std::uint8_t> octets) {
    value.length = std::min(octets.size(), value.octets.size());
    std::copy_n(octets.begin(), value.length, value.octets.begin());
    value.data = value.octets.data();
    return 0;
}

int SetHexOctets(MibValue& value, const char* hexText, std::size_t size) {
    const std::span octets = std::span(value.octets).first(std::min(size, value.octets.size()));
    MakeBytesFromHexStr(hexText, octets);
    value.data = octets.data();
    value.length = octets.size();
    return 0;
}

int ReadConstant(const Column& column, const Instance&, MibValue& value) {
    return SetNumber(value, column.source.number);
}

int ReadConstantText(const Column& column, const Instance&, MibValue& value) {
    return SetText(value, column.source.text);
}

int ReadConstantOctets(const Column& column, const Instance&, MibValue& value) {
    const auto* octets = reinterpret_cast<const std::uint8_t*>(column.source.text);
    return SetOctets(value, {octets, column.source.number});
}

int QueryNumber(const Column& column, const Instance& instance, MibValue& value) {
    std::uint32_t number = 0;
    if (Ask(instance, column.source.command, value.text, kInteger, &number) != 0) {
        return -1;
    }
    return SetNumber(value, number);
}

int QueryText(const Column& column, const Instance& instance, MibValue& value) {
    return Ask(instance, column.source.command, value.text) == 0 ? SetText(value) : -1;
}

int QueryShortText(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    value.text[kShortStringLength] = '\0';
    return SetText(value);
}

int QueryWord(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetCode(column, value, FirstContained(*column.source.words, value.text.data()));
}

int QueryWholeWord(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetCode(column, value, WholeWord(*column.source.words, value.text.data()));
}

int QueryHexOctets(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetHexOctets(value, value.text.data(), column.source.number);
}

int ReadIndexText(const Column& column, const Instance& instance, MibValue& value) {
    return SetText(value, instance.texts[column.source.place]);
}

int ReadIndexOctets(const Column& column, const Instance& instance, MibValue& value) {
    return SetHexOctets(value, instance.texts[column.source.place], column.source.number);
}

int ReadLastIndex(const Column&, const Instance& instance, MibValue& value) {
    return SetNumber(value, instance.lastIndex);
}

std::uint16_t Ask(const Instance& instance, const char* command, ReplyText& reply,
                  ConversionType type, std::uint32_t* number) {
    if (std::strchr(command, '%') == nullptr) {
        return SwitchMgmtQuery(instance.domain, command, reply, type, number);
    }
    char completed[kCommandSize];
    CompleteCommand(command, instance, completed);
    return SwitchMgmtQuery(instance.domain, completed, reply, type, number);
}

void CompleteCommand(const char* command, const Instance& instance, std::span<char> completed) {
    auto number = instance.numbers.begin();
    auto text = instance.texts.begin();
    std::size_t used = 0;
    while (*command != '\0' && used + 1 < completed.size()) {
        const auto rest = completed.subspan(used);
        if (*command != '%') {
            completed[used++] = *command++;
        } else if (command[1] == 's') {
            used += static_cast<std::size_t>(FormatText(rest, "%s", *text++));
            command += 2;
        } else {
            used += static_cast<std::size_t>(FormatText(rest, "%u", *number++));
            command += 2;
        }
    }
    completed[used] = '\0';
}

const Column* FindColumn(const ServedTable& table, const char* object) {
    return FindColumnIf(table, [&](const Column& column) {
        return column.object != nullptr && std::strcmp(column.object, object) == 0;
    });
}

bool MibValue::Name::IsFor(std::span<const oid> other) const {
    return std::ranges::equal(std::span(names).first(length), other);
}

void MibValue::Name::Set(std::span<const oid> other) {
    length = other.size() <= names.size() ? other.size() : 0;
    std::copy_n(other.begin(), length, names.begin());
}

u_char* Serve(const ServedTable& table, const HandlerCall& call, MibValue& value) {
    *call.valueLength = sizeof(value.number);
    const Column* column = FindColumnIf(
        table, [&](const Column& candidate) { return candidate.magic == call.vp->magic; });
    if (column == nullptr) {
        if (table.source == nullptr) {
            snmp_set_detail("");
        } else {
            TraceLog(kSevere, "%s %d:Unknown oid sent to %.*s", table.source, __LINE__,
                     static_cast<int>(std::strcspn(table.source, ".")), table.source);
        }
        return nullptr;
    }
    if (column->source.read == nullptr) {
        return nullptr;
    }
    value.answers.length = 0;
    if (column->access == Access::kReadCreate) {
        *call.writeMethod = column->write;
    }
    if ((call.exact ? ReadExactly(table, *column, call, value)
                    : ReadNext(table, *column, call, value)) != 0) {
        return nullptr;
    }
    if (column->write != nullptr) {
        value.answers.Set(RequestOf(call));
    }
    *call.valueLength = value.length;
    // The library reads the value only, though its type does not say so.
    return static_cast<u_char*>(const_cast<void*>(value.data));
}

int CompleteUnit(const HandlerCall& call, Instance& instance) {
    instance.lastIndex = static_cast<std::uint32_t>(call.name[*call.length - 1]);
    return GetDomainIdFromIndex(instance.unit, instance.domain);
}

int ResolveUnitIndex(const HandlerCall& call, Instance& instance) {
    return ResolveUnitId(call, kUnitRowIndexLength, instance);
}

int ResolveUnitRow(const HandlerCall& call, Instance& instance) {
    if (ResolveUnitIndex(call, instance) != 0) {
        return -1;
    }
    instance.row = instance.lastIndex - 1;
    return 0;
}

}  // namespace snmpmain
