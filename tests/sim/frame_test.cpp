#include "sim/frame.h"

#include <gtest/gtest.h>

#include "tests/sim/client.h"

namespace {

using simtest::Bytes;
using simtest::Frame;
using simtest::Put;
using simtest::Sum;

std::string Check(const Bytes& frame, bool interop = false) {
    sim::Request request;
    return sim::CheckRequest(frame, interop, request);
}

Bytes Changed(std::size_t offset, std::uint32_t value, int size, bool sum = true) {
    Bytes frame = Frame(1024, "Oper.Switch.Nop");
    Put(frame, offset, value, size);
    if (sum) {
        Sum(frame);
    }
    return frame;
}

TEST(RequestCheck, NamesWhatIsWrongWithActualAndExpectedValue) {
    Bytes longer = Frame(1024, "Oper.Switch.Nop");
    longer.resize(44);
    Put(longer, 10, 28, 2);
    Put(longer, 36, 0, 4);
    Sum(longer);
    Bytes noEnd = Frame(1024, "Oper.Switch.Nop");
    std::fill(noEnd.begin() + 16, noEnd.end() - 4, std::uint8_t{'x'});
    Sum(noEnd);
    const std::pair<Bytes, const char*> cases[] = {
        {Bytes(23), "size is 23 bytes, expected 24..524"},
        {Bytes(525), "size is 525 bytes, expected 24..524"},
        {Changed(0, 0x11000001, 4), "marker is 0x11000001, expected 0x11000000"},
        {Changed(2, 1, 1), "marker is 0x11000100, expected 0x11000000"},
        {Changed(8, 1026, 2), "message type is 1026, expected 1024, 1025, 1027 or 1028"},
        {Changed(10, 28, 2), "payload length is 28, expected 24 for a frame of 40 bytes"},
        {longer, "size is 44 bytes, expected 40 for a text of 15 characters"},
        {noEnd, "text has no terminating NUL in its 20 bytes"},
        {Changed(35, 1, 1), "padding byte at offset 35 is 0x01, expected 0x00"},
        {Changed(36, 5, 4, false), "checksum is 0x00000005, expected 0x000005c1"},
        {Changed(12, 0x10000, 4), "sequence is 0x10000, expected 0x10001..0x20002"},
        {Changed(12, 0x20003, 4), "sequence is 0x20003, expected 0x10001..0x20002"},
        {Changed(4, 0x20001, 4),
         "target word is 0x00020001, expected 0 or (domain << 16) with a domain of 1..239"},
        {Changed(4, 240u << 16, 4),
         "target word is 0x00f00000, expected 0 or (domain << 16) with a domain of 1..239"},
    };
    for (const auto& [frame, complaint] : cases) {
        EXPECT_EQ(Check(frame), complaint);
    }
}

}  // namespace
