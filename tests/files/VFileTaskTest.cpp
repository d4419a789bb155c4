#include "vagent/VFileTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "fakes/FakeCom.h"
#include "fakes/FakeComputerNames.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakeHostFacts.h"
#include "fakes/FakeVersionInfo.h"
#include "fakes/FakeServiceManager.h"
#include "fakes/FaultyFileSystem.h"
#include "files/FileTaskHarness.h"
#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TempDir.h"
#include "os/Com.h"
#include "os/ComputerNames.h"
#include "os/Directory.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "vagent/LdapRootSite.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::DecodeResult;
using vagent::test::ListBlock;
using vagent::test::LogCapture;
using vagent::test::RunFileTask;
using vagent::test::TaskAnswer;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

using Bytes = std::vector<std::uint8_t>;

const Bytes kNoItems{0, 0, 0, 0};
const Bytes kAckZero{0, 0, 0, 4, 0, 0, 0, 0};
const Bytes kAckOne{0, 0, 0, 4, 0, 0, 0, 1};

// The root site for the scope of one test, put back when it ends.
class ScopedRootSite {
public:
    explicit ScopedRootSite(std::string site) : previous_(GetLDAPRootSite()) {
        SetLDAPRootSite(site);
    }
    ~ScopedRootSite() { SetLDAPRootSite(previous_); }

private:
    std::string previous_;
};

}  // namespace

TEST(VFileTaskDoTask, NullOutPointersAreRefusedWithTheFamilysSpelling) {
    LogCapture capture;
    VFileTask task(34);
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("DoTask : Paramter Error"));
}

TEST(VFileTaskDoTask, IdsOutsideTheFamilyAndUnservedIdsFailWithoutABlock) {
    LogCapture capture;
    for (std::uint32_t id : {1u, 27u, 32u, 33u, 36u, 37u, 40u, 41u, 42u, 43u, 48u}) {
        VFileTask task(id);
        const TaskAnswer result = RunFileTask(task, ListBlock({"x"}));
        EXPECT_EQ(result.truth, 0) << id;
        EXPECT_TRUE(result.block.empty()) << id;
    }
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(VFileTaskDoTask, DirListWithNoItemsListsTheDrives) {
    vagent::test::FaultyFileSystem files;
    files.drives = 1u << 2;
    files.networkDisks = std::vector<std::string>{};
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    VFileTask task(28);
    const TaskAnswer result = RunFileTask(task, kNoItems);
    EXPECT_EQ(result.truth, 1);
    std::vector<FileAttrA> entries;
    ASSERT_EQ(DecodeResult(28, result, &entries), 1);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].name, "C:\\");
    EXPECT_EQ(entries[0].attribute, 1);
}

TEST(VFileTaskDoTask, DirListRoundTripsTheListing) {
    TempDir dir;
    WriteWholeFile(dir / "b", "b");
    std::filesystem::create_directory(dir / "a");
    VFileTask task(28);
    const TaskAnswer result = RunFileTask(task, ListBlock({dir.LibraryPath() + "*"}));
    EXPECT_EQ(result.truth, 1);
    std::vector<FileAttrA> entries;
    ASSERT_EQ(DecodeResult(28, result, &entries), 1);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "a");
    EXPECT_EQ(entries[0].attribute, 1);
    EXPECT_EQ(entries[1].name, "b");
    EXPECT_EQ(entries[1].attribute, 0);
}

