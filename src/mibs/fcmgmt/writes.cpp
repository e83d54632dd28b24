#include "src/mibs/fcmgmt/writes.h"

#include "src/mibs/fcmgmt/tables.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr std::size_t kNameLength = 32;
constexpr std::size_t kTextLength = 64;

using Choice = WrittenObject::Choice;

constexpr Choice kUnitControls[] = {
    {3, "Cmd.Switch.Reset"},  // cold start
    {5, "Config.Switch.AdminState.Offline"},
    {6, "Config.Switch.AdminState.Online"},
};

constexpr Choice kEventFilters[] = {
    {1, "Cmd.Switch.SysLogLevel.None"},     {2, "Cmd.Switch.SysLogLevel.Critical"},
    {3, "Cmd.Switch.SysLogLevel.Critical"}, {4, "Cmd.Switch.SysLogLevel.Critical"},
    {5, "Cmd.Switch.SysLogLevel.Warn"},     {6, "Cmd.Switch.SysLogLevel.Warn"},
    {7, "Cmd.Switch.SysLogLevel.Info"},     {8, "Cmd.Switch.SysLogLevel.Info"},
    {9, "Cmd.Switch.SysLogLevel.Debug"},    {10, "Cmd.Switch.SysLogLevel.Debug"},
};

constexpr Choice kPortControls[] = {
    {6, Checked("Config.UserPort.%d.%d.AdminState.Offline")},
    {7, Checked("Config.UserPort.%d.%d.AdminState.Online")},
    {8, Checked("Cmd.UserPort.%d.%d.ClearCounters")},
};

constexpr const char* kPortControlName = "connUnitPortControl";
constexpr const char* kSystemUrlName = "systemUrl";
constexpr const char* kAddressSetting = "Config.System.IPAddress.%s";
constexpr const char* kUrlFailure = "SNMP_ERR_COMMITFAILED\n";

}  // namespace

constinit const WrittenObject kUnitName{.name = "connUnitName",
                                        .find = FindWrittenUnit,
                                        .longest = kNameLength,
                                        .textSetting = Checked("Config.Switch.SymName.%s"),
                                        .buffer = &result,
                                        .table = &kUnitTable};

constinit const WrittenObject kUnitInfo{.name = "connUnitInfo",
                                        .find = FindWrittenUnit,
                                        .longest = kTextLength,
                                        .textSetting = Checked("Config.Switch.Comment.%s"),
                                        .buffer = &result,
                                        .table = &kUnitTable};

constinit const WrittenObject kUnitControl{.name = "connUnitControl",
                                           .find = FindWrittenUnit,
                                           .choices = kUnitControls,
                                           .buffer = &result,
                                           .table = &kUnitTable};

constinit const WrittenObject kUnitContact{.name = "connUnitContact",
                                           .find = FindWrittenUnit,
                                           .mode = ConfigMode::kSnmpSetup,
                                           .longest = kTextLength,
                                           .textSetting = Checked("Config.Snmp.Contact.%s"),
                                           .buffer = &result,
                                           .table = &kUnitTable};

constinit const WrittenObject kUnitLocation{.name = "connUnitLocation",
                                            .find = FindWrittenUnit,
                                            .mode = ConfigMode::kSnmpSetup,
                                            .longest = kTextLength,
                                            .textSetting = Checked("Config.Snmp.Location.%s"),
                                            .buffer = &result,
                                            .table = &kUnitTable};

constinit const WrittenObject kUnitEventFilter{.name = "connUnitEventFilter",
                                               .find = FindWrittenUnit,
                                               .choices = kEventFilters,
                                               .buffer = &result,
                                               .table = &kUnitTable};

constinit const WrittenObject kPortControl{.name = kPortControlName,
                                           .find = FindWrittenPort,
                                           .choices = kPortControls,
                                           .buffer = &result,
                                           .table = &kPortTable};

// Its later messages name the port control, as they always have.
constinit const WrittenObject kPortName{
    .name = "connUnitPortName",
    .find = FindWrittenPort,
    .longest = kNameLength,
    .textSetting = Checked("Config.UserPort.%d.%d.SymPortName.%s"),
    .buffer = &result,
    .table = &kPortTable,
    .laterName = kPortControlName};

constinit const WrittenObject kSystemUrl{.name = kSystemUrlName,
                                         .find = FindWrittenLocalSwitch,
                                         .longest = kNameLength,
                                         .textSetting = Checked(kAddressSetting),
                                         .sendFailure = kUrlFailure};

constinit const WrittenObject kUnitUrl{.name = "connUnitUrl",
                                       .find = FindWrittenLocalSwitch,
                                       .longest = kNameLength,
                                       .textSetting = Checked(kAddressSetting),
                                       .laterName = kSystemUrlName,
                                       .sendFailure = kUrlFailure};

}  // namespace snmpmain::fcmgmt
