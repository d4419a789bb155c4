#include "os/FileSystem.h"

#include <gtest/gtest.h>

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
