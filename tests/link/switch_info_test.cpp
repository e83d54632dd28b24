#include "src/link/switch_info.h"

#include "src/link/log_level.h"

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class SwitchInfoTest : public SwitchTest {};

TEST_F(SwitchInfoTest, LocalFactsAreReadOnceAndRemoteOnesAsked) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    EXPECT_EQ(TakeTexts().size(), 13u);  // one of them for the only blade

    const sim::Fabric fabric = sim::DefaultFabric();
    const sim::Switch& local = *fabric.Find(0);
    for (const std::uint32_t domain : {0u, 2u}) {
        EXPECT_EQ(AskNumber(domain, Fact::kPowerSupplies), local.powerSupplies.size());
        EXPECT_EQ(AskNumber(domain, Fact::kFans), local.fans.size());
        EXPECT_STREQ(AskText(domain, Fact::kWwn), local.wwn.c_str());
        EXPECT_STREQ(AskText(domain, Fact::kSysObjectId), local.sysObjectId.c_str());
        EXPECT_EQ(AskNumber(domain, Fact::kAllow4GPorts), 1u);
        EXPECT_EQ(AskNumber(domain, Fact::kTempSensors, 0), local.blades[0].boardTemps.size());
    }
    EXPECT_TRUE(TakeTexts().empty());

    EXPECT_EQ(AskNumber(7, Fact::kTempSensors, 1), fabric.Find(7)->blades[1].boardTemps.size());
    EXPECT_STREQ(AskText(7, Fact::kWwn), fabric.Find(7)->wwn.c_str());
    EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), fabric.Find(7)->ports.size());
    EXPECT_EQ(TakeTexts().size(), 3u);
    EXPECT_EQ(AskNumber(0, Fact::kMaxPorts),
              local.ports.size());  // the record holds no remote value
}

TEST_F(SwitchInfoTest, FailureEndsTheReadingAndKeepsWhatIsKnown) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    TakeTexts();
    server.SetValue(0, "Oper.Chassis.0.Blades", std::nullopt);
    EXPECT_EQ(InitSwitchInfo(), -1);
    EXPECT_EQ(TakeTexts().back(), "Get.Oper.Chassis.0.Blades");
    EXPECT_EQ(AskNumber(0, Fact::kBlades), 1u);
    // The 4 Gb/s flag alone may be missing.
    server.SetValue(0, "Oper.Chassis.0.Blades", "0");
    server.SetValue(0, "Config.Mfg.Allow4GPorts", std::nullopt);
    EXPECT_EQ(InitSwitchInfo(), 0);
    EXPECT_EQ(CountTexts("TempSensors"), 0);
    EXPECT_EQ(AskNumber(0, Fact::kAllow4GPorts), 0u);
}

TEST_F(SwitchInfoTest, CountOfAnotherSwitchIsAskedOnceWhileItIsKept) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    for (const std::uint32_t ports : {8u, 16u}) {
        server.SetValue(7, "Oper.Switch.MaxPorts", std::to_string(ports));
        KeepAnsweredCounts();
        TakeTexts();
        EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), ports);
        EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), ports);
        EXPECT_EQ(CountTexts("MaxPorts"), 1);
        EXPECT_EQ(AskNumber(1, Fact::kMaxPorts), 8u);
        EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), ports) << "another switch's count";
        EXPECT_NE(AskNumber(7, Fact::kBlades), ports) << "another count of the switch";
    }
    ForgetAnsweredCounts();
    server.SetValue(7, "Oper.Switch.MaxPorts", "4");
    EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), 4u);
}

TEST_F(SwitchInfoTest, UnreachableRemoteGivesDefaults) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    for (const char* path : {"Oper.Switch.MaxPorts", "Config.Mfg.WWN", "Config.Snmp.SysObjectID",
                             "Config.Mfg.Allow4GPorts"}) {
        server.SetValue(7, path, std::nullopt);
    }
    EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), 0u);
    EXPECT_STREQ(AskText(7, Fact::kWwn), "0000000000000000");
    EXPECT_STREQ(AskText(7, Fact::kSysObjectId), "0.0.0.0");
    EXPECT_EQ(AskNumber(7, Fact::kAllow4GPorts), 0u);
}

