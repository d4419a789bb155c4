#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "accounts/AccountsHost.h"
#include "helpers/FailingAllocation.h"
#include "vagent/LdapRootSite.h"
#include "vagent/VUserTask.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;
using vagent::test::FakeDirectory;
using vagent::test::List;

namespace {

// A user task in the domain work environment, as the facade builds one.
class DomainUserTask : public VUserTask {
public:
    DomainUserTask() : VUserTask(0) { SetWorkEnv(1, nullptr); }
};

}  // namespace

TEST(UserWorkers, BuiltinAddOnAMemberMachineSendsDnsDomainBackslashUser) {
    AccountsHost host;
    host.net.servers = {vagent::os::ServerInfo101{L"TS01", 0x1003}};
    host.net.localGroups[L"Remote Desktop Users"] = {};
    VUserTask task(0);
    auto groups = List({"Remote Desktop Users"});
    EXPECT_EQ(task.AddUserToBuiltinGroups("ann", groups), 1);
    EXPECT_THAT(host.net.calls, ElementsAre("ServerEnum <null> 101 4294967295 2 <null> 0",
                                            "LocalGroupAddMembers <null> 3 Remote Desktop Users "
                                            "corp.example.com\\ann"));
}

TEST(UserWorkers, BuiltinAddOnAControllerSendsTheUserAsPassed) {
    AccountsHost host;
    host.net.servers = {vagent::os::ServerInfo101{L"TS01", 0x100B}};
    host.net.localGroups[L"Administrators"] = {};
    DomainUserTask task;
    auto groups = List({"Administrators"});
    EXPECT_EQ(task.AddUserToBuiltinGroups("ann", groups), 1);
    EXPECT_THAT(host.net.localGroups[L"Administrators"].members, ElementsAre(L"ann"));
}

TEST(UserWorkers, BuiltinAddLooksOnlyAtTheControllerFlag) {
    AccountsHost host;
    host.net.servers = {vagent::os::ServerInfo101{L"DC01", 0x100B}};
    host.net.localGroups[L"Administrators"] = {};
    VUserTask task(0);
    auto groups = List({"Administrators"});
    EXPECT_EQ(task.AddUserToBuiltinGroups("ann", groups), 1);
    EXPECT_THAT(host.net.localGroups[L"Administrators"].members,
                ElementsAre(L"corp.example.com\\ann"));
}

TEST(UserWorkers, BuiltinRemoveWithoutDnsDomainReturnsZero) {
    AccountsHost host;
    host.names.names.erase(2);
    host.net.localGroups[L"Administrators"].members = {L"ann"};
    VUserTask task(0);
    auto groups = List({"Administrators"});
    EXPECT_EQ(task.RemoveUserFromBuiltinGroups("ann", groups), 0);
    EXPECT_THAT(host.net.localGroups[L"Administrators"].members, ElementsAre(L"ann"));
}

TEST(UserWorkers, BuiltinContainerTakesTheLocalBranchInTheDomain) {
    AccountsHost host;
    host.net.localGroups[L"Guests"] = {};
    DomainUserTask task;
    auto groups = List({"Guests"});
    EXPECT_EQ(task.AddUserToGroupsEx("ann", "BUILTIN", groups), 1);
    EXPECT_THAT(host.net.localGroups[L"Guests"].members, ElementsAre(L"ann"));
    EXPECT_THAT(host.directory.calls, IsEmpty());
}

TEST(UserWorkers, AddingToThreeGroupsWhereTheSecondFailsLeavesTheThirdUntouched) {
    AccountsHost host;
    host.net.localGroups[L"A"] = {};
    host.net.localGroups[L"B"].members = {L"ann"};
    host.net.localGroups[L"C"] = {};
    // NetAPI answers with its status and leaves the thread's last error,
    // which is what the task keeps.
    host.net.lastError = 87;
    VUserTask task(0);
    auto groups = List({"A", "B", "C"});
    EXPECT_EQ(task.AddUserToGroupsEx("ann", "Users", groups), 0);
    EXPECT_THAT(host.net.localGroups[L"A"].members, ElementsAre(L"ann"));
    EXPECT_THAT(host.net.localGroups[L"C"].members, IsEmpty());
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetLocalGroupAddMembers failed : 1378"));
}

TEST(UserWorkers, RemovingFromThreeGroupsWhereTheSecondFailsStillRemovesFromTheThird) {
    AccountsHost host;
    host.net.localGroups[L"A"].members = {L"ann"};
    host.net.localGroups[L"B"] = {};
    host.net.localGroups[L"C"].members = {L"ann"};
    host.net.lastError = 87;
    VUserTask task(0);
    auto groups = List({"A", "B", "C"});
    EXPECT_EQ(task.RemoveUserFromGroupsEx("ann", "Users", groups), 0);
    EXPECT_THAT(host.net.localGroups[L"A"].members, IsEmpty());
    EXPECT_THAT(host.net.localGroups[L"C"].members, IsEmpty());
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetLocalGroupDelMembers failed : 1377"));
}

