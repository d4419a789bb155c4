#pragma once

#include "os/ComputerNames.h"

namespace vagent::os {

class Win32ComputerNames final : public ComputerNames {
public:
    std::uint32_t ComputerNameEx(std::uint32_t format, char* buffer, std::uint32_t& size) override;
};

}  // namespace vagent::os
