#pragma once

#include "os/ComputerNames.h"

namespace vagent::os {

// A POSIX host knows its host name; it has no Windows domain.
class PosixComputerNames final : public ComputerNames {
public:
    std::uint32_t ComputerNameEx(std::uint32_t format, char* buffer, std::uint32_t& size) override;
};

}  // namespace vagent::os
