// A test of the values that FCMGMT-MIB's handlers give for the fabric of a simulated switch.
#pragma once

#include <string>
#include <vector>

#include "src/mibs/fcmgmt/fcmgmt.h"
#include "tests/support/switch_test.h"

namespace snmpmain {

using Oid = std::vector<oid>;

inline Oid ReadOid(const std::string& dotted) {
    Oid numbers;
    for (std::size_t begin = 0; begin < dotted.size(); begin = dotted.find('.', begin) + 1) {
        numbers.push_back(std::stoul(dotted.substr(begin)));
        if (dotted.find('.', begin) == std::string::npos) {
            break;
        }
    }
    return numbers;
}

class MibTest : public SwitchTest {
  protected:
    MibTest() {
        Discover();
    }

    // Unit ids as indexes, row numbers behind them.
    static Oid Unit(int domain, const Oid& row = {}) {
        const oid number = domain == 2 ? 1 : domain == 7 ? 2 : 3;
        Oid index = {0x10, 0, 2, 0, 0, 0, number, 0};
        index.resize(16);
        index.insert(index.end(), row.begin(), row.end());
        return index;
    }

    // The value of an object ("1.10.1.3" below the MIB's OID): a number as decimals, octets as they
    // are, "none" without instance.
    static std::string Get(const std::string& object, const Oid& index) {
        Oid name = index;
        return Ask(object, name, 1);
    }

    // The same for the instance behind `index`, which becomes that instance's.
    static std::string GetNext(const std::string& object, Oid& index) {
        return Ask(object, index, 0);
    }

  private:
    static variable7 Find(const Oid& suffix) {
        const auto variables = MakeVariables<variable7>(fcmgmt::kModule);
        const auto record = std::ranges::find_if(variables, [&](const variable7& v) {
            return Oid(v.name, v.name + v.namelen) == suffix;
        });
        EXPECT_NE(record, variables.end());
        return *record;
    }

    static std::string Ask(const std::string& object, Oid& index, int exact) {
        const variable7 record = Find(ReadOid(object));
        Oid column = {1, 3, 6, 1, 3, 94};
        column.insert(column.end(), record.name, record.name + record.namelen);
        variable vp{};
        vp.magic = record.magic;
        vp.type = record.type;
        vp.namelen = static_cast<u_char>(column.size());
        std::ranges::copy(column, vp.name);
        oid name[MAX_OID_LEN]{};
        std::ranges::copy(column, name);
        std::ranges::copy(index, name + column.size());
        std::size_t length = column.size() + index.size();
        std::size_t size = 0;
        WriteMethod* writeMethod = nullptr;
        const u_char* value = record.findVar(&vp, name, &length, exact, &size, &writeMethod);
        if (value == nullptr) {
            return "none";
        }
        index.assign(name + column.size(), name + length);
        if (record.type == ASN_INTEGER || record.type == ASN_TIMETICKS) {
            EXPECT_EQ(size, 4u);
            std::uint32_t cell = 0;
            std::memcpy(&cell, value, sizeof(cell));
            return std::to_string(cell);
        }
        return {reinterpret_cast<const char*>(value), size};
    }
};

}  // namespace snmpmain
