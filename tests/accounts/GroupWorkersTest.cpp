#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <functional>

#include "accounts/AccountsHost.h"
#include "helpers/FailingAllocation.h"
#include "vagent/VGroupTask.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;
using vagent::test::FakeDirectory;
using vagent::test::List;

namespace {

// A group task in the domain work environment, as the facade builds one.
class DomainGroupTask : public VGroupTask {
public:
    DomainGroupTask() : VGroupTask(0) { SetWorkEnv(1, nullptr); }
};

std::vector<std::string> Names(const std::vector<_VXUserInfoA>& records) {
    std::vector<std::string> names;
    for (const _VXUserInfoA& record : records) {
        names.push_back(record.name);
    }
    return names;
}

}  // namespace

TEST(GroupWorkers, AddingAnExistingDirectoryMemberIsNoErrorAndTheNextUserIsAdded) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryUser(L"bob");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    DomainGroupTask task;
    auto users = List({"ann", "bob"});
    EXPECT_EQ(task.AddGroupUsers("Sales", users), 1);
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob")));
    EXPECT_EQ(task.GetErrorCode(), 0u);
    EXPECT_TRUE(host.com.Balanced());
}

TEST(GroupWorkers, DirectoryAddOtherFailureStopsWithTheLastError) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"bob");
    // What the thread held before the call: the directory leaves it there.
    host.directory.lastError = 87;
    DomainGroupTask task;
    auto users = List({"ghost", "bob"});
    EXPECT_EQ(task.AddGroupUsers("Sales", users), 0);
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob")));
}

TEST(GroupWorkers, DirectoryAddToAGroupThatCannotBeBoundFailsWithoutLog) {
    AccountsHost host;
    host.directory.lastError = 87;
    DomainGroupTask task;
    auto users = List({"ann"});
    EXPECT_EQ(task.AddGroupUsers("Ghost", users), 0);
    // The status a failed bind leaves in the thread's last error.
    EXPECT_EQ(task.GetErrorCode(), FakeDirectory::kHostNotFound);
    EXPECT_THAT(host.Logged(), IsEmpty());
    EXPECT_THAT(host.directory.CallsStartingWith("BindGroup"),
                ElementsAre("BindGroup LDAP://CN=Ghost, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(GroupWorkers, DirectoryRemoveOfAGroupThatCannotBeBoundIsLoggedWithThePath) {
    AccountsHost host;
    DomainGroupTask task;
    auto users = List({"ann"});
    EXPECT_EQ(task.RemoveGroupUsers("Ghost", users), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("RemoveGroupUsers => ADsGetObject Error : Path = "
                                           "LDAP://CN=Ghost, CN=Users, DC=corp, DC=example, "
                                           "DC=com"));
}

TEST(GroupWorkers, DirectoryRemovePassesOverTheAlreadyMemberCodeOnly) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryUser(L"bob");
    host.AddDirectoryUser(L"cid");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob"));
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"cid"));
    host.directory.FailOn("Remove LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com",
                          {static_cast<std::int32_t>(0x80070562u), 1378});
    // What the thread held before the call: the directory leaves it there.
    host.directory.lastError = 87;
    DomainGroupTask task;
    auto users = List({"ann", "bob", "dan", "cid"});
    EXPECT_EQ(task.RemoveGroupUsers("Sales", users), 0);
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob")));
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"cid")));
    EXPECT_EQ(task.GetErrorCode(), 87u);
}

TEST(GroupWorkers, LocalRemoveGoesOnAfterFailuresWithoutLog) {
    AccountsHost host;
    host.net.globalGroups[L"Sales"].members = {L"ann", L"cid"};
    // NetAPI leaves the thread's last error alone: the task keeps what an
    // earlier call left there, not the status 2237.
    host.net.lastError = 87;
    VGroupTask task(0);
    auto users = List({"ann", "bob", "cid"});
    EXPECT_EQ(task.RemoveGroupUsers("Sales", users), 0);
    EXPECT_THAT(host.net.globalGroups[L"Sales"].members, IsEmpty());
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_THAT(host.Logged(), IsEmpty());
}

TEST(GroupWorkers, RemovingALocalGroupThatDoesNotExistReturnsOneAndLogsTheFailure) {
    AccountsHost host;
    VGroupTask task(0);
    auto groups = List({"Ghost"});
    EXPECT_EQ(task.RemoveGroup(groups), 1);
    EXPECT_THAT(host.Logged(), ElementsAre("NetLocalGroupDel failed : 1376"));
}

