#include "vagent/VGroupTask.h"

#include <cwctype>
#include <memory>

#include "accounts/ComScope.h"
#include "accounts/DirectoryMembership.h"
#include "accounts/DirectoryObjects.h"
#include "accounts/DnsName.h"
#include "accounts/LdapPaths.h"
#include "accounts/LocalAccounts.h"
#include "accounts/LocalMembership.h"
#include "accounts/TextConversion.h"
#include "os/Directory.h"
#include "os/NetApi.h"
#include "os/Status.h"
#include "vagent/DllLog.h"
#include "vagent/LdapRootSite.h"

namespace {

using vagent::os::DirectorySucceeded;

const wchar_t kThisMachine[] = L"\\\\.";
const wchar_t kEmptyServer[] = L"";
constexpr std::int32_t kSearchPageSize = 50000;
const wchar_t kUserFilter[] = L"(&(objectCategory=person)(objectClass=user))";

vagent::os::Directory& TheDirectory() {
    return vagent::os::Installed<vagent::os::Directory>();
}

// Whether value begins with prefix, letter case aside, over prefix's length.
bool BeginsWithIgnoringCase(const std::wstring& value, const std::wstring& prefix) {
    if (value.size() < prefix.size()) {
        return false;
    }
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (std::towupper(static_cast<std::wint_t>(value[i])) !=
            std::towupper(static_cast<std::wint_t>(prefix[i]))) {
            return false;
        }
    }
    return true;
}

std::wstring FirstValue(vagent::os::DirectorySearchRows& rows, const std::wstring& column) {
    std::vector<std::wstring> values;
    if (DirectorySucceeded(rows.GetColumn(column, values)) && !values.empty()) {
        return values.front();
    }
    return std::wstring();
}

bool IsMemberOf(vagent::os::DirectorySearchRows& rows, const std::wstring& relativeName) {
    std::vector<std::wstring> values;
    if (!DirectorySucceeded(rows.GetColumn(L"memberOf", values))) {
        return false;
    }
    for (const std::wstring& value : values) {
        if (BeginsWithIgnoringCase(value, relativeName)) {
            return true;
        }
    }
    return false;
}

// Starts the subtree search for every user under the base.
bool SearchAllUsers(const std::string& basePath, const std::vector<std::wstring>& columns,
                    std::unique_ptr<vagent::os::DirectorySearch>& search,
                    std::unique_ptr<vagent::os::DirectorySearchRows>& rows) {
    if (!DirectorySucceeded(TheDirectory().BindSearch(Wide(basePath), search)) || !search) {
        return false;
    }
    const std::vector<vagent::os::SearchPreference> preferences = {
        {vagent::os::kSearchPrefPageSize, vagent::os::kSearchTypeInteger, kSearchPageSize},
        {vagent::os::kSearchPrefSearchScope, vagent::os::kSearchTypeInteger,
         vagent::os::kScopeSubtree},
    };
    if (!DirectorySucceeded(search->SetSearchPreference(preferences))) {
        return false;
    }
    return DirectorySucceeded(search->ExecuteSearch(kUserFilter, columns, rows)) && rows;
}

// The next row of a search, asking again while the directory says that more
// rows are on their way.
bool NextRow(vagent::os::DirectorySearchRows& rows) {
    for (;;) {
        const std::int32_t next = rows.GetNextRow();
        if (next == vagent::os::kDirectoryOk) {
            return true;
        }
        if (next != vagent::os::kDirectoryNoMoreRows) {
            return false;
        }
        std::uint32_t extended = 0;
        TheDirectory().LastExtendedError(extended);
        if (extended != vagent::os::kMoreData) {
            return false;
        }
    }
}

}  // namespace

int VGroupTask::GetGroup(const std::string& base, std::vector<_VXUserInfoA>& out, int subtree) {
    if (workEnv_ != 0) {
        ComScope com;
        std::string dn;
        if (!ReadDomainDn("GetGroup", errorCode_, dn)) {
            return 0;
        }
        return SearchObjects(Wide(SearchBasePath(base, dn)).c_str(), 0, out, subtree);
    }
    std::vector<std::wstring> names;
    const int listed = NetEnumLocalGroups(kEmptyServer, names);
    for (const std::wstring& name : names) {
        _VXUserInfoA record;
        wstring2string(name, record.name);
        wstring2string(GroupComment(name), record.comment);
        out.push_back(record);
    }
    return listed;
}

int VGroupTask::AddGroup(std::vector<std::string>& groups) {
    if (workEnv_ == 0) {
        return NetAddLocalGroups(kThisMachine, WideList(groups));
    }
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("AddGroup", errorCode_, dn)) {
        return 0;
    }
    return AddObject(Wide(ContainerPath(GetLDAPRootSite(), dn)), L"Group", WideList(groups), {});
}

int VGroupTask::RemoveGroup(std::vector<std::string>& groups) {
    if (workEnv_ == 0) {
        NetDeleteLocalGroups(kThisMachine, WideList(groups));
        return 1;
    }
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("RemoveGroup", errorCode_, dn)) {
        return 0;
    }
    DeleteObject(Wide(ContainerPath(GetLDAPRootSite(), dn)), L"Group", WideList(groups));
    return 1;
}

