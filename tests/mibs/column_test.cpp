#include "src/mibs/column.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <map>
#include <string>
#include <vector>

#include "src/mibs/NorbexMIB/NorbexMIB.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/fcmgmt/tables.h"
#include "src/mibs/femgmt/tables.h"

namespace snmpmain {
namespace {

using Oid = std::vector<oid>;

std::vector<variable7> VariablesOf(const MibModule& module) {
    std::vector<variable7> variables(300);
    variables.resize(MakeVariables(module.groups, std::span(variables)));
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

struct ModuleLayout {
    const MibModule& module;
    std::size_t count;
    std::vector<ColumnRun> runs;
};

// One line per object: "1.6.1.20 27 S".
std::vector<std::string> ExpectedObjects(const std::vector<ColumnRun>& runs) {
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
    return expected;
}

std::vector<std::string> RegisteredObjects(const MibModule& module) {
    const std::map<int, char> letters = {
        {ASN_INTEGER, 'i'},   {ASN_OCTET_STR, 's'}, {ASN_OBJECT_ID, 'o'}, {ASN_IPADDRESS, 'a'},
        {ASN_TIMETICKS, 't'}, {ASN_GAUGE, 'g'},     {ASN_COUNTER, 'c'}};
    std::vector<std::string> registered;
    for (const variable7& record : VariablesOf(module)) {
        std::string text;
        for (const oid number : SuffixOf(record)) {
            text += (text.empty() ? "" : ".") + std::to_string(number);
        }
        char letter = letters.at(record.type);
        if (record.acl == NETSNMP_OLDAPI_RWRITE) {
            letter = static_cast<char>(letter - 'a' + 'A');
        }
        registered.push_back(text + " " + std::to_string(record.magic) + " " + letter);
        EXPECT_NE(record.findVar, nullptr) << text;
    }
    return registered;
}

TEST(Modules, HaveTheirObjectsNumbersTypesAndAccess) {
    const ModuleLayout layouts[] = {
        {fcmgmt::GetModule(),
         197,
         {{"1", 1, 1, "isttt"},
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
          {"5.2.2.1", 1, 211, "iiss-issssis"}}},
        {femgmt::GetModule(),
         88,
         {{"1", 1, 1, "ssg"},
          {"1.4.1", 2, 7, "soitgs"},
          {"1.5.1", 2, 16, "siiiiggsiiiig"},
          {"2.1.1", 1, 31, "sgiI"},
          {"2.2.1", 1, 37, "IitG"},
          {"2.3.1", 2, 44, "iiisiiiissi"},
          {"3.1.1", 1, 57, "cccccccccccc"},
          {"4.1.1", 1, 71, "cccccccccg"},
          {"4.2.1", 1, 83, "ccccccc"},
          {"4.3.1", 1, 92, "ccccc"},
          {"5.1.1", 1, 99, "iiiiiisiiiigg"}}},
        {norbex::GetModule(), 2, {{"10.1.1", 3, 5, "Ii"}}},
    };
    for (const auto& [module, count, runs] : layouts) {
        EXPECT_EQ(RegisteredObjects(module), ExpectedObjects(runs)) << module.name;
        EXPECT_EQ(VariablesOf(module).size(), count);
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
