#include "files/DirectoryListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "fakes/FaultyFileSystem.h"
#include "helpers/TempDir.h"
#include "os/FileSystem.h"

using vagent::files::DirList;
using vagent::files::IsFileExist;
using vagent::test::FaultyFileSystem;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

std::vector<std::pair<std::string, int>> Flatten(const std::vector<FileAttrA>& entries) {
    std::vector<std::pair<std::string, int>> flat;
    for (const FileAttrA& entry : entries) {
        flat.emplace_back(entry.name, entry.attribute);
    }
    return flat;
}

using Listing = std::vector<std::pair<std::string, int>>;

}  // namespace

TEST(DirList, EmptyPathListsDriveRootsThenMappedLocalNames) {
    FaultyFileSystem files;
    files.drives = (1u << 2) | (1u << 3) | (1u << 25);  // C, D and the mapped Z
    files.networkDisks = std::vector<std::string>{"Z:"};
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(DirList("", entries), 1);
    EXPECT_EQ(Flatten(entries), (Listing{{"C:\\", 1}, {"D:\\", 1}, {"Z:\\", 1}, {"Z:", 1}}));
}

TEST(DirList, DrivesAAndBAreNeverListed) {
    FaultyFileSystem files;
    files.drives = 0x7u;  // A, B and C
    files.networkDisks = std::vector<std::string>{};
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(DirList("", entries), 1);
    EXPECT_EQ(Flatten(entries), (Listing{{"C:\\", 1}}));
}

TEST(DirList, FailedNetworkEnumerationAddsNoNames) {
    FaultyFileSystem files;
    files.drives = 1u << 2;
    files.networkStatus = 1222;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(DirList("", entries), 1);
    EXPECT_EQ(Flatten(entries), (Listing{{"C:\\", 1}}));
}

TEST(DirList, PatternListsNamesSortedWithoutRegardToCaseDirectoriesNotFirst) {
    TempDir dir;
    WriteWholeFile(dir / "b.txt", "b");
    WriteWholeFile(dir / "A.txt", "a");
    std::filesystem::create_directory(dir / "c");
    std::vector<FileAttrA> entries;
    EXPECT_EQ(DirList(dir.LibraryPath() + "*", entries), 1);
    EXPECT_EQ(Flatten(entries), (Listing{{"A.txt", 0}, {"b.txt", 0}, {"c", 1}}));
}

TEST(DirList, DotEntriesAreSkipped) {
    TempDir dir;
    WriteWholeFile(dir / "only", "x");
    std::vector<FileAttrA> entries;
    EXPECT_EQ(DirList(dir.LibraryPath() + "*.*", entries), 1);
    EXPECT_EQ(Flatten(entries), (Listing{{"only", 0}}));
}

TEST(DirList, EmptyDirectoryListsNothingAndSucceeds) {
    TempDir dir;
    std::vector<FileAttrA> entries{FileAttrA{"stale", 1}};
    EXPECT_EQ(DirList(dir.LibraryPath() + "*", entries), 1);
    EXPECT_TRUE(entries.empty());
}

TEST(DirList, PatternThatMatchesNothingFailsWithAnEmptyList) {
    TempDir dir;
    std::vector<FileAttrA> entries{FileAttrA{"stale", 1}};
    EXPECT_EQ(DirList(dir.LibraryPath() + "missing\\*", entries), 0);
    EXPECT_TRUE(entries.empty());
}

TEST(DirList, SearchIsClosed) {
    TempDir dir;
    WriteWholeFile(dir / "a", "a");
    FaultyFileSystem files;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(DirList(dir.LibraryPath() + "*", entries), 1);
    EXPECT_THAT(files.calls, ::testing::Contains("FindClose"));
}

TEST(IsFileExist, MissingPathCarriesTheDirectoryFieldOver) {
    TempDir dir;
    std::vector<ExistAttr> answers;
    EXPECT_EQ(IsFileExist({ToLibraryPath(dir.Path()), ToLibraryPath(dir / "missing.txt")}, answers),
              1);
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0].exists, 1);
    EXPECT_EQ(answers[0].directory, 1);
    EXPECT_EQ(answers[1].exists, 0);
    EXPECT_EQ(answers[1].directory, 1);
}

TEST(IsFileExist, MissingFirstPathHasDirectoryZero) {
    TempDir dir;
    WriteWholeFile(dir / "file", "x");
    std::vector<ExistAttr> answers;
    EXPECT_EQ(IsFileExist({ToLibraryPath(dir / "missing"), ToLibraryPath(dir / "file")}, answers),
              1);
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0].exists, 0);
    EXPECT_EQ(answers[0].directory, 0);
    EXPECT_EQ(answers[1].exists, 1);
    EXPECT_EQ(answers[1].directory, 0);
}

TEST(IsFileExist, ReplacesWhatTheOutputHeld) {
    std::vector<ExistAttr> answers{ExistAttr{1, 1}, ExistAttr{1, 1}};
    EXPECT_EQ(IsFileExist({}, answers), 1);
    EXPECT_TRUE(answers.empty());
}
