#include "src/mibs/fcmgmt/tables.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain::fcmgmt {
namespace {

// The version of the active firmware. Firmware that does not know the first command names its
// active image, whose version a third one gives.
int AskActiveVersion(const Instance& instance, MibValue& value) {
    if (SwitchMgmtQuery(instance.domain, "Get.Oper.Switch.ActiveVer", value.text, kString) == 0) {
        return 0;
    }
    ReplyText image;
    if (SwitchMgmtQuery(instance.domain, "Get.Oper.Switch.ActiveVersion", image, kString) != 0) {
        return -1;
    }
    return SwitchMgmtQueryf(instance.domain, value.text, kString, nullptr,
                            "Get.Oper.Switch.SwVersion.%s", image.data()) == 0
               ? 0
               : -1;
}

int AskRevision(const Instance& instance, MibValue& value) {
    switch (instance.part.kind) {
        case kActiveFirmwareRevision:
            return AskActiveVersion(instance, value);
        case kFlasherRevision:
            return SwitchMgmtQuery(instance.domain, "Get.Oper.Switch.FlasherVersion", value.text,
                                   kString);
        default:
            return SwitchMgmtQueryf(instance.domain, value.text, kString, nullptr,
                                    "Get.Oper.Blade.%d.AsicVersion", instance.part.blade);
    }
}

int ReadRevision(const Column&, const Instance& instance, MibValue& value) {
    return AskRevision(instance, value) == 0 ? SetText(value) : SetText(value, "<Unknown>");
}

int ReadDescription(const Column&, const Instance& instance, MibValue& value) {
    switch (instance.part.kind) {
        case kActiveFirmwareRevision:
            return SetText(value, "Active Firmware image");
        case kFlasherRevision:
            return SetText(value, "Flasher Shell Version");
        default:
            return ReadBladePartName(instance, instance.part.blade, "Hardware ASIC Version",
                                     "Hardware ASIC Version.", value);
    }
}

constexpr Column kRevisions[] = {
    {1, 41, ASN_OCTET_STR, Access::kReadOnly, "connUnitRevsUnitId",
     Derived(ReadUnitId, "the unit's WWN")},
    {2, 42, ASN_INTEGER, Access::kReadOnly, "connUnitRevsIndex", LastIndex()},
    {3, 43, ASN_OCTET_STR, Access::kReadOnly, "connUnitRevsRevId",
     Derived(ReadRevision,
             "`Get.Oper.Switch.ActiveVer` or `.ActiveVersion` and `.SwVersion.%s`; "
             "`.FlasherVersion`; `Get.Oper.Blade.%d.AsicVersion`")},
    {4, 44, ASN_OCTET_STR, Access::kReadOnly, "connUnitRevsDescription",
     Derived(ReadDescription, "kind of the revision; `Get.Oper.Blade.%d.Type`, `.Instance`")},
};

int ResolveRevision(const HandlerCall& call, Instance& instance) {
    if (ResolveUnitRow(call, instance) != 0) {
        return -1;
    }
    return GetRevisionFromIndex(instance.domain, instance.row, instance.part);
}

int NextRevision(const HandlerCall& call, Instance& instance) {
    if (GetNextUnitRevision(call.vp, call.name, call.length, instance.unit, instance.row) != 0) {
        return -1;
    }
    instance.part = RevisionOfFirstChassis(instance.row);  // the walk goes no further than that
    return CompleteUnit(call, instance);
}

constexpr std::span<const Column> kRevisionColumns = kRevisions;

}  // namespace

constinit const ServedTable kRevisionTable{
    "fcmgmt", {&kRevisionColumns, 1}, {ResolveRevision, NextRevision}};

}  // namespace snmpmain::fcmgmt
