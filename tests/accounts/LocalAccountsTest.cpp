#include "accounts/LocalAccounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "accounts/AccountsHost.h"
#include "helpers/FailingAllocation.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;
using vagent::test::FakeLocalAccounts;

TEST(NetAddUsers, CreatesEachUserAtLevelOneWithTheFixedRecord) {
    AccountsHost host;
    EXPECT_EQ(NetAddUsers(L"\\\\.", {L"ann", L"bob"}, {L"pw1", L"pw2"}), 1);
    EXPECT_THAT(host.net.calls, ElementsAre("UserAdd <null> 1 ann", "UserAdd <null> 1 bob"));
    ASSERT_EQ(host.net.users.count(L"bob"), 1u);
    EXPECT_EQ(host.net.users[L"bob"].password, L"pw2");
    const vagent::os::UserInfo1& record = host.net.addedRecords[0];
    EXPECT_EQ(record.password, L"pw1");
    EXPECT_EQ(record.passwordAge, 0u);
    EXPECT_EQ(record.privilege, 1u);
    EXPECT_FALSE(record.hasHomeDirectory);
    EXPECT_FALSE(record.hasComment);
    EXPECT_EQ(record.flags, 0x10001u);
    EXPECT_FALSE(record.hasScriptPath);
}

TEST(NetAddUsers, ExistingUserSucceedsAndGetsItsPasswordReset) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"old", L"kept comment"};
    EXPECT_EQ(NetAddUsers(L"", {L"ann"}, {L"new"}), 1);
    EXPECT_THAT(host.net.calls,
                ElementsAre("UserAdd <null> 1 ann", "UserSetInfo <null> 1003 ann new"));
    EXPECT_EQ(host.net.users[L"ann"].password, L"new");
    EXPECT_EQ(host.net.users[L"ann"].comment, L"kept comment");
}

TEST(NetAddUsers, FailedResetOfAnExistingUserIsLoggedAndStops) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"old", L""};
    host.net.minimumPasswordLength = 5;
    EXPECT_EQ(NetAddUsers(L"", {L"ann", L"bob"}, {L"new", L"secret"}), 0);
    EXPECT_EQ(host.net.users.count(L"bob"), 0u);
    EXPECT_THAT(host.Logged(), ElementsAre("Change Passwd failed: 2245"));
}

TEST(NetAddUsers, TwoUsersAndOnePasswordFailBeforeAnyAccountIsTouched) {
    AccountsHost host;
    EXPECT_EQ(NetAddUsers(L"", {L"ann", L"bob"}, {L"pw"}), 0);
    EXPECT_THAT(host.net.calls, IsEmpty());
    EXPECT_THAT(host.Logged(), ElementsAre("AddUser : usrs.size != passwds.size"));
}

TEST(NetAddUsers, TwoEmptyListsSucceed) {
    AccountsHost host;
    EXPECT_EQ(NetAddUsers(L"", {}, {}), 1);
    EXPECT_THAT(host.net.calls, IsEmpty());
}

TEST(NetAddUsers, OtherFailureIsLoggedAndKeepsWhatWasCreated) {
    AccountsHost host;
    host.net.FailOn("UserAdd <null> 1 bob", 5);
    EXPECT_EQ(NetAddUsers(L"", {L"ann", L"bob", L"cid"}, {L"a", L"b", L"c"}), 0);
    EXPECT_EQ(host.net.users.count(L"ann"), 1u);
    EXPECT_EQ(host.net.users.count(L"cid"), 0u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetUserAdd failed: 5"));
}

TEST(NetDeleteUsers, DeletesEachUserWithoutServer) {
    AccountsHost host;
    host.net.users[L"ann"] = {};
    host.net.users[L"bob"] = {};
    EXPECT_EQ(NetDeleteUsers(L"\\\\.", {L"ann", L"bob"}), 1);
    EXPECT_THAT(host.net.calls, ElementsAre("UserDel <null> ann", "UserDel <null> bob"));
    EXPECT_TRUE(host.net.users.empty());
}

TEST(NetDeleteUsers, FirstFailureIsLoggedAndStops) {
    AccountsHost host;
    host.net.users[L"bob"] = {};
    EXPECT_EQ(NetDeleteUsers(L"", {L"ghost", L"bob"}), 0);
    EXPECT_EQ(host.net.users.count(L"bob"), 1u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetUserDel failed: 2221"));
}

TEST(NetChangePasswords, ResetsEachPasswordAtLevel1003WithoutTheOldOne) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"a0", L""};
    host.net.users[L"bob"] = FakeLocalAccounts::User{L"b0", L""};
    EXPECT_EQ(NetChangePasswords(L"", {L"ann", L"bob"}, {L"wrong", L"wrong"}, {L"a1", L"b1"}), 1);
    EXPECT_THAT(host.net.calls,
                ElementsAre("UserSetInfo <null> 1003 ann a1", "UserSetInfo <null> 1003 bob b1"));
    EXPECT_EQ(host.net.users[L"bob"].password, L"b1");
}

