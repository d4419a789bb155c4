#include "os/posix/PosixFileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

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

template <>
FileSystem& RealFacility<FileSystem>() {
    static PosixFileSystem real;
    return real;
}

}  // namespace vagent::os
