#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "helpers/TempDir.h"
#include "os/Sockets.h"
#include "service/EndToEndHost.h"
#include "service/EndToEndService.h"
#include "service/EndToEndTree.h"
#include "service/TestClient.h"
#include "vagent/FileRecords.h"
#include "vagent/VFileTask.h"
#include "vagent/VTaskClient.h"

using vagent::test::Append;
using vagent::test::Bytes;
using vagent::test::EndFrameBytes;
using vagent::test::EndToEndHost;
using vagent::test::EndToEndService;
using vagent::test::kDirectoryMark;
using vagent::test::MakeSampleTree;
using vagent::test::ParsedFrame;
using vagent::test::ParseTransferStream;
using vagent::test::ReadEnd;
using vagent::test::ReadTree;
using vagent::test::Received;
using vagent::test::RequestFrameBytes;
using vagent::test::TempDir;
using vagent::test::TestClient;
using vagent::test::TextBlockBytes;
using vagent::test::ToLibraryPath;
using vagent::test::TreeContents;
using vagent::test::TreeUploadBytes;

// The streamed transfers through the service: an upload (id 45) and the
// three ways of a copy (id 44), each leaving byte-identical files.

namespace {

constexpr std::uint32_t kFilesCopy = 44;
constexpr std::uint32_t kUploadFiles = 45;
constexpr std::uint32_t kLimitMilliseconds = 20000;
constexpr std::uint32_t kCommandMessage = 273;
constexpr std::uintptr_t kUploadDoneCommand = 0x800F;
constexpr std::uint32_t kDirectoryAttribute = 0x10;
constexpr std::uint32_t kArchiveAttribute = 0x20;

class ServiceTransferEndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(service_.Started()) << service_.StartStatus();
        MakeSampleTree(source_.Path());
        sourceTree_ = ReadTree(source_.Path());
    }

    // Sends the request and, when there is one, the stream after it; reads
    // until the service ends the connection.
    Received Exchange(std::uint32_t taskId, const Bytes& block, const Bytes& stream) {
        TestClient client;
        Received failed;
        if (!client.Connect(service_.Port()) ||
            !client.Send(RequestFrameBytes(taskId, 0, "CN=Users", block)) ||
            (!stream.empty() && !client.Send(stream))) {
            return failed;
        }
        return client.ReadUntilEnd(kLimitMilliseconds);
    }

    Bytes CopyBlock(const std::string& relayHost, const std::string& relayPort,
                    const std::string& destination, const std::string& secondFlag) {
        return TextBlockBytes(
            {relayHost, relayPort, ToLibraryPath(source_.Path()), destination, "1", secondFlag});
    }

    EndToEndHost host_;
    EndToEndService service_;
    TempDir source_;
    TempDir target_;
    TreeContents sourceTree_;
};

// The relative path of a streamed name under the destination, with '/'
// separators; the name itself when it lies elsewhere.
std::string RelativeName(const std::string& name, const std::string& destination) {
    if (name.compare(0, destination.size() + 1, destination + "\\") != 0) {
        return name;
    }
    std::string relative = name.substr(destination.size() + 1);
    for (char& c : relative) {
        if (c == '\\') {
            c = '/';
        }
    }
    return relative;
}

// The tree a stream of frames describes, each frame checked against the
// layout a sender writes: the destination's own directory frame first, file
// frames with pieces of at most 1,024 bytes, the end frame with status 0
// last.
TreeContents StreamedTree(const std::vector<ParsedFrame>& frames, const std::string& destination) {
    TreeContents tree;
    EXPECT_GE(frames.size(), 2u);
    if (frames.size() < 2) {
        return tree;
    }
    EXPECT_EQ(frames.front().name, destination);
    EXPECT_NE(frames.front().attributes & kDirectoryAttribute, 0u);
    for (std::size_t i = 1; i + 1 < frames.size(); ++i) {
        const ParsedFrame& frame = frames[i];
        const std::string relative = RelativeName(frame.name, destination);
        if ((frame.attributes & kDirectoryAttribute) != 0) {
            EXPECT_EQ(frame.size, 0u);
            EXPECT_EQ(frame.blockSize, 0u);
            tree[relative] = kDirectoryMark;
            continue;
        }
        EXPECT_EQ(frame.attributes, kArchiveAttribute) << frame.name;
        EXPECT_EQ(frame.blockSize, frame.size < 1024 ? frame.size : 1024u) << frame.name;
        tree[relative] = frame.contents;
    }
    EXPECT_EQ(frames.back().size, 0xFFFFFFFFu);
    EXPECT_EQ(frames.back().blockSize, 0u);
    EXPECT_EQ(frames.back().name, "");
    return tree;
}

}  // namespace

TEST_F(ServiceTransferEndToEnd, UploadWritesTheStreamedTreeAndAnswersWithAnEndFrameOfZero) {
    const std::string destination = ToLibraryPath(target_ / "upload");
    Bytes stream = TreeUploadBytes(sourceTree_, destination);
    Append(stream, EndFrameBytes(0));
    const Received reply = Exchange(kUploadFiles, TextBlockBytes({"4660"}), stream);
    EXPECT_EQ(reply.bytes, EndFrameBytes(0));
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
    EXPECT_EQ(ReadTree(target_ / "upload"), sourceTree_);
    ASSERT_EQ(host_.windows.posted.size(), 1u);
    EXPECT_EQ(host_.windows.posted[0].window, 4660u);
    EXPECT_EQ(host_.windows.posted[0].message, kCommandMessage);
    EXPECT_EQ(host_.windows.posted[0].wParam, kUploadDoneCommand);
    EXPECT_EQ(host_.windows.posted[0].lParam, 0);
}

