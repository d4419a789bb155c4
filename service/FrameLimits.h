#pragma once

#include <cstdint>

namespace vagent::service {

// The largest lengths a request frame may claim; a claim above them is
// refused before anything is allocated for it.
struct FrameLimits {
    static constexpr std::uint32_t kDefaultMaxRootSite = 64u << 10;
    static constexpr std::uint32_t kDefaultMaxBlock = 64u << 20;

    std::uint32_t maxRootSite = kDefaultMaxRootSite;
    std::uint32_t maxBlock = kDefaultMaxBlock;
};

}  // namespace vagent::service
