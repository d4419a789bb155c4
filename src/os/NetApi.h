#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Facilities.h"

namespace vagent::os {

// NetAPI statuses and constants that the portable code needs by number.
enum NetApiStatus : std::uint32_t {
    kNerrSuccess = 0,
    kNerrGroupNotFound = 2220,
    kNerrUserNotFound = 2221,
    kNerrGroupExists = 2223,
    kNerrUserExists = 2224,
    kNerrNotPrimary = 2226,
    kNerrPasswordTooShort = 2245,
    kNerrInvalidComputer = 2351,
    kNerrServerNotStarted = 2114,
    kErrorInvalidPassword = 86,
    kErrorNoSuchMember = 1387,
    kErrorMemberInAlias = 1378,
    kErrorNoSuchAlias = 1376,
    kErrorAliasExists = 1379,
};

enum NetApiConstant : std::uint32_t {
    kMaxPreferredLength = 0xFFFFFFFFu,
    kServerTypeServer = 0x2,
    // SV_TYPE_DOMAIN_CTRL | SV_TYPE_DOMAIN_BAKCTRL
    kServerTypeDomainControllers = 0x18,
    kFilterNormalAccount = 0x2,
    kUserPrivUser = 1,
    kUserFlagScript = 0x1,
    kUserFlagDontExpirePassword = 0x10000,
};

// SERVER_INFO_101, the parts the library reads.
struct ServerInfo101 {
    std::wstring name;
    std::uint32_t type = 0;
};

// USER_INFO_1. A field that the call is given as null is an absent optional.
struct UserInfo1 {
    std::wstring name;
    std::wstring password;
    std::uint32_t passwordAge = 0;
    std::uint32_t privilege = 0;
    bool hasHomeDirectory = false;
    std::wstring homeDirectory;
    bool hasComment = false;
    std::wstring comment;
    std::uint32_t flags = 0;
    bool hasScriptPath = false;
    std::wstring scriptPath;
};

// One enumeration call's answer. The entries are those the returned buffer
// held, in order; entriesRead is what the call reported. An entry list
// shorter than entriesRead stands for an entry pointer that ran out.
template <class Entry>
struct NetBatch {
    bool bufferReturned = false;
    std::uint32_t entriesRead = 0;
    std::uint32_t totalEntries = 0;
    std::vector<Entry> entries;
};

// The local account database (NETAPI32). Each method mirrors one call; a
// null server is the call's null server name, any other pointer the text
// given (the library passes "\\." or an empty text where a call wants it).
// Buffers are freed with NetApiBufferFree inside each call.
class NetApi {
public:
    virtual ~NetApi() = default;

    // Mirrors NetServerEnum at level 101.
    virtual std::uint32_t ServerEnum(const wchar_t* server, std::uint32_t level,
                                     std::uint32_t preferredMaximumLength, std::uint32_t serverType,
                                     const wchar_t* domain, std::uint32_t& resumeHandle,
                                     NetBatch<ServerInfo101>& batch) = 0;
    // Mirrors NetUserAdd at level 1.
    virtual std::uint32_t UserAdd(const wchar_t* server, std::uint32_t level,
                                  const UserInfo1& user) = 0;
    // Mirrors NetUserDel.
    virtual std::uint32_t UserDel(const wchar_t* server, const std::wstring& user) = 0;
    // Mirrors NetUserSetInfo at level 1003 (the password alone).
    virtual std::uint32_t UserSetPassword(const wchar_t* server, const std::wstring& user,
                                          std::uint32_t level, const std::wstring& password) = 0;
    // Mirrors NetUserEnum at level 0: the account names.
    virtual std::uint32_t UserEnum(const wchar_t* server, std::uint32_t level, std::uint32_t filter,
                                   std::uint32_t preferredMaximumLength,
                                   std::uint32_t& resumeHandle, NetBatch<std::wstring>& batch) = 0;
    // Mirrors NetUserGetInfo at level 10: the account's comment.
    virtual std::uint32_t UserGetComment(const wchar_t* server, const std::wstring& user,
                                         std::uint32_t level, std::wstring& comment) = 0;
    // Mirrors NetUserGetGroups at level 0: the group names.
    virtual std::uint32_t UserGetGroups(const wchar_t* server, const std::wstring& user,
                                        std::uint32_t level, std::uint32_t preferredMaximumLength,
                                        NetBatch<std::wstring>& batch) = 0;
    // Mirrors NetGroupGetInfo at level 1: the group's comment.
    virtual std::uint32_t GroupGetComment(const wchar_t* server, const std::wstring& group,
                                          std::uint32_t level, std::wstring& comment) = 0;
    // Mirrors NetGroupDelUser.
    virtual std::uint32_t GroupDelUser(const wchar_t* server, const std::wstring& group,
                                       const std::wstring& user) = 0;
    // Mirrors NetLocalGroupAdd at level 0 (the name only).
    virtual std::uint32_t LocalGroupAdd(const wchar_t* server, std::uint32_t level,
                                        const std::wstring& group) = 0;
    // Mirrors NetLocalGroupDel.
    virtual std::uint32_t LocalGroupDel(const wchar_t* server, const std::wstring& group) = 0;
    // Mirrors NetLocalGroupEnum at level 0: the group names. Its resume
    // handle is pointer-wide and must come back whole on the next call.
    virtual std::uint32_t LocalGroupEnum(const wchar_t* server, std::uint32_t level,
                                         std::uint32_t preferredMaximumLength,
                                         std::uintptr_t& resumeHandle,
                                         NetBatch<std::wstring>& batch) = 0;
    // Mirrors NetLocalGroupGetMembers at level 1: the members' account names.
    // Its resume handle is pointer-wide, as NetLocalGroupEnum's.
    virtual std::uint32_t LocalGroupGetMembers(const wchar_t* server, const std::wstring& group,
                                               std::uint32_t level,
                                               std::uint32_t preferredMaximumLength,
                                               std::uintptr_t& resumeHandle,
                                               NetBatch<std::wstring>& batch) = 0;
    // Mirrors NetLocalGroupAddMembers at level 3: one entry per member, each
    // a domain-and-name text.
    virtual std::uint32_t LocalGroupAddMembers(const wchar_t* server, const std::wstring& group,
                                               std::uint32_t level,
                                               const std::vector<std::wstring>& members) = 0;
    // Mirrors NetLocalGroupDelMembers at level 3.
    virtual std::uint32_t LocalGroupDelMembers(const wchar_t* server, const std::wstring& group,
                                               std::uint32_t level,
                                               const std::vector<std::wstring>& members) = 0;
    // Mirrors GetLastError after a call. The NetAPI calls answer with their
    // status and leave the thread's last error as it was.
    virtual std::uint32_t LastError() = 0;
    // Mirrors SetLastError, so that a caller can tell what a call changed.
    virtual void SetLastError(std::uint32_t error) = 0;
    // Mirrors OutputDebugStringW, which the local user listing calls for
    // every account it reads.
    virtual void DebugOutput(const std::wstring& text) = 0;
};

template <>
NetApi& RealFacility<NetApi>();

}  // namespace vagent::os
