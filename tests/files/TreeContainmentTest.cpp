#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <thread>

#include "files/FileTaskHarness.h"
#include "files/Loopback.h"
#include "files/PathContainment.h"
#include "files/TransferWire.h"
#include "helpers/TempDir.h"
#include "os/Sockets.h"
#include "vagent/VFileTask.h"

using vagent::files::LiesUnder;
using vagent::os::SocketHandle;
using vagent::test::Bytes;
using vagent::test::Frame;
using vagent::test::ListBlock;
using vagent::test::LoopbackListener;
using vagent::test::LoopbackPair;
using vagent::test::ReadWholeFile;
using vagent::test::RunFileTask;
using vagent::test::SendRaw;
using vagent::test::TaskAnswer;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;

namespace {

constexpr std::uint32_t kFilesCopy = 44;
constexpr std::uint32_t kInvalidParameter = 0xE6000001u;

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

Bytes EndFrame(std::uint32_t status) {
    return Frame(0xFFFFFFFFu, 0, status, "");
}

Bytes FileFrameWith(const std::string& name, const std::string& contents) {
    Bytes bytes =
        Frame(static_cast<std::uint32_t>(contents.size()), 0x20,
              static_cast<std::uint32_t>(std::min<std::size_t>(contents.size(), 1024)), name);
    bytes.insert(bytes.end(), contents.begin(), contents.end());
    return bytes;
}

// Skips the request frame a relay host receives: task id, work environment,
// root site and block, each after its big-endian length where it has one.
void SkipRequestFrame(SocketHandle socket) {
    auto receive = [socket](std::size_t count) {
        std::string bytes(count, '\0');
        std::size_t done = 0;
        while (done < count) {
            int got = 0;
            if (vagent::os::Installed<vagent::os::Sockets>().Receive(
                    socket, &bytes[done], static_cast<int>(count - done), 0, got) != 0 ||
                got <= 0) {
                break;
            }
            done += static_cast<std::size_t>(got);
        }
        return bytes;
    };
    auto length = [&] {
        const std::string field = receive(4);
        std::uint32_t value = 0;
        for (const char byte : field) {
            value = (value << 8) | static_cast<std::uint8_t>(byte);
        }
        return value;
    };
    receive(8);
    receive(length());
    receive(length());
}

}  // namespace

TEST(LiesUnder, RootItselfAndNamesBeneathItLieUnderIt) {
    EXPECT_TRUE(LiesUnder("C:\\dest", "C:\\dest"));
    EXPECT_TRUE(LiesUnder("C:\\dest", "C:\\dest\\a.txt"));
    EXPECT_TRUE(LiesUnder("C:\\dest\\", "C:\\dest\\sub\\b.txt"));
    EXPECT_TRUE(LiesUnder("C:\\dest", "c:\\DEST\\Sub\\b.txt"));
    EXPECT_TRUE(LiesUnder("C:\\dest", "C:/dest/sub/b.txt"));
    EXPECT_TRUE(LiesUnder("C:\\dest", "C:\\dest\\.\\sub\\..\\a.txt"));
    EXPECT_TRUE(LiesUnder("\\\\server\\share\\dest", "\\\\server\\share\\dest\\a"));
}

TEST(LiesUnder, NamesThatClimbOutOrGoElsewhereDoNot) {
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\dest\\..\\..\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\dest\\..\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\dest/../x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "..\\..\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\other\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "D:\\dest\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\destination\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\..\\dest\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:dest\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "\\\\C:\\dest\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\dest\\...\\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", "C:\\dest\\.. \\x"));
    EXPECT_FALSE(LiesUnder("C:\\dest", ""));
    EXPECT_FALSE(LiesUnder("", "C:\\dest\\x"));
}

