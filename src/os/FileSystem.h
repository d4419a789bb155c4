#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// The file system, addressed with Windows paths (backslash separators).
class FileSystem {
public:
    virtual ~FileSystem() = default;
    // Mirrors _access(path, 0).
    virtual bool Exists(const std::string& path) = 0;
    // Mirrors _stat: the file's size in bytes; returns 0 or the failure status.
    virtual std::uint32_t Size(const std::string& path, std::uint64_t& size) = 0;
    // Mirrors CopyFileA: returns 0 or the failure status.
    virtual std::uint32_t Copy(const std::string& from, const std::string& to,
                               bool failIfExists) = 0;
    // Mirrors DeleteFileA: returns 0 or the failure status.
    virtual std::uint32_t Remove(const std::string& path) = 0;
    // Mirrors fopen with the C runtime's mode letters; null on failure.
    virtual std::FILE* Open(const std::string& path, const char* mode) = 0;
};

template <>
FileSystem& RealFacility<FileSystem>();

}  // namespace vagent::os
