#include "accounts/LdapPaths.h"

#include <gtest/gtest.h>

const std::string kDn = "DC=x, DC=y";

TEST(LdapPaths, DefaultRootSiteAddressesAGroupWithOneBlankAfterEachComma) {
    EXPECT_EQ(ObjectPath("Sales", "CN=Users", kDn), "LDAP://CN=Sales, CN=Users, DC=x, DC=y");
}

TEST(LdapPaths, EmptyRootSiteLeavesTheRootPartOut) {
    EXPECT_EQ(ObjectPath("Sales", "", kDn), "LDAP://CN=Sales, DC=x, DC=y");
}

TEST(LdapPaths, NameBeginningWithLdapInAnyCaseIsUsedUnchanged) {
    EXPECT_EQ(ObjectPath("ldap://CN=Sales,DC=q", "CN=Users", kDn), "ldap://CN=Sales,DC=q");
    EXPECT_EQ(ObjectPath("LdAp://x", "", kDn), "LdAp://x");
    EXPECT_EQ(ThreePartObjectPath("LDAP://CN=a", "CN=Users", kDn), "LDAP://CN=a");
}

TEST(LdapPaths, PrefixCheckLooksAtTheFirstSevenCharactersOnly) {
    EXPECT_TRUE(BeginsWithLdapPrefix("lDaP://"));
    EXPECT_FALSE(BeginsWithLdapPrefix("LDAP:/"));
    EXPECT_FALSE(BeginsWithLdapPrefix(" LDAP://x"));
    EXPECT_FALSE(BeginsWithLdapPrefix("LDAP:\\\\x"));
}

TEST(LdapPaths, ThreePartFormKeepsAnEmptyRootSiteBetweenTwoCommas) {
    EXPECT_EQ(ThreePartObjectPath("ann", "", kDn), "LDAP://CN=ann, , DC=x, DC=y");
    EXPECT_EQ(ThreePartObjectPath("ann", "CN=Users", kDn), "LDAP://CN=ann, CN=Users, DC=x, DC=y");
}

TEST(LdapPaths, ContainerPathIsRootSiteThenDomain) {
    EXPECT_EQ(ContainerPath("CN=Users", kDn), "LDAP://CN=Users, DC=x, DC=y");
    EXPECT_EQ(ContainerPath("", kDn), "LDAP://DC=x, DC=y");
}

TEST(LdapPaths, SearchBaseUsesTheCallersBaseNotTheRootSite) {
    EXPECT_EQ(SearchBasePath("OU=Staff", kDn), "LDAP://OU=Staff, DC=x, DC=y");
    EXPECT_EQ(SearchBasePath("", kDn), "LDAP://DC=x, DC=y");
}

TEST(LdapPaths, ComputersContainerLiteralEndsInABlank) {
    EXPECT_EQ(ComputersPath(kDn), "LDAP://CN=Computers, DC=x, DC=y");
    EXPECT_EQ(ComputersPath(""), "LDAP://CN=Computers, ");
}

namespace {

std::wstring Cn(std::wstring path) {
    MemberPathToCn(path);
    return path;
}

}  // namespace

TEST(MemberPathToCn, DistinguishedNameGivesItsFirstRelativeName) {
    EXPECT_EQ(Cn(L"CN=Ann Lee,CN=Users,DC=x"), L"CN=Ann Lee");
}

TEST(MemberPathToCn, PathLosesItsPrefixAndTheRestAfterTheFirstComma) {
    EXPECT_EQ(Cn(L"LDAP://CN=Ann Lee, CN=Users, DC=x"), L"CN=Ann Lee");
}

TEST(MemberPathToCn, BareNameGetsCnPrepended) {
    EXPECT_EQ(Cn(L"Sales"), L"CN=Sales");
    EXPECT_EQ(Cn(L"Bob Ray"), L"CN=Bob Ray");
}

TEST(MemberPathToCn, LeadingBlanksAreDropped) {
    EXPECT_EQ(Cn(L"   CN=Bob"), L"CN=Bob");
}

TEST(MemberPathToCn, LowerCaseCnIsRecognised) {
    EXPECT_EQ(Cn(L"cn=bob,dc=x"), L"cn=bob");
}

TEST(MemberPathToCn, NameBeginningWithAPrefixLetterLosesSevenCharacters) {
    EXPECT_EQ(Cn(L"Developers"), L"CN=ers");
    EXPECT_EQ(Cn(L"Accounting"), L"CN=ing");
    EXPECT_EQ(Cn(L"/abc"), L"CN=");
}
