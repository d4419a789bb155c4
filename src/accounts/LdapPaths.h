#pragma once

#include <string>

// How the directory paths of accounts and groups are formed. The separator
// between relative names is a comma and one blank throughout.

// True when text begins with "LDAP://" in any letter case.
bool BeginsWithLdapPrefix(const std::string& text);

// The container that users and groups are created in and deleted from:
// "LDAP://" root ", " dn, or "LDAP://" dn when the root site is empty.
std::string ContainerPath(const std::string& rootSite, const std::string& dn);

// The base of a user or group search: "LDAP://" base ", " dn, or "LDAP://" dn
// when the caller's base is empty.
std::string SearchBasePath(const std::string& base, const std::string& dn);

// One object: the name itself when it is already a path, else
// "LDAP://CN=" name ", " root ", " dn, or without the root part when the
// root site is empty.
std::string ObjectPath(const std::string& name, const std::string& rootSite, const std::string& dn);

// The same, but always with three parts, so an empty root site leaves an
// empty part between two commas.
std::string ThreePartObjectPath(const std::string& name, const std::string& rootSite,
                                const std::string& dn);

// The member computers' container: "LDAP://CN=Computers, " dn.
std::string ComputersPath(const std::string& dn);

// Rewrites a member's path or distinguished name to its first relative name
// in the form "CN=" name.
void MemberPathToCn(std::wstring& path);
