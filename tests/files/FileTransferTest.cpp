#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "fakes/FaultyFileSystem.h"
#include "files/Loopback.h"
#include "files/TransferWire.h"
#include "helpers/TempDir.h"
#include "os/FileSystem.h"
#include "os/Sockets.h"
#include "os/Status.h"
#include "vagent/VFileTask.h"

using vagent::os::Files;
using vagent::os::SocketHandle;
using vagent::test::Bytes;
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

std::string ReceiveCount(SocketHandle socket, std::uint32_t count) {
    std::string bytes(count, '\0');
    std::uint32_t received = 0;
    while (received < count) {
        int got = 0;
        if (vagent::os::Installed<vagent::os::Sockets>().Receive(
                socket, &bytes[received], static_cast<int>(count - received), 0, got) != 0 ||
            got <= 0) {
            break;
        }
        received += static_cast<std::uint32_t>(got);
    }
    bytes.resize(received);
    return bytes;
}

std::uint32_t AttributesOf(const std::string& path) {
    std::uint32_t attributes = 0;
    EXPECT_EQ(Files().Attributes(path, attributes), 0u);
    return attributes;
}

std::vector<int>* sendCounts = nullptr;

int RecordSendCount(std::uintptr_t, int count) {
    sendCounts->push_back(count);
    return 1;
}

int sendHookCalls = 0;

// Lets the first send (the frame) through and refuses every later one.
int RefuseAfterTheFrame(std::uintptr_t, int) {
    return sendHookCalls++ == 0 ? 1 : 0;
}

int beforeReceiveCalls = 0;
int receivedTotal = 0;

// Asks for a retry on every other call and never lets more than 100 bytes
// through at once.
int LowerAndRetry(std::uintptr_t, int* count) {
    ++beforeReceiveCalls;
    if (beforeReceiveCalls % 2 == 1) {
        return 2;
    }
    if (*count > 100) {
        *count = 100;
    }
    return 1;
}

int CountReceived(int count) {
    receivedTotal += count;
    return 0;
}

}  // namespace

TEST(FileTransfer, FileOf2500BytesTravelsAsOneFrameAndPiecesOf1024_1024_452) {
    TempDir dir;
    const std::string contents = Pattern(2500, 1);
    WriteWholeFile(dir / "source.bin", contents);
    const std::string source = ToLibraryPath(dir / "source.bin");
    const std::string destination = "C:\\target\\file.bin";
    std::vector<int> counts;
    sendCounts = &counts;
    HTTP_FUN hooks{RecordSendCount, nullptr, nullptr};
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendFile(socket, source, destination, &hooks);
    });
    const Bytes wire = ReadUntilClosed(pair.Server());
    sender.join();
    EXPECT_EQ(sent, 1);
    const Bytes frame = Frame(2500, AttributesOf(source), 1024, destination);
    EXPECT_THAT(counts, ::testing::ElementsAre(static_cast<int>(frame.size()), 1024, 1024, 452));
    ASSERT_EQ(wire.size(), frame.size() + 2500);
    EXPECT_EQ(Bytes(wire.begin(), wire.begin() + static_cast<long>(frame.size())), frame);
    EXPECT_EQ(std::string(wire.begin() + static_cast<long>(frame.size()), wire.end()), contents);
}

TEST(FileTransfer, GatheredSendsPutTheSameBytesOnTheWireAsHookedOnes) {
    TempDir dir;
    WriteWholeFile(dir / "a.bin", Pattern(300000, 2));
    WriteWholeFile(dir / "b.bin", Pattern(10, 3));
    std::filesystem::create_directory(dir / "sub");
    WriteWholeFile(dir / "sub" / "c.bin", Pattern(5000, 4));
    const std::string source = ToLibraryPath(dir.Path());
    std::vector<int> counts;
    sendCounts = &counts;
    HTTP_FUN hooks{RecordSendCount, nullptr, nullptr};
    Bytes wires[2];
    for (int hooked = 0; hooked < 2; ++hooked) {
        LoopbackPair pair;
        int sent = 0;
        std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
            return task.SendTree(socket, source, "D:\\copy", 1, hooked != 0 ? &hooks : nullptr) &&
                   task.SendEndFrame(socket, 0, hooked != 0 ? &hooks : nullptr);
        });
        wires[hooked] = ReadUntilClosed(pair.Server());
        sender.join();
        EXPECT_EQ(sent, 1);
    }
    EXPECT_GT(wires[0].size(), 305010u);
    EXPECT_EQ(wires[0], wires[1]);
}

