#include "src/snmpoid/index_codec.h"

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

using Oid = std::vector<oid>;

Oid UnitId(const std::string& wwn, oid last = 0) {
    Oid names(WWN_OID_LEN);
    MakeOIDfromHexStr(wwn.c_str(), names);
    names.back() = last;
    return names;
}

std::span<const oid, WWN_OID_LEN> AsUnitId(const Oid& names) {
    return std::span<const oid, WWN_OID_LEN>(names.data(), WWN_OID_LEN);
}

TEST(IndexCodec, HexTextsBecomeSubIdentifiersAndBytes) {
    Oid names(10, 99);
    EXPECT_EQ(MakeOIDfromHexStr("10fF3", names), 0);
    EXPECT_EQ(names, (Oid{0x10, 0xFF, 3, 0, 0, 0, 0, 0, 0, 0}));
    MakeOIDfromHexStr("0102030405", std::span(names).first(2));
    EXPECT_EQ(names, (Oid{1, 2, 3, 0, 0, 0, 0, 0, 0, 0}));
    std::array<std::uint8_t, 3> bytes{9, 9, 9};
    EXPECT_EQ(MakeBytesFromHexStr("", bytes), 0);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{}));
    MakeBytesFromHexStr("fffc05aa", bytes);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{0xFF, 0xFC, 5}));

    char text[7] = "xxxxxx";
    EXPECT_EQ(MakeHexStrFromOID(Oid{1, 0xAB, 0xFF}, text), 0);
    EXPECT_STREQ(text, "01abff");
    EXPECT_EQ(MakeHexStrFromOID(Oid{}, text), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(MakeHexStrFromOID(Oid{1, 256}, text), -1);
    EXPECT_STREQ(text, "01");
    EXPECT_EQ(MakeHexStrFromOID(Oid{1, 2, 3, 4}, text), -1);  // does not fit
}

TEST(IndexCodec, UnitAndRowAreTakenFromTheEndOfAnOid) {
    char wwn[kWwnTextSize] = "";
    std::uint16_t index = 0;
    Oid name = UnitId("1000020000000100");
    EXPECT_EQ(GetWWNandIndexFromOID(name, wwn, index), -1);  // 16 sub-identifiers: no row number
    name.push_back(6);
    EXPECT_EQ(GetWWNandIndexFromOID(name, wwn, index), 0);
    EXPECT_STREQ(wwn, "1000020000000100");
    EXPECT_EQ(index, 5);
    name.insert(name.begin(), {1, 3, 6, 1});
    name[4 + 8] = 77;   // the zero half is not looked at
    name[4] = 0x10010;  // nor is anything above 16 bits
    name.back() = 65537;
    EXPECT_EQ(GetWWNandIndexFromOID(name, wwn, index), 0);
    EXPECT_STREQ(wwn, "1000020000000100");
    EXPECT_EQ(index, 0);
    name[5] = 256;
    EXPECT_EQ(GetWWNandIndexFromOID(name, wwn, index), -1);
    name.back() = 0;
    EXPECT_EQ(GetWWNandIndexFromOID(name, wwn, index), -1);
    EXPECT_EQ(index, 65535);
    name.back() = 257;
    EXPECT_EQ(GetWWNandIndexFromOID(name, wwn, index), -1);
    EXPECT_EQ(index, 256);
}

TEST(IndexCodec, AddressesAndPorts) {
    std::array<oid, 4> names;
    EXPECT_EQ(MakeOIDfromIPAddr("10.1.2.255", names), 0);
    EXPECT_EQ(names, (std::array<oid, 4>{10, 1, 2, 255}));
    EXPECT_EQ(MakeOIDfromIPAddr("0", names), 0);
    EXPECT_EQ(names, (std::array<oid, 4>{}));
    char address[kIpTextSize];
    std::uint32_t port = 0;
    EXPECT_EQ(GetIPAddrAndPortFromOID(Oid{1, 3, 10, 0, 0, 1, 162}, address, port), 0);
    EXPECT_STREQ(address, "10.0.0.1");
    EXPECT_EQ(port, 162u);
    EXPECT_EQ(GetIPAddrAndPortFromOID(Oid{10, 0, 0, 256, 70000}, address, port), -1);
    EXPECT_STREQ(address, "10.0.0.256");
    EXPECT_EQ(port, 70000u);
    EXPECT_EQ(GetIPAddrAndPortFromOID(Oid{4294967295u, 4294967295u, 4294967295u, 4294967295u, 1},
                                      address, port),
              -1);
    EXPECT_STREQ(address, "4294967295.4294967295.4294967295.4294967295");
    EXPECT_EQ(GetIPAddrAndPortFromOID(Oid{0, 0, 1, 162}, address, port), -1);
}

