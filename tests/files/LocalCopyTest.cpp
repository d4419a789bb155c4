#include "files/LocalCopy.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "helpers/TempDir.h"
#include "os/FileSystem.h"
#include "os/Status.h"

using vagent::files::CopyLocally;
using vagent::os::Files;
using vagent::test::ReadWholeFile;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

void MakeTree(const TempDir& dir) {
    WriteWholeFile(dir / "a.txt", "alpha");
    std::filesystem::create_directories(dir / "sub" / "deep");
    WriteWholeFile(dir / "sub" / "b.txt", "beta");
    WriteWholeFile(dir / "sub" / "deep" / "c.txt", "gamma");
}

}  // namespace

TEST(CopyLocally, RecursiveCopyTakesTheWholeTree) {
    TempDir source;
    TempDir target;
    MakeTree(source);
    std::uint32_t errorCode = 0;
    EXPECT_TRUE(
        CopyLocally(ToLibraryPath(source.Path()), ToLibraryPath(target / "copy"), true, errorCode));
    EXPECT_EQ(ReadWholeFile(target / "copy" / "a.txt"), "alpha");
    EXPECT_EQ(ReadWholeFile(target / "copy" / "sub" / "b.txt"), "beta");
    EXPECT_EQ(ReadWholeFile(target / "copy" / "sub" / "deep" / "c.txt"), "gamma");
}

TEST(CopyLocally, CopyWithoutRecursionTakesOnlyTheTopFiles) {
    TempDir source;
    TempDir target;
    MakeTree(source);
    std::uint32_t errorCode = 0;
    EXPECT_TRUE(CopyLocally(ToLibraryPath(source.Path()), ToLibraryPath(target / "copy"), false,
                            errorCode));
    EXPECT_EQ(ReadWholeFile(target / "copy" / "a.txt"), "alpha");
    EXPECT_FALSE(std::filesystem::exists(target / "copy" / "sub"));
}

TEST(CopyLocally, ExistingDestinationDirectoryIsAccepted) {
    TempDir source;
    TempDir target;
    MakeTree(source);
    std::uint32_t errorCode = 0;
    EXPECT_TRUE(
        CopyLocally(ToLibraryPath(source.Path()), ToLibraryPath(target.Path()), false, errorCode));
    EXPECT_EQ(ReadWholeFile(target / "a.txt"), "alpha");
}

TEST(CopyLocally, DestinationThatIsAFileFailsForADirectorySource) {
    TempDir source;
    TempDir target;
    MakeTree(source);
    WriteWholeFile(target / "file", "x");
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(
        CopyLocally(ToLibraryPath(source.Path()), ToLibraryPath(target / "file"), true, errorCode));
    EXPECT_EQ(errorCode, vagent::os::kFileExists);
    EXPECT_EQ(ReadWholeFile(target / "file"), "x");
}

TEST(CopyLocally, FileIsCopiedIntoAParentThatIsCreated) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "one.txt", "one");
    std::uint32_t errorCode = 0;
    EXPECT_TRUE(CopyLocally(ToLibraryPath(source / "one.txt"),
                            ToLibraryPath(target / "new" / "parent" / "one.txt"), false,
                            errorCode));
    EXPECT_EQ(ReadWholeFile(target / "new" / "parent" / "one.txt"), "one");
}

TEST(CopyLocally, ReadOnlyTargetIsOverwritten) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "f.txt", "fresh");
    WriteWholeFile(target / "f.txt", "stale");
    const std::string targetPath = ToLibraryPath(target / "f.txt");
    ASSERT_EQ(Files().SetAttributes(targetPath, vagent::os::kFileAttributeReadOnly), 0u);
    std::uint32_t errorCode = 0;
    EXPECT_TRUE(CopyLocally(ToLibraryPath(source / "f.txt"), targetPath, false, errorCode));
    EXPECT_EQ(ReadWholeFile(target / "f.txt"), "fresh");
    std::uint32_t attributes = 0;
    ASSERT_EQ(Files().Attributes(targetPath, attributes), 0u);
    EXPECT_EQ(attributes & vagent::os::kFileAttributeReadOnly, 0u);
}

TEST(CopyLocally, MissingSourceLeavesTheSystemStatus) {
    TempDir source;
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(
        CopyLocally(ToLibraryPath(source / "none"), ToLibraryPath(source / "to"), true, errorCode));
    EXPECT_EQ(errorCode, vagent::os::kFileNotFound);
}
