#include "vagent/VUserTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "accounts/AccountsHost.h"
#include "helpers/FailingAllocation.h"
#include "vagent/LdapRootSite.h"
#include "vagent/VPrivilege.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;
using vagent::test::ClientAck;
using vagent::test::FakeDirectory;
using vagent::test::FakeLocalAccounts;
using vagent::test::HeadBlock;
using vagent::test::ListBlock;
using vagent::test::PairBlock;
using vagent::test::Records;
using vagent::test::RunTask;
using vagent::test::TaskAnswer;
using vagent::test::TripleBlock;

namespace {

constexpr int kLocal = 0;
constexpr int kDomain = 1;

}  // namespace

TEST(VUserTask, Id1LocalListsEveryAccountWithItsComment) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"", L"Accounts"};
    host.net.users[L"bob"] = FakeLocalAccounts::User{L"", L""};
    VUserTask task(1);
    const TaskAnswer answer = RunTask(task, ListBlock({"ignored", "1"}), kLocal);
    EXPECT_EQ(answer.truth, 1);
    std::vector<_VXUserInfoA> users;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &users), 1);
    EXPECT_THAT(Records(users), ElementsAre("ann|Accounts", "bob|"));
    EXPECT_THAT(host.net.calls, ElementsAre("UserEnum \"\" 0 2 4294967295",
                                            "UserGetInfo \"\" 10 ann", "UserGetInfo \"\" 10 bob"));
    EXPECT_THAT(host.net.debugOutput, ElementsAre("ann", "bob"));
}

TEST(VUserTask, Id1DomainSearchesUnderTheBaseAndDomain) {
    AccountsHost host;
    host.directory.AddEntry(L"OU=Staff,DC=corp,DC=example,DC=com", L"organizationalUnit");
    host.directory.AddEntry(L"CN=ann,OU=Staff,DC=corp,DC=example,DC=com", L"user")
        .attributes[L"description"] = L"Accounts";
    VUserTask task(1);
    const TaskAnswer answer = RunTask(task, ListBlock({"OU=Staff", "0"}), kDomain);
    EXPECT_EQ(answer.truth, 1);
    std::vector<_VXUserInfoA> users;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &users), 1);
    EXPECT_THAT(Records(users),
                ElementsAre("LDAP://CN=ann,OU=Staff,DC=corp,DC=example,DC=com|Accounts"));
    EXPECT_THAT(host.directory.CallsStartingWith("BindSearch"),
                ElementsAre("BindSearch LDAP://OU=Staff, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
    EXPECT_EQ(host.com.initializations, 1);
}

TEST(VUserTask, Id1WithASingleItemAnswersOneAndListsNothing) {
    AccountsHost host;
    host.net.users[L"ann"] = {};
    VUserTask task(1);
    const TaskAnswer answer = RunTask(task, ListBlock({"OU=Staff"}), kLocal);
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_THAT(host.net.calls, IsEmpty());
}

TEST(VUserTask, Id1WithNoAccountsAnswersOne) {
    AccountsHost host;
    VUserTask task(1);
    const TaskAnswer answer = RunTask(task, ListBlock({"", "1"}), kLocal);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_THAT(host.Logged(), ElementsAre("VecUser2Result : Parameter Error"));
}

TEST(VUserTask, Id2LocalCreatesTheAccounts) {
    AccountsHost host;
    VUserTask task(2);
    const TaskAnswer answer = RunTask(task, PairBlock({"ann", "bob"}, {"pw1", "pw2"}), kLocal);
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(ClientAck(task, answer), 1);
    ASSERT_EQ(host.net.users.size(), 2u);
    EXPECT_EQ(host.net.users[L"ann"].password, L"pw1");
    EXPECT_EQ(host.net.users[L"bob"].password, L"pw2");
}

TEST(VUserTask, Id2DomainCreatesTheAccountsInTheRootSite) {
    AccountsHost host;
    VUserTask task(2);
    const TaskAnswer answer = RunTask(task, PairBlock({"ann"}, {"pw1"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    const auto* ann = host.directory.Find(AccountsHost::UsersDn(L"ann"));
    ASSERT_NE(ann, nullptr);
    EXPECT_EQ(ann->password, L"pw1");
    EXPECT_FALSE(ann->disabled);
    EXPECT_THAT(host.directory.CallsStartingWith("BindContainer"),
                ElementsAre("BindContainer LDAP://CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VUserTask, Id2FailureAnswersZero) {
    AccountsHost host;
    host.net.FailOn("UserAdd <null> 1 ann", 5);
    VUserTask task(2);
    const TaskAnswer answer = RunTask(task, PairBlock({"ann"}, {"pw1"}), kLocal);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_EQ(ClientAck(task, answer), 0);
}

TEST(VUserTask, Id3LocalDeletesTheAccounts) {
    AccountsHost host;
    host.net.users[L"ann"] = {};
    host.net.users[L"bob"] = {};
    VUserTask task(3);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_EQ(host.net.users.count(L"ann"), 0u);
    EXPECT_EQ(host.net.users.count(L"bob"), 1u);
}

TEST(VUserTask, Id3DomainDeletesFromTheRootSite) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    VUserTask task(3);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"ann")));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VUserTask, Id4AnswersOneAndChangesNothing) {
    AccountsHost host;
    host.net.users[L"ann"] = {};
    for (const int env : {kLocal, kDomain}) {
        VUserTask task(4);
        const TaskAnswer answer = RunTask(task, PairBlock({"ann"}, {"anna"}), env);
        EXPECT_EQ(answer.truth, 1);
        EXPECT_EQ(ClientAck(task, answer), 1);
    }
    EXPECT_THAT(host.net.calls, IsEmpty());
    EXPECT_THAT(host.directory.calls, IsEmpty());
    EXPECT_EQ(host.net.users.count(L"ann"), 1u);
}

TEST(VUserTask, Id5LocalResetsThePasswords) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"old", L""};
    VUserTask task(5);
    const TaskAnswer answer = RunTask(task, TripleBlock({"ann"}, {"whatever"}, {"new"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_EQ(host.net.users[L"ann"].password, L"new");
}

TEST(VUserTask, Id5DomainResetsThePasswords) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    VUserTask task(5);
    const TaskAnswer answer = RunTask(task, TripleBlock({"ann"}, {"old"}, {"new"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"ann"))->password, L"new");
}

TEST(VUserTask, Id6LocalListsTheUsersGroups) {
    AccountsHost host;
    host.net.users[L"ann"] = {};
    host.net.globalGroups[L"Domain Users"].members = {L"ann"};
    host.net.globalGroups[L"Sales"].members = {L"ann"};
    host.net.globalGroups[L"Ops"].members = {L"bob"};
    VUserTask task(6);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann"}), kLocal);
    std::vector<_VXUserGroupA> groups;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &groups), 1);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].name, "Domain Users");
    EXPECT_EQ(groups[1].name, "Sales");
    EXPECT_THAT(host.net.calls, ElementsAre("UserGetGroups <null> 0 ann 4294967295"));
}

