#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace vagent::bench {

constexpr int kDirectories = 16;
constexpr int kFilesPerDirectory = 16;
constexpr std::size_t kFileSize = 1024 * 1024;
constexpr std::int64_t kTreeBytes =
    static_cast<std::int64_t>(kDirectories) * kFilesPerDirectory * kFileSize;

// The tree that the transfer benchmarks send, made once per program under the
// temporary directory: 16 directories of 16 files of 1 MiB each.
class BenchTree {
public:
    explicit BenchTree(const std::string& name)
        : root_(std::filesystem::temp_directory_path() / name) {
        std::filesystem::remove_all(root_);
        std::vector<char> contents(kFileSize);
        for (std::size_t index = 0; index < contents.size(); ++index) {
            contents[index] = static_cast<char>(index * 131 + index / 977);
        }
        for (int directory = 0; directory < kDirectories; ++directory) {
            const std::filesystem::path folder = Source() / ("d" + std::to_string(directory));
            std::filesystem::create_directories(folder);
            for (int file = 0; file < kFilesPerDirectory; ++file) {
                const std::filesystem::path path = folder / ("f" + std::to_string(file) + ".bin");
                std::FILE* out = std::fopen(path.string().c_str(), "wb");
                std::fwrite(contents.data(), 1, contents.size(), out);
                std::fclose(out);
                files_.push_back(path);
            }
        }
    }
    ~BenchTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    BenchTree(const BenchTree&) = delete;
    BenchTree& operator=(const BenchTree&) = delete;

    std::filesystem::path Source() const { return root_ / "source"; }
    std::filesystem::path Target() const { return root_ / "target"; }
    const std::vector<std::filesystem::path>& Files() const { return files_; }

private:
    std::filesystem::path root_;
    std::vector<std::filesystem::path> files_;
};

}  // namespace vagent::bench
