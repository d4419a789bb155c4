#include "helpers/TempDir.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace vagent::test {
namespace {

std::filesystem::path UniqueDirectory() {
    static std::atomic<unsigned> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    std::ostringstream name;
    name << "vagent-test-" << stamp << "-" << counter++;
    return std::filesystem::temp_directory_path() / name.str();
}

}  // namespace

TempDir::TempDir() : path_(UniqueDirectory()) {
    if (!std::filesystem::create_directories(path_)) {
        throw std::runtime_error("cannot create " + path_.string());
    }
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::LibraryPath() const {
    return ToLibraryPath(path_) + "\\";
}

std::string ToLibraryPath(const std::filesystem::path& path) {
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

std::string ReadWholeFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string ReadTextFile(const std::filesystem::path& path) {
    std::string text = ReadWholeFile(path);
    std::string lines;
    lines.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            continue;
        }
        lines.push_back(text[i]);
    }
    return lines;
}

void WriteWholeFile(const std::filesystem::path& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << contents;
}

}  // namespace vagent::test
