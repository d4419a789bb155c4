#include "vagent/LdapRootSite.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "accounts/AccountsHost.h"

TEST(LdapRootSite, IsCnUsersUntilSet) {
    // The host of these tests puts back what it found, so what the process
    // started with is what a fresh host sees before it sets anything.
    EXPECT_EQ(GetLDAPRootSite(), "CN=Users");
}

TEST(LdapRootSite, SetReplacesItAndGetCopiesIt) {
    vagent::test::AccountsHost host;
    std::string site = "OU=Sales, OU=Staff";
    SetLDAPRootSite(site);
    EXPECT_EQ(GetLDAPRootSite(), "OU=Sales, OU=Staff");
    site = "changed afterwards";
    EXPECT_EQ(GetLDAPRootSite(), "OU=Sales, OU=Staff");
}

TEST(LdapRootSite, AnEmptyRootSiteIsKept) {
    vagent::test::AccountsHost host;
    std::string empty;
    SetLDAPRootSite(empty);
    EXPECT_EQ(GetLDAPRootSite(), "");
}

TEST(LdapRootSite, ConcurrentSettersAndReadersSeeWholeValues) {
    vagent::test::AccountsHost host;
    const std::string first(200, 'a');
    const std::string second(300, 'b');
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            std::string mine = t % 2 == 0 ? first : second;
            for (int i = 0; i < 500; ++i) {
                SetLDAPRootSite(mine);
                const std::string seen = GetLDAPRootSite();
                EXPECT_TRUE(seen == first || seen == second);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
