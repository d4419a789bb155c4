#include "os/posix/PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "os/Status.h"
#include "os/posix/PosixPath.h"

namespace vagent::os {
namespace {

std::uint32_t StatusOf(int error) {
    switch (error) {
        case ENOENT:
            return kFileNotFound;
        case ENOTDIR:
            return kPathNotFound;
        case EEXIST:
            return kFileExists;
        case ENOMEM:
            return kNotEnoughMemory;
        default:
            return kAccessDenied;
    }
}

// Closes a descriptor when the scope ends.
class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) {
            close(fd_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }
    // Closes now and reports whether the close lost written data.
    bool Close() {
        const int fd = fd_;
        fd_ = -1;
        return close(fd) == 0;
    }

private:
    int fd_;
};

bool WriteAll(int fd, const char* data, ssize_t count) {
    while (count > 0) {
        const ssize_t written = write(fd, data, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        data += written;
        count -= written;
    }
    return true;
}

std::uint32_t CopyContents(int source, int target) {
    char buffer[65536];
    for (;;) {
        const ssize_t got = read(source, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return StatusOf(errno);
        }
        if (got == 0) {
            return 0;
        }
        if (!WriteAll(target, buffer, got)) {
            return StatusOf(errno);
        }
    }
}

std::uint32_t AttributesOf(const struct stat& status) {
    const bool directory = S_ISDIR(status.st_mode);
    std::uint32_t attributes = directory ? kFileAttributeDirectory : kFileAttributeArchive;
    if ((status.st_mode & S_IWUSR) == 0) {
        attributes |= kFileAttributeReadOnly;
    }
    return attributes;
}

// An open search: the directory stream and the wild-card name it filters by.
struct Search {
    DIR* directory = nullptr;
    std::string directoryPath;
    std::string wildcard;
};

Search* AsSearch(FindHandle handle) {
    return reinterpret_cast<Search*>(handle);
}

// Windows reads "*.*" as every name, dotted or not.
std::string PosixWildcard(const std::string& windowsWildcard) {
    return windowsWildcard == "*.*" ? "*" : windowsWildcard;
}

bool NextMatch(Search& search, FindEntry& entry) {
    while (dirent* found = readdir(search.directory)) {
        if (fnmatch(search.wildcard.c_str(), found->d_name, FNM_CASEFOLD) != 0) {
            continue;
        }
        struct stat status {};
        const std::string full = search.directoryPath + "/" + found->d_name;
        if (lstat(full.c_str(), &status) != 0) {
            continue;
        }
        entry.name = found->d_name;
        entry.attributes = AttributesOf(status);
        return true;
    }
    return false;
}

std::uint32_t MakeDirectories(const std::string& posixPath) {
    for (std::size_t slash = posixPath.find('/', 1);; slash = posixPath.find('/', slash + 1)) {
        const std::string prefix = posixPath.substr(0, slash);
        if (!prefix.empty() && mkdir(prefix.c_str(), 0777) != 0 && errno != EEXIST) {
            return StatusOf(errno);
        }
        struct stat status {};
        if (!prefix.empty() && (stat(prefix.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))) {
            return kPathNotFound;
        }
        if (slash == std::string::npos) {
            return 0;
        }
    }
}

}  // namespace

bool PosixFileSystem::Exists(const std::string& path) {
    return access(ToPosixPath(path).c_str(), F_OK) == 0;
}

std::uint32_t PosixFileSystem::Size(const std::string& path, std::uint64_t& size) {
    struct stat status {};
    if (stat(ToPosixPath(path).c_str(), &status) != 0) {
        return StatusOf(errno);
    }
    size = static_cast<std::uint64_t>(status.st_size);
    return 0;
}

std::uint32_t PosixFileSystem::Copy(const std::string& from, const std::string& to,
                                    bool failIfExists) {
    Descriptor source(open(ToPosixPath(from).c_str(), O_RDONLY | O_CLOEXEC));
    if (source.get() < 0) {
        return StatusOf(errno);
    }
    struct stat status {};
    if (fstat(source.get(), &status) != 0) {
        return StatusOf(errno);
    }
    const int exclusive = failIfExists ? O_EXCL : 0;
    Descriptor target(open(ToPosixPath(to).c_str(),
                           O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | exclusive,
                           status.st_mode & 0777));
    if (target.get() < 0) {
        return StatusOf(errno);
    }
    const std::uint32_t copied = CopyContents(source.get(), target.get());
    if (copied != 0) {
        return copied;
    }
    return target.Close() ? 0 : StatusOf(errno);
}

std::uint32_t PosixFileSystem::Remove(const std::string& path) {
    return unlink(ToPosixPath(path).c_str()) == 0 ? 0 : StatusOf(errno);
}

std::FILE* PosixFileSystem::Open(const std::string& path, const char* mode) {
    // POSIX streams have no text mode: drop the 't' letter.
    std::string posixMode;
    for (const char* letter = mode; *letter != '\0'; ++letter) {
        if (*letter != 't') {
            posixMode.push_back(*letter);
        }
    }
    return std::fopen(ToPosixPath(path).c_str(), posixMode.c_str());
}

std::uint32_t PosixFileSystem::Attributes(const std::string& path, std::uint32_t& attributes) {
    struct stat status {};
    if (stat(ToPosixPath(path).c_str(), &status) != 0) {
        return StatusOf(errno);
    }
    attributes = AttributesOf(status);
    return 0;
}

std::uint32_t PosixFileSystem::AttributesEx(const std::string& path, FileAttributeData& data) {
    struct stat status {};
    if (stat(ToPosixPath(path).c_str(), &status) != 0) {
        return StatusOf(errno);
    }
    data.attributes = AttributesOf(status);
    data.size = S_ISDIR(status.st_mode) ? 0 : static_cast<std::uint64_t>(status.st_size);
    return 0;
}

std::uint32_t PosixFileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    const std::string posixPath = ToPosixPath(path);
    struct stat status {};
    if (stat(posixPath.c_str(), &status) != 0) {
        return StatusOf(errno);
    }
    mode_t mode = status.st_mode & 07777;
    if ((attributes & kFileAttributeReadOnly) != 0) {
        mode &= static_cast<mode_t>(~(S_IWUSR | S_IWGRP | S_IWOTH));
    } else {
        mode |= S_IWUSR;
    }
    return chmod(posixPath.c_str(), mode) == 0 ? 0 : StatusOf(errno);
}

