#include "src/mibs/NorbexMIB/NorbexMIB.h"

#include <array>

#include "src/mibs/shared_values.h"

namespace snmpmain {
namespace {

// What the handler returns points into this.
MibValue result;

// The commands name blade 0 themselves: these switches have their ports there.
constexpr Column kPorts[] = {
    {3, 5, ASN_INTEGER, Access::kReadWrite, "nxFxPortPhysAdminStatus",
     Computed(ReadAdminStatusOfPort, "Get.Oper.UserPort.0.%d.AdminState"),
     write_nxFxPortPhysAdminStatus},
    {4, 6, ASN_INTEGER, Access::kReadOnly, "nxFxPortPhysOperStatus",
     Computed(ReadOperStatusOfPort, "Get.Oper.UserPort.0.%d.OperState")},
};

constexpr std::span<const Column> kPortColumns = kPorts;

constexpr WrittenObject::Choice kAdminStates[] = {
    {1, Checked("Cmd.UserPort.%d.%d.AdminState.Online")},
    {2, Checked("Cmd.UserPort.%d.%d.AdminState.Offline")},
    {3, Checked("Cmd.UserPort.%d.%d.AdminState.Diagnostics")},
};

int SendAction(std::uint32_t domain, const char* action, ConfigMode) {
    return SendAdminCommand(domain, action);
}

u_char* Handle(variable* vp, oid* name, std::size_t* length, int exact, std::size_t* valueLength,
               WriteMethod** writeMethod) {
    return Serve(norbex::kPortTable, {vp, name, length, exact != 0, valueLength, writeMethod},
                 result);
}

const std::array kGroups = {ColumnGroup{{10, 1, 1}, 3, Guarded<Handle>, kPortColumns}};

}  // namespace

constinit const ServedTable norbex::kPortTable{nullptr, {&kPortColumns, 1}, kModulePortShape};

constinit const WrittenObject norbex::kPortPhysAdminStatus{.name = "nxFxPortPhysAdminStatus",
                                                           .find = FindWrittenModulePort,
                                                           .send = SendAction,
                                                           .choices = kAdminStates,
                                                           .buffer = &result,
                                                           .table = &norbex::kPortTable,
                                                           .laterName = ""};

constinit FindVarMethod* const var_NorbexMIB = Handle;

const MibModule& norbex::GetModule() {
    static constexpr oid kPrefix[] = {1, 3, 6, 1, 4, 1, VENDOR_ENTERPRISE_NUMBER, 1, 3};
    static const MibModule module{"NorbexMIB", kPrefix, kGroups};
    return module;
}

void init_NorbexMIB() {
    static std::array<variable4, 2> NorbexMIB_variables{};
    RegisterModule(norbex::GetModule(), NorbexMIB_variables);
}

}  // namespace snmpmain
