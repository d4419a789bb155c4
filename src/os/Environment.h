#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// The process's environment variables.
class Environment {
public:
    virtual ~Environment() = default;
    // Mirrors GetEnvironmentVariableA: returns 0 with the value, or the
    // failure status (203 when the variable is not set).
    virtual std::uint32_t Value(const std::string& name, std::string& value) = 0;
};

template <>
Environment& RealFacility<Environment>();

}  // namespace vagent::os
