#pragma once

#include <cstddef>
#include <string>

#include "os/HostFacts.h"

namespace vagent {

// The host keeps its directories and names in 256-character buffers.
constexpr std::size_t kPathTextCapacity = 256;

// The text cut to the buffer's capacity.
std::string BoundedText(const char* text);

// The directory of a module with its trailing backslash, from a path of at
// most 256 characters; the whole path when it has no backslash, and empty
// when the path is unknown.
std::string ModuleDirectory(os::Module module);

}  // namespace vagent
