#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "CaptureServer.h"
#include "facade/VAgentRoads.h"
#include "helpers/TempDir.h"
#include "os/FileSystem.h"
#include "os/Sockets.h"
#include "service/EndToEndTree.h"
#include "vagent/ErrorCodes.h"
#include "vagent/VAgent.h"
#include "vagent/VTaskClient.h"

using vagent::test::CaptureServer;
using vagent::test::EndToEndService;
using vagent::test::kLocalAccounts;
using vagent::test::PatternBytes;
using vagent::test::ReadTree;
using vagent::test::Road;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::TreeContents;
using vagent::test::VAgentRoads;
using vagent::test::WriteWholeFile;

// Trees copied to and from an agent service and back, byte for byte; the
// hooks a caller gives a streamed copy; the three ways of a copy; and a
// service that names a place outside the destination.

namespace {

constexpr std::uint32_t kReadOnly = 0x01;
constexpr std::uint32_t kDirectory = 0x10;
constexpr std::uint32_t kNormal = 0x80;
constexpr unsigned int kNewConnection = ~0u;
constexpr int kRecursive = 1;
constexpr int kOnTheService = 1;
constexpr int kToThisMachine = 0;
// The end frame on the stream: its length word and 17 bytes of frame.
constexpr std::uint64_t kEndFrameBytes = 21;

vagent::os::FileSystem& Files() {
    return vagent::os::Installed<vagent::os::FileSystem>();
}

// An empty file, one of exactly one piece (1,024 bytes), one of three pieces
// (2,500 bytes), a read-only file and a subdirectory with a file of its own.
void MakeTree(const std::filesystem::path& root) {
    std::filesystem::create_directories(root / "sub");
    WriteWholeFile(root / "empty.bin", "");
    WriteWholeFile(root / "exact.bin", PatternBytes(1024, 3));
    WriteWholeFile(root / "larger.bin", PatternBytes(2500, 4));
    WriteWholeFile(root / "sub" / "nested.txt", "nested");
    WriteWholeFile(root / "locked.txt", "read only");
    Files().SetAttributes(ToLibraryPath(root / "locked.txt"), kReadOnly);
}

// The attributes of every file under root, by relative path; directories
// are left out, as their attributes are not carried.
std::map<std::string, std::uint32_t> FileAttributes(const std::filesystem::path& root) {
    std::map<std::string, std::uint32_t> attributes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        std::uint32_t value = 0;
        if (Files().Attributes(ToLibraryPath(entry.path()), value) == 0 &&
            (value & kDirectory) == 0) {
            attributes[entry.path().lexically_relative(root).generic_string()] = value;
        }
    }
    return attributes;
}

// Read-only files would outlive their temporary directory on Windows.
void ClearReadOnly(const std::filesystem::path& root) {
    std::error_code error;
    if (!std::filesystem::is_directory(root, error)) {
        return;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (!entry.is_directory()) {
            Files().SetAttributes(ToLibraryPath(entry.path()), kNormal);
        }
    }
}

std::uint64_t ContentBytes(const TreeContents& tree) {
    std::uint64_t bytes = 0;
    for (const auto& [name, contents] : tree) {
        if (contents != vagent::test::kDirectoryMark) {
            bytes += contents.size();
        }
    }
    return bytes;
}

class TreeRoundTrip {
public:
    TreeRoundTrip() { MakeTree(source_.Path()); }
    ~TreeRoundTrip() {
        ClearReadOnly(source_.Path());
        ClearReadOnly(work_.Path());
    }
    TreeRoundTrip(const TreeRoundTrip&) = delete;
    TreeRoundTrip& operator=(const TreeRoundTrip&) = delete;

    std::string Source() const { return ToLibraryPath(source_.Path()); }
    // A place under the scratch directory, as the library writes it.
    std::string Place(const std::string& name) const { return ToLibraryPath(work_ / name); }
    std::filesystem::path PlacePath(const std::string& name) const { return work_ / name; }
    std::filesystem::path SourcePath() const { return source_.Path(); }

    void ExpectSameAsSource(const std::string& name) const {
        EXPECT_EQ(ReadTree(work_ / name), ReadTree(source_.Path()));
        EXPECT_EQ(FileAttributes(work_ / name), FileAttributes(source_.Path()));
    }

private:
    TempDir source_;
    TempDir work_;
};

// What a caller's hooks are told of a streamed copy: every byte on the
// stream, each frame's length word and body as well as each piece of file
// contents, sent and received apart.
struct Progress {
    static int BeforeSend(std::uintptr_t, int count) {
        sent += static_cast<std::uint64_t>(count);
        return 1;
    }
    static int BeforeRecv(std::uintptr_t, int*) { return 1; }
    static int AfterRecv(int count) {
        received += static_cast<std::uint64_t>(count);
        return 0;
    }
    static void Reset() { sent = received = 0; }

