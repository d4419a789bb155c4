#pragma once

#include <cstdint>

#include "os/Com.h"

namespace vagent::test {

// Counts initialisations and uninitialisations so that a test can check that
// every way out of a worker leaves COM balanced.
class FakeCom final : public os::Com {
public:
    std::int32_t Initialize() override {
        ++initializations;
        return result;
    }
    void Uninitialize() override { ++uninitializations; }

    bool Balanced() const { return initializations == uninitializations; }

    std::int32_t result = 0;
    int initializations = 0;
    int uninitializations = 0;
};

}  // namespace vagent::test
