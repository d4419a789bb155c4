#include <gtest/gtest.h>

#include <string>

#include "facade/VAgentWRoads.h"
#include "vagent/VAgentW.h"

using vagent::test::Road;
using vagent::test::VAgentWRoads;

// The wide agent's login-name lookup on both roads, against the in-memory
// directory of corp.example.com.

namespace {

const std::wstring kJuergen = L"J\u00FCrgen";

std::wstring StaffDn(const std::wstring& name) {
    return L"CN=" + name + L",CN=Staff,DC=corp,DC=example,DC=com";
}

class VAgentWAccounts : public VAgentWRoads {};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentWAccounts, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

}  // namespace

TEST_P(VAgentWAccounts, GetUserLoginNameGivesBothNamesOfANonAsciiUserInWideForm) {
    auto& entry = host_.directory.AddEntry(StaffDn(kJuergen), L"user");
    entry.attributes[L"samaccountname"] = L"j\u00FCrgen.k";
    entry.attributes[L"userprincipalname"] = L"j\u00FCrgen.k@corp.example.com";
    VAgentW agent = WideStaffAgent();
    std::wstring account = L"stale";
    std::wstring principal = L"stale";
    EXPECT_EQ(agent.GetUserLoginName(kJuergen, account, principal), 1);
    EXPECT_EQ(account, L"j\u00FCrgen.k");
    EXPECT_EQ(principal, L"j\u00FCrgen.k@corp.example.com");
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}
