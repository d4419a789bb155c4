#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "fakes/FakeClock.h"
#include "fakes/FaultyFileSystem.h"
#include "files/Loopback.h"
#include "files/TransferWire.h"
#include "helpers/TempDir.h"
#include "os/Clock.h"
#include "os/FileSystem.h"
#include "os/Sockets.h"
#include "vagent/VFileTask.h"

using vagent::os::ScopedFacility;
using vagent::os::SocketHandle;
using vagent::test::Bytes;
using vagent::test::FakeClock;
using vagent::test::FaultyFileSystem;
using vagent::test::Frame;
using vagent::test::LoopbackPair;
using vagent::test::Pattern;
using vagent::test::ReadUntilClosed;
using vagent::test::ReadWholeFile;
using vagent::test::SenderThread;
using vagent::test::SendRaw;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

namespace {

constexpr std::uint32_t kFileTransferTask = 44;
constexpr std::uint32_t kAccessDenied = 5;
constexpr std::uint32_t kHandleEndOfFile = 38;
constexpr std::uint32_t kTimedOut = 10060;

int LetSendThrough(std::uintptr_t, int) {
    return 1;
}

int receivedTotal = 0;

int CountReceived(int count) {
    receivedTotal += count;
    return 0;
}

int beforeReceiveCalls = 0;

int CountAndLetReceive(std::uintptr_t, int*) {
    ++beforeReceiveCalls;
    return 1;
}

FakeClock* fakeClockInUse = nullptr;

// Asks for a retry on every call while a second passes each time; gives up
// on its own after 1,000 calls.
int RetryWhileTimePasses(std::uintptr_t, int*) {
    fakeClockInUse->Advance(1);
    return ++beforeReceiveCalls < 1000 ? 2 : 0;
}

// Lets the frame's length and body through, then refuses every receive
// while a second passes each time.
int RefuseAfterTheFrameWhileTimePasses(std::uintptr_t, int*) {
    if (++beforeReceiveCalls <= 2) {
        return 1;
    }
    fakeClockInUse->Advance(1);
    return 0;
}

// Receives a whole tree from the bytes, sent on their own thread.
int ReceiveTreeFrom(const Bytes& bytes, VFileTask& receiver) {
    LoopbackPair pair;
    std::thread sender([&] {
        SendRaw(pair.Client(), bytes);
        pair.CloseClient();
    });
    const int received = receiver.ReceiveTree(pair.Server(), nullptr);
    sender.join();
    return received;
}

// The wire of a tree walk that fails on the attributes of its second file,
// followed by the end frame that carries the walk's status.
Bytes WireOfAWalkFailingOnTheSecondFile(const std::string& source, const std::string& destination,
                                        HTTP_FUN* hooks, int& walked, std::uint32_t& status) {
    FaultyFileSystem files;
    files.attributesExCallsBeforeFailure = 1;
    files.attributesExStatus = kAccessDenied;
    ScopedFacility<vagent::os::FileSystem> scope(files);
    LoopbackPair pair;
    int ended = 0;
    std::thread sender = SenderThread(pair, ended, [&](VFileTask& task, SocketHandle socket) {
        walked = task.SendTree(socket, source, destination, 1, hooks);
        status = task.GetErrorCode();
        return task.SendEndFrame(socket, status, hooks);
    });
    const Bytes wire = ReadUntilClosed(pair.Server());
    sender.join();
    EXPECT_EQ(ended, 1);
    return wire;
}

}  // namespace

TEST(TransferFailure, TreeFailingPartWaySendsEveryWholeFileBeforeItThenTheStatusHookedOrNot) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "a.bin", Pattern(300000, 1));
    WriteWholeFile(sending / "b.bin", Pattern(300000, 2));
    const std::string destination = ToLibraryPath(receiving / "copy");
    HTTP_FUN hooks{LetSendThrough, nullptr, nullptr};
    Bytes wires[2];
    for (int hooked = 0; hooked < 2; ++hooked) {
        int walked = -1;
        std::uint32_t status = 0;
        wires[hooked] =
            WireOfAWalkFailingOnTheSecondFile(ToLibraryPath(sending.Path()), destination,
                                              hooked != 0 ? &hooks : nullptr, walked, status);
        EXPECT_EQ(walked, 0);
        EXPECT_EQ(status, kAccessDenied);
    }
    EXPECT_EQ(wires[0], wires[1]);
    const Bytes endFrame = Frame(0xFFFFFFFFu, 0, kAccessDenied, "");
    ASSERT_GT(wires[0].size(), 300000u + endFrame.size());
    EXPECT_EQ(Bytes(wires[0].end() - static_cast<long>(endFrame.size()), wires[0].end()), endFrame);

    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(ReceiveTreeFrom(wires[0], receiver), 0);
    EXPECT_EQ(receiver.GetErrorCode(), kAccessDenied);
    int whole = 0;
    for (const char* name : {"a.bin", "b.bin"}) {
        if (std::filesystem::exists(receiving / "copy" / name)) {
            EXPECT_EQ(ReadWholeFile(receiving / "copy" / name), ReadWholeFile(sending / name));
            ++whole;
        }
    }
    EXPECT_EQ(whole, 1);
}

