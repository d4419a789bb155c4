#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "helpers/TempDir.h"
#include "service/EndToEndHost.h"
#include "service/EndToEndService.h"
#include "service/TestClient.h"
#include "vagent/LdapRootSite.h"
#include "vagent/VTaskClient.h"

using vagent::test::AckBlockBytes;
using vagent::test::BigEndianBytes;
using vagent::test::Bytes;
using vagent::test::CallService;
using vagent::test::EndToEndHost;
using vagent::test::EndToEndService;
using vagent::test::ItemBlockBytes;
using vagent::test::ReadEnd;
using vagent::test::Received;
using vagent::test::ReplyBytes;
using vagent::test::RequestFrameBytes;
using vagent::test::TempDir;
using vagent::test::TextBlockBytes;
using vagent::test::TextBytes;
using vagent::test::ToLibraryPath;
using vagent::test::WriteWholeFile;

// Every task family served by the service in this process over loopback,
// against the in-memory host. Each expected reply is written out byte by
// byte from the fake's state.

namespace {

constexpr std::uint32_t kReplyLimitMilliseconds = 10000;
constexpr std::int32_t kLocal = 0;
constexpr std::int32_t kDomain = 1;
const std::string kUsersSite = "CN=Users";
const char kTerminalServerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Terminal Server";

// Puts the process-wide root site back after the requests changed it.
class SavedRootSite {
public:
    SavedRootSite() : saved_(GetLDAPRootSite()) {}
    ~SavedRootSite() { SetLDAPRootSite(saved_); }
    SavedRootSite(const SavedRootSite&) = delete;
    SavedRootSite& operator=(const SavedRootSite&) = delete;

private:
    std::string saved_;
};

class ServiceEndToEnd : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(service_.Started()) << service_.StartStatus(); }

    // One call through the library's own task client, as the facade makes
    // it; the client's code, with the decoded output in `output`.
    std::uint32_t ClientCall(std::uint32_t taskId, const Bytes& block, void* output) {
        VTaskClient client;
        const std::string port = std::to_string(service_.Port());
        EXPECT_EQ(client.SetServer("127.0.0.1", port.c_str()), 1);
        EXPECT_EQ(client.SetTask(taskId), 1);
        if (!block.empty()) {
            EXPECT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
        }
        if (client.SendRequest(kLocal, kUsersSite, vagent::os::kInvalidSocket, nullptr) != 1) {
            ADD_FAILURE() << "the request was not sent";
            return 0xFFFFFFFFu;
        }
        return client.GetTaskResult(output, nullptr);
    }

    Received Call(std::uint32_t taskId, const Bytes& block, std::int32_t workEnv = kLocal,
                  const std::string& rootSite = kUsersSite) {
        return CallService(service_.Port(), RequestFrameBytes(taskId, workEnv, rootSite, block),
                           kReplyLimitMilliseconds);
    }

    // The reply is exactly the expected bytes and the service closes the
    // connection after it.
    void ExpectReply(const Received& reply, const Bytes& expected) {
        EXPECT_EQ(reply.bytes, expected);
        EXPECT_EQ(reply.end, ReadEnd::kClosed);
    }

    SavedRootSite rootSite_;
    EndToEndHost host_;
    EndToEndService service_;
};

}  // namespace

TEST_F(ServiceEndToEnd, Id1ListsTheLocalAccountsWithTheirComments) {
    host_.accounts.users[L"alice"] = {L"pw", L"Help desk"};
    host_.accounts.users[L"bob"] = {L"pw", L""};
    const Received reply = Call(1, TextBlockBytes({"", "0"}));
    ExpectReply(reply, ReplyBytes(0, TextBlockBytes({"alice", "Help desk", "bob", ""})));
}

TEST_F(ServiceEndToEnd, Id2AddsLocalAccountsAndAcknowledgesOne) {
    const Received reply = Call(2, TextBlockBytes({"carol", "Secret1", "dave", "Secret2"}));
    ExpectReply(reply, ReplyBytes(0, AckBlockBytes(1)));
    ASSERT_EQ(host_.accounts.users.count(L"carol"), 1u);
    EXPECT_EQ(host_.accounts.users[L"carol"].password, L"Secret1");
    EXPECT_EQ(host_.accounts.users.count(L"dave"), 1u);
}

