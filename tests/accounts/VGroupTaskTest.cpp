#include "vagent/VGroupTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "accounts/AccountsHost.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;
using vagent::test::ClientAck;
using vagent::test::FakeLocalAccounts;
using vagent::test::HeadBlock;
using vagent::test::ListBlock;
using vagent::test::PairBlock;
using vagent::test::Records;
using vagent::test::RunTask;
using vagent::test::TaskAnswer;

namespace {

constexpr int kLocal = 0;
constexpr int kDomain = 1;

}  // namespace

TEST(VGroupTask, Id14LocalListsGroupsWithTheGlobalGroupComment) {
    AccountsHost host;
    host.net.localGroups[L"Ops"] = {};
    host.net.localGroups[L"Sales"] = {};
    host.net.globalGroups[L"Sales"].comment = L"Sellers";
    VGroupTask task(14);
    const TaskAnswer answer = RunTask(task, ListBlock({"ignored", "0"}), kLocal);
    EXPECT_EQ(answer.truth, 1);
    std::vector<_VXUserInfoA> groups;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &groups), 1);
    EXPECT_THAT(Records(groups), ElementsAre("Ops|", "Sales|Sellers"));
    EXPECT_THAT(host.net.calls,
                ElementsAre("LocalGroupEnum \"\" 0 4294967295", "GroupGetInfo \"\" 1 Ops",
                            "GroupGetInfo \"\" 1 Sales"));
}

TEST(VGroupTask, Id14DomainSearchesGroupsUnderTheBase) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales").attributes[L"description"] = L"Sellers";
    VGroupTask task(14);
    const TaskAnswer answer = RunTask(task, ListBlock({"CN=Users", "1"}), kDomain);
    std::vector<_VXUserInfoA> groups;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &groups), 1);
    EXPECT_THAT(Records(groups),
                ElementsAre("LDAP://CN=Sales,CN=Users,DC=corp,DC=example,DC=com|Sellers"));
    EXPECT_THAT(host.directory.CallsStartingWith("BindSearch"),
                ElementsAre("BindSearch LDAP://CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VGroupTask, Id14ThreeRecordsTravelAsSixStrings) {
    AccountsHost host;
    host.net.localGroups = {{L"A", {}}, {L"B", {}}, {L"C", {}}};
    VGroupTask task(14);
    const TaskAnswer answer = RunTask(task, ListBlock({"", "1"}), kLocal);
    std::vector<std::string> strings;
    VGroupTask lister(20);
    ASSERT_EQ(lister.Result2Struct(answer.Payload(), answer.PayloadLength(), &strings), 1);
    EXPECT_THAT(strings, ElementsAre("A", "", "B", "", "C", ""));
    std::vector<_VXUserInfoA> groups;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &groups), 1);
    EXPECT_EQ(groups.size(), 3u);
}

TEST(VGroupTask, Id14FiveStringsGiveTwoRecords) {
    const std::vector<std::uint8_t> block = ListBlock({"a", "1", "b", "2", "c"});
    VGroupTask task(14);
    std::vector<_VXUserInfoA> groups;
    ASSERT_EQ(
        task.Result2Struct(block.data() + 4, static_cast<std::uint32_t>(block.size() - 4), &groups),
        1);
    EXPECT_THAT(Records(groups), ElementsAre("a|1", "b|2"));
}

TEST(VGroupTask, Id14WithOneItemAnswersOneAndListsNothing) {
    AccountsHost host;
    VGroupTask task(14);
    const TaskAnswer answer = RunTask(task, ListBlock({"CN=Users"}), kLocal);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_THAT(host.net.calls, IsEmpty());
}

TEST(VGroupTask, Id15LocalCreatesTheGroups) {
    AccountsHost host;
    VGroupTask task(15);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales", "Ops"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_EQ(host.net.localGroups.count(L"Sales"), 1u);
    EXPECT_EQ(host.net.localGroups.count(L"Ops"), 1u);
}

TEST(VGroupTask, Id15DomainCreatesTheGroupsInTheRootSite) {
    AccountsHost host;
    VGroupTask task(15);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    const auto* sales = host.directory.Find(AccountsHost::UsersDn(L"Sales"));
    ASSERT_NE(sales, nullptr);
    EXPECT_EQ(sales->objectClass, L"group");
    EXPECT_EQ(sales->attributes.at(L"samaccountname"), L"Sales");
    EXPECT_EQ(sales->attributes.count(L"userprincipalname"), 0u);
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VGroupTask, Id16LocalDeletesTheGroups) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    VGroupTask task(16);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_TRUE(host.net.localGroups.empty());
}

TEST(VGroupTask, Id16DomainDeletesTheGroups) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    VGroupTask task(16);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"Sales")));
}

