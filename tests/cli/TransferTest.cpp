#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "TransferMeter.h"
#include "cli/CliHarness.h"
#include "helpers/TempDir.h"
#include "service/EndToEndTree.h"

using ::testing::HasSubstr;
using vagent::test::CliAgainstService;
using vagent::test::CliRun;
using vagent::test::kDirectoryMark;
using vagent::test::MakeSampleTree;
using vagent::test::ReadTree;
using vagent::test::TempDir;
using vagent::test::ToLibraryPath;
using vagent::test::TreeContents;
using vagentctl::TransferMeter;
using Json = nlohmann::json;

// Trees up to the service, down from it and copied on it, byte for byte,
// with every byte of the stream counted by the progress hooks.

namespace {

// A frame on the stream: its length word, four words and the name with its
// terminating zero.
constexpr std::uint64_t kFrameBytes = 4 + 16 + 1;
// The end frame, whose name is empty.
constexpr std::uint64_t kEndFrameBytes = kFrameBytes;

// Every byte of the stream that carries `tree` to `destination`: a frame
// for the destination itself, one for every directory and file under it,
// the files' contents and the end frame.
std::uint64_t StreamBytes(const TreeContents& tree, const std::string& destination) {
    std::uint64_t bytes = kFrameBytes + destination.size() + kEndFrameBytes;
    for (const auto& [relative, contents] : tree) {
        std::string name = relative;
        std::replace(name.begin(), name.end(), '/', '\\');
        bytes += kFrameBytes + destination.size() + 1 + name.size();
        if (contents != kDirectoryMark) {
            bytes += contents.size();
        }
    }
    return bytes;
}

class CliTransfers : public ::testing::Test, public CliAgainstService {
protected:
    CliTransfers() { MakeSampleTree(source_.Path()); }

    std::string Source() const { return source_.Path().string(); }
    std::string Remote(const std::string& name) const { return ToLibraryPath(work_ / name); }

    TempDir source_;
    TempDir work_;
};

}  // namespace

TEST_F(CliTransfers, UploadCarriesTheTreeAndTheHooksCountEveryByte) {
    const std::string destination = Remote("up");
    const CliRun run = CliAgainstService::Remote({"upload", Source(), destination});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "source: " + Source() + "\ntarget: " + destination + "\n");
    const TreeContents tree = ReadTree(source_.Path());
    EXPECT_EQ(ReadTree(work_ / "up"), tree);
    EXPECT_EQ(TransferMeter::SentBytes(), StreamBytes(tree, destination));
    EXPECT_EQ(TransferMeter::ReceivedBytes(), kEndFrameBytes);
}

TEST_F(CliTransfers, UploadJsonNamesSourceAndTarget) {
    const std::string destination = Remote("up");
    const Json line = RemoteJson({"upload", Source(), destination, "--window", "0"});
    EXPECT_EQ(line, (Json{{"host", HostArgument()},
                          {"ok", true},
                          {"result", {{"source", Source()}, {"target", destination}}}}));
}

TEST_F(CliTransfers, DownloadStreamsTheTreeHere) {
    const std::string here = (work_ / "down").string();
    const CliRun run = CliAgainstService::Remote({"download", ToLibraryPath(source_.Path()), here});
    EXPECT_EQ(run.status, 0) << run.err;
    const TreeContents tree = ReadTree(source_.Path());
    EXPECT_EQ(ReadTree(work_ / "down"), tree);
    EXPECT_EQ(TransferMeter::ReceivedBytes(), StreamBytes(tree, here));
}

TEST_F(CliTransfers, DownloadWithoutRecursionLeavesSubdirectoriesOut) {
    const std::string here = (work_ / "flat").string();
    const Json line = RemoteJson({"download", ToLibraryPath(source_.Path()), here, "--no-recurse"});
    EXPECT_TRUE(line["ok"].get<bool>()) << line;
    for (const auto& [relative, contents] : ReadTree(work_ / "flat")) {
        EXPECT_EQ(relative.find('/'), std::string::npos) << relative;
        EXPECT_NE(contents, kDirectoryMark) << relative;
    }
}

TEST_F(CliTransfers, CopyOnTheHostAndRelayedFromAnotherHost) {
    const CliRun local =
        CliAgainstService::Remote({"copy", ToLibraryPath(source_.Path()), Remote("copied")});
    EXPECT_EQ(local.status, 0) << local.err;
    EXPECT_EQ(ReadTree(work_ / "copied"), ReadTree(source_.Path()));

    vagent::test::EndToEndService other;
    const std::string from = "127.0.0.1:" + std::to_string(other.Port());
    const Json relayed =
        RemoteJson({"copy", ToLibraryPath(source_.Path()), Remote("relayed"), "--from", from});
    EXPECT_EQ(relayed["result"]["from"], from) << relayed;
    EXPECT_EQ(ReadTree(work_ / "relayed"), ReadTree(source_.Path()));
}

TEST_F(CliTransfers, DownloadAndRelayNeedAHost) {
    const CliRun download = vagent::test::RunCli({"download", "C:\\a", "b"});
    EXPECT_EQ(download.status, 2);
    EXPECT_THAT(download.err, HasSubstr("needs a host"));
    EXPECT_EQ(vagent::test::RunCli({"copy", "a", "b", "--from", "127.0.0.1"}).status, 2);
}

TEST_F(CliTransfers, DirListAndExists) {
    const Json listing = RemoteJson({"dir", "list", ToLibraryPath(source_.Path())});
    ASSERT_TRUE(listing["ok"].get<bool>()) << listing;
    EXPECT_FALSE(listing["result"].empty());
    for (const Json& entry : listing["result"]) {
        EXPECT_TRUE(entry["type"] == "dir" || entry["type"] == "file") << entry;
    }
    const std::string missing = Remote("missing");
    const Json exists = RemoteJson({"exists", ToLibraryPath(source_.Path()), missing});
    ASSERT_EQ(exists["result"].size(), 2u) << exists;
    EXPECT_EQ(
        exists["result"][0],
        (Json{{"path", ToLibraryPath(source_.Path())}, {"exists", true}, {"directory", true}}));
    EXPECT_EQ(exists["result"][1]["path"], missing);
    EXPECT_EQ(exists["result"][1]["exists"], false);
    const CliRun text = CliAgainstService::Remote({"exists", missing});
    EXPECT_EQ(text.out.substr(0, text.out.find('\n')),
              "PATH" + std::string(missing.size() - 2, ' ') + "EXISTS  DIRECTORY");
    EXPECT_EQ(text.out.substr(text.out.find('\n') + 1, missing.size() + 9), missing + "  false  ");
}
