#include "src/mibs/write.h"

#include <limits>

#include "src/mibs/fcmgmt/unit_values.h"
#include "tests/support/mib_test.h"

namespace snmpmain {
namespace {

template <typename Number>
WriteRequest IntegerRequest(const Number& number, std::size_t length = sizeof(Number)) {
    return {RESERVE1, reinterpret_cast<const u_char*>(&number), ASN_INTEGER, length, nullptr, {}};
}

// The library hands an INTEGER over as its long, whose width is the host's.
TEST(WrittenInteger, HasThirtyTwoBitsWhateverCarriesThem) {
    std::int32_t taken = 0;
    EXPECT_EQ(TakeInteger(IntegerRequest(std::int32_t{-7}), taken), SNMP_ERR_NOERROR);
    EXPECT_EQ(taken, -7);
    EXPECT_EQ(TakeInteger(IntegerRequest(long{2147483647}), taken), SNMP_ERR_NOERROR);
    EXPECT_EQ(taken, 2147483647);
    if (sizeof(long) > sizeof(taken)) {
        const long most = std::numeric_limits<long>::max();
        EXPECT_EQ(TakeInteger(IntegerRequest(most), taken), SNMP_ERR_WRONGLENGTH);
    }
    for (const std::size_t length : {std::size_t{0}, sizeof(long) + 1}) {
        EXPECT_EQ(TakeInteger(IntegerRequest(long{1}, length), taken), SNMP_ERR_WRONGLENGTH);
    }
    WriteRequest counter = IntegerRequest(long{1});
    counter.type = ASN_COUNTER;
    EXPECT_EQ(TakeInteger(counter, taken), SNMP_ERR_WRONGTYPE);
}

class WriteTest : public MibTest {
  protected:
    WriteTest() {
        TraceEverything();
    }

    static int Call(WriteMethod* method, int action, const std::string& text, const void* current,
                    Oid name) {
        std::string value = text;
        return method(action, reinterpret_cast<u_char*>(value.data()), ASN_OCTET_STR, value.size(),
                      static_cast<u_char*>(const_cast<void*>(current)), name.data(), name.size());
    }

    static Oid NameOf(int domain) {
        Oid name = {1, 3, 6, 1, 3, 94, 1, 6, 1, 20};
        const Oid unit = Unit(domain);
        name.insert(name.end(), unit.begin(), unit.end());
        return name;
    }

    static constexpr WriteMethod* kWriteUnit = Write<fcmgmt::kUnitTable>;

    long CountSets() {
        return CountTexts("Set.");
    }
};

TEST_F(WriteTest, OnlyTheActionPhaseSends) {
    for (int action = -1; action <= 7; ++action) {
        EXPECT_EQ(Call(kWriteUnit, action, "new", nullptr, NameOf(7)), SNMP_ERR_NOERROR);
        EXPECT_EQ(CountSets(), action == ACTION ? 1 : 0) << action;
    }
    EXPECT_EQ(Call(kWriteUnit, COMMIT, "\t", nullptr, NameOf(9)), SNMP_ERR_NOERROR);
}

// All instances share one buffer: what it holds when the ACTION phase comes may be another's.
TEST_F(WriteTest, CurrentValueIsBelievedOnlyWhenItIsTheInstancesOwn) {
    const std::string own = Get("1.6.1.20", Unit(2));
    const void* current = fcmgmt::kModule.result.data;
    EXPECT_EQ(Call(kWriteUnit, ACTION, own, current, NameOf(2)), SNMP_ERR_NOERROR);
    EXPECT_EQ(CountSets(), 0);

    const std::string others = Get("1.6.1.20", Unit(1));
    EXPECT_EQ(Call(kWriteUnit, ACTION, own, current, NameOf(2)), SNMP_ERR_NOERROR);
    EXPECT_EQ(CountSets(), 0);
    EXPECT_EQ(Call(kWriteUnit, ACTION, others, current, NameOf(2)), SNMP_ERR_NOERROR);
    EXPECT_EQ(CountSets(), 1);

    Get("1.6.1.20", Unit(2));
    Get("1.6.1.7", Unit(2));  // a value that nobody may write takes the buffer as well
    EXPECT_EQ(Call(kWriteUnit, ACTION, own, current, NameOf(2)), SNMP_ERR_NOERROR);
    EXPECT_EQ(CountSets(), 1);
}

// Nothing installs them, so that no manager gets here.
TEST_F(WriteTest, UrlsWouldSetTheAddressOfTheLocalSwitch) {
    for (WriteMethod* method : {write_systemUrl, write_connUnitUrl}) {
        TakeLogged();
        EXPECT_EQ(Call(method, ACTION, "0A000001", nullptr, NameOf(7)), SNMP_ERR_COMMITFAILED);
        EXPECT_TRUE(Logged("write to systemUrl: SNMP_ERR_COMMITFAILED\n"));
        const auto commands = server.TakeCommands();
        ASSERT_EQ(commands.size(), 1u);
        EXPECT_EQ(commands[0].domain, 0u);
        EXPECT_EQ(commands[0].text,
                  "Set.Cmd.Switch.ReqAdmin;Cmd.Switch.EditConfig;Config.System.IPAddress.0A000001;"
                  "Cmd.Switch.SaveConfig;Cmd.Switch.ActConfig;Cmd.Switch.RelAdmin");
    }
    TakeLogged();
    EXPECT_EQ(Call(write_connUnitUrl, RESERVE1, "\x7F", nullptr, NameOf(7)), SNMP_ERR_WRONGVALUE);
    EXPECT_TRUE(Logged("write to connUnitUrl: non-printable characters"));
}

TEST_F(WriteTest, PortNamesAreRefusedUnderTheNameOfThePortControl) {
    constexpr WriteMethod* kWritePort = Write<fcmgmt::kPortTable>;
    Oid name = NameOf(7);
    name[7] = 10;
    name[9] = 17;
    name.push_back(25);  // the switch has 24 ports
    TakeLogged();
    EXPECT_EQ(Call(kWritePort, ACTION, "x", nullptr, name), SNMP_ERR_NOSUCHNAME);
    EXPECT_TRUE(Logged("write to connUnitPortControl: SNMP_ERR_NOSUCHNAME"));
    server.SetValue(7, "Oper.Switch.MaxPorts", "300");
    name.back() = 24;
    EXPECT_EQ(Call(kWritePort, ACTION, std::string(33, 'x'), nullptr, name), SNMP_ERR_WRONGLENGTH);
    EXPECT_TRUE(Logged("write to connUnitPortName: SNMP_ERR_WRONGLENGTH"));
}

}  // namespace
}  // namespace snmpmain