TEST(FileTransfer, EmptyFileTravelsWithSizeAndBlockSizeZeroAndKeepsItsAttributes) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "empty.txt", "");
    const std::string source = ToLibraryPath(sending / "empty.txt");
    ASSERT_EQ(Files().SetAttributes(source, vagent::os::kFileAttributeReadOnly), 0u);
    const std::uint32_t attributes = AttributesOf(source);
    const std::string target = ToLibraryPath(receiving / "empty.txt");
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendFile(socket, source, target, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    FileFrameHeader header;
    EXPECT_EQ(receiver.ReceiveFrame(pair.Server(), header, nullptr), 1);
    EXPECT_EQ(header.size, 0u);
    EXPECT_EQ(header.blockSize, 0u);
    EXPECT_EQ(header.attributes, attributes);
    EXPECT_EQ(receiver.ReceiveFileContents(pair.Server(), header, nullptr), 1);
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_TRUE(std::filesystem::exists(receiving / "empty.txt"));
    EXPECT_EQ(ReadWholeFile(receiving / "empty.txt"), "");
    EXPECT_EQ(AttributesOf(target), attributes);
    Files().SetAttributes(source, 0);
    Files().SetAttributes(target, 0);
}

TEST(FileTransfer, ReadOnlyTargetIsClearedThenOverwrittenThenGivenTheSendersAttributes) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "new.txt", "new contents");
    WriteWholeFile(receiving / "old.txt", "old");
    const std::string source = ToLibraryPath(sending / "new.txt");
    const std::string target = ToLibraryPath(receiving / "old.txt");
    ASSERT_EQ(Files().SetAttributes(target, vagent::os::kFileAttributeReadOnly), 0u);
    const std::uint32_t senderAttributes = AttributesOf(source);
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendFile(socket, source, target, nullptr) &&
               task.SendEndFrame(socket, 0, nullptr);
    });
    sender.join();
    vagent::test::FaultyFileSystem files;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), nullptr), 1);
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(ReadWholeFile(receiving / "old.txt"), "new contents");
    EXPECT_EQ(AttributesOf(target), senderAttributes);
    const std::vector<std::string> expected{
        "SetAttributes " + target + " 0", "Open " + target + " wb",
        "SetAttributes " + target + " " + std::to_string(senderAttributes)};
    std::vector<std::string> touching;
    for (const std::string& call : files.calls) {
        if (call.rfind("SetAttributes", 0) == 0 || call.rfind("Open", 0) == 0) {
            touching.push_back(call);
        }
    }
    EXPECT_EQ(touching, expected);
}

TEST(FileTransfer, TreeSentWithoutRecursionHasNoSubdirectoryFrame) {
    TempDir dir;
    WriteWholeFile(dir / "a.txt", "a");
    std::filesystem::create_directory(dir / "sub");
    WriteWholeFile(dir / "sub" / "b.txt", "b");
    const std::string source = ToLibraryPath(dir.Path());
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendTree(socket, source, "E:\\top", 0, nullptr) &&
               task.SendEndFrame(socket, 0, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    std::vector<std::pair<std::string, bool>> frames;
    std::string drained;
    for (;;) {
        FileFrameHeader header;
        const int kind = receiver.ReceiveFrame(pair.Server(), header, nullptr);
        if (kind != 1) {
            EXPECT_EQ(kind, 2);
            break;
        }
        const bool directory = (header.attributes & vagent::os::kFileAttributeDirectory) != 0;
        frames.emplace_back(header.name, directory);
        if (!directory) {
            EXPECT_EQ(ReceiveCount(pair.Server(), header.size), "a");
        }
    }
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_THAT(frames,
                ::testing::ElementsAre(std::make_pair(std::string("E:\\top"), true),
                                       std::make_pair(std::string("E:\\top\\a.txt"), false)));
}

TEST(FileTransfer, RecursiveTreeArrivesWholeAndByteIdentical) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "big.bin", Pattern(1500000, 5));
    WriteWholeFile(sending / "empty.bin", "");
    std::filesystem::create_directories(sending / "sub" / "deeper");
    WriteWholeFile(sending / "sub" / "small.txt", Pattern(1023, 6));
    WriteWholeFile(sending / "sub" / "deeper" / "exact.bin", Pattern(2048, 7));
    const std::string source = ToLibraryPath(sending.Path());
    const std::string destination = ToLibraryPath(receiving / "copy");
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendTree(socket, source, destination, 1, nullptr) &&
               task.SendEndFrame(socket, 0, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), nullptr), 1);
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(receiver.GetErrorCode(), 0u);
    for (const char* name : {"big.bin", "empty.bin", "sub/small.txt", "sub/deeper/exact.bin"}) {
        EXPECT_EQ(ReadWholeFile(receiving / "copy" / name), ReadWholeFile(sending / name)) << name;
    }
}

