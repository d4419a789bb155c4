#pragma once

#include <cstdint>
#include <cstdio>

namespace vagent::files {

// The Windows status that matches a C runtime error number, for the C
// streams that report through errno.
std::uint32_t StatusOfErrno(int error);

// Why fread gave less than it was asked for: the C runtime's error when the
// stream failed (error is errno right after the read), otherwise 38, the
// end of the file, which a file that shrank since its size was taken meets.
std::uint32_t StatusOfShortRead(std::FILE* file, int error);

}  // namespace vagent::files
