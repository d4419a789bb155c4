#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "facade/VAgentRoads.h"
#include "vagent/VAgent.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::FakeDirectory;
using vagent::test::FakeLocalAccounts;
using vagent::test::kDomain;
using vagent::test::kLocalAccounts;
using vagent::test::Road;
using vagent::test::VAgentRoads;

// The user and group operations on both roads. Work environment 0 reaches
// the local account database, any other the directory; on the remote road the
// work environment and the root site reach the service only in the request
// frame, so the fake that changed and the container it was bound under show
// that both travelled.

namespace {

const std::wstring kDomainDn = L"DC=corp,DC=example,DC=com";
const char kStaffBind[] = "LDAP://CN=Staff, DC=corp, DC=example, DC=com";

std::wstring StaffDn(const std::wstring& name) {
    return L"CN=" + name + L",CN=Staff," + kDomainDn;
}

std::vector<std::string> Records(const std::vector<_VXUserInfoA>& records) {
    std::vector<std::string> texts;
    for (const _VXUserInfoA& record : records) {
        texts.push_back(record.name + "|" + record.comment);
    }
    return texts;
}

class VAgentAccounts : public VAgentRoads {
protected:
    void AddStaffUser(const std::wstring& name) {
        host_.directory.AddEntry(StaffDn(name), L"user").attributes[L"samaccountname"] = name;
    }
    void AddStaffGroup(const std::wstring& name) {
        host_.directory.AddEntry(StaffDn(name), L"group").attributes[L"samaccountname"] = name;
    }
    // The directory's bind calls of one kind, with the paths they bound.
    std::vector<std::string> Binds(const std::string& kind) {
        return host_.directory.CallsStartingWith("Bind" + kind);
    }
};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentAccounts, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

}  // namespace

TEST_P(VAgentAccounts, GetUserListsTheLocalAccountsWithTheirComments) {
    host_.accounts.users[L"ann"] = FakeLocalAccounts::User{L"pw", L"Accounts"};
    host_.accounts.users[L"bob"] = FakeLocalAccounts::User{L"pw", L""};
    VAgent agent = Agent(kLocalAccounts);
    std::string base;
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(agent.GetUser(base, users, 0), 1);
    EXPECT_THAT(Records(users), ElementsAre("ann|Accounts", "bob|"));
    EXPECT_THAT(host_.directory.calls, IsEmpty());
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentAccounts, GetUserSearchesTheDomainUnderTheBase) {
    host_.directory.AddEntry(StaffDn(L"ann"), L"user").attributes[L"description"] = L"Accounts";
    VAgent agent = StaffAgent();
    std::string base = "CN=Staff";
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(agent.GetUser(base, users, 1), 1);
    EXPECT_THAT(Records(users),
                ElementsAre("LDAP://CN=ann,CN=Staff,DC=corp,DC=example,DC=com|Accounts"));
    EXPECT_THAT(Binds("Search"), ElementsAre(std::string("BindSearch ") + kStaffBind));
    EXPECT_TRUE(host_.accounts.calls.empty());
}

TEST_P(VAgentAccounts, AddUserCreatesLocalAccountsInWorkEnvironmentZero) {
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> names = {"carol", "dave"};
    std::vector<std::string> passwords = {"Secret1", "Secret2"};
    EXPECT_EQ(agent.AddUser(names, passwords), 1);
    ASSERT_EQ(host_.accounts.users.count(L"carol"), 1u);
    EXPECT_EQ(host_.accounts.users[L"carol"].password, L"Secret1");
    EXPECT_EQ(host_.accounts.users[L"dave"].password, L"Secret2");
    EXPECT_THAT(host_.directory.calls, IsEmpty());
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentAccounts, AddUserCreatesDirectoryUsersUnderTheAgentsRootSite) {
    VAgent agent = StaffAgent();
    std::vector<std::string> names = {"erin"};
    std::vector<std::string> passwords = {"Secret3"};
    EXPECT_EQ(agent.AddUser(names, passwords), 1);
    const auto* erin = host_.directory.Find(StaffDn(L"erin"));
    ASSERT_NE(erin, nullptr);
    EXPECT_EQ(erin->password, L"Secret3");
    EXPECT_THAT(Binds("Container"), ElementsAre(std::string("BindContainer ") + kStaffBind));
    EXPECT_TRUE(host_.accounts.users.empty());
}

