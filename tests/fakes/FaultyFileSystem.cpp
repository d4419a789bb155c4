#include "fakes/FaultyFileSystem.h"

#include "os/Facilities.h"

namespace vagent::test {

bool FaultyFileSystem::Exists(const std::string& path) {
    calls.push_back("Exists " + path);
    return os::RealFacility<os::FileSystem>().Exists(path);
}

std::uint32_t FaultyFileSystem::Size(const std::string& path, std::uint64_t& size) {
    calls.push_back("Size " + path);
    if (sizeStatus != 0) {
        return sizeStatus;
    }
    return os::RealFacility<os::FileSystem>().Size(path, size);
}

std::uint32_t FaultyFileSystem::Copy(const std::string& from, const std::string& to,
                                     bool failIfExists) {
    calls.push_back("Copy " + from + " -> " + to);
    if (copyStatus != 0) {
        return copyStatus;
    }
    return os::RealFacility<os::FileSystem>().Copy(from, to, failIfExists);
}

std::uint32_t FaultyFileSystem::Remove(const std::string& path) {
    calls.push_back("Remove " + path);
    if (removeStatus != 0) {
        return removeStatus;
    }
    return os::RealFacility<os::FileSystem>().Remove(path);
}

std::FILE* FaultyFileSystem::Open(const std::string& path, const char* mode) {
    calls.push_back("Open " + path + " " + mode);
    if (failOpen) {
        return nullptr;
    }
    return os::RealFacility<os::FileSystem>().Open(path, openReadOnly ? "r" : mode);
}

}  // namespace vagent::test
