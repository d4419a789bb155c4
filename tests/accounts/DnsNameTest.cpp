#include "accounts/DnsName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "accounts/AccountsHost.h"
#include "helpers/FailingAllocation.h"

using ::testing::ElementsAre;
using vagent::test::AccountsHost;
using vagent::test::ScopedAllocationFailure;

namespace {

std::string Ldap(const std::string& dns, int reverse = 0) {
    std::string out = "stale";
    EXPECT_EQ(NameDns2Ldap(dns, out, reverse), 1);
    return out;
}

}  // namespace

TEST(NameDns2Ldap, ThreeLabelsGiveThreeDcPartsWithOneBlankAfterEachComma) {
    EXPECT_EQ(Ldap("x.y.z"), "DC=x, DC=y, DC=z");
}

TEST(NameDns2Ldap, OneLabelGivesOneDcPart) {
    EXPECT_EQ(Ldap("corp"), "DC=corp");
}

TEST(NameDns2Ldap, EmptyNameGivesDcAlone) {
    EXPECT_EQ(Ldap(""), "DC=");
}

TEST(NameDns2Ldap, ReverseTakesLabelsFromTheEnd) {
    EXPECT_EQ(Ldap("x.y.z", 1), "DC=z, DC=y, DC=x");
}

TEST(NameDns2Ldap, LabelsAreNeitherCheckedNorEscaped) {
    EXPECT_EQ(Ldap("a..b"), "DC=a, DC=, DC=b");
    EXPECT_EQ(Ldap("x,y.z"), "DC=x,y, DC=z");
}

TEST(GetDnsName, AsksForTheSizeThenReadsIntoAnArrayOfThatSize) {
    AccountsHost host;
    char* name = nullptr;
    ASSERT_EQ(GetDnsName(&name, 2), 1);
    EXPECT_STREQ(name, "corp.example.com");
    delete[] name;
    ASSERT_EQ(host.names.calls.size(), 2u);
    EXPECT_FALSE(host.names.calls[0].withBuffer);
    EXPECT_TRUE(host.names.calls[1].withBuffer);
    EXPECT_EQ(host.names.calls[1].capacity, 17u);
    EXPECT_EQ(host.names.calls[1].format, 2u);
}

TEST(GetDnsName, FailedReadFreesTheArrayAndNullsTheName) {
    AccountsHost host;
    host.names.names.erase(0);
    char* name = reinterpret_cast<char*>(&host);
    EXPECT_EQ(GetDnsName(&name, 0), 0);
    EXPECT_EQ(name, nullptr);
}

TEST(GetDnsName, AllocationFailureIsLoggedWithTheSize) {
    AccountsHost host;
    char* name = nullptr;
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(GetDnsName(&name, 0), 0);
    }
    EXPECT_EQ(name, nullptr);
    EXPECT_THAT(host.Logged(), ElementsAre("GetDnsName : new [5] bytes failed"));
}

TEST(ReadDomainDn, AllocationFailureSetsErrorEightAndLogsTheCallersName) {
    AccountsHost host;
    std::uint32_t error = 0;
    std::string dn = "kept";
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_FALSE(ReadDomainDn("GetUser", error, dn));
    }
    EXPECT_EQ(error, 8u);
    EXPECT_EQ(dn, "kept");
    EXPECT_THAT(host.Logged(), ElementsAre("GetUser : new [17] bytes failed"));
}

TEST(ReadDomainDn, MachineInNoDomainGivesDcAlone) {
    AccountsHost host;
    host.names.names[2] = "";
    std::uint32_t error = 0;
    std::string dn;
    EXPECT_TRUE(ReadDomainDn("GetUser", error, dn));
    EXPECT_EQ(dn, "DC=");
}
