#pragma once

#include <string>
#include <vector>

#include "os/FileSystem.h"

namespace vagent::test {

// The real file system with failures injected on request; records every call
// as "Operation path[ -> path]".
class FaultyFileSystem final : public os::FileSystem {
public:
    bool Exists(const std::string& path) override;
    std::uint32_t Size(const std::string& path, std::uint64_t& size) override;
    std::uint32_t Copy(const std::string& from, const std::string& to, bool failIfExists) override;
    std::uint32_t Remove(const std::string& path) override;
    std::FILE* Open(const std::string& path, const char* mode) override;

    std::uint32_t sizeStatus = 0;
    std::uint32_t copyStatus = 0;
    std::uint32_t removeStatus = 0;
    bool failOpen = false;
    // Hands out a stream that refuses writes, as a full disk would.
    bool openReadOnly = false;
    std::vector<std::string> calls;
};

}  // namespace vagent::test
