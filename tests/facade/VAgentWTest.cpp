#include "vagent/VAgentW.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "facade/VAgentWConnectionCounter.h"
#include "facade/VAgentWTestHost.h"
#include "os/NetApi.h"
#include "vagent/LdapRootSite.h"
#include "vagent/VAgent.h"
#include "vagent/VTask.h"

using ::testing::ElementsAre;
using vagent::test::ActiveCodePage;
using vagent::test::ConnectionCounter;
using vagent::test::VAgentWTestHost;

namespace {

constexpr std::uint32_t kWorkstation = 0x1003;
constexpr std::uint32_t kPrimaryController = 0x100B;

std::wstring PortText(std::uint16_t port) {
    return std::to_wstring(port);
}

}  // namespace

TEST(VAgentW, KeepsTheNarrowAgentsLayout) {
    EXPECT_EQ(sizeof(VAgentW), sizeof(VAgent));
}

TEST(VAgentW, StartsLocalInTheLocalEnvironmentWithNoError) {
    VAgentW agent;
    std::wstring host = L"stale";
    std::wstring port = L"stale";
    agent.GetAgentSite(host, port);
    EXPECT_EQ(host, L"");
    EXPECT_EQ(port, L"");
    EXPECT_EQ(agent.GetWorkEnv(), 0);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST(VAgentW, ThreeArgumentConstructorKeepsThePortEvenWithoutAHost) {
    VAgentW agent(3, L"", L"1234");
    std::wstring host = L"stale";
    std::wstring port;
    agent.GetAgentSite(host, port);
    EXPECT_EQ(host, L"");
    EXPECT_EQ(port, L"1234");
    EXPECT_EQ(agent.GetWorkEnv(), 3);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST(VAgentW, HostOfTwentyFourCharactersReadsOnIntoThePort) {
    VAgentW agent;
    agent.SetAgentSite(L"123456789012345678901234567", L"12345678");
    std::wstring host;
    std::wstring port;
    agent.GetAgentSite(host, port);
    EXPECT_EQ(host, L"123456789012345678901234123456");
    EXPECT_EQ(port, L"123456");
}

TEST(VAgentW, SetWorkEnvHandsBackThePreviousValue) {
    VAgentW agent;
    int previous = -1;
    EXPECT_EQ(agent.SetWorkEnv(1, &previous), 1);
    EXPECT_EQ(previous, 0);
    EXPECT_EQ(agent.SetWorkEnv(2, nullptr), 1);
    EXPECT_EQ(agent.GetWorkEnv(), 2);
}

TEST(VAgentW, SetErrorCodeReturnsThePreviousCode) {
    VAgentW agent;
    EXPECT_EQ(agent.SetErrorCode(0xE6000003u), 0u);
    EXPECT_EQ(agent.SetErrorCode(5), 0xE6000003u);
    EXPECT_EQ(agent.GetErrorCode(), 5u);
}

TEST(VAgentW, RootSiteIsStoredNarrowAndReplacesTheProcessWideOne) {
    VAgentWTestHost host;
    VAgentW agent;
    std::wstring site = L"OU=B\u00FCro";
    agent.SetLDAPRootSite(site);
    EXPECT_EQ(GetLDAPRootSite(), ActiveCodePage("OU=B\xC3\xBCro", "OU=B\xFCro"));
}

TEST(VAgentW, CopiesCarryEveryField) {
    VAgentWTestHost host;
    VAgentW original(1, L"127.0.0.1", L"4321");
    original.SetErrorCode(87);
    VAgentW copied(original);
    VAgentW assigned;
    assigned = original;
    for (VAgentW* agent : {&copied, &assigned}) {
        std::wstring address;
        std::wstring port;
        agent->GetAgentSite(address, port);
        EXPECT_EQ(address, L"127.0.0.1");
        EXPECT_EQ(port, L"4321");
        EXPECT_EQ(agent->GetWorkEnv(), 1);
        EXPECT_EQ(agent->GetErrorCode(), 87u);
    }
}

TEST(VAgentW, FreshObjectsErrorMessageIsTheSystemsTextForSuccess) {
    VAgentWTestHost host;
    host.messages.texts[0] = "The operation completed successfully.\r\n";
    VAgentW agent;
    std::wstring text = L"stale";
    EXPECT_EQ(agent.GetErrorMessage(text), 1);
    EXPECT_EQ(text, L"The operation completed successfully.\r\n");
}

TEST(VAgentW, ErrorMessageOfTheLibrarysOwnCodes) {
    VAgentWTestHost host;
    VAgentW agent;
    std::wstring text;
    agent.SetErrorCode(0xE6000001u);
    agent.GetErrorMessage(text);
    EXPECT_EQ(text, L"Invalid Parameter.");
    agent.SetErrorCode(0xE6000004u);
    agent.GetErrorMessage(text);
    EXPECT_EQ(text, L"Net Receive Data Len Error.");
    agent.SetErrorCode(0xE6000042u);
    agent.GetErrorMessage(text);
    EXPECT_EQ(text, L"Unknow Error.");
}

TEST(VAgentW, ErrorMessageIsTheNarrowAgentsTextForTheSameCode) {
    VAgentWTestHost host;
    host.messages.texts[5] = "Zugriff verweigert f\xFCr J\xFCrgen.";
    VAgentW wide;
    VAgent narrow;
    wide.SetErrorCode(5);
    narrow.SetErrorCode(5);
    std::wstring wideText;
    std::string narrowText;
    wide.GetErrorMessage(wideText);
    narrow.GetErrorMessage(narrowText);
    std::wstring expected;
    VAgentW::string2wstring(narrowText, expected);
    EXPECT_EQ(wideText, expected);
    EXPECT_FALSE(wideText.empty());
}

TEST(VAgentW, AddUserWithTwoNamesAndOnePasswordSendsNothing) {
    VAgentWTestHost host;
    ConnectionCounter counter;
    VAgentW agent(0, L"127.0.0.1", PortText(counter.Port()));
    agent.SetErrorCode(1234);
    std::vector<std::wstring> names = {L"Ann", L"Bob"};
    std::vector<std::wstring> passwords = {L"secret"};
    EXPECT_EQ(agent.AddUser(names, passwords), 0);
    EXPECT_EQ(agent.GetErrorCode(), 1234u);
    EXPECT_EQ(counter.Count(), 0);
    EXPECT_THAT(host.log.Texts(), ElementsAre("AddUser : userNames.size != userPasswds.size"));
}

TEST(VAgentW, ChangePasswdWithListsOfDifferentLengthsSendsNothing) {
    VAgentWTestHost host;
    ConnectionCounter counter;
    VAgentW agent(0, L"127.0.0.1", PortText(counter.Port()));
    agent.SetErrorCode(1234);
    std::vector<std::wstring> names = {L"Ann", L"Bob"};
    std::vector<std::wstring> oldPasswords = {L"a", L"b"};
    std::vector<std::wstring> newPasswords = {L"c"};
    EXPECT_EQ(agent.ChangePasswd(names, oldPasswords, newPasswords), 0);
    EXPECT_EQ(agent.GetErrorCode(), 1234u);
    EXPECT_EQ(counter.Count(), 0);
    EXPECT_THAT(host.log.Texts(),
                ElementsAre("ChangePasswd : userNames.size != oldPasswds.size || oldPasswds.size "
                            "!= newPasswds.size"));
}

TEST(VAgentW, ChangePasswdChecksTheFirstTwoListsToo) {
    VAgentWTestHost host;
    VAgentW agent;
    std::vector<std::wstring> names = {L"Ann"};
    std::vector<std::wstring> oldPasswords = {L"a", L"b"};
    std::vector<std::wstring> newPasswords = {L"c", L"d"};
    EXPECT_EQ(agent.ChangePasswd(names, oldPasswords, newPasswords), 0);
    EXPECT_TRUE(host.accounts.calls.empty());
    EXPECT_EQ(host.log.Texts().size(), 1u);
}

TEST(VAgentW, LocalCallLeavesErrorCodeZeroAfterAnEarlierRemoteFailure) {
    VAgentWTestHost host;
    std::uint16_t closedPort = 0;
    {
        ConnectionCounter gone;
        closedPort = gone.Port();
    }
    VAgentW agent(0, L"127.0.0.1", PortText(closedPort));
    std::vector<std::wstring> names = {L"Ann"};
    EXPECT_EQ(agent.DeleteUser(names), 0);
    ASSERT_NE(agent.GetErrorCode(), 0u);
    agent.SetAgentSite(L"", L"");
    host.accounts.users[L"Ann"] = {L"pw", L""};
    EXPECT_EQ(agent.DeleteUser(names), 1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
    EXPECT_EQ(host.accounts.users.count(L"Ann"), 0u);
}

TEST(VAgentW, FailedLocalCallLeavesErrorCodeZeroToo) {
    VAgentWTestHost host;
    VAgentW agent;
    agent.SetErrorCode(10061);
    std::vector<std::wstring> names = {L"Nobody"};
    EXPECT_EQ(agent.DeleteUser(names), 0);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST(VAgentW, PrivilegeAndRenameMethodsDoNothing) {
    VAgentWTestHost host;
    ConnectionCounter counter;
    VAgentW agent(0, L"127.0.0.1", PortText(counter.Port()));
    agent.SetErrorCode(77);
    std::wstring name = L"Ann";
    std::vector<VPrivilege*> privileges;
    std::vector<std::wstring> oldNames = {L"Ann"};
    std::vector<std::wstring> newNames = {L"Anna"};
    EXPECT_EQ(agent.AddUserPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.RemoveUserPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.ShowUserPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.AddGroupPrivlege(name, privileges), 0);
    EXPECT_EQ(agent.RemoveGroupPrivlege(name, privileges), 0);
    EXPECT_EQ(agent.ShowGroupPrivilege(name, privileges), 0);
    EXPECT_EQ(agent.RenameUser(oldNames, newNames), 0);
    EXPECT_EQ(agent.RenameGroup(oldNames, newNames), 0);
    EXPECT_EQ(agent.GetErrorCode(), 77u);
    EXPECT_EQ(counter.Count(), 0);
    EXPECT_TRUE(host.accounts.calls.empty());
}

TEST(VAgentW, DomainControllerIsFoundWithAWideName) {
    VAgentWTestHost host;
    host.accounts.servers = {vagent::os::ServerInfo101{L"TS01", kWorkstation},
                             vagent::os::ServerInfo101{L"DC\u00DC1", kPrimaryController}};
    VAgentW agent;
    agent.SetErrorCode(99);
    std::wstring name;
    EXPECT_EQ(agent.GetDnCtrl(name), 1);
    EXPECT_EQ(name, L"DC\u00DC1");
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST(VAgentW, FailedDomainControllerLookupKeepsTheSystemsLastError) {
    VAgentWTestHost host;
    host.accounts.FailOn("ServerEnum <null> 101 4294967295 2 <null> 0", 6118);
    // A failed enumeration answers its status and leaves the thread's last
    // error as it was, which is what the agent keeps.
    host.accounts.SetLastError(1234);
    VAgentW agent;
    std::wstring name = L"kept";
    EXPECT_EQ(agent.GetDnCtrl(name), 0);
    EXPECT_EQ(name, L"kept");
    EXPECT_EQ(agent.GetErrorCode(), 1234u);
}

TEST(VAgentW, ComputerRoleChecksAnswerAsTheNarrowAgents) {
    VAgentWTestHost host;
    host.names.names[0] = "TS01";
    host.accounts.servers = {vagent::os::ServerInfo101{L"TS01", kWorkstation}};
    int wideDc = -1;
    int narrowDc = -1;
    EXPECT_EQ(VAgentW::IsDnCtrl(wideDc), VAgent::IsDnCtrl(narrowDc));
    EXPECT_EQ(wideDc, narrowDc);
    int wideMember = -1;
    int narrowMember = -1;
    EXPECT_EQ(VAgentW::IsComputer(wideMember), 1);
    VAgent::IsComputer(narrowMember);
    EXPECT_EQ(wideMember, 1);
    EXPECT_EQ(narrowMember, 1);
}

TEST(VAgentW, CreateVTaskMakesTheTaskOfTheId) {
    std::unique_ptr<VTask> task(VAgentW::CreateVTask(2));
    ASSERT_NE(task, nullptr);
    EXPECT_EQ(task->GetTaskId(), 2u);
    EXPECT_EQ(VAgentW::CreateVTask(48), nullptr);
}

TEST(VAgentW, EveryCallPutsItsRootSiteBackInPlace) {
    VAgentWTestHost host;
    VAgentW agent;
    std::wstring site = L"OU=Staff";
    agent.SetLDAPRootSite(site);
    std::string other = "OU=Other";
    SetLDAPRootSite(other);
    std::vector<std::wstring> names = {L"Nobody"};
    agent.DeleteUser(names);
    EXPECT_EQ(GetLDAPRootSite(), "OU=Staff");
}

TEST(VAgentW, CallsRunInTheObjectsWorkEnvironment) {
    VAgentWTestHost host;
    host.accounts.users[L"Ann"] = {L"pw", L""};
    VAgentW agent;
    agent.SetWorkEnv(1, nullptr);
    std::vector<std::wstring> names = {L"Ann"};
    agent.DeleteUser(names);
    EXPECT_EQ(host.accounts.users.count(L"Ann"), 1u);
    agent.SetWorkEnv(0, nullptr);
    EXPECT_EQ(agent.DeleteUser(names), 1);
    EXPECT_EQ(host.accounts.users.count(L"Ann"), 0u);
}
