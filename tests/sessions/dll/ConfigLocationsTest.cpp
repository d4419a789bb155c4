// Runs against vagent.dll loaded from another directory than this program:
// the library's settings go to the "Config.ini" beside the DLL, the
// single-sign-on switches to the one beside the program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/TaskRequest.h"
#include "vagent/VSessionTask.h"

using ::testing::ElementsAre;

namespace {

std::filesystem::path DirectoryFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::filesystem::path(value) : std::filesystem::path();
}

std::string ReadWholeFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

struct Answer {
    int truth = -1;
    std::vector<std::uint8_t> block;
};

// Sends the items to the task as the agent service would, and keeps what it
// answers.
Answer RunTask(std::uint32_t id, const std::vector<std::string>& items) {
    std::uint8_t* request = nullptr;
    std::uint32_t requestSize = 0;
    EXPECT_EQ(VecTStringToResult(items, request, requestSize), 1);
    VSessionTask task(id);
    TaskRequest record;
    record.length = requestSize;
    record.data = request;
    EXPECT_EQ(task.SetRequest(record), 1);
    delete[] request;
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    Answer answer;
    answer.truth = task.DoTask(&data, &size);
    if (data != nullptr) {
        answer.block.assign(data, data + size);
    }
    delete[] data;
    return answer;
}

std::vector<std::string> Strings(std::uint32_t id, const Answer& answer) {
    std::vector<std::string> strings;
    VSessionTask client(id);
    EXPECT_GE(answer.block.size(), 4u);
    if (answer.block.size() >= 4) {
        EXPECT_EQ(
            client.Result2Struct(answer.block.data() + 4,
                                 static_cast<std::uint32_t>(answer.block.size() - 4), &strings),
            1);
    }
    return strings;
}

class ConfigLocations : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(libraryDirectory_.empty()) << "VAGENT_DLL_DIR is not set";
        ASSERT_FALSE(programDirectory_.empty()) << "VAGENT_EXE_DIR is not set";
        ASSERT_NE(std::filesystem::canonical(libraryDirectory_),
                  std::filesystem::canonical(programDirectory_));
        RemoveFiles();
    }
    void TearDown() override { RemoveFiles(); }

    std::filesystem::path LibraryConfig() const { return libraryDirectory_ / "Config.ini"; }
    std::filesystem::path ProgramConfig() const { return programDirectory_ / "Config.ini"; }

private:
    void RemoveFiles() {
        std::filesystem::remove(LibraryConfig());
        std::filesystem::remove(ProgramConfig());
    }

    std::filesystem::path libraryDirectory_ = DirectoryFromEnvironment("VAGENT_DLL_DIR");
    std::filesystem::path programDirectory_ = DirectoryFromEnvironment("VAGENT_EXE_DIR");
};

}  // namespace

TEST_F(ConfigLocations, ReconnectionSettingIsWrittenAndReadBesideTheLibrary) {
    EXPECT_THAT(Strings(33, RunTask(33, {"6", "5"})), ElementsAre("1"));
    const std::string contents = ReadWholeFile(LibraryConfig());
    EXPECT_NE(contents.find("[Base]"), std::string::npos) << contents;
    EXPECT_NE(contents.find("ReconnEnabled=5"), std::string::npos) << contents;
    EXPECT_FALSE(std::filesystem::exists(ProgramConfig()));
    EXPECT_THAT(Strings(32, RunTask(32, {"6"})), ElementsAre("1", "5"));
}

TEST_F(ConfigLocations, PrinterManagementSettingIsWrittenAndReadBesideTheLibrary) {
    EXPECT_THAT(Strings(32, RunTask(32, {"8"})), ElementsAre("1", "1"));
    EXPECT_THAT(Strings(33, RunTask(33, {"8", "0"})), ElementsAre("1"));
    const std::string contents = ReadWholeFile(LibraryConfig());
    EXPECT_NE(contents.find("[PrintManage]"), std::string::npos) << contents;
    EXPECT_NE(contents.find("VpEnabled=0"), std::string::npos) << contents;
    EXPECT_FALSE(std::filesystem::exists(ProgramConfig()));
    EXPECT_THAT(Strings(32, RunTask(32, {"8"})), ElementsAre("1", "0"));
}

TEST_F(ConfigLocations, SingleSignOnSwitchesAreWrittenBesideTheProgram) {
    const Answer sso = RunTask(40, {"1"});
    EXPECT_EQ(sso.truth, 1);
    EXPECT_EQ(sso.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 1}));
    const Answer z9 = RunTask(41, {"0"});
    EXPECT_EQ(z9.truth, 1);
    const std::string contents = ReadWholeFile(ProgramConfig());
    EXPECT_NE(contents.find("\nSSOEnabled=1"), std::string::npos) << contents;
    EXPECT_NE(contents.find("Z9SSOEnabled=0"), std::string::npos) << contents;
    EXPECT_FALSE(std::filesystem::exists(LibraryConfig()));
}
