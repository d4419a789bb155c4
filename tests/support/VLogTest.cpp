#include "vagent/VLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/FakeHostFacts.h"
#include "fakes/FaultyFileSystem.h"
#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TempDir.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"

using ::testing::ElementsAre;
using vagent::test::FakeHostFacts;
using vagent::test::FaultyFileSystem;
using vagent::test::ParseLogLines;
using vagent::test::ReadTextFile;
using vagent::test::ReadWholeFile;
using vagent::test::TempDir;
using vagent::test::WriteWholeFile;

namespace {

// A log whose executable lives in a fresh directory, with a fixed clock and a
// file system that records its calls.
class VLogInDirectory : public ::testing::Test {
protected:
    VLogInDirectory() { host_.executablePath = dir_.LibraryPath() + "host.exe"; }

    // The log is written in text mode: read it as text.
    std::string File(int number) const {
        return ReadTextFile(dir_ / ("AgentLog" + std::to_string(number) + ".log"));
    }
    bool Exists(int number) const {
        return std::filesystem::exists(dir_ / ("AgentLog" + std::to_string(number) + ".log"));
    }
    std::string LibraryFile(int number) const {
        return dir_.LibraryPath() + "AgentLog" + std::to_string(number) + ".log";
    }
    int Opens() const {
        int opens = 0;
        for (const std::string& call : files_.calls) {
            opens += call.rfind("Open ", 0) == 0 ? 1 : 0;
        }
        return opens;
    }

    TempDir dir_;
    FakeHostFacts host_;
    FaultyFileSystem files_;
    vagent::os::ScopedFacility<vagent::os::HostFacts> hostScope_{host_};
    vagent::os::ScopedFacility<vagent::os::FileSystem> filesScope_{files_};
};

std::vector<std::string> Texts(const std::string& contents) {
    std::vector<std::string> texts;
    for (const auto& line : ParseLogLines(contents)) {
        texts.push_back(line.text);
    }
    return texts;
}

}  // namespace

TEST_F(VLogInDirectory, ConstructorSetsTheDefaults) {
    VLog log;
    EXPECT_EQ(log.GetLogDir(), dir_.LibraryPath());
    EXPECT_EQ(log.GetLogName(), "AgentLog");
    EXPECT_EQ(log.GetFileCount(), 5);
    EXPECT_EQ(log.GetMaxFileSize(), 0x500000);
    EXPECT_EQ(log.GetLogLevel(), 6);
    EXPECT_EQ(log.GetMsgLevel(), 6);
    EXPECT_EQ(log.GetMsgType(), 2);
    EXPECT_EQ(log.GetPara1(), 0);
    EXPECT_EQ(log.GetPara2(), 0);
    EXPECT_EQ(log.GetPara3(), 0);
    EXPECT_FALSE(log.IsOpen());
    EXPECT_TRUE(files_.calls.empty());
}

TEST_F(VLogInDirectory, NullNameBehavesAsTheDefaultConstructor) {
    VLog named(nullptr);
    VLog plain;
    EXPECT_EQ(named.GetLogName(), plain.GetLogName());
    EXPECT_EQ(named.GetLogDir(), plain.GetLogDir());
    EXPECT_EQ(named.GetFileCount(), plain.GetFileCount());
    EXPECT_EQ(named.GetMaxFileSize(), plain.GetMaxFileSize());
    EXPECT_EQ(named.GetHostAddress(), plain.GetHostAddress());
}

TEST_F(VLogInDirectory, NamedLogWritesUnderItsName) {
    VLog log("Service");
    EXPECT_EQ(log.WriteLog("up"), 1);
    log.CloseLog();
    EXPECT_THAT(Texts(ReadWholeFile(dir_ / "Service0.log")), ElementsAre("up"));
}

TEST_F(VLogInDirectory, ExecutablePathWithoutBackslashStaysWhole) {
    host_.executablePath = "host.exe";
    VLog log;
    EXPECT_EQ(log.GetLogDir(), "host.exe");
}

TEST_F(VLogInDirectory, DirectoryIsTakenFromAtMost256Characters) {
    host_.executablePath = "C:\\" + std::string(300, 'd') + "\\host.exe";
    VLog log;
    EXPECT_EQ(log.GetLogDir(), "C:\\");
}

TEST_F(VLogInDirectory, HostAddressIsTheFirstThatIsNotLoopback) {
    host_.adapters = {"127.0.0.1", "10.1.2.3", "10.9.9.9"};
    VLog log;
    EXPECT_EQ(log.GetHostAddress(), "10.1.2.3");
}

