#include "facade/VAgentRoads.h"

#include "vagent/LdapRootSite.h"

namespace vagent::test {

const wchar_t kStaffContainer[] = L"CN=Staff,DC=corp,DC=example,DC=com";
const wchar_t kUsersContainer[] = L"CN=Users,DC=corp,DC=example,DC=com";

std::string RoadName(const ::testing::TestParamInfo<Road>& road) {
    return road.param == Road::kLocal ? "Local" : "Remote";
}

void VAgentRoads::SetUp() {
    savedRootSite_ = GetLDAPRootSite();
    if (Remote()) {
        service_ = std::make_unique<EndToEndService>();
        ASSERT_TRUE(service_->Started()) << service_->StartStatus();
    }
}

void VAgentRoads::TearDown() {
    service_.reset();
    SetLDAPRootSite(savedRootSite_);
}

VAgent VAgentRoads::Agent(int workEnv) {
    if (!Remote()) {
        return VAgent(workEnv, "", "");
    }
    return VAgent(workEnv, "127.0.0.1", std::to_string(service_->Port()));
}

VAgent VAgentRoads::StaffAgent() {
    VAgent agent = Agent(kDomain);
    std::string site = "CN=Staff";
    agent.SetLDAPRootSite(site);
    if (Remote()) {
        std::string elsewhere = "CN=Elsewhere";
        SetLDAPRootSite(elsewhere);
    }
    return agent;
}

}  // namespace vagent::test
