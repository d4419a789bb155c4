#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "helpers/TempDir.h"
#include "vagent/VAgent.h"

using vagent::test::ReadWholeFile;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

void MakeTree(const std::filesystem::path& root) {
    std::filesystem::create_directories(root / "sub");
    WriteWholeFile(root / "empty.bin", "");
    WriteWholeFile(root / "exact.bin", std::string(1024, 'x'));
    std::string larger;
    for (int i = 0; i < 2500; ++i) {
        larger.push_back(static_cast<char>(i % 251));
    }
    WriteWholeFile(root / "sub" / "larger.bin", larger);
}

void ExpectSameTree(const std::filesystem::path& left, const std::filesystem::path& right) {
    for (const char* name : {"empty.bin", "exact.bin", "sub/larger.bin"}) {
        ASSERT_TRUE(std::filesystem::exists(right / name)) << name;
        EXPECT_EQ(ReadWholeFile(left / name), ReadWholeFile(right / name)) << name;
    }
}

}  // namespace

TEST(VAgentLocal, UploadFilesThenFilesCopyBackKeepsEveryByte) {
    TempDir directory;
    MakeTree(directory / "source");
    VAgent agent;
    std::string source = ToLibraryPath(directory / "source");
    std::string uploaded = ToLibraryPath(directory / "uploaded");
    std::string back = ToLibraryPath(directory / "back");
    EXPECT_EQ(agent.UploadFiles(source, uploaded, 0, ~0u, nullptr, nullptr), 1);
    EXPECT_EQ(agent.FilesCopy(uploaded, back, 1, 1, ~0u, nullptr), 1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
    ExpectSameTree(directory / "source", directory / "back");
}

TEST(VAgentLocal, FilesCopyKeepsTheLocalTasksCode) {
    TempDir directory;
    VAgent agent;
    std::string source = ToLibraryPath(directory / "missing.bin");
    std::string target = ToLibraryPath(directory / "target.bin");
    EXPECT_EQ(agent.FilesCopy(source, target, 0, 1, ~0u, nullptr), 0);
    EXPECT_NE(agent.GetErrorCode(), 0u);
}
