#pragma once

#include "os/FileSystem.h"

namespace vagent::os {

class PosixFileSystem final : public FileSystem {
public:
    bool Exists(const std::string& path) override;
    std::uint32_t Size(const std::string& path, std::uint64_t& size) override;
    std::uint32_t Copy(const std::string& from, const std::string& to, bool failIfExists) override;
    std::uint32_t Remove(const std::string& path) override;
    std::FILE* Open(const std::string& path, const char* mode) override;
};

}  // namespace vagent::os
