#include "HeldBytes.h"

namespace vagent::service {

bool HeldBytes::TryTake(std::uint64_t count) {
    std::uint64_t held = held_.load();
    do {
        if (count > budget_ || held > budget_ - count) {
            return false;
        }
    } while (!held_.compare_exchange_weak(held, held + count));
    return true;
}

void HeldBytes::Give(std::uint64_t count) {
    held_.fetch_sub(count);
}

}  // namespace vagent::service