TEST(VFileTaskDoTask, DirListThatMatchesNothingFailsWithoutABlock) {
    TempDir dir;
    VFileTask task(28);
    const TaskAnswer result = RunFileTask(task, ListBlock({dir.LibraryPath() + "none\\*"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
}

TEST(VFileTaskDoTask, DirListOfAnEmptyDirectorySucceedsWithoutABlock) {
    LogCapture capture;
    TempDir dir;
    VFileTask task(28);
    const TaskAnswer result = RunFileTask(task, ListBlock({dir.LibraryPath() + "*"}));
    EXPECT_EQ(result.truth, 1);
    EXPECT_TRUE(result.block.empty());
    EXPECT_THAT(capture.Texts(), ElementsAre("VecFileAttr2Result : Parameter Error, dwSize = 0"));
}

TEST(VFileTaskDoTask, DirListThatRunsOutOfMemoryMidWalkFailsWith8AndClosesItsSearch) {
    TempDir dir;
    WriteWholeFile(dir / "a", "a");
    WriteWholeFile(dir / "b", "b");
    vagent::test::FaultyFileSystem files;
    files.throwOnFindNext = true;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    VFileTask task(28);
    TaskAnswer result;
    EXPECT_NO_THROW(result = RunFileTask(task, ListBlock({dir.LibraryPath() + "*"})));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
    EXPECT_EQ(task.GetErrorCode(), 8u);
    EXPECT_THAT(files.calls, ElementsAre("FindFirst " + dir.LibraryPath() + "*", "FindClose"));
}

TEST(VFileTaskDoTask, RequestShorterThanItsPrefixFailsTheDecoding) {
    VFileTask task(28);
    const TaskAnswer result = RunFileTask(task, Bytes{0, 0});
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
}

TEST(VFileTaskDoTask, MalformedRequestFailsWithoutABlock) {
    LogCapture capture;
    VFileTask task(29);
    const TaskAnswer result = RunFileTask(task, Bytes{0, 0, 0, 5, 0, 0, 0, 9, 'x'});
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Data2VecTString : Data Format Error"));
}

TEST(VFileTaskDoTask, IsFileExistRoundTripsEveryAnswer) {
    TempDir dir;
    WriteWholeFile(dir / "f", "f");
    VFileTask task(29);
    const TaskAnswer result =
        RunFileTask(task, ListBlock({ToLibraryPath(dir.Path()), ToLibraryPath(dir / "gone"),
                                     ToLibraryPath(dir / "f")}));
    EXPECT_EQ(result.truth, 1);
    EXPECT_EQ(result.PayloadBytes(),
              (Bytes{0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 0,
                     0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 0}));
    std::vector<ExistAttr> answers;
    ASSERT_EQ(DecodeResult(29, result, &answers), 1);
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_EQ(answers[1].exists, 0);
    EXPECT_EQ(answers[2].exists, 1);
}

TEST(VFileTaskDoTask, ImageDirectoryOfAProgramAtADrivesRootIsTheRoot) {
    vagent::test::FakeHostFacts host;
    host.executablePath = "C:\\vagentd.exe";
    vagent::os::ScopedFacility<vagent::os::HostFacts> scope(host);
    VFileTask task(31);
    const TaskAnswer result = RunFileTask(task, kNoItems);
    EXPECT_EQ(result.truth, 1);
    std::string directory;
    ASSERT_EQ(DecodeResult(31, result, &directory), 1);
    EXPECT_EQ(directory, "C:\\");
}

TEST(VFileTaskDoTask, ImageDirectoryKeepsTheTrailingBackslash) {
    vagent::test::FakeHostFacts host;
    vagent::os::ScopedFacility<vagent::os::HostFacts> scope(host);
    VFileTask task(31);
    std::string directory;
    EXPECT_EQ(task.GetImageDirectory(directory), 1);
    EXPECT_EQ(directory, "C:\\Program Files\\vagent\\");
}

TEST(VFileTaskDoTask, HostNameIsTheDnsHostNameBetweenBalancedComCalls) {
    vagent::test::FakeComputerNames names;
    vagent::test::FakeCom com;
    vagent::os::ScopedFacility<vagent::os::ComputerNames> namesScope(names);
    vagent::os::ScopedFacility<vagent::os::Com> comScope(com);
    VFileTask task(34);
    const TaskAnswer result = RunFileTask(task, kNoItems);
    EXPECT_EQ(result.truth, 1);
    std::string name;
    ASSERT_EQ(DecodeResult(34, result, &name), 1);
    EXPECT_EQ(name, "ts01");
    ASSERT_EQ(names.calls.size(), 1u);
    EXPECT_EQ(names.calls[0].format, 1u);
    EXPECT_EQ(names.calls[0].capacity, 1024u);
    EXPECT_EQ(com.initializations, 1);
    EXPECT_TRUE(com.Balanced());
}

TEST(VFileTaskDoTask, HostVersionTravelsAsDecimalText) {
    vagent::test::FakeVersionInfo version;
    version.record = vagent::os::VersionRecord{5, 2, 3790, 2};
    vagent::os::ScopedFacility<vagent::os::VersionInfo> scope(version);
    VFileTask task(35);
    const TaskAnswer result = RunFileTask(task, kNoItems);
    EXPECT_EQ(result.truth, 1);
    EXPECT_EQ(result.block, (Bytes{0, 0, 0, 5, 0, 0, 0, 1, '9'}));
    int code = -1;
    ASSERT_EQ(DecodeResult(35, result, &code), 1);
    EXPECT_EQ(code, 9);
}

TEST(VFileTaskDoTask, HostVersionThatCannotBeReadFailsWithoutABlock) {
    vagent::test::FakeVersionInfo version;
    version.status = 87;
    vagent::os::ScopedFacility<vagent::os::VersionInfo> scope(version);
    VFileTask task(35);
    const TaskAnswer result = RunFileTask(task, kNoItems);
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
    EXPECT_EQ(task.GetErrorCode(), 87u);
}

TEST(VFileTaskDoTask, IsProcess32AlwaysReportsFailureWithoutABlock) {
    VFileTask task(38);
    const TaskAnswer result = RunFileTask(task, ListBlock({"notepad.exe"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
}

TEST(VFileTaskAnswer2Struct, IsProcess32ReadsANumberOnlyFromExactlyOneItem) {
    TaskAnswer one;
    one.block = ListBlock({"32"});
    int value = 0;
    EXPECT_EQ(DecodeResult(38, one, &value), 1);
    EXPECT_EQ(value, 32);
    TaskAnswer two;
    two.block = ListBlock({"32", "64"});
    value = 0;
    EXPECT_EQ(DecodeResult(38, two, &value), 0);
    EXPECT_EQ(value, 0);
}

TEST(VFileTaskDoTask, LdapObjectTestWithOneItemAnswersAnAcknowledgementOfZero) {
    VFileTask task(39);
    const TaskAnswer result = RunFileTask(task, ListBlock({"jdoe"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_EQ(result.block, kAckZero);
}

TEST(VFileTaskDoTask, LdapObjectTestBindsTheNameUnderTheRootSiteAndTheDomain) {
    vagent::test::FakeComputerNames names;
    vagent::test::FakeCom com;
    vagent::test::FakeDirectory directory;
    directory.AddEntry(L"CN=jdoe,CN=Users,DC=corp,DC=example,DC=com", L"user");
    vagent::os::ScopedFacility<vagent::os::ComputerNames> namesScope(names);
    vagent::os::ScopedFacility<vagent::os::Com> comScope(com);
    vagent::os::ScopedFacility<vagent::os::Directory> directoryScope(directory);
    ScopedRootSite root("CN=Users");
    VFileTask task(39);
    const TaskAnswer result = RunFileTask(task, ListBlock({"jdoe", "0"}));
    EXPECT_EQ(result.truth, 1);
    EXPECT_EQ(result.block, kAckOne);
    EXPECT_THAT(directory.CallsStartingWith("Bind"),
                ElementsAre("BindObject LDAP://CN=jdoe, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(com.Balanced());
    int arrived = 0;
    EXPECT_EQ(DecodeResult(39, result, &arrived), 1);
    EXPECT_EQ(arrived, 1);
}

TEST(VFileTaskDoTask, LdapObjectTestUsesAPathInSmallLettersUnchanged) {
    vagent::test::FakeComputerNames names;
    vagent::test::FakeCom com;
    vagent::test::FakeDirectory directory;
    vagent::os::ScopedFacility<vagent::os::ComputerNames> namesScope(names);
    vagent::os::ScopedFacility<vagent::os::Com> comScope(com);
    vagent::os::ScopedFacility<vagent::os::Directory> directoryScope(directory);
    VFileTask task(39);
    const TaskAnswer result = RunFileTask(task, ListBlock({"ldap://CN=x,DC=corp", "1"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_EQ(result.block, kAckZero);
    EXPECT_THAT(directory.CallsStartingWith("Bind"), ElementsAre("BindGroup ldap://CN=x,DC=corp"));
    int arrived = 0;
    EXPECT_EQ(DecodeResult(39, result, &arrived), 1);
    EXPECT_EQ(arrived, 1);
}

TEST(VFileTaskDoTask, LdapObjectTestWithAnEmptyRootSiteLeavesItsPartOut) {
    vagent::test::FakeComputerNames names;
    vagent::test::FakeCom com;
    vagent::test::FakeDirectory directory;
    vagent::os::ScopedFacility<vagent::os::ComputerNames> namesScope(names);
    vagent::os::ScopedFacility<vagent::os::Com> comScope(com);
    vagent::os::ScopedFacility<vagent::os::Directory> directoryScope(directory);
    ScopedRootSite root("");
    VFileTask task(39);
    EXPECT_EQ(task.IsLDAPObjectExist("Sales", 1), 0);
    EXPECT_THAT(directory.CallsStartingWith("Bind"),
                ElementsAre("BindGroup LDAP://CN=Sales, DC=corp, DC=example, DC=com"));
}

TEST(VFileTaskDoTask, LdapObjectTestLogsWhenTheDomainBufferCannotBeHad) {
    LogCapture capture;
    vagent::test::FakeComputerNames names;
    vagent::test::FakeCom com;
    vagent::os::ScopedFacility<vagent::os::ComputerNames> namesScope(names);
    vagent::os::ScopedFacility<vagent::os::Com> comScope(com);
    VFileTask task(39);
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(task.IsLDAPObjectExist("jdoe", 0), 0);
    }
    EXPECT_EQ(task.GetErrorCode(), 8u);
    EXPECT_THAT(capture.Texts(), ElementsAre("IsLDAPObject : new [17] bytes failed"));
    EXPECT_TRUE(com.Balanced());
}

TEST(VFileTaskDoTask, ServiceAccountRoundTripsTheStartName) {
    vagent::test::FakeServiceManager services;
    services.services["Spooler"].config.startName = "LocalSystem";
    services.services["Spooler"].config.hasStartName = true;
    vagent::os::ScopedFacility<vagent::os::ServiceManager> scope(services);
    VFileTask task(46);
    const TaskAnswer result = RunFileTask(task, ListBlock({"Spooler"}));
    EXPECT_EQ(result.truth, 1);
    std::string account;
    ASSERT_EQ(DecodeResult(46, result, &account), 1);
    EXPECT_EQ(account, "LocalSystem");
    EXPECT_EQ(services.calls[0], "OpenManager 1");
    EXPECT_EQ(services.calls[1], "OpenNamed Spooler 1");
    EXPECT_EQ(services.openHandles, 0);
}

TEST(VFileTaskDoTask, MissingServiceFailsAndLeavesTheOpenError) {
    vagent::test::FakeServiceManager services;
    vagent::os::ScopedFacility<vagent::os::ServiceManager> scope(services);
    VFileTask task(46);
    const TaskAnswer result = RunFileTask(task, ListBlock({"NoSuchService"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
    EXPECT_EQ(task.GetErrorCode(), 1060u);
    EXPECT_EQ(services.openHandles, 0);
}

TEST(VFileTaskDoTask, ServiceWithoutAStartNameFailsWithoutABlock) {
    vagent::test::FakeServiceManager services;
    services.services["Bare"];
    vagent::os::ScopedFacility<vagent::os::ServiceManager> scope(services);
    VFileTask task(46);
    const TaskAnswer result = RunFileTask(task, ListBlock({"Bare"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
}

TEST(VFileTaskDoTask, ServiceChangeSetsAccountPasswordAndTheKeyNameAsDisplayName) {
    vagent::test::FakeServiceManager services;
    services.services["Agent"].config.displayName = "The Agent";
    vagent::os::ScopedFacility<vagent::os::ServiceManager> scope(services);
    VFileTask task(47);
    const TaskAnswer result = RunFileTask(task, ListBlock({"Agent", ".\\svc", "secret"}));
    EXPECT_EQ(result.truth, 1);
    EXPECT_EQ(result.block, kAckOne);
    EXPECT_EQ(services.services["Agent"].config.startName, ".\\svc");
    EXPECT_EQ(services.services["Agent"].password, "secret");
    EXPECT_EQ(services.services["Agent"].config.displayName, "Agent");
    EXPECT_THAT(services.calls, ElementsAre("OpenManager 2", "OpenNamed Agent 2",
                                            "ChangeAccount .\\svc secret Agent", "Close", "Close"));
    int arrived = 0;
    EXPECT_EQ(DecodeResult(47, result, &arrived), 1);
    EXPECT_EQ(arrived, 1);
}

TEST(VFileTaskDoTask, FailedServiceChangeStillArrivesAsAWellFormedAcknowledgement) {
    vagent::test::FakeServiceManager services;
    services.services["Agent"];
    services.changeStatus = 5;
    vagent::os::ScopedFacility<vagent::os::ServiceManager> scope(services);
    VFileTask task(47);
    const TaskAnswer result = RunFileTask(task, ListBlock({"Agent", "a", "p"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_EQ(result.block, kAckZero);
    EXPECT_EQ(task.GetErrorCode(), 5u);
    int arrived = 0;
    EXPECT_EQ(DecodeResult(47, result, &arrived), 1);
    EXPECT_EQ(arrived, 1);
}

TEST(VFileTaskDoTask, ServiceChangeWithFewerThanThreeItemsAnswersZero) {
    vagent::test::FakeServiceManager services;
    vagent::os::ScopedFacility<vagent::os::ServiceManager> scope(services);
    VFileTask task(47);
    const TaskAnswer result = RunFileTask(task, ListBlock({"Agent", "a"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_EQ(result.block, kAckZero);
    EXPECT_THAT(services.calls, IsEmpty());
}

TEST(VFileTaskAnswer2Struct, UnknownIdLogsItsNumber) {
    LogCapture capture;
    TaskAnswer result;
    result.block = ListBlock({"x"});
    int output = 0;
    EXPECT_EQ(DecodeResult(32, result, &output), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Struct : Unknow Task Id = [32]"));
}

TEST(VFileTaskAnswer2Struct, MissingPayloadOrOutputIsAParameterError) {
    LogCapture capture;
    VFileTask client(34);
    const std::uint8_t payload[4] = {0, 0, 0, 0};
    std::string output;
    EXPECT_EQ(client.Result2Struct(nullptr, 4, &output), 0);
    EXPECT_EQ(client.Result2Struct(payload, 0, &output), 0);
    EXPECT_EQ(client.Result2Struct(payload, 4, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("Result2Struct : Parameter Error", "Result2Struct : Parameter Error",
                            "Result2Struct : Parameter Error"));
}

TEST(VFileTaskAnswer2Struct, TransferAcknowledgementsYieldTheValueCarried) {
    TaskAnswer result;
    result.block = Bytes{0, 0, 0, 4, 0, 0, 0, 7};
    int carried = 0;
    EXPECT_EQ(DecodeResult(44, result, &carried), 1);
    EXPECT_EQ(carried, 7);
    carried = 0;
    EXPECT_EQ(DecodeResult(45, result, &carried), 1);
    EXPECT_EQ(carried, 7);
}

TEST(VFileTaskAnswer2Struct, HostVersionOfOneEmptyItemIsZero) {
    TaskAnswer result;
    result.block = Bytes{0, 0, 0, 4, 0, 0, 0, 0};
    int code = 5;
    EXPECT_EQ(DecodeResult(35, result, &code), 1);
    EXPECT_EQ(code, 0);
}

// A payload holds at least one item or is malformed, so "no items" is an
// empty payload, which never reaches the decoder.
TEST(VFileTaskAnswer2Struct, HostVersionWithoutItemsIsRefusedAndLeavesTheOutput) {
    LogCapture capture;
    TaskAnswer result;
    result.block = Bytes{0, 0, 0, 0};
    int code = 5;
    EXPECT_EQ(DecodeResult(35, result, &code), 0);
    EXPECT_EQ(code, 5);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Struct : Parameter Error"));
}
