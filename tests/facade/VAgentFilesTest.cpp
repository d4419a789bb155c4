#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "facade/VAgentRoads.h"
#include "fakes/FakeEnvironment.h"
#include "fakes/FakeHostFacts.h"
#include "fakes/FakeModuleResources.h"
#include "helpers/TempDir.h"
#include "os/Environment.h"
#include "os/HostFacts.h"
#include "os/ModuleResources.h"
#include "vagent/VAgent.h"

using ::testing::ElementsAre;
using vagent::test::kLocalAccounts;
using vagent::test::ReadWholeFile;
using vagent::test::Road;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::VAgentRoads;
using vagent::test::WriteWholeFile;

// Listing, existence, icons, host facts, the directory-object test and the
// service account on both roads. Files are real (temporary directories);
// the host's facts, resources and services come from the fakes.

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<std::string> Entries(const std::vector<FileAttrA>& entries) {
    std::vector<std::string> texts;
    for (const FileAttrA& entry : entries) {
        texts.push_back(entry.name + "|" + std::to_string(entry.attribute));
    }
    return texts;
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

class VAgentFiles : public VAgentRoads {
protected:
    vagent::test::FakeHostFacts facts_;
    vagent::os::ScopedFacility<vagent::os::HostFacts> factsScope_{facts_};
};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentFiles, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

}  // namespace

TEST_P(VAgentFiles, DirListListsTheMatchesSortedWithoutRegardToCase) {
    TempDir directory;
    WriteWholeFile(directory / "b.txt", "b");
    WriteWholeFile(directory / "A.txt", "a");
    std::filesystem::create_directory(directory / "c");
    VAgent agent = Agent(kLocalAccounts);
    std::vector<FileAttrA> entries = {FileAttrA{"stale", 0}};
    EXPECT_EQ(agent.DirList(directory.LibraryPath() + "*", entries), 1);
    EXPECT_THAT(Entries(entries), ElementsAre("A.txt|0", "b.txt|0", "c|1"));
}

// The service answers a failed listing with status 0 and no records, so
// remotely the call succeeds with an empty list.
TEST_P(VAgentFiles, DirListOfAPathThatMatchesNothingListsNothing) {
    TempDir directory;
    VAgent agent = Agent(kLocalAccounts);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(agent.DirList(directory.LibraryPath() + "missing\\*", entries), Remote() ? 1 : 0);
    EXPECT_TRUE(entries.empty());
}

TEST_P(VAgentFiles, IsFileExistAnswersForEveryPathInOrder) {
    TempDir directory;
    WriteWholeFile(directory / "a.txt", "a");
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> paths = {ToLibraryPath(directory.Path()),
                                      directory.LibraryPath() + "missing.txt",
                                      directory.LibraryPath() + "a.txt"};
    std::vector<ExistAttr> answers;
    EXPECT_EQ(agent.IsFileExist(paths, answers, ~0u, nullptr), 1);
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_EQ(answers[0].exists, 1);
    EXPECT_EQ(answers[0].directory, 1);
    EXPECT_EQ(answers[1].exists, 0);
    EXPECT_EQ(answers[1].directory, 1);
    EXPECT_EQ(answers[2].exists, 1);
    EXPECT_EQ(answers[2].directory, 0);
}

// The icons are extracted into TEMP on the host that runs the task and end
// up at the icon paths the caller named.
TEST_P(VAgentFiles, CreateIconsWritesTheIconFileAtTheNamedPath) {
    TempDir temporary;
    TempDir target;
    vagent::test::FakeEnvironment environment;
    environment.variables["TEMP"] = ToLibraryPath(temporary.Path());
    vagent::os::ScopedFacility<vagent::os::Environment> environmentScope(environment);
    vagent::test::FakeModuleResources resources;
    resources.modules["C:\\apps\\app.exe"] = OneImageModule();
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> exeFiles = {"C:\\apps\\app.exe"};
    std::vector<std::string> iconFiles = {target.LibraryPath() + "app.ico"};
    EXPECT_EQ(agent.CreateIcons(exeFiles, iconFiles), 1);
    EXPECT_EQ(ReadWholeFile(target / "app.ico"), OneImageIconFile());
    EXPECT_EQ(ReadWholeFile(temporary / "app.ico"), OneImageIconFile());
    EXPECT_EQ(resources.loads, resources.frees);
}

TEST_P(VAgentFiles, CreateIconsFailsForAnExecutableWithoutIcons) {
    TempDir target;
    vagent::test::FakeModuleResources resources;
    vagent::os::ScopedFacility<vagent::os::ModuleResources> resourcesScope(resources);
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> exeFiles = {"C:\\apps\\missing.exe"};
    std::vector<std::string> iconFiles = {target.LibraryPath() + "app.ico"};
    EXPECT_EQ(agent.CreateIcons(exeFiles, iconFiles), 0);
    EXPECT_FALSE(std::filesystem::exists(target / "app.ico"));
}

