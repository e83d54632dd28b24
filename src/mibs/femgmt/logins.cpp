// The devices that have logged in at the switches' F ports.
#include "src/mibs/femgmt/codes.h"
#include "src/mibs/femgmt/tables.h"
#include "src/mibs/shared_values.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain::femgmt {
namespace {

constexpr std::uint32_t kAlternateCredit = 2;  // buffer credit model of every login

constexpr Column kLogins[] = {
    {2, 44, ASN_INTEGER, Access::kReadOnly, "fcFxPortFcphVersionAgreed", NeverAnswers()},
    {3, 45, ASN_INTEGER, Access::kReadOnly, "fcFxPortNxPortBbCredit", NeverAnswers()},
    {4, 46, ASN_INTEGER, Access::kReadOnly, "fcFxPortNxPortRxDataFieldSize", NeverAnswers()},
    {5, 47, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortCosSuppAgreed",
     Computed(QueryClasses, "Get.Oper.NameServer.Entry.%s.COSList")},
    {6, 48, ASN_INTEGER, Access::kReadOnly, "fcFxPortIntermixSuppAgreed", Constant(kNoIntermix)},
    {7, 49, ASN_INTEGER, Access::kReadOnly, "fcFxPortStackedConnModeAgreed",
     Constant(kTransparent)},
    {8, 50, ASN_INTEGER, Access::kReadOnly, "fcFxPortClass2SeqDelivAgreed", Constant(kInOrder)},
    {9, 51, ASN_INTEGER, Access::kReadOnly, "fcFxPortClass3SeqDelivAgreed", Constant(kInOrder)},
    {10, 52, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortNxPortName",
     HexOctetsOf("Get.Oper.NameServer.Entry.%s.PortWwn", kWwnSize)},
    {11, 53, ASN_OCTET_STR, Access::kReadOnly, "fcFxPortConnectedNxPort", NeverAnswers()},
    {12, 54, ASN_INTEGER, Access::kReadOnly, "fcFxPortBbCreditModel", Constant(kAlternateCredit)},
};

// The row that a request asks for; its instance points at the port id.
Login login;

int Take(const HandlerCall& call, Instance& instance) {
    instance.row = login.login;
    instance.texts[0] = login.portId;
    return CompleteUnit(call, instance);
}

int ResolveLogin(const HandlerCall& call, Instance& instance) {
    if (*call.length != call.vp->namelen + kLoginIndexLength) {
        return -1;
    }
    const auto index = std::span(call.name, *call.length).last<kLoginIndexLength>();
    return GetLogin(index, instance.unit, login) == 0 ? Take(call, instance) : -1;
}

int NextLogin(const HandlerCall& call, Instance& instance) {
    return GetNextLogin(call.vp, call.name, call.length, instance.unit, login) == 0
               ? Take(call, instance)
               : -1;
}

constexpr std::span<const Column> kLoginColumns = kLogins;

}  // namespace

constinit const ServedTable kLoginTable{"femgmt.c", {&kLoginColumns, 1}, {ResolveLogin, NextLogin}};

}  // namespace snmpmain::femgmt