TEST_F(ServiceEndToEnd, Id2FailureStillAnswersStatusZeroWithAnAcknowledgementOfZero) {
    host_.accounts.FailOn("UserAdd <null> 1 carol", 5);
    const Received reply = Call(2, TextBlockBytes({"carol", "Secret1"}));
    ExpectReply(reply, ReplyBytes(0, AckBlockBytes(0)));
}

TEST_F(ServiceEndToEnd, Id2WithTheDomainWorkEnvironmentCreatesTheUserUnderTheFramesRootSite) {
    const Received reply = Call(2, TextBlockBytes({"erin", "Secret3"}), kDomain);
    ExpectReply(reply, ReplyBytes(0, AckBlockBytes(1)));
    const auto* erin = host_.directory.Find(L"CN=erin,CN=Users,DC=corp,DC=example,DC=com");
    ASSERT_NE(erin, nullptr);
    EXPECT_EQ(erin->password, L"Secret3");
    EXPECT_EQ(host_.accounts.users.count(L"erin"), 0u);
}

TEST_F(ServiceEndToEnd, Id15AddsALocalGroup) {
    const Received reply = Call(15, TextBlockBytes({"Operators"}));
    ExpectReply(reply, ReplyBytes(0, AckBlockBytes(1)));
    EXPECT_EQ(host_.accounts.localGroups.count(L"Operators"), 1u);
}

TEST_F(ServiceEndToEnd, Id24CountsTheSessionsOfThisSystem) {
    host_.sessions.AddSession(1, "vxp#1", 0);
    host_.sessions.AddSession(2, "VXP#2", 0);
    host_.sessions.AddSession(3, "Console", 0);
    const Received reply = Call(24, Bytes{});
    Bytes countBlock = BigEndianBytes(4);
    vagent::test::Append(countBlock, BigEndianBytes(2));
    ExpectReply(reply, ReplyBytes(0, countBlock));
}

TEST_F(ServiceEndToEnd, Id27ListsThePrintersWithTheirSessionNumbers) {
    const std::string sessionPrinter = "\xBB\xE1\xBB\xB0 3 HP";
    host_.spooler.printers = {"Office", sessionPrinter};
    const Received reply = Call(27, Bytes{});
    ExpectReply(reply,
                ReplyBytes(0, ItemBlockBytes({BigEndianBytes(0), TextBytes("Office"),
                                              BigEndianBytes(3), TextBytes(sessionPrinter)})));
}

TEST_F(ServiceEndToEnd, Id27WithoutPrintersAnswersStatusZeroAndAnAcknowledgementOfZero) {
    const Received reply = Call(27, Bytes{});
    ExpectReply(reply, ReplyBytes(0, AckBlockBytes(0)));
}

TEST_F(ServiceEndToEnd, Id28ListsADirectorySortedWithoutRegardToCase) {
    TempDir dir;
    WriteWholeFile(dir / "b.txt", "b");
    WriteWholeFile(dir / "A.txt", "a");
    std::filesystem::create_directory(dir / "c");
    const Received reply = Call(28, TextBlockBytes({dir.LibraryPath() + "*"}));
    ExpectReply(reply, ReplyBytes(0, ItemBlockBytes({TextBytes("A.txt"), BigEndianBytes(0),
                                                     TextBytes("b.txt"), BigEndianBytes(0),
                                                     TextBytes("c"), BigEndianBytes(1)})));
}

TEST_F(ServiceEndToEnd, Id29AnswersExistenceAndKindOfEveryPath) {
    TempDir dir;
    const Received reply =
        Call(29, TextBlockBytes({ToLibraryPath(dir.Path()), dir.LibraryPath() + "missing.txt"}));
    ExpectReply(reply, ReplyBytes(0, ItemBlockBytes({BigEndianBytes(1), BigEndianBytes(1),
                                                     BigEndianBytes(0), BigEndianBytes(1)})));
}

