#include "fakes/RefusingFileSystem.h"

namespace vagent::test {

std::uint32_t RefusingFileSystem::Refuse() {
    ++refused;
    return kRefused;
}

bool RefusingFileSystem::Exists(const std::string&) {
    Refuse();
    return false;
}

std::uint32_t RefusingFileSystem::Size(const std::string&, std::uint64_t& size) {
    size = 0;
    return Refuse();
}

std::uint32_t RefusingFileSystem::Copy(const std::string&, const std::string&, bool) {
    return Refuse();
}

std::uint32_t RefusingFileSystem::Remove(const std::string&) {
    return Refuse();
}

std::FILE* RefusingFileSystem::Open(const std::string&, const char*) {
    Refuse();
    return nullptr;
}

std::uint32_t RefusingFileSystem::Attributes(const std::string&, std::uint32_t& attributes) {
    attributes = 0;
    return Refuse();
}

std::uint32_t RefusingFileSystem::AttributesEx(const std::string&, os::FileAttributeData& data) {
    data = os::FileAttributeData();
    return Refuse();
}

std::uint32_t RefusingFileSystem::SetAttributes(const std::string&, std::uint32_t) {
    return Refuse();
}

std::uint32_t RefusingFileSystem::FindFirst(const std::string&, os::FindHandle& handle,
                                            os::FindEntry&) {
    handle = os::kInvalidFind;
    return Refuse();
}

std::uint32_t RefusingFileSystem::FindNext(os::FindHandle, os::FindEntry&) {
    return Refuse();
}

void RefusingFileSystem::FindClose(os::FindHandle) {
    Refuse();
}

std::uint32_t RefusingFileSystem::CreateDirectoryTree(const std::string&) {
    return Refuse();
}

std::int64_t RefusingFileSystem::FileLength(std::FILE*) {
    Refuse();
    return -1;
}

std::uint32_t RefusingFileSystem::LogicalDrives() {
    Refuse();
    return 0;
}

std::uint32_t RefusingFileSystem::ConnectedDiskNames(std::vector<std::string>& localNames) {
    localNames.clear();
    return Refuse();
}

std::uint32_t RefusingFileSystem::LastError() {
    return kRefused;
}

}  // namespace vagent::test
