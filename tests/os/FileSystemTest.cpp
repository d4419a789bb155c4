#include "os/FileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "helpers/TempDir.h"
#include "os/Facilities.h"
#include "os/Status.h"

using vagent::os::Files;
using vagent::test::ReadWholeFile;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

TEST(FileSystem, ExistsTellsFilesAndDirectoriesFromMissingPaths) {
    TempDir dir;
    WriteWholeFile(dir / "present.txt", "x");
    EXPECT_TRUE(Files().Exists(ToLibraryPath(dir / "present.txt")));
    EXPECT_TRUE(Files().Exists(ToLibraryPath(dir.Path())));
    EXPECT_FALSE(Files().Exists(ToLibraryPath(dir / "missing.txt")));
}

TEST(FileSystem, SizeGivesTheLengthInBytes) {
    TempDir dir;
    WriteWholeFile(dir / "five.bin", "12345");
    std::uint64_t size = 0;
    EXPECT_EQ(Files().Size(ToLibraryPath(dir / "five.bin"), size), 0u);
    EXPECT_EQ(size, 5u);
}

TEST(FileSystem, SizeOfAMissingFileIsFileNotFound) {
    TempDir dir;
    std::uint64_t size = 0;
    EXPECT_EQ(Files().Size(ToLibraryPath(dir / "missing"), size), vagent::os::kFileNotFound);
}

TEST(FileSystem, CopyOverwritesUnlessToldNotTo) {
    TempDir dir;
    WriteWholeFile(dir / "from", "new contents");
    WriteWholeFile(dir / "to", "old");
    const std::string from = ToLibraryPath(dir / "from");
    const std::string to = ToLibraryPath(dir / "to");
    EXPECT_EQ(Files().Copy(from, to, true), vagent::os::kFileExists);
    EXPECT_EQ(ReadWholeFile(dir / "to"), "old");
    EXPECT_EQ(Files().Copy(from, to, false), 0u);
    EXPECT_EQ(ReadWholeFile(dir / "to"), "new contents");
}

TEST(FileSystem, CopyOfAMissingFileIsFileNotFound) {
    TempDir dir;
    EXPECT_EQ(Files().Copy(ToLibraryPath(dir / "missing"), ToLibraryPath(dir / "to"), false),
              vagent::os::kFileNotFound);
}

TEST(FileSystem, RemoveDeletesTheFile) {
    TempDir dir;
    WriteWholeFile(dir / "gone", "x");
    EXPECT_EQ(Files().Remove(ToLibraryPath(dir / "gone")), 0u);
    EXPECT_FALSE(std::filesystem::exists(dir / "gone"));
    EXPECT_EQ(Files().Remove(ToLibraryPath(dir / "gone")), vagent::os::kFileNotFound);
}

TEST(FileSystem, OpenInTextAppendModeCreatesAndAppends) {
    TempDir dir;
    const std::string path = ToLibraryPath(dir / "log.txt");
    for (const char* text : {"one\n", "two\n"}) {
        std::FILE* file = Files().Open(path, "a+t");
        ASSERT_NE(file, nullptr);
        std::fputs(text, file);
        std::fclose(file);
    }
    std::FILE* file = Files().Open(path, "rt");
    ASSERT_NE(file, nullptr);
    char line[16] = {};
    ASSERT_NE(std::fgets(line, sizeof line, file), nullptr);
    EXPECT_STREQ(line, "one\n");
    std::fclose(file);
}

TEST(FileSystem, OpenOfAMissingFileForReadingFails) {
    TempDir dir;
    EXPECT_EQ(Files().Open(ToLibraryPath(dir / "missing"), "rt"), nullptr);
}

namespace {

std::vector<std::string> SearchNames(const std::string& pattern, std::uint32_t& firstStatus,
                                     std::uint32_t& lastStatus) {
    std::vector<std::string> names;
    vagent::os::FindHandle search = vagent::os::kInvalidFind;
    vagent::os::FindEntry entry;
    firstStatus = Files().FindFirst(pattern, search, entry);
    if (firstStatus != 0) {
        EXPECT_EQ(search, vagent::os::kInvalidFind);
        return names;
    }
    do {
        names.push_back(entry.name);
    } while ((lastStatus = Files().FindNext(search, entry)) == 0);
    Files().FindClose(search);
    return names;
}

}  // namespace

TEST(FileSystem, AttributesTellADirectoryFromAFile) {
    TempDir dir;
    WriteWholeFile(dir / "file", "x");
    std::uint32_t attributes = 0;
    ASSERT_EQ(Files().Attributes(ToLibraryPath(dir.Path()), attributes), 0u);
    EXPECT_NE(attributes & vagent::os::kFileAttributeDirectory, 0u);
    ASSERT_EQ(Files().Attributes(ToLibraryPath(dir / "file"), attributes), 0u);
    EXPECT_EQ(attributes & vagent::os::kFileAttributeDirectory, 0u);
}