TEST(VGroupTask, Id17AnswersOneAndChangesNothing) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    VGroupTask task(17);
    const TaskAnswer answer = RunTask(task, PairBlock({"Sales"}, {"Sellers"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.calls, IsEmpty());
    EXPECT_EQ(host.net.localGroups.count(L"Sales"), 1u);
}

TEST(VGroupTask, Id18LocalAddsTheQualifiedUsers) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    VGroupTask task(18);
    const TaskAnswer answer = RunTask(task, HeadBlock("Sales", {"ann", "bob"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.localGroups[L"Sales"].members,
                ElementsAre(L"corp.example.com\\ann", L"corp.example.com\\bob"));
}

TEST(VGroupTask, Id18DomainAddsTheUsers) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryUser(L"bob");
    VGroupTask task(18);
    const TaskAnswer answer = RunTask(task, HeadBlock("Sales", {"ann", "bob"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann")));
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob")));
}

TEST(VGroupTask, Id19LocalRemovesTheUsersFromTheGroup) {
    AccountsHost host;
    host.net.globalGroups[L"Sales"].members = {L"ann", L"bob"};
    VGroupTask task(19);
    const TaskAnswer answer = RunTask(task, HeadBlock("Sales", {"ann"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.globalGroups[L"Sales"].members, ElementsAre(L"bob"));
    EXPECT_THAT(host.net.calls, ElementsAre("GroupDelUser <null> Sales ann"));
}

TEST(VGroupTask, Id19DomainRemovesTheUsers) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    VGroupTask task(19);
    const TaskAnswer answer = RunTask(task, HeadBlock("Sales", {"ann"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann")));
}

TEST(VGroupTask, Id20LocalListsTheMemberNames) {
    AccountsHost host;
    host.net.localGroups[L"Sales"].members = {L"CORP\\ann", L"bob"};
    VGroupTask task(20);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kLocal);
    std::vector<std::string> users;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &users), 1);
    EXPECT_THAT(users, ElementsAre("CORP\\ann", "bob"));
    EXPECT_THAT(host.net.calls, ElementsAre("LocalGroupGetMembers <null> 1 Sales 4294967295"));
}

TEST(VGroupTask, Id20DomainListsTheMemberPaths) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    VGroupTask task(20);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kDomain);
    std::vector<std::string> users;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &users), 1);
    EXPECT_THAT(users, ElementsAre("LDAP://CN=ann,CN=Users,DC=corp,DC=example,DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VGroupTask, Id21And22AnswerOneAndChangeNothing) {
    AccountsHost host;
    for (const std::uint32_t id : {21u, 22u}) {
        VGroupTask task(id);
        const TaskAnswer answer = RunTask(task, HeadBlock("Sales", {"SeBackupPrivilege"}), kLocal);
        EXPECT_EQ(ClientAck(task, answer), 1);
    }
    EXPECT_THAT(host.net.calls, IsEmpty());
    EXPECT_THAT(host.directory.calls, IsEmpty());
}

TEST(VGroupTask, Id23AnswersOneForTheRefusedEmptyPrivilegeList) {
    AccountsHost host;
    VGroupTask task(23);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kLocal);
    EXPECT_EQ(answer.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 1}));
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.Logged(), ElementsAre("Privilege2Result : Parameter Error"));
}

TEST(VGroupTask, Id42LocalListsMembersWithTheirComments) {
    AccountsHost host;
    host.net.localGroups[L"Sales"].members = {L"ann", L"ghost"};
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"", L"Accounts"};
    VGroupTask task(42);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kLocal);
    std::vector<_VXUserInfoA> users;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &users), 1);
    EXPECT_THAT(Records(users), ElementsAre("ann|Accounts", "ghost|"));
    EXPECT_THAT(host.net.calls,
                ElementsAre("LocalGroupGetMembers <null> 1 Sales 4294967295",
                            "UserGetInfo \"\" 10 ann", "UserGetInfo \"\" 10 ghost"));
}

TEST(VGroupTask, Id42DomainListsUsersWhoseMembershipMatches) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Sales");
    host.AddDirectoryUser(L"ann").attributes[L"description"] = L"Accounts";
    host.AddDirectoryUser(L"bob");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    VGroupTask task(42);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), kDomain);
    std::vector<_VXUserInfoA> users;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &users), 1);
    EXPECT_THAT(Records(users),
                ElementsAre("LDAP://CN=ann,CN=Users,DC=corp,DC=example,DC=com|Accounts"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VGroupTask, IdOfAnotherFamilyReturnsZeroWithoutOutput) {
    AccountsHost host;
    for (const std::uint32_t id : {13u, 24u, 37u, 43u}) {
        VGroupTask task(id);
        const TaskAnswer answer = RunTask(task, ListBlock({"x"}), kLocal);
        EXPECT_EQ(answer.truth, 0);
        EXPECT_TRUE(answer.block.empty());
        const std::uint8_t ack[4] = {0, 0, 0, 1};
        std::uint32_t value = 7;
        EXPECT_EQ(task.Result2Struct(ack, 4, &value), 0);
        EXPECT_EQ(value, 7u);
    }
}

TEST(VGroupTask, DoTaskRefusesNullOutputsWithParameterError) {
    AccountsHost host;
    VGroupTask task(15);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_EQ(task.DoTask(&data, nullptr), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("DoTask : Parameter Error", "DoTask : Parameter Error"));
}

TEST(VGroupTask, DoTaskWithoutRequestAnswersZero) {
    AccountsHost host;
    VGroupTask task(15);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(&data, &size), 0);
    ASSERT_EQ(size, 8u);
    EXPECT_EQ(std::vector<std::uint8_t>(data, data + size),
              (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 0}));
    delete[] data;
    EXPECT_EQ(task.GetErrorCode(), 0u);
}
