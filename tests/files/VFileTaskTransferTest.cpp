#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "fakes/FakeWindowMessages.h"
#include "fakes/FaultyFileSystem.h"
#include "files/FileTaskHarness.h"
#include "files/Loopback.h"
#include "helpers/LogCapture.h"
#include "helpers/TempDir.h"
#include "os/FileSystem.h"
#include "os/Sockets.h"
#include "os/WindowMessages.h"
#include "task/ByteOrder.h"
#include "vagent/VFileTask.h"

using vagent::os::SocketHandle;
using vagent::test::ListBlock;
using vagent::test::LoopbackListener;
using vagent::test::LoopbackPair;
using vagent::test::ReadWholeFile;
using vagent::test::RunFileTask;
using vagent::test::TaskAnswer;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kFilesCopy = 44;
constexpr std::uint32_t kUploadFiles = 45;

bool ReceiveCount(SocketHandle socket, std::uint8_t* buffer, std::uint32_t count) {
    std::uint32_t received = 0;
    while (received < count) {
        int got = 0;
        if (vagent::os::Installed<vagent::os::Sockets>().Receive(
                socket, buffer + received, static_cast<int>(count - received), 0, got) != 0 ||
            got <= 0) {
            return false;
        }
        received += static_cast<std::uint32_t>(got);
    }
    return true;
}

std::uint32_t ReceiveBigEndian(SocketHandle socket) {
    std::uint8_t bytes[4] = {};
    EXPECT_TRUE(ReceiveCount(socket, bytes, 4));
    return vagent::ReadBigEndian32(bytes);
}

// What a relay host received: the request frame, field by field.
struct ReceivedRequest {
    std::uint32_t taskId = 0;
    std::uint32_t workEnv = 0;
    std::string rootSite;
    Bytes block;
};

ReceivedRequest ReadRequestFrame(SocketHandle socket) {
    ReceivedRequest request;
    request.taskId = ReceiveBigEndian(socket);
    request.workEnv = ReceiveBigEndian(socket);
    request.rootSite.resize(ReceiveBigEndian(socket));
    ReceiveCount(socket, reinterpret_cast<std::uint8_t*>(&request.rootSite[0]),
                 static_cast<std::uint32_t>(request.rootSite.size()));
    request.block.resize(ReceiveBigEndian(socket));
    ReceiveCount(socket, request.block.data(), static_cast<std::uint32_t>(request.block.size()));
    return request;
}

// Runs the task on its own thread against the connection's service side,
// as the agent service runs it.
std::thread ServeOnThread(std::uint32_t taskId, Bytes block, SocketHandle connection,
                          TaskAnswer& served) {
    return std::thread([taskId, block = std::move(block), connection, &served] {
        VFileTask task(taskId);
        served = RunFileTask(task, block, connection);
    });
}

}  // namespace

TEST(FilesCopyTask, StreamsTheTreeToTheRequesterAndEndsWithStatusZero) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "a.txt", "alpha");
    std::filesystem::create_directory(source / "sub");
    WriteWholeFile(source / "sub" / "b.txt", "beta");
    const std::string destination = ToLibraryPath(target / "copy");
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service = ServeOnThread(
        kFilesCopy, ListBlock({"", "0", ToLibraryPath(source.Path()), destination, "1", "0"}),
        pair.Server(), served);
    VFileTask requester(kFilesCopy);
    EXPECT_EQ(requester.ReceiveTree(pair.Client(), nullptr), 1);
    service.join();
    EXPECT_EQ(served.truth, 1);
    EXPECT_TRUE(served.block.empty());
    EXPECT_EQ(ReadWholeFile(target / "copy" / "a.txt"), "alpha");
    EXPECT_EQ(ReadWholeFile(target / "copy" / "sub" / "b.txt"), "beta");
}

TEST(FilesCopyTask, SecondFlagCopiesOnThisHostAndSendsOnlyTheEndFrame) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "a.txt", "alpha");
    std::filesystem::create_directory(source / "sub");
    WriteWholeFile(source / "sub" / "b.txt", "beta");
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service = ServeOnThread(kFilesCopy,
                                        ListBlock({"", "0", ToLibraryPath(source.Path()),
                                                   ToLibraryPath(target / "local"), "0", "1"}),
                                        pair.Server(), served);
    VFileTask requester(kFilesCopy);
    FileFrameHeader header;
    EXPECT_EQ(requester.ReceiveFrame(pair.Client(), header, nullptr), 2);
    service.join();
    EXPECT_EQ(served.truth, 1);
    EXPECT_EQ(ReadWholeFile(target / "local" / "a.txt"), "alpha");
    EXPECT_FALSE(std::filesystem::exists(target / "local" / "sub"));
}

