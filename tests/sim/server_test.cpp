#include "sim/server.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <system_error>
#include <thread>

#include "sim/frame.h"
#include "tests/sim/client.h"

namespace {

using simtest::Bytes;
using simtest::Client;
using simtest::Frame;
using simtest::Text;
using simtest::Word;

constexpr std::uint16_t kGet = 1024, kSet = 1025, kOn = 1027, kOff = 1028;
constexpr int kShort = 150;  // milliseconds in which nothing is expected

std::string TextOrNone(const std::optional<Bytes>& frame) {
    return frame ? Text(*frame) : "(none)";
}

TEST(Server, LeavesMalformedFramesUnansweredAndRemembersWhy) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client client(LoopbackAddress(0).c_str());
    Bytes bad = Frame(kGet, "Oper.Switch.Nop");
    bad.back() ^= 1;
    client.Send(bad);
    client.Send({});
    EXPECT_EQ(client.Receive(kShort), std::nullopt);
    const auto complaints = server.Complaints();
    ASSERT_EQ(complaints.size(), 2u);
    EXPECT_NE(complaints[0].find("from 127.0.0.1:"), std::string::npos);
    EXPECT_NE(complaints[0].find("checksum is"), std::string::npos);
    EXPECT_TRUE(server.TakeCommands().empty());
}

TEST(Server, PausesStopsAndStartsAgain) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client client(LoopbackAddress(0).c_str());
    server.Pause(true);
    EXPECT_EQ(client.Ask(kOn, "", 0, kShort), "(none)");
    EXPECT_EQ(server.TakeCommands().size(), 1u);
    server.Pause(false);
    EXPECT_EQ(client.Get("Oper.Switch.Nop"), "Ok");

    EXPECT_THROW(sim::Server(sim::DefaultFabric(), LoopbackAddress(0)), std::system_error);
    server.Stop();
    sim::Server(sim::DefaultFabric(), LoopbackAddress(0));
    EXPECT_EQ(client.Ask(kGet, "Oper.Switch.Nop", 0, kShort), "(none)");
    server.Start();
    server.SendNotification(0, "nobody asked this process yet");
    EXPECT_EQ(client.Receive(kShort), std::nullopt);
    EXPECT_EQ(client.Get("Oper.Switch.Nop"), "Ok");

    EXPECT_THROW(sim::Server(sim::DefaultFabric(), "10.0.0.1"), std::system_error);
    EXPECT_THROW(sim::Server(sim::DefaultFabric(), "localhost"), std::system_error);
    EXPECT_THROW(sim::Server(sim::Fabric{}, LoopbackAddress(0)), sim::FabricError);
}

TEST(Server, NotifiesTheLastRequesterAndTheRegisteredOnceEach) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client registered(LoopbackAddress(0).c_str()), elsewhere(LoopbackAddress(0).c_str()),
        last(LoopbackAddress(0).c_str());
    EXPECT_EQ(registered.Ask(kOn, "", 7), "");
    EXPECT_EQ(elsewhere.Ask(kOn, "", 1), "");
    EXPECT_EQ(last.Ask(kOn, "", 7), "");
    server.SendNotification(7, "5;hello");
    EXPECT_EQ(registered.Receive(), Frame(1026, "5;hello", 7 << 16, 1));
    EXPECT_EQ(last.Receive(), Frame(1026, "5;hello", 7 << 16, 1));
    EXPECT_EQ(last.Receive(kShort), std::nullopt);
    EXPECT_EQ(elsewhere.Receive(kShort), std::nullopt);

    EXPECT_EQ(registered.Ask(kOff, "", 7), "");
    EXPECT_EQ(last.Get("Oper.Switch.Nop"), "Ok");
    server.SendNotification(0, "1");
    EXPECT_EQ(last.Receive(), Frame(1026, "1", 0, 2));
    EXPECT_EQ(registered.Receive(kShort), std::nullopt);
    server.SendRaw(Bytes{1, 2, 3});
    EXPECT_EQ(last.Receive(), (Bytes{1, 2, 3}));

    // The sequence stays among those of notifications when it wraps.
    for (int i = 3; i <= 0x10001; i++) {
        server.SendNotification(0, "");
        const auto frame = last.Receive();
        ASSERT_TRUE(frame);
        ASSERT_EQ(Word(*frame, 12), i <= 0xFFFF ? static_cast<std::uint32_t>(i)
                                                : static_cast<std::uint32_t>(i - 0xFFFF));
    }
}

/// A server with faults to be set, and a client of it.
struct Faulty {
    explicit Faulty(const char* address) : server(sim::DefaultFabric(), address), client(address) {}

    void Set(auto change) {
        sim::Faults faults;
        change(faults);
        server.SetFaults(faults);
    }
    void SendDomainQuery(std::uint32_t domain, std::uint32_t sequence) {
        client.Send(Frame(kGet, "Oper.Switch.DomainID", domain << 16, sequence));
    }

    sim::Server server;
    Client client;
};