TEST(VUserTask, Id6DomainListsTheGroupPaths) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Sales");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    VUserTask task(6);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann"}), kDomain);
    std::vector<_VXUserGroupA> groups;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &groups), 1);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].name, "LDAP://CN=Sales,CN=Users,DC=corp,DC=example,DC=com");
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VUserTask, Id6WithAnEmptyPayloadAnswersZeroAndAsksNothing) {
    AccountsHost host;
    VUserTask task(6);
    const TaskAnswer answer = RunTask(task, {0, 0, 0, 0}, kLocal);
    EXPECT_EQ(answer.Ack(), 0);
    EXPECT_THAT(host.net.calls, IsEmpty());
}

TEST(VUserTask, Id7LocalAddsTheUserToEachGroup) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    host.net.localGroups[L"Ops"] = {};
    VUserTask task(7);
    const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"Sales", "Ops"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.localGroups[L"Sales"].members, ElementsAre(L"ann"));
    EXPECT_THAT(host.net.localGroups[L"Ops"].members, ElementsAre(L"ann"));
    EXPECT_THAT(host.net.calls, ElementsAre("LocalGroupAddMembers <null> 3 Sales ann",
                                            "LocalGroupAddMembers <null> 3 Ops ann"));
}

TEST(VUserTask, Id7DomainAddsTheUserToEachGroup) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Sales");
    VUserTask task(7);
    const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"Sales"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_TRUE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann")));
    EXPECT_THAT(host.directory.CallsStartingWith("BindGroup"),
                ElementsAre("BindGroup LDAP://CN=Sales, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("Add "),
                ElementsAre("Add LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VUserTask, Id8AddsTheQualifiedUserToBuiltinGroupsOnAMemberMachine) {
    AccountsHost host;
    host.net.servers = {vagent::os::ServerInfo101{L"TS01", 0x1003}};
    host.net.localGroups[L"Administrators"] = {};
    VUserTask task(8);
    const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"Administrators"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.localGroups[L"Administrators"].members,
                ElementsAre(L"corp.example.com\\ann"));
    EXPECT_THAT(host.directory.calls, IsEmpty());
}

TEST(VUserTask, Id9RemovesTheUserFromBuiltinGroupsOnAController) {
    AccountsHost host;
    host.net.servers = {vagent::os::ServerInfo101{L"TS01", 0x100B}};
    host.net.localGroups[L"Administrators"].members = {L"ann", L"bob"};
    VUserTask task(9);
    const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"Administrators"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.localGroups[L"Administrators"].members, ElementsAre(L"bob"));
}

TEST(VUserTask, Id10LocalRemovesTheUserFromEachGroup) {
    AccountsHost host;
    host.net.localGroups[L"Sales"].members = {L"ann"};
    VUserTask task(10);
    const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"Sales"}), kLocal);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_THAT(host.net.localGroups[L"Sales"].members, IsEmpty());
    EXPECT_THAT(host.net.calls, ElementsAre("LocalGroupDelMembers <null> 3 Sales ann"));
}