TEST(FilesCopyTask, FailureTravelsToTheRequesterInTheEndFrame) {
    TempDir source;
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service = ServeOnThread(
        kFilesCopy, ListBlock({"", "0", ToLibraryPath(source / "missing"), "C:\\x", "1", "0"}),
        pair.Server(), served);
    VFileTask requester(kFilesCopy);
    EXPECT_EQ(requester.ReceiveTree(pair.Client(), nullptr), 0);
    service.join();
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(requester.GetErrorCode(), 2u);
}

TEST(FilesCopyTask, UnreadableRequestEndsTheExchangeWithInvalidParameter) {
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service =
        ServeOnThread(kFilesCopy, ListBlock({"", "0", "C:\\a"}), pair.Server(), served);
    VFileTask requester(kFilesCopy);
    EXPECT_EQ(requester.ReceiveTree(pair.Client(), nullptr), 0);
    service.join();
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(requester.GetErrorCode(), 0xE6000001u);
}

TEST(FilesCopyTask, RelayHostIsAskedForTheFilesWhichAreWrittenHere) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "r.txt", "relayed");
    std::filesystem::create_directory(source / "skip");
    WriteWholeFile(source / "skip" / "s.txt", "skipped");
    LoopbackListener relayListener;
    ReceivedRequest relayed;
    TaskAnswer relayServed;
    std::thread relayHost([&] {
        const SocketHandle connection = relayListener.Accept();
        relayed = ReadRequestFrame(connection);
        VFileTask task(relayed.taskId);
        relayServed = RunFileTask(task, relayed.block, connection);
        vagent::os::Installed<vagent::os::Sockets>().Close(connection);
    });
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service([&] {
        VFileTask task(kFilesCopy);
        task.SetWorkEnv(3, nullptr);
        served = RunFileTask(
            task,
            ListBlock({"127.0.0.1", std::to_string(relayListener.Port()),
                       ToLibraryPath(source.Path()), ToLibraryPath(target / "here"), "0", "1"}),
            pair.Server());
    });
    VFileTask requester(kFilesCopy);
    FileFrameHeader header;
    EXPECT_EQ(requester.ReceiveFrame(pair.Client(), header, nullptr), 2);
    service.join();
    relayHost.join();
    EXPECT_EQ(served.truth, 1);
    EXPECT_EQ(relayServed.truth, 1);
    EXPECT_EQ(relayed.taskId, kFilesCopy);
    EXPECT_EQ(relayed.workEnv, 3u);
    EXPECT_EQ(relayed.block, ListBlock({"", "0", ToLibraryPath(source.Path()),
                                        ToLibraryPath(target / "here"), "0", "0"}));
    EXPECT_EQ(ReadWholeFile(target / "here" / "r.txt"), "relayed");
    EXPECT_FALSE(std::filesystem::exists(target / "here" / "skip"));
}

TEST(FilesCopyTask, UnreachableRelayHostFailsWithTheConnectStatus) {
    vagent::test::LogCapture capture;
    LoopbackPair pair;
    std::uint16_t closedPort = 0;
    {
        LoopbackListener listener;
        closedPort = listener.Port();
    }
    TaskAnswer served;
    std::uint32_t serviceError = 0;
    std::thread service([&] {
        VFileTask task(kFilesCopy);
        served = RunFileTask(
            task, ListBlock({"127.0.0.1", std::to_string(closedPort), "C:\\a", "C:\\b", "1", "0"}),
            pair.Server());
        serviceError = task.GetErrorCode();
    });
    VFileTask requester(kFilesCopy);
    EXPECT_EQ(requester.ReceiveTree(pair.Client(), nullptr), 0);
    service.join();
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(serviceError, 10061u);
    EXPECT_EQ(requester.GetErrorCode(), 10061u);
    EXPECT_THAT(capture.Texts(), ::testing::ElementsAre("connect failed", "ConnectServer failed"));
}

TEST(UploadFilesTask, ReceivesTheTreeAnswersWithAnEndFrameAndNotifiesTheWindow) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "up.txt", "uploaded");
    vagent::test::FakeWindowMessages windows;
    vagent::os::ScopedFacility<vagent::os::WindowMessages> scope(windows);
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service = ServeOnThread(kUploadFiles, ListBlock({"4660"}), pair.Server(), served);
    VFileTask uploader(kUploadFiles);
    EXPECT_EQ(uploader.SendTree(pair.Client(), ToLibraryPath(source.Path()),
                                ToLibraryPath(target / "in"), 1, nullptr),
              1);
    EXPECT_EQ(uploader.SendEndFrame(pair.Client(), 0, nullptr), 1);
    FileFrameHeader header;
    EXPECT_EQ(uploader.ReceiveFrame(pair.Client(), header, nullptr), 2);
    service.join();
    EXPECT_EQ(served.truth, 1);
    EXPECT_TRUE(served.block.empty());
    EXPECT_EQ(ReadWholeFile(target / "in" / "up.txt"), "uploaded");
    ASSERT_EQ(windows.posted.size(), 1u);
    EXPECT_EQ(windows.posted[0].window, 4660u);
    EXPECT_EQ(windows.posted[0].message, 273u);
    EXPECT_EQ(windows.posted[0].wParam, 0x800Fu);
    EXPECT_EQ(windows.posted[0].lParam, 0);
}