class ShortRead : public ::testing::TestWithParam<bool> {
protected:
    // Sends the file, hooked or not, and gives the sender's error code.
    std::uint32_t SendAndTakeTheErrorCode(FaultyFileSystem& files) {
        ScopedFacility<vagent::os::FileSystem> scope(files);
        HTTP_FUN hooks{LetSendThrough, nullptr, nullptr};
        LoopbackPair pair;
        VFileTask sender(kFileTransferTask);
        std::thread reader([&] { ReadUntilClosed(pair.Server()); });
        EXPECT_EQ(
            sender.SendFile(pair.Client(), source_, "C:\\f.bin", GetParam() ? &hooks : nullptr), 0);
        pair.CloseClient();
        reader.join();
        return sender.GetErrorCode();
    }

    void SetUp() override {
        WriteWholeFile(dir_ / "f.bin", Pattern(5000, 4));
        source_ = ToLibraryPath(dir_ / "f.bin");
    }

    TempDir dir_;
    std::string source_;
};

TEST_P(ShortRead, FileThatEndsEarlyLeavesTheEndOfFileStatus) {
    FaultyFileSystem files;
    files.extraSize = 100;
    EXPECT_EQ(SendAndTakeTheErrorCode(files), kHandleEndOfFile);
}

// C runtimes differ on a read from a stream opened for appending: one flags
// the stream as failed (errno EBADF, which reads as access denied), another
// reports the end of the file. Either way the sender keeps the runtime's
// word, never a network code.
TEST_P(ShortRead, FileThatCannotBeReadLeavesTheRuntimesStatus) {
    FaultyFileSystem files;
    files.unreadableOf = source_;
    std::FILE* probe = std::fopen((dir_ / "f.bin").string().c_str(), "ab");
    ASSERT_NE(probe, nullptr);
    char byte = 0;
    EXPECT_EQ(std::fread(&byte, 1, 1, probe), 0u);
    const bool flagged = std::ferror(probe) != 0;
    std::fclose(probe);
    EXPECT_EQ(SendAndTakeTheErrorCode(files), flagged ? kAccessDenied : kHandleEndOfFile);
}

INSTANTIATE_TEST_SUITE_P(HookedOrNot, ShortRead, ::testing::Bool());

TEST(TransferFailure, AfterReceiveHookAloneSeesEveryByteReceived) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "one.bin", Pattern(2500, 5));
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendTree(socket, ToLibraryPath(sending.Path()), ToLibraryPath(receiving / "in"),
                             1, nullptr) &&
               task.SendEndFrame(socket, 0, nullptr);
    });
    receivedTotal = 0;
    HTTP_FUN hooks{nullptr, nullptr, CountReceived};
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), &hooks), 1);
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(ReadWholeFile(receiving / "in" / "one.bin"), Pattern(2500, 5));
    const std::size_t frames = Frame(0, 0, 0, ToLibraryPath(receiving / "in")).size() +
                               Frame(0, 0, 0, ToLibraryPath(receiving / "in" / "one.bin")).size() +
                               Frame(0, 0, 0, "").size();
    EXPECT_EQ(receivedTotal, static_cast<int>(frames + 2500));
}

TEST(TransferFailure, HookedPiecesOfAFileOnAClosedConnectionStopAtTheFirstFailure) {
    TempDir dir;
    LoopbackPair pair;
    SendRaw(pair.Client(), Frame(200000, 0x20, 1, ToLibraryPath(dir / "huge.bin")));
    pair.CloseClient();
    beforeReceiveCalls = 0;
    HTTP_FUN hooks{nullptr, CountAndLetReceive, nullptr};
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), &hooks), 0);
    EXPECT_NE(receiver.GetErrorCode(), 0u);
    EXPECT_LE(beforeReceiveCalls, 4);
}

TEST(TransferFailure, ReceiveHookAskingForRetriesForeverFailsPastTheReceiveLimit) {
    FakeClock fakeClock;
    fakeClockInUse = &fakeClock;
    ScopedFacility<vagent::os::Clock> scope(fakeClock);
    LoopbackPair pair;
    beforeReceiveCalls = 0;
    HTTP_FUN hooks{nullptr, RetryWhileTimePasses, nullptr};
    VFileTask receiver(kFileTransferTask);
    FileFrameHeader header;
    EXPECT_EQ(receiver.ReceiveFrame(pair.Server(), header, &hooks), 0);
    EXPECT_EQ(receiver.GetErrorCode(), kTimedOut);
    EXPECT_LE(beforeReceiveCalls, 7);
}

TEST(TransferFailure, RefusedPiecesStopOnceNothingHasArrivedForTheReceiveLimit) {
    TempDir dir;
    FakeClock fakeClock;
    fakeClockInUse = &fakeClock;
    ScopedFacility<vagent::os::Clock> scope(fakeClock);
    LoopbackPair pair;
    Bytes bytes = Frame(1000, 0x20, 1, ToLibraryPath(dir / "slow.bin"));
    bytes.insert(bytes.end(), 1000, 'x');
    SendRaw(pair.Client(), bytes);
    beforeReceiveCalls = 0;
    HTTP_FUN hooks{nullptr, RefuseAfterTheFrameWhileTimePasses, nullptr};
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), &hooks), 0);
    EXPECT_NE(receiver.GetErrorCode(), 0u);
    EXPECT_LE(beforeReceiveCalls, 2 + 7);
}
