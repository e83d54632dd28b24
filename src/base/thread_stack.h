// Stacks of the agent's own threads: the controller has little memory.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>

namespace snmpmain {

// Bytes: 64 KiB, or the least that the platform allows where that is more.
inline std::size_t SmallStackSize() {
    constexpr std::size_t kSmallStack = 0x10000;
    return std::max<std::size_t>(kSmallStack, PTHREAD_STACK_MIN);
}

}  // namespace snmpmain
