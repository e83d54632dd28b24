// A table whose objects are registered, so that the subtree has its shape, without values: a GET
// finds no such instance, a walk passes over them.
#include "src/mibs/fcmgmt/fcmgmt.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Column kPlatforms[] = {
    {1, ASN_INTEGER},    {2, ASN_INTEGER},   {3, ASN_OCTET_STR},  {4, ASN_OCTET_STR},
    {6, ASN_INTEGER},    {7, ASN_OCTET_STR}, {8, ASN_OCTET_STR},  {9, ASN_OCTET_STR},
    {10, ASN_OCTET_STR}, {11, ASN_INTEGER},  {12, ASN_OCTET_STR},
};

// Reached only for a column with a value, of which there is none.
constexpr TableShape kNoRows{nullptr, nullptr};

}  // namespace

constinit const ServedTable kPlatformTable = Table(kModule, {5, 2, 2, 1}, 211, kPlatforms, kNoRows);

}  // namespace snmpmain::fcmgmt
