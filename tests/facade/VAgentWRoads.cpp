#include "facade/VAgentWRoads.h"

namespace vagent::test {

VAgentW VAgentWRoads::WideAgent(int workEnv) {
    if (!Remote()) {
        return VAgentW(workEnv, L"", L"");
    }
    return VAgentW(workEnv, L"127.0.0.1", std::to_wstring(service_->Port()));
}

VAgentW VAgentWRoads::WideStaffAgent() {
    VAgentW agent = WideAgent(kDomain);
    std::wstring site = L"CN=Staff";
    agent.SetLDAPRootSite(site);
    return agent;
}

std::wstring WideText(const std::string& narrow) {
    std::wstring wide;
    VAgentW::string2wstring(narrow, wide);
    return wide;
}

std::string NarrowText(const std::wstring& wide) {
    std::string narrow;
    VAgentW::wstring2string(wide, narrow);
    return narrow;
}

}  // namespace vagent::test
