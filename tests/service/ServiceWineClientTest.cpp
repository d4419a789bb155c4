#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "helpers/TempDir.h"
#include "os/ComputerNames.h"
#include "os/VersionInfo.h"
#include "service/EndToEndTree.h"
#include "service/TestClient.h"

using vagent::test::Append;
using vagent::test::BigEndianBytes;
using vagent::test::Bytes;
using vagent::test::CallService;
using vagent::test::EndFrameBytes;
using vagent::test::ItemBlockBytes;
using vagent::test::MakeSampleTree;
using vagent::test::ParsedFrame;
using vagent::test::ParseTransferStream;
using vagent::test::ReadEnd;
using vagent::test::ReadTree;
using vagent::test::Received;
using vagent::test::ReplyBytes;
using vagent::test::RequestFrameBytes;
using vagent::test::TempDir;
using vagent::test::TestClient;
using vagent::test::TextBlockBytes;
using vagent::test::TextBytes;
using vagent::test::ToLibraryPath;
using vagent::test::TreeContents;
using vagent::test::TreeUploadBytes;
using vagent::test::WriteWholeFile;

// The client half of the tests of vagentd as a program of its own (under
// Wine, the Windows build against the Win32 implementation): the driver
// script starts vagentd and names its port in VAGENT_SERVICE_PORT. Without it
// these tests are skipped, and the script counts a skip as a failure.

namespace {

constexpr std::uint32_t kLimitMilliseconds = 20000;

class ServiceProgram : public ::testing::Test {
protected:
    void SetUp() override {
        const char* port = std::getenv("VAGENT_SERVICE_PORT");
        if (port == nullptr || *port == '\0') {
            GTEST_SKIP() << "VAGENT_SERVICE_PORT names no running vagentd";
        }
        port_ = static_cast<std::uint16_t>(std::atoi(port));
    }

    Received Exchange(std::uint32_t taskId, const Bytes& block, const Bytes& stream) {
        TestClient client;
        Received failed;
        if (!client.Connect(port_) || !client.Send(RequestFrameBytes(taskId, 0, "", block)) ||
            (!stream.empty() && !client.Send(stream))) {
            return failed;
        }
        return client.ReadUntilEnd(kLimitMilliseconds);
    }

    std::uint16_t port_ = 0;
};

// The version code of this system's own version record, for the versions a
// test machine can have.
std::string ExpectedVersionCode() {
    vagent::os::VersionRecord record;
    EXPECT_EQ(vagent::os::Installed<vagent::os::VersionInfo>().Version(record), 0u);
    if (record.majorVersion == 5 && record.minorVersion == 0) {
        return "7";
    }
    if (record.majorVersion == 5 && record.minorVersion == 1) {
        return "8";
    }
    return record.majorVersion >= 5 ? "9" : "unexpected version";
}

std::string OwnDnsHostName() {
    std::vector<char> buffer(1024, '\0');
    std::uint32_t size = static_cast<std::uint32_t>(buffer.size());
    EXPECT_EQ(vagent::os::Installed<vagent::os::ComputerNames>().ComputerNameEx(
                  vagent::os::kComputerNameDnsHostname, buffer.data(), size),
              0u);
    return std::string(buffer.data());
}

}  // namespace

TEST_F(ServiceProgram, AnswersTheHostName) {
    const Received reply = Exchange(34, Bytes{}, Bytes{});
    EXPECT_EQ(reply.bytes, ReplyBytes(0, TextBlockBytes({OwnDnsHostName()})));
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
}

TEST_F(ServiceProgram, AnswersTheVersionCode) {
    const Received reply = Exchange(35, Bytes{}, Bytes{});
    EXPECT_EQ(reply.bytes, ReplyBytes(0, TextBlockBytes({ExpectedVersionCode()})));
}

TEST_F(ServiceProgram, ListsATemporaryDirectory) {
    TempDir dir;
    WriteWholeFile(dir / "b.txt", "b");
    WriteWholeFile(dir / "A.txt", "a");
    std::filesystem::create_directory(dir / "c");
    const Received reply = Exchange(28, TextBlockBytes({dir.LibraryPath() + "*"}), Bytes{});
    EXPECT_EQ(reply.bytes, ReplyBytes(0, ItemBlockBytes({TextBytes("A.txt"), BigEndianBytes(0),
                                                         TextBytes("b.txt"), BigEndianBytes(0),
                                                         TextBytes("c"), BigEndianBytes(1)})));
}

TEST_F(ServiceProgram, UploadedTreeStreamsBackByteIdentical) {
    TempDir source;
    TempDir target;
    MakeSampleTree(source.Path());
    const TreeContents tree = ReadTree(source.Path());
    const std::string uploaded = ToLibraryPath(target / "up");
    Bytes stream = TreeUploadBytes(tree, uploaded);
    Append(stream, EndFrameBytes(0));
    const Received upload = Exchange(45, TextBlockBytes({"0"}), stream);
    EXPECT_EQ(upload.bytes, EndFrameBytes(0));
    EXPECT_EQ(ReadTree(target / "up"), tree);

    const std::string named = "Z:\\streamed\\back";
    const Received back =
        Exchange(44, TextBlockBytes({"", "0", uploaded, named, "1", "0"}), Bytes{});
    std::vector<ParsedFrame> frames;
    ASSERT_TRUE(ParseTransferStream(back.bytes, frames));
    ASSERT_FALSE(frames.empty());
    EXPECT_EQ(frames.back().blockSize, 0u) << "the end frame's status";
    TreeContents streamed;
    for (const ParsedFrame& frame : frames) {
        if (frame.name.rfind(named + "\\", 0) == 0 && (frame.attributes & 0x10) == 0) {
            std::string relative = frame.name.substr(named.size() + 1);
            for (char& c : relative) {
                c = c == '\\' ? '/' : c;
            }
            streamed[relative] = frame.contents;
        }
    }
    TreeContents files;
    for (const auto& [relative, contents] : tree) {
        if (contents != vagent::test::kDirectoryMark) {
            files[relative] = contents;
        }
    }
    EXPECT_EQ(streamed, files);
}
