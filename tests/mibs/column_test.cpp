#include "src/mibs/column.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <map>
#include <string>
#include <vector>

#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/tables.h"

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

// Columns that follow one another: their common OID, the first one's number and magic, and a letter
// for each: i INTEGER, s OCTET STRING, o OBJECT IDENTIFIER, a IpAddress, t TimeTicks, - left out.
// Capitals are writable.
struct ColumnRun {
    std::string prefix;
    oid first;
    int magic;
    std::string types;
};

TEST(FcmgmtVariables, HaveTheirNumbersTypesAndAccess) {
    const ColumnRun runs[] = {
        {"1", 1, 1, "isttt"},
        {"2", 1, 129, "ii"},
        {"", 3, 137, "s"},
        {"1.6.1", 1, 8, "ssiiiisstssiiittiisSSISSIiiisis"},
        {"1.7.1", 1, 41, "siss"},
        {"1.8.1", 1, 47, "sisissii"},
        {"1.10.1", 1, 57, "siissiiiisssssiISiosssi"},
        {"1.11.1", 1, 82, "siistiios"},
        {"1.12.1", 1, 93, "sisississiiisi"},
        {"1.13.1", 1, 109, "iisissssiis"},
        {"1.14.1", 1, 122, "iiisiis"},
        {"2.3.1", 1, 133, "aiII"},
        {"4.5.1", 1, 140, "sissssssssssssssssssssssssssssssssssssssssssssssss"},
        {"5.1", 1, 190, "ii"},
        {"5.2.1.1", 1, 194, "sisssssssssssss"},
        {"5.2.2.1", 1, 211, "iiss-issssis"},
    };
    std::vector<std::string> expected;
    for (const ColumnRun& run : runs) {
        int magic = run.magic;
        for (std::size_t i = 0; i < run.types.size(); ++i) {
            if (run.types[i] != '-') {
                expected.push_back(run.prefix + (run.prefix.empty() ? "" : ".") +
                                   std::to_string(run.first + i) + " " + std::to_string(magic++) +
                                   " " + run.types[i]);
            }
        }
    }
    std::vector<std::string> registered;
    for (const variable7& record : FcmgmtVariables()) {
        std::string text;
        for (const oid number : SuffixOf(record)) {
            text += (text.empty() ? "" : ".") + std::to_string(number);
        }
        const std::map<int, char> letters = {{ASN_INTEGER, 'i'},
                                             {ASN_OCTET_STR, 's'},
                                             {ASN_OBJECT_ID, 'o'},
                                             {ASN_IPADDRESS, 'a'},
                                             {ASN_TIMETICKS, 't'}};
        char letter = letters.at(record.type);
        if (record.acl == NETSNMP_OLDAPI_RWRITE) {
            letter = static_cast<char>(letter - 'a' + 'A');
        }
        registered.push_back(text + " " + std::to_string(record.magic) + " " + letter);
        EXPECT_NE(record.findVar, nullptr) << text;
    }
    EXPECT_EQ(registered.size(), 197u);
    EXPECT_EQ(registered, expected);
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