    static std::uint64_t sent;
    static std::uint64_t received;
};
std::uint64_t Progress::sent = 0;
std::uint64_t Progress::received = 0;

HTTP_FUN ProgressHooks() {
    return HTTP_FUN{&Progress::BeforeSend, &Progress::BeforeRecv, &Progress::AfterRecv};
}

class VAgentTransfer : public VAgentRoads {};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentTransfer, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

class VAgentRemoteTransfer : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(service_.Started()) << service_.StartStatus(); }

    VAgent Agent() { return VAgent(kLocalAccounts, "127.0.0.1", std::to_string(service_.Port())); }

    vagent::test::EndToEndHost host_;
    EndToEndService service_;
    TreeRoundTrip trip_;
};

}  // namespace

// Remotely the tree goes up to the service and is streamed back from it.
TEST_P(VAgentTransfer, UploadFilesThenFilesCopyBackKeepsEveryByteAndAttribute) {
    TreeRoundTrip trip;
    VAgent agent = Agent(kLocalAccounts);
    std::string source = trip.Source();
    std::string uploaded = trip.Place("uploaded");
    std::string back = trip.Place("back");
    EXPECT_EQ(agent.UploadFiles(source, uploaded, 0, kNewConnection, nullptr, nullptr), 1);
    EXPECT_EQ(agent.FilesCopy(uploaded, back, kRecursive, kToThisMachine, kNewConnection, nullptr),
              1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
    trip.ExpectSameAsSource("uploaded");
    trip.ExpectSameAsSource("back");
    EXPECT_EQ(FileAttributes(trip.PlacePath("back"))["locked.txt"] & kReadOnly, kReadOnly);
}

TEST_P(VAgentTransfer, FilesCopyOfAMissingSourceFailsWithTheCopysCode) {
    TreeRoundTrip trip;
    VAgent agent = Agent(kLocalAccounts);
    std::string source = trip.Place("missing.bin");
    std::string target = trip.Place("target.bin");
    EXPECT_EQ(agent.FilesCopy(source, target, 0, kOnTheService, kNewConnection, nullptr), 0);
    EXPECT_NE(agent.GetErrorCode(), 0u);
    EXPECT_FALSE(std::filesystem::exists(trip.PlacePath("target.bin")));
}

TEST_F(VAgentRemoteTransfer, FilesCopyOnTheServiceCopiesBetweenItsOwnPaths) {
    VAgent agent = Agent();
    std::string source = trip_.Source();
    std::string target = trip_.Place("copied");
    EXPECT_EQ(agent.FilesCopy(source, target, kRecursive, kOnTheService, kNewConnection, nullptr),
              1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
    trip_.ExpectSameAsSource("copied");
}

// The copy site differs from the agent's host, so the service fetches the
// tree from the second service and writes it on its own host.
TEST_F(VAgentRemoteTransfer, FilesCopyThroughASecondServiceWritesTheRelayedTree) {
    vagent::service::ServerOptions options = EndToEndService::LoopbackOptions();
    options.listenAddress = "127.0.0.2";
    EndToEndService relay(options);
    ASSERT_TRUE(relay.Started()) << relay.StartStatus();
    VAgent agent = Agent();
    std::string relaySite = "127.0.0.2";
    agent.SetFilesCopySite(relaySite, relay.Port());
    std::string source = trip_.Source();
    std::string target = trip_.Place("relayed");
    EXPECT_EQ(agent.FilesCopy(source, target, kRecursive, kToThisMachine, kNewConnection, nullptr),
              1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
    trip_.ExpectSameAsSource("relayed");
}

// The hooks see the stream alone: the request goes without them when no
// connection of the caller's comes with them. An upload sends the tree's
// frames and contents and its end frame, and receives the service's end
// frame; a copy back receives the same stream named for its own target.
TEST_F(VAgentRemoteTransfer, ProgressHooksAreToldEveryByteOfTheStream) {
    VAgent agent = Agent();
    HTTP_FUN hooks = ProgressHooks();
    const TreeContents tree = ReadTree(trip_.SourcePath());
    std::string source = trip_.Source();
    std::string uploaded = trip_.Place("uploaded");
    std::string back = trip_.Place("back");

    Progress::Reset();
    EXPECT_EQ(agent.UploadFiles(source, uploaded, 0, kNewConnection, nullptr, &hooks), 1);
    const std::uint64_t uploadStream = vagent::test::TreeUploadBytes(tree, uploaded).size();
    EXPECT_EQ(Progress::sent, uploadStream + kEndFrameBytes);
    EXPECT_EQ(Progress::received, kEndFrameBytes);

    Progress::Reset();
    EXPECT_EQ(agent.FilesCopy(uploaded, back, kRecursive, kToThisMachine, kNewConnection, &hooks),
              1);
    const std::uint64_t copyStream = vagent::test::TreeUploadBytes(tree, back).size();
    EXPECT_EQ(Progress::sent, 0u);
    EXPECT_EQ(Progress::received, copyStream + kEndFrameBytes);
    trip_.ExpectSameAsSource("back");

    // 1,024 + 2,500 + 9 + 6 bytes of contents travel among the frames.
    EXPECT_EQ(ContentBytes(tree), 3539u);
}

// A caller that brings its own connection with hooks has the request and
// the reply go through them: the frame of 16 bytes around an empty root site
// and a one-path block, then the status, the length and two 8-byte items.
TEST_F(VAgentRemoteTransfer, IsFileExistUsesTheCallersConnectionAndHooks) {
    const std::uintptr_t connection = VTaskClient::ConnectServer("127.0.0.1", service_.Port());
    ASSERT_NE(connection, vagent::os::kInvalidSocket);
    VAgent agent = Agent();
    HTTP_FUN hooks = ProgressHooks();
    std::vector<std::string> paths = {trip_.Source()};
    std::vector<ExistAttr> answers;
    Progress::Reset();
    EXPECT_EQ(agent.IsFileExist(paths, answers, static_cast<unsigned int>(connection), &hooks), 1);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].exists, 1);
    EXPECT_EQ(answers[0].directory, 1);
    EXPECT_EQ(Progress::sent, 16u + 4u + 4u + paths[0].size());
    EXPECT_EQ(Progress::received, 4u + 4u + 16u);
}

// The service tells its window after its final answer, so the test waits
// for the service to stop before it looks.
TEST_F(VAgentRemoteTransfer, UploadFilesTellsTheServicesWindowAndTheCallersWindow) {
    VAgent agent = Agent();
    std::string source = trip_.Source();
    std::string uploaded = trip_.Place("uploaded");
    HWND window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x55));
    EXPECT_EQ(agent.UploadFiles(source, uploaded, 77, kNewConnection, window, nullptr), 1);
    service_.Stop();
    std::vector<vagent::os::WindowHandle> windows;
    for (const auto& posted : host_.windows.posted) {
        windows.push_back(posted.window);
        EXPECT_EQ(posted.message, 273u);
        EXPECT_EQ(posted.wParam, 0x800Fu);
        EXPECT_EQ(posted.lParam, 0);
    }
    EXPECT_THAT(windows, ::testing::UnorderedElementsAre(77u, 0x55u));
}

