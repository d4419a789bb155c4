#include "vagent/LdapRootSite.h"

#include <mutex>

namespace {

struct RootSite {
    std::mutex lock;
    std::string value = "CN=Users";
};

// Made on first use, so that the default is in place before any caller,
// including another module's static initialisation, reads it.
RootSite& TheRootSite() {
    static RootSite rootSite;
    return rootSite;
}

}  // namespace

void SetLDAPRootSite(std::string& site) {
    RootSite& rootSite = TheRootSite();
    std::lock_guard<std::mutex> guard(rootSite.lock);
    rootSite.value = site;
}

std::string GetLDAPRootSite() {
    RootSite& rootSite = TheRootSite();
    std::lock_guard<std::mutex> guard(rootSite.lock);
    return rootSite.value;
}