TEST(UserWorkers, GetUserGroupWithEmptyRootSiteBindsCommaBlankCommaBlank) {
    AccountsHost host;
    std::string empty;
    SetLDAPRootSite(empty);
    DomainUserTask task;
    std::vector<_VXUserGroupA> groups;
    EXPECT_EQ(task.GetUserGroup("ann", groups), 0);
    EXPECT_THAT(host.directory.CallsStartingWith("BindUser"),
                ElementsAre("BindUser LDAP://CN=ann, , DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, GetUserGroupWithAFailedListingReturnsZero) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.directory.FailOn("Groups CN=ann,CN=Users,DC=corp,DC=example,DC=com", {});
    DomainUserTask task;
    std::vector<_VXUserGroupA> groups;
    EXPECT_EQ(task.GetUserGroup("ann", groups), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("GetUserGroup => pUser->Groups failed"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, GetUserGroupLocalFailureReturnsZero) {
    AccountsHost host;
    VUserTask task(0);
    std::vector<_VXUserGroupA> groups;
    EXPECT_EQ(task.GetUserGroup("ghost", groups), 0);
}

TEST(UserWorkers, DomainMembershipUsesTheRootSiteAndTheGivenPaths) {
    AccountsHost host;
    std::string empty;
    SetLDAPRootSite(empty);
    host.directory.AddEntry(L"CN=ann,DC=corp,DC=example,DC=com", L"user");
    host.directory.AddEntry(L"OU=x,DC=corp,DC=example,DC=com", L"organizationalUnit");
    host.directory.AddEntry(L"CN=Sales,OU=x,DC=corp,DC=example,DC=com", L"group");
    DomainUserTask task;
    auto groups = List({"ldap://CN=Sales,OU=x,DC=corp,DC=example,DC=com"});
    EXPECT_EQ(task.AddUserToGroupsEx("ann", "Users", groups), 1);
    EXPECT_THAT(host.directory.CallsStartingWith("BindGroup"),
                ElementsAre("BindGroup ldap://CN=Sales,OU=x,DC=corp,DC=example,DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("Add "),
                ElementsAre("Add LDAP://CN=ann, DC=corp, DC=example, DC=com"));
}

TEST(UserWorkers, DomainAddStopsAtAGroupThatCannotBeBound) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Ops");
    host.directory.lastError = 87;
    DomainUserTask task;
    auto groups = List({"Ghost", "Ops"});
    EXPECT_EQ(task.AddUserToGroupsEx("ann", "Users", groups), 0);
    // The status a failed bind leaves in the thread's last error.
    EXPECT_EQ(task.GetErrorCode(), FakeDirectory::kHostNotFound);
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Ops"), AccountsHost::UsersDn(L"ann")));
    EXPECT_THAT(host.Logged(),
                ElementsAre("AddUserToGroupsEx => ADsGetObject failed : Path = LDAP://CN=Ghost, "
                            "CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, DomainAddOfAnExistingMemberFailsWithTheUsersPath) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Sales");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    // What the thread held before the call: the directory leaves it there.
    host.directory.lastError = 87;
    DomainUserTask task;
    auto groups = List({"Sales"});
    EXPECT_EQ(task.AddUserToGroupsEx("ann", "Users", groups), 0);
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_THAT(host.Logged(),
                ElementsAre("AddUserToGroupsEx => pGroup->Add failed : Path = LDAP://CN=ann, "
                            "CN=Users, DC=corp, DC=example, DC=com"));
}

TEST(UserWorkers, DomainRemoveFailuresAreLoggedWithTheirTexts) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Sales");
    DomainUserTask task;
    auto missing = List({"Ghost"});
    EXPECT_EQ(task.RemoveUserFromGroupsEx("ann", "Users", missing), 0);
    EXPECT_EQ(task.GetErrorCode(), FakeDirectory::kHostNotFound);
    host.directory.lastError = 87;
    auto notMember = List({"Sales"});
    EXPECT_EQ(task.RemoveUserFromGroupsEx("ann", "Users", notMember), 0);
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_THAT(host.Logged(),
                ElementsAre("RemoveUserFromGroupsEx => ADsGetObject : Path = LDAP://CN=Ghost, "
                            "CN=Users, DC=corp, DC=example, DC=com",
                            "RemoveUserFromGroupsEx => pGroup->Remove : Path = LDAP://CN=ann, "
                            "CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, DomainPasswordChangeUsesGivenPathsAndEmptyMissingPasswords) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann").password = L"old";
    host.directory.AddEntry(L"CN=bob,CN=Users,DC=corp,DC=example,DC=com", L"user").password =
        L"old";
    DomainUserTask task;
    auto users = List({"ann", "LDAP://CN=bob,CN=Users,DC=corp,DC=example,DC=com"});
    auto olds = List({});
    auto news = List({"new"});
    EXPECT_EQ(task.ChangePasswd(users, olds, news), 1);
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"ann"))->password, L"new");
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"bob"))->password, L"");
    EXPECT_THAT(host.directory.CallsStartingWith("BindUser"),
                ElementsAre("BindUser LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com",
                            "BindUser LDAP://CN=bob,CN=Users,DC=corp,DC=example,DC=com"));
}

