#pragma once

#include <cstdint>
#include <string>

namespace vagent::files {

// The directory of the running program's image, with its trailing
// backslash. Always succeeds.
std::string ImageDirectory();

// The computer's DNS host name, asked for between COM's initialisation and
// uninitialisation. Returns 0 with the name, or the failure status.
std::uint32_t HostName(std::string& name);

}  // namespace vagent::files
