// What fuzz targets have in common: a way to complain, a reader of inputs, the switch, and (in the
// source file) replacements for what must not happen while fuzzing, sleeping and writing to the
// system's log.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "sim/server.h"

namespace fuzz {

// Ends the process where a property does not hold.
void Require(bool holds, const char* what);

// Takes an input apart from the front. Behind its end there are zeros, so that every input means
// something.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> input) : rest_(input) {}

    bool AtEnd() const {
        return rest_.empty();
    }
    std::uint8_t Byte() {
        const auto byte = Bytes(1);
        return byte.empty() ? std::uint8_t{0} : byte[0];
    }
    // Big-endian.
    std::uint32_t Number(int bytes) {
        std::uint32_t number = 0;
        while (bytes-- > 0) {
            number = number << 8 | Byte();
        }
        return number;
    }
    // As many as there are.
    std::span<const std::uint8_t> Bytes(std::size_t count) {
        const auto bytes = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(bytes.size());
        return bytes;
    }
    // Up to the mark, which is passed over, or to the end.
    std::span<const std::uint8_t> UpTo(std::uint8_t mark) {
        const auto end = std::find(rest_.begin(), rest_.end(), mark);
        const auto bytes = Bytes(static_cast<std::size_t>(end - rest_.begin()));
        Bytes(1);
        return bytes;
    }

  private:
    std::span<const std::uint8_t> rest_;
};

// What differs from the fabric as it normally is; to be combined.
enum Scene : unsigned {
    kNormal = 0,
    kChanged = 1,    // the local switch's states are others
    kDeparted = 2,   // one switch less
    kInterop = 4,    // merge mode "Interop_2"
    kProxyless = 8,  // switches speak for themselves only
    kFailing = 16,   // queries for values fail; discovery and its ping do not
};

constexpr std::uint16_t kLocalDomain = 2;

using Datagram = std::vector<std::uint8_t>;

// The simulator, which answers everything at once, and the agent's link to it.
class Switch {
  public:
    // Opens the link, and the log for messages of every level. There are no files and no daemon.
    Switch();

    // Changes what the switch answers, and takes away a reply override.
    void SetScene(unsigned scene);

    // To be called after each input.
    void CheckRequests() const;

    sim::Server server;

  private:
    unsigned scene_ = kNormal;
};

// The reply with another text.
Datagram ReplyTo(const sim::ReceivedCommand& command, std::string_view text);

}  // namespace fuzz
