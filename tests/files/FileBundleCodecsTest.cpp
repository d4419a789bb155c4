#include "files/FileBundleCodecs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FaultyFileSystem.h"
#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TempDir.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::files::Files2Result;
using vagent::files::Result2Files;
using vagent::test::LogCapture;
using vagent::test::ReadWholeFile;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Adopt(std::uint8_t* block, std::uint32_t size) {
    Bytes bytes(block, block + size);
    delete[] block;
    return bytes;
}

}  // namespace

TEST(Files2Result, MissingFirstFileLeavesABlockWithOnlyTheSecondPair) {
    LogCapture capture;
    TempDir dir;
    WriteWholeFile(dir / "two.ico", "XYZ");
    const std::string missing = ToLibraryPath(dir / "one.ico");
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(
        Files2Result({missing, ToLibraryPath(dir / "two.ico")}, {"a.ico", "b.ico"}, block, size),
        1);
    EXPECT_EQ(Adopt(block, size),
              (Bytes{0, 0, 0, 16, 0, 0, 0, 5, 'b', '.', 'i', 'c', 'o', 0, 0, 0, 3, 'X', 'Y', 'Z'}));
    EXPECT_THAT(capture.Texts(), ElementsAre("File [" + missing + "] Not Exit"));
}

TEST(Files2Result, EmptyFilesAreSkippedSilently) {
    LogCapture capture;
    TempDir dir;
    WriteWholeFile(dir / "empty", "");
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(Files2Result({ToLibraryPath(dir / "empty")}, {"e"}, block, size), 1);
    EXPECT_EQ(Adopt(block, size), (Bytes{0, 0, 0, 0}));
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(Files2Result, ListsOfDifferentLengthsAreRefused) {
    LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(Files2Result({"a"}, {}, block, size), 0);
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(capture.Texts(), ElementsAre("Files2Result : vecFiles.size != vecFilesDes.size"));
}

TEST(Files2Result, FileThatDoesNotOpenIsLoggedAndSkipped) {
    LogCapture capture;
    TempDir dir;
    WriteWholeFile(dir / "f", "data");
    const std::string path = ToLibraryPath(dir / "f");
    vagent::test::FaultyFileSystem files;
    files.failOpenOf = path;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(Files2Result({path}, {"f"}, block, size), 1);
    EXPECT_EQ(Adopt(block, size), (Bytes{0, 0, 0, 0}));
    EXPECT_THAT(capture.Texts(), ElementsAre("fopen [" + path + "] failed"));
}

TEST(Files2Result, AllocationFailureNamesTheWholeBlockSize) {
    LogCapture capture;
    TempDir dir;
    WriteWholeFile(dir / "f", "data");
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(Files2Result({ToLibraryPath(dir / "f")}, {"name"}, block, size), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("Files2Result : new [20] bytes failed"));
}

TEST(Result2Files, WritesEachFileUnderItsName) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "a", std::string("\x00\x01\x02", 3));
    WriteWholeFile(source / "b", "bee");
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(Files2Result({ToLibraryPath(source / "a"), ToLibraryPath(source / "b")},
                           {ToLibraryPath(target / "x.ico"), ToLibraryPath(target / "y.ico")},
                           block, size),
              1);
    const Bytes bytes = Adopt(block, size);
    EXPECT_EQ(Result2Files(bytes.data() + 4, size - 4), 1);
    EXPECT_EQ(ReadWholeFile(target / "x.ico"), std::string("\x00\x01\x02", 3));
    EXPECT_EQ(ReadWholeFile(target / "y.ico"), "bee");
}

TEST(Result2Files, FileThatCannotBeCreatedIsLogged) {
    LogCapture capture;
    TempDir dir;
    const std::string name = ToLibraryPath(dir / "no" / "such" / "f.ico");
    Bytes payload{0, 0, 0, static_cast<std::uint8_t>(name.size())};
    payload.insert(payload.end(), name.begin(), name.end());
    payload.insert(payload.end(), {0, 0, 0, 1, 'x'});
    EXPECT_EQ(Result2Files(payload.data(), static_cast<std::uint32_t>(payload.size())), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Create File [" + name + "] Failed"));
}

TEST(Result2Files, FormatErrorIsLogged) {
    LogCapture capture;
    const Bytes payload{0, 0, 0, 9, 'x'};
    EXPECT_EQ(Result2Files(payload.data(), static_cast<std::uint32_t>(payload.size())), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Result2Files : Data Format Error"));
}
