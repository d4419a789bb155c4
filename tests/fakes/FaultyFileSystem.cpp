#include "fakes/FaultyFileSystem.h"

#include "os/Facilities.h"

namespace vagent::test {
namespace {

os::FileSystem& Real() {
    return os::RealFacility<os::FileSystem>();
}

}  // namespace

bool FaultyFileSystem::Exists(const std::string& path) {
    calls.push_back("Exists " + path);
    return Real().Exists(path);
}

std::uint32_t FaultyFileSystem::Size(const std::string& path, std::uint64_t& size) {
    calls.push_back("Size " + path);
    if (sizeStatus != 0) {
        return sizeStatus;
    }
    return Real().Size(path, size);
}

std::uint32_t FaultyFileSystem::Copy(const std::string& from, const std::string& to,
                                     bool failIfExists) {
    calls.push_back("Copy " + from + " -> " + to);
    if (copyStatus != 0) {
        return copyStatus;
    }
    return Real().Copy(from, to, failIfExists);
}

std::uint32_t FaultyFileSystem::Remove(const std::string& path) {
    calls.push_back("Remove " + path);
    if (removeStatus != 0) {
        return removeStatus;
    }
    return Real().Remove(path);
}

std::FILE* FaultyFileSystem::Open(const std::string& path, const char* mode) {
    calls.push_back("Open " + path + " " + mode);
    if (failOpen || path == failOpenOf) {
        return nullptr;
    }
    return Real().Open(path, openReadOnly ? "r" : mode);
}

std::uint32_t FaultyFileSystem::Attributes(const std::string& path, std::uint32_t& attributes) {
    calls.push_back("Attributes " + path);
    return Real().Attributes(path, attributes);
}

std::uint32_t FaultyFileSystem::AttributesEx(const std::string& path, os::FileAttributeData& data) {
    calls.push_back("AttributesEx " + path);
    return Real().AttributesEx(path, data);
}

std::uint32_t FaultyFileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    calls.push_back("SetAttributes " + path + " " + std::to_string(attributes));
    return Real().SetAttributes(path, attributes);
}

std::uint32_t FaultyFileSystem::FindFirst(const std::string& pattern, os::FindHandle& handle,
                                          os::FindEntry& entry) {
    calls.push_back("FindFirst " + pattern);
    return Real().FindFirst(pattern, handle, entry);
}

std::uint32_t FaultyFileSystem::FindNext(os::FindHandle handle, os::FindEntry& entry) {
    return Real().FindNext(handle, entry);
}

void FaultyFileSystem::FindClose(os::FindHandle handle) {
    calls.push_back("FindClose");
    Real().FindClose(handle);
}

std::uint32_t FaultyFileSystem::CreateDirectoryTree(const std::string& path) {
    calls.push_back("CreateDirectoryTree " + path);
    return Real().CreateDirectoryTree(path);
}

std::int64_t FaultyFileSystem::FileLength(std::FILE* file) {
    return Real().FileLength(file);
}

std::uint32_t FaultyFileSystem::LogicalDrives() {
    calls.push_back("LogicalDrives");
    return drives ? *drives : Real().LogicalDrives();
}

std::uint32_t FaultyFileSystem::ConnectedDiskNames(std::vector<std::string>& localNames) {
    calls.push_back("ConnectedDiskNames");
    if (networkStatus != 0) {
        return networkStatus;
    }
    if (networkDisks) {
        localNames.insert(localNames.end(), networkDisks->begin(), networkDisks->end());
        return 0;
    }
    return Real().ConnectedDiskNames(localNames);
}

}  // namespace vagent::test