TEST_P(VAgentFiles, GetImageDirectoryIsTheExecutablesDirectory) {
    VAgent agent = Agent(kLocalAccounts);
    std::string directory = "stale";
    EXPECT_EQ(agent.GetImageDirectory(directory), 1);
    EXPECT_EQ(directory, "C:\\Program Files\\vagent\\");
}

TEST_P(VAgentFiles, GetHostNameIsTheDnsHostName) {
    host_.names.names[vagent::os::kComputerNameDnsHostname] = "agent-host";
    VAgent agent = Agent(kLocalAccounts);
    std::string name = "stale";
    EXPECT_EQ(agent.GetHostName(name), 1);
    EXPECT_EQ(name, "agent-host");
    EXPECT_TRUE(host_.com.Balanced());
}

// On this machine the answer is 0 even though the version was read.
TEST_P(VAgentFiles, GetHostVersionGivesTheVersionCode) {
    host_.version.record = vagent::os::VersionRecord{5, 1, 2600, 2};
    VAgent agent = Agent(kLocalAccounts);
    agent.SetErrorCode(77);
    int version = -1;
    EXPECT_EQ(agent.GetHostVersion(version), Remote() ? 1 : 0);
    EXPECT_EQ(version, 8);
    EXPECT_EQ(agent.GetErrorCode(), Remote() ? 0u : 77u);
}

// No check is made on either road: locally the answer is 0, remotely the
// service's empty acknowledgement decodes as one item of value 0.
TEST_P(VAgentFiles, IsProcess32ChecksNothing) {
    VAgent agent = Agent(kLocalAccounts);
    std::string name = "app.exe";
    int result = -1;
    EXPECT_EQ(agent.IsProcess32(name, result), Remote() ? 1 : 0);
    EXPECT_EQ(result, Remote() ? 0 : -1);
}

TEST_P(VAgentFiles, IsLDAPObjectExistFindsTheObjectUnderTheAgentsRootSite) {
    host_.directory.AddEntry(L"CN=jdoe,CN=Staff,DC=corp,DC=example,DC=com", L"user");
    VAgent agent = StaffAgent();
    EXPECT_EQ(agent.IsLDAPObjectExist("jdoe", 0), 1);
    EXPECT_THAT(host_.directory.CallsStartingWith("Bind"),
                ElementsAre("BindObject LDAP://CN=jdoe, CN=Staff, DC=corp, DC=example, DC=com"));
}

// Remotely the answer says only that an acknowledgement arrived, whatever
// the test found.
TEST_P(VAgentFiles, IsLDAPObjectExistOfAMissingObject) {
    VAgent agent = StaffAgent();
    EXPECT_EQ(agent.IsLDAPObjectExist("nobody", 1), Remote() ? 1 : 0);
    EXPECT_THAT(host_.directory.CallsStartingWith("Bind"),
                ElementsAre("BindGroup LDAP://CN=nobody, CN=Staff, DC=corp, DC=example, DC=com"));
}

TEST_P(VAgentFiles, GetServiceUserNameIsTheServicesStartAccount) {
    host_.services.services["vagentd"].config.startName = ".\\svc";
    host_.services.services["vagentd"].config.hasStartName = true;
    VAgent agent = Agent(kLocalAccounts);
    std::string service = "vagentd", user = "stale";
    EXPECT_EQ(agent.GetServiceUserName(service, user), 1);
    EXPECT_EQ(user, ".\\svc");
    EXPECT_EQ(host_.services.openHandles, 0);
}

// Remotely the service's status, the error of opening the service, becomes
// the error code; locally the code is not touched.
TEST_P(VAgentFiles, GetServiceUserNameOfAMissingServiceFails) {
    VAgent agent = Agent(kLocalAccounts);
    std::string service = "nothere", user = "stale";
    EXPECT_EQ(agent.GetServiceUserName(service, user), 0);
    EXPECT_EQ(agent.GetErrorCode(), Remote() ? vagent::os::kServiceDoesNotExist : 0u);
}

TEST_P(VAgentFiles, ChangeServiceUserPasswdStoresAccountPasswordAndKeyAsDisplayName) {
    host_.services.services["vagentd"].config.displayName = "Agent Service";
    VAgent agent = Agent(kLocalAccounts);
    std::string service = "vagentd", account = ".\\svc", password = "Secret9";
    EXPECT_EQ(agent.ChangeServiceUserPasswd(service, account, password), 1);
    EXPECT_EQ(host_.services.services["vagentd"].config.startName, ".\\svc");
    EXPECT_EQ(host_.services.services["vagentd"].password, "Secret9");
    EXPECT_EQ(host_.services.services["vagentd"].config.displayName, "vagentd");
}

// Remotely a failed change still arrives as a well-formed acknowledgement,
// and that is what the answer tells.
TEST_P(VAgentFiles, ChangeServiceUserPasswdOfAMissingService) {
    VAgent agent = Agent(kLocalAccounts);
    std::string service = "nothere", account = ".\\svc", password = "Secret9";
    EXPECT_EQ(agent.ChangeServiceUserPasswd(service, account, password), Remote() ? 1 : 0);
    EXPECT_EQ(host_.services.services.count("nothere"), 0u);
}