TEST(UserWorkers, DomainPasswordChangeStopsAtTheFirstFailureWithoutLog) {
    AccountsHost host;
    host.AddDirectoryUser(L"bob").password = L"old";
    host.directory.lastError = 87;
    DomainUserTask task;
    auto users = List({"ghost", "bob"});
    auto olds = List({"a", "b"});
    auto news = List({"x", "y"});
    EXPECT_EQ(task.ChangePasswd(users, olds, news), 0);
    // The status a failed bind leaves in the thread's last error.
    EXPECT_EQ(task.GetErrorCode(), FakeDirectory::kHostNotFound);
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"bob"))->password, L"old");
    EXPECT_THAT(host.Logged(), IsEmpty());
}

TEST(UserWorkers, DomainAddUserPairsNamesAndPasswordsUntilEitherEnds) {
    AccountsHost host;
    DomainUserTask task;
    auto users = List({"ann", "bob"});
    auto passwords = List({"p1"});
    EXPECT_EQ(task.AddUser(users, passwords), 1);
    EXPECT_TRUE(host.directory.Exists(AccountsHost::UsersDn(L"ann")));
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"bob")));
}

TEST(UserWorkers, DomainAddUserWithEmptyRootSiteCreatesUnderTheDomain) {
    AccountsHost host;
    std::string empty;
    SetLDAPRootSite(empty);
    DomainUserTask task;
    auto users = List({"ann"});
    auto passwords = List({"p1"});
    EXPECT_EQ(task.AddUser(users, passwords), 1);
    EXPECT_TRUE(host.directory.Exists(L"CN=ann,DC=corp,DC=example,DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("BindContainer"),
                ElementsAre("BindContainer LDAP://DC=corp, DC=example, DC=com"));
}

TEST(UserWorkers, LoginNameWithOneAttributeSucceeds) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    VUserTask task(0);
    std::string account = "stale";
    std::string principal = "stale";
    EXPECT_EQ(task.GetUserLoginName("LDAP://CN=ann,CN=Users,DC=corp,DC=example,DC=com", account,
                                    principal),
              1);
    EXPECT_EQ(account, "ann");
    EXPECT_EQ(principal, "");
    EXPECT_THAT(host.directory.CallsStartingWith("Get "),
                ElementsAre("Get sAMAccountname", "Get userPrincipalName"));
}