TEST(VUserTask, Id10DomainRemovesTheUserFromEachGroup) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryGroup(L"Sales");
    host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
    VUserTask task(10);
    const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"Sales"}), kDomain);
    EXPECT_EQ(ClientAck(task, answer), 1);
    EXPECT_FALSE(
        host.directory.IsMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann")));
}

TEST(VUserTask, Id11And12AnswerOneAndChangeNothing) {
    AccountsHost host;
    for (const std::uint32_t id : {11u, 12u}) {
        VUserTask task(id);
        const TaskAnswer answer = RunTask(task, HeadBlock("ann", {"SeBackupPrivilege"}), kLocal);
        EXPECT_EQ(answer.truth, 1);
        EXPECT_EQ(ClientAck(task, answer), 1);
    }
    EXPECT_THAT(host.net.calls, IsEmpty());
    EXPECT_THAT(host.directory.calls, IsEmpty());
}

TEST(VUserTask, Id13AnswersOneForTheRefusedEmptyPrivilegeList) {
    AccountsHost host;
    VUserTask task(13);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann"}), kLocal);
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(answer.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 1}));
    EXPECT_THAT(host.Logged(), ElementsAre("Privilege2Result : Parameter Error"));
    std::vector<VPrivilege*> privileges;
    EXPECT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &privileges), 0);
    EXPECT_TRUE(privileges.empty());
}

TEST(VUserTask, Id37AnswersAccountNameThenPrincipalName) {
    AccountsHost host;
    auto& ann = host.AddDirectoryUser(L"ann");
    ann.attributes[L"samaccountname"] = L"ann.lee";
    ann.attributes[L"userprincipalname"] = L"ann.lee@corp.example.com";
    VUserTask task(37);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann"}), kLocal);
    EXPECT_EQ(answer.truth, 1);
    std::vector<std::string> names;
    ASSERT_EQ(task.Result2Struct(answer.Payload(), answer.PayloadLength(), &names), 1);
    EXPECT_THAT(names, ElementsAre("ann.lee", "ann.lee@corp.example.com"));
    EXPECT_THAT(host.directory.CallsStartingWith("Bind"),
                ElementsAre("BindObject LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VUserTask, Id37WithAnEmptyPayloadAnswersZeroAndRunsNothing) {
    AccountsHost host;
    VUserTask task(37);
    const TaskAnswer answer = RunTask(task, {0, 0, 0, 0}, kLocal);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_EQ(answer.Ack(), 0);
    EXPECT_THAT(host.directory.calls, IsEmpty());
    EXPECT_EQ(host.com.initializations, 0);
}

TEST(VUserTask, Id37UnknownUserAnswersZeroWithTheLastError) {
    AccountsHost host;
    host.directory.lastError = 87;
    VUserTask task(37);
    const TaskAnswer answer = RunTask(task, ListBlock({"ghost"}), kLocal);
    EXPECT_EQ(answer.Ack(), 0);
    // The status a failed bind leaves in the thread's last error.
    EXPECT_EQ(task.GetErrorCode(), FakeDirectory::kHostNotFound);
    EXPECT_TRUE(host.com.Balanced());
}

TEST(VUserTask, IdOfAnotherFamilyReturnsZeroWithoutOutput) {
    AccountsHost host;
    VUserTask task(14);
    const TaskAnswer answer = RunTask(task, ListBlock({"x", "1"}), kLocal);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_TRUE(answer.block.empty());
    std::vector<std::uint8_t> ack = {0, 0, 0, 1};
    std::uint32_t value = 7;
    EXPECT_EQ(task.Result2Struct(ack.data(), 4, &value), 0);
    EXPECT_EQ(value, 7u);
}

TEST(VUserTask, DoTaskWithoutRequestStoresInvalidSetting) {
    VUserTask task(2);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 9;
    EXPECT_EQ(task.DoTask(&data, &size), 0);
    EXPECT_EQ(task.GetErrorCode(), 0xE6000002u);
    EXPECT_EQ(size, 9u);
}

TEST(VUserTask, DoTaskWithNullOutputsReturnsZero) {
    AccountsHost host;
    VUserTask task(2);
    std::vector<std::uint8_t> block = PairBlock({"ann"}, {"pw"});
    TaskRequest request;
    request.length = static_cast<std::uint32_t>(block.size());
    request.data = block.data();
    task.SetRequest(request);
    std::uint32_t size = 0;
    std::uint8_t* data = nullptr;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_EQ(task.DoTask(&data, nullptr), 0);
    EXPECT_THAT(host.net.calls, IsEmpty());
}

TEST(VUserTask, Result2StructRefusesMissingArguments) {
    AccountsHost host;
    VUserTask task(2);
    const std::uint8_t payload[4] = {0, 0, 0, 1};
    std::uint32_t value = 0;
    EXPECT_EQ(task.Result2Struct(nullptr, 4, &value), 0);
    EXPECT_EQ(task.Result2Struct(payload, 0, &value), 0);
    EXPECT_EQ(task.Result2Struct(payload, 4, nullptr), 0);
    EXPECT_THAT(host.Logged(),
                ElementsAre("Result2Struct : Parameter Error", "Result2Struct : Parameter Error",
                            "Result2Struct : Parameter Error"));
}
