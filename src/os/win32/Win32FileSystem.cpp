#include "os/win32/Win32FileSystem.h"

#include <cerrno>
#include <io.h>
#include <sys/stat.h>

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {

bool Win32FileSystem::Exists(const std::string& path) {
    return _access(path.c_str(), 0) == 0;
}

std::uint32_t Win32FileSystem::Size(const std::string& path, std::uint64_t& size) {
    struct _stat64 status;
    if (_stat64(path.c_str(), &status) != 0) {
        return errno == ENOENT ? ERROR_FILE_NOT_FOUND : ERROR_ACCESS_DENIED;
    }
    size = static_cast<std::uint64_t>(status.st_size);
    return 0;
}

std::uint32_t Win32FileSystem::Copy(const std::string& from, const std::string& to,
                                    bool failIfExists) {
    return CopyFileA(from.c_str(), to.c_str(), failIfExists ? TRUE : FALSE) ? 0 : GetLastError();
}

std::uint32_t Win32FileSystem::Remove(const std::string& path) {
    return DeleteFileA(path.c_str()) ? 0 : GetLastError();
}

std::FILE* Win32FileSystem::Open(const std::string& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

template <>
FileSystem& RealFacility<FileSystem>() {
    static Win32FileSystem real;
    return real;
}

}  // namespace vagent::os
