#include "accounts/ServerDiscovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "accounts/AccountsHost.h"
#include "helpers/FailingAllocation.h"

using ::testing::ElementsAre;
using vagent::os::ServerInfo101;
using vagent::test::AccountsHost;

namespace {

constexpr std::uint32_t kWorkstation = 0x1003;
constexpr std::uint32_t kPrimaryController = 0x100B;
constexpr std::uint32_t kBackupController = 0x1013;

struct ServerArray {
    ServerItem* items = nullptr;
    int count = -1;
    int more = -1;
    ~ServerArray() { delete[] items; }
};

}  // namespace

TEST(ServerList, EnumeratesOnceAtLevel101ForServersOfThePrimaryDomain) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"DC01", kPrimaryController},
                        ServerInfo101{L"TS01", kWorkstation},
                        ServerInfo101{L"DC02", kBackupController}};
    ServerArray list;
    ASSERT_EQ(ServerList(&list.items, &list.count, &list.more), 1);
    ASSERT_EQ(list.count, 3);
    EXPECT_EQ(list.more, 0);
    EXPECT_EQ(list.items[0].name, L"DC01");
    EXPECT_EQ(list.items[0].isDomainController, 1);
    EXPECT_EQ(list.items[1].isDomainController, 0);
    EXPECT_EQ(list.items[2].isDomainController, 1);
    EXPECT_THAT(host.net.calls, ElementsAre("ServerEnum <null> 101 4294967295 2 <null> 0"));
}

TEST(ServerList, ReportsMoreDataWhenTheListGoesOn) {
    AccountsHost host;
    host.net.pageSize = 1;
    host.net.servers = {ServerInfo101{L"A", 0}, ServerInfo101{L"B", 0}};
    ServerArray list;
    ASSERT_EQ(ServerList(&list.items, &list.count, &list.more), 1);
    EXPECT_EQ(list.count, 1);
    EXPECT_EQ(list.more, 1);
}

TEST(ServerList, FailedEnumerationIsLoggedWithItsStatus) {
    AccountsHost host;
    host.net.FailOn("ServerEnum <null> 101 4294967295 2 <null> 0", 6118);
    ServerArray list;
    EXPECT_EQ(ServerList(&list.items, &list.count, &list.more), 0);
    EXPECT_EQ(list.items, nullptr);
    EXPECT_THAT(host.Logged(), ElementsAre("NetServerEnum failed [6118]"));
}

TEST(ServerList, EntryThatRunsOutIsAnInvalidAssertion) {
    AccountsHost host;
    host.net.shortBatches = true;
    host.net.servers = {ServerInfo101{L"A", 0}};
    ServerArray list;
    EXPECT_EQ(ServerList(&list.items, &list.count, &list.more), 0);
    EXPECT_EQ(list.items, nullptr);
    EXPECT_THAT(host.Logged(), ElementsAre("ServerList : assert invalid"));
}

TEST(ServerList, AllocationFailureIsLoggedWithTheCount) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"A", 0}, ServerInfo101{L"B", 0}};
    ServerArray list;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(ServerList(&list.items, &list.count, &list.more), 0);
    }
    EXPECT_THAT(host.Logged(), ElementsAre("ServerList : new [2] bytes failed"));
}

TEST(GetDnCtrl, FindsTheFirstControllerAcrossPages) {
    AccountsHost host;
    host.net.pageSize = 2;
    host.net.servers = {ServerInfo101{L"TS01", kWorkstation}, ServerInfo101{L"TS02", kWorkstation},
                        ServerInfo101{L"DC02", kBackupController},
                        ServerInfo101{L"DC01", kPrimaryController}};
    std::wstring name;
    EXPECT_EQ(GetDnCtrl(name), 1);
    EXPECT_EQ(name, L"DC02");
    EXPECT_THAT(host.net.calls, ElementsAre("ServerEnum <null> 101 4294967295 2 <null> 0",
                                            "ServerEnum <null> 101 4294967295 2 <null> 2"));
}

TEST(GetDnCtrl, ListWithoutControllerReturnsZeroAndLeavesTheName) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"TS01", kWorkstation}};
    std::wstring name = L"unchanged";
    EXPECT_EQ(GetDnCtrl(name), 0);
    EXPECT_EQ(name, L"unchanged");
}

TEST(GetDnCtrl, EntryThatRunsOutIsAnInvalidAssertion) {
    AccountsHost host;
    host.net.shortBatches = true;
    host.net.servers = {ServerInfo101{L"TS01", kWorkstation}, ServerInfo101{L"TS02", 0}};
    std::wstring name;
    EXPECT_EQ(GetDnCtrl(name), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("GetDnCtrl : assert invalid"));
}

TEST(IsDnCtrl, MachineListedAsControllerSetsTheFlag) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"ts01", kPrimaryController}};
    int isDc = -1;
    EXPECT_EQ(IsDnCtrl(isDc), 1);
    EXPECT_EQ(isDc, 1);
    EXPECT_TRUE(host.com.Balanced());
    EXPECT_EQ(host.com.initializations, 1);
}

