#include "files/LocalCopy.h"

#include "files/DirectoryCreation.h"
#include "support/TextCompare.h"
#include "os/FileSystem.h"
#include "os/ScopedFindHandle.h"
#include "os/Status.h"

namespace vagent::files {
namespace {

bool Failed(std::uint32_t status, std::uint32_t& errorCode) {
    errorCode = status;
    return false;
}

bool IsDotEntry(const std::string& name) {
    return CompareIgnoringCase(name, ".") == 0 || CompareIgnoringCase(name, "..") == 0;
}

// Clears a read-only target's attributes so that the copy may overwrite it.
bool CopyOver(const std::string& from, const std::string& to, std::uint32_t& errorCode) {
    os::FileSystem& files = os::Files();
    if (files.Exists(to)) {
        files.SetAttributes(to, 0);
    }
    const std::uint32_t status = files.Copy(from, to, false);
    return status == 0 || Failed(status, errorCode);
}

bool EnsureDirectory(const std::string& destination, std::uint32_t& errorCode) {
    os::FileSystem& files = os::Files();
    if (!files.Exists(destination)) {
        const std::uint32_t status = CreateDirectoryAccepted(destination);
        return status == 0 || Failed(status, errorCode);
    }
    std::uint32_t attributes = 0;
    const std::uint32_t status = files.Attributes(destination, attributes);
    if (status != 0) {
        return Failed(status, errorCode);
    }
    return (attributes & os::kFileAttributeDirectory) != 0 || Failed(os::kFileExists, errorCode);
}

bool CopyDirectory(const std::string& source, const std::string& destination, bool recursive,
                   std::uint32_t& errorCode) {
    if (!EnsureDirectory(destination, errorCode)) {
        return false;
    }
    os::ScopedFindHandle search(os::Files());
    os::FindEntry entry;
    const std::uint32_t status = search.First(source + "\\*.*", entry);
    if (status != 0) {
        return Failed(status, errorCode);
    }
    bool succeeded = true;
    do {
        if (IsDotEntry(entry.name)) {
            continue;
        }
        const std::string from = source + "\\" + entry.name;
        const std::string to = destination + "\\" + entry.name;
        if ((entry.attributes & os::kFileAttributeDirectory) == 0) {
            succeeded = CopyOver(from, to, errorCode);
        } else if (recursive) {
            succeeded = CopyDirectory(from, to, recursive, errorCode);
        }
    } while (succeeded && search.Next(entry) == 0);
    return succeeded;
}

bool CopyFile(const std::string& source, const std::string& destination, std::uint32_t& errorCode) {
    const std::size_t cut = destination.rfind('\\');
    if (cut != std::string::npos) {
        const std::string parent = destination.substr(0, cut);
        if (!os::Files().Exists(parent)) {
            os::Files().CreateDirectoryTree(parent);
        }
    }
    return CopyOver(source, destination, errorCode);
}

}  // namespace

bool CopyLocally(const std::string& source, const std::string& destination, bool recursive,
                 std::uint32_t& errorCode) {
    std::uint32_t attributes = 0;
    const std::uint32_t status = os::Files().Attributes(source, attributes);
    if (status != 0) {
        return Failed(status, errorCode);
    }
    if ((attributes & os::kFileAttributeDirectory) != 0) {
        return CopyDirectory(source, destination, recursive, errorCode);
    }
    return CopyFile(source, destination, errorCode);
}

}  // namespace vagent::files
