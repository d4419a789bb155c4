#include "files/FileStatus.h"

#include <cerrno>

#include "os/Status.h"

namespace vagent::files {

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

}  // namespace vagent::files
