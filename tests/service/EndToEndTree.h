#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "service/TestClientFrames.h"

namespace vagent::test {

// A tree's contents by relative path ("sub/leaf.txt", '/' separators): a
// file's bytes, or kDirectoryMark for a directory.
using TreeContents = std::map<std::string, std::string>;

extern const char kDirectoryMark[];

// Fills root with files of several shapes: a short text, an empty file, one
// of 2,500 bytes (three pieces on the wire), a larger binary one and a
// nested subdirectory two levels deep.
void MakeSampleTree(const std::filesystem::path& root);

// What lies under root; empty when root does not exist.
TreeContents ReadTree(const std::filesystem::path& root);

// Bytes that vary from offset to offset and from seed to seed.
std::string PatternBytes(std::size_t count, std::uint32_t seed);

// The stream an uploader writes for the tree after the request: a directory
// frame for the destination itself, then every directory and file under it
// by name (parents before children), files with the archive attribute.
Bytes TreeUploadBytes(const TreeContents& tree, const std::string& destination);

}  // namespace vagent::test
