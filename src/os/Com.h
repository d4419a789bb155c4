#pragma once

#include <cstdint>

#include "os/Facilities.h"

namespace vagent::os {

// COM on the calling thread. Results are HRESULTs: 0 (S_OK) and 1 (S_FALSE,
// already initialised) both succeed and both must be matched by one
// uninitialisation.
class Com {
public:
    virtual ~Com() = default;
    // Mirrors CoInitialize(NULL).
    virtual std::int32_t Initialize() = 0;
    // Mirrors CoUninitialize.
    virtual void Uninitialize() = 0;
};

template <>
Com& RealFacility<Com>();

}  // namespace vagent::os
