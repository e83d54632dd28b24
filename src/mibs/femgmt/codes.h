// Codes that several tables of FIBRE-CHANNEL-FE-MIB have, and that hold for every switch, port or
// login.
#pragma once

#include <cstdint>

#include "src/base/words.h"

namespace snmpmain::femgmt {

constexpr std::uint32_t kNoIntermix = 2;
constexpr std::uint32_t kTransparent = 1;  // stacked connect mode
constexpr std::uint32_t kInOrder = 1;      // sequence delivery

// Operational states of modules and ports.
inline constexpr Word kOperWords[] = {{"Online", 1}, {"Offline", 2}, {"Diagnostics", 3}};
inline constexpr WordTable kOperStates{kOperWords, 4};

}  // namespace snmpmain::femgmt
