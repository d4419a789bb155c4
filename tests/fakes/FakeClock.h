#pragma once

#include <cstdint>

#include "os/Clock.h"

namespace vagent::test {

// A clock that stands still until the test moves it.
class FakeClock final : public os::Clock {
public:
    std::int64_t SecondsSinceEpoch() override { return now; }

    void Advance(std::int64_t seconds) { now += seconds; }

    std::int64_t now = 1'700'000'000;
};

}  // namespace vagent::test
