#include "helpers/FailingAllocation.h"

#include <new>

namespace {

struct AllocationPlan {
    bool armed = false;
    int allowed = 0;
    int failures = 0;
    int refused = 0;
};

thread_local AllocationPlan plan;

bool ShouldRefuse() {
    if (!plan.armed) {
        return false;
    }
    if (plan.allowed > 0) {
        --plan.allowed;
        return false;
    }
    if (plan.failures > 0) {
        --plan.failures;
        ++plan.refused;
        return true;
    }
    return false;
}

}  // namespace

namespace vagent::test {

ScopedAllocationFailure::ScopedAllocationFailure(int allowed, int failures) {
    plan = AllocationPlan{true, allowed, failures, 0};
}

ScopedAllocationFailure::~ScopedAllocationFailure() {
    plan = AllocationPlan{};
}

int ScopedAllocationFailure::Refused() const {
    return plan.refused;
}

}  // namespace vagent::test

// The replacements delegate to the throwing forms, so that every block is
// still released by the matching delete.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (ShouldRefuse()) {
        return nullptr;
    }
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (ShouldRefuse()) {
        return nullptr;
    }
    try {
        return ::operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