TEST_F(VLogInDirectory, HostAddressStaysLoopbackWhenTheAdaptersAreUnknown) {
    host_.adapters = {"10.1.2.3"};
    host_.adapterStatus = 111;
    VLog failed;
    EXPECT_EQ(failed.GetHostAddress(), "127.0.0.1");
    host_.adapterStatus = 0;
    host_.adapters = {"127.0.0.1"};
    VLog loopbackOnly;
    EXPECT_EQ(loopbackOnly.GetHostAddress(), "127.0.0.1");
    host_.adapters = {};
    VLog none;
    EXPECT_EQ(none.GetHostAddress(), "127.0.0.1");
}

TEST_F(VLogInDirectory, SetLogParaWithZerosChangesNothing) {
    VLog log;
    log.SetLogPara(1, 2, 3);
    log.SetLogPara(0, 0, 0);
    EXPECT_EQ(log.GetPara1(), 1);
    EXPECT_EQ(log.GetPara2(), 2);
    EXPECT_EQ(log.GetPara3(), 3);
}

TEST_F(VLogInDirectory, SetLogParaStoresOnlyTheNonZeroArguments) {
    VLog log;
    log.SetLogPara(7, 0, 9);
    EXPECT_EQ(log.GetPara1(), 7);
    EXPECT_EQ(log.GetPara2(), 0);
    EXPECT_EQ(log.GetPara3(), 9);
}

TEST_F(VLogInDirectory, SettersReturnThePreviousValue) {
    VLog log;
    EXPECT_EQ(log.SetLogLevel(3), 6);
    EXPECT_EQ(log.SetLogLevel(4), 3);
    EXPECT_EQ(log.SetMsgLevel(1), 6);
    EXPECT_EQ(log.SetMsgLevel(2), 1);
    EXPECT_EQ(log.SetMsgType(9), 2);
    EXPECT_EQ(log.SetMsgType(8), 9);
}

TEST_F(VLogInDirectory, SetLogInfoKeepsOnly256CharactersOfTheName) {
    VLog log;
    log.SetLogInfo(std::string(300, 'n').c_str(), nullptr, nullptr);
    EXPECT_EQ(log.GetLogName(), std::string(256, 'n'));
    log.SetLogInfo(std::string(256, 'm').c_str(), nullptr, nullptr);
    EXPECT_EQ(log.GetLogName(), std::string(256, 'm'));
}

TEST_F(VLogInDirectory, SetLogInfoChangesOnlyWhatIsGiven) {
    VLog log;
    const std::int32_t count = 3;
    const std::int32_t size = 100;
    log.SetLogInfo(nullptr, &count, nullptr);
    EXPECT_EQ(log.GetLogName(), "AgentLog");
    EXPECT_EQ(log.GetFileCount(), 3);
    EXPECT_EQ(log.GetMaxFileSize(), 0x500000);
    log.SetLogInfo("Other", nullptr, &size);
    EXPECT_EQ(log.GetLogName(), "Other");
    EXPECT_EQ(log.GetFileCount(), 3);
    EXPECT_EQ(log.GetMaxFileSize(), 100);
}

TEST_F(VLogInDirectory, NewNameTakesEffectAtTheNextOpen) {
    VLog log;
    log.WriteLog("first");
    log.SetLogInfo("Renamed", nullptr, nullptr);
    log.WriteLog("second");
    ASSERT_EQ(log.OpenLog(), 1);
    log.WriteLog("third");
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("first", "second"));
    EXPECT_THAT(Texts(ReadWholeFile(dir_ / "Renamed0.log")), ElementsAre("third"));
}

TEST_F(VLogInDirectory, WriteLogWritesOneStampedLine) {
    VLog log;
    EXPECT_EQ(log.WriteLog("hello world"), 1);
    log.CloseLog();
    EXPECT_EQ(File(0), "2026/11/21 09:05:07.042 | 6 | 2 | hello world\n");
}

TEST_F(VLogInDirectory, WriteLogPutsLevelAndTypeInTheNumberColumns) {
    VLog log;
    log.SetMsgLevel(4);
    log.SetMsgType(13);
    log.WriteLog("x");
    log.CloseLog();
    EXPECT_EQ(File(0), "2026/11/21 09:05:07.042 | 4 | 13 | x\n");
}

TEST_F(VLogInDirectory, MessageAboveTheLogLevelIsDroppedAndStillSucceeds) {
    VLog log;
    log.SetMsgLevel(7);
    EXPECT_EQ(log.WriteLog("dropped"), 1);
    EXPECT_EQ(log.WriteLog(reinterpret_cast<const std::uint8_t*>("raw"), 3), 1);
    EXPECT_FALSE(Exists(0));
    EXPECT_TRUE(files_.calls.empty());
}

TEST_F(VLogInDirectory, MessageAtTheLogLevelIsWritten) {
    VLog log;
    log.SetMsgLevel(6);
    EXPECT_EQ(log.WriteLog("kept"), 1);
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("kept"));
}