TEST_F(ServiceEndToEnd, Id32ReadsASettingAsResultAndValueTexts) {
    host_.registry.SetNumber(kTerminalServerKey, "fSingleSessionPerUser", 7);
    const Received reply = Call(32, TextBlockBytes({"0"}));
    ExpectReply(reply, ReplyBytes(0, TextBlockBytes({"1", "7"})));
}

TEST_F(ServiceEndToEnd, Id34AnswersTheDnsHostName) {
    host_.names.names[vagent::os::kComputerNameDnsHostname] = "agent-host";
    const Received reply = Call(34, Bytes{});
    ExpectReply(reply, ReplyBytes(0, TextBlockBytes({"agent-host"})));
    EXPECT_TRUE(host_.com.Balanced());
}

TEST_F(ServiceEndToEnd, Id35AnswersTheVersionCodeAsDecimalText) {
    host_.version.record = vagent::os::VersionRecord{5, 1, 2600, 2};
    const Received reply = Call(35, Bytes{});
    ExpectReply(reply, ReplyBytes(0, TextBlockBytes({"8"})));
}

TEST_F(ServiceEndToEnd, Id38AnswersStatusZeroAndAnAcknowledgementOfZero) {
    const Received reply = Call(38, TextBlockBytes({"x"}));
    ExpectReply(reply, ReplyBytes(0, AckBlockBytes(0)));
}

TEST_F(ServiceEndToEnd, Id39FindsTheObjectUnderTheRootSiteTheFrameCarries) {
    host_.directory.AddEntry(L"CN=jdoe,CN=Staff,DC=corp,DC=example,DC=com", L"user");
    const Received found = Call(39, TextBlockBytes({"jdoe", "0"}), kDomain, "CN=Staff");
    ExpectReply(found, ReplyBytes(0, AckBlockBytes(1)));
    const Received missing = Call(39, TextBlockBytes({"jdoe", "0"}), kDomain, kUsersSite);
    ExpectReply(missing, ReplyBytes(0, AckBlockBytes(0)));
}

TEST_F(ServiceEndToEnd, Id46AnswersTheServicesStartAccount) {
    host_.services.services["Spooler"].config.startName = "LocalSystem";
    host_.services.services["Spooler"].config.hasStartName = true;
    const Received reply = Call(46, TextBlockBytes({"Spooler"}));
    ExpectReply(reply, ReplyBytes(0, TextBlockBytes({"LocalSystem"})));
    EXPECT_EQ(host_.services.openHandles, 0);
}

TEST_F(ServiceEndToEnd, Id46ForAMissingServiceAnswersOnlyTheErrorAsALittleEndianStatus) {
    const Received reply = Call(46, TextBlockBytes({"NoSuchService"}));
    ExpectReply(reply, Bytes{0x24, 0x04, 0x00, 0x00});
}

TEST_F(ServiceEndToEnd, RealClientReadsTheHostName) {
    host_.names.names[vagent::os::kComputerNameDnsHostname] = "agent-host";
    std::string name;
    EXPECT_EQ(ClientCall(34, Bytes{}, &name), 0u);
    EXPECT_EQ(name, "agent-host");
}

TEST_F(ServiceEndToEnd, RealClientGetsTheAcknowledgementOfAnAddedUser) {
    std::uint32_t acknowledged = 0;
    EXPECT_EQ(ClientCall(2, TextBlockBytes({"frank", "Secret4"}), &acknowledged), 0u);
    EXPECT_EQ(acknowledged, 1u);
    EXPECT_EQ(host_.accounts.users.count(L"frank"), 1u);
}

TEST_F(ServiceEndToEnd, RealClientGetsTheServicesErrorCodeAsItsResult) {
    std::string account = "unchanged";
    EXPECT_EQ(ClientCall(46, TextBlockBytes({"NoSuchService"}), &account), 1060u);
    EXPECT_EQ(account, "unchanged");
}
