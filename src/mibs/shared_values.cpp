#include "src/mibs/shared_values.h"

#include <array>

#include "src/mibs/conversions.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/row_numbers.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {

const char* WwnOfUnit(const Instance& instance) {
    const char* wwn = IsLocalDomain(instance.domain) ? AskText(instance.domain, Fact::kWwn)
                                                     : GetWWNfromIndex(instance.unit);
    return wwn == nullptr || wwn[0] == '\0' ? kNoWwn : wwn;
}

int QueryClasses(const Column& column, const Instance& instance, MibValue& value) {
    if (QueryText(column, instance, value) != 0) {
        return -1;
    }
    return SetOctets(value, std::array{ReadClassesOfService(value.text.data())});
}

int ReadPortCount(const Column&, const Instance& instance, MibValue& value) {
    const std::uint32_t ports = AskNumber(instance.domain, Fact::kMaxPorts);
    return WasAnswered() ? SetNumber(value, ports) : -1;
}

int ReadUnitCount(const Column&, const Instance&, MibValue& value) {
    return SetNumber(value, GetUnitCount());
}

int ReadUnitWwn(const Column&, const Instance& instance, MibValue& value) {
    return SetHexOctets(value, WwnOfUnit(instance), kWwnSize);
}

int ResolveModulePort(const HandlerCall& call, Instance& instance) {
    std::uint16_t port = 0;
    if (CheckModulePortOID(call.vp, call.name, *call.length, &instance.unit, &port) != 0 ||
        CompleteUnit(call, instance) != 0) {
        return -1;
    }
    instance.row = port;
    auto& [module, number] = instance.numbers;
    return GetModuleAndPort(instance.domain, port, module, number);
}

// The walk has seen that the unit has the port; all ports are in module 0.
int NextModulePort(const HandlerCall& call, Instance& instance) {
    if (GetNextModulePort(call.vp, call.name, call.length, instance.unit, instance.row) != 0) {
        return -1;
    }
    instance.numbers = {0, instance.row};
    return CompleteUnit(call, instance);
}

}  // namespace snmpmain
