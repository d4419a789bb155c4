#pragma once

#include <cstdint>

#include "os/Facilities.h"

namespace vagent::os {

// The calendar clock.
class Clock {
public:
    virtual ~Clock() = default;
    // Mirrors time(NULL): seconds since the epoch.
    virtual std::int64_t SecondsSinceEpoch() = 0;
};

template <>
Clock& RealFacility<Clock>();

}  // namespace vagent::os
