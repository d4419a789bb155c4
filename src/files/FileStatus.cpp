#include "files/FileStatus.h"

#include <cerrno>

#include "os/Status.h"

namespace vagent::files {
namespace {

// The system's status for a read that met the end of its file.
constexpr std::uint32_t kHandleEndOfFile = 38;

}  // namespace

std::uint32_t StatusOfErrno(int error) {
    switch (error) {
        case ENOENT:
            return os::kFileNotFound;
        case ENOMEM:
            return os::kNotEnoughMemory;
        case EEXIST:
            return os::kFileExists;
        default:
            return os::kAccessDenied;
    }
}

std::uint32_t StatusOfShortRead(std::FILE* file, int error) {
    return std::ferror(file) != 0 ? StatusOfErrno(error) : kHandleEndOfFile;
}

}  // namespace vagent::files
