#include "accounts/DirectoryObjects.h"

#include <cwctype>
#include <memory>

#include "accounts/TextConversion.h"
#include "os/Directory.h"
#include "os/Status.h"
#include "vagent/DllLog.h"

namespace {

using vagent::os::Directory;
using vagent::os::DirectorySucceeded;

constexpr std::int32_t kSearchPageSize = 50000;
const wchar_t kUserFilter[] = L"(&(objectCategory=person)(objectClass=user))";
const wchar_t kGroupFilter[] = L"(&(objectClass=group))";

Directory& TheDirectory() {
    return vagent::os::Installed<Directory>();
}

bool IsUserClass(const std::wstring& objectClass) {
    const std::wstring user = L"user";
    if (objectClass.size() != user.size()) {
        return false;
    }
    for (std::size_t i = 0; i < user.size(); ++i) {
        if (std::towlower(static_cast<std::wint_t>(objectClass[i])) !=
            static_cast<std::wint_t>(user[i])) {
            return false;
        }
    }
    return true;
}

// The account value: the name from its first "CN=" on, or the whole name.
std::wstring AccountValueOf(const std::wstring& name) {
    const std::size_t cn = name.find(L"CN=");
    return cn == std::wstring::npos ? name : name.substr(cn);
}

// "LDAP://" + relative name + ", " + the container path after its prefix.
std::wstring CreatedUserPath(const std::wstring& containerPath, const std::wstring& relativeName) {
    return containerPath.substr(0, 7) + relativeName + L", " +
           (containerPath.size() > 7 ? containerPath.substr(7) : std::wstring());
}

// Creates one object and commits its attributes; false (after logging the
// step) when any step fails.
bool CreateOne(const std::wstring& containerPath, const std::wstring& objectClass,
               const std::wstring& relativeName, const std::wstring& accountValue, bool isUser) {
    std::unique_ptr<vagent::os::DirectoryContainer> container;
    if (!DirectorySucceeded(TheDirectory().BindContainer(containerPath, container)) || !container) {
        DllLogPrintf("AddObject => ADsGetObject failed : path = %s", Narrow(containerPath).c_str());
        return false;
    }
    std::unique_ptr<vagent::os::DirectoryDispatch> created;
    const std::int32_t made = container->Create(objectClass, relativeName, created);
    container.reset();
    if (!DirectorySucceeded(made) || !created) {
        DllLogPrintf("AddObject => pCont->Create failed");
        return false;
    }
    std::unique_ptr<vagent::os::DirectoryObject> object;
    const std::int32_t queried = created->QueryObject(object);
    created.reset();
    if (!DirectorySucceeded(queried) || !object) {
        DllLogPrintf("AddObject => pDisp->QueryInterface failed");
        return false;
    }
    if (isUser && !DirectorySucceeded(object->Put(L"userPrincipalName", accountValue))) {
        DllLogPrintf("AddObject => pObject->Put [userPrincipalName] failed");
        return false;
    }
    if (!DirectorySucceeded(object->Put(L"sAMAccountname", accountValue))) {
        DllLogPrintf("AddObject => pObject->Put [sAMAccountname] failed");
        return false;
    }
    if (!DirectorySucceeded(object->SetInfo())) {
        DllLogPrintf("AddObject => pObject->SetInfo failed");
        return false;
    }
    return true;
}

// Sets a new user's password and enables it. A user that cannot be bound
// is passed over; false only when the commit fails.
bool EnableUser(const std::wstring& userPath, const std::wstring& password) {
    std::unique_ptr<vagent::os::DirectoryUser> user;
    if (!DirectorySucceeded(TheDirectory().BindUser(userPath, user)) || !user) {
        return true;
    }
    user->SetPassword(password);
    user->PutAccountDisabled(false);
    if (!DirectorySucceeded(user->SetInfo())) {
        DllLogPrintf("AddObject => pUser->put_AccountDisabled failed");
        return false;
    }
    return true;
}

// Where a name is deleted from: its own container when it is a full path,
// else the given one. False for a full path without a comma.
bool DeletionTarget(const std::wstring& containerPath, const std::wstring& name,
                    std::wstring& container, std::wstring& relativeName) {
    if (name.compare(0, 7, L"LDAP://") != 0) {
        container = containerPath;
        relativeName = L"CN=" + name;
        return true;
    }
    const std::size_t comma = name.find(L',');
    if (comma == std::wstring::npos) {
        return false;
    }
    container = L"LDAP://" + name.substr(comma + 1);
    relativeName = name.substr(7, comma - 7);
    return true;
}

// The first value of a column of the current row, when the column is there.
void ReadFirstValue(vagent::os::DirectorySearchRows& rows, const std::wstring& column,
                    std::string& into) {
    std::vector<std::wstring> values;
    if (DirectorySucceeded(rows.GetColumn(column, values)) && !values.empty()) {
        wstring2string(values.front(), into);
    }
}

}  // namespace

