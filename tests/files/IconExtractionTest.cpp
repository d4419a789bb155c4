#include "files/IconExtraction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "fakes/FakeEnvironment.h"
#include "fakes/FakeModuleResources.h"
#include "files/FileTaskHarness.h"
#include "files/HostInformation.h"
#include "helpers/LogCapture.h"
#include "helpers/TempDir.h"
#include "os/Environment.h"
#include "os/ModuleResources.h"
#include "os/Status.h"

using ::testing::ElementsAre;
using vagent::files::CreateIcons;
using vagent::files::TemporaryIconPath;
using vagent::test::DecodeResult;
using vagent::test::FakeEnvironment;
using vagent::test::FakeModuleResources;
using vagent::test::LogCapture;
using vagent::test::PairBlock;
using vagent::test::ReadWholeFile;
using vagent::test::RunFileTask;
using vagent::test::TaskAnswer;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kCreateIconsTask = 30;

// A group of two images: 16 by 16 (resource 7, 3 bytes) and 32 by 32
// (resource 9, 2 bytes), each entry as the group resource holds it.
FakeModuleResources::Module TwoImageModule() {
    FakeModuleResources::Module module;
    module.groupNames = {vagent::os::ResourceName{true, 5, ""},
                         vagent::os::ResourceName{true, 6, ""}};
    module.resources[{vagent::os::kResourceGroupIcon, 5}] =
        Bytes{0,  0,  1, 0, 2, 0,                           //
              16, 16, 0, 0, 1, 0, 32, 0, 3, 0, 0, 0, 7, 0,  //
              32, 32, 0, 0, 1, 0, 32, 0, 2, 0, 0, 0, 9, 0};
    module.resources[{vagent::os::kResourceGroupIcon, 6}] = Bytes{0, 0, 1, 0, 0, 0};
    module.resources[{vagent::os::kResourceIcon, 7}] = Bytes{'a', 'b', 'c'};
    module.resources[{vagent::os::kResourceIcon, 9}] = Bytes{'d', 'e'};
    return module;
}

// The icon file of that group: header, two 16-byte entries with the images'
// offsets, then the images.
Bytes TwoImageIconFile() {
    return Bytes{0,   0,   1,   0,   2,  0,                                  //
                 16,  16,  0,   0,   1,  0, 32, 0, 3, 0, 0, 0, 38, 0, 0, 0,  //
                 32,  32,  0,   0,   1,  0, 32, 0, 2, 0, 0, 0, 41, 0, 0, 0,  //
                 'a', 'b', 'c', 'd', 'e'};
}

std::string AsText(const Bytes& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

}  // namespace

TEST(TemporaryIconPath, TakesTheFileNameAfterTheLastBackslashOrColon) {
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "C:\\a\\b\\app.ico"), "T:\\tmp\\app.ico");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "C:app.ico"), "T:\\tmp\\app.ico");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "app.ico"), "T:\\tmp\\app.ico");
}

TEST(TemporaryIconPath, NameWithSlashesOrDotsStaysInsideTheTemporaryDirectory) {
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "a/../../x.ico"), "T:\\tmp\\x.ico");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "C:\\icons/sub/app.ico"), "T:\\tmp\\app.ico");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "..\\..\\x.ico"), "T:\\tmp\\x.ico");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "C:\\icons\\.."), "");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "C:\\icons/."), "");
    EXPECT_EQ(TemporaryIconPath("T:\\tmp", "C:\\icons\\"), "");
}

TEST(CreateIcons, IconPathWhoseNameWouldLeaveTempIsRefusedWithInvalidParameter) {
    TempDir temp;
    FakeModuleResources resources;
    resources.modules["C:\\app.exe"] = TwoImageModule();
    FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temp / "inner");
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    std::vector<std::string> temporary;
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(CreateIcons({"C:\\app.exe"}, {"D:\\icons\\.."}, temporary, errorCode));
    EXPECT_EQ(errorCode, 0xE6000001u);
    EXPECT_FALSE(std::filesystem::exists(temp / "inner"));
    EXPECT_EQ(resources.loads, 0);
}

TEST(CreateIcons, ListsOfDifferentLengthsAreRefused) {
    LogCapture capture;
    std::vector<std::string> temporary;
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(CreateIcons({"a.exe", "b.exe"}, {"a.ico"}, temporary, errorCode));
    EXPECT_THAT(capture.Texts(), ElementsAre("CreateIcons : vecExeFile.size != vecIconFile"));
}

TEST(CreateIcons, WritesTheFirstGroupWithItsImagesAsAnIconFileInTemp) {
    TempDir temp;
    FakeModuleResources resources;
    resources.modules["C:\\app.exe"] = TwoImageModule();
    FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temp.Path());
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    std::vector<std::string> temporary;
    std::uint32_t errorCode = 0;
    EXPECT_TRUE(CreateIcons({"C:\\app.exe"}, {"D:\\icons\\app.ico"}, temporary, errorCode));
    EXPECT_THAT(temporary, ElementsAre(ToLibraryPath(temp / "app.ico")));
    EXPECT_EQ(ReadWholeFile(temp / "app.ico"), AsText(TwoImageIconFile()));
    EXPECT_EQ(resources.loads, 1);
    EXPECT_EQ(resources.frees, 1);
}

