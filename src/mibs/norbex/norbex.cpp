#include "src/mibs/norbex/norbex.h"

#include "src/mibs/shared_values.h"
#include "src/snmptables/part_status.h"

namespace snmpmain {
namespace {

// The commands for reading name blade 0 themselves: these switches have their ports there.
int QueryPortWord(const Column& column, const Instance& instance, MibValue& value) {
    Instance port = instance;
    port.numbers[0] = instance.numbers[1];
    return QueryWord(column, port, value);
}

consteval ValueSource PortWordOf(const WordQuestion& question) {
    ValueSource source = WordOf(question);
    source.read = QueryPortWord;
    return source;
}

// Unlike connUnitPortControl, they change the port's state at once and do not become configuration.
constexpr Choice kAdminStateSettings[] = {
    {1, "Cmd.UserPort.%d.%d.AdminState.Online"},
    {2, "Cmd.UserPort.%d.%d.AdminState.Offline"},
    {3, "Cmd.UserPort.%d.%d.AdminState.Diagnostics"},
};

constexpr Column kPorts[] = {
    {kNxFxPortPhysAdminStatus, ASN_INTEGER, "nxFxPortPhysAdminStatus",
     PortWordOf(kPortAdminQuestion),
     ReportedLaterAs("", OneOf(kAdminStateSettings, SendAdminCommand))},
    {kNxFxPortPhysOperStatus, ASN_INTEGER, "nxFxPortPhysOperStatus", PortWordOf(kPortOperQuestion)},
};

constexpr auto kPrefix = OidOf(kNorbexOid);

MibValue result;

constexpr RegisteredTable kTables[] = {{norbex::kPortTable, Guarded<var_NorbexMIB>}};

}  // namespace

constinit const MibModule norbex::kModule{"NorbexMIB", nullptr, kPrefix, kTables, result};

constinit const ServedTable norbex::kPortTable =
    Table(norbex::kModule, kNxFxPortPhysEntry, 5, kPorts, kModulePortShape);

void init_NorbexMIB() {
    static auto NorbexMIB_variables = MakeVariables<variable4>(norbex::kModule);
    RegisterModule(norbex::kModule, NorbexMIB_variables);
}

}  // namespace snmpmain
