// Queries (without "Get.") to reply texts.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "sim/fabric.h"

namespace sim {

/// The number after "#" in the reply to a command that failed.
enum class CommandError {
    kUnknownCommand = 1,  // no switch knows this path
    kNoSuchEntry = 2,     // an index or key that is not there; also the end of a list
    kNotOpen = 3,         // a setting, or saving, in an area that is not open
    kNeedsAdmin = 4,      // a change by one who does not hold the admin rights
    kBadValue = 5,        // a setting to an impossible value
    kRefused = 6,  // admin rights that another one holds; a private event where none is taken
    kFailed = 7,   // a query that the fabric's `values` make fail
};

/// "#2" and the like.
std::string ErrorText(CommandError error);

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>{}(text);
    }
};
/// Path to reply text.
using ReplyMap = std::unordered_map<std::string, std::string, TextHash, std::equal_to<>>;

/// Answers commands from rendered replies. A switch and its name server are rendered when they are
/// first asked, so that a query costs two or three look-ups, and a large fabric is not rendered all
/// at once. The fabric must outlive this; one thread at a time.
class Commands {
  public:
    explicit Commands(const Fabric& fabric);

    /// To be called after every change of the fabric.
    void Forget();

    /// The switch of a domain (0 = the local one), or none.
    const Switch* Find(std::uint32_t domain) const;

    /// `runningSeconds`: since the simulation began; it is added to the switch's uptime.
    std::string Get(const Switch& unit, std::string_view path, std::uint32_t runningSeconds);

  private:
    const std::string* FindRendered(const Switch& unit, std::string_view path);
    std::string GetUnrendered(const Switch& unit, std::string_view path,
                              std::uint32_t runningSeconds) const;

    const Fabric& fabric_;
    std::array<const Switch*, 256> byDomain_{};
    // By domain: what the switch answers about itself, its `values` included, and its name server,
    // which every switch tells.
    std::array<std::unique_ptr<ReplyMap>, 256> rendered_;
    std::array<std::unique_ptr<ReplyMap>, 256> nameServers_;
    std::unique_ptr<ReplyMap> fabricWide_;
};

}  // namespace sim
