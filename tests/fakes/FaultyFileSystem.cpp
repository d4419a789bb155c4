#include "fakes/FaultyFileSystem.h"

#include <new>

#include "os/Facilities.h"

namespace vagent::test {
namespace {

os::FileSystem& Real() {
    return os::RealFacility<os::FileSystem>();
}

}  // namespace

void FaultyFileSystem::Record(const std::string& call) {
    const std::lock_guard<std::mutex> lock(mutex_);
    calls.push_back(call);
}

bool FaultyFileSystem::Exists(const std::string& path) {
    Record("Exists " + path);
    return Real().Exists(path);
}

std::uint32_t FaultyFileSystem::Size(const std::string& path, std::uint64_t& size) {
    Record("Size " + path);
    if (sizeStatus != 0) {
        return sizeStatus;
    }
    return Real().Size(path, size);
}

std::uint32_t FaultyFileSystem::Copy(const std::string& from, const std::string& to,
                                     bool failIfExists) {
    Record("Copy " + from + " -> " + to);
    if (copyStatus != 0) {
        return copyStatus;
    }
    return Real().Copy(from, to, failIfExists);
}

std::uint32_t FaultyFileSystem::Remove(const std::string& path) {
    Record("Remove " + path);
    if (removeStatus != 0) {
        return removeStatus;
    }
    return Real().Remove(path);
}

std::FILE* FaultyFileSystem::Open(const std::string& path, const char* mode) {
    Record("Open " + path + " " + mode);
    if (failOpen || path == failOpenOf) {
        return nullptr;
    }
    if (path == unreadableOf) {
        return Real().Open(path, "ab");
    }
    return Real().Open(path, openReadOnly ? "r" : mode);
}

std::uint32_t FaultyFileSystem::Attributes(const std::string& path, std::uint32_t& attributes) {
    Record("Attributes " + path);
    return Real().Attributes(path, attributes);
}

bool FaultyFileSystem::AttributesExFails() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return attributesExCallsBeforeFailure &&
           attributesExCalls_++ >= *attributesExCallsBeforeFailure;
}

std::uint32_t FaultyFileSystem::AttributesEx(const std::string& path, os::FileAttributeData& data) {
    Record("AttributesEx " + path);
    if (AttributesExFails()) {
        return attributesExStatus;
    }
    const std::uint32_t status = Real().AttributesEx(path, data);
    data.size += extraSize;
    return status;
}

std::uint32_t FaultyFileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    Record("SetAttributes " + path + " " + std::to_string(attributes));
    return Real().SetAttributes(path, attributes);
}

std::uint32_t FaultyFileSystem::FindFirst(const std::string& pattern, os::FindHandle& handle,
                                          os::FindEntry& entry) {
    Record("FindFirst " + pattern);
    return Real().FindFirst(pattern, handle, entry);
}

std::uint32_t FaultyFileSystem::FindNext(os::FindHandle handle, os::FindEntry& entry) {
    if (throwOnFindNext) {
        throw std::bad_alloc();
    }
    return Real().FindNext(handle, entry);
}

void FaultyFileSystem::FindClose(os::FindHandle handle) {
    Record("FindClose");
    Real().FindClose(handle);
}

std::uint32_t FaultyFileSystem::CreateDirectoryTree(const std::string& path) {
    Record("CreateDirectoryTree " + path);
    return Real().CreateDirectoryTree(path);
}

std::int64_t FaultyFileSystem::FileLength(std::FILE* file) {
    return Real().FileLength(file);
}

std::uint32_t FaultyFileSystem::LogicalDrives() {
    Record("LogicalDrives");
    return drives ? *drives : Real().LogicalDrives();
}

std::uint32_t FaultyFileSystem::ConnectedDiskNames(std::vector<std::string>& localNames) {
    Record("ConnectedDiskNames");
    if (networkStatus != 0) {
        return networkStatus;
    }
    if (networkDisks) {
        localNames.insert(localNames.end(), networkDisks->begin(), networkDisks->end());
        return 0;
    }
    return Real().ConnectedDiskNames(localNames);
}

std::uint32_t FaultyFileSystem::LastError() {
    return lastError ? *lastError : Real().LastError();
}

}  // namespace vagent::test
