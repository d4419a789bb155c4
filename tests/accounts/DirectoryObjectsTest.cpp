#include "accounts/DirectoryObjects.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "accounts/AccountsHost.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;
using vagent::test::FakeDirectory;

namespace {

const std::wstring kUsers = L"LDAP://CN=Users, DC=corp, DC=example, DC=com";

}  // namespace

TEST(AddObject, CreatesAUserWithItsAttributesPasswordAndEnabledAccount) {
    AccountsHost host;
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann"}, {L"pw1"}), 1);
    const FakeDirectory::Entry* ann = host.directory.Find(AccountsHost::UsersDn(L"ann"));
    ASSERT_NE(ann, nullptr);
    EXPECT_EQ(ann->objectClass, L"user");
    EXPECT_EQ(ann->attributes.at(L"samaccountname"), L"ann");
    EXPECT_EQ(ann->attributes.at(L"userprincipalname"), L"ann");
    EXPECT_EQ(ann->password, L"pw1");
    EXPECT_FALSE(ann->disabled);
    EXPECT_THAT(
        host.directory.calls,
        ElementsAre("BindContainer LDAP://CN=Users, DC=corp, DC=example, DC=com",
                    "Create User CN=ann", "QueryObject cn=ann,cn=users,dc=corp,dc=example,dc=com",
                    "Put userPrincipalName=ann", "Put sAMAccountname=ann",
                    "SetInfo CN=ann,CN=Users,DC=corp,DC=example,DC=com",
                    "BindUser LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com",
                    "SetPassword CN=ann,CN=Users,DC=corp,DC=example,DC=com pw1",
                    "PutAccountDisabled CN=ann,CN=Users,DC=corp,DC=example,DC=com 0",
                    "UserSetInfo CN=ann,CN=Users,DC=corp,DC=example,DC=com"));
    EXPECT_EQ(host.directory.live, 0);
}

TEST(AddObject, GroupClassWithCapitalGSkipsTheUserOnlySteps) {
    AccountsHost host;
    EXPECT_EQ(AddObject(kUsers, L"Group", {L"Sales"}, {}), 1);
    EXPECT_TRUE(host.directory.Exists(AccountsHost::UsersDn(L"Sales")));
    EXPECT_THAT(host.directory.CallsStartingWith("Put "), ElementsAre("Put sAMAccountname=Sales"));
    EXPECT_THAT(host.directory.CallsStartingWith("BindUser"), IsEmpty());
}

TEST(AddObject, AccountValueIsTheNameFromItsFirstCn) {
    AccountsHost host;
    EXPECT_EQ(AddObject(kUsers, L"user", {L"x CN=ann"}, {L"p"}), 1);
    EXPECT_THAT(host.directory.CallsStartingWith("Put "),
                ElementsAre("Put userPrincipalName=CN=ann", "Put sAMAccountname=CN=ann"));
    EXPECT_THAT(host.directory.CallsStartingWith("Create"), ElementsAre("Create user CN=x CN=ann"));
}

TEST(AddObject, ContainerThatDoesNotExistLogsThePathAndCreatesNothing) {
    AccountsHost host;
    const std::wstring missing = L"LDAP://OU=Nowhere, DC=corp, DC=example, DC=com";
    EXPECT_EQ(AddObject(missing, L"User", {L"ann"}, {L"pw"}), 0);
    EXPECT_FALSE(host.directory.Exists(L"CN=ann,OU=Nowhere,DC=corp,DC=example,DC=com"));
    EXPECT_TRUE(host.directory.pending.empty());
    EXPECT_THAT(host.Logged(),
                ElementsAre("AddObject => ADsGetObject failed : path = LDAP://OU=Nowhere, "
                            "DC=corp, DC=example, DC=com"));
}

TEST(AddObject, SecondCreateFailingLeavesTheFirstUserCreatedWithPasswordAndEnabled) {
    AccountsHost host;
    host.directory.FailOn("Create User CN=bob", {});
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann", L"bob", L"cid"}, {L"p1", L"p2", L"p3"}), 0);
    const FakeDirectory::Entry* ann = host.directory.Find(AccountsHost::UsersDn(L"ann"));
    ASSERT_NE(ann, nullptr);
    EXPECT_EQ(ann->password, L"p1");
    EXPECT_FALSE(ann->disabled);
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"bob")));
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"cid")));
    EXPECT_THAT(host.Logged(), ElementsAre("AddObject => pCont->Create failed"));
}

