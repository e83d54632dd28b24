#include "src/link/addressing.h"

#include <atomic>

namespace snmpmain {
namespace {

constexpr std::uint32_t kInteropDomainOffset = 0x60;

std::atomic<std::uint32_t> localDomainId{0};
std::atomic<std::uint32_t> mergeMode{kMergeOther};

std::uint32_t DomainOffset() {
    return mergeMode == kMergeInterop2 ? kInteropDomainOffset : 0;
}

}  // namespace

void SetLocalDomainId(std::uint32_t domain) {
    localDomainId = domain;
}

std::uint32_t GetLocalDomainId() {
    return localDomainId;
}

bool IsLocalDomain(std::uint32_t domain) {
    return domain == 0 || domain == localDomainId;
}

void SetMergeMode(std::uint32_t mode) {
    mergeMode = mode;
}

std::uint32_t GetMergeMode() {
    return mergeMode;
}

std::uint32_t MakeTargetWord(std::uint32_t domain) {
    return domain == 0 ? 0 : (domain + DomainOffset()) << 16;
}

std::uint32_t DomainOfTargetWord(std::uint32_t target) {
    const std::uint32_t domain = target >> 16;
    return domain > DomainOffset() ? domain - DomainOffset() : domain;
}

}  // namespace snmpmain