TEST_F(VLogInDirectory, LevelComparisonIsSigned) {
    VLog log;
    log.SetLogLevel(-1);
    log.SetMsgLevel(-2);
    EXPECT_EQ(log.WriteLog("negative levels"), 1);
    log.SetMsgLevel(0);
    EXPECT_EQ(log.WriteLog("dropped"), 1);
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("negative levels"));
}

TEST_F(VLogInDirectory, RawWriteCopiesTheBytesAsTheyAre) {
    VLog log;
    const std::uint8_t bytes[] = {'a', 0, 'b', '|', 0xFF};
    EXPECT_EQ(log.WriteLog(bytes, 5), 1);
    log.CloseLog();
    EXPECT_EQ(File(0), std::string("2026/11/21 09:05:07.042 | 6 | 2 | a\0b|\xFF\n", 40));
}

TEST_F(VLogInDirectory, WritesAppendToAnExistingFile) {
    WriteWholeFile(dir_ / "AgentLog0.log", "earlier\n");
    VLog log;
    log.WriteLog("later");
    log.CloseLog();
    EXPECT_EQ(File(0), "earlier\n2026/11/21 09:05:07.042 | 6 | 2 | later\n");
}

TEST_F(VLogInDirectory, OpenLogOpensTheCurrentFileForAppending) {
    VLog log;
    EXPECT_EQ(log.OpenLog(), 1);
    EXPECT_TRUE(log.IsOpen());
    EXPECT_THAT(files_.calls, ElementsAre("Open " + LibraryFile(0) + " a+t"));
    log.CloseLog();
    EXPECT_FALSE(log.IsOpen());
}

TEST_F(VLogInDirectory, WriteFailsWhenTheFileCannotBeOpenedAndRetriesNextTime) {
    files_.failOpen = true;
    VLog log;
    EXPECT_EQ(log.OpenLog(), 0);
    EXPECT_EQ(log.WriteLog("lost"), 0);
    EXPECT_EQ(Opens(), 2);
    files_.failOpen = false;
    EXPECT_EQ(log.WriteLog("found"), 1);
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("found"));
}

TEST_F(VLogInDirectory, FailedWriteClosesTheFileAndStillSucceeds) {
    WriteWholeFile(dir_ / "AgentLog0.log", "");
    files_.openReadOnly = true;
    VLog log;
    EXPECT_EQ(log.WriteLog("refused"), 1);
    EXPECT_FALSE(log.IsOpen());
    files_.openReadOnly = false;
    EXPECT_EQ(log.WriteLog("reopened"), 1);
    EXPECT_EQ(Opens(), 2);
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("reopened"));
}

TEST_F(VLogInDirectory, FileAtTheSizeLimitIsShiftedBeforeTheNextWrite) {
    const std::string full(5242880, 'z');
    WriteWholeFile(dir_ / "AgentLog0.log", full);
    for (int number = 1; number <= 4; ++number) {
        WriteWholeFile(dir_ / ("AgentLog" + std::to_string(number) + ".log"),
                       "file " + std::to_string(number));
    }
    VLog log;
    EXPECT_EQ(log.WriteLog("fresh"), 1);
    log.CloseLog();
    EXPECT_EQ(File(4), "file 3");
    EXPECT_EQ(File(3), "file 2");
    EXPECT_EQ(File(2), "file 1");
    EXPECT_EQ(File(1), full);
    EXPECT_THAT(Texts(File(0)), ElementsAre("fresh"));
    EXPECT_FALSE(Exists(5));
    EXPECT_THAT(files_.calls,
                ElementsAre("Exists " + LibraryFile(0), "Size " + LibraryFile(0),
                            "Copy " + LibraryFile(3) + " -> " + LibraryFile(4),
                            "Copy " + LibraryFile(2) + " -> " + LibraryFile(3),
                            "Copy " + LibraryFile(1) + " -> " + LibraryFile(2),
                            "Copy " + LibraryFile(0) + " -> " + LibraryFile(1),
                            "Remove " + LibraryFile(0), "Open " + LibraryFile(0) + " a+t"));
}

TEST_F(VLogInDirectory, FileBelowTheSizeLimitIsNotShifted) {
    WriteWholeFile(dir_ / "AgentLog0.log", std::string(5242879, 'z'));
    VLog log;
    EXPECT_EQ(log.BackupCheck(), 1);
    EXPECT_FALSE(Exists(1));
    EXPECT_EQ(std::filesystem::file_size(dir_ / "AgentLog0.log"), 5242879u);
}