TEST(AddObject, UserWithoutMatchingPasswordGetsThePreviousUsersPassword) {
    AccountsHost host;
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann", L"bob"}, {L"p1"}), 1);
    EXPECT_EQ(host.directory.Find(AccountsHost::UsersDn(L"bob"))->password, L"p1");
}

TEST(AddObject, FirstUserWithoutPasswordGetsAnEmptyOne) {
    AccountsHost host;
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann"}, {}), 1);
    EXPECT_THAT(host.directory.CallsStartingWith("SetPassword"),
                ElementsAre("SetPassword CN=ann,CN=Users,DC=corp,DC=example,DC=com "));
}

TEST(AddObject, EachFailingStepLogsItsOwnText) {
    const std::vector<std::pair<std::string, std::string>> steps = {
        {"QueryObject cn=ann,cn=users,dc=corp,dc=example,dc=com",
         "AddObject => pDisp->QueryInterface failed"},
        {"Put userPrincipalName=ann", "AddObject => pObject->Put [userPrincipalName] failed"},
        {"Put sAMAccountname=ann", "AddObject => pObject->Put [sAMAccountname] failed"},
        {"SetInfo CN=ann,CN=Users,DC=corp,DC=example,DC=com",
         "AddObject => pObject->SetInfo failed"},
    };
    for (const auto& step : steps) {
        AccountsHost host;
        host.directory.FailOn(step.first, {});
        EXPECT_EQ(AddObject(kUsers, L"User", {L"ann"}, {L"pw"}), 0);
        EXPECT_THAT(host.Logged(), ElementsAre(step.second)) << step.first;
        EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"ann")));
    }
}

TEST(AddObject, UserThatCannotBeBoundAfterCreationIsPassedOver) {
    AccountsHost host;
    host.directory.FailOn("BindUser LDAP://CN=ann, CN=Users, DC=corp, DC=example, DC=com", {});
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann", L"bob"}, {L"p1", L"p2"}), 1);
    EXPECT_TRUE(host.directory.Find(AccountsHost::UsersDn(L"ann"))->disabled);
    EXPECT_FALSE(host.directory.Find(AccountsHost::UsersDn(L"bob"))->disabled);
    EXPECT_THAT(host.Logged(), IsEmpty());
}

TEST(AddObject, FailedCommitOfTheEnabledAccountIsLoggedAndStops) {
    AccountsHost host;
    host.directory.FailOn("UserSetInfo CN=ann,CN=Users,DC=corp,DC=example,DC=com", {});
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann", L"bob"}, {L"p1", L"p2"}), 0);
    EXPECT_TRUE(host.directory.Exists(AccountsHost::UsersDn(L"ann")));
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"bob")));
    EXPECT_THAT(host.Logged(), ElementsAre("AddObject => pUser->put_AccountDisabled failed"));
}

TEST(AddObject, PasswordAndEnableResultsAreIgnoredUntilTheCommit) {
    AccountsHost host;
    host.directory.FailOn("SetPassword CN=ann,CN=Users,DC=corp,DC=example,DC=com p1", {});
    host.directory.FailOn("PutAccountDisabled CN=ann,CN=Users,DC=corp,DC=example,DC=com 0", {});
    EXPECT_EQ(AddObject(kUsers, L"User", {L"ann"}, {L"p1"}), 1);
    EXPECT_THAT(host.directory.CallsStartingWith("UserSetInfo"),
                ElementsAre("UserSetInfo CN=ann,CN=Users,DC=corp,DC=example,DC=com"));
    EXPECT_THAT(host.Logged(), IsEmpty());
}

TEST(DeleteObject, DeletesEachNameFromTheGivenContainer) {
    AccountsHost host;
    host.AddDirectoryUser(L"ann");
    host.AddDirectoryUser(L"bob");
    EXPECT_EQ(DeleteObject(kUsers, L"User", {L"ann", L"bob"}), 1);
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"ann")));
    EXPECT_FALSE(host.directory.Exists(AccountsHost::UsersDn(L"bob")));
    EXPECT_THAT(host.directory.CallsStartingWith("Delete"),
                ElementsAre("Delete User CN=ann", "Delete User CN=bob"));
}

