#include "sim/server.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include "sim/frame.h"
#include "tests/sim/client.h"

namespace {

using simtest::Bytes;
using simtest::Client;
using simtest::Frame;

constexpr std::uint16_t kGet = 1024, kOn = 1027, kOff = 1028;
constexpr int kShort = 150;  // milliseconds in which nothing is expected

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

TEST(Server, ClosesItsPortAndRefusesWhatCannotBeServed) {
    sim::Server server(sim::DefaultFabric(), LoopbackAddress(0));
    Client client(LoopbackAddress(0).c_str());
    EXPECT_THROW(sim::Server(sim::DefaultFabric(), LoopbackAddress(0)), std::system_error);
    EXPECT_THROW(sim::Server(sim::DefaultFabric(), "10.0.0.1"), std::system_error);
    EXPECT_THROW(sim::Server(sim::Fabric{}, LoopbackAddress(1)), sim::FabricError);
    server.Stop();
    sim::Server(sim::DefaultFabric(), LoopbackAddress(0));
    server.Start();
    EXPECT_EQ(client.Get("Oper.Switch.Nop"), "Ok");
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
    EXPECT_EQ(registered.Ask(kOff, "", 7), "");
    EXPECT_EQ(last.Get("Oper.Switch.Nop"), "Ok");
    server.SendNotification(0, "1");
    EXPECT_EQ(last.Receive(), Frame(1026, "1", 0, 2));
    for (Client* client : {&registered, &elsewhere, &last}) {
        EXPECT_EQ(client->Receive(kShort), std::nullopt);
    }
}

/// A server with faults to be set, and a client of it.
struct Faulty {
    explicit Faulty(const char* address) : server(sim::DefaultFabric(), address), client(address) {}

    void SendDomainQuery(std::uint32_t domain, std::uint32_t sequence) {
        client.Send(Frame(kGet, "Oper.Switch.DomainID", domain << 16, sequence));
    }

    sim::Server server;
    Client client;
};

TEST(Faults, FallTheSameWayForTheSameSeed) {
    const auto lost = [](std::uint64_t seed) {
        std::mt19937_64 random(seed);
        std::string fates;
        for (int i = 0; i < 40; ++i) {
            fates += sim::DecideFate({.lose = 0.5}, random).lost ? 'x' : '.';
        }
        return fates;
    };
    EXPECT_EQ(lost(5), lost(5));
    EXPECT_NE(lost(5), lost(6));
    EXPECT_LT(std::abs(std::ranges::count(lost(5), 'x') - 20), 15);
}

TEST(Faults, DuplicatePrecedeAndMarkReplies) {
    Faulty link(LoopbackAddress(0).c_str());
    link.server.SetFaults({.duplicate = 1, .wrongSequence = 1, .statusByte = 1, .statusValue = 9});
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
        link.server.SetFaults({.delayMs = delayMs, .reorder = 1, .reorderMs = 5000});
        link.SendDomainQuery(0, 0x10003);
        EXPECT_EQ(link.client.Receive(kShort), std::nullopt);
        link.SendDomainQuery(7, 0x10004);
        EXPECT_EQ(link.client.Receive(), Frame(kGet, "7", 7 << 16, 0x10004));
        EXPECT_EQ(link.client.Receive(), Frame(kGet, "2", 2 << 16, 0x10003));
    }
    link.server.SetFaults({.reorder = 1, .reorderMs = 100});
    EXPECT_EQ(link.client.Get("Oper.Switch.DomainID"), "2");
}

}  // namespace
