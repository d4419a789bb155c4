#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/FileSystem.h"

namespace vagent::test {

// A file system that refuses everything with access denied (5): nothing is
// read, written or listed, so code that runs under it can never touch the
// real disk. Counts the calls it refused.
class RefusingFileSystem final : public os::FileSystem {
public:
    static constexpr std::uint32_t kRefused = 5;

    bool Exists(const std::string& path) override;
    std::uint32_t Size(const std::string& path, std::uint64_t& size) override;
    std::uint32_t Copy(const std::string& from, const std::string& to, bool failIfExists) override;
    std::uint32_t Remove(const std::string& path) override;
    std::FILE* Open(const std::string& path, const char* mode) override;
    std::uint32_t Attributes(const std::string& path, std::uint32_t& attributes) override;
    std::uint32_t AttributesEx(const std::string& path, os::FileAttributeData& data) override;
    std::uint32_t SetAttributes(const std::string& path, std::uint32_t attributes) override;
    std::uint32_t FindFirst(const std::string& pattern, os::FindHandle& handle,
                            os::FindEntry& entry) override;
    std::uint32_t FindNext(os::FindHandle handle, os::FindEntry& entry) override;
    void FindClose(os::FindHandle handle) override;
    std::uint32_t CreateDirectoryTree(const std::string& path) override;
    std::int64_t FileLength(std::FILE* file) override;
    std::uint32_t LogicalDrives() override;
    std::uint32_t ConnectedDiskNames(std::vector<std::string>& localNames) override;
    // What every refused call leaves behind.
    std::uint32_t LastError() override;

    std::uint64_t refused = 0;

private:
    std::uint32_t Refuse();
};

}  // namespace vagent::test
