#include "facade/VAgentWTestHost.h"

#include "vagent/LdapRootSite.h"

namespace vagent::test {

VAgentWTestHost::VAgentWTestHost() : savedRootSite_(GetLDAPRootSite()) {}

VAgentWTestHost::~VAgentWTestHost() {
    SetLDAPRootSite(savedRootSite_);
}

std::string ActiveCodePage(const std::string& utf8, const std::string& windows1252) {
#if defined(_WIN32)
    static_cast<void>(utf8);
    return windows1252;
#else
    static_cast<void>(windows1252);
    return utf8;
#endif
}

}  // namespace vagent::test
