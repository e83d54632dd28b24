#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/unit_values.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr const char* kActiveVer = "Get.Oper.Switch.ActiveVer";
constexpr const char* kActiveVersion = "Get.Oper.Switch.ActiveVersion";
constexpr const char* kSwVersion = "Get.Oper.Switch.SwVersion.%s";
constexpr const char* kFlasherVersion = "Get.Oper.Switch.FlasherVersion";
constexpr const char* kAsicVersion = "Get.Oper.Blade.%d.AsicVersion";
constexpr const char* kRevisionCommands[] = {kActiveVer, kActiveVersion, kSwVersion,
                                             kFlasherVersion, kAsicVersion};

// The version of the active firmware. Firmware that does not know the first command names its
// active image, whose version a third one gives.
int AskActiveVersion(const Instance& instance, MibValue& value) {
    if (SwitchMgmtQuery(instance.domain, kActiveVer, value.text, kString) == 0) {
        return 0;
    }
    ReplyText image;
    if (SwitchMgmtQuery(instance.domain, kActiveVersion, image, kString) != 0) {
        return -1;
    }
    return SwitchMgmtQueryf(instance.domain, value.text, kString, nullptr, kSwVersion,
                            image.data()) == 0
               ? 0
               : -1;
}

int AskRevision(const Instance& instance, MibValue& value) {
    switch (instance.part.kind) {
        case kActiveFirmwareRevision:
            return AskActiveVersion(instance, value);
        case kFlasherRevision:
            return SwitchMgmtQuery(instance.domain, kFlasherVersion, value.text, kString);
        default:
            return SwitchMgmtQueryf(instance.domain, value.text, kString, nullptr, kAsicVersion,
                                    instance.part.blade);
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
    {1, ASN_OCTET_STR, "connUnitRevsUnitId", UnitId()},
    {2, ASN_INTEGER, "connUnitRevsIndex", LastIndex()},
    {3, ASN_OCTET_STR, "connUnitRevsRevId", Derived(ReadRevision, kRevisionCommands)},
    {4, ASN_OCTET_STR, "connUnitRevsDescription",
     Derived(ReadDescription, "kind of the revision", kBladeNameCommands)},
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

}  // namespace

constinit const ServedTable kRevisionTable =
    Table(kModule, {1, 7, 1}, 41, kRevisions, {ResolveRevision, NextRevision});

}  // namespace snmpmain::fcmgmt
