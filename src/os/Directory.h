#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "os/Facilities.h"

namespace vagent::os {

// The domain directory over LDAP. Every object the directory hands out is one
// interface the directory implementation holds; it is released when its
// owner (a std::unique_ptr) lets it go, on every path. Results are HRESULTs:
// 0 (S_OK) and other non-negative values succeed, negative values fail.
enum DirectoryResult : std::int32_t {
    kDirectoryOk = 0,
    kDirectoryFalse = 1,
    // S_ADS_NOMORE_ROWS: the search has no further row at the moment.
    kDirectoryNoMoreRows = 0x00005012,
    // E_FAIL
    kDirectoryFailed = static_cast<std::int32_t>(0x80004005u),
    // HRESULT_FROM_WIN32(ERROR_NOT_SUPPORTED): a system without a directory.
    kDirectoryNotSupported = static_cast<std::int32_t>(0x80070032u),
    // HRESULT_FROM_WIN32(ERROR_DS_NO_SUCH_OBJECT)
    kDirectoryNoSuchObject = static_cast<std::int32_t>(0x80072030u),
    // HRESULT_FROM_WIN32(ERROR_DS_SERVER_DOWN): no directory server answers.
    kDirectoryServerDown = static_cast<std::int32_t>(0x8007203Au),
    // HRESULT_FROM_WIN32(ERROR_OBJECT_ALREADY_EXISTS)
    kDirectoryObjectExists = static_cast<std::int32_t>(0x80071392u),
    // E_NOINTERFACE: the object does not offer the interface asked for.
    kDirectoryNoInterface = static_cast<std::int32_t>(0x80004002u),
    // E_POINTER: a call reported success but handed out no object.
    kDirectoryNoObject = static_cast<std::int32_t>(0x80004003u),
};

inline bool DirectorySucceeded(std::int32_t result) {
    return result >= 0;
}

// Search preference numbers and value types, by their directory numbers.
enum SearchPreferenceName : std::uint32_t {
    kSearchPrefSearchScope = 5,
    kSearchPrefPageSize = 7,
};
enum SearchValueType : std::uint32_t {
    kSearchTypeInteger = 7,
};
enum SearchScope : std::int32_t {
    kScopeBase = 0,
    kScopeOneLevel = 1,
    kScopeSubtree = 2,
};

struct SearchPreference {
    std::uint32_t name = 0;
    std::uint32_t type = kSearchTypeInteger;
    std::int32_t value = 0;
};

class DirectoryObject;

// An IDispatch: what a container creates and what an enumeration yields.
class DirectoryDispatch {
public:
    virtual ~DirectoryDispatch() = default;
    // Mirrors QueryInterface for IADs.
    virtual std::int32_t QueryObject(std::unique_ptr<DirectoryObject>& object) = 0;
};

// An IADs.
class DirectoryObject {
public:
    virtual ~DirectoryObject() = default;
    // Mirrors IADs::Put with a VT_BSTR value.
    virtual std::int32_t Put(const std::wstring& name, const std::wstring& value) = 0;
    // Mirrors IADs::Get of a string value.
    virtual std::int32_t Get(const std::wstring& name, std::wstring& value) = 0;
    // Mirrors IADs::SetInfo.
    virtual std::int32_t SetInfo() = 0;
    // Mirrors IADs::get_ADsPath.
    virtual std::int32_t GetADsPath(std::wstring& path) = 0;
    // Mirrors IADs::get_Name.
    virtual std::int32_t GetName(std::wstring& name) = 0;
};

// An IEnumVARIANT, walked one element at a time; the variant's object is
// handed out as a dispatch, null when the element held none.
class DirectoryEnumeration {
public:
    virtual ~DirectoryEnumeration() = default;
    // Mirrors IEnumVARIANT::Next(1) (or ADsEnumerateNext with one element):
    // fetched is 1 when an element was read.
    virtual std::int32_t Next(std::unique_ptr<DirectoryDispatch>& element,
                              std::uint32_t& fetched) = 0;
};

// The IUnknown that a member collection's get__NewEnum hands out.
class DirectoryUnknown {
public:
    virtual ~DirectoryUnknown() = default;
    // Mirrors QueryInterface for IEnumVARIANT.
    virtual std::int32_t QueryEnumeration(std::unique_ptr<DirectoryEnumeration>& enumeration) = 0;
};

// An IADsMembers: a group's members or a user's groups.
class DirectoryMembers {
public:
    virtual ~DirectoryMembers() = default;
    // Mirrors IADsMembers::get__NewEnum.
    virtual std::int32_t NewEnum(std::unique_ptr<DirectoryUnknown>& unknown) = 0;
};

// An IADsContainer. Its enumerator is freed with ADsFreeEnumerator when the
// enumeration is let go.
class DirectoryContainer {
public:
    virtual ~DirectoryContainer() = default;
    // Mirrors IADsContainer::Create.
    virtual std::int32_t Create(const std::wstring& objectClass, const std::wstring& relativeName,
                                std::unique_ptr<DirectoryDispatch>& created) = 0;
    // Mirrors IADsContainer::Delete.
    virtual std::int32_t Delete(const std::wstring& objectClass,
                                const std::wstring& relativeName) = 0;
    // Mirrors IADsContainer::put_Filter with a string array made by
    // ADsBuildVarArrayStr.
    virtual std::int32_t PutFilter(const std::vector<std::wstring>& classes) = 0;
    // Mirrors ADsBuildEnumerator; ADsEnumerateNext walks the result.
    virtual std::int32_t BuildEnumerator(std::unique_ptr<DirectoryEnumeration>& enumeration) = 0;
};

// An IADsUser.
class DirectoryUser {
public:
    virtual ~DirectoryUser() = default;
    // Mirrors IADsUser::SetPassword.
    virtual std::int32_t SetPassword(const std::wstring& password) = 0;
    // Mirrors IADsUser::put_AccountDisabled.
    virtual std::int32_t PutAccountDisabled(bool disabled) = 0;
    // Mirrors IADs::SetInfo on the user.
    virtual std::int32_t SetInfo() = 0;
    // Mirrors IADsUser::Groups.
    virtual std::int32_t Groups(std::unique_ptr<DirectoryMembers>& groups) = 0;
};

// An IADsGroup.
class DirectoryGroup {
public:
    virtual ~DirectoryGroup() = default;
    // Mirrors IADsGroup::Add with a member's path.
    virtual std::int32_t Add(const std::wstring& memberPath) = 0;
    // Mirrors IADsGroup::Remove with a member's path.
    virtual std::int32_t Remove(const std::wstring& memberPath) = 0;
    // Mirrors IADsGroup::Members.
    virtual std::int32_t Members(std::unique_ptr<DirectoryMembers>& members) = 0;
};

// A running search (its ADS_SEARCH_HANDLE); CloseSearchHandle when let go.
class DirectorySearchRows {
public:
    virtual ~DirectorySearchRows() = default;
    // Mirrors IDirectorySearch::GetNextRow: 0 for a row, kDirectoryNoMoreRows
    // at the end of what is there, a failure otherwise.
    virtual std::int32_t GetNextRow() = 0;
    // Mirrors IDirectorySearch::GetColumn on the current row followed by
    // FreeColumn: every string value of the column, in order.
    virtual std::int32_t GetColumn(const std::wstring& column,
                                   std::vector<std::wstring>& values) = 0;
};

// An IDirectorySearch.
class DirectorySearch {
public:
    virtual ~DirectorySearch() = default;
    // Mirrors IDirectorySearch::SetSearchPreference.
    virtual std::int32_t SetSearchPreference(const std::vector<SearchPreference>& preferences) = 0;
    // Mirrors IDirectorySearch::ExecuteSearch.
    virtual std::int32_t ExecuteSearch(const std::wstring& filter,
                                       const std::vector<std::wstring>& columns,
                                       std::unique_ptr<DirectorySearchRows>& rows) = 0;
};

// The directory's entry points. Each Bind mirrors ADsGetObject on a path for
// one interface.
class Directory {
public:
    virtual ~Directory() = default;
    virtual std::int32_t BindContainer(const std::wstring& path,
                                       std::unique_ptr<DirectoryContainer>& container) = 0;
    virtual std::int32_t BindObject(const std::wstring& path,
                                    std::unique_ptr<DirectoryObject>& object) = 0;
    virtual std::int32_t BindUser(const std::wstring& path,
                                  std::unique_ptr<DirectoryUser>& user) = 0;
    virtual std::int32_t BindGroup(const std::wstring& path,
                                   std::unique_ptr<DirectoryGroup>& group) = 0;
    virtual std::int32_t BindSearch(const std::wstring& path,
                                    std::unique_ptr<DirectorySearch>& search) = 0;
    // Mirrors ADsGetLastError: the extended error of the calling thread's
    // last directory call.
    virtual std::int32_t LastExtendedError(std::uint32_t& error) = 0;
    // Mirrors GetLastError after a directory call.
    virtual std::uint32_t LastError() = 0;
};

template <>
Directory& RealFacility<Directory>();

}  // namespace vagent::os