// The service answers a refused account with status 0 and an
// acknowledgement of 0: the call fails and the error code stays 0.
TEST_P(VAgentAccounts, AddUserFailsWhenTheAccountIsRefused) {
    host_.accounts.minimumPasswordLength = 8;
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> names = {"carol"};
    std::vector<std::string> passwords = {"short"};
    EXPECT_EQ(agent.AddUser(names, passwords), 0);
    EXPECT_TRUE(host_.accounts.users.empty());
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentAccounts, DeleteUserRemovesTheNamedLocalAccounts) {
    host_.accounts.users[L"ann"] = FakeLocalAccounts::User{};
    host_.accounts.users[L"bob"] = FakeLocalAccounts::User{};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> names = {"ann"};
    EXPECT_EQ(agent.DeleteUser(names), 1);
    EXPECT_EQ(host_.accounts.users.count(L"ann"), 0u);
    EXPECT_EQ(host_.accounts.users.count(L"bob"), 1u);
}

TEST_P(VAgentAccounts, DeleteUserRemovesDirectoryUsersUnderTheAgentsRootSite) {
    AddStaffUser(L"ann");
    VAgent agent = StaffAgent();
    std::vector<std::string> names = {"ann"};
    EXPECT_EQ(agent.DeleteUser(names), 1);
    EXPECT_FALSE(host_.directory.Exists(StaffDn(L"ann")));
    EXPECT_THAT(Binds("Container"), ElementsAre(std::string("BindContainer ") + kStaffBind));
}

TEST_P(VAgentAccounts, ChangePasswdSetsTheNewLocalPassword) {
    host_.accounts.users[L"ann"] = FakeLocalAccounts::User{L"old", L""};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> names = {"ann"}, oldPasswords = {"old"}, newPasswords = {"new"};
    EXPECT_EQ(agent.ChangePasswd(names, oldPasswords, newPasswords), 1);
    EXPECT_EQ(host_.accounts.users[L"ann"].password, L"new");
}

TEST_P(VAgentAccounts, ChangePasswdSetsTheDirectoryPasswordUnderTheAgentsRootSite) {
    AddStaffUser(L"ann");
    VAgent agent = StaffAgent();
    std::vector<std::string> names = {"ann"}, oldPasswords = {"old"}, newPasswords = {"new"};
    EXPECT_EQ(agent.ChangePasswd(names, oldPasswords, newPasswords), 1);
    EXPECT_EQ(host_.directory.Find(StaffDn(L"ann"))->password, L"new");
}

TEST_P(VAgentAccounts, GetUserGroupListsTheGroupsTheLocalUserBelongsTo) {
    host_.accounts.users[L"ann"] = FakeLocalAccounts::User{};
    host_.accounts.globalGroups[L"Sales"].members = {L"ann"};
    host_.accounts.globalGroups[L"Ops"].members = {L"bob"};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<_VXUserGroupA> groups;
    EXPECT_EQ(agent.GetUserGroup("ann", groups), 1);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].name, "Sales");
    EXPECT_THAT(host_.accounts.calls, ElementsAre("UserGetGroups <null> 0 ann 4294967295"));
}

TEST_P(VAgentAccounts, AddUserToGroupsAddsTheUserToEachLocalGroup) {
    host_.accounts.localGroups[L"Sales"] = {};
    host_.accounts.localGroups[L"Ops"] = {};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> groups = {"Sales", "Ops"};
    EXPECT_EQ(agent.AddUserToGroups("ann", groups), 1);
    EXPECT_THAT(host_.accounts.localGroups[L"Sales"].members, ElementsAre(L"ann"));
    EXPECT_THAT(host_.accounts.localGroups[L"Ops"].members, ElementsAre(L"ann"));
}

