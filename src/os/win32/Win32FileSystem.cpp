#include "os/win32/Win32FileSystem.h"

#include <cerrno>
#include <io.h>
#include <sys/stat.h>

#include <memory>
#include <new>

#include "os/win32/WindowsHeaders.h"

#include <shlobj.h>
#include <winnetwk.h>

namespace vagent::os {
namespace {

HANDLE AsFindHandle(FindHandle handle) {
    return reinterpret_cast<HANDLE>(handle);
}

void CopyEntry(const WIN32_FIND_DATAA& found, FindEntry& entry) {
    entry.name = found.cFileName;
    entry.attributes = found.dwFileAttributes;
}

// Closes a network enumeration on every way out.
class NetworkEnumeration {
public:
    NetworkEnumeration() = default;
    ~NetworkEnumeration() {
        if (handle_ != nullptr) {
            WNetCloseEnum(handle_);
        }
    }
    NetworkEnumeration(const NetworkEnumeration&) = delete;
    NetworkEnumeration& operator=(const NetworkEnumeration&) = delete;
    HANDLE* Address() { return &handle_; }
    HANDLE Get() const { return handle_; }

private:
    HANDLE handle_ = nullptr;
};

}  // namespace

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

std::uint32_t Win32FileSystem::Attributes(const std::string& path, std::uint32_t& attributes) {
    const DWORD found = GetFileAttributesA(path.c_str());
    if (found == INVALID_FILE_ATTRIBUTES) {
        return GetLastError();
    }
    attributes = found;
    return 0;
}

std::uint32_t Win32FileSystem::AttributesEx(const std::string& path, FileAttributeData& data) {
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &found)) {
        return GetLastError();
    }
    data.attributes = found.dwFileAttributes;
    data.size = (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
    return 0;
}

std::uint32_t Win32FileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    return SetFileAttributesA(path.c_str(), attributes) ? 0 : GetLastError();
}

std::uint32_t Win32FileSystem::FindFirst(const std::string& pattern, FindHandle& handle,
                                         FindEntry& entry) {
    WIN32_FIND_DATAA found{};
    const HANDLE search = FindFirstFileA(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        handle = kInvalidFind;
        return GetLastError();
    }
    handle = reinterpret_cast<FindHandle>(search);
    CopyEntry(found, entry);
    return 0;
}

std::uint32_t Win32FileSystem::FindNext(FindHandle handle, FindEntry& entry) {
    WIN32_FIND_DATAA found{};
    if (!FindNextFileA(AsFindHandle(handle), &found)) {
        return GetLastError();
    }
    CopyEntry(found, entry);
    return 0;
}

void Win32FileSystem::FindClose(FindHandle handle) {
    ::FindClose(AsFindHandle(handle));
}

std::uint32_t Win32FileSystem::CreateDirectoryTree(const std::string& path) {
    const int wideLength = MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, nullptr, 0);
    if (wideLength <= 0) {
        return GetLastError();
    }
    std::wstring wide(static_cast<std::size_t>(wideLength), L'\0');
    MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, &wide[0], wideLength);
    return static_cast<std::uint32_t>(SHCreateDirectory(nullptr, wide.c_str()));
}

std::int64_t Win32FileSystem::FileLength(std::FILE* file) {
    return _filelengthi64(_fileno(file));
}

std::uint32_t Win32FileSystem::LogicalDrives() {
    return GetLogicalDrives();
}

std::uint32_t Win32FileSystem::ConnectedDiskNames(std::vector<std::string>& localNames) {
    NetworkEnumeration enumeration;
    DWORD status = WNetOpenEnumA(RESOURCE_CONNECTED, RESOURCETYPE_DISK, RESOURCEUSAGE_CONNECTABLE,
                                 nullptr, enumeration.Address());
    if (status != NO_ERROR) {
        return status;
    }
    DWORD count = 0xFFFFFFFFu;
    DWORD size = 0;
    status = WNetEnumResourceA(enumeration.Get(), &count, nullptr, &size);
    if (status != ERROR_MORE_DATA || size == 0) {
        return status == ERROR_NO_MORE_ITEMS ? NO_ERROR : status;
    }
    std::unique_ptr<unsigned char[]> buffer(new (std::nothrow) unsigned char[size]);
    if (!buffer) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    count = 0xFFFFFFFFu;
    status = WNetEnumResourceA(enumeration.Get(), &count, buffer.get(), &size);
    if (status != NO_ERROR) {
        return status == ERROR_NO_MORE_ITEMS ? NO_ERROR : status;
    }
    const auto* resources = reinterpret_cast<const NETRESOURCEA*>(buffer.get());
    for (DWORD index = 0; index < count; ++index) {
        if (resources[index].lpLocalName != nullptr) {
            localNames.emplace_back(resources[index].lpLocalName);
        }
    }
    return NO_ERROR;
}

std::uint32_t Win32FileSystem::LastError() {
    return GetLastError();
}

template <>
FileSystem& RealFacility<FileSystem>() {
    static Win32FileSystem real;
    return real;
}

}  // namespace vagent::os
