#pragma once

#include <cstdint>
#include <string>

#include "os/Registry.h"

namespace vagent {

// One 32-bit number of the registry. Both open the existing key (a missing
// key is never created), close it and the root on every path, and give 1
// only when the open and the read or write both succeeded.
int ReadRegistryNumber(os::RegistryKey root, const std::string& path, const std::string& name,
                       std::int32_t& value);
int WriteRegistryNumber(os::RegistryKey root, const std::string& path, const std::string& name,
                        std::int32_t value);

}  // namespace vagent
