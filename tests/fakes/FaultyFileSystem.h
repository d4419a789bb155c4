#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "os/FileSystem.h"

namespace vagent::test {

// The real file system with failures injected on request; records every call
// as "Operation path[ -> path]". A sender and a receiver on two threads may
// share it: the record and the call counts are kept under a lock.
class FaultyFileSystem final : public os::FileSystem {
public:
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
    std::uint32_t LastError() override;

    std::uint32_t sizeStatus = 0;
    std::uint32_t copyStatus = 0;
    std::uint32_t removeStatus = 0;
    bool failOpen = false;
    // Fails only the opening of this one path.
    std::string failOpenOf;
    // Hands out a stream that refuses writes, as a full disk would.
    bool openReadOnly = false;
    // The drive letters the machine reports, instead of the real ones.
    std::optional<std::uint32_t> drives;
    // The connected network disks' local names, instead of the real ones;
    // networkStatus fails the enumeration instead.
    std::optional<std::vector<std::string>> networkDisks;
    std::uint32_t networkStatus = 0;
    // AttributesEx answers this many calls, then fails every later one with
    // attributesExStatus, as for a file whose attributes cannot be read.
    std::optional<std::size_t> attributesExCallsBeforeFailure;
    std::uint32_t attributesExStatus = 0;
    // AttributesEx reports this many bytes more than the file holds, as if
    // it shrank before it was read.
    std::uint64_t extraSize = 0;
    // Opens this one path for appending whatever the mode, so that reads
    // from it fail as on a handle without read access.
    std::string unreadableOf;
    // FindNext throws std::bad_alloc, as an allocation inside a walk would.
    bool throwOnFindNext = false;
    // The thread's last error instead of the real one.
    std::optional<std::uint32_t> lastError;
    std::vector<std::string> calls;

private:
    void Record(const std::string& call);
    bool AttributesExFails();

    std::mutex mutex_;
    std::size_t attributesExCalls_ = 0;
};

}  // namespace vagent::test
