#include "accounts/LdapPaths.h"

#include <cctype>
#include <cwctype>

namespace {

const char kLdapPrefix[] = "LDAP://";
constexpr std::size_t kLdapPrefixLength = 7;

}  // namespace

bool BeginsWithLdapPrefix(const std::string& text) {
    if (text.size() < kLdapPrefixLength) {
        return false;
    }
    for (std::size_t i = 0; i < kLdapPrefixLength; ++i) {
        const int letter = std::toupper(static_cast<unsigned char>(text[i]));
        if (letter != kLdapPrefix[i]) {
            return false;
        }
    }
    return true;
}

std::string ContainerPath(const std::string& rootSite, const std::string& dn) {
    if (rootSite.empty()) {
        return kLdapPrefix + dn;
    }
    return kLdapPrefix + rootSite + ", " + dn;
}

std::string SearchBasePath(const std::string& base, const std::string& dn) {
    if (base.empty()) {
        return kLdapPrefix + dn;
    }
    return kLdapPrefix + base + ", " + dn;
}

std::string ObjectPath(const std::string& name, const std::string& rootSite,
                       const std::string& dn) {
    if (BeginsWithLdapPrefix(name)) {
        return name;
    }
    if (rootSite.empty()) {
        return "LDAP://CN=" + name + ", " + dn;
    }
    return "LDAP://CN=" + name + ", " + rootSite + ", " + dn;
}

std::string ThreePartObjectPath(const std::string& name, const std::string& rootSite,
                                const std::string& dn) {
    if (BeginsWithLdapPrefix(name)) {
        return name;
    }
    return "LDAP://CN=" + name + ", " + rootSite + ", " + dn;
}

std::string ComputersPath(const std::string& dn) {
    return "LDAP://CN=Computers, " + dn;
}

void MemberPathToCn(std::wstring& path) {
    const std::size_t comma = path.find(L',', 1);
    if (comma != std::wstring::npos) {
        path.erase(comma);
    }
    // The first character alone is tested against the prefix's letters.
    if (!path.empty() && std::wstring(L"LDAP:/").find(path[0]) != std::wstring::npos) {
        path.erase(0, kLdapPrefixLength);
    }
    path.erase(0, path.find_first_not_of(L' '));
    std::wstring upper = path;
    for (wchar_t& letter : upper) {
        letter = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(letter)));
    }
    if (upper.find(L"CN=") == std::wstring::npos) {
        path.insert(0, L"CN=");
    }
}