TEST(IndexCodec, DottedNumbersAreSplitAsFarAsThereIsRoom) {
    std::array<std::uint32_t, 4> numbers{};
    std::size_t count = 77;
    SplitDottedNumbers("nodots", numbers, count);
    EXPECT_EQ(count, 77u);
    SplitDottedNumbers("1.3..4294967295", numbers, count);
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(numbers, (std::array<std::uint32_t, 4>{1, 3, 0, 4294967295u}));
    SplitDottedNumbers("1.2.3.4.5.6", numbers, count);
    EXPECT_EQ(count, 4u);
}

TEST(IndexCodec, RequestsAreFittedToTheIndexLength) {
    variable vp{};
    vp.namelen = 2;
    vp.name[0] = 1;
    vp.name[1] = 3;
    const auto fit = [&](Oid request) {
        WorkingOid fitted;
        FitOIDtoIndexLength(&vp, request, 3, fitted);
        return Oid(fitted.names, fitted.names + fitted.length);
    };
    EXPECT_EQ(fit({1, 3}), (Oid{1, 3, 0, 0, 0}));
    EXPECT_EQ(fit({1, 3, 7}), (Oid{1, 3, 7, 0, 0}));
    EXPECT_EQ(fit({1, 3, 7, 8, 9}), (Oid{1, 3, 7, 8, 9}));
    EXPECT_EQ(fit(Oid(MAX_OID_LEN, 5)), (Oid{1, 3, 5, 5, 5}));
    EXPECT_EQ(fit({1}), (Oid{1, 3, 0, 0, 0}));
}

class UnitIdTest : public SwitchTest {
  protected:
    // Row and comparison of the first unit at or behind a unit id: "row exact", "row greater".
    static std::string Find(const Oid& names) {
        std::uint16_t index = 0;
        const int match = GetWwnIndexFromWwnOID(AsUnitId(names), index);
        return match < 0 ? "none" : std::to_string(index) + (match == 0 ? " exact" : " greater");
    }
};

TEST_F(UnitIdTest, UnitsOfAnEarlierFabricAreStillFoundById) {
    Discover();
    const std::string departed = connUnitTbl[2].wwn;
    server.WithFabric([](sim::Fabric& fabric) {
        std::erase_if(fabric.switches, [](const sim::Switch& s) { return s.domain != 2; });
    });
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(Find(UnitId(departed)), "2 exact");
    EXPECT_EQ(Find(UnitId("1000020000000100", 1)), "2 greater");
    EXPECT_EQ(Find(Oid(WWN_OID_LEN, 256)), "none");
    std::array<oid, WWN_OID_LEN> names;
    EXPECT_EQ(MakeOIDfromIndex(names, 3), -1);
}

// Texts in mixed case are sorted as texts, not as ids: the search must not rely on order then.
TEST_F(UnitIdTest, SearchMatchesARowByRowScanInAnyOrder) {
    server.WithFabric([](sim::Fabric& fabric) {
        const sim::Switch model = fabric.switches[0];
        fabric.switches.clear();
        for (const char* end : {"d0", "b0", "a0", "C0"}) {  // rows in the opposite order
            sim::Switch& unit = fabric.switches.emplace_back(model);
            unit.domain = static_cast<std::uint16_t>(fabric.switches.size());
            unit.wwn = std::string("10000200000002") + end;
        }
    });
    Discover();
    for (const auto& [end, found] :
         {std::pair("a0", "0 greater"), std::pair("b0", "0 greater"), std::pair("c0", "0 exact"),
          std::pair("c1", "3 greater"), std::pair("d0", "3 exact"), std::pair("d1", "none")}) {
        EXPECT_EQ(Find(UnitId(std::string("10000200000002") + end)), found) << end;
    }
}

}  // namespace
}  // namespace snmpmain
