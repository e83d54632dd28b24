// Codes that several tables of FIBRE-CHANNEL-FE-MIB have, and that hold for every switch, port or
// login.
#pragma once

#include <cstdint>

namespace snmpmain::femgmt {

constexpr std::uint32_t kNoIntermix = 2;
constexpr std::uint32_t kTransparent = 1;  // stacked connect mode
constexpr std::uint32_t kInOrder = 1;      // sequence delivery

}  // namespace snmpmain::femgmt
