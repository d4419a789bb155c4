#include "os/ProfileFiles.h"

#include <gtest/gtest.h>

#include <string>

#include "helpers/TempDir.h"
#include "os/Facilities.h"

using vagent::os::Installed;
using vagent::os::ProfileFiles;
using vagent::test::ReadWholeFile;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

ProfileFiles& Profiles() {
    return Installed<ProfileFiles>();
}

}  // namespace

TEST(ProfileFiles, MissingFileGivesTheDefault) {
    TempDir dir;
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(Profiles().ReadInt("Base", "ReconnEnabled", 0, path), 0u);
    EXPECT_EQ(Profiles().ReadInt("PrintManage", "VpEnabled", 1, path), 1u);
}

TEST(ProfileFiles, FirstWriteCreatesTheFileWithTheSectionAndTheKey) {
    TempDir dir;
    const std::string path = ToLibraryPath(dir / "Config.ini");
    ASSERT_EQ(Profiles().WriteString("Base", "ReconnEnabled", "5", path), 0u);
    const std::string contents = ReadWholeFile(dir / "Config.ini");
    EXPECT_NE(contents.find("[Base]"), std::string::npos) << contents;
    EXPECT_NE(contents.find("ReconnEnabled=5"), std::string::npos) << contents;
    EXPECT_EQ(Profiles().ReadInt("Base", "ReconnEnabled", 0, path), 5u);
}

TEST(ProfileFiles, WritingAgainReplacesTheValue) {
    TempDir dir;
    const std::string path = ToLibraryPath(dir / "Config.ini");
    ASSERT_EQ(Profiles().WriteString("Base", "SSOEnabled", "1", path), 0u);
    ASSERT_EQ(Profiles().WriteString("Base", "SSOEnabled", "0", path), 0u);
    const std::string contents = ReadWholeFile(dir / "Config.ini");
    EXPECT_EQ(contents.find("SSOEnabled=1"), std::string::npos) << contents;
    EXPECT_EQ(Profiles().ReadInt("Base", "SSOEnabled", 7, path), 0u);
}

TEST(ProfileFiles, KeysAndSectionsAreKeptApart) {
    TempDir dir;
    const std::string path = ToLibraryPath(dir / "Config.ini");
    ASSERT_EQ(Profiles().WriteString("Base", "SSOEnabled", "1", path), 0u);
    ASSERT_EQ(Profiles().WriteString("PrintManage", "VpEnabled", "0", path), 0u);
    ASSERT_EQ(Profiles().WriteString("Base", "Z9SSOEnabled", "4", path), 0u);
    EXPECT_EQ(Profiles().ReadInt("Base", "SSOEnabled", 9, path), 1u);
    EXPECT_EQ(Profiles().ReadInt("Base", "Z9SSOEnabled", 9, path), 4u);
    EXPECT_EQ(Profiles().ReadInt("PrintManage", "VpEnabled", 9, path), 0u);
    EXPECT_EQ(Profiles().ReadInt("PrintManage", "SSOEnabled", 9, path), 9u);
}

TEST(ProfileFiles, NamesAreComparedWithoutRegardToCaseOrBlanks) {
    TempDir dir;
    WriteWholeFile(dir / "Config.ini", "[ base ]\r\n  reconnenabled  =  12  \r\n");
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(Profiles().ReadInt("Base", "ReconnEnabled", 0, path), 12u);
}

TEST(ProfileFiles, ValueIsReadUpToItsFirstNonDigit) {
    TempDir dir;
    WriteWholeFile(dir / "Config.ini", "[Base]\nA=34abc\nB=abc\n");
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(Profiles().ReadInt("Base", "A", 0, path), 34u);
    EXPECT_EQ(Profiles().ReadInt("Base", "B", 5, path), 0u);
}

TEST(ProfileFiles, MissingKeyInAnExistingSectionGivesTheDefault) {
    TempDir dir;
    WriteWholeFile(dir / "Config.ini", "[Base]\nOther=1\n");
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(Profiles().ReadInt("Base", "ReconnEnabled", 3, path), 3u);
}

TEST(ProfileFiles, WritingIntoAMissingDirectoryFails) {
    TempDir dir;
    const std::string path = ToLibraryPath(dir / "missing" / "Config.ini");
    EXPECT_NE(Profiles().WriteString("Base", "SSOEnabled", "1", path), 0u);
}

TEST(ProfileFiles, EmptyValueGivesTheDefault) {
    TempDir dir;
    WriteWholeFile(dir / "Config.ini", "[Base]\r\nReconnEnabled=\r\n");
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(Profiles().ReadInt("Base", "ReconnEnabled", 6, path), 6u);
}

TEST(ProfileFiles, NegativeValueWrapsAsAnUnsignedNumber) {
    TempDir dir;
    WriteWholeFile(dir / "Config.ini", "[Base]\r\nReconnEnabled=-5\r\n");
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(static_cast<std::int32_t>(Profiles().ReadInt("Base", "ReconnEnabled", 0, path)), -5);
}

TEST(ProfileFiles, QuotedValueIsReadWithoutItsQuotes) {
    TempDir dir;
    WriteWholeFile(dir / "Config.ini", "[Base]\r\nReconnEnabled=\"42\"\r\n");
    const std::string path = ToLibraryPath(dir / "Config.ini");
    EXPECT_EQ(Profiles().ReadInt("Base", "ReconnEnabled", 0, path), 42u);
}
