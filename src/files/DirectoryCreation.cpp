#include "files/DirectoryCreation.h"

#include "os/FileSystem.h"
#include "os/Status.h"

namespace vagent::files {

std::uint32_t CreateDirectoryAccepted(const std::string& path) {
    const std::uint32_t status = os::Files().CreateDirectoryTree(path);
    return status == os::kAlreadyExists || status == os::kFileExists ? 0 : status;
}

}  // namespace vagent::files
