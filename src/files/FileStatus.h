#pragma once

#include <cstdint>

namespace vagent::files {

// The Windows status that matches a C runtime error number, for the C
// streams that report through errno.
std::uint32_t StatusOfErrno(int error);

}  // namespace vagent::files
