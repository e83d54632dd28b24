// Which switch is the local one, and how the others are addressed. switch_info.h reads both from
// the switch and sets them here. Any thread.
#pragma once

#include <cstdint>

namespace snmpmain {

// Zoning merge modes.
constexpr std::uint32_t kMergeOther = 0;
constexpr std::uint32_t kMergeNonSW2 = 1;
constexpr std::uint32_t kMergeInterop2 = 2;  // domains are addressed with an offset

void SetLocalDomainId(std::uint32_t domain);
std::uint32_t GetLocalDomainId();

// Whether a domain id means the local switch: 0 or the local domain id.
bool IsLocalDomain(std::uint32_t domain);

void SetMergeMode(std::uint32_t mode);
std::uint32_t GetMergeMode();

// Where a domain's switch is addressed: 0 for the local switch, else the domain as the Fibre
// Channel address of its domain, with 0x60 added to it in the "Interop_2" zoning merge mode.
std::uint32_t MakeTargetWord(std::uint32_t domain);

// The domain that such a word of a frame names.
std::uint32_t DomainOfTargetWord(std::uint32_t target);

}  // namespace snmpmain
