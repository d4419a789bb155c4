#pragma once

#include "os/HostFacts.h"

namespace vagent::os {

class Win32HostFacts final : public HostFacts {
public:
    std::uint32_t ModuleFileName(Module module, std::string& path) override;
    LocalTime CurrentLocalTime() override;
    std::uint32_t AdapterIPv4Addresses(std::vector<std::string>& addresses) override;
};

}  // namespace vagent::os
