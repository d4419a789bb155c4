#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CaptureServer.h"
#include "helpers/TaskRun.h"
#include "vagent/LdapRootSite.h"
#include "vagent/VAgent.h"

using vagent::test::AckReply;
using vagent::test::CaptureServer;
using vagent::test::HeadBlock;
using vagent::test::Items;
using vagent::test::ItemsReply;
using vagent::test::ListBlock;
using vagent::test::NumberItem;
using vagent::test::PairBlock;
using vagent::test::PayloadReply;
using vagent::test::StatusReply;
using vagent::test::TripleBlock;

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr int kWorkEnv = 7;

// Every remote call is checked against a one-shot service: the request frame
// it received (task id, work environment, root site, block) and what the
// caller got from the canned reply.
class VAgentRemote : public ::testing::Test {
protected:
    void TearDown() override {
        std::string defaultSite = "CN=Users";
        SetLDAPRootSite(defaultSite);
    }

    VAgent AgentFor(const CaptureServer& server) {
        VAgent agent(kWorkEnv, "127.0.0.1", server.Port());
        std::string site = "OU=Staff";
        agent.SetLDAPRootSite(site);
        return agent;
    }

    void ExpectRequest(CaptureServer& server, std::uint32_t taskId, const Bytes& block) {
        const vagent::test::CapturedFrame& frame = server.Frame();
        ASSERT_TRUE(frame.complete);
        EXPECT_EQ(frame.taskId, taskId);
        EXPECT_EQ(frame.workEnv, kWorkEnv);
        EXPECT_EQ(frame.rootSite, "OU=Staff");
        EXPECT_EQ(frame.block, block);
    }
};

Bytes EndFrame(std::uint32_t status) {
    return {17,
            0,
            0,
            0,
            0xFF,
            0xFF,
            0xFF,
            0xFF,
            0,
            0,
            0,
            0,
            static_cast<std::uint8_t>(status),
            static_cast<std::uint8_t>(status >> 8),
            static_cast<std::uint8_t>(status >> 16),
            static_cast<std::uint8_t>(status >> 24),
            1,
            0,
            0,
            0,
            0};
}

}  // namespace

TEST_F(VAgentRemote, GetUserSendsNameAndFlagTextAndDecodesRecords) {
    CaptureServer server(ItemsReply({"ann", "Ann Lee", "bob", "Bob"}));
    VAgent agent = AgentFor(server);
    std::string base = "OU=People";
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(agent.GetUser(base, users, 5), 1);
    ExpectRequest(server, 1, ListBlock({"OU=People", "1"}));
    ASSERT_EQ(users.size(), 2u);
    EXPECT_EQ(users[1].name, "bob");
    EXPECT_EQ(users[0].comment, "Ann Lee");
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_F(VAgentRemote, AddUserSendsPairsAndNeedsANonZeroAcknowledgement) {
    CaptureServer server(AckReply(0));
    VAgent agent = AgentFor(server);
    std::vector<std::string> names = {"ann", "bob"};
    std::vector<std::string> passwords = {"p1", "p2"};
    EXPECT_EQ(agent.AddUser(names, passwords), 0);
    ExpectRequest(server, 2, PairBlock(names, passwords));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_F(VAgentRemote, DeleteUserSendsTheList) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> names = {"ann"};
    EXPECT_EQ(agent.DeleteUser(names), 1);
    ExpectRequest(server, 3, ListBlock(names));
}

TEST_F(VAgentRemote, ChangePasswdSendsTriples) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> names = {"ann"}, oldPasswords = {"a"}, newPasswords = {"b"};
    EXPECT_EQ(agent.ChangePasswd(names, oldPasswords, newPasswords), 1);
    ExpectRequest(server, 5, TripleBlock(names, oldPasswords, newPasswords));
}

TEST_F(VAgentRemote, GetUserGroupSendsTheUserAndDecodesGroups) {
    CaptureServer server(ItemsReply({"Staff", "Admins"}));
    VAgent agent = AgentFor(server);
    std::vector<_VXUserGroupA> groups;
    EXPECT_EQ(agent.GetUserGroup("ann", groups), 1);
    ExpectRequest(server, 6, ListBlock({"ann"}));
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[1].name, "Admins");
}

TEST_F(VAgentRemote, AddUserToGroupsSendsUserThenGroups) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Staff", "Sales"};
    EXPECT_EQ(agent.AddUserToGroups("ann", groups), 1);
    ExpectRequest(server, 7, HeadBlock("ann", groups));
}

TEST_F(VAgentRemote, AddUserToBuiltinGroupsSendsUserThenGroups) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Users"};
    EXPECT_EQ(agent.AddUserToBuiltinGroups("ann", groups), 1);
    ExpectRequest(server, 8, HeadBlock("ann", groups));
}

