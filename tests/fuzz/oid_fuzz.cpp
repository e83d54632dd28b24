// Requests for any OID to every handler, and values of any kind to the write methods that they hand
// out, called as the library calls them.
//
// The first byte of an input says what the fabric is like and how much follows:
//
//   bit 0     queries fail
//   bit 1     the local switch's states are others
//   bit 2     the switch replies in turn with the texts that come next: their number, and a byte
//             0xFF behind each
//   bits 3-4  number of requests - 1
//
// A request has a record's number in two bytes, and a byte:
//
//   bit 0     for exactly this instance, else for the next one
//   bit 1     a SET (with bit 0)
//   bits 2-4  how many sub-identifiers of the column are missing, 7: all
//
// Then follow sub-identifiers (see AppendNames) up to a byte 0xFF, and for a SET the type of the
// value, its length and the value. The SETs' phases come when all requests have been answered.

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/norbex/norbex.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/logins.h"
#include "src/snmptables/name_server.h"
#include "src/snmptables/unit_status.h"
#include "src/snmptables/unit_table.h"
#include "src/snmptables/zoning.h"
#include "src/traps/registration.h"
#include "src/traps/trap_table.h"
#include "tests/fuzz/surroundings.h"

namespace snmpmain {
namespace {

using fuzz::Reader;
using fuzz::Require;
using Oid = std::vector<oid>;

enum InputBit : std::uint8_t {
    kQueriesFail = 1 << 0,
    kStatesChanged = 1 << 1,
    kOddReplies = 1 << 2,
};
constexpr unsigned kCountShift = 3;

enum RequestBit : std::uint8_t { kExact = 1 << 0, kSet = 1 << 1 };
constexpr unsigned kCutShift = 2;

constexpr std::uint8_t kEnd = 0xFF;
constexpr std::size_t kLongestString = 512;

// Behind these the switch replies properly: nonsensical numbers lead to many queries, and inputs
// shall not take seconds.
constexpr std::size_t kMostOddReplies = 1000;

// A column as the library knows it once it is registered, with its whole name.
void AppendColumns(const MibModule& module, std::vector<variable>& columns) {
    for (const variable7& record : MakeVariables<variable7>(module)) {
        variable& column = columns.emplace_back();
        column.magic = record.magic;
        column.type = record.type;
        column.findVar = record.findVar;
        const auto end = std::ranges::copy(module.prefix, column.name).out;
        std::copy_n(record.name, record.namelen, end);
        column.namelen = static_cast<u_char>(module.prefix.size() + record.namelen);
    }
}

// Takes sub-identifiers. A byte is one as it stands, or:
//
//   F0      the number of the next four bytes
//   F1-F6   a number at a limit
//   F7-F9   all of the id of a unit
//   FA      all of the index of the last answer
//   FB      everything so far once more
void AppendNames(Reader& input, const Oid& lastIndex, Oid& name) {
    static constexpr std::array<oid, 6> kLimits = {0xFFFFFFFF, 0x80000000, 0x7FFFFFFF,
                                                   0xFFFF,     0x10000,    0x100};
    while (!input.AtEnd() && name.size() < MAX_OID_LEN) {
        const std::uint8_t byte = input.Byte();
        if (byte == kEnd) {
            break;
        } else if (byte < 0xF0) {
            name.push_back(byte);
        } else if (byte == 0xF0) {
            name.push_back(input.Number(4));
        } else if (byte < 0xF7) {
            name.push_back(kLimits[byte - 0xF1]);
        } else if (byte < 0xFA) {
            std::array<oid, WWN_OID_LEN> unit{};
            MakeOIDfromIndex(unit, byte - 0xF7u);
            name.insert(name.end(), unit.begin(), unit.end());
        } else {
            const Oid more = byte == 0xFA ? lastIndex : byte == 0xFB ? name : Oid{};
            name.insert(name.end(), more.begin(), more.end());
        }
    }
    name.resize(std::min<std::size_t>(name.size(), MAX_OID_LEN));
}

int Compare(const Oid& a, const Oid& b) {
    return ::snmp_oid_compare(a.data(), a.size(), b.data(), b.size());
}

// Reads all of a value, so that the sanitizer sees it, and checks its length.
std::vector<u_char> CheckValue(const variable& column, const u_char* value, std::size_t length) {
    if (column.type == ASN_OCTET_STR) {
        Require(length <= kLongestString, "no string is longer than a reply");
    } else if (column.type == ASN_OBJECT_ID) {
        Require(length % sizeof(oid) == 0 && length <= MAX_OID_LEN * sizeof(oid), "object id");
    } else {
        Require(length == 4, "what travels as an integer has 4 octets");
    }
    return {value, value + length};
}

// A request with the handler's answer.
struct Call {
    Oid name;  // of the answer where there is one
    u_char* value = nullptr;
    std::vector<u_char> octets;  // of the value
    WriteMethod* write = nullptr;
};

Call Ask(const variable& column, const Oid& request, bool exact) {
    // Room as the library has it where the name may become another's, else none to spare.
    const std::size_t room = exact ? request.size() : MAX_OID_LEN;
    const auto names = std::make_unique<oid[]>(room);
    std::ranges::copy(request, names.get());
    variable vp = column;
    std::size_t length = request.size();
    std::size_t valueLength = 0;
    Call call;
    call.value =
        column.findVar(&vp, names.get(), &length, exact ? 1 : 0, &valueLength, &call.write);
    Require(length <= room, "the name stays within its room");
    call.name.assign(names.get(), names.get() + length);
    // Where there is no next instance, the library does not look at the name.
    if (exact) {
        Require(call.name == request, "the request is left as it was");
    } else if (call.value != nullptr) {
        Require(Compare(call.name, request) > 0, "the next instance is behind the request");
        Require(length > column.namelen &&
                    std::equal(column.name, column.name + column.namelen, call.name.begin()),
                "the next instance is one of the column");
    }
    if (call.value != nullptr) {
        call.octets = CheckValue(column, call.value, valueLength);
    }
    return call;
}

// A variable of a SET request.
struct Setting {
    Call call;
    u_char type;
    std::size_t length;
    std::unique_ptr<u_char[]> value;  // of exactly this length
};

// All of them, also behind a failure: every method is to look for itself.
void RunPhases(std::vector<Setting>& settings) {
    for (const int phase : {RESERVE1, RESERVE2, ACTION, COMMIT, UNDO, FREE}) {
        for (Setting& setting : settings) {
            Call& call = setting.call;
            const int status = call.write(phase, setting.value.get(), setting.type, setting.length,
                                          call.value, call.name.data(), call.name.size());
            Require(status >= SNMP_ERR_NOERROR && status <= MAX_SNMP_ERR, "a status");
        }
    }
}

class Agent {
  public:
    Agent() {
        Require(InitSwitchInfo() == 0 && UpdateConnUnitTable() == 0, "discovery");
        InitTrapNotifications();
        AppendColumns(fcmgmt::kModule, columns_);
        AppendColumns(femgmt::kModule, columns_);
        AppendColumns(norbex::kModule, columns_);
    }