TEST(DeleteObject, FullPathDeletesFromItsOwnContainerIgnoringTheGivenOne) {
    AccountsHost host;
    host.directory.AddEntry(L"OU=y,DC=z", L"organizationalUnit");
    host.directory.AddEntry(L"CN=x,OU=y,DC=z", L"user");
    EXPECT_EQ(DeleteObject(kUsers, L"User", {L"LDAP://CN=x,OU=y,DC=z"}), 1);
    EXPECT_FALSE(host.directory.Exists(L"CN=x,OU=y,DC=z"));
    EXPECT_THAT(host.directory.calls,
                ElementsAre("BindContainer LDAP://OU=y,DC=z", "Delete User CN=x"));
}

TEST(DeleteObject, FullPathWithoutACommaFailsSilently) {
    AccountsHost host;
    EXPECT_EQ(DeleteObject(kUsers, L"User", {L"LDAP://CN=x"}), 0);
    EXPECT_THAT(host.directory.calls, IsEmpty());
    EXPECT_THAT(host.Logged(), IsEmpty());
}

TEST(DeleteObject, MissingContainerIsLoggedWithItsPath) {
    AccountsHost host;
    EXPECT_EQ(DeleteObject(L"LDAP://OU=gone, DC=z", L"Group", {L"Sales"}), 0);
    EXPECT_THAT(host.Logged(),
                ElementsAre("DeleteObject => ADsGetObject failed : LDAP://OU=gone, DC=z"));
}

TEST(DeleteObject, FailedDeleteIsLoggedWithTwoBlanksAndStops) {
    AccountsHost host;
    host.AddDirectoryGroup(L"Ops");
    EXPECT_EQ(DeleteObject(kUsers, L"Group", {L"Ghost", L"Ops"}), 0);
    EXPECT_TRUE(host.directory.Exists(AccountsHost::UsersDn(L"Ops")));
    EXPECT_THAT(host.Logged(), ElementsAre("DeleteObject =>  pCont->Delete failed"));
}

namespace {

void AddStaff(AccountsHost& host) {
    host.directory.AddEntry(L"OU=Staff,DC=corp,DC=example,DC=com", L"organizationalUnit");
    host.directory.AddEntry(L"CN=ann,OU=Staff,DC=corp,DC=example,DC=com", L"user")
        .attributes[L"description"] = L"Accounts";
    host.directory.AddEntry(L"OU=Deep,OU=Staff,DC=corp,DC=example,DC=com", L"organizationalUnit");
    host.directory.AddEntry(L"CN=bob,OU=Deep,OU=Staff,DC=corp,DC=example,DC=com", L"user");
    host.directory.AddEntry(L"CN=Crew,OU=Staff,DC=corp,DC=example,DC=com", L"group");
}

std::vector<std::string> Names(const std::vector<_VXUserInfoA>& records) {
    std::vector<std::string> names;
    for (const _VXUserInfoA& record : records) {
        names.push_back(record.name + "|" + record.comment);
    }
    return names;
}

const wchar_t kStaff[] = L"LDAP://OU=Staff, DC=corp, DC=example, DC=com";

}  // namespace

TEST(SearchObjects, FlagZeroListsOnlyTheBasesDirectChildren) {
    AccountsHost host;
    AddStaff(host);
    std::vector<_VXUserInfoA> out = {{"stale", ""}};
    EXPECT_EQ(SearchObjects(kStaff, 1, out, 0), 1);
    EXPECT_THAT(Names(out),
                ElementsAre("LDAP://CN=ann,OU=Staff,DC=corp,DC=example,DC=com|Accounts"));
    EXPECT_THAT(host.directory.CallsStartingWith("SetSearchPreference"),
                ElementsAre("SetSearchPreference 7:7=50000 5:7=1"));
    EXPECT_THAT(host.directory.CallsStartingWith("ExecuteSearch"),
                ElementsAre("ExecuteSearch (&(objectCategory=person)(objectClass=user)) ADsPath "
                            "Description"));
    EXPECT_THAT(host.Logged(), ElementsAre("item count = 1 = 1", ""));
}

