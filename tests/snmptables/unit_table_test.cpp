#include "src/snmptables/unit_table.h"

#include <atomic>
#include <functional>

#include "sim/frame.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/status_refresh.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class UnitTableTest : public SwitchTest {
  protected:
    static void ReadStatuses() {
        while (IsUnitStatusWanted()) {
            EXPECT_EQ(RefreshNextUnitStatus(), 0);
        }
    }

    static std::vector<std::uint16_t> Domains() {
        std::vector<std::uint16_t> domains;
        for (std::uint16_t row = 0; row < GetUnitCount(); ++row) {
            domains.push_back(connUnitTbl[row].domainId);
        }
        return domains;
    }

    void ChangeReplies(
        std::function<void(const sim::ReceivedCommand&, std::vector<std::uint8_t>&)> change) {
        server.SetReplyOverride(
            [change](const sim::ReceivedCommand& command,
                     std::vector<std::uint8_t> reply) -> std::optional<decltype(reply)> {
                change(command, reply);
                return reply;
            });
    }
};

TEST_F(UnitTableTest, WalkSortsTheUnitsByWwnAndCompletesTheirRows) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->eventSupport = false; });
    ChangeReplies([](const sim::ReceivedCommand& command, auto& reply) {
        reply[7] = static_cast<std::uint8_t>(command.domain);  // the low byte of the address
    });
    TakeTexts();
    ASSERT_EQ(InitConnUnitTable(), 0);
    const std::string ping = "Get.Oper.Switch.Nop", hello = "Set.Cmd.Snmp.PrivateEvent.Hello";
    EXPECT_EQ(TakeTexts(),
              (std::vector<std::string>{
                  ping, "Get.Oper.Switch.DomainID", "Get.Config.Snmp.ProxyEnable",
                  "Get.Config.Zoning.MergeMode", "Get.Oper.Fabric.FirstDomainID",
                  "Get.Oper.Fabric.Entry.1.WWN", ping, hello, "Get.Oper.Fabric.NextDomainID.1",
                  "Get.Oper.Fabric.Entry.2.WWN", ping, hello, "Get.Oper.Fabric.NextDomainID.2",
                  "Get.Oper.Fabric.Entry.7.WWN", ping, hello, "Get.Oper.Fabric.NextDomainID.7"}));
    EXPECT_EQ(Domains(), (std::vector<std::uint16_t>{2, 7, 1}));
    EXPECT_STREQ(connUnitTbl[0].wwn, "1000020000000100");
    EXPECT_EQ(connUnitTbl[1].fcAddress, 0x00070007u);
    EXPECT_EQ(connUnitTbl[0].eventSupport, 1u);
    EXPECT_EQ(connUnitTbl[1].eventSupport, 0u);
    EXPECT_EQ(connUnitTbl[2].status, kUnitUnknown);
    EXPECT_TRUE(IsUnitStatusWanted());
    EXPECT_TRUE(GetDepartedUnits().empty());
}

TEST_F(UnitTableTest, ListThatNeverEndsIsBounded) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    std::size_t asked = 0;  // each time another text
    ChangeReplies([&](const sim::ReceivedCommand& command, auto& reply) {
        if (command.text.starts_with("Get.Oper.Fabric.NextDomainID")) {
            reply = sim::BuildFrame(0, sim::kGetType, command.sequence,
                                    std::string(++asked, '0') + "7");
        }
    });
    EXPECT_EQ(UpdateConnUnitTable(), 0);
    server.SetReplyOverride({});
    EXPECT_EQ(GetUnitCount(), MAX_CONN_UNITS);
    EXPECT_EQ(GetWWNfromIndex(MAX_CONN_UNITS), nullptr);
}

TEST_F(UnitTableTest, UnitsWithoutWwnOrAnswerAreLeftOut) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    for (const char* none : {"", "0000000000000000"}) {
        server.SetValue(0, "Oper.Fabric.Entry.1.WWN", none);
        EXPECT_EQ(UpdateConnUnitTable(), 0);
        EXPECT_EQ(Domains(), (std::vector<std::uint16_t>{2, 7}));
    }
    // The local unit has to answer its probe. Another one that is in the table may miss one.
    RefuseReplies([](const sim::ReceivedCommand& command) { return command.domain == 7; });
    EXPECT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_EQ(Domains(), (std::vector<std::uint16_t>{2, 7}));
    ResetConnUnitTable();
    for (const auto& [silent, result] : {std::pair(7u, 0), std::pair(2u, -1)}) {
        RefuseReplies([domain = silent](const auto& command) { return command.domain == domain; });
        EXPECT_EQ(UpdateConnUnitTable(), result);
        EXPECT_EQ(Domains(), std::vector<std::uint16_t>{2});
    }
    server.SetReplyOverride({});
    server.SetValue(0, "Oper.Fabric.Entry.7.WWN", std::nullopt);
    EXPECT_EQ(UpdateConnUnitTable(), -1);
    EXPECT_EQ(Domains(), std::vector<std::uint16_t>{2});
}

