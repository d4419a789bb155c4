#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "CaptureServer.h"
#include "os/SystemMessages.h"
#include "vagent/VAgent.h"

namespace {

// No service listens on port 1 of the loopback address.
const char* const kClosedPort = "1";

std::string SystemText(std::uint32_t code) {
    std::string text;
    vagent::os::Installed<vagent::os::SystemMessages>().MessageText(code, text);
    return text;
}

std::string MessageOf(VAgent& agent) {
    std::string text = "unset";
    EXPECT_EQ(agent.GetErrorMessage(text), 1);
    return text;
}

}  // namespace

TEST(VAgent, AnEmptyHostRunsLocallyWhateverThePort) {
    VAgent agent(0, "", kClosedPort);
    agent.SetErrorCode(99);
    int version = -1;
    EXPECT_EQ(agent.GetHostVersion(version), 0);
    EXPECT_EQ(agent.GetErrorCode(), 99u);
    std::string host = "x", port = "y";
    agent.GetAgentSite(host, port);
    EXPECT_EQ(host, "");
    EXPECT_EQ(port, "");
}

TEST(VAgent, AHostOf24OrMoreCharactersIsCutAndRunsOnIntoThePort) {
    VAgent agent(0, "123456789012345678901234567", "4321");
    std::string host, port;
    agent.GetAgentSite(host, port);
    EXPECT_EQ(host, "1234567890123456789012344321");
    EXPECT_EQ(port, "4321");
}

TEST(VAgent, APortOfSixOrMoreCharactersIsCutToSix) {
    VAgent agent;
    agent.SetAgentSite("127.0.0.1", "12345678");
    std::string host, port;
    agent.GetAgentSite(host, port);
    EXPECT_EQ(host, "127.0.0.1");
    EXPECT_EQ(port, "123456");
}

TEST(VAgent, SetErrorCodeReturnsThePreviousCode) {
    VAgent agent;
    EXPECT_EQ(agent.SetErrorCode(5), 0u);
    EXPECT_EQ(agent.SetErrorCode(7), 5u);
    EXPECT_EQ(agent.GetErrorCode(), 7u);
}

TEST(VAgent, TheMessageForCodeZeroIsTheSystemsTextForSuccess) {
    VAgent agent;
    EXPECT_EQ(MessageOf(agent), SystemText(0));
    EXPECT_FALSE(MessageOf(agent).empty());
}

TEST(VAgent, TheLibrarysOwnCodesReadFromItsTable) {
    VAgent agent;
    agent.SetErrorCode(0xE6000001u);
    EXPECT_EQ(MessageOf(agent), "Invalid Parameter.");
    agent.SetErrorCode(0xE6000002u);
    EXPECT_EQ(MessageOf(agent), "Invalid Setting.");
    agent.SetErrorCode(0xE6000003u);
    EXPECT_EQ(MessageOf(agent), "Net Receive Data Error.");
    agent.SetErrorCode(0xE6000004u);
    EXPECT_EQ(MessageOf(agent), "Net Receive Data Len Error.");
    agent.SetErrorCode(0x20000000u);
    EXPECT_EQ(MessageOf(agent), "Unknow Error.");
}

TEST(VAgent, EveryPrivilegeAndRenameMethodReturnsZeroAndKeepsTheCode) {
    VAgent agent(0, "127.0.0.1", kClosedPort);
    agent.SetErrorCode(42);
    std::string name = "ann";
    std::vector<VPrivilege*> privileges;
    std::vector<std::string> first = {"a"}, second = {"b"};
    EXPECT_EQ(agent.AddUserPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.RemoveUserPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.ShowUserPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.AddGroupPrivlege(name, privileges), 0);
    EXPECT_EQ(agent.RemoveGroupPrivlege(name, privileges), 0);
    EXPECT_EQ(agent.ShowGroupPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.RenameUser(first, second), 0);
    EXPECT_EQ(agent.RenameGroup(first, second), 0);
    EXPECT_EQ(agent.GetErrorCode(), 42u);
}

TEST(VAgent, AFailureBeforeSendingKeepsThePreviousCode) {
    VAgent agent(0, "127.0.0.1", kClosedPort);
    agent.SetErrorCode(42);
    std::vector<std::string> names = {"ann", "bob"}, passwords = {"p"};
    EXPECT_EQ(agent.AddUser(names, passwords), 0);
    EXPECT_EQ(agent.GetErrorCode(), 42u);
}

TEST(VAgent, ARefusedConnectionGivesItsSocketCodeAndText) {
    VAgent agent(0, "127.0.0.1", kClosedPort);
    std::string name;
    EXPECT_EQ(agent.GetHostName(name), 0);
    EXPECT_EQ(agent.GetErrorCode(), 10061u);
    EXPECT_EQ(MessageOf(agent), SystemText(10061));
}

TEST(VAgent, AnUnparseableAddressFailsWithTheConnectionsCode) {
    VAgent agent(0, "999.1.1.1", "1234");
    std::string name;
    EXPECT_EQ(agent.GetHostName(name), 0);
    EXPECT_NE(agent.GetErrorCode(), 0u);
    EXPECT_EQ(agent.GetErrorCode() & 0x20000000u, 0u);
    EXPECT_EQ(MessageOf(agent), SystemText(static_cast<std::uint32_t>(agent.GetErrorCode())));
}

TEST(VAgent, AServiceThatNeverAnswersTimesOutAfterTheReceiveLimit) {
    vagent::test::CaptureServer server({});
    VAgent agent(0, "127.0.0.1", server.Port());
    const auto start = std::chrono::steady_clock::now();
    std::string name;
    EXPECT_EQ(agent.GetHostName(name), 0);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(agent.GetErrorCode(), 10060u);
    EXPECT_EQ(MessageOf(agent), SystemText(10060));
    EXPECT_LT(waited, std::chrono::seconds(8));
}

TEST(VAgent, RemoteCountsAreZeroWhenTheRequestCouldNotBeSent) {
    VAgent agent(0, "127.0.0.1", kClosedPort);
    EXPECT_EQ(agent.GetSessionCounts(), 0);
    EXPECT_EQ(agent.GetSessionCountsAll(), 0);
}

TEST(VAgent, CopiesCarryEveryField) {
    VAgent agent(3, "10.0.0.1", "99");
    agent.SetErrorCode(11);
    VAgent copy(agent);
    VAgent assigned;
    assigned = agent;
    std::string host, port;
    copy.GetAgentSite(host, port);
    EXPECT_EQ(host, "10.0.0.1");
    EXPECT_EQ(copy.GetWorkEnv(), 3);
    EXPECT_EQ(assigned.GetErrorCode(), 11u);
}

TEST(VAgent, SetWorkEnvHandsBackThePreviousValue) {
    VAgent agent;
    int previous = -1;
    EXPECT_EQ(agent.SetWorkEnv(2, &previous), 1);
    EXPECT_EQ(previous, 0);
    EXPECT_EQ(agent.SetWorkEnv(4, nullptr), 1);
    EXPECT_EQ(agent.GetWorkEnv(), 4);
}

TEST(VAgent, CreateVTaskIsTheFactory) {
    EXPECT_EQ(VAgent::CreateVTask(0), nullptr);
    EXPECT_EQ(VAgent::CreateVTask(48), nullptr);
}
