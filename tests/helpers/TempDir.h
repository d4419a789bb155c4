#pragma once

#include <filesystem>
#include <string>

namespace vagent::test {

// A fresh directory under the system's temporary directory, removed with
// everything in it when the scope ends.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    // The directory as the library writes paths: backslash separators and a
    // trailing backslash.
    std::string LibraryPath() const;
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// A file system path as the library writes it: backslash separators.
std::string ToLibraryPath(const std::filesystem::path& path);

std::string ReadWholeFile(const std::filesystem::path& path);
// The file as a text-mode reader sees it: a "\r\n" line end reads as "\n".
std::string ReadTextFile(const std::filesystem::path& path);
void WriteWholeFile(const std::filesystem::path& path, const std::string& contents);

}  // namespace vagent::test