TEST(UploadFilesTask, WithoutAWindowNothingIsPostedAndAFailedUploadAnswersItsStatus) {
    vagent::test::FakeWindowMessages windows;
    vagent::os::ScopedFacility<vagent::os::WindowMessages> scope(windows);
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service = ServeOnThread(kUploadFiles, Bytes{0, 0, 0, 0}, pair.Server(), served);
    VFileTask uploader(kUploadFiles);
    EXPECT_EQ(uploader.SendEndFrame(pair.Client(), 5, nullptr), 1);
    FileFrameHeader header;
    EXPECT_EQ(uploader.ReceiveFrame(pair.Client(), header, nullptr), 0);
    service.join();
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(uploader.GetErrorCode(), 5u);
    EXPECT_TRUE(windows.posted.empty());
}

TEST(FilesCopyTask, TreeFailingPartWayDeliversTheWholeFilesBeforeTheFailureAndItsStatus) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "a.bin", std::string(300000, 'a'));
    WriteWholeFile(source / "b.bin", std::string(300000, 'b'));
    vagent::test::FaultyFileSystem files;
    files.attributesExCallsBeforeFailure = 1;
    files.attributesExStatus = 5;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service = ServeOnThread(kFilesCopy,
                                        ListBlock({"", "0", ToLibraryPath(source.Path()),
                                                   ToLibraryPath(target / "copy"), "1", "0"}),
                                        pair.Server(), served);
    VFileTask requester(kFilesCopy);
    EXPECT_EQ(requester.ReceiveTree(pair.Client(), nullptr), 0);
    service.join();
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(requester.GetErrorCode(), 5u);
    int whole = 0;
    for (const char* name : {"a.bin", "b.bin"}) {
        if (std::filesystem::exists(target / "copy" / name)) {
            EXPECT_EQ(ReadWholeFile(target / "copy" / name), ReadWholeFile(source / name));
            ++whole;
        }
    }
    EXPECT_EQ(whole, 1);
}

TEST(FilesCopyTask, TruthIsTheWorksEvenWhenTheEndFrameCannotBeSent) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "a.txt", "alpha");
    VFileTask task(kFilesCopy);
    const TaskAnswer served = RunFileTask(task,
                                          ListBlock({"", "0", ToLibraryPath(source.Path()),
                                                     ToLibraryPath(target / "local"), "0", "1"}),
                                          vagent::os::kInvalidSocket);
    EXPECT_EQ(served.truth, 1);
    EXPECT_EQ(ReadWholeFile(target / "local" / "a.txt"), "alpha");
}

class FilesCopyThatRunsOutOfMemory : public ::testing::TestWithParam<const char*> {};

TEST_P(FilesCopyThatRunsOutOfMemory, EndsWithStatus8AndClosesItsDirectorySearch) {
    TempDir source;
    TempDir target;
    WriteWholeFile(source / "a.txt", "alpha");
    WriteWholeFile(source / "b.txt", "beta");
    vagent::test::FaultyFileSystem files;
    files.throwOnFindNext = true;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    LoopbackPair pair;
    TaskAnswer served;
    std::uint32_t serviceError = 0;
    std::thread service([&] {
        VFileTask task(kFilesCopy);
        served = RunFileTask(task,
                             ListBlock({"", "0", ToLibraryPath(source.Path()),
                                        ToLibraryPath(target / "copy"), "1", GetParam()}),
                             pair.Server());
        serviceError = task.GetErrorCode();
    });
    FileFrameHeader header;
    VFileTask requester(kFilesCopy);
    int kind = 1;
    for (int frames = 0; kind == 1 && frames < 10; ++frames) {
        kind = requester.ReceiveFrame(pair.Client(), header, nullptr);
        if (kind == 1 && (header.attributes & 0x10) == 0) {
            std::vector<std::uint8_t> contents(header.size);
            ReceiveCount(pair.Client(), contents.data(), header.size);
        }
    }
    service.join();
    EXPECT_EQ(kind, 0);
    EXPECT_EQ(requester.GetErrorCode(), 8u);
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(serviceError, 8u);
    const auto searches =
        std::count_if(files.calls.begin(), files.calls.end(),
                      [](const std::string& call) { return call.rfind("FindFirst", 0) == 0; });
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(std::count(files.calls.begin(), files.calls.end(), "FindClose"), searches);
}

INSTANTIATE_TEST_SUITE_P(StreamedOrCopiedHere, FilesCopyThatRunsOutOfMemory,
                         ::testing::Values("0", "1"));
