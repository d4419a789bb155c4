#include "accounts/DirectoryMembership.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "accounts/AccountsHost.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::AccountsHost;

namespace {

// A user ann in the groups Sales and Ops, and the group Sales with the
// members ann and bob.
struct Memberships {
    AccountsHost host;
    Memberships() {
        host.AddDirectoryUser(L"ann");
        host.AddDirectoryUser(L"bob");
        host.AddDirectoryGroup(L"Sales");
        host.AddDirectoryGroup(L"Ops");
        host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"ann"));
        host.directory.AddMember(AccountsHost::UsersDn(L"Sales"), AccountsHost::UsersDn(L"bob"));
        host.directory.AddMember(AccountsHost::UsersDn(L"Ops"), AccountsHost::UsersDn(L"ann"));
    }
    std::unique_ptr<vagent::os::DirectoryUser> Ann() {
        std::unique_ptr<vagent::os::DirectoryUser> user;
        host.directory.BindUser(AccountsHost::UsersDn(L"ann"), user);
        return user;
    }
    std::unique_ptr<vagent::os::DirectoryGroup> Sales() {
        std::unique_ptr<vagent::os::DirectoryGroup> group;
        host.directory.BindGroup(AccountsHost::UsersDn(L"Sales"), group);
        return group;
    }
};

}  // namespace

TEST(GetUserGroups, AppendsThePathOfEveryGroupOfTheUser) {
    Memberships m;
    std::vector<std::wstring> paths = {L"kept"};
    EXPECT_EQ(GetUserGroups(*m.Ann(), paths), 0);
    EXPECT_THAT(paths, ElementsAre(L"kept", L"LDAP://CN=Ops,CN=Users,DC=corp,DC=example,DC=com",
                                   L"LDAP://CN=Sales,CN=Users,DC=corp,DC=example,DC=com"));
    EXPECT_EQ(m.host.directory.live, 0);
}

TEST(GetUserGroups, EachFailingStepLogsItsTextAndReturnsItsStatus) {
    const std::vector<std::pair<std::string, std::string>> steps = {
        {"Groups CN=ann,CN=Users,DC=corp,DC=example,DC=com",
         "GetUserGroup => pUser->Groups failed"},
        {"NewEnum", "GetUserGroup => pGroups->get__NewEnum failed"},
        {"QueryEnumeration", "GetUserGroup => pUnk->QueryInterface failed"},
    };
    for (const auto& step : steps) {
        Memberships m;
        m.host.directory.FailOn(step.first, {static_cast<std::int32_t>(0x80070005u), 0});
        std::vector<std::wstring> paths;
        EXPECT_EQ(GetUserGroups(*m.Ann(), paths), static_cast<std::int32_t>(0x80070005u));
        EXPECT_TRUE(paths.empty());
        EXPECT_THAT(m.host.Logged(), ElementsAre(step.second));
    }
}

TEST(GetUserGroups, FirstNextThatIsNotOkReturnsSuccessWithNothing) {
    Memberships m;
    m.host.directory.FailOn("Next 0", {});
    std::vector<std::wstring> paths;
    EXPECT_EQ(GetUserGroups(*m.Ann(), paths), 0);
    EXPECT_TRUE(paths.empty());
    EXPECT_THAT(m.host.Logged(), IsEmpty());
}

TEST(EnumerateGroupMembers, ClearsAndListsEveryMembersPath) {
    Memberships m;
    std::vector<std::wstring> paths = {L"stale"};
    EXPECT_EQ(EnumerateGroupMembers(*m.Sales(), paths), 0);
    EXPECT_THAT(paths, ElementsAre(L"LDAP://CN=ann,CN=Users,DC=corp,DC=example,DC=com",
                                   L"LDAP://CN=bob,CN=Users,DC=corp,DC=example,DC=com"));
}

TEST(EnumerateGroupMembers, FailingMembersCallReturnsItsStatusWithoutLog) {
    Memberships m;
    m.host.directory.FailOn("Members CN=Sales,CN=Users,DC=corp,DC=example,DC=com", {});
    std::vector<std::wstring> paths;
    EXPECT_EQ(EnumerateGroupMembers(*m.Sales(), paths), vagent::os::kDirectoryFailed);
    EXPECT_THAT(m.host.Logged(), IsEmpty());
}

TEST(EnumMembers, EachFailingStepLogsItsText) {
    const std::vector<std::pair<std::string, std::string>> steps = {
        {"NewEnum", "EnumMembers => pMembers->get__NewEnum failed"},
        {"QueryEnumeration", "EnumMembers => pUnk->QueryInterface failed"},
        {"Next 1", "EnumMembers => pEnum->Next failed"},
    };
    for (const auto& step : steps) {
        Memberships m;
        m.host.directory.FailOn(step.first, {});
        std::vector<std::wstring> paths;
        EXPECT_EQ(EnumerateGroupMembers(*m.Sales(), paths), vagent::os::kDirectoryFailed);
        EXPECT_THAT(m.host.Logged(),
                    ElementsAre(step.second, "EnumerateGroupMembers => EnumMembers failed"));
    }
}

