#include "files/LdapObjectTest.h"

#include <memory>

#include "accounts/ComScope.h"
#include "accounts/DnsName.h"
#include "accounts/LdapPaths.h"
#include "accounts/TextConversion.h"
#include "os/Directory.h"
#include "vagent/LdapRootSite.h"

namespace vagent::files {
namespace {

std::int32_t Bind(const std::wstring& path, int kind) {
    os::Directory& directory = os::Installed<os::Directory>();
    if (kind != 0) {
        std::unique_ptr<os::DirectoryGroup> group;
        return directory.BindGroup(path, group);
    }
    std::unique_ptr<os::DirectoryObject> object;
    return directory.BindObject(path, object);
}

}  // namespace

bool IsLdapObjectPresent(const std::string& nameOrPath, int kind, std::uint32_t& errorCode) {
    ComScope com;
    std::string domainDn;
    if (!ReadDomainDn("IsLDAPObject", errorCode, domainDn)) {
        return false;
    }
    const std::string path = ObjectPath(nameOrPath, GetLDAPRootSite(), domainDn);
    return os::DirectorySucceeded(Bind(Wide(path), kind));
}

}  // namespace vagent::files