TEST_F(VLogInDirectory, ShiftingTheOpenFileClosesItFirst) {
    const std::int32_t limit = 10;
    VLog log;
    log.SetLogInfo(nullptr, nullptr, &limit);
    log.WriteLog("one line longer than ten bytes");
    EXPECT_TRUE(log.IsOpen());
    EXPECT_EQ(log.BackupCheck(), 1);
    EXPECT_FALSE(log.IsOpen());
    EXPECT_FALSE(Exists(0));
    EXPECT_THAT(Texts(File(1)), ElementsAre("one line longer than ten bytes"));
}

TEST_F(VLogInDirectory, RotationKeepsFileCountFiles) {
    const std::int32_t count = 3;
    const std::int32_t limit = 1;
    VLog log;
    log.SetLogInfo(nullptr, &count, &limit);
    for (int i = 0; i < 5; ++i) {
        log.WriteLog("line " + std::to_string(i));
    }
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("line 4"));
    EXPECT_THAT(Texts(File(1)), ElementsAre("line 3"));
    EXPECT_THAT(Texts(File(2)), ElementsAre("line 2"));
    EXPECT_FALSE(Exists(3));
}

TEST_F(VLogInDirectory, WithOneFileTheLogIsNeverShiftedAndKeepsGrowing) {
    const std::int32_t count = 1;
    const std::int32_t limit = 1;
    VLog log;
    log.SetLogInfo(nullptr, &count, &limit);
    log.WriteLog("a");
    log.WriteLog("b");
    log.WriteLog("c");
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("a", "b", "c"));
    EXPECT_FALSE(Exists(1));
    // Past the limit the file is closed and reopened for every line.
    EXPECT_EQ(Opens(), 3);
}

TEST_F(VLogInDirectory, BackupCheckWithoutACurrentFileSucceeds) {
    VLog log;
    EXPECT_EQ(log.BackupCheck(), 1);
    EXPECT_THAT(files_.calls, ElementsAre("Exists " + LibraryFile(0)));
}

TEST_F(VLogInDirectory, FailedStatusQueryFailsTheCheckButNotTheWrite) {
    WriteWholeFile(dir_ / "AgentLog0.log", "earlier\n");
    files_.sizeStatus = 5;
    const std::int32_t limit = 1;
    VLog log;
    log.SetLogInfo(nullptr, nullptr, &limit);
    EXPECT_EQ(log.BackupCheck(), 0);
    EXPECT_EQ(log.WriteLog("still written"), 1);
    log.CloseLog();
    EXPECT_FALSE(Exists(1));
    EXPECT_THAT(Texts(File(0)), ElementsAre("earlier", "still written"));
}

TEST_F(VLogInDirectory, FailedCopiesAndDeletesDoNotStopTheRotation) {
    WriteWholeFile(dir_ / "AgentLog0.log", std::string(5242880, 'z'));
    files_.copyStatus = 5;
    files_.removeStatus = 5;
    VLog log;
    EXPECT_EQ(log.BackupCheck(), 1);
    EXPECT_EQ(files_.calls.size(), 2u + 4u + 1u);
}

TEST_F(VLogInDirectory, LogMessageFormatsPrintsAndWrites) {
    VLog log;
    testing::internal::CaptureStdout();
    EXPECT_EQ(log.LogMessage("%s has %d users", "host", 3), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "host has 3 users\n");
    log.CloseLog();
    EXPECT_THAT(Texts(File(0)), ElementsAre("host has 3 users"));
}

TEST_F(VLogInDirectory, LogMessageWritesNothingWhenItsBufferCannotBeAllocated) {
    VLog log;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(log.LogMessage("%s", "lost"), 0);
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_FALSE(Exists(0));
}

TEST_F(VLogInDirectory, CopiesTakeEverySettingButOpenTheirOwnStream) {
    VLog original;
    original.SetLogPara(1, 2, 3);
    original.SetMsgType(7);
    original.WriteLog("from the original");
    VLog copy(original);
    EXPECT_FALSE(copy.IsOpen());
    EXPECT_EQ(copy.GetLogDir(), original.GetLogDir());
    EXPECT_EQ(copy.GetPara1(), 1);
    EXPECT_EQ(copy.GetPara2(), 2);
    EXPECT_EQ(copy.GetPara3(), 3);
    EXPECT_EQ(copy.GetMsgType(), 7);
    EXPECT_EQ(copy.GetHostAddress(), original.GetHostAddress());
    copy.WriteLog("from the copy");
    VLog assigned("Other");
    assigned.WriteLog("before assignment");
    assigned = original;
    EXPECT_FALSE(assigned.IsOpen());
    EXPECT_EQ(assigned.GetLogName(), "AgentLog");
    assigned.WriteLog("from the assigned");
    original.CloseLog();
    copy.CloseLog();
    assigned.CloseLog();
    EXPECT_THAT(Texts(File(0)),
                ElementsAre("from the original", "from the copy", "from the assigned"));
}
