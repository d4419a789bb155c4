#pragma once

#include "os/FileSystem.h"

namespace vagent::os {

class Win32FileSystem final : public FileSystem {
public:
    bool Exists(const std::string& path) override;
    std::uint32_t Size(const std::string& path, std::uint64_t& size) override;
    std::uint32_t Copy(const std::string& from, const std::string& to, bool failIfExists) override;
    std::uint32_t Remove(const std::string& path) override;
    std::FILE* Open(const std::string& path, const char* mode) override;
    std::uint32_t Attributes(const std::string& path, std::uint32_t& attributes) override;
    std::uint32_t AttributesEx(const std::string& path, FileAttributeData& data) override;
    std::uint32_t SetAttributes(const std::string& path, std::uint32_t attributes) override;
    std::uint32_t FindFirst(const std::string& pattern, FindHandle& handle,
                            FindEntry& entry) override;
    std::uint32_t FindNext(FindHandle handle, FindEntry& entry) override;
    void FindClose(FindHandle handle) override;
    std::uint32_t CreateDirectoryTree(const std::string& path) override;
    std::int64_t FileLength(std::FILE* file) override;
    std::uint32_t LogicalDrives() override;
    std::uint32_t ConnectedDiskNames(std::vector<std::string>& localNames) override;
    std::uint32_t LastError() override;
};

}  // namespace vagent::os