// A service that names a place outside the destination: the files before
// it are written, that frame is refused before a byte of it is written, and
// the copy fails with the invalid-parameter code.
class VAgentHostileCopy : public ::testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(OutsideNames, VAgentHostileCopy,
                         ::testing::Values("..\\escaped.txt", "..\\dest2\\escaped.txt",
                                           "sub\\..\\..\\escaped.txt"));

TEST_P(VAgentHostileCopy, AFrameNamedOutsideTheDestinationIsRefused) {
    TempDir directory;
    const std::string target = ToLibraryPath(directory / "dest");
    vagent::test::Bytes stream = vagent::test::TransferFrameBytes(0, kDirectory, 0, target);
    vagent::test::Append(stream,
                         vagent::test::FileTransferBytes(target + "\\inside.txt", 0x20, "inside"));
    vagent::test::Append(
        stream, vagent::test::FileTransferBytes(target + "\\" + GetParam(), 0x20, "outside"));
    vagent::test::Append(stream, vagent::test::EndFrameBytes(0));
    CaptureServer server(stream);
    VAgent agent(kLocalAccounts, "127.0.0.1", server.Port());
    std::string source = "C:\\anything";
    std::string copyTarget = target;
    EXPECT_EQ(
        agent.FilesCopy(source, copyTarget, kRecursive, kToThisMachine, kNewConnection, nullptr),
        0);
    EXPECT_EQ(agent.GetErrorCode(), vagent::kErrorInvalidParameter);
    EXPECT_EQ(vagent::test::ReadWholeFile(directory / "dest" / "inside.txt"), "inside");
    EXPECT_FALSE(std::filesystem::exists(directory / "escaped.txt"));
    EXPECT_FALSE(std::filesystem::exists(directory / "dest2"));
    std::string text;
    agent.GetErrorMessage(text);
    EXPECT_EQ(text, "Invalid Parameter.");
}