TEST(CreateIcons, ExecutableWithoutIconsFailsAndIsFreed) {
    TempDir temp;
    FakeModuleResources resources;
    resources.modules["C:\\plain.exe"];
    FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temp.Path());
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    std::vector<std::string> temporary;
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(CreateIcons({"C:\\plain.exe"}, {"p.ico"}, temporary, errorCode));
    EXPECT_NE(errorCode, 0u);
    EXPECT_EQ(resources.frees, 1);
}

TEST(CreateIcons, FirstFailureEndsTheWork) {
    TempDir temp;
    FakeModuleResources resources;
    resources.modules["C:\\app.exe"] = TwoImageModule();
    FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temp.Path());
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    std::vector<std::string> temporary;
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(
        CreateIcons({"C:\\missing.exe", "C:\\app.exe"}, {"m.ico", "a.ico"}, temporary, errorCode));
    EXPECT_EQ(errorCode, vagent::os::kFileNotFound);
    EXPECT_EQ(resources.loads, 0);
}

TEST(CreateIcons, GroupThatClaimsMoreEntriesThanItHoldsIsRefused) {
    TempDir temp;
    FakeModuleResources resources;
    FakeModuleResources::Module module = TwoImageModule();
    module.resources[{vagent::os::kResourceGroupIcon, 5}] = Bytes{0, 0, 1, 0, 9, 0, 16, 16};
    resources.modules["C:\\bad.exe"] = module;
    FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temp.Path());
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    std::vector<std::string> temporary;
    std::uint32_t errorCode = 0;
    EXPECT_FALSE(CreateIcons({"C:\\bad.exe"}, {"b.ico"}, temporary, errorCode));
    EXPECT_EQ(errorCode, 13u);
}

TEST(CreateIconsTask, SendsEachIconBackUnderTheNameTheRequestGave) {
    TempDir temp;
    TempDir client;
    FakeModuleResources resources;
    resources.modules["C:\\app.exe"] = TwoImageModule();
    FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temp.Path());
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    VFileTask task(kCreateIconsTask);
    const std::string wanted = ToLibraryPath(client / "shortcut.ico");
    const TaskAnswer result = RunFileTask(task, PairBlock({"C:\\app.exe"}, {wanted}));
    EXPECT_EQ(result.truth, 1);
    int unused = 0;
    EXPECT_EQ(DecodeResult(kCreateIconsTask, result, &unused), 1);
    EXPECT_EQ(ReadWholeFile(client / "shortcut.ico"), AsText(TwoImageIconFile()));
}

TEST(CreateIconsTask, FailureMakesNoBlock) {
    FakeModuleResources resources;
    FakeEnvironment environment;
    environment.variables["TEMP"] = "C:\\temp";
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    VFileTask task(kCreateIconsTask);
    const TaskAnswer result = RunFileTask(task, PairBlock({"C:\\none.exe"}, {"n.ico"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
    EXPECT_EQ(task.GetErrorCode(), vagent::os::kFileNotFound);
}

// Against this system's own resources: a Windows build reads the sample
// program built with the sample icon; a system without Windows resources
// answers "not supported".
TEST(CreateIconsOnThisSystem, IconOfTheSampleProgramIsTheIconItWasBuiltFrom) {
    const std::string directory = vagent::files::ImageDirectory();
    const std::string program = directory + "vagent_icon_sample.exe";
    vagent::os::ModuleHandle module = 0;
    const std::uint32_t loaded =
        vagent::os::Installed<vagent::os::ModuleResources>().LoadAsDataFile(program, module);
    TempDir client;
    const std::string wanted = ToLibraryPath(client / "sample.ico");
    VFileTask task(kCreateIconsTask);
    const TaskAnswer result = RunFileTask(task, PairBlock({program}, {wanted}));
    if (loaded == vagent::os::kNotSupported) {
        EXPECT_EQ(result.truth, 0);
        EXPECT_EQ(task.GetErrorCode(), vagent::os::kNotSupported);
        return;
    }
    ASSERT_EQ(loaded, 0u);
    vagent::os::Installed<vagent::os::ModuleResources>().Free(module);
    ASSERT_EQ(result.truth, 1);
    int unused = 0;
    ASSERT_EQ(DecodeResult(kCreateIconsTask, result, &unused), 1);
    const std::string built = ReadWholeFile(client / "sample.ico");
    const std::string source = ReadWholeFile(directory + "vagent_icon_sample.ico");
    EXPECT_EQ(built.size(), 5430u);
    EXPECT_EQ(built, source);
}
