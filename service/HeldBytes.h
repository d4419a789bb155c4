#pragma once

#include <atomic>
#include <cstdint>

namespace vagent::service {

// The bytes of request frames that the service holds in memory, across all
// connections, from the first byte read until the frame's task has run,
// counted against one budget. Each connection's own caps bound a single
// frame; this bounds what many connections can make the service hold at
// once.
class HeldBytes {
public:
    explicit HeldBytes(std::uint64_t budget) : budget_(budget) {}
    HeldBytes(const HeldBytes&) = delete;
    HeldBytes& operator=(const HeldBytes&) = delete;

    // Takes count bytes when the budget has room for them; false, taking
    // nothing, when it has not.
    bool TryTake(std::uint64_t count);
    void Give(std::uint64_t count);

    std::uint64_t Held() const { return held_.load(); }
    std::uint64_t Budget() const { return budget_; }

private:
    const std::uint64_t budget_;
    std::atomic<std::uint64_t> held_{0};
};

}  // namespace vagent::service