int VGroupTask::AddGroupUsers(const std::string& group, std::vector<std::string>& users) {
    if (workEnv_ == 0) {
        return NetAddLocalGroupMembers(kEmptyServer, Wide(group), users);
    }
    return ChangeDirectoryGroupUsers(group, users, true);
}

int VGroupTask::RemoveGroupUsers(const std::string& group, std::vector<std::string>& users) {
    if (workEnv_ == 0) {
        return RemoveUsersFromGroup(Wide(group), WideList(users), errorCode_);
    }
    return ChangeDirectoryGroupUsers(group, users, false);
}

int VGroupTask::ChangeDirectoryGroupUsers(const std::string& group,
                                          const std::vector<std::string>& users, bool add) {
    ComScope com;
    std::string dn;
    if (!ReadDomainDn(add ? "AddGroupUsers" : "RemoveGroupUsers", errorCode_, dn)) {
        return 0;
    }
    const std::string groupPath = ObjectPath(group, GetLDAPRootSite(), dn);
    std::unique_ptr<vagent::os::DirectoryGroup> bound;
    if (!DirectorySucceeded(TheDirectory().BindGroup(Wide(groupPath), bound)) || !bound) {
        errorCode_ = TheDirectory().LastError();
        if (!add) {
            DllLogPrintf("RemoveGroupUsers => ADsGetObject Error : Path = %s", groupPath.c_str());
        }
        return 0;
    }
    for (const std::string& user : users) {
        const std::wstring userPath = Wide(ObjectPath(user, GetLDAPRootSite(), dn));
        const std::int32_t changed = add ? bound->Add(userPath) : bound->Remove(userPath);
        if (DirectorySucceeded(changed)) {
            continue;
        }
        std::uint32_t extended = 0;
        TheDirectory().LastExtendedError(extended);
        if (extended == vagent::os::kErrorMemberInAlias) {
            continue;
        }
        errorCode_ = TheDirectory().LastError();
        return 0;
    }
    return 1;
}

int VGroupTask::ShowGroupUsers(const std::string& group, std::vector<std::string>& users) {
    if (workEnv_ != 0) {
        return ShowDirectoryGroupUsers(group, users);
    }
    for (const std::wstring& name : LocalGroupMemberNames(Wide(group))) {
        users.push_back(Narrow(name));
    }
    return 1;
}

int VGroupTask::ShowDirectoryGroupUsers(const std::string& group, std::vector<std::string>& users) {
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("ShowGroupUsers", errorCode_, dn)) {
        return 0;
    }
    const std::string groupPath = ObjectPath(group, GetLDAPRootSite(), dn);
    std::unique_ptr<vagent::os::DirectoryGroup> bound;
    if (!DirectorySucceeded(TheDirectory().BindGroup(Wide(groupPath), bound)) || !bound) {
        errorCode_ = TheDirectory().LastError();
        DllLogPrintf("ShowGroupUsers => ADsGetObject Error : Path = %s", groupPath.c_str());
        return 0;
    }
    std::vector<std::wstring> paths;
    if (!DirectorySucceeded(EnumerateGroupMembers(*bound, paths))) {
        return 0;
    }
    for (const std::wstring& path : paths) {
        users.push_back(Narrow(path));
    }
    return 1;
}

int VGroupTask::GetGroupUsersInfo(const std::string& group, std::vector<_VXUserInfoA>& out) {
    if (workEnv_ != 0) {
        return GetDirectoryGroupUsersInfo(group, out);
    }
    for (const std::wstring& name : LocalGroupMemberNames(Wide(group))) {
        out.push_back(_VXUserInfoA{Narrow(name), Narrow(UserComment(name))});
    }
    return 1;
}

int VGroupTask::GetDirectoryGroupUsersInfo(const std::string& group,
                                           std::vector<_VXUserInfoA>& out) {
    ComScope com;
    std::string dn;
    if (!ReadDomainDn("GetGroupUsersInfo", errorCode_, dn)) {
        return 0;
    }
    std::wstring relativeName = Wide(group);
    MemberPathToCn(relativeName);
    const std::vector<std::wstring> columns = {L"ADsPath", L"Description", L"memberOf"};
    std::unique_ptr<vagent::os::DirectorySearch> search;
    std::unique_ptr<vagent::os::DirectorySearchRows> rows;
    if (!SearchAllUsers("LDAP://" + dn, columns, search, rows)) {
        return 0;
    }
    int rowCount = 0;
    int recordCount = 0;
    while (NextRow(*rows)) {
        ++rowCount;
        const std::wstring path = FirstValue(*rows, columns[0]);
        const std::wstring description = FirstValue(*rows, columns[1]);
        if (IsMemberOf(*rows, relativeName)) {
            out.push_back(_VXUserInfoA{Narrow(path), Narrow(description)});
            ++recordCount;
        }
    }
    rows.reset();
    DllLogPrintf("GetGroupUserInfoEx item count = %d, %d\n", rowCount, recordCount);
    return 1;
}
