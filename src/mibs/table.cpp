#include "src/mibs/table.h"

#include <net-snmp/agent/util_funcs/header_generic.h>

#include <chrono>

#include "src/base/main_thread.h"
#include "src/base/trace_log.h"
#include "src/link/reachability.h"
#include "src/snmpoid/index_codec.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/unit_table.h"

namespace snmpmain {
namespace {

std::span<const oid> RequestOf(const HandlerCall& call) {
    return {call.name, *call.length};
}

// Finds the unit whose id stands after the variable's name, in an OID of exactly the given length.
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

void OfferWriting(const ServedColumns& served, const Column& column, const HandlerCall& call) {
    if (column.set.access != Access::kReadOnly) {
        *call.writeMethod = column.set.method != nullptr ? column.set.method : served.write;
    }
}

// Reads the value of the instance that a request names.
int ReadExactly(const ServedColumns& served, const Column& column, const HandlerCall& call) {
    Instance instance;
    if (served.table.shape.resolve(call, instance) != 0) {
        return -1;
    }
    // Before the value is asked for: what cannot be read may still be set.
    OfferWriting(served, column, call);
    return column.source.read(column, instance, served.table.module.result);
}

// Reads the value of the next row that has one: a row whose value is unavailable does not hide
// those after it. Rows of silent switches are passed over without a question. Of others a request
// takes only so many refusals, and waits in vain only once.
int ReadNext(const ServedTable& table, const Column& column, const HandlerCall& call) {
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
        if (column.source.read(column, instance, table.module.result) == 0) {
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

u_char* ServeColumn(const ServedColumns& served, const Column& column, const HandlerCall& call) {
    if (column.source.read == nullptr) {
        return nullptr;
    }
    MibValue& value = served.table.module.result;
    value.answers.length = 0;
    if (column.set.access == Access::kReadCreate) {
        OfferWriting(served, column, call);
    }
    if ((call.exact ? ReadExactly(served, column, call) : ReadNext(served.table, column, call)) !=
        0) {
        return nullptr;
    }
    if (column.set.access != Access::kReadOnly) {
        value.answers.Set(RequestOf(call));
    }
    *call.valueLength = value.length;
    // The library reads the value only, though its type does not say so.
    return static_cast<u_char*>(const_cast<void*>(value.data));
}

}  // namespace

std::size_t ColumnLength(const ServedTable& table) {
    return table.module.prefix.size() + LengthOf(table.entry) + 1;
}

u_char* Serve(std::span<const ServedColumns> tables, const HandlerCall& call) {
    AssertMainThread();
    *call.valueLength = sizeof(MibValue::number);
    for (const ServedColumns& served : tables) {
        const auto [module, entry, firstMagic, columns, shape] = served.table;
        if (call.vp->magic >= firstMagic && call.vp->magic < firstMagic + columns.size()) {
            return ServeColumn(served, columns[call.vp->magic - firstMagic], call);
        }
    }
    const MibModule& module = tables.front().table.module;
    if (module.source == nullptr) {
        snmp_set_detail("");
    } else {
        TraceLog(kSevere, "%s %d:Unknown oid sent to %s", module.source, __LINE__, module.name);
    }
    return nullptr;
}

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
