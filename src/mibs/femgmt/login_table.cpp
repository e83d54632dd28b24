// The devices that have logged in at the switches' F ports.
#include "src/mibs/femgmt/codes.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/shared_values.h"
#include "src/snmpoid/walkers.h"

namespace snmpmain::femgmt {
namespace {

constexpr std::uint32_t kAlternateCredit = 2;  // buffer credit model of every login

constexpr Choice kCreditModels[] = {{1}, {2}};

constexpr Column kLogins[] = {
    {2, ASN_INTEGER, "fcFxPortFcphVersionAgreed", NeverAnswers()},
    {3, ASN_INTEGER, "fcFxPortNxPortBbCredit", NeverAnswers()},
    {4, ASN_INTEGER, "fcFxPortNxPortRxDataFieldSize", NeverAnswers()},
    {5, ASN_OCTET_STR, "fcFxPortCosSuppAgreed",
     Computed(QueryClasses, "Get.Oper.NameServer.Entry.%s.COSList")},
    {6, ASN_INTEGER, "fcFxPortIntermixSuppAgreed", Constant(kNoIntermix)},
    {7, ASN_INTEGER, "fcFxPortStackedConnModeAgreed", Constant(kTransparent)},
    {8, ASN_INTEGER, "fcFxPortClass2SeqDelivAgreed", Constant(kInOrder)},
    {9, ASN_INTEGER, "fcFxPortClass3SeqDelivAgreed", Constant(kInOrder)},
    {10, ASN_OCTET_STR, "fcFxPortNxPortName",
     HexOctetsOf("Get.Oper.NameServer.Entry.%s.PortWwn", kWwnSize)},
    {11, ASN_OCTET_STR, "fcFxPortConnectedNxPort", NeverAnswers()},
    {12, ASN_INTEGER, "fcFxPortBbCreditModel", Constant(kAlternateCredit),
     NotOffered(OneOf(kCreditModels))},
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
    return ReadLoginAt(index, instance.unit, login) == 0 ? Take(call, instance) : -1;
}

int NextLogin(const HandlerCall& call, Instance& instance) {
    return GetNextLogin(call.vp, call.name, call.length, instance.unit, login) == 0
               ? Take(call, instance)
               : -1;
}

}  // namespace

constinit const ServedTable kLoginTable =
    Table(kModule, {2, 3, 1}, 44, kLogins, {ResolveLogin, NextLogin});

}  // namespace snmpmain::femgmt
