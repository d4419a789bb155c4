#include "vagent/VUserTask.h"

#include <algorithm>
#include <memory>

#include "accounts/ComScope.h"
#include "accounts/DirectoryMembership.h"
#include "accounts/DirectoryObjects.h"
#include "accounts/DnsName.h"
#include "accounts/LdapPaths.h"
#include "accounts/LocalAccounts.h"
#include "accounts/LocalMembership.h"
#include "accounts/ServerDiscovery.h"
#include "accounts/TextConversion.h"
#include "os/ComputerNames.h"
#include "os/Directory.h"
#include "os/NetApi.h"
#include "vagent/DllLog.h"
#include "vagent/LdapRootSite.h"
#include "support/TextCompare.h"

namespace {

using vagent::os::DirectorySucceeded;

const wchar_t kThisMachine[] = L"\\\\.";
const wchar_t kEmptyServer[] = L"";

vagent::os::Directory& TheDirectory() {
    return vagent::os::Installed<vagent::os::Directory>();
}

bool IsBuiltinContainer(const std::string& container) {
    return vagent::EqualsIgnoringCase(container, "builtin");
}

// The first count elements of a list.
std::vector<std::string> FirstOf(const std::vector<std::string>& list, std::size_t count) {
    return std::vector<std::string>(list.begin(),
                                    list.begin() + static_cast<std::ptrdiff_t>(count));
}

std::string ElementOrEmpty(const std::vector<std::string>& list, std::size_t index) {
    return index < list.size() ? list[index] : std::string();
}

}  // namespace

int VUserTask::GetUser(const std::string& base, std::vector<_VXUserInfoA>& out, int subtree) {
    if (workEnv_ != 0) {
        ComScope com;
        std::string dn;
        if (!ReadDomainDn("GetUser", errorCode_, dn)) {
            return 0;
        }
        return SearchObjects(Wide(SearchBasePath(base, dn)).c_str(), 1, out, subtree);
    }
    std::vector<std::wstring> names;
    const int listed = NetEnumUsers(kEmptyServer, names);
    for (const std::wstring& name : names) {
        vagent::os::Installed<vagent::os::NetApi>().DebugOutput(name);
        _VXUserInfoA record;
        wstring2string(name, record.name);
        wstring2string(UserComment(name), record.comment);
        out.push_back(record);
    }
    return listed;
}

int VUserTask::AddUser(std::vector<std::string>& users, std::vector<std::string>& passwords) {
    if (workEnv_ == 0) {
        return NetAddUsers(kThisMachine, WideList(users), WideList(passwords));
    }
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("AddUser", errorCode_, dn)) {
        return 0;
    }
    const std::size_t paired = std::min(users.size(), passwords.size());
    return AddObject(Wide(ContainerPath(GetLDAPRootSite(), dn)), L"User",
                     WideList(FirstOf(users, paired)), WideList(FirstOf(passwords, paired)));
}

int VUserTask::DeleteUser(std::vector<std::string>& users) {
    if (workEnv_ == 0) {
        return NetDeleteUsers(kThisMachine, WideList(users));
    }
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("DeleteUser", errorCode_, dn)) {
        return 0;
    }
    return DeleteObject(Wide(ContainerPath(GetLDAPRootSite(), dn)), L"User", WideList(users));
}

int VUserTask::ChangePasswd(std::vector<std::string>& users, std::vector<std::string>& oldPasswords,
                            std::vector<std::string>& newPasswords) {
    if (workEnv_ == 0) {
        return NetChangePasswords(kThisMachine, WideList(users), WideList(oldPasswords),
                                  WideList(newPasswords));
    }
    return ChangeDirectoryPasswords(users, newPasswords);
}

int VUserTask::ChangeDirectoryPasswords(const std::vector<std::string>& users,
                                        const std::vector<std::string>& newPasswords) {
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("ChangePasswd", errorCode_, dn)) {
        return 0;
    }
    for (std::size_t i = 0; i < users.size(); ++i) {
        const std::string path = ObjectPath(users[i], GetLDAPRootSite(), dn);
        std::unique_ptr<vagent::os::DirectoryUser> user;
        if (!DirectorySucceeded(TheDirectory().BindUser(Wide(path), user)) || !user ||
            !DirectorySucceeded(user->SetPassword(Wide(ElementOrEmpty(newPasswords, i))))) {
            errorCode_ = TheDirectory().LastError();
            return 0;
        }
    }
    return 1;
}

int VUserTask::GetUserGroup(const std::string& user, std::vector<_VXUserGroupA>& out) {
    if (workEnv_ != 0) {
        return GetDirectoryUserGroup(user, out);
    }
    std::vector<std::wstring> names;
    if (UserGroupNames(Wide(user), names) == 0) {
        return 0;
    }
    for (const std::wstring& name : names) {
        _VXUserGroupA record;
        wstring2string(name, record.name);
        out.push_back(record);
    }
    return 1;
}