TEST(SearchObjects, NonZeroFlagListsTheWholeSubtree) {
    AccountsHost host;
    AddStaff(host);
    std::vector<_VXUserInfoA> out;
    EXPECT_EQ(SearchObjects(kStaff, 1, out, 1), 1);
    EXPECT_THAT(Names(out),
                ElementsAre("LDAP://CN=ann,OU=Staff,DC=corp,DC=example,DC=com|Accounts",
                            "LDAP://CN=bob,OU=Deep,OU=Staff,DC=corp,DC=example,DC=com|"));
    EXPECT_THAT(host.directory.CallsStartingWith("SetSearchPreference"),
                ElementsAre("SetSearchPreference 7:7=50000 5:7=2"));
}

TEST(SearchObjects, GroupSearchUsesTheGroupFilter) {
    AccountsHost host;
    AddStaff(host);
    std::vector<_VXUserInfoA> out;
    EXPECT_EQ(SearchObjects(kStaff, 0, out, 1), 1);
    EXPECT_THAT(Names(out), ElementsAre("LDAP://CN=Crew,OU=Staff,DC=corp,DC=example,DC=com|"));
    EXPECT_THAT(host.directory.CallsStartingWith("ExecuteSearch"),
                ElementsAre("ExecuteSearch (&(objectClass=group)) ADsPath Description"));
}

TEST(SearchObjects, PageEndWithMoreDataAsksForTheNextRow) {
    AccountsHost host;
    for (int i = 0; i < 5; ++i) {
        host.AddDirectoryUser(L"u" + std::to_wstring(i));
    }
    host.directory.rowsPerPage = 2;
    std::vector<_VXUserInfoA> out;
    EXPECT_EQ(SearchObjects(L"LDAP://CN=Users, DC=corp, DC=example, DC=com", 1, out, 0), 1);
    EXPECT_EQ(out.size(), 5u);
    EXPECT_THAT(host.Logged(), ElementsAre("item count = 5 = 5", ""));
}

TEST(SearchObjects, FailingRowEndsTheListing) {
    AccountsHost host;
    AddStaff(host);
    host.directory.FailOn("GetNextRow 1", {});
    std::vector<_VXUserInfoA> out;
    EXPECT_EQ(SearchObjects(kStaff, 1, out, 1), 1);
    EXPECT_EQ(out.size(), 1u);
}

TEST(SearchObjects, BaseThatCannotBeBoundGivesZeroAfterTheItemCount) {
    AccountsHost host;
    std::vector<_VXUserInfoA> out = {{"stale", ""}};
    EXPECT_EQ(SearchObjects(L"LDAP://OU=gone, DC=x", 1, out, 1), 0);
    EXPECT_TRUE(out.empty());
    EXPECT_THAT(host.Logged(), ElementsAre("item count = 0 = 0", ""));
    EXPECT_THAT(host.directory.CallsStartingWith("CloseSearchHandle"), IsEmpty());
    EXPECT_EQ(host.directory.live, 0);
}

TEST(SearchObjects, FinishedSearchClosesItsHandleBeforeTheItemCount) {
    AccountsHost host;
    AddStaff(host);
    std::vector<_VXUserInfoA> out;
    EXPECT_EQ(SearchObjects(kStaff, 1, out, 0), 1);
    ASSERT_FALSE(host.directory.calls.empty());
    EXPECT_EQ(host.directory.calls.back(), "CloseSearchHandle");
    EXPECT_EQ(host.directory.live, 0);
}

TEST(SearchObjects, RefusedPreferenceOrSearchGivesZero) {
    for (const std::string& step :
         {std::string("SetSearchPreference 7:7=50000 5:7=2"),
          std::string("ExecuteSearch (&(objectClass=group)) ADsPath Description")}) {
        AccountsHost host;
        AddStaff(host);
        host.directory.FailOn(step, {});
        std::vector<_VXUserInfoA> out;
        EXPECT_EQ(SearchObjects(kStaff, 0, out, 1), 0) << step;
        EXPECT_TRUE(out.empty());
        EXPECT_THAT(host.Logged(), ElementsAre("item count = 0 = 0", "")) << step;
        EXPECT_EQ(host.directory.live, 0) << step;
    }
}
