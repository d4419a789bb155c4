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
    kNoMoreFiles = 18,
    kNotSupported = 50,
    kFileExists = 80,
    kInvalidParameter = 87,
    kInsufficientBuffer = 122,
    kBadPathName = 161,
    kAlreadyExists = 183,
    kMoreData = 234,
};

}  // namespace vagent::os