TEST_F(VAgentRemote, RemoveUserFromBuiltinGroupsSendsUserThenGroups) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Users"};
    EXPECT_EQ(agent.RemoveUserFromBuiltinGroups("ann", groups), 1);
    ExpectRequest(server, 9, HeadBlock("ann", groups));
}

TEST_F(VAgentRemote, RemoveUserFromGroupsSendsUserThenGroups) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.RemoveUserFromGroups("ann", groups), 1);
    ExpectRequest(server, 10, HeadBlock("ann", groups));
}

TEST_F(VAgentRemote, GetUserLoginNameSplitsTheTwoNames) {
    CaptureServer server(ItemsReply({"ann", "ann@x.y"}));
    VAgent agent = AgentFor(server);
    std::string account, principal;
    EXPECT_EQ(agent.GetUserLoginName("ann", account, principal), 1);
    ExpectRequest(server, 37, ListBlock({"ann"}));
    EXPECT_EQ(account, "ann");
    EXPECT_EQ(principal, "ann@x.y");
}

TEST_F(VAgentRemote, GetGroupSendsNameAndFlagTextAndPairsTheList) {
    CaptureServer server(ItemsReply({"Sales", "sellers", "Staff", "all", "odd"}));
    VAgent agent = AgentFor(server);
    std::string base;
    std::vector<_VXUserInfoA> groups;
    EXPECT_EQ(agent.GetGroup(base, groups, 0), 1);
    ExpectRequest(server, 14, ListBlock({"", "0"}));
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[1].comment, "all");
}

TEST_F(VAgentRemote, AddGroupSendsTheList) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.AddGroup(groups), 1);
    ExpectRequest(server, 15, ListBlock(groups));
}

TEST_F(VAgentRemote, RemoveGroupSendsTheList) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Sales", "Staff"};
    EXPECT_EQ(agent.RemoveGroup(groups), 1);
    ExpectRequest(server, 16, ListBlock(groups));
}

TEST_F(VAgentRemote, AddGroupUsersSendsGroupThenUsers) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> users = {"ann", "bob"};
    EXPECT_EQ(agent.AddGroupUsers("Sales", users), 1);
    ExpectRequest(server, 18, HeadBlock("Sales", users));
}

TEST_F(VAgentRemote, RemoveGroupUsersSendsGroupThenUsers) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    std::vector<std::string> users = {"ann"};
    EXPECT_EQ(agent.RemoveGroupUsers("Sales", users), 1);
    ExpectRequest(server, 19, HeadBlock("Sales", users));
}

TEST_F(VAgentRemote, ShowGroupUsersSendsTheGroupAndDecodesMembers) {
    CaptureServer server(ItemsReply({"ann", "bob"}));
    VAgent agent = AgentFor(server);
    std::vector<std::string> users;
    EXPECT_EQ(agent.ShowGroupUsers("Sales", users), 1);
    ExpectRequest(server, 20, ListBlock({"Sales"}));
    EXPECT_EQ(users, (std::vector<std::string>{"ann", "bob"}));
}

TEST_F(VAgentRemote, GetGroupUsersInfoSendsTheGroupAndDecodesRecords) {
    CaptureServer server(ItemsReply({"ann", "Ann"}));
    VAgent agent = AgentFor(server);
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(agent.GetGroupUsersInfo("Sales", users), 1);
    ExpectRequest(server, 42, ListBlock({"Sales"}));
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].comment, "Ann");
}

TEST_F(VAgentRemote, GetSessionCountsSendsNoBlockAndReturnsTheCount) {
    CaptureServer server(PayloadReply({0, 0, 0, 3}));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.GetSessionCounts(), 3);
    ExpectRequest(server, 24, {});
}

TEST_F(VAgentRemote, GetSessionCountsIsMinusOneWhenTheServiceFails) {
    CaptureServer server(StatusReply(5));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.GetSessionCounts(), -1);
    EXPECT_EQ(agent.GetErrorCode(), 5u);
}

TEST_F(VAgentRemote, GetSessionCountsAllSendsNoBlockAndReturnsTheCount) {
    CaptureServer server(PayloadReply({0, 0, 0, 9}));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.GetSessionCountsAll(), 9);
    ExpectRequest(server, 25, {});
}

TEST_F(VAgentRemote, GetSessionInfoDecodesRecordsOfFiveItems) {
    CaptureServer server(
        ItemsReply({NumberItem(4), "one", "00-11-22-33-44-55", "three", "10.0.0.9"}));
    VAgent agent = AgentFor(server);
    std::vector<_VXSessionA> sessions;
    EXPECT_EQ(agent.GetSessionInfo(sessions), 1);
    ExpectRequest(server, 26, {});
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].sessionId, 4);
    EXPECT_EQ(sessions[0].clientAddress, "10.0.0.9");
}