TEST(Faults, LoseTheSameRepliesForTheSameSeed) {
    Faulty link(LoopbackAddress(0).c_str());
    std::vector<std::vector<std::uint32_t>> runs;
    for (const std::uint64_t seed : {5u, 5u, 6u}) {
        link.Set([&](sim::Faults& f) { f.lose = 0.5, f.seed = seed; });
        for (std::uint32_t i = 0; i < 40; i++) {
            link.SendDomainQuery(0, 0x10001 + i);
        }
        const auto done = [&] {
            const sim::Totals totals = link.server.GetTotals();
            return totals.answered + totals.unanswered == 40 * (runs.size() + 1);
        };
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!done() && std::chrono::steady_clock::now() < limit) {
            std::this_thread::yield();
        }
        runs.emplace_back();
        while (const auto frame = link.client.Receive(kShort)) {
            runs.back().push_back(Word(*frame, 12));
        }
    }
    EXPECT_EQ(runs[0], runs[1]);
    EXPECT_NE(runs[0], runs[2]);
    EXPECT_GT(runs[0].size(), 5u);
    EXPECT_LT(runs[0].size(), 35u);

    link.Set([](sim::Faults& f) { f.silent = true; });
    EXPECT_EQ(link.client.Ask(kGet, "Oper.Switch.Nop", 0, kShort), "(none)");
}

TEST(Faults, DelayRepliesWhileOtherRequestsGoOn) {
    Faulty link(LoopbackAddress(0).c_str());
    link.Set([](sim::Faults& f) { f.delayMs = 400; });
    const auto start = std::chrono::steady_clock::now();
    link.SendDomainQuery(0, 0x10003);
    link.SendDomainQuery(7, 0x10004);
    EXPECT_EQ(TextOrNone(link.client.Receive()), "2");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(390));
    EXPECT_EQ(TextOrNone(link.client.Receive()), "7");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(800));
}

TEST(Faults, DuplicatePrecedeAndMarkReplies) {
    Faulty link(LoopbackAddress(0).c_str());
    link.Set([](sim::Faults& f) {
        f.duplicate = 1, f.wrongSequence = 1, f.statusByte = 1, f.statusValue = 9;
    });
    link.SendDomainQuery(0, 0x10001);
    for (const std::uint32_t sequence : {0x20002u, 0x10001u, 0x10001u}) {
        Bytes expected = Frame(kGet, "2", 2 << 16, sequence);
        expected[2] = 9;
        simtest::Sum(expected);
        EXPECT_EQ(link.client.Receive(), expected);
    }
    EXPECT_EQ(link.client.Receive(kShort), std::nullopt);
}

TEST(Faults, ReorderedReplyFollowsTheNextOrTheTimeLimit) {
    Faulty link(LoopbackAddress(0).c_str());
    for (const unsigned delayMs : {0u, 50u}) {
        link.Set([&](sim::Faults& f) { f.reorder = 1, f.reorderMs = 5000, f.delayMs = delayMs; });
        link.SendDomainQuery(0, 0x10003);
        EXPECT_EQ(link.client.Receive(kShort), std::nullopt);
        link.SendDomainQuery(7, 0x10004);
        EXPECT_EQ(TextOrNone(link.client.Receive()), "7");
        EXPECT_EQ(TextOrNone(link.client.Receive()), "2");
    }
    link.Set([](sim::Faults& f) { f.reorder = 1, f.reorderMs = 100; });
    EXPECT_EQ(link.client.Get("Oper.Switch.DomainID"), "2");
}

TEST(Concurrency, ChangesFaultsAndRequestsDoNotDisturbEachOther) {
    sim::Server server(sim::GenerateFabric(3), LoopbackAddress(0));
    std::atomic<bool> done{false};
    std::thread meddler([&] {
        for (unsigned i = 0; !done; i++) {
            sim::Faults faults;
            faults.duplicate = i % 2 == 0 ? 0.5 : 0;
            faults.delayMs = i % 3 == 0 ? 1 : 0;
            server.SetFaults(faults);
            server.WithFabric([&](sim::Fabric& fabric) {
                fabric.Find(1)->symbolicName = "name " + std::to_string(i);
            });
            server.TakeCommands();
            server.SendNotification(1, "1");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    Client client(LoopbackAddress(0).c_str());
    int answered = 0;
    for (std::uint32_t i = 0; i < 300; i++) {
        client.Send(Frame(kGet, "Config.Switch.SymName", 1 << 16, 0x10003 + i));
        for (auto frame = client.Receive(); frame; frame = client.Receive()) {
            if (Word(*frame, 12) == 0x10003 + i) {
                EXPECT_TRUE(Text(*frame).starts_with("name ") || Text(*frame) == "switch-1");
                answered++;
                break;
            }
        }
    }
    done = true;
    meddler.join();
    EXPECT_EQ(answered, 300);
    EXPECT_TRUE(server.Complaints().empty());
}

}  // namespace