TEST(FileTransfer, ReceiveHookThatLowersTheCountAndAsksForRetriesStillGetsIdenticalFiles) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "one.bin", Pattern(2500, 8));
    WriteWholeFile(sending / "two.bin", Pattern(99, 9));
    const std::string source = ToLibraryPath(sending.Path());
    const std::string destination = ToLibraryPath(receiving / "hooked");
    beforeReceiveCalls = 0;
    receivedTotal = 0;
    HTTP_FUN hooks{nullptr, LowerAndRetry, CountReceived};
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendTree(socket, source, destination, 1, nullptr) &&
               task.SendEndFrame(socket, 0, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), &hooks), 1);
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(ReadWholeFile(receiving / "hooked" / "one.bin"), Pattern(2500, 8));
    EXPECT_EQ(ReadWholeFile(receiving / "hooked" / "two.bin"), Pattern(99, 9));
    EXPECT_GT(beforeReceiveCalls, 2 * (2599 / 100));
    EXPECT_GT(receivedTotal, 2599);
}

TEST(FileTransfer, EndFrameWithStatus5FailsTheTreeAndLeaves5InTheErrorCode) {
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [](VFileTask& task, SocketHandle socket) {
        return task.SendEndFrame(socket, 5, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), nullptr), 0);
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(receiver.GetErrorCode(), 5u);
}

TEST(FileTransfer, EndFrameWithStatusZeroIsReportedAsTwo) {
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [](VFileTask& task, SocketHandle socket) {
        return task.SendEndFrame(socket, 0, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    FileFrameHeader header;
    EXPECT_EQ(receiver.ReceiveFrame(pair.Server(), header, nullptr), 2);
    sender.join();
    EXPECT_EQ(header.size, 0xFFFFFFFFu);
    EXPECT_EQ(header.name, "");
}

TEST(FileTransfer, SendingADirectoryAsAFileIsRefusedWithInvalidParameter) {
    TempDir dir;
    LoopbackPair pair;
    VFileTask sender(kFileTransferTask);
    EXPECT_EQ(sender.SendFile(pair.Client(), ToLibraryPath(dir.Path()), "C:\\x", nullptr), 0);
    EXPECT_EQ(sender.GetErrorCode(), 0xE6000001u);
}

TEST(FileTransfer, SendingAMissingFileLeavesTheSystemStatus) {
    TempDir dir;
    LoopbackPair pair;
    VFileTask sender(kFileTransferTask);
    EXPECT_EQ(sender.SendTree(pair.Client(), ToLibraryPath(dir / "missing"), "C:\\x", 1, nullptr),
              0);
    EXPECT_EQ(sender.GetErrorCode(), vagent::os::kFileNotFound);
}

TEST(FileTransfer, SendHookThatRefusesAFrameFailsTheSend) {
    TempDir dir;
    WriteWholeFile(dir / "f", "f");
    HTTP_FUN hooks{[](std::uintptr_t, int) { return 0; }, nullptr, nullptr};
    LoopbackPair pair;
    VFileTask sender(kFileTransferTask);
    EXPECT_EQ(sender.SendFile(pair.Client(), ToLibraryPath(dir / "f"), "C:\\f", &hooks), 0);
    pair.CloseClient();
    EXPECT_TRUE(ReadUntilClosed(pair.Server()).empty());
}

TEST(FileTransfer, PiecesRefusedByTheSendHookAreSentAllTheSameAndLeaveTheLastError) {
    TempDir dir;
    const std::string contents = Pattern(3000, 10);
    WriteWholeFile(dir / "f.bin", contents);
    const std::string source = ToLibraryPath(dir / "f.bin");
    vagent::test::FaultyFileSystem files;
    files.lastError = 1223;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    sendHookCalls = 0;
    HTTP_FUN hooks{RefuseAfterTheFrame, nullptr, nullptr};
    LoopbackPair pair;
    int sent = 0;
    std::uint32_t errorCode = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        const int result = task.SendFile(socket, source, "C:\\f.bin", &hooks);
        errorCode = task.GetErrorCode();
        return result;
    });
    const Bytes wire = ReadUntilClosed(pair.Server());
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(errorCode, 1223u);
    EXPECT_EQ(sendHookCalls, 4);
    ASSERT_GE(wire.size(), contents.size());
    EXPECT_EQ(std::string(wire.end() - static_cast<long>(contents.size()), wire.end()), contents);
}

