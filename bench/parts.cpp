// What the parts of a request cost: raw UDP round trips to the simulator beside the agent's own,
// the discovery of a fabric, and the agent's work between snmpd's request and the switch's command.
//
// All on one address in this process; "per_command" of a discovery is to be set beside RoundTrip's
// time.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "sim/server.h"
#include "src/link/link.h"
#include "src/link/reply_parser.h"
#include "src/link/switch_info.h"
#include "src/link/tellings.h"
#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/snmpoid/walkers.h"
#include "src/snmptables/discovery.h"
#include "src/snmptables/unit_table.h"
#include "src/traps/registration.h"
#include "tests/support/loopback.h"

namespace {

using namespace snmpmain;

constexpr const char* kCommand = "Get.Oper.Switch.OperState";

// A fabric at the other end of the agent's link, which one process opens once. The server changes
// with each.
class Surroundings {
  public:
    Surroundings() {
        if (InitLink(LoopbackAddress(0).c_str()) != 0 || InitSendRecvLock() != 0) {
            std::exit(EXIT_FAILURE);
        }
    }

    void Use(unsigned switches) {
        server_.reset();
        server_ = std::make_unique<sim::Server>(sim::GenerateFabric(switches), LoopbackAddress(0));
        server_->SetRecording(false);
        if (InitSwitchInfo() != 0 || UpdateConnUnitTable() != 0) {
            std::exit(EXIT_FAILURE);
        }
    }

    sim::Server& Server() {
        return *server_;
    }

  private:
    std::unique_ptr<sim::Server> server_;
};

Surroundings& TheSurroundings() {
    static Surroundings surroundings;
    return surroundings;
}

void RoundTrip(benchmark::State& state) {
    TheSurroundings().Use(3);
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(SWITCH_MGMT_PORT);
    peer.sin_addr.s_addr = ::inet_addr(LoopbackAddress(0).c_str());
    RequestFrame frame;
    BuildRequestFrame(kCommand, 0, kFirstSequence, frame);
    ReplyFrame reply;
    while (state.KeepRunning()) {
        ::sendto(socket, frame.bytes.data(), frame.length, 0,
                 reinterpret_cast<const sockaddr*>(&peer), sizeof(peer));
        if (::recv(socket, reply.data(), reply.size(), 0) < 0) {
            state.SkipWithError("no reply");
            break;
        }
    }
    ::close(socket);
}
BENCHMARK(RoundTrip)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly();

void Query(benchmark::State& state) {
    TheSurroundings().Use(3);
    ReplyText text;
    while (state.KeepRunning()) {
        if (SwitchMgmtQuery(0, kCommand, text, kString) != 0) {
            state.SkipWithError("no reply");
            break;
        }
    }
}
BENCHMARK(Query)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly();

// What start-up and each change of the fabric do.
void Discovery(benchmark::State& state) {
    TheSurroundings().Use(static_cast<unsigned>(state.range(0)));
    sim::Server& server = TheSurroundings().Server();
    server.SetRecording(true);
    UpdateConnUnitTable();
    RegisterNotifications(true);
    FinishTellings();
    const auto commands = static_cast<double>(server.TakeCommands().size());
    server.SetRecording(false);
    while (state.KeepRunning()) {
        if (UpdateConnUnitTable() != 0) {
            state.SkipWithError("no discovery");
            break;
        }
        RegisterNotifications(true);
        FinishTellings();
    }
    state.counters["commands"] = commands;
    state.counters["per_command"] = benchmark::Counter(
        commands, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(Discovery)->Arg(3)->Arg(50)->Arg(239)->UseRealTime()->Unit(benchmark::kMillisecond);

void FrameOfACommand(benchmark::State& state) {
    RequestFrame frame;
    while (state.KeepRunning()) {
        BuildRequestFrame(kCommand, 0, kFirstSequence, frame);
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(FrameOfACommand);

void IntegerReply(benchmark::State& state) {
    std::uint32_t value = 0;
    while (state.KeepRunning()) {
        ReplyText text{"4294967295"};
        benchmark::DoNotOptimize(ParseReturnValue(text.data(), text.size(), kInteger, &value));
    }
}
BENCHMARK(IntegerReply);

// A whole walk's steps from unit to unit, per step.
void NextUnit(benchmark::State& state) {
    TheSurroundings().Use(static_cast<unsigned>(state.range(0)));
    const variable column{1, ASN_INTEGER, NETSNMP_OLDAPI_RONLY, nullptr, 2, {1, 3}};
    oid name[MAX_OID_LEN]{};
    std::size_t length = 0;
    while (state.KeepRunning()) {
        std::uint16_t unit = 0;
        if (GetNextUnit(&column, name, &length, unit) != 0) {
            length = column.namelen;
            std::copy_n(column.name, length, name);
        }
    }
}
BENCHMARK(NextUnit)->Arg(3)->Arg(50)->Arg(239);

// A handler's GETNEXT of the units' names: the row, one command, the value.
void HandlerValue(benchmark::State& state) {
    TheSurroundings().Use(static_cast<unsigned>(state.range(0)));
    const auto records = MakeVariables<variable7>(fcmgmt::kModule);
    constexpr std::array<oid, 4> kNames{1, 6, 1, 20};
    const auto record = std::ranges::find_if(records, [&](const variable7& v) {
        return std::ranges::equal(std::span(v.name, v.namelen), kNames);
    });
    variable column{};
    column.magic = record->magic;
    column.type = static_cast<char>(record->type);
    column.namelen = record->namelen;
    std::copy_n(record->name, record->namelen, column.name);
    oid name[MAX_OID_LEN]{};
    std::size_t length = 0;
    while (state.KeepRunning()) {
        std::size_t size = 0;
        WriteMethod* write = nullptr;
        if (record->findVar(&column, name, &length, 0, &size, &write) == nullptr) {
            length = column.namelen;
            std::copy_n(column.name, length, name);
        }
    }
}
BENCHMARK(HandlerValue)->Arg(3)->Arg(50)->Arg(239)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