TEST(GroupWorkers, RemovingADirectoryGroupThatDoesNotExistReturnsOneAndLogsTheFailure) {
    AccountsHost host;
    DomainGroupTask task;
    auto groups = List({"Ghost"});
    EXPECT_EQ(task.RemoveGroup(groups), 1);
    EXPECT_THAT(host.Logged(), ElementsAre("DeleteObject =>  pCont->Delete failed"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(GroupWorkers, LocalGroupsAreCreatedAndDeletedOnTheDotServer) {
    AccountsHost host;
    VGroupTask task(0);
    auto groups = List({"Sales"});
    EXPECT_EQ(task.AddGroup(groups), 1);
    EXPECT_EQ(task.RemoveGroup(groups), 1);
    EXPECT_THAT(host.net.calls,
                ElementsAre("LocalGroupAdd \\\\. 0 Sales", "LocalGroupDel \\\\. Sales"));
}

TEST(GroupWorkers, GroupUsersInfoMatchesTheRelativeNameInAnyCaseAndAsAPrefix) {
    AccountsHost host;
    host.directory.AddEntry(L"cn=SALES,CN=Users,DC=corp,DC=example,DC=com", L"group");
    host.AddDirectoryGroup(L"SalesTeam");
    host.AddDirectoryGroup(L"Ops");
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryUser(L"bob");
    host.AddDirectoryUser(L"cid");
    host.directory.AddMember(L"cn=SALES,CN=Users,DC=corp,DC=example,DC=com",
                             AccountsHost::UsersDn(L"ann"));
    host.directory.AddMember(AccountsHost::UsersDn(L"SalesTeam"), AccountsHost::UsersDn(L"bob"));
    host.directory.AddMember(AccountsHost::UsersDn(L"Ops"), AccountsHost::UsersDn(L"cid"));
    DomainGroupTask task;
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(task.GetGroupUsersInfo("Sales", users), 1);
    EXPECT_THAT(Names(users), ElementsAre("LDAP://CN=ann,CN=Users,DC=corp,DC=example,DC=com",
                                          "LDAP://CN=bob,CN=Users,DC=corp,DC=example,DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("Bind"),
                ElementsAre("BindSearch LDAP://DC=corp, DC=example, DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("SetSearchPreference"),
                ElementsAre("SetSearchPreference 7:7=50000 5:7=2"));
    EXPECT_THAT(host.directory.CallsStartingWith("ExecuteSearch"),
                ElementsAre("ExecuteSearch (&(objectCategory=person)(objectClass=user)) ADsPath "
                            "Description memberOf"));
    EXPECT_THAT(host.Logged(), ElementsAre("GetGroupUserInfoEx item count = 3, 2", ""));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(GroupWorkers, GroupUsersInfoReadsEveryPage) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    for (int i = 0; i < 5; ++i) {
        const std::wstring name = L"u" + std::to_wstring(i);
        host.AddDirectoryUser(name);
        host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(name));
    }
    host.directory.rowsPerPage = 2;
    DomainGroupTask task;
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(task.GetGroupUsersInfo("LDAP://CN=Sales,CN=Users,DC=corp,DC=example,DC=com", users),
              1);
    EXPECT_EQ(users.size(), 5u);
    EXPECT_THAT(host.Logged(), ElementsAre("GetGroupUserInfoEx item count = 5, 5", ""));
}

TEST(GroupWorkers, ShowGroupUsersOfAGroupThatCannotBeBoundIsLogged) {
    AccountsHost host;
    host.directory.lastError = 87;
    DomainGroupTask task;
    std::vector<std::string> users;
    EXPECT_EQ(task.ShowGroupUsers("Ghost", users), 0);
    // The status a failed bind leaves in the thread's last error.
    EXPECT_EQ(task.GetErrorCode(), FakeDirectory::kHostNotFound);
    EXPECT_THAT(host.Logged(), ElementsAre("ShowGroupUsers => ADsGetObject Error : Path = "
                                           "LDAP://CN=Ghost, CN=Users, DC=corp, DC=example, "
                                           "DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(GroupWorkers, LocalMemberListingReadsEveryPage) {
    AccountsHost host;
    host.net.pageSize = 1;
    host.net.localGroups[L"Sales"].members = {L"a", L"b", L"c"};
    VGroupTask task(0);
    std::vector<std::string> users;
    EXPECT_EQ(task.ShowGroupUsers("Sales", users), 1);
    EXPECT_THAT(users, ElementsAre("a", "b", "c"));
    EXPECT_EQ(host.net.calls.size(), 3u);
}

TEST(GroupWorkers, LocalMemberListingKeepsTheResumeHandlesFullWidth) {
    AccountsHost host;
    host.net.pageSize = 1;
    host.net.wideResumeBase = std::numeric_limits<std::uintptr_t>::max() - 0xFFFF;
    host.net.localGroups[L"Sales"].members = {L"a", L"b", L"c"};
    VGroupTask task(0);
    std::vector<std::string> users;
    EXPECT_EQ(task.ShowGroupUsers("Sales", users), 1);
    EXPECT_THAT(users, ElementsAre("a", "b", "c"));
    EXPECT_EQ(host.net.calls.size(), 3u);
}

TEST(GroupWorkers, LocalMemberListingOfAMissingGroupEndsQuietly) {
    AccountsHost host;
    VGroupTask task(0);
    std::vector<std::string> users;
    EXPECT_EQ(task.ShowGroupUsers("Ghost", users), 1);
    EXPECT_TRUE(users.empty());
    EXPECT_THAT(host.Logged(), IsEmpty());
}

TEST(GroupWorkers, EachDomainWorkerLogsItsAllocationFailure) {
    const std::vector<std::pair<std::string, std::function<int(VGroupTask&)>>> workers = {
        {"GetGroup : new [17] bytes failed",
         [](VGroupTask& t) {
             std::vector<_VXUserInfoA> out;
             return t.GetGroup("", out, 1);
         }},
        {"AddGroup : new [17] bytes failed",
         [](VGroupTask& t) {
             auto groups = List({"g"});
             return t.AddGroup(groups);
         }},
        {"RemoveGroup : new [17] bytes failed",
         [](VGroupTask& t) {
             auto groups = List({"g"});
             return t.RemoveGroup(groups);
         }},
        {"AddGroupUsers : new [17] bytes failed",
         [](VGroupTask& t) {
             auto users = List({"a"});
             return t.AddGroupUsers("g", users);
         }},
        {"RemoveGroupUsers : new [17] bytes failed",
         [](VGroupTask& t) {
             auto users = List({"a"});
             return t.RemoveGroupUsers("g", users);
         }},
        {"ShowGroupUsers : new [17] bytes failed",
         [](VGroupTask& t) {
             std::vector<std::string> users;
             return t.ShowGroupUsers("g", users);
         }},
        {"GetGroupUsersInfo : new [17] bytes failed",
         [](VGroupTask& t) {
             std::vector<_VXUserInfoA> out;
             return t.GetGroupUsersInfo("g", out);
         }},
    };
    for (const auto& worker : workers) {
        AccountsHost host;
        DomainGroupTask task;
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

TEST(GroupWorkers, DirectoryGroupIsDeletedFromTheRootSiteContainerPath) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    DomainGroupTask task;
    auto groups = List({"Sales"});
    EXPECT_EQ(task.RemoveGroup(groups), 1);
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"Sales")));
    EXPECT_THAT(host.directory.boundPaths,
                ElementsAre(L"LDAP://CN=Users, DC=corp, DC=example, DC=com"));
}

TEST(GroupWorkers, DirectoryMembersAreAddedByTheirFullPathToTheGroupsPath) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"bob");
    DomainGroupTask task;
    auto users = List({"bob"});
    EXPECT_EQ(task.AddGroupUsers("Sales", users), 1);
    EXPECT_THAT(host.directory.boundPaths,
                ElementsAre(L"LDAP://CN=Sales, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("Add "),
                ElementsAre("Add LDAP://CN=bob, CN=Users, DC=corp, DC=example, DC=com"));
}

TEST(GroupWorkers, DirectoryMemberListingBindsTheGroupsPath) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"bob");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob"));
    DomainGroupTask task;
    std::vector<std::string> users;
    EXPECT_EQ(task.ShowGroupUsers("Sales", users), 1);
    EXPECT_EQ(users.size(), 1u);
    EXPECT_THAT(host.directory.boundPaths,
                ElementsAre(L"LDAP://CN=Sales, CN=Users, DC=corp, DC=example, DC=com"));
}

TEST(GroupWorkers, DirectoryAddStopsAtAFailureOtherThanAlreadyAMemberAfterAnAdd) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryUser(L"bob");
    host.AddDirectoryUser(L"cid");
    host.directory.FailOn("Add LDAP://CN=bob, CN=Users, DC=corp, DC=example, DC=com",
                          {static_cast<std::int32_t>(0x80070005u), 5});
    // What the thread held before the call: the directory leaves it there.
    host.directory.lastError = 87;
    DomainGroupTask task;
    auto users = List({"ann", "bob", "cid"});
    EXPECT_EQ(task.AddGroupUsers("Sales", users), 0);
    EXPECT_EQ(task.GetErrorCode(), 87u);
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann")));
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"cid")));
    EXPECT_THAT(host.directory.CallsStartingWith("Add "),
                ElementsAre("Add LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com",
                            "Add LDAP://CN=bob, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}