int VUserTask::GetDirectoryUserGroup(const std::string& user, std::vector<_VXUserGroupA>& out) {
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("GetUserGroup", errorCode_, dn)) {
        return 0;
    }
    const std::string path = ThreePartObjectPath(user, GetLDAPRootSite(), dn);
    std::unique_ptr<vagent::os::DirectoryUser> bound;
    if (!DirectorySucceeded(TheDirectory().BindUser(Wide(path), bound)) || !bound) {
        return 0;
    }
    std::vector<std::wstring> paths;
    if (GetUserGroups(*bound, paths) != vagent::os::kDirectoryOk) {
        return 0;
    }
    for (const std::wstring& groupPath : paths) {
        _VXUserGroupA record;
        wstring2string(groupPath, record.name);
        out.push_back(record);
    }
    return 1;
}

int VUserTask::AddUserToGroupsEx(const std::string& user, const std::string& container,
                                 std::vector<std::string>& groups) {
    if (workEnv_ != 0 && !IsBuiltinContainer(container)) {
        return ChangeDirectoryMembership(user, groups, true);
    }
    return AddUserToLocalGroups(Wide(user), WideList(groups), errorCode_);
}

int VUserTask::RemoveUserFromGroupsEx(const std::string& user, const std::string& container,
                                      std::vector<std::string>& groups) {
    if (workEnv_ != 0 && !IsBuiltinContainer(container)) {
        return ChangeDirectoryMembership(user, groups, false);
    }
    return RemoveUserFromLocalGroups(Wide(user), WideList(groups), errorCode_);
}

int VUserTask::ChangeDirectoryMembership(const std::string& user,
                                         const std::vector<std::string>& groups, bool add) {
    const char* function = add ? "AddUserToGroupsEx" : "RemoveUserFromGroupsEx";
    ComScope com;
    std::string dn;
    if (!ReadDomainDn(function, errorCode_, dn)) {
        return 0;
    }
    for (const std::string& group : groups) {
        const std::string groupPath = ObjectPath(group, GetLDAPRootSite(), dn);
        const std::string userPath = ObjectPath(user, GetLDAPRootSite(), dn);
        std::unique_ptr<vagent::os::DirectoryGroup> bound;
        if (!DirectorySucceeded(TheDirectory().BindGroup(Wide(groupPath), bound)) || !bound) {
            errorCode_ = TheDirectory().LastError();
            DllLogPrintf(add ? "AddUserToGroupsEx => ADsGetObject failed : Path = %s"
                             : "RemoveUserFromGroupsEx => ADsGetObject : Path = %s",
                         groupPath.c_str());
            return 0;
        }
        const std::int32_t changed =
            add ? bound->Add(Wide(userPath)) : bound->Remove(Wide(userPath));
        if (!DirectorySucceeded(changed)) {
            errorCode_ = TheDirectory().LastError();
            DllLogPrintf(add ? "AddUserToGroupsEx => pGroup->Add failed : Path = %s"
                             : "RemoveUserFromGroupsEx => pGroup->Remove : Path = %s",
                         userPath.c_str());
            return 0;
        }
    }
    return 1;
}

bool VUserTask::QualifyForBuiltinGroups(const std::string& user, std::string& qualified) {
    int isDc = 0;
    IsDnCtrl(isDc);
    if (isDc != 0) {
        qualified = user;
        return true;
    }
    char* domain = nullptr;
    if (GetDnsName(&domain, vagent::os::kComputerNameDnsDomain) == 0) {
        return false;
    }
    qualified = std::string(domain) + "\\" + user;
    delete[] domain;
    return true;
}

int VUserTask::AddUserToBuiltinGroups(const std::string& user, std::vector<std::string>& groups) {
    std::string qualified;
    if (!QualifyForBuiltinGroups(user, qualified)) {
        return 0;
    }
    return AddUserToGroupsEx(qualified, "Builtin", groups);
}

int VUserTask::RemoveUserFromBuiltinGroups(const std::string& user,
                                           std::vector<std::string>& groups) {
    std::string qualified;
    if (!QualifyForBuiltinGroups(user, qualified)) {
        return 0;
    }
    return RemoveUserFromGroupsEx(qualified, "Builtin", groups);
}

int VUserTask::GetUserLoginName(const std::string& user, std::string& accountName,
                                std::string& principalName) {
    ComScope com;
    std::string path = user;
    if (!BeginsWithLdapPrefix(user)) {
        std::string dn;
        if (!ReadDomainDn("RemoveGroupUsers", errorCode_, dn)) {
            return 0;
        }
        path = ObjectPath(user, GetLDAPRootSite(), dn);
    }
    std::unique_ptr<vagent::os::DirectoryObject> object;
    if (!DirectorySucceeded(TheDirectory().BindObject(Wide(path), object)) || !object) {
        errorCode_ = TheDirectory().LastError();
        return 0;
    }
    accountName.clear();
    principalName.clear();
    std::wstring value;
    int read = 0;
    if (DirectorySucceeded(object->Get(L"sAMAccountname", value))) {
        wstring2string(value, accountName);
        read = 1;
    }
    value.clear();
    if (DirectorySucceeded(object->Get(L"userPrincipalName", value))) {
        wstring2string(value, principalName);
        read = 1;
    }
    return read;
}