TEST(EnumObject, ListsTheNamesOfTheContainersObjectsOfTheClass) {
    AccountsHost host;
    host.directory.AddEntry(L"CN=TS01,CN=Computers,DC=corp,DC=example,DC=com", L"computer");
    host.directory.AddEntry(L"CN=Admins,CN=Computers,DC=corp,DC=example,DC=com", L"group");
    std::vector<std::wstring> names;
    EXPECT_EQ(EnumObject(L"LDAP://CN=Computers, DC=corp, DC=example, DC=com", L"GROUP", names), 0);
    EXPECT_THAT(names, ElementsAre(L"Admins"));
    EXPECT_THAT(host.directory.CallsStartingWith("PutFilter"), ElementsAre("PutFilter group"));
}

TEST(EnumObject, FailedEnumeratorAndStepAreLoggedWithTheStatus) {
    {
        AccountsHost host;
        host.directory.FailOn("BuildEnumerator", {});
        std::vector<std::wstring> names;
        EXPECT_NE(
            EnumObject(L"LDAP://CN=Computers, DC=corp, DC=example, DC=com", L"computer", names), 0);
        EXPECT_THAT(host.Logged(), ElementsAre("ADsBuildEnumerator failed with 80004005", ""));
    }
    AccountsHost host;
    host.directory.AddEntry(L"CN=TS01,CN=Computers,DC=corp,DC=example,DC=com", L"computer");
    host.directory.FailOn("Next 1", {});
    std::vector<std::wstring> names;
    EXPECT_NE(EnumObject(L"LDAP://CN=Computers, DC=corp, DC=example, DC=com", L"computer", names),
              0);
    EXPECT_THAT(names, ElementsAre(L"TS01"));
    EXPECT_THAT(host.Logged(), ElementsAre("ADsEnumerateNext failed with 80004005", ""));
}

TEST(GetUserGroups, StepThatHandsOutNoObjectFailsWithANonzeroStatus) {
    const std::vector<std::pair<std::string, std::string>> steps = {
        {"Groups CN=ann,CN=Users,DC=corp,DC=example,DC=com",
         "GetUserGroup => pUser->Groups failed"},
        {"NewEnum", "GetUserGroup => pGroups->get__NewEnum failed"},
        {"QueryEnumeration", "GetUserGroup => pUnk->QueryInterface failed"},
    };
    for (const auto& step : steps) {
        Memberships m;
        m.host.directory.FailOn(step.first, vagent::test::FakeDirectory::NoObject());
        std::vector<std::wstring> paths;
        EXPECT_EQ(GetUserGroups(*m.Ann(), paths), vagent::os::kDirectoryNoObject) << step.first;
        EXPECT_TRUE(paths.empty());
        EXPECT_THAT(m.host.Logged(), ElementsAre(step.second));
        EXPECT_THAT(m.host.directory.CallsStartingWith("Next"), IsEmpty());
        EXPECT_EQ(m.host.directory.live, 0);
    }
}

TEST(EnumMembers, StepThatHandsOutNoObjectFailsWithANonzeroStatus) {
    const std::vector<std::pair<std::string, std::string>> steps = {
        {"NewEnum", "EnumMembers => pMembers->get__NewEnum failed"},
        {"QueryEnumeration", "EnumMembers => pUnk->QueryInterface failed"},
    };
    for (const auto& step : steps) {
        Memberships m;
        m.host.directory.FailOn(step.first, vagent::test::FakeDirectory::NoObject());
        std::vector<std::wstring> paths = {L"kept"};
        EXPECT_EQ(EnumerateGroupMembers(*m.Sales(), paths), vagent::os::kDirectoryNoObject)
            << step.first;
        EXPECT_THAT(paths, ElementsAre(L"kept"));
        EXPECT_THAT(m.host.Logged(),
                    ElementsAre(step.second, "EnumerateGroupMembers => EnumMembers failed"));
        EXPECT_THAT(m.host.directory.CallsStartingWith("Next"), IsEmpty());
    }
}

TEST(EnumerateGroupMembers, MembersCallThatHandsOutNoCollectionFails) {
    Memberships m;
    m.host.directory.FailOn("Members CN=Sales,CN=Users,DC=corp,DC=example,DC=com",
                            vagent::test::FakeDirectory::NoObject());
    std::vector<std::wstring> paths;
    EXPECT_EQ(EnumerateGroupMembers(*m.Sales(), paths), vagent::os::kDirectoryNoObject);
    EXPECT_TRUE(paths.empty());
    EXPECT_THAT(m.host.directory.CallsStartingWith("NewEnum"), IsEmpty());
}