    void Take(Reader input) {
        const std::uint8_t bits = input.Byte();
        SetTheScene(bits, input);
        Oid lastIndex;
        std::vector<Setting> settings;
        for (int requests = (bits >> kCountShift & 3) + 1; requests > 0; --requests) {
            const variable& column = columns_[input.Number(2) % columns_.size()];
            const std::uint8_t how = input.Byte();
            const bool exact = (how & kExact) != 0;
            const std::size_t cut = how >> kCutShift & 7u;
            Oid request(column.name, column.name + (cut == 7 ? 0 : column.namelen - cut));
            AppendNames(input, lastIndex, request);
            Call call = Ask(column, request, exact);
            if (call.value != nullptr && !exact) {
                lastIndex.assign(call.name.begin() + column.namelen, call.name.end());
                if ((bits & (kQueriesFail | kOddReplies)) == 0) {
                    const Call again = Ask(column, call.name, true);
                    Require(again.value != nullptr && again.octets == call.octets,
                            "the instance that comes next is there");
                }
            }
            if (exact && (how & kSet) != 0) {
                AddSetting(input, std::move(call), settings);
            }
        }
        RunPhases(settings);
        PutBack(bits);
        switch_.CheckRequests();
    }

  private:
    static void AddSetting(Reader& input, Call call, std::vector<Setting>& settings) {
        const std::uint8_t type = input.Byte();
        const auto value = input.Bytes(input.Byte());
        if (call.write == nullptr) {
            return;
        }
        settings.push_back(
            {std::move(call), type, value.size(), std::make_unique<u_char[]>(value.size())});
        std::ranges::copy(value, settings.back().value.get());
    }

    void SetTheScene(std::uint8_t bits, Reader& input) {
        switch_.SetScene(((bits & kQueriesFail) != 0 ? fuzz::kFailing : 0u) |
                         ((bits & kStatesChanged) != 0 ? fuzz::kChanged : 0u));
        if ((bits & kOddReplies) == 0) {
            return;
        }
        std::vector<std::string> texts(std::max<std::size_t>(input.Byte(), 1));
        for (std::string& text : texts) {
            const auto bytes = input.UpTo(kEnd);
            text.assign(bytes.begin(), bytes.end());
        }
        const auto next = std::make_shared<std::size_t>(0);
        switch_.server.SetReplyOverride(
            [texts = std::move(texts), next](const sim::ReceivedCommand& command,
                                             fuzz::Datagram proper) {
                return std::optional(*next >= kMostOddReplies
                                         ? proper
                                         : fuzz::ReplyTo(command, texts[(*next)++ % texts.size()]));
            });
    }

    // Undoes what the input may have led to.
    void PutBack(std::uint8_t bits) {
        switch_.SetScene(fuzz::kNormal);
        ResetUnitStatusMemo();
        ResetLogins();
        for (std::uint16_t unit = 0; unit < GetUnitCount(); ++unit) {
            SetUnitReset(connUnitTbl[unit].domainId, 0);
        }
        if ((bits & (kQueriesFail | kOddReplies)) != 0) {
            ResetNameServerTable();
            ResetZoningTable();
            ResetAliasTable();
        }
        if ((bits & kOddReplies) != 0) {
            Require(InitSwitchInfo() == 0, "switch information");
        }
        if (const std::uint32_t changes = CountTrapTableChanges(); changes != trapTableChanges_) {
            trapTableChanges_ = changes;
            MarkTrapTableTold(changes);
            Require(ReadTrapDestinations() == 0, "trap destinations");
        }
    }

    fuzz::Switch switch_;
    std::vector<variable> columns_;
    std::uint32_t trapTableChanges_ = 0;
};

}  // namespace
}  // namespace snmpmain

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const agent = new snmpmain::Agent;  // its threads never end
    agent->Take(fuzz::Reader({data, size}));
    return 0;
}
