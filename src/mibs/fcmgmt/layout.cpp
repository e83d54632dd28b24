// A table whose objects are registered, so that the subtree has its shape, without values: a GET
// finds no such instance, a walk passes over them.
#include "src/mibs/fcmgmt/tables.h"

namespace snmpmain::fcmgmt {
namespace {

constexpr Column kPlatforms[] = {
    {1, 211, ASN_INTEGER, Access::kReadOnly, nullptr, NeverAnswers()},
    {2, 212, ASN_INTEGER, Access::kReadOnly, nullptr, NeverAnswers()},
    {3, 213, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
    {4, 214, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
    {6, 215, ASN_INTEGER, Access::kReadOnly, nullptr, NeverAnswers()},
    {7, 216, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
    {8, 217, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
    {9, 218, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
    {10, 219, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
    {11, 220, ASN_INTEGER, Access::kReadOnly, nullptr, NeverAnswers()},
    {12, 221, ASN_OCTET_STR, Access::kReadOnly, nullptr, NeverAnswers()},
};

constexpr std::span<const Column> kPlatformColumns = kPlatforms;

// Reached only for a column with a value, of which there is none.
constexpr TableShape kNoRows{nullptr, nullptr};

}  // namespace

constinit const ServedTable kPlatformTable{"fcmgmt", {&kPlatformColumns, 1}, kNoRows};

}  // namespace snmpmain::fcmgmt