class ReceiveTreeUnder : public ::testing::Test {
protected:
    // Sends the frames, then an end frame of status 0, and receives them
    // under the root.
    int Receive(const Bytes& frames, const std::string& root) {
        Bytes bytes = frames;
        const Bytes end = EndFrame(0);
        bytes.insert(bytes.end(), end.begin(), end.end());
        LoopbackPair pair;
        std::thread sender([&] {
            SendRaw(pair.Client(), bytes);
            pair.CloseClient();
        });
        const int received = receiver_.ReceiveTreeUnder(pair.Server(), root, nullptr);
        sender.join();
        return received;
    }

    std::string Root() const { return ToLibraryPath(dir_ / "top" / "dest"); }

    TempDir dir_;
    VFileTask receiver_{kFilesCopy};
};

TEST_F(ReceiveTreeUnder, NamesBeneathTheRootInAnyCaseAreWritten) {
    Bytes frames = Frame(0, 0x10, 0, Root());
    const Bytes file = FileFrameWith(Root() + "/ok.txt", "fine");
    frames.insert(frames.end(), file.begin(), file.end());
    EXPECT_EQ(Receive(frames, Upper(Root())), 1);
    EXPECT_EQ(receiver_.GetErrorCode(), 0u);
    EXPECT_EQ(ReadWholeFile(dir_ / "top" / "dest" / "ok.txt"), "fine");
}

TEST_F(ReceiveTreeUnder, FileClimbingOutOfTheRootFailsBeforeAByteIsWritten) {
    EXPECT_EQ(Receive(FileFrameWith(Root() + "\\..\\..\\x", "evil"), Root()), 0);
    EXPECT_EQ(receiver_.GetErrorCode(), kInvalidParameter);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "x"));
    EXPECT_FALSE(std::filesystem::exists(dir_ / "top"));
}

TEST_F(ReceiveTreeUnder, FileClimbingOutWithSlashesFails) {
    EXPECT_EQ(Receive(FileFrameWith(Root() + "/../x", "evil"), Root()), 0);
    EXPECT_EQ(receiver_.GetErrorCode(), kInvalidParameter);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "top" / "x"));
}

TEST_F(ReceiveTreeUnder, DirectoryElsewhereFailsAndIsNotCreated) {
    EXPECT_EQ(Receive(Frame(0, 0x10, 0, ToLibraryPath(dir_ / "other" / "x")), Root()), 0);
    EXPECT_EQ(receiver_.GetErrorCode(), kInvalidParameter);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "other"));
}

TEST_F(ReceiveTreeUnder, NameOnAnotherDriveFails) {
    EXPECT_EQ(Receive(FileFrameWith("C:\\other\\x", "evil"), Root()), 0);
    EXPECT_EQ(receiver_.GetErrorCode(), kInvalidParameter);
}

TEST(FilesCopyRelay, NamesOutsideTheDestinationFromTheRelayHostFailTheCopy) {
    TempDir dir;
    const std::string destination = ToLibraryPath(dir / "here");
    LoopbackListener relayListener;
    std::thread relayHost([&] {
        const SocketHandle connection = relayListener.Accept();
        SkipRequestFrame(connection);
        Bytes frames = FileFrameWith(destination + "\\..\\escaped.txt", "evil");
        const Bytes end = EndFrame(0);
        frames.insert(frames.end(), end.begin(), end.end());
        SendRaw(connection, frames);
        vagent::os::Installed<vagent::os::Sockets>().Close(connection);
    });
    LoopbackPair pair;
    TaskAnswer served;
    std::thread service([&] {
        VFileTask task(kFilesCopy);
        served = RunFileTask(task,
                             ListBlock({"127.0.0.1", std::to_string(relayListener.Port()),
                                        "C:\\source", destination, "1", "0"}),
                             pair.Server());
    });
    VFileTask requester(kFilesCopy);
    EXPECT_EQ(requester.ReceiveTree(pair.Client(), nullptr), 0);
    service.join();
    relayHost.join();
    EXPECT_EQ(served.truth, 0);
    EXPECT_EQ(requester.GetErrorCode(), kInvalidParameter);
    EXPECT_FALSE(std::filesystem::exists(dir / "escaped.txt"));
}