TEST(NetChangePasswords, ThreeUsersThreeOldTwoNewFailWithTheParameterMessage) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"a0", L""};
    EXPECT_EQ(NetChangePasswords(L"", {L"ann", L"b", L"c"}, {L"1", L"2", L"3"}, {L"x", L"y"}), 0);
    EXPECT_THAT(host.net.calls, IsEmpty());
    EXPECT_EQ(host.net.users[L"ann"].password, L"a0");
    EXPECT_THAT(host.Logged(),
                ElementsAre("ChangePasswd parameter error : usrs.size != passwdsOld.size || "
                            "passwdsOld.size != passwdsNew.size"));
}

TEST(NetChangePasswords, PasswordTooShortLogsExactlyTheName) {
    AccountsHost host;
    host.net.users[L"ann"] = FakeLocalAccounts::User{L"a0", L""};
    host.net.minimumPasswordLength = 8;
    EXPECT_EQ(NetChangePasswords(L"", {L"ann"}, {L""}, {L"short"}), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("NERR_PasswordTooShort"));
}

TEST(NetChangePasswords, EachStatusOfTheTableLogsItsName) {
    const std::vector<std::pair<std::uint32_t, std::string>> table = {
        {2245, "NERR_PasswordTooShort"},
        {2351, "NERR_InvalidComputer"},
        {2226, "NERR_NotPrimary"},
        {5, "ERROR_ACCESS_DENIED"},
        {86, "ERROR_INVALID_PASSWORD"},
        {2221, "NERR_UserNotFound"},
        {1234, ""}};
    for (const auto& row : table) {
        AccountsHost host;
        host.net.users[L"ann"] = {};
        host.net.FailOn("UserSetInfo <null> 1003 ann x", row.first);
        EXPECT_EQ(NetChangePasswords(L"", {L"ann"}, {L""}, {L"x"}), 0);
        EXPECT_THAT(host.Logged(), ElementsAre(row.second)) << row.first;
    }
}

TEST(NetAddLocalGroups, CreatesEachGroupAtLevelZeroOnTheGivenServer) {
    AccountsHost host;
    EXPECT_EQ(NetAddLocalGroups(L"\\\\.", {L"Sales", L"Ops"}), 1);
    EXPECT_THAT(host.net.calls,
                ElementsAre("LocalGroupAdd \\\\. 0 Sales", "LocalGroupAdd \\\\. 0 Ops"));
    EXPECT_EQ(host.net.localGroups.size(), 2u);
}

TEST(NetAddLocalGroups, FirstFailureIsLoggedAndStops) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    EXPECT_EQ(NetAddLocalGroups(L"\\\\.", {L"Sales", L"Ops"}), 0);
    EXPECT_EQ(host.net.localGroups.count(L"Ops"), 0u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetLocalGroupAdd failed : 1379"));
}

TEST(NetDeleteLocalGroups, DeletesEachGroupAndStopsAtTheFirstFailure) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    host.net.localGroups[L"Ops"] = {};
    EXPECT_EQ(NetDeleteLocalGroups(L"\\\\.", {L"Sales", L"Ghost", L"Ops"}), 0);
    EXPECT_THAT(host.net.calls,
                ElementsAre("LocalGroupDel \\\\. Sales", "LocalGroupDel \\\\. Ghost"));
    EXPECT_EQ(host.net.localGroups.count(L"Ops"), 1u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetLocalGroupDel failed : 1376"));
}

TEST(NetAddLocalGroupMembers, QualifiesEachUserWithTheDnsDomain) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    EXPECT_EQ(NetAddLocalGroupMembers(L"", L"Sales", {"ann", "bob"}), 1);
    EXPECT_THAT(host.net.calls,
                ElementsAre("LocalGroupAddMembers \"\" 3 Sales corp.example.com\\ann",
                            "LocalGroupAddMembers \"\" 3 Sales corp.example.com\\bob"));
}