TEST(IsDnCtrl, MachineNotInTheServerListReturnsZeroWithTheFlagZero) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"DC01", kPrimaryController}};
    int isDc = -1;
    EXPECT_EQ(IsDnCtrl(isDc), 0);
    EXPECT_EQ(isDc, 0);
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsDnCtrl, MachineBeyondTheFirstPageIsNotFoundAndTheSearchEnds) {
    AccountsHost host;
    host.net.pageSize = 1;
    host.net.servers = {ServerInfo101{L"DC01", kPrimaryController},
                        ServerInfo101{L"TS01", kPrimaryController}};
    int isDc = -1;
    EXPECT_EQ(IsDnCtrl(isDc), 0);
    EXPECT_EQ(isDc, 0);
    EXPECT_EQ(host.net.calls.size(), 16u);
    for (const std::string& call : host.net.calls) {
        EXPECT_EQ(call, "ServerEnum <null> 101 4294967295 2 <null> 0");
    }
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsDnCtrl, MissingNetBiosNameIsLogged) {
    AccountsHost host;
    host.names.names.erase(0);
    int isDc = -1;
    EXPECT_EQ(IsDnCtrl(isDc), 0);
    EXPECT_EQ(isDc, -1);
    EXPECT_THAT(host.Logged(), ElementsAre("GetDnsName failed"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsDnCtrl, FailedServerListIsLogged) {
    AccountsHost host;
    host.net.FailOn("ServerEnum <null> 101 4294967295 2 <null> 0", 6118);
    int isDc = -1;
    EXPECT_EQ(IsDnCtrl(isDc), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("NetServerEnum failed [6118]", "ServerList failed"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsComputer, ListedMemberComputerSetsTheFlag) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"DC01", kPrimaryController},
                        ServerInfo101{L"TS01", kWorkstation}};
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 0), 1);
    EXPECT_EQ(isMember, 1);
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsComputer, ListedControllerIsNoMemberComputer) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"TS01", kBackupController}};
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 0), 1);
    EXPECT_EQ(isMember, 0);
}

TEST(IsComputer, FailedServerListIsLoggedWithCapitalF) {
    AccountsHost host;
    host.net.FailOn("ServerEnum <null> 101 4294967295 2 <null> 0", 5);
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 0), 0);
    EXPECT_THAT(host.Logged(), ElementsAre("NetServerEnum failed [5]", "ServerList Failed"));
}

TEST(IsComputer, DirectoryModeFindsTheMachineAmongTheComputerObjects) {
    AccountsHost host;
    host.directory.AddEntry(L"CN=TS01,CN=Computers,DC=corp,DC=example,DC=com", L"computer");
    host.directory.AddEntry(L"CN=TS02,CN=Computers,DC=corp,DC=example,DC=com", L"computer");
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 1), 1);
    EXPECT_EQ(isMember, 1);
    EXPECT_THAT(host.directory.CallsStartingWith("BindContainer"),
                ElementsAre("BindContainer LDAP://CN=Computers, DC=corp, DC=example, DC=com"));
    EXPECT_THAT(host.directory.CallsStartingWith("PutFilter"), ElementsAre("PutFilter computer"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsComputer, DirectoryModeComparesTheNameWithLetterCase) {
    AccountsHost host;
    host.directory.AddEntry(L"CN=ts01,CN=Computers,DC=corp,DC=example,DC=com", L"computer");
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 1), 1);
    EXPECT_EQ(isMember, 0);
}

TEST(IsComputer, DirectoryModeWithoutTheContainerLogsBothFailures) {
    AccountsHost host;
    host.directory.entries.erase(
        vagent::test::FakeDirectory::Key(L"CN=Computers,DC=corp,DC=example,DC=com"));
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 1), 0);
    EXPECT_EQ(isMember, -1);
    EXPECT_THAT(host.Logged(),
                ElementsAre("\"LDAP://CN=Computers, DC=corp, DC=example, DC=com\" is not a valid "
                            "container object.",
                            "", "EnumObject failed"));
    EXPECT_TRUE(host.com.Balanced());
}

TEST(IsComputer, DirectoryModeWithoutDnsDomainLogsTheNameFailure) {
    AccountsHost host;
    host.names.names.erase(2);
    int isMember = -1;
    EXPECT_EQ(IsComputer(isMember, 1), 0);
    EXPECT_EQ(isMember, -1);
    EXPECT_THAT(host.Logged(), ElementsAre("GetDnsName failed"));
    EXPECT_THAT(host.directory.calls, ::testing::IsEmpty());
    EXPECT_TRUE(host.com.Balanced());
}

TEST(GetDnCtrl, FailedEnumerationReturnsZeroAndLeavesTheName) {
    AccountsHost host;
    host.net.servers = {ServerInfo101{L"DC01", kPrimaryController}};
    host.net.FailOn("ServerEnum <null> 101 4294967295 2 <null> 0", 6118);
    std::wstring name = L"unchanged";
    EXPECT_EQ(GetDnCtrl(name), 0);
    EXPECT_EQ(name, L"unchanged");
    EXPECT_EQ(host.net.calls.size(), 1u);
    EXPECT_TRUE(host.Logged().empty());
}
