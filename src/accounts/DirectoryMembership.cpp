#include "accounts/DirectoryMembership.h"

#include <cwctype>
#include <memory>

#include "accounts/TextConversion.h"
#include "vagent/DllLog.h"

namespace {

using vagent::os::DirectoryDispatch;
using vagent::os::DirectoryEnumeration;
using vagent::os::DirectoryMembers;
using vagent::os::DirectoryObject;
using vagent::os::DirectorySucceeded;
using vagent::os::DirectoryUnknown;
using vagent::os::kDirectoryOk;

// A call that reports success but hands out no object has failed all the
// same: going on would walk a collection that is not there.
std::int32_t Outcome(std::int32_t status, bool handedOut) {
    if (DirectorySucceeded(status) && !handedOut) {
        return vagent::os::kDirectoryNoObject;
    }
    return status;
}

// The path of an enumerated element; nothing when the element is no object.
void AppendPathOf(DirectoryDispatch* element, std::vector<std::wstring>& paths) {
    if (element == nullptr) {
        return;
    }
    std::unique_ptr<DirectoryObject> object;
    if (!DirectorySucceeded(element->QueryObject(object)) || !object) {
        return;
    }
    std::wstring path;
    if (DirectorySucceeded(object->GetADsPath(path))) {
        paths.push_back(path);
    }
}

// Opens the enumeration of a member collection, logging the step that fails
// with the caller's texts.
std::int32_t OpenEnumeration(DirectoryMembers& members, const char* newEnumFailedText,
                             const char* queryFailedText,
                             std::unique_ptr<DirectoryEnumeration>& enumeration) {
    std::unique_ptr<DirectoryUnknown> unknown;
    const std::int32_t newEnum = members.NewEnum(unknown);
    const std::int32_t opened = Outcome(newEnum, unknown != nullptr);
    if (!DirectorySucceeded(opened)) {
        DllLogPrintf("%s", newEnumFailedText);
        return opened;
    }
    const std::int32_t query = unknown->QueryEnumeration(enumeration);
    const std::int32_t queried = Outcome(query, enumeration != nullptr);
    if (!DirectorySucceeded(queried)) {
        DllLogPrintf("%s", queryFailedText);
        return queried;
    }
    return kDirectoryOk;
}

bool IsGroupClass(const std::wstring& objectClass) {
    const std::wstring group = L"group";
    if (objectClass.size() != group.size()) {
        return false;
    }
    for (std::size_t i = 0; i < group.size(); ++i) {
        if (std::towlower(static_cast<std::wint_t>(objectClass[i])) !=
            static_cast<std::wint_t>(group[i])) {
            return false;
        }
    }
    return true;
}

std::wstring WithoutCnPrefix(const std::wstring& name) {
    return name.compare(0, 3, L"CN=") == 0 ? name.substr(3) : name;
}

}  // namespace

std::int32_t GetUserGroups(vagent::os::DirectoryUser& user, std::vector<std::wstring>& paths) {
    std::unique_ptr<DirectoryMembers> groups;
    const std::int32_t groupsCall = user.Groups(groups);
    const std::int32_t listed = Outcome(groupsCall, groups != nullptr);
    if (!DirectorySucceeded(listed)) {
        DllLogPrintf("GetUserGroup => pUser->Groups failed");
        return listed;
    }
    std::unique_ptr<DirectoryEnumeration> enumeration;
    const std::int32_t opened =
        OpenEnumeration(*groups, "GetUserGroup => pGroups->get__NewEnum failed",
                        "GetUserGroup => pUnk->QueryInterface failed", enumeration);
    groups.reset();
    if (opened != kDirectoryOk) {
        return opened;
    }
    for (;;) {
        std::unique_ptr<DirectoryDispatch> element;
        std::uint32_t fetched = 0;
        if (enumeration->Next(element, fetched) != kDirectoryOk) {
            break;
        }
        if (fetched == 1) {
            AppendPathOf(element.get(), paths);
        }
    }
    return kDirectoryOk;
}

std::int32_t EnumMembers(DirectoryMembers& members, std::vector<std::wstring>& paths) {
    std::unique_ptr<DirectoryEnumeration> enumeration;
    const std::int32_t opened =
        OpenEnumeration(members, "EnumMembers => pMembers->get__NewEnum failed",
                        "EnumMembers => pUnk->QueryInterface failed", enumeration);
    if (opened != kDirectoryOk) {
        return opened;
    }
    paths.clear();
    for (;;) {
        std::unique_ptr<DirectoryDispatch> element;
        std::uint32_t fetched = 0;
        const std::int32_t next = enumeration->Next(element, fetched);
        if (!DirectorySucceeded(next)) {
            DllLogPrintf("EnumMembers => pEnum->Next failed");
            return next;
        }
        if (next != kDirectoryOk) {
            return kDirectoryOk;
        }
        if (fetched == 1) {
            AppendPathOf(element.get(), paths);
        }
    }
}

std::int32_t EnumerateGroupMembers(vagent::os::DirectoryGroup& group,
                                   std::vector<std::wstring>& paths) {
    std::unique_ptr<DirectoryMembers> members;
    const std::int32_t membersCall = group.Members(members);
    std::int32_t status = Outcome(membersCall, members != nullptr);
    if (DirectorySucceeded(status)) {
        status = EnumMembers(*members, paths);
        if (!DirectorySucceeded(status)) {
            DllLogPrintf("EnumerateGroupMembers => EnumMembers failed");
        }
    }
    return status;
}

std::int32_t EnumObject(const std::wstring& containerPath, const std::wstring& objectClass,
                        std::vector<std::wstring>& names) {
    std::unique_ptr<vagent::os::DirectoryContainer> container;
    const std::int32_t bound =
        vagent::os::Installed<vagent::os::Directory>().BindContainer(containerPath, container);
    if (!DirectorySucceeded(bound) || !container) {
        DllLogPrintf("\"%s\" is not a valid container object.\n", Narrow(containerPath).c_str());
        return DirectorySucceeded(bound) ? vagent::os::kDirectoryNoInterface : bound;
    }
    container->PutFilter({IsGroupClass(objectClass) ? std::wstring(L"group") : objectClass});
    std::unique_ptr<DirectoryEnumeration> enumeration;
    const std::int32_t built = container->BuildEnumerator(enumeration);
    if (!DirectorySucceeded(built) || !enumeration) {
        DllLogPrintf("ADsBuildEnumerator failed with %lx\n",
                     static_cast<unsigned long>(static_cast<std::uint32_t>(built)));
        return DirectorySucceeded(built) ? vagent::os::kDirectoryFailed : built;
    }
    for (;;) {
        std::unique_ptr<DirectoryDispatch> element;
        std::uint32_t fetched = 0;
        const std::int32_t next = enumeration->Next(element, fetched);
        if (!DirectorySucceeded(next)) {
            DllLogPrintf("ADsEnumerateNext failed with %lx\n",
                         static_cast<unsigned long>(static_cast<std::uint32_t>(next)));
            return next;
        }
        if (next != kDirectoryOk || fetched == 0) {
            return kDirectoryOk;
        }
        std::unique_ptr<DirectoryObject> object;
        std::wstring name;
        if (element && DirectorySucceeded(element->QueryObject(object)) && object &&
            DirectorySucceeded(object->GetName(name))) {
            names.push_back(WithoutCnPrefix(name));
        }
    }
}
