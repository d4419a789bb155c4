#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "os/Facilities.h"
#include "os/Status.h"

namespace vagent::os {

// Windows file attribute bits the portable code needs by number.
enum FileAttribute : std::uint32_t {
    kFileAttributeReadOnly = 0x01,
    kFileAttributeDirectory = 0x10,
    kFileAttributeArchive = 0x20,
    kFileAttributeNormal = 0x80,
};

// What GetFileAttributesExA reports of a file.
struct FileAttributeData {
    std::uint32_t attributes = 0;
    std::uint64_t size = 0;
};

// One entry of a directory search: its name (without the directory) and its
// attributes.
struct FindEntry {
    std::string name;
    std::uint32_t attributes = 0;
};

// An open directory search; kInvalidFind when none.
using FindHandle = std::uintptr_t;
constexpr FindHandle kInvalidFind = ~static_cast<FindHandle>(0);

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

    // Mirrors GetFileAttributesA: returns 0 or the failure status.
    virtual std::uint32_t Attributes(const std::string& path, std::uint32_t& attributes) = 0;
    // Mirrors GetFileAttributesExA with the standard information level.
    virtual std::uint32_t AttributesEx(const std::string& path, FileAttributeData& data) = 0;
    // Mirrors SetFileAttributesA: returns 0 or the failure status.
    virtual std::uint32_t SetAttributes(const std::string& path, std::uint32_t attributes) = 0;
    // Mirrors FindFirstFileA over a pattern (a directory and a wild-card
    // name): returns 0 with the first entry, or the failure status with the
    // handle invalid.
    virtual std::uint32_t FindFirst(const std::string& pattern, FindHandle& handle,
                                    FindEntry& entry) = 0;
    // Mirrors FindNextFileA: returns 0 with the next entry, 18 (no more
    // files) at the end, or another failure status.
    virtual std::uint32_t FindNext(FindHandle handle, FindEntry& entry) = 0;
    // Mirrors FindClose.
    virtual void FindClose(FindHandle handle) = 0;
    // Mirrors SHCreateDirectory with no window: creates the directory and
    // every missing parent. Returns 0 when it made it, 183 when the directory
    // exists already, 80 when a file holds the name, 161 for a relative path,
    // or another failure status.
    virtual std::uint32_t CreateDirectoryTree(const std::string& path) = 0;
    // Mirrors _filelength(_fileno(file)): the open file's length, -1 on
    // failure.
    virtual std::int64_t FileLength(std::FILE* file) = 0;
    // Mirrors GetLogicalDrives: bit 0 is A, bit 2 is C.
    virtual std::uint32_t LogicalDrives() = 0;
    // Mirrors the enumeration of connected disk resources (WNetOpenEnumA with
    // scope connected, type disk and usage connectable, WNetEnumResourceA
    // with a count of all after a size query, WNetCloseEnum): appends each
    // resource's local name that is not null. Returns 0 or the status of the
    // enumeration's opening or reading.
    virtual std::uint32_t ConnectedDiskNames(std::vector<std::string>& localNames) = 0;
    // Mirrors GetLastError: the calling thread's last error, as a caller's
    // hook may have left it.
    virtual std::uint32_t LastError() = 0;
};

template <>
FileSystem& RealFacility<FileSystem>();

}  // namespace vagent::os