TEST_F(SwitchInfoTest, TextsAreComparedWholeOrByWordAsEachSettingWants) {
    const std::pair<const char*, std::uint32_t> modes[] = {
        {"NonSW2", 1}, {"NonSW2 ", 0}, {"SW2", 0}, {"Interop_2", 2}};
    for (const auto& [text, mode] : modes) {
        server.SetValue(0, "Config.Zoning.MergeMode", text);
        EXPECT_EQ(ReadFact(Fact::kMergeMode), 0);
        EXPECT_EQ(GetMergeMode(), mode) << text;
    }
    server.SetValue(0, "Config.Snmp.ProxyEnable", "is True here");
    EXPECT_EQ(ReadFact(Fact::kProxyEnable), 0);
    EXPECT_EQ(GetProxyEnable(), 1u);
    server.SetValue(0, "Config.Mfg.Allow4GPorts", "True ");
    EXPECT_EQ(ReadFact(Fact::kAllow4GPorts), 0);
    EXPECT_EQ(AskNumber(0, Fact::kAllow4GPorts), 0u);

    const std::pair<const char*, bool> types[] = {{"SwitchBlade20", true},
                                                  {"SwitchBlade20x", false},
                                                  {"SwitchBlade2", false},
                                                  {"4GTelcoGenericBlade20", true},
                                                  {"FabricSwitch", false}};
    for (const auto& [text, blade] : types) {
        server.SetValue(0, "Oper.Switch.Type", text);
        EXPECT_EQ(ReadFact(Fact::kSwitchType), 0);
        EXPECT_EQ(IsBladeType(), blade) << text;
    }
}

TEST_F(SwitchInfoTest, NonsensicalBladeCountIsBounded) {
    server.SetValue(0, "Oper.Chassis.0.Blades", "4000000000");
    for (int blade = 0; blade < 300; ++blade) {
        server.SetValue(0, "Oper.Blade." + std::to_string(blade) + ".TempSensors", "1");
    }
    EXPECT_EQ(InitSwitchInfo(), 0);
    EXPECT_EQ(CountTexts("TempSensors"), kMaxBlades);
    EXPECT_EQ(AskNumber(0, Fact::kTempSensors, 4000), 0u);
}

// In this merge mode the simulator refuses domains that are addressed without their offset.
TEST_F(SwitchInfoTest, InteropModeMovesTheDomains) {
    ASSERT_EQ(InitSwitchInfo(), 0);
    EXPECT_EQ(MakeTargetWord(7), 0x00070000u);
    server.WithFabric([](sim::Fabric& fabric) { fabric.mergeMode = "Interop_2"; });
    ASSERT_EQ(ReadFact(Fact::kMergeMode), 0);
    EXPECT_EQ(MakeTargetWord(7), 0x00670000u);
    EXPECT_EQ(MakeTargetWord(0), 0u);
    EXPECT_EQ(AskNumber(7, Fact::kMaxPorts), 24u);
}

TEST_F(SwitchInfoTest, LogSettingsOpenTheLogOnlyForThisComponent) {
    const auto levelFor = [&](const char* component, const char* level) {
        SetDiagnosticLevel(kSilentLevel);
        server.SetValue(0, "Oper.Switch.DevLogComp", component);
        server.SetValue(0, "Oper.Switch.DevLogLevel", level);
        EXPECT_EQ(InitLogLevel(), 0);
        int lowest = kTrace;
        while (lowest < kSilentLevel && !IsTraced(lowest)) {
            ++lowest;
        }
        return lowest;
    };
    EXPECT_EQ(levelFor("Zoning, NameServer", "Info"), kSilentLevel);
    EXPECT_EQ(levelFor("Snmp", "None"), kSilentLevel);
    EXPECT_EQ(levelFor("Zoning, Snmp", "Info"), kTrace);
    EXPECT_EQ(levelFor("Snmp", "Info, Warn"), kError);
    EXPECT_EQ(levelFor("Snmp", "Warn, Critical"), kSevere);
    server.SetValue(0, "Oper.Switch.DevLogComp", std::nullopt);
    EXPECT_EQ(InitLogLevel(), -1);
}

}  // namespace
}  // namespace snmpmain
