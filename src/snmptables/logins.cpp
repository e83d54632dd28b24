#include "src/snmptables/logins.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <string_view>
#include <vector>

#include "src/base/main_thread.h"
#include "src/base/text.h"
#include "src/base/trace_log.h"
#include "src/link/switch_info.h"
#include "src/snmptables/fabric_lists.h"

namespace snmpmain {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kSource = "snmpoid.c";  // as in the messages of the walks
constexpr std::chrono::seconds kLifetime{3};

struct PortIdText {
    char text[kPortIdTextSize];
};

// The logins at a port: a range of the switch's list.
struct PortLogins {
    bool known = false;  // the port has been asked
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

struct SwitchLogins {
    std::uint32_t domain = 0;
    Clock::time_point end;  // of its time
    std::vector<PortIdText> portIds;
    std::vector<PortLogins> ports;  // as far as one was asked
};

// A walk goes over the switches once for each column: the lists of a small fabric last it.
std::array<SwitchLogins, 4> kept;

std::string_view DomainAndArea(const char* portId) {
    return std::string_view(portId).substr(0, 4);
}

std::string_view DomainAndAreaOf(const PortIdText& portId) {
    return DomainAndArea(portId.text);
}

// Reads the port ids in a switch's own name server and sorts them by port; those of one port stay
// in the switch's order. Returns 0, or -1 when that breaks off.
int ReadPortIds(std::uint32_t domain, std::vector<PortIdText>& portIds) {
    KeyWalk walk(LocalNameServer(domain));
    while (walk.Next() == 0) {
        PortIdText portId;
        CopyText(portId.text, sizeof(portId.text), walk.Key().data());
        if (AppendEntry(portIds, portId) != 0) {
            return -1;
        }
    }
    std::ranges::stable_sort(portIds, {}, DomainAndAreaOf);
    return walk.Unanswered() ? -1 : 0;
}

// What is known of a switch, in the place of what is oldest if its list is to be fetched. Null when
// that breaks off.
SwitchLogins* LoginsOf(std::uint32_t domain) {
    const auto isCurrent = [&](const SwitchLogins& logins) {
        return logins.domain == domain && Clock::now() < logins.end;
    };
    if (const auto known = std::ranges::find_if(kept, isCurrent); known != kept.end()) {
        return &*known;
    }
    SwitchLogins& place = *std::ranges::min_element(kept, {}, &SwitchLogins::end);
    place = {};
    if (ReadPortIds(domain, place.portIds) != 0) {
        place = {};
        return nullptr;
    }
    place.domain = domain;
    place.end = Clock::now() + kLifetime;  // a long list must not be too old once it is there
    return &place;
}

// Asks a port for its logins; there are none where the switch says no. Returns 0, or -1 when it
// does not answer.
int AskPort(const SwitchLogins& ofSwitch, std::uint32_t port, PortLogins& logins) {
    ReplyText reply;
    std::uint32_t links = 0;
    Outcome outcome = AskSwitchf(ofSwitch.domain, reply, kInteger, &links,
                                 "Get.Oper.Link.Port.0.%u.LinkEntries", port)
                          .outcome;
    if (links == 0) {
        return outcome == Outcome::kNoAnswer ? -1 : 0;
    }
    outcome = AskSwitchf(ofSwitch.domain, reply, kString, nullptr,
                         "Get.Oper.Topology.0.%u.LocalPortType", port)
                  .outcome;
    if (outcome != Outcome::kAnswered || std::strchr(reply.data(), 'F') == nullptr) {
        return outcome == Outcome::kNoAnswer ? -1 : 0;
    }
    outcome =
        AskSwitchf(ofSwitch.domain, reply, kString, nullptr, "Get.Oper.UserPort.0.%u.PortID", port)
            .outcome;
    if (outcome != Outcome::kAnswered) {
        TraceLog(kError, "%s %d:Get PortID caused NULL return", kSource, __LINE__);
        return outcome == Outcome::kNoAnswer ? -1 : 0;
    }
    const auto devices = std::ranges::equal_range(ofSwitch.portIds, DomainAndArea(reply.data()), {},
                                                  DomainAndAreaOf);
    logins.first = static_cast<std::uint32_t>(devices.begin() - ofSwitch.portIds.begin());
    logins.count = std::min(links, static_cast<std::uint32_t>(devices.size()));
    return 0;
}

// The logins at a port, asked for if it is not known. Null when the switch does not answer.
const PortLogins* LoginsAt(SwitchLogins& ofSwitch, std::uint32_t port) {
    while (ofSwitch.ports.size() <= port) {
        if (AppendEntry(ofSwitch.ports, {}) != 0) {
            return nullptr;
        }
    }
    PortLogins& logins = ofSwitch.ports[port];
    if (!logins.known && AskPort(ofSwitch, port, logins) != 0) {
        return nullptr;
    }
    logins.known = true;
    return &logins;
}

void SetPortId(const SwitchLogins& ofSwitch, const PortLogins& logins, Login& login) {
    const PortIdText& portId = ofSwitch.portIds[logins.first + login.login];
    CopyText(login.portId, sizeof(login.portId), portId.text);
}

std::uint32_t PortsAsked(std::uint32_t domain) {
    return std::min(AskNumber(domain, Fact::kMaxPorts), kMaxPortsAsked);
}

}  // namespace

int ReadLogin(std::uint32_t domain, Login& login) {
    AssertMainThread();
    if (login.port >= PortsAsked(domain)) {
        return -1;
    }
    SwitchLogins* ofSwitch = LoginsOf(domain);
    const PortLogins* logins = ofSwitch == nullptr ? nullptr : LoginsAt(*ofSwitch, login.port);
    if (logins == nullptr || login.login >= logins->count) {
        return -1;
    }
    SetPortId(*ofSwitch, *logins, login);
    return 0;
}

int ReadNextLogin(std::uint32_t domain, Login& login) {
    AssertMainThread();
    const std::uint32_t ports = PortsAsked(domain);
    SwitchLogins* ofSwitch = login.port < ports ? LoginsOf(domain) : nullptr;
    if (ofSwitch == nullptr) {
        return -1;
    }
    for (; login.port < ports; ++login.port, login.login = 0) {
        const PortLogins* logins = LoginsAt(*ofSwitch, login.port);
        if (logins == nullptr) {
            return -1;
        }
        if (login.login < logins->count) {
            SetPortId(*ofSwitch, *logins, login);
            return 0;
        }
    }
    return -1;
}

void ForgetLogins(std::uint32_t domain) {
    for (SwitchLogins& logins : kept) {
        if (logins.domain == domain) {
            logins = {};
        }
    }
}

void ResetLogins() {
    kept = {};
}

}  // namespace snmpmain