TEST(FileTransfer, FileInAMissingDirectoryGetsItsParentsCreated) {
    TempDir sending;
    TempDir receiving;
    WriteWholeFile(sending / "f.txt", "deep");
    const std::string target = ToLibraryPath(receiving / "new" / "parent" / "f.txt");
    LoopbackPair pair;
    int sent = 0;
    std::thread sender = SenderThread(pair, sent, [&](VFileTask& task, SocketHandle socket) {
        return task.SendFile(socket, ToLibraryPath(sending / "f.txt"), target, nullptr) &&
               task.SendEndFrame(socket, 0, nullptr);
    });
    VFileTask receiver(kFileTransferTask);
    EXPECT_EQ(receiver.ReceiveTree(pair.Server(), nullptr), 1);
    sender.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(ReadWholeFile(receiving / "new" / "parent" / "f.txt"), "deep");
}

class MalformedFrame : public ::testing::Test {
protected:
    // Sends the bytes, closes the sending side and lets the receiver take a
    // whole tree from them.
    int ReceiveTreeFrom(const Bytes& bytes, HTTP_FUN* hooks = nullptr) {
        SendRaw(pair_.Client(), bytes);
        pair_.CloseClient();
        return receiver_.ReceiveTree(pair_.Server(), hooks);
    }

    TempDir dir_;
    LoopbackPair pair_;
    VFileTask receiver_{kFileTransferTask};
};

TEST_F(MalformedFrame, FrameLengthOfZeroFails) {
    EXPECT_EQ(ReceiveTreeFrom(Bytes{0, 0, 0, 0}), 0);
    EXPECT_NE(receiver_.GetErrorCode(), 0u);
}

TEST_F(MalformedFrame, NameWithoutItsTerminatingZeroFails) {
    Bytes bytes{18, 0, 0, 0, 0, 0, 0, 0, 0x10, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 'a', 'b'};
    EXPECT_EQ(ReceiveTreeFrom(bytes), 0);
    EXPECT_NE(receiver_.GetErrorCode(), 0u);
}

TEST_F(MalformedFrame, FrameLengthBeyondWhatFollowsFails) {
    Bytes bytes{100, 0, 0, 0};
    const Bytes frame = Frame(0, 0x10, 0, ToLibraryPath(dir_ / "d"));
    bytes.insert(bytes.end(), frame.begin() + 4, frame.end());
    EXPECT_EQ(ReceiveTreeFrom(bytes), 0);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "d"));
}

TEST_F(MalformedFrame, HugeFrameLengthIsNotBelieved) {
    EXPECT_EQ(ReceiveTreeFrom(Bytes{0xF0, 0xFF, 0xFF, 0xFF}), 0);
    EXPECT_EQ(receiver_.GetErrorCode(), 0xE6000004u);
}

TEST_F(MalformedFrame, FileSizeBeyondTheContentsThatFollowFails) {
    Bytes bytes = Frame(5000, 0x20, 1024, ToLibraryPath(dir_ / "short.bin"));
    bytes.insert(bytes.end(), 100, 'x');
    EXPECT_EQ(ReceiveTreeFrom(bytes), 0);
    EXPECT_NE(receiver_.GetErrorCode(), 0u);
}

TEST_F(MalformedFrame, BlockSizeBeyondAPieceIsRefusedWhenPiecesAreHooked) {
    HTTP_FUN hooks{nullptr, [](std::uintptr_t, int*) { return 1; }, nullptr};
    Bytes bytes = Frame(3000, 0x20, 3000, ToLibraryPath(dir_ / "wide.bin"));
    bytes.insert(bytes.end(), 3000, 'x');
    EXPECT_EQ(ReceiveTreeFrom(bytes, &hooks), 0);
}

TEST_F(MalformedFrame, FileFrameWithAnEmptyNameFails) {
    Bytes bytes = Frame(0, 0x20, 0, "");
    EXPECT_EQ(ReceiveTreeFrom(bytes), 0);
    EXPECT_NE(receiver_.GetErrorCode(), 0u);
}

TEST_F(MalformedFrame, ConnectionClosedBeforeTheEndFrameFails) {
    EXPECT_EQ(ReceiveTreeFrom(Frame(0, 0x10, 0, ToLibraryPath(dir_ / "d"))), 0);
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / "d"));
    EXPECT_NE(receiver_.GetErrorCode(), 0u);
}

TEST_F(MalformedFrame, FailedReceiveOfAFrameLeavesAStatus) {
    SendRaw(pair_.Client(), Bytes{1, 0});
    pair_.CloseClient();
    FileFrameHeader header;
    EXPECT_EQ(receiver_.ReceiveFrame(pair_.Server(), header, nullptr), 0);
    EXPECT_NE(receiver_.GetErrorCode(), 0u);
}
