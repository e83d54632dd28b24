#include "src/mibs/column.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <set>
#include <vector>

#include "src/mibs/fcmgmt/columns.h"
#include "src/mibs/fcmgmt/fcmgmt.h"

namespace snmpmain {
namespace {

using Oid = std::vector<oid>;

std::vector<variable7> FcmgmtVariables() {
    std::vector<variable7> variables(300);
    variables.resize(fcmgmt::MakeFcmgmtVariables(variables));
    return variables;
}

Oid SuffixOf(const variable7& record) {
    return {record.name, record.name + record.namelen};
}

TEST(FcmgmtVariables, AreCompleteUniqueAndInColumnOrder) {
    const std::vector<variable7> variables = FcmgmtVariables();
    ASSERT_EQ(variables.size(), 197u);
    std::set<int> magics;
    std::set<Oid> suffixes;
    for (std::size_t i = 0; i < variables.size(); ++i) {
        const Oid suffix = SuffixOf(variables[i]);
        EXPECT_TRUE(magics.insert(variables[i].magic).second) << int{variables[i].magic};
        EXPECT_TRUE(suffixes.insert(suffix).second) << int{variables[i].magic};
        EXPECT_NE(variables[i].findVar, nullptr);
        if (i > 0 && suffix.size() == variables[i - 1].namelen) {
            const Oid before = SuffixOf(variables[i - 1]);
            const bool sameTable =
                std::equal(suffix.begin(), suffix.end() - 1, before.begin(), before.end() - 1);
            EXPECT_TRUE(!sameTable || suffix.back() > before.back()) << int{variables[i].magic};
        }
    }
}

// Spot checks against the numbers that managers' tools and the handlers rely on.
TEST(FcmgmtVariables, HaveTheirNumbersTypesAndAccess) {
    struct Expected {
        int magic;
        Oid suffix;
        int type;
        int access;
    };
    const Expected expected[] = {
        {1, {1, 1}, ASN_INTEGER, NETSNMP_OLDAPI_RONLY},
        {137, {3}, ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY},
        {16, {1, 6, 1, 9}, ASN_TIMETICKS, NETSNMP_OLDAPI_RONLY},
        {17, {1, 6, 1, 10}, ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY},
        {29, {1, 6, 1, 22}, ASN_INTEGER, NETSNMP_OLDAPI_RWRITE},
        {44, {1, 7, 1, 4}, ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY},
        {75, {1, 10, 1, 19}, ASN_OBJECT_ID, NETSNMP_OLDAPI_RONLY},
        {133, {2, 3, 1, 1}, ASN_IPADDRESS, NETSNMP_OLDAPI_RONLY},
        {136, {2, 3, 1, 4}, ASN_INTEGER, NETSNMP_OLDAPI_RWRITE},
        {189, {4, 5, 1, 50}, ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY},
        {191, {5, 1, 2}, ASN_INTEGER, NETSNMP_OLDAPI_RONLY},
        {208, {5, 2, 1, 1, 15}, ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY},
        {215, {5, 2, 2, 1, 6}, ASN_INTEGER, NETSNMP_OLDAPI_RONLY},
        {221, {5, 2, 2, 1, 12}, ASN_OCTET_STR, NETSNMP_OLDAPI_RONLY},
    };
    const std::vector<variable7> variables = FcmgmtVariables();
    for (const Expected& e : expected) {
        const auto record = std::ranges::find(variables, e.magic, &variable7::magic);
        ASSERT_NE(record, variables.end()) << e.magic;
        EXPECT_EQ(SuffixOf(*record), e.suffix) << e.magic;
        EXPECT_EQ(record->type, e.type) << e.magic;
        EXPECT_EQ(record->acl, e.access) << e.magic;
    }
    EXPECT_EQ(std::ranges::count(variables, NETSNMP_OLDAPI_RWRITE, &variable7::acl), 10);
}

TEST(Words, FirstWordOfTheTableThatIsContainedDecides) {
    static constexpr Word kWords[] = {{"Warn", 6}, {"Info", 8}};
    constexpr WordTable kTable{kWords, 1};
    EXPECT_EQ(FirstContained(kTable, "Info, Warn"), 6u);
    EXPECT_EQ(FirstContained(kTable, "xInfox"), 8u);
    EXPECT_EQ(FirstContained(kTable, "warn"), 1u);
    EXPECT_EQ(FirstContained(kTable, ""), 1u);
}

TEST(Serve, MagicOfAnotherTableIsNoInstance) {
    variable vp{};
    vp.magic = 41;  // a revision column, asked of the unit table's handler
    oid name[MAX_OID_LEN] = {1, 3};
    std::size_t length = 2, valueLength = 0;
    WriteMethod* writeMethod = nullptr;
    EXPECT_EQ(var_connUnitTable(&vp, name, &length, 0, &valueLength, &writeMethod), nullptr);
    EXPECT_EQ(valueLength, 4u);
}

}  // namespace
}  // namespace snmpmain
