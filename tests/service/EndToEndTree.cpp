#include "service/EndToEndTree.h"

#include "helpers/TempDir.h"

namespace vagent::test {
namespace {

constexpr std::uint32_t kDirectoryAttribute = 0x10;
constexpr std::uint32_t kArchiveAttribute = 0x20;

std::string LibraryRelative(const std::string& relative) {
    std::string converted = relative;
    for (char& c : converted) {
        if (c == '/') {
            c = '\\';
        }
    }
    return converted;
}

}  // namespace

const char kDirectoryMark[] = "<directory>";

std::string PatternBytes(std::size_t count, std::uint32_t seed) {
    std::string bytes(count, '\0');
    std::uint32_t state = seed * 2654435761u + 1;
    for (char& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

void MakeSampleTree(const std::filesystem::path& root) {
    std::filesystem::create_directories(root / "sub" / "deeper");
    WriteWholeFile(root / "small.txt", "alpha");
    WriteWholeFile(root / "empty.txt", "");
    WriteWholeFile(root / "exact.bin", PatternBytes(2500, 1));
    WriteWholeFile(root / "sub" / "nested.bin", PatternBytes(70000, 2));
    WriteWholeFile(root / "sub" / "deeper" / "leaf.txt", "leaf");
}

TreeContents ReadTree(const std::filesystem::path& root) {
    TreeContents tree;
    std::error_code error;
    if (!std::filesystem::is_directory(root, error)) {
        return tree;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const std::string relative = entry.path().lexically_relative(root).generic_string();
        tree[relative] = entry.is_directory() ? kDirectoryMark : ReadWholeFile(entry.path());
    }
    return tree;
}

Bytes TreeUploadBytes(const TreeContents& tree, const std::string& destination) {
    Bytes stream = TransferFrameBytes(0, kDirectoryAttribute, 0, destination);
    for (const auto& [relative, contents] : tree) {
        const std::string name = destination + "\\" + LibraryRelative(relative);
        if (contents == kDirectoryMark) {
            Append(stream, TransferFrameBytes(0, kDirectoryAttribute, 0, name));
        } else {
            Append(stream, FileTransferBytes(name, kArchiveAttribute, contents));
        }
    }
    return stream;
}

}  // namespace vagent::test