TEST(UserWorkers, LoginNameWithoutAttributesFails) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann").attributes.clear();
    VUserTask task(0);
    std::string account = "stale";
    std::string principal = "stale";
    EXPECT_EQ(task.GetUserLoginName("ann", account, principal), 0);
    EXPECT_EQ(account, "");
    EXPECT_EQ(principal, "");
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, LoginNameReusesTheGroupWorkersAllocationText) {
    AccountsHost host;
    VUserTask task(0);
    std::string account;
    std::string principal;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(task.GetUserLoginName("ann", account, principal), 0);
    }
    EXPECT_EQ(task.GetErrorCode(), 8u);
    EXPECT_THAT(host.Logged(), ElementsAre("RemoveGroupUsers : new [17] bytes failed"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, EachDomainWorkerLogsItsAllocationFailureAndSetsEight) {
    const std::vector<std::pair<std::string, std::function<int(VUserTask&)>>> workers = {
        {"GetUser : new [17] bytes failed",
         [](VUserTask& t) {
             std::vector<_VXUserInfoA> out;
             return t.GetUser("", out, 1);
         }},
        {"AddUser : new [17] bytes failed",
         [](VUserTask& t) {
             auto users = List({"a"});
             auto passwords = List({"p"});
             return t.AddUser(users, passwords);
         }},
        {"DeleteUser : new [17] bytes failed",
         [](VUserTask& t) {
             auto users = List({"a"});
             return t.DeleteUser(users);
         }},
        {"ChangePasswd : new [17] bytes failed",
         [](VUserTask& t) {
             auto users = List({"a"});
             return t.ChangePasswd(users, users, users);
         }},
        {"GetUserGroup : new [17] bytes failed",
         [](VUserTask& t) {
             std::vector<_VXUserGroupA> out;
             return t.GetUserGroup("a", out);
         }},
        {"AddUserToGroupsEx : new [17] bytes failed",
         [](VUserTask& t) {
             auto groups = List({"g"});
             return t.AddUserToGroupsEx("a", "Users", groups);
         }},
        {"RemoveUserFromGroupsEx : new [17] bytes failed",
         [](VUserTask& t) {
             auto groups = List({"g"});
             return t.RemoveUserFromGroupsEx("a", "Users", groups);
         }},
    };
    for (const auto& worker : workers) {
        AccountsHost host;
        DomainUserTask task;
        int result = -1;
        {
            vagent::test::ScopedAllocationFailure failure(0, 1);
            result = worker.second(task);
        }
        EXPECT_EQ(result, 0) << worker.first;
        EXPECT_EQ(task.GetErrorCode(), 8u) << worker.first;
        EXPECT_THAT(host.Logged(), ElementsAre(worker.first));
        EXPECT_TRUE(host.com.Balanced()) << worker.first;
        EXPECT_THAT(host.directory.calls, IsEmpty());
    }
}

TEST(UserWorkers, LocalUserFunctionsPassTheirServerForms) {
    AccountsHost host;
    VUserTask task(0);
    auto users = List({"ann"});
    auto passwords = List({"pw"});
    EXPECT_EQ(task.AddUser(users, passwords), 1);
    EXPECT_EQ(task.ChangePasswd(users, passwords, passwords), 1);
    EXPECT_EQ(task.DeleteUser(users), 1);
    EXPECT_THAT(host.net.calls,
                ElementsAre("UserAdd <null> 1 ann", "UserSetInfo <null> 1003 ann pw",
                            "UserDel <null> ann"));
}

TEST(UserWorkers, DirectoryUsersAreDeletedFromTheRootSiteContainerPath) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    DomainUserTask task;
    auto users = List({"ann"});
    EXPECT_EQ(task.DeleteUser(users), 1);
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"ann")));
    EXPECT_THAT(host.directory.boundPaths,
                ElementsAre(L"LDAP://CN=Users, DC=corp, DC=example, DC=com"));
}

TEST(UserWorkers, DomainRemoveStopsAtTheFirstFailingGroup) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryGroup(L"Ops");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    host.directory.AddMember(AccountsHost::UsersDn(L"Ops"), AccountsHost::UsersDn(L"ann"));
    DomainUserTask task;
    auto groups = List({"Sales", "Ghost", "Ops"});
    EXPECT_EQ(task.RemoveUserFromGroupsEx("ann", "Users", groups), 0);
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann")));
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Ops"), AccountsHost::UsersDn(L"ann")));
    EXPECT_THAT(host.directory.CallsStartingWith("BindGroup"),
                ElementsAre("BindGroup LDAP://CN=Sales, CN=Users, DC=corp, DC=example, DC=com",
                            "BindGroup LDAP://CN=Ghost, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(UserWorkers, DomainPasswordChangeStopsWhenSetPasswordFailsAfterAGoodBind) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann").password = L"old";
    host.AddDirectoryUser(L"bob").password = L"old";
    host.directory.FailOn("SetPassword CN=ann,CN=Users,DC=corp,DC=example,DC=com x",
                          {static_cast<std::int32_t>(0x800708C5u), 0});
    // What the thread held before the call: the directory leaves it there.
    host.directory.lastError = 87;
    DomainUserTask task;
    auto users = List({"ann", "bob"});
    auto olds = List({"a", "b"});
    auto news = List({"x", "y"});
    EXPECT_EQ(task.ChangePasswd(users, olds, news), 0);
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"ann"))->password, L"old");
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"bob"))->password, L"old");
    EXPECT_THAT(host.directory.CallsStartingWith("BindUser"),
                ElementsAre("BindUser LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_THAT(host.Logged(), IsEmpty());
    EXPECT_EQ(host.directory.live, 0);
}

TEST(UserWorkers, LoginNameOfAFullPathDoesNotReadTheDnsDomain) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    VUserTask task(0);
    std::string account;
    std::string principal;
    EXPECT_EQ(task.GetUserLoginName("ldap://CN=ann,CN=Users,DC=corp,DC=example,DC=com", account,
                                    principal),
              1);
    EXPECT_EQ(account, "ann");
    EXPECT_THAT(host.names.calls, IsEmpty());
    EXPECT_THAT(host.directory.boundPaths,
                ElementsAre(L"ldap://CN=ann,CN=Users,DC=corp,DC=example,DC=com"));
}