TEST_F(VAgentRemote, GetSysSettingWithTwoItemsReturnsTheFirstAndStoresTheSecond) {
    CaptureServer server(ItemsReply({"1", "3389"}));
    VAgent agent = AgentFor(server);
    long value = 0;
    EXPECT_EQ(agent.GetSysSetting(1, &value), 1);
    ExpectRequest(server, 32, ListBlock({"1"}));
    EXPECT_EQ(value, 3389);
}

TEST_F(VAgentRemote, GetSysSettingWithAnotherReplyTellsOnlyTheCode) {
    CaptureServer server(ItemsReply({"0"}));
    VAgent agent = AgentFor(server);
    long value = 42;
    EXPECT_EQ(agent.GetSysSetting(-1, &value), 1);
    ExpectRequest(server, 32, ListBlock({"-1"}));
    EXPECT_EQ(value, 42);
}

TEST_F(VAgentRemote, SetSysSettingWithOneItemReturnsIt) {
    CaptureServer server(ItemsReply({"0"}));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.SetSysSetting(7, 1), 0);
    ExpectRequest(server, 33, ListBlock({"7", "1"}));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_F(VAgentRemote, SessionLogoffSendsBothNumbers) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.SessionLogoff(12, 0), 1);
    ExpectRequest(server, 36, ListBlock({"12", "0"}));
}

TEST_F(VAgentRemote, EnableSSOSendsTheFlagTextAndNeedsANonEmptyAnswer) {
    CaptureServer server(AckReply(0));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.EnableSSO(7), 0);
    ExpectRequest(server, 40, ListBlock({"1"}));
}

TEST_F(VAgentRemote, EnableZ9SSOSendsTheFlagText) {
    CaptureServer server(AckReply(1));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.EnableZ9SSO(0), 1);
    ExpectRequest(server, 41, ListBlock({"0"}));
}

TEST_F(VAgentRemote, BroadcastMessageSendsTitleAndText) {
    CaptureServer server(AckReply(0));
    VAgent agent = AgentFor(server);
    std::string title = "Notice", message = "Going down";
    EXPECT_EQ(agent.BroadcastMessage(title, message), 1);
    ExpectRequest(server, 43, ListBlock({"Notice", "Going down"}));
}

TEST_F(VAgentRemote, GetPrinterInfoDecodesNumberAndName) {
    CaptureServer server(ItemsReply({NumberItem(3), "session 3 printer"}));
    VAgent agent = AgentFor(server);
    std::vector<_VXPrinterA> printers;
    EXPECT_EQ(agent.GetPrinterInfo(printers), 1);
    ExpectRequest(server, 27, {});
    ASSERT_EQ(printers.size(), 1u);
    EXPECT_EQ(printers[0].sessionId, 3);
}

TEST_F(VAgentRemote, DirListSendsThePathAndDecodesEntries) {
    CaptureServer server(ItemsReply({"a.txt", NumberItem(0), "sub", NumberItem(1)}));
    VAgent agent = AgentFor(server);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(agent.DirList("C:\\data\\*.*", entries), 1);
    ExpectRequest(server, 28, ListBlock({"C:\\data\\*.*"}));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1].attribute, 1);
}

TEST_F(VAgentRemote, IsFileExistSendsEveryPathAndDecodesAnswers) {
    CaptureServer server(ItemsReply({NumberItem(1), NumberItem(1)}));
    VAgent agent = AgentFor(server);
    std::vector<std::string> paths = {"C:\\data"};
    std::vector<ExistAttr> answers;
    EXPECT_EQ(agent.IsFileExist(paths, answers, ~0u, nullptr), 1);
    ExpectRequest(server, 29, ListBlock(paths));
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].directory, 1);
}

TEST_F(VAgentRemote, CreateIconsSendsPairs) {
    CaptureServer server(AckReply(0));
    VAgent agent = AgentFor(server);
    std::vector<std::string> exeFiles = {"C:\\a.exe"}, iconFiles = {"C:\\a.ico"};
    agent.CreateIcons(exeFiles, iconFiles);
    ExpectRequest(server, 30, PairBlock(exeFiles, iconFiles));
}

TEST_F(VAgentRemote, GetImageDirectoryDecodesTheFirstString) {
    CaptureServer server(ItemsReply({"C:\\agent\\"}));
    VAgent agent = AgentFor(server);
    std::string directory;
    EXPECT_EQ(agent.GetImageDirectory(directory), 1);
    ExpectRequest(server, 31, {});
    EXPECT_EQ(directory, "C:\\agent\\");
}

TEST_F(VAgentRemote, GetHostNameDecodesTheFirstString) {
    CaptureServer server(ItemsReply({"ts01"}));
    VAgent agent = AgentFor(server);
    std::string name;
    EXPECT_EQ(agent.GetHostName(name), 1);
    ExpectRequest(server, 34, {});
    EXPECT_EQ(name, "ts01");
}