TEST_P(VAgentAccounts, AddUserToGroupsInTheDomainBindsTheGroupUnderTheAgentsRootSite) {
    AddStaffUser(L"ann");
    AddStaffGroup(L"Sales");
    VAgent agent = StaffAgent();
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.AddUserToGroups("ann", groups), 1);
    EXPECT_TRUE(host_.directory.IsMember(StaffDn(L"Sales"), StaffDn(L"ann")));
    EXPECT_THAT(Binds("Group"),
                ElementsAre("BindGroup LDAP://CN=Sales, CN=Staff, DC=corp, DC=example, DC=com"));
}

TEST_P(VAgentAccounts, AddUserToBuiltinGroupsAddsTheQualifiedUserOnAMemberMachine) {
    host_.accounts.servers = {vagent::os::ServerInfo101{L"TS01", 0x1003}};
    host_.accounts.localGroups[L"Administrators"] = {};
    VAgent agent = Agent(kDomain);
    std::vector<std::string> groups = {"Administrators"};
    EXPECT_EQ(agent.AddUserToBuiltinGroups("ann", groups), 1);
    EXPECT_THAT(host_.accounts.localGroups[L"Administrators"].members,
                ElementsAre(L"corp.example.com\\ann"));
    EXPECT_THAT(host_.directory.calls, IsEmpty());
}

TEST_P(VAgentAccounts, RemoveUserFromBuiltinGroupsRemovesTheUserAsGivenOnAController) {
    host_.accounts.servers = {vagent::os::ServerInfo101{L"TS01", 0x100B}};
    host_.accounts.localGroups[L"Administrators"].members = {L"ann", L"bob"};
    VAgent agent = Agent(kDomain);
    std::vector<std::string> groups = {"Administrators"};
    EXPECT_EQ(agent.RemoveUserFromBuiltinGroups("ann", groups), 1);
    EXPECT_THAT(host_.accounts.localGroups[L"Administrators"].members, ElementsAre(L"bob"));
}

TEST_P(VAgentAccounts, RemoveUserFromGroupsRemovesTheUserFromEachLocalGroup) {
    host_.accounts.localGroups[L"Sales"].members = {L"ann", L"bob"};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.RemoveUserFromGroups("ann", groups), 1);
    EXPECT_THAT(host_.accounts.localGroups[L"Sales"].members, ElementsAre(L"bob"));
    EXPECT_THAT(host_.accounts.calls, ElementsAre("LocalGroupDelMembers <null> 3 Sales ann"));
}

TEST_P(VAgentAccounts, GetUserLoginNameReadsBothNamesUnderTheAgentsRootSite) {
    FakeDirectory::Entry& ann = host_.directory.AddEntry(StaffDn(L"ann"), L"user");
    ann.attributes[L"samaccountname"] = L"ann.lee";
    ann.attributes[L"userprincipalname"] = L"ann.lee@corp.example.com";
    VAgent agent = StaffAgent();
    std::string account = "stale", principal = "stale";
    EXPECT_EQ(agent.GetUserLoginName("ann", account, principal), 1);
    EXPECT_EQ(account, "ann.lee");
    EXPECT_EQ(principal, "ann.lee@corp.example.com");
    EXPECT_THAT(Binds("Object"),
                ElementsAre("BindObject LDAP://CN=ann, CN=Staff, DC=corp, DC=example, DC=com"));
}

TEST_P(VAgentAccounts, GetGroupListsTheLocalGroupsWithTheirComments) {
    host_.accounts.localGroups[L"Ops"] = {};
    host_.accounts.localGroups[L"Sales"] = {};
    host_.accounts.globalGroups[L"Sales"].comment = L"Sellers";
    VAgent agent = Agent(kLocalAccounts);
    std::string base;
    std::vector<_VXUserInfoA> groups;
    EXPECT_EQ(agent.GetGroup(base, groups, 0), 1);
    EXPECT_THAT(Records(groups), ElementsAre("Ops|", "Sales|Sellers"));
}

