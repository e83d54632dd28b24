#include "src/traps/notifications.h"

#include "sim/frame.h"
#include "src/base/byte_order.h"
#include "src/base/text.h"
#include "src/traps/event_kinds.h"
#include "src/upkeep/dispatch.h"
#include "src/upkeep/upkeep.h"
#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class NotificationsTest : public SwitchTest {
  protected:
    NotificationsTest() {
        ResetUpkeep();
        Discover();
    }

    static std::vector<std::uint8_t> Frame(std::uint32_t target, const std::string& text) {
        return sim::BuildFrame(target, sim::kNotificationType, 5, text);
    }

    // "domain kind text" of the record that a frame leads to, or "dropped".
    static std::string Receive(std::vector<std::uint8_t> frame) {
        const int result = HandleIncomingNotification(frame);
        EXPECT_EQ(result == 0, NotifyQueue::Pending());
        if (!NotifyQueue::Pending()) {
            return "dropped";
        }
        NotificationRecord record;
        NotifyQueue::Get(record);
        return std::to_string(record.domainId) + " " + std::to_string(record.kind) + " " +
               record.text;
    }

    // Fabric walks that a notification leads to.
    long WalksAfter(std::uint16_t domain, std::uint16_t kind, const char* text = "") {
        NotificationRecord record{};
        record.domainId = domain;
        record.kind = kind;
        CopyText(record.text, sizeof(record.text), text);
        NotifyQueue::Put(record);
        DispatchNotification();
        while (IsUpkeepDue()) {
            StepUpkeep();
        }
        return CountTexts("MergeMode") - (kind == kSwitchInfo ? 1 : 0);
    }
};

TEST_F(NotificationsTest, RecordsCarryDomainKindAndText) {
    EXPECT_EQ(Receive(Frame(0, "29;[Port 3]")), "2 29 29;[Port 3]");
    EXPECT_EQ(Receive(Frame(7 << 16, " 29;x")), "7 29  29;x");
    EXPECT_EQ(Receive(Frame(97 << 16, "29;x")), "97 29 29;x");
    server.WithFabric([](sim::Fabric& fabric) { fabric.mergeMode = "Interop_2"; });
    ASSERT_EQ(ReadFact(Fact::kMergeMode), 0);
    EXPECT_EQ(Receive(Frame(97 << 16, "29;x")), "1 29 29;x");
    EXPECT_EQ(Receive(Frame(96 << 16, "29;x")), "96 29 29;x");
}

TEST_F(NotificationsTest, ChangeNoticesAreDecorated) {
    EXPECT_TRUE(Receive(Frame(0, "5")).ends_with("][0][0x0][Fabric oper change]\n"));
    EXPECT_EQ(Receive(Frame(0, "5;" + std::string(480, 'x'))).size(), 4 + 511u);
}

TEST_F(NotificationsTest, BadSizesAndKindsAreDropped) {
    for (const char* text : {"", "0;x", "38;x", "x", "65536", ";5"}) {
        EXPECT_EQ(Receive(Frame(0, text)), "dropped") << text;
    }
    EXPECT_EQ(Receive(Frame(0, "37")).substr(0, 5), "2 37 ");
    EXPECT_EQ(Receive(Frame(0, "65565")), "2 29 65565");  // 16 bits
    std::vector<std::uint8_t> frame = Frame(0, "29;[Port 3]");
    for (const std::size_t size : {525u, 19u}) {
        frame.resize(size);
        EXPECT_EQ(Receive(frame), "dropped") << size;
    }
    // The payload length is believed only as far as the frame goes.
    for (const std::uint16_t length : std::array<std::uint16_t, 5>{0, 3, 7, 529, 65535}) {
        frame = Frame(0, "29;x");
        StoreBig16(&frame[10], length);
        EXPECT_EQ(Receive(frame), "dropped") << length;
    }
    frame = Frame(0, "29;x");
    StoreBig16(&frame[10], 528);
    EXPECT_EQ(Receive(frame), "2 29 29;x");
}

TEST_F(NotificationsTest, DispatchRefreshesWhatTheKindConcerns) {
    const std::tuple<std::uint16_t, std::uint16_t, long> walks[] = {
        {2, 5, 1}, {7, 13, 1}, {7, 17, 1}, {2, 1, 1},  {7, 1, 0},
        {7, 2, 1}, {2, 2, 0},  {2, 29, 0}, {42, 29, 1}};  // 42 was not known
    for (const auto& [domain, kind, count] : walks) {
        EXPECT_EQ(WalksAfter(domain, kind), count) << domain << " " << kind;
    }
    EXPECT_EQ(WalksAfter(7, 32, "[Fabric update][2][7]"), 1);
    EXPECT_EQ(WalksAfter(7, 32, "[Unit status change][2][7]"), 0);
    server.SetValue(0, "Oper.Switch.MaxPorts", "12");
    WalksAfter(2, 36);
    EXPECT_EQ(AskNumber(0, Fact::kMaxPorts), 12u);
    // Logins are kept until the switch itself tells of its name server.
    Login login{};
    EXPECT_EQ(ReadLogin(7, login), 0);
    server.WithFabric([](sim::Fabric& fabric) { fabric.Find(7)->nameServer.clear(); });
    WalksAfter(2, 9);
    EXPECT_EQ(ReadLogin(7, login), 0);
    WalksAfter(7, 9);
    EXPECT_EQ(ReadLogin(7, login), -1);
}

}  // namespace
}  // namespace snmpmain