int AddObject(const std::wstring& containerPath, const std::wstring& objectClass,
              const std::vector<std::wstring>& names, const std::vector<std::wstring>& passwords) {
    const bool isUser = IsUserClass(objectClass);
    std::wstring password;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i < passwords.size()) {
            password = passwords[i];
        }
        const std::wstring relativeName = L"CN=" + names[i];
        if (!CreateOne(containerPath, objectClass, relativeName, AccountValueOf(names[i]),
                       isUser)) {
            return 0;
        }
        if (isUser && !EnableUser(CreatedUserPath(containerPath, relativeName), password)) {
            return 0;
        }
    }
    return 1;
}

int DeleteObject(const std::wstring& containerPath, const std::wstring& objectClass,
                 const std::vector<std::wstring>& names) {
    for (const std::wstring& name : names) {
        std::wstring container;
        std::wstring relativeName;
        if (!DeletionTarget(containerPath, name, container, relativeName)) {
            return 0;
        }
        std::unique_ptr<vagent::os::DirectoryContainer> bound;
        if (!DirectorySucceeded(TheDirectory().BindContainer(container, bound)) || !bound) {
            DllLogPrintf("DeleteObject => ADsGetObject failed : %s", Narrow(container).c_str());
            return 0;
        }
        const std::int32_t deleted = bound->Delete(objectClass, relativeName);
        bound.reset();
        if (!DirectorySucceeded(deleted)) {
            DllLogPrintf("DeleteObject =>  pCont->Delete failed");
            return 0;
        }
    }
    return 1;
}

namespace {

// Binds the base, sets the two preferences and runs the search; 0 when any
// step fails. A handle that a failed search handed out anyway is kept only to
// be closed.
int StartSearch(const wchar_t* basePath, int users, int subtree,
                const std::vector<std::wstring>& columns,
                std::unique_ptr<vagent::os::DirectorySearchRows>& rows) {
    std::unique_ptr<vagent::os::DirectorySearch> search;
    if (!DirectorySucceeded(TheDirectory().BindSearch(basePath, search)) || !search) {
        return 0;
    }
    const std::vector<vagent::os::SearchPreference> preferences = {
        {vagent::os::kSearchPrefPageSize, vagent::os::kSearchTypeInteger, kSearchPageSize},
        {vagent::os::kSearchPrefSearchScope, vagent::os::kSearchTypeInteger,
         subtree != 0 ? vagent::os::kScopeSubtree : vagent::os::kScopeOneLevel},
    };
    if (!DirectorySucceeded(search->SetSearchPreference(preferences))) {
        return 0;
    }
    const std::int32_t executed =
        search->ExecuteSearch(users != 0 ? kUserFilter : kGroupFilter, columns, rows);
    if (!DirectorySucceeded(executed) || !rows) {
        return 0;
    }
    return 1;
}

// Appends one record per row; a page that ends with more data to come asks
// for the next row again. Returns the rows counted.
int ReadRows(vagent::os::DirectorySearchRows& rows, const std::vector<std::wstring>& columns,
             std::vector<_VXUserInfoA>& out) {
    int rowCount = 0;
    for (;;) {
        const std::int32_t next = rows.GetNextRow();
        if (next == vagent::os::kDirectoryNoMoreRows) {
            std::uint32_t extended = 0;
            TheDirectory().LastExtendedError(extended);
            if (extended == vagent::os::kMoreData) {
                continue;
            }
            return rowCount;
        }
        if (next != vagent::os::kDirectoryOk) {
            return rowCount;
        }
        ++rowCount;
        _VXUserInfoA record;
        ReadFirstValue(rows, columns[0], record.name);
        ReadFirstValue(rows, columns[1], record.comment);
        out.push_back(record);
    }
}

}  // namespace

int SearchObjects(const wchar_t* basePath, int users, std::vector<_VXUserInfoA>& out, int subtree) {
    out.clear();
    const std::vector<std::wstring> columns = {L"ADsPath", L"Description"};
    std::unique_ptr<vagent::os::DirectorySearchRows> rows;
    const int mark = StartSearch(basePath, users, subtree, columns, rows);
    int rowCount = 0;
    if (mark == 1) {
        rowCount = ReadRows(*rows, columns, out);
    }
    // Letting the rows go closes the search handle before the count is told.
    rows.reset();
    DllLogPrintf("item count = %d = %d\n", rowCount, static_cast<int>(out.size()));
    return mark;
}