TEST_F(ServiceTransferEndToEnd, UploadEndedWithAFailureStatusIsAnsweredWithThatStatus) {
    const std::string destination = ToLibraryPath(target_ / "upload");
    Bytes stream = TreeUploadBytes(sourceTree_, destination);
    Append(stream, EndFrameBytes(5));
    const Received reply = Exchange(kUploadFiles, TextBlockBytes({"0"}), stream);
    EXPECT_EQ(reply.bytes, EndFrameBytes(5));
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
}

TEST_F(ServiceTransferEndToEnd, UploadCutShortByTheSenderIsNotAnsweredAsDoneAndServingGoesOn) {
    const std::string destination = ToLibraryPath(target_ / "upload");
    Bytes stream = TreeUploadBytes(sourceTree_, destination);
    stream.resize(stream.size() / 2);
    {
        TestClient client;
        ASSERT_TRUE(client.Connect(service_.Port()));
        ASSERT_TRUE(client.Send(RequestFrameBytes(kUploadFiles, 0, "", TextBlockBytes({"0"}))));
        ASSERT_TRUE(client.Send(stream));
        const Received early = client.ReadUntilEnd(1000);
        EXPECT_EQ(early.end, ReadEnd::kTimedOut);
        EXPECT_TRUE(early.bytes.empty());
    }
    const Received next = Exchange(35, Bytes{}, Bytes{});
    EXPECT_EQ(next.bytes, vagent::test::ReplyBytes(0, TextBlockBytes({"9"})));
}

TEST_F(ServiceTransferEndToEnd, CopyWithTheSecondFlagCopiesOnTheServiceAndSendsOnlyTheEndFrame) {
    const std::string destination = ToLibraryPath(target_ / "local");
    const Received reply = Exchange(kFilesCopy, CopyBlock("", "0", destination, "1"), Bytes{});
    EXPECT_EQ(reply.bytes, EndFrameBytes(0));
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
    EXPECT_EQ(ReadTree(target_ / "local"), sourceTree_);
}

TEST_F(ServiceTransferEndToEnd, CopyWithoutARelayStreamsTheTreeBackToTheRequester) {
    const std::string destination = ToLibraryPath(target_ / "back");
    const Received reply = Exchange(kFilesCopy, CopyBlock("", "0", destination, "0"), Bytes{});
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
    std::vector<ParsedFrame> frames;
    ASSERT_TRUE(ParseTransferStream(reply.bytes, frames));
    EXPECT_EQ(StreamedTree(frames, destination), sourceTree_);
    EXPECT_FALSE(std::filesystem::exists(target_ / "back"));
}

TEST_F(ServiceTransferEndToEnd, CopyThroughARelayServiceWritesTheRelayedTreeHere) {
    EndToEndService relay;
    ASSERT_TRUE(relay.Started()) << relay.StartStatus();
    const std::string destination = ToLibraryPath(target_ / "relayed");
    const Received reply =
        Exchange(kFilesCopy, CopyBlock("127.0.0.1", std::to_string(relay.Port()), destination, "0"),
                 Bytes{});
    EXPECT_EQ(reply.bytes, EndFrameBytes(0));
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
    EXPECT_EQ(ReadTree(target_ / "relayed"), sourceTree_);
}

TEST_F(ServiceTransferEndToEnd, CopyOfAMissingSourceEndsWithTheNotFoundStatus) {
    const Received reply = Exchange(kFilesCopy,
                                    TextBlockBytes({"", "0", ToLibraryPath(source_ / "missing"),
                                                    ToLibraryPath(target_ / "none"), "1", "0"}),
                                    Bytes{});
    EXPECT_EQ(reply.bytes, EndFrameBytes(2));
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
}

TEST_F(ServiceTransferEndToEnd, RealClientUploadsWithTheLibrarysSenderAndReadsTheEndFrame) {
    const std::string destination = ToLibraryPath(target_ / "client");
    VTaskClient client;
    ASSERT_EQ(client.SetServer("127.0.0.1", std::to_string(service_.Port()).c_str()), 1);
    ASSERT_EQ(client.SetTask(kUploadFiles), 1);
    const Bytes block = TextBlockBytes({"0"});
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    ASSERT_EQ(client.SendRequest(0, "CN=Users", vagent::os::kInvalidSocket, nullptr), 1);
    auto& task = *static_cast<VFileTask*>(client.GetTask());
    const std::uintptr_t connection = client.GetConnection();
    ASSERT_EQ(task.SendTree(connection, ToLibraryPath(source_.Path()), destination, 1, nullptr), 1);
    ASSERT_EQ(task.SendEndFrame(connection, 0, nullptr), 1);
    FileFrameHeader answer;
    EXPECT_EQ(task.ReceiveFrame(connection, answer, nullptr), 2);
    EXPECT_EQ(task.GetErrorCode(), 0u);
    EXPECT_EQ(ReadTree(target_ / "client"), sourceTree_);
}

TEST_F(ServiceTransferEndToEnd, RealClientReceivesTheStreamedTreeWithTheLibrarysReceiver) {
    const std::string destination = ToLibraryPath(target_ / "received");
    VTaskClient client;
    ASSERT_EQ(client.SetServer("127.0.0.1", std::to_string(service_.Port()).c_str()), 1);
    ASSERT_EQ(client.SetTask(kFilesCopy), 1);
    const Bytes block = CopyBlock("", "0", destination, "0");
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    ASSERT_EQ(client.SendRequest(0, "CN=Users", vagent::os::kInvalidSocket, nullptr), 1);
    auto& task = *static_cast<VFileTask*>(client.GetTask());
    EXPECT_EQ(task.ReceiveTree(client.GetConnection(), nullptr), 1);
    EXPECT_EQ(ReadTree(target_ / "received"), sourceTree_);
}
