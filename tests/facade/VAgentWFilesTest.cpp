#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "CaptureServer.h"
#include "facade/VAgentWRoads.h"
#include "facade/VAgentWTestHost.h"
#include "fakes/FakeEnvironment.h"
#include "fakes/FakeHostFacts.h"
#include "fakes/FakeModuleResources.h"
#include "helpers/TaskRun.h"
#include "helpers/TempDir.h"
#include "os/Environment.h"
#include "os/HostFacts.h"
#include "os/ModuleResources.h"
#include "service/EndToEndTree.h"
#include "vagent/VAgentW.h"

using ::testing::ElementsAre;
using vagent::test::ActiveCodePage;
using vagent::test::kLocalAccounts;
using vagent::test::NarrowText;
using vagent::test::ReadWholeFile;
using vagent::test::Road;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::VAgentWRoads;
using vagent::test::WideText;
using vagent::test::WriteWholeFile;

// The wide agent's file and host operations on both roads, read back from
// real temporary directories and from the fake host: a tree with non-ASCII
// names up to a service and back, icons, the process and directory-object
// checks, and what a wide copy sends.

namespace {

using Bytes = std::vector<std::uint8_t>;
using Utf8Tree = std::map<std::string, std::string>;

constexpr unsigned int kNewConnection = ~0u;
constexpr int kRecursive = 1;
constexpr int kOnTheService = 1;
constexpr int kToThisMachine = 0;
constexpr char kDirectoryMark[] = "<dir>";

const std::wstring kJuergen = L"J\u00FCrgen";

std::filesystem::path Utf8Path(const std::string& utf8) {
    return std::filesystem::u8path(utf8);
}

// What lies under root, by relative path in UTF-8 whatever the system's
// code page: a file's bytes or kDirectoryMark.
Utf8Tree ReadUtf8Tree(const std::filesystem::path& root) {
    Utf8Tree tree;
    std::error_code error;
    if (!std::filesystem::is_directory(root, error)) {
        return tree;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const std::string relative = entry.path().lexically_relative(root).generic_u8string();
        tree[relative] = entry.is_directory() ? kDirectoryMark : ReadWholeFile(entry.path());
    }
    return tree;
}

// A non-ASCII file of three pieces on the wire, an empty file and a
// non-ASCII subdirectory with a file of its own.
void MakeNonAsciiTree(const std::filesystem::path& root) {
    std::filesystem::create_directories(root / Utf8Path("B\xC3\xBCro"));
    WriteWholeFile(root / Utf8Path("J\xC3\xBCrgen.txt"), vagent::test::PatternBytes(2500, 5));
    WriteWholeFile(root / "empty.bin", "");
    WriteWholeFile(root / Utf8Path("B\xC3\xBCro") / "notiz.txt", "Notiz");
}

std::wstring WidePath(const std::filesystem::path& path) {
    return WideText(ToLibraryPath(path));
}

// One icon group (resource 5) of one 16 by 16 image (resource 7, 3 bytes).
vagent::test::FakeModuleResources::Module OneImageModule() {
    vagent::test::FakeModuleResources::Module module;
    module.groupNames = {vagent::os::ResourceName{true, 5, ""}};
    module.resources[{vagent::os::kResourceGroupIcon, 5}] =
        Bytes{0, 0, 1, 0, 1, 0, 16, 16, 0, 0, 1, 0, 32, 0, 3, 0, 0, 0, 7, 0};
    module.resources[{vagent::os::kResourceIcon, 7}] = Bytes{'a', 'b', 'c'};
    return module;
}

// The icon file of that group: header, one 16-byte entry whose image starts
// at offset 22, then the image.
std::string OneImageIconFile() {
    const Bytes bytes{0, 0, 1, 0, 1, 0,  16, 16, 0, 0,   1,   0,  32,
                      0, 3, 0, 0, 0, 22, 0,  0,  0, 'a', 'b', 'c'};
    return std::string(bytes.begin(), bytes.end());
}

class VAgentWFiles : public VAgentWRoads {
protected:
    vagent::test::FakeHostFacts facts_;
    vagent::os::ScopedFacility<vagent::os::HostFacts> factsScope_{facts_};
};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentWFiles, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

}  // namespace