std::uint32_t PosixFileSystem::FindFirst(const std::string& pattern, FindHandle& handle,
                                         FindEntry& entry) {
    handle = kInvalidFind;
    const std::string posixPattern = ToPosixPath(pattern);
    const std::size_t slash = posixPattern.rfind('/');
    auto* search = new (std::nothrow) Search;
    if (search == nullptr) {
        return kNotEnoughMemory;
    }
    search->directoryPath = slash == std::string::npos ? "." : posixPattern.substr(0, slash);
    if (search->directoryPath.empty()) {
        search->directoryPath = "/";
    }
    search->wildcard =
        PosixWildcard(slash == std::string::npos ? posixPattern : posixPattern.substr(slash + 1));
    search->directory = opendir(search->directoryPath.c_str());
    if (search->directory == nullptr) {
        const int error = errno;
        delete search;
        return error == ENOENT || error == ENOTDIR ? static_cast<std::uint32_t>(kPathNotFound)
                                                   : StatusOf(error);
    }
    if (!NextMatch(*search, entry)) {
        closedir(search->directory);
        delete search;
        return kFileNotFound;
    }
    handle = reinterpret_cast<FindHandle>(search);
    return 0;
}

std::uint32_t PosixFileSystem::FindNext(FindHandle handle, FindEntry& entry) {
    return NextMatch(*AsSearch(handle), entry) ? 0u : static_cast<std::uint32_t>(kNoMoreFiles);
}

void PosixFileSystem::FindClose(FindHandle handle) {
    Search* search = AsSearch(handle);
    closedir(search->directory);
    delete search;
}

std::uint32_t PosixFileSystem::CreateDirectoryTree(const std::string& path) {
    const std::string posixPath = ToPosixPath(path);
    if (posixPath.empty() || posixPath[0] != '/') {
        return kBadPathName;
    }
    struct stat status {};
    if (stat(posixPath.c_str(), &status) == 0) {
        return S_ISDIR(status.st_mode) ? kAlreadyExists : kFileExists;
    }
    return MakeDirectories(posixPath);
}

std::int64_t PosixFileSystem::FileLength(std::FILE* file) {
    struct stat status {};
    if (fstat(fileno(file), &status) != 0) {
        return -1;
    }
    return static_cast<std::int64_t>(status.st_size);
}

// The root of the POSIX file system is what the library reaches as C:.
std::uint32_t PosixFileSystem::LogicalDrives() {
    return 1u << 2;
}

std::uint32_t PosixFileSystem::ConnectedDiskNames(std::vector<std::string>& /*localNames*/) {
    return kNotSupported;
}

// A POSIX caller leaves its reason in errno.
std::uint32_t PosixFileSystem::LastError() {
    return errno == 0 ? 0 : StatusOf(errno);
}

template <>
FileSystem& RealFacility<FileSystem>() {
    static PosixFileSystem real;
    return real;
}

}  // namespace vagent::os
