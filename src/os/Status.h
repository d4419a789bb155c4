#pragma once

#include <cstdint>

namespace vagent::os {

// Windows status codes that the portable code and the POSIX implementation
// need by number. They are declared here again so that the core builds
// without <windows.h>.
enum Status : std::uint32_t {
    kSuccess = 0,
    kFileNotFound = 2,
    kPathNotFound = 3,
    kAccessDenied = 5,
    kNotEnoughMemory = 8,
    kFileExists = 80,
    kNotSupported = 50,
    kInvalidParameter = 87,
    kInsufficientBuffer = 122,
    kAlreadyExists = 183,
    kMoreData = 234,
};

}  // namespace vagent::os