// Remotely the tree goes up to the service and is streamed back from it;
// the names travel in the active code page both ways.
TEST_P(VAgentWFiles, UploadFilesThenFilesCopyBackKeepsNonAsciiNamesAndEveryByte) {
    TempDir source;
    TempDir work;
    MakeNonAsciiTree(source.Path());
    VAgentW agent = WideAgent(kLocalAccounts);
    std::wstring from = WidePath(source.Path());
    std::wstring uploaded = WidePath(work.Path()) + L"\\" + kJuergen;
    std::wstring back = WidePath(work.Path()) + L"\\zur\u00FCck";
    EXPECT_EQ(agent.UploadFiles(from, uploaded, 0, kNewConnection, nullptr, nullptr), 1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
    EXPECT_EQ(agent.FilesCopy(uploaded, back, kRecursive, kToThisMachine, kNewConnection, nullptr),
              1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);

    const Utf8Tree expected = ReadUtf8Tree(source.Path());
    ASSERT_EQ(expected.size(), 4u);
    EXPECT_EQ(ReadUtf8Tree(work.Path() / Utf8Path("J\xC3\xBCrgen")), expected);
    const Utf8Tree copiedBack = ReadUtf8Tree(work.Path() / Utf8Path("zur\xC3\xBC"
                                                                    "ck"));
    EXPECT_EQ(copiedBack, expected);
    ASSERT_EQ(copiedBack.count("J\xC3\xBCrgen.txt"), 1u);
    EXPECT_EQ(copiedBack.at("J\xC3\xBCrgen.txt").size(), 2500u);
    EXPECT_EQ(copiedBack.count("B\xC3\xBCro/notiz.txt"), 1u);
}

// The icons are extracted into TEMP on the host that runs the task and end
// up at the icon path the caller named, non-ASCII name and all.
TEST_P(VAgentWFiles, CreateIconsWritesTheIconFileAtTheNamedWidePath) {
    TempDir temporary;
    TempDir target;
    vagent::test::FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temporary.Path());
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    vagent::test::FakeModuleResources resources;
    resources.modules[ActiveCodePage("C:\\apps\\J\xC3\xBCrgen.exe", "C:\\apps\\J\xFCrgen.exe")] =
        OneImageModule();
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    VAgentW agent = WideAgent(kLocalAccounts);
    std::vector<std::wstring> exeFiles = {L"C:\\apps\\" + kJuergen + L".exe"};
    std::vector<std::wstring> iconFiles = {WidePath(target.Path()) + L"\\" + kJuergen + L".ico"};
    EXPECT_EQ(agent.CreateIcons(exeFiles, iconFiles), 1);
    EXPECT_EQ(ReadWholeFile(target.Path() / Utf8Path("J\xC3\xBCrgen.ico")), OneImageIconFile());
    EXPECT_EQ(ReadWholeFile(temporary.Path() / Utf8Path("J\xC3\xBCrgen.ico")), OneImageIconFile());
    EXPECT_EQ(resources.loads, resources.frees);
}

TEST_P(VAgentWFiles, CreateIconsFailsForAnExecutableWithoutIcons) {
    TempDir target;
    vagent::test::FakeModuleResources resources;
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    VAgentW agent = WideAgent(kLocalAccounts);
    std::vector<std::wstring> exeFiles = {L"C:\\apps\\missing.exe"};
    std::vector<std::wstring> iconFiles = {WidePath(target.Path()) + L"\\app.ico"};
    EXPECT_EQ(agent.CreateIcons(exeFiles, iconFiles), 0);
    EXPECT_FALSE(std::filesystem::exists(target / "app.ico"));
}

// No check is made on either road: locally the answer is 0 and the result
// untouched, remotely the service's empty acknowledgement reads as 0.
TEST_P(VAgentWFiles, IsProcess32ChecksNothing) {
    VAgentW agent = WideAgent(kLocalAccounts);
    std::wstring name = kJuergen + L".exe";
    int result = -1;
    EXPECT_EQ(agent.IsProcess32(name, result), Remote() ? 1 : 0);
    EXPECT_EQ(result, Remote() ? 0 : -1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentWFiles, IsLDAPObjectExistFindsANonAsciiObjectUnderTheAgentsRootSite) {
    host_.directory.AddEntry(L"CN=" + kJuergen + L",CN=Staff,DC=corp,DC=example,DC=com", L"user");
    VAgentW agent = WideStaffAgent();
    EXPECT_EQ(agent.IsLDAPObjectExist(kJuergen, 0), 1);
    EXPECT_EQ(host_.directory.CallsStartingWith("Bind").size(), 1u);
}

// Remotely the answer says only that an acknowledgement arrived, whatever
// the test found.
TEST_P(VAgentWFiles, IsLDAPObjectExistOfAMissingObject) {
    VAgentW agent = WideStaffAgent();
    EXPECT_EQ(agent.IsLDAPObjectExist(L"nobody", 1), Remote() ? 1 : 0);
    EXPECT_THAT(host_.directory.CallsStartingWith("Bind"),
                ElementsAre("BindGroup LDAP://CN=nobody, CN=Staff, DC=corp, DC=example, DC=com"));
}

// A wide copy names no copy site: its temporary agent carries the target,
// work environment and root site only, so the request's site is empty and
// its number 0 whatever SetFilesCopySite stored.
TEST(VAgentWFilesCopy, SendsAnEmptyCopySiteAndNumberZeroWhateverTheObjectHolds) {
    vagent::test::VAgentWTestHost host;
    vagent::test::CaptureServer server(vagent::test::EndFrameBytes(0));
    VAgentW agent(3, L"127.0.0.1", WideText(server.Port()));
    std::wstring rootSite = L"OU=Staff";
    agent.SetLDAPRootSite(rootSite);
    std::wstring copySite = L"10.1.1.1";
    EXPECT_EQ(agent.SetFilesCopySite(copySite, 4321), 1);
    std::wstring source = L"C:\\" + kJuergen;
    std::wstring target = L"D:\\dst";
    EXPECT_EQ(agent.FilesCopy(source, target, kRecursive, kOnTheService, kNewConnection, nullptr),
              1);
    const vagent::test::CapturedFrame& frame = server.Frame();
    ASSERT_TRUE(frame.complete);
    EXPECT_EQ(frame.taskId, 44u);
    EXPECT_EQ(frame.workEnv, 3);
    EXPECT_EQ(frame.rootSite, "OU=Staff");
    EXPECT_EQ(frame.block,
              vagent::test::ListBlock({"", "0", NarrowText(source), "D:\\dst", "1", "1"}));
    EXPECT_EQ(NarrowText(source), ActiveCodePage("C:\\J\xC3\xBCrgen", "C:\\J\xFCrgen"));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}
