#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cli/CliHarness.h"
#include "facade/CaptureServer.h"
#include "platform/TextEncoding.h"
#include "vagent/ResultDecoders.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using vagent::test::AckReply;
using vagent::test::CaptureServer;
using vagent::test::CliRun;
using vagent::test::RefusedPort;
using vagent::test::RunCli;

// What vagentctl puts on the wire: the lists of one request in order, the
// frame's work environment and root site, and names in the target's code
// page, refused before anything is sent when the code page cannot hold
// them.

namespace {

constexpr std::uint32_t kAddUser = 2;
constexpr std::size_t kLengthWord = 4;

bool Decode2(const std::vector<std::uint8_t>& block, std::vector<std::string>& first,
             std::vector<std::string>& second) {
    if (block.size() < kLengthWord) {
        return false;
    }
    return ::Data2VecTString2(block.data() + kLengthWord,
                              static_cast<std::uint32_t>(block.size() - kLengthWord), first,
                              second) == 1;
}

std::string Hex(const std::vector<std::uint8_t>& bytes) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += std::string{kDigits[byte >> 4], kDigits[byte & 15], ' '};
    }
    return text;
}

}  // namespace

TEST(CliRequests, UserAddSendsOneRequestWhoseTwoListsPairInOrder) {
    CaptureServer server(AckReply(1));
    const CliRun run = RunCli({"-H", "127.0.0.1:" + server.Port(), "--env", "3", "--root-site",
                               "OU=Staff", "user", "add"},
                              "ann:First1\nbob:Second2\ncid:Third3\n");
    EXPECT_EQ(run.status, 0) << run.err;
    const vagent::test::CapturedFrame& frame = server.Frame();
    ASSERT_TRUE(frame.complete);
    EXPECT_EQ(frame.taskId, kAddUser);
    EXPECT_EQ(frame.workEnv, 3);
    EXPECT_EQ(frame.rootSite, "OU=Staff");
    std::vector<std::string> names;
    std::vector<std::string> passwords;
    ASSERT_TRUE(Decode2(frame.block, names, passwords));
    EXPECT_THAT(names, ElementsAre("ann", "bob", "cid"));
    EXPECT_THAT(passwords, ElementsAre("First1", "Second2", "Third3"));
}

TEST(CliRequests, PasswordsAreNeverTakenFromArguments) {
    const CliRun run = RunCli({"-H", "127.0.0.1:" + RefusedPort(), "user", "add", "ann:pw"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(RunCli({"service", "set-account", "svc", "acct", "pw"}).status, 2);
}

TEST(CliRequests, CodePage1252CarriesUmlautsAsSingleBytes) {
    CaptureServer server(AckReply(1));
    const CliRun run = RunCli({"-H", "127.0.0.1:" + server.Port(), "--codepage", "1252", "user",
                               "delete", "J\xC3\xBCrgen"});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::vector<std::uint8_t> name = {0x4A, 0xFC, 0x72, 0x67, 0x65, 0x6E};
    const std::vector<std::uint8_t>& block = server.Frame().block;
    EXPECT_NE(std::search(block.begin(), block.end(), name.begin(), name.end()), block.end())
        << Hex(block);
    EXPECT_EQ(run.out, "deleted: J\xC3\xBCrgen\n");
}

// The port refuses connections: an error that is not the connection's shows
// that none was tried.
TEST(CliRequests, ANameOutsideTheCodePageIsRefusedBeforeConnecting) {
    const CliRun run = RunCli({"-H", "127.0.0.1:" + RefusedPort(), "--codepage", "1252", "--json",
                               "user", "delete", "\xE5\xBC\xA0\xE4\xB8\x89"});
    EXPECT_EQ(run.status, 1);
    ASSERT_EQ(run.JsonLines().size(), 1u);
    const nlohmann::json error = run.JsonLines()[0]["error"];
    EXPECT_EQ(error["code"], 0xE6000001u);
    EXPECT_EQ(error["text"], "\"\xE5\xBC\xA0\xE4\xB8\x89\" cannot be written in code page 1252");
}

// Where the facade's text is UTF-8 the client converts it to the target's
// code page itself; where it is the system's ANSI code page, a name that
// code page cannot hold is refused.
TEST(CliRequests, ANameOfCodePage936TravelsInItOrIsRefused) {
    const unsigned system = vagentctl::platform::SystemCodePage();
    if (system != vagentctl::platform::kUtf8CodePage && system != 936) {
        const CliRun run = RunCli({"-H", "127.0.0.1:" + RefusedPort(), "--codepage", "936", "user",
                                   "delete", "\xE5\xBC\xA0"});
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.err, HasSubstr("cannot be written in code page " + std::to_string(system)));
        return;
    }
    CaptureServer server(AckReply(1));
    const CliRun run = RunCli({"-H", "127.0.0.1:" + server.Port(), "--codepage", "936", "user",
                               "delete", "\xE5\xBC\xA0"});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::vector<std::uint8_t> name = {0xD5, 0xC5};
    const std::vector<std::uint8_t>& block = server.Frame().block;
    EXPECT_NE(std::search(block.begin(), block.end(), name.begin(), name.end()), block.end())
        << Hex(block);
}