TEST_F(UnitTableTest, DeparturesAreNotedOnce) {
    Discover();
    server.WithFabric([](sim::Fabric& fabric) {
        std::erase_if(fabric.switches, [](const sim::Switch& s) { return s.domain != 2; });
    });
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    ASSERT_EQ(GetDepartedUnits().size(), 2u);
    EXPECT_EQ(GetDepartedUnits()[0].wwn, sim::DefaultFabric().Find(7)->wwn);
    EXPECT_EQ(GetDepartedUnits()[1].wwn, sim::DefaultFabric().Find(1)->wwn);
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    EXPECT_TRUE(GetDepartedUnits().empty());
    // Rows behind the terminator: gone for lookups by number and domain, there for those by WWN.
    std::uint16_t found = 0;
    EXPECT_EQ(GetUnitCount(), 1);
    EXPECT_EQ(GetIndexFromDomainId(1, found), -1);
    EXPECT_EQ(GetAscendingRows(), 1);
    EXPECT_EQ(GetRowsEnd(), 3);
}

TEST_F(UnitTableTest, LookupsTakeZeroForTheLocalSwitchWhereTheySaySo) {
    Discover();
    std::uint16_t number = 9;
    std::uint32_t reset = 9;
    EXPECT_EQ(GetIndexFromDomainId(0, number), 0);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(GetUnitReset(0, reset), 0);
    EXPECT_EQ(reset, 0u);
    EXPECT_EQ(GetUnitStatus(0, number), -1);
    EXPECT_EQ(SetUnitStatus(0, 3), -1);
    EXPECT_EQ(SetUnitReset(0, 1), -1);
    EXPECT_EQ(SetUnitReset(7, 2), -1);
    EXPECT_EQ(SetUnitReset(7, 1), 0);
    EXPECT_EQ(GetUnitReset(7, reset), 0);
    EXPECT_EQ(reset, 1u);
    number = 9;
    EXPECT_EQ(GetDomainIdFromIndex(3, number), -1);
    EXPECT_EQ(number, 0);
    EXPECT_TRUE(TakeTexts().empty());
}

TEST_F(UnitTableTest, StatusesAreReadAfterAWalkACommandAtATime) {
    Discover();
    for (int step = 0; step < 4; ++step) {
        RefreshNextUnitStatus();
        EXPECT_LE(TakeTexts().size(), 1u);
    }
    EXPECT_TRUE(IsUnitStatusWanted());
    ReadStatuses();
    EXPECT_EQ(CountTexts("Get.Oper.Switch.OperState"), 3);
    EXPECT_EQ(connUnitTbl[0].status, kUnitWarning);
    EXPECT_EQ(connUnitTbl[1].status, kUnitFailed);
    EXPECT_EQ(connUnitTbl[2].status, kUnitOk);
    RefreshNextUnitStatus();
    EXPECT_TRUE(TakeTexts().empty());
    // A unit that does not answer is unknown; the next walk begins with the first unit again.
    server.SetValue(2, "Oper.Switch.OperState", std::nullopt);
    ASSERT_EQ(UpdateConnUnitTable(), 0);
    connUnitTbl[0].status = kUnitOk;
    ResetUnitStatusMemo();
    ReadStatuses();
    EXPECT_EQ(connUnitTbl[0].status, kUnitUnknown);
}

TEST_F(UnitTableTest, WhatIsSetDuringAWalkIsKept) {
    Discover();
    ReadStatuses();
    ASSERT_EQ(SetUnitReset(1, 1), 0);
    BeginDiscovery();
    while (CountTexts("Get.Oper.Fabric.Entry.7.WWN") == 0) {
        ASSERT_EQ(StepDiscovery(), Progress::kMore);
    }
    ASSERT_EQ(SetUnitReset(7, 1), 0);
    ASSERT_EQ(SetUnitStatus(2, kUnitFailed), 0);
    while (StepDiscovery() == Progress::kMore) {
    }
    std::uint32_t reset = 9;
    EXPECT_EQ(GetUnitReset(7, reset), 0);
    EXPECT_EQ(reset, 1u);
    EXPECT_EQ(GetUnitReset(1, reset), 0);
    EXPECT_EQ(reset, 0u);
    EXPECT_EQ(connUnitTbl[0].status, kUnitFailed);
    EXPECT_EQ(connUnitTbl[1].status, kUnitUnknown);
}

}  // namespace
}  // namespace snmpmain