TEST_P(VAgentAccounts, AddGroupCreatesLocalGroups) {
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> groups = {"Sales", "Ops"};
    EXPECT_EQ(agent.AddGroup(groups), 1);
    EXPECT_EQ(host_.accounts.localGroups.count(L"Sales"), 1u);
    EXPECT_EQ(host_.accounts.localGroups.count(L"Ops"), 1u);
    EXPECT_THAT(host_.directory.calls, IsEmpty());
}

TEST_P(VAgentAccounts, AddGroupCreatesDirectoryGroupsUnderTheAgentsRootSite) {
    VAgent agent = StaffAgent();
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.AddGroup(groups), 1);
    const auto* sales = host_.directory.Find(StaffDn(L"Sales"));
    ASSERT_NE(sales, nullptr);
    EXPECT_EQ(sales->objectClass, L"group");
    EXPECT_TRUE(host_.accounts.localGroups.empty());
}

TEST_P(VAgentAccounts, RemoveGroupDeletesLocalGroups) {
    host_.accounts.localGroups[L"Sales"] = {};
    host_.accounts.localGroups[L"Ops"] = {};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.RemoveGroup(groups), 1);
    EXPECT_EQ(host_.accounts.localGroups.count(L"Sales"), 0u);
    EXPECT_EQ(host_.accounts.localGroups.count(L"Ops"), 1u);
}

TEST_P(VAgentAccounts, RemoveGroupDeletesDirectoryGroupsUnderTheAgentsRootSite) {
    AddStaffGroup(L"Sales");
    VAgent agent = StaffAgent();
    std::vector<std::string> groups = {"Sales"};
    EXPECT_EQ(agent.RemoveGroup(groups), 1);
    EXPECT_FALSE(host_.directory.Exists(StaffDn(L"Sales")));
}

TEST_P(VAgentAccounts, AddGroupUsersAddsTheUsersQualifiedByTheDomain) {
    host_.accounts.localGroups[L"Sales"] = {};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> users = {"ann", "bob"};
    EXPECT_EQ(agent.AddGroupUsers("Sales", users), 1);
    EXPECT_THAT(host_.accounts.localGroups[L"Sales"].members,
                ElementsAre(L"corp.example.com\\ann", L"corp.example.com\\bob"));
}

TEST_P(VAgentAccounts, AddGroupUsersInTheDomainMakesThemMembersUnderTheAgentsRootSite) {
    AddStaffGroup(L"Sales");
    AddStaffUser(L"ann");
    VAgent agent = StaffAgent();
    std::vector<std::string> users = {"ann"};
    EXPECT_EQ(agent.AddGroupUsers("Sales", users), 1);
    EXPECT_TRUE(host_.directory.IsMember(StaffDn(L"Sales"), StaffDn(L"ann")));
}

TEST_P(VAgentAccounts, RemoveGroupUsersRemovesThemFromTheGroup) {
    host_.accounts.globalGroups[L"Sales"].members = {L"ann", L"bob"};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> users = {"ann"};
    EXPECT_EQ(agent.RemoveGroupUsers("Sales", users), 1);
    EXPECT_THAT(host_.accounts.globalGroups[L"Sales"].members, ElementsAre(L"bob"));
    EXPECT_THAT(host_.accounts.calls, ElementsAre("GroupDelUser <null> Sales ann"));
}

TEST_P(VAgentAccounts, ShowGroupUsersListsTheMemberNames) {
    host_.accounts.localGroups[L"Sales"].members = {L"CORP\\ann", L"bob"};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<std::string> users;
    EXPECT_EQ(agent.ShowGroupUsers("Sales", users), 1);
    EXPECT_THAT(users, ElementsAre("CORP\\ann", "bob"));
}

TEST_P(VAgentAccounts, GetGroupUsersInfoListsTheMembersWithTheirComments) {
    host_.accounts.localGroups[L"Sales"].members = {L"ann", L"ghost"};
    host_.accounts.users[L"ann"] = FakeLocalAccounts::User{L"", L"Accounts"};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(agent.GetGroupUsersInfo("Sales", users), 1);
    EXPECT_THAT(Records(users), ElementsAre("ann|Accounts", "ghost|"));
}
