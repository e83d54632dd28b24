#include "src/mibs/column.h"

#include <gtest/gtest.h>

#include <set>

#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/norbex/norbex.h"

namespace snmpmain {
namespace {

// Handlers know an object by its magic.
TEST(Modules, TellTheirObjectsApart) {
    const std::pair<const MibModule&, std::size_t> modules[] = {
        {fcmgmt::kModule, 197}, {femgmt::kModule, 88}, {norbex::kModule, 2}};
    for (const auto& [module, count] : modules) {
        std::set<int> magics;
        for (const variable7& record : MakeVariables<variable7>(module)) {
            EXPECT_TRUE(magics.insert(record.magic).second) << int{record.magic};
        }
        EXPECT_EQ(magics.size(), count) << module.name;
    }
}

// A value of another length would make the library read through a null pointer.
TEST(Guard, LetsThroughOnlyWhatTheLibraryTakes) {
    const struct {
        std::uint8_t type;
        std::size_t length, fitted;  // 0: not let through
    } cases[] = {{ASN_GAUGE, 66, 4},      {ASN_INTEGER, 8, 4},
                 {ASN_COUNTER, 0, 4},     {ASN_TIMETICKS, 4, 4},
                 {ASN_IPADDRESS, 4, 4},   {ASN_IPADDRESS, 16, 0},
                 {ASN_OCTET_STR, 66, 66}, {ASN_OBJECT_ID, 2 * sizeof(oid), 2 * sizeof(oid)},
                 {ASN_OBJECT_ID, 3, 0},   {ASN_OBJECT_ID, 129 * sizeof(oid), 0},
                 {ASN_COUNTER64, 8, 0}};
    for (const auto& [type, length, fitted] : cases) {
        std::size_t given = length;
        EXPECT_EQ(FitValueLength(type, given), fitted != 0) << int{type};
        EXPECT_TRUE(fitted == 0 || given == fitted) << int{type};
    }
}

TEST(Words, FirstWordOfTheTableThatIsContainedDecides) {
    static constexpr Word kWords[] = {{"Warn", 6}, {"Info", 8}};
    constexpr WordTable kTable{kWords, 1};
    EXPECT_EQ(FirstContained(kTable, "Info, Warn"), 6u);
    EXPECT_EQ(FirstContained(kTable, "xInfox"), 8u);
    EXPECT_EQ(FirstContained(kTable, "warn"), 1u);
    EXPECT_EQ(FirstContained(kTable, ""), 1u);
}

}  // namespace
}  // namespace snmpmain
