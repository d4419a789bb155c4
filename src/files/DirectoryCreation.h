#pragma once

#include <cstdint>
#include <string>

namespace vagent::files {

// Creates a directory and its missing parents. A directory that exists
// already, or a file of that name, is accepted as the system's own
// directory creation answers it (183 and 80): the result is then 0, as it is
// for a new directory; any other status is returned.
std::uint32_t CreateDirectoryAccepted(const std::string& path);

}  // namespace vagent::files