TEST(FileSystem, AttributesOfAMissingPathFail) {
    TempDir dir;
    std::uint32_t attributes = 0;
    EXPECT_EQ(Files().Attributes(ToLibraryPath(dir / "missing"), attributes),
              vagent::os::kFileNotFound);
}

TEST(FileSystem, ExtendedAttributesCarryTheSize) {
    TempDir dir;
    WriteWholeFile(dir / "seven", "1234567");
    vagent::os::FileAttributeData data;
    ASSERT_EQ(Files().AttributesEx(ToLibraryPath(dir / "seven"), data), 0u);
    EXPECT_EQ(data.size, 7u);
    EXPECT_EQ(data.attributes & vagent::os::kFileAttributeDirectory, 0u);
}

TEST(FileSystem, ReadOnlyAttributeIsStoredAndCleared) {
    TempDir dir;
    WriteWholeFile(dir / "ro", "x");
    const std::string path = ToLibraryPath(dir / "ro");
    std::uint32_t attributes = 0;
    ASSERT_EQ(Files().SetAttributes(path, vagent::os::kFileAttributeReadOnly), 0u);
    ASSERT_EQ(Files().Attributes(path, attributes), 0u);
    EXPECT_NE(attributes & vagent::os::kFileAttributeReadOnly, 0u);
    ASSERT_EQ(Files().SetAttributes(path, 0), 0u);
    ASSERT_EQ(Files().Attributes(path, attributes), 0u);
    EXPECT_EQ(attributes & vagent::os::kFileAttributeReadOnly, 0u);
}

TEST(FileSystem, SearchListsEveryEntryWithTheDotsAndEndsWithNoMoreFiles) {
    TempDir dir;
    WriteWholeFile(dir / "a.txt", "a");
    WriteWholeFile(dir / "noext", "b");
    std::filesystem::create_directory(dir / "sub");
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::vector<std::string> names = SearchNames(dir.LibraryPath() + "*.*", first, last);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(last, vagent::os::kNoMoreFiles);
    EXPECT_EQ(names, (std::vector<std::string>{".", "..", "a.txt", "noext", "sub"}));
}

TEST(FileSystem, SearchPatternFiltersByTheWildCardName) {
    TempDir dir;
    WriteWholeFile(dir / "a.txt", "a");
    WriteWholeFile(dir / "b.log", "b");
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    EXPECT_EQ(SearchNames(dir.LibraryPath() + "*.txt", first, last),
              (std::vector<std::string>{"a.txt"}));
}

TEST(FileSystem, SearchThatMatchesNothingFails) {
    TempDir dir;
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    EXPECT_TRUE(SearchNames(dir.LibraryPath() + "*.none", first, last).empty());
    EXPECT_EQ(first, vagent::os::kFileNotFound);
    EXPECT_TRUE(SearchNames(dir.LibraryPath() + "missing\\*", first, last).empty());
    EXPECT_EQ(first, vagent::os::kPathNotFound);
}

TEST(FileSystem, DirectoryTreeCreationAnswersZeroThen183And80ForAFile) {
    TempDir dir;
    const std::string deep = ToLibraryPath(dir / "one" / "two" / "three");
    EXPECT_EQ(Files().CreateDirectoryTree(deep), 0u);
    EXPECT_TRUE(std::filesystem::is_directory(dir / "one" / "two" / "three"));
    EXPECT_EQ(Files().CreateDirectoryTree(deep), vagent::os::kAlreadyExists);
    WriteWholeFile(dir / "file", "x");
    EXPECT_NE(Files().CreateDirectoryTree(ToLibraryPath(dir / "file")), 0u);
}

TEST(FileSystem, DirectoryTreeCreationRefusesARelativePath) {
    EXPECT_EQ(Files().CreateDirectoryTree("relative\\dir"), vagent::os::kBadPathName);
}

TEST(FileSystem, FileLengthOfAnOpenFile) {
    TempDir dir;
    WriteWholeFile(dir / "len", "123456789");
    std::FILE* file = Files().Open(ToLibraryPath(dir / "len"), "rb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(Files().FileLength(file), 9);
    std::fclose(file);
}

TEST(FileSystem, LogicalDrivesIncludeC) {
    EXPECT_NE(Files().LogicalDrives() & (1u << 2), 0u);
}

TEST(FileSystem, ConnectedDiskNamesAreNamesOrAFailure) {
    std::vector<std::string> names;
    const std::uint32_t status = Files().ConnectedDiskNames(names);
    if (status != 0) {
        EXPECT_TRUE(names.empty());
    }
    for (const std::string& name : names) {
        EXPECT_FALSE(name.empty());
    }
}