TEST_F(VAgentRemote, GetHostVersionDecodesTheNumberAndReturnsOne) {
    CaptureServer server(ItemsReply({"9"}));
    VAgent agent = AgentFor(server);
    int version = 0;
    EXPECT_EQ(agent.GetHostVersion(version), 1);
    ExpectRequest(server, 35, {});
    EXPECT_EQ(version, 9);
}

TEST_F(VAgentRemote, IsProcess32SendsTheNameAndDecodesOneNumber) {
    CaptureServer server(ItemsReply({"1"}));
    VAgent agent = AgentFor(server);
    std::string name = "app.exe";
    int result = 0;
    EXPECT_EQ(agent.IsProcess32(name, result), 1);
    ExpectRequest(server, 38, ListBlock({"app.exe"}));
    EXPECT_EQ(result, 1);
}

TEST_F(VAgentRemote, IsLDAPObjectExistSendsPathAndFlagText) {
    CaptureServer server(AckReply(0));
    VAgent agent = AgentFor(server);
    EXPECT_EQ(agent.IsLDAPObjectExist("jdoe", 3), 1);
    ExpectRequest(server, 39, ListBlock({"jdoe", "1"}));
}

TEST_F(VAgentRemote, GetServiceUserNameSendsTheService) {
    CaptureServer server(ItemsReply({"LocalSystem"}));
    VAgent agent = AgentFor(server);
    std::string service = "vagentd", user;
    EXPECT_EQ(agent.GetServiceUserName(service, user), 1);
    ExpectRequest(server, 46, ListBlock({"vagentd"}));
    EXPECT_EQ(user, "LocalSystem");
}

TEST_F(VAgentRemote, ChangeServiceUserPasswdAnswersThatAnAcknowledgementArrived) {
    CaptureServer server(AckReply(0));
    VAgent agent = AgentFor(server);
    std::string service = "vagentd", account = ".\\svc", password = "pw";
    EXPECT_EQ(agent.ChangeServiceUserPasswd(service, account, password), 1);
    ExpectRequest(server, 47, ListBlock({"vagentd", ".\\svc", "pw"}));
}

TEST_F(VAgentRemote, FilesCopySendsSixItemsAndTakesTheEndFramesStatus) {
    CaptureServer server(EndFrame(5));
    VAgent agent = AgentFor(server);
    std::string site = "10.1.1.1";
    agent.SetFilesCopySite(site, 4321);
    std::string source = "C:\\src", target = "D:\\dst";
    EXPECT_EQ(agent.FilesCopy(source, target, 1, 0, ~0u, nullptr), 0);
    ExpectRequest(server, 44, ListBlock({"10.1.1.1", "4321", "C:\\src", "D:\\dst", "1", "0"}));
    EXPECT_EQ(agent.GetErrorCode(), 5u);
}

TEST_F(VAgentRemote, FilesCopySendsAnEmptySiteWhenItIsTheAgentsHost) {
    CaptureServer server(EndFrame(0));
    VAgent agent = AgentFor(server);
    std::string site = "127.0.0.1";
    agent.SetFilesCopySite(site, 0);
    std::string source = "C:\\src", target = "C:\\dst";
    EXPECT_EQ(agent.FilesCopy(source, target, 0, 7, ~0u, nullptr), 1);
    ExpectRequest(server, 44, ListBlock({"", "0", "C:\\src", "C:\\dst", "0", "1"}));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_F(VAgentRemote, UploadFilesSendsTheWindowNumberAndTakesTheEndFramesStatus) {
    CaptureServer server(EndFrame(0));
    VAgent agent = AgentFor(server);
    std::string source = "Z:\\no\\such\\tree", destination = "C:\\dst";
    EXPECT_EQ(agent.UploadFiles(source, destination, 77, ~0u, nullptr, nullptr), 1);
    ExpectRequest(server, 45, ListBlock({"77"}));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_F(VAgentRemote, ARefusedReplyStatusIsKeptAsTheErrorCode) {
    CaptureServer server(StatusReply(5));
    VAgent agent = AgentFor(server);
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.AddGroup(groups), 0);
    EXPECT_EQ(agent.GetErrorCode(), 5u);
}

TEST_F(VAgentRemote, AReplyLengthOfZeroIsTheLengthError) {
    CaptureServer server(PayloadReply({}));
    VAgent agent = AgentFor(server);
    std::string name;
    EXPECT_EQ(agent.GetHostName(name), 0);
    EXPECT_EQ(agent.GetErrorCode(), 0xE6000004u);
    std::string text;
    agent.GetErrorMessage(text);
    EXPECT_EQ(text, "Net Receive Data Len Error.");
}
