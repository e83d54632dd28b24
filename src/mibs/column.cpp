#include "src/mibs/column.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "src/base/text.h"
#include "src/snmpoid/index_codec.h"

namespace snmpmain {
namespace {

// A word's code in the column's type.
int SetCode(const Column& column, MibValue& value, std::uint32_t code) {
    if (column.type == ASN_OCTET_STR) {
        return SetOctets(value, std::array{static_cast<std::uint8_t>(code)});
    }
    return SetNumber(value, code);
}

}  // namespace

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

bool MibValue::Name::IsFor(std::span<const oid> other) const {
    return std::ranges::equal(std::span(names).first(length), other);
}

void MibValue::Name::Set(std::span<const oid> other) {
    length = other.size() <= names.size() ? other.size() : 0;
    std::copy_n(other.begin(), length, names.begin());
}

}  // namespace snmpmain