TEST(NetAddLocalGroupMembers, MachineInNoDomainGivesALeadingBackslash) {
    AccountsHost host;
    host.names.names[2] = "";
    host.net.localGroups[L"Sales"] = {};
    EXPECT_EQ(NetAddLocalGroupMembers(L"", L"Sales", {"ann"}), 1);
    EXPECT_THAT(host.net.localGroups[L"Sales"].members, ElementsAre(L"\\ann"));
}

TEST(NetAddLocalGroupMembers, FirstFailureIsLoggedAndStops) {
    AccountsHost host;
    host.net.localGroups[L"Sales"].members = {L"corp.example.com\\ann"};
    EXPECT_EQ(NetAddLocalGroupMembers(L"", L"Sales", {"ann", "bob"}), 0);
    EXPECT_EQ(host.net.localGroups[L"Sales"].members.size(), 1u);
    EXPECT_THAT(host.Logged(), ElementsAre("NetLocalGroupAddMembers failed : 1378"));
}

TEST(NetAddLocalGroupMembers, AllocationFailureIsLoggedWithTheSize) {
    AccountsHost host;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(NetAddLocalGroupMembers(L"", L"Sales", {"ann"}), 0);
    }
    EXPECT_THAT(host.Logged(), ElementsAre("AddGroupUsers : new [17] bytes failed"));
}

TEST(NetEnumUsers, PagesThroughEveryNormalAccount) {
    AccountsHost host;
    host.net.pageSize = 2;
    host.net.users = {{L"a", {}}, {L"b", {}}, {L"c", {}}};
    std::vector<std::wstring> names = {L"stale"};
    EXPECT_EQ(NetEnumUsers(L"", names), 1);
    EXPECT_THAT(names, ElementsAre(L"a", L"b", L"c"));
    EXPECT_THAT(host.net.calls,
                ElementsAre("UserEnum \"\" 0 2 4294967295", "UserEnum \"\" 0 2 4294967295"));
}

TEST(NetEnumUsers, SystemErrorIsLoggedWithItsStatus) {
    AccountsHost host;
    host.net.FailOn("UserEnum \"\" 0 2 4294967295", 5);
    std::vector<std::wstring> names;
    EXPECT_EQ(NetEnumUsers(L"", names), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("A system error has occurred: 5", ""));
}

TEST(NetEnumUsers, EntryThatRunsOutIsAnAccessViolation) {
    AccountsHost host;
    host.net.shortBatches = true;
    host.net.users = {{L"a", {}}, {L"b", {}}};
    std::vector<std::wstring> names;
    EXPECT_EQ(NetEnumUsers(L"", names), 0);
    EXPECT_THAT(names, ElementsAre(L"a"));
    EXPECT_THAT(host.Logged(), ElementsAre("An access violation has occurred", ""));
}

TEST(NetEnumLocalGroups, PagesThroughEveryLocalGroup) {
    AccountsHost host;
    host.net.pageSize = 1;
    host.net.localGroups = {{L"Ops", {}}, {L"Sales", {}}};
    std::vector<std::wstring> names;
    EXPECT_EQ(NetEnumLocalGroups(L"", names), 1);
    EXPECT_THAT(names, ElementsAre(L"Ops", L"Sales"));
    EXPECT_EQ(host.net.calls.size(), 2u);
    EXPECT_EQ(host.net.calls[0], "LocalGroupEnum \"\" 0 4294967295");
}

TEST(NetEnumLocalGroups, ResumeHandleKeepsItsFullWidthBetweenPages) {
    AccountsHost host;
    host.net.pageSize = 1;
    host.net.wideResumeBase = std::numeric_limits<std::uintptr_t>::max() - 0xFFFF;
    host.net.localGroups = {{L"Ops", {}}, {L"Sales", {}}, {L"Staff", {}}};
    std::vector<std::wstring> names;
    EXPECT_EQ(NetEnumLocalGroups(L"", names), 1);
    EXPECT_THAT(names, ElementsAre(L"Ops", L"Sales", L"Staff"));
    EXPECT_EQ(host.net.calls.size(), 3u);
}

TEST(NetEnumLocalGroups, SystemErrorIsLoggedWithItsStatus) {
    AccountsHost host;
    host.net.FailOn("LocalGroupEnum \"\" 0 4294967295", 2351);
    std::vector<std::wstring> names;
    EXPECT_EQ(NetEnumLocalGroups(L"", names), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("A system error has occurred: 2351", ""));
}
