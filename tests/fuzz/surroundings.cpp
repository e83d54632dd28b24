#include "tests/fuzz/surroundings.h"

#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "sim/frame.h"
#include "src/base/trace_log.h"
#include "src/link/link.h"
#include "tests/support/loopback.h"

// In place of the C library's: whoever waits before it tries again shall not do so here. But the
// fuzzer has a thread that looks after memory once a second; it would spin.
extern "C" unsigned int sleep(unsigned int seconds) {
    if (::gettid() != ::getpid()) {
        const timespec time{static_cast<time_t>(seconds), 0};
        ::nanosleep(&time, nullptr);
    }
    return 0;
}

// The machine's log shall see none of this.
extern "C" void vsyslog(int, const char* format, va_list arguments) {
    std::array<char, 2048> text;
    std::vsnprintf(text.data(), text.size(), format, arguments);
}

extern "C" void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsyslog(priority, format, arguments);
    va_end(arguments);
}

namespace fuzz {
namespace {

// The built-in fabric with few ports, since each costs several queries, and its traps going out.
sim::Fabric NormalFabric() {
    sim::Fabric fabric = sim::DefaultFabric();
    for (sim::Switch& unit : fabric.switches) {
        unit.ports.resize(2);
    }
    sim::Switch& local = *fabric.Find(kLocalDomain);
    local.devLogComp = "Snmp";
    local.devLogLevel = "Info";
    local.traps = {};
    const std::string sink = LoopbackAddress(1);
    local.traps[0] = {sink, 16200, "mark", true, "1"};
    local.traps[1] = {sink, 16201, "mark", true, "2"};
    local.traps[2] = {sink, 16202, "critical", true, "2"};
    return fabric;
}

void Change(sim::Switch& unit) {
    unit.operState = "Diagnostics";
    unit.inbandEnable = !unit.inbandEnable;
    unit.powerSupplies.assign(unit.powerSupplies.size(), "Bad");
    unit.fans.assign(unit.fans.size(), "Bad");
    for (sim::Blade& blade : unit.blades) {
        blade.tempStatus = "Overheating";
        blade.voltageStatus = "Bad";
    }
    for (sim::Port& port : unit.ports) {
        port.operState = port.operState == "Online" ? "Down" : "Online";
        port.diagStatus = port.diagStatus == "Failed" ? "Passed" : "Failed";
    }
}

sim::Fabric FabricOf(unsigned scene) {
    static const sim::Fabric normal = NormalFabric();
    sim::Fabric fabric = normal;
    if (scene & kChanged) {
        Change(*fabric.Find(kLocalDomain));
    }
    if (scene & kDeparted) {
        fabric.switches.pop_back();
    }
    if (scene & kInterop) {
        fabric.mergeMode = "Interop_2";
    }
    fabric.proxy = (scene & kProxyless) == 0;
    return fabric;
}

// All but what start-up and every refresh of the unit table ask until it is answered.
std::optional<Datagram> FailQuery(const sim::ReceivedCommand& command, Datagram proper) {
    if (command.type != sim::kGetType || command.text == "Get.Oper.Switch.Nop" ||
        command.text == "Get.Oper.Switch.DomainID") {
        return proper;
    }
    return ReplyTo(command, "#7");
}

}  // namespace

void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

Switch::Switch() : server(FabricOf(kNormal), LoopbackAddress(0)) {
    server.AnswerAll();
    server.SetRecording(false);
    ::setenv("SNMPMAIN_ROOT", "/dev/null", 1);
    Require(
        snmpmain::InitLink(LoopbackAddress(0).c_str()) == 0 && snmpmain::InitSendRecvLock() == 0,
        "link");
    snmpmain::OpenTraceLog();
    snmpmain::SetDiagnosticLevel(snmpmain::kTrace);
}

void Switch::SetScene(unsigned scene) {
    if (((scene ^ scene_) & ~unsigned{kFailing}) != 0) {
        server.WithFabric([&](sim::Fabric& fabric) { fabric = FabricOf(scene); });
    }
    scene_ = scene;
    server.SetReplyOverride((scene & kFailing) != 0 ? FailQuery : sim::Server::ReplyOverride());
}

void Switch::CheckRequests() const {
    Require(server.Complaints().empty(), "every request is well-formed");
}

Datagram ReplyTo(const sim::ReceivedCommand& command, std::string_view text) {
    return sim::BuildFrame(0, command.type, command.sequence, text);
}

}  // namespace fuzz
