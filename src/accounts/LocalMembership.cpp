#include "accounts/LocalMembership.h"

#include "os/NetApi.h"
#include "os/Status.h"
#include "vagent/DllLog.h"

namespace {

using vagent::os::NetApi;
using vagent::os::NetBatch;

constexpr std::uint32_t kDomainAndNameLevel = 3;
constexpr std::uint32_t kMemberNamesLevel = 1;
constexpr std::uint32_t kUserCommentLevel = 10;
constexpr std::uint32_t kGroupCommentLevel = 1;
constexpr std::uint32_t kNamesLevel = 0;
const wchar_t kEmptyServer[] = L"";

NetApi& Net() {
    return vagent::os::Installed<NetApi>();
}

}  // namespace

int AddUserToLocalGroups(const std::wstring& user, const std::vector<std::wstring>& groups,
                         std::uint32_t& errorCode) {
    for (const std::wstring& group : groups) {
        const std::uint32_t status =
            Net().LocalGroupAddMembers(nullptr, group, kDomainAndNameLevel, {user});
        if (status != 0) {
            errorCode = Net().LastError();
            DllLogPrintf("NetLocalGroupAddMembers failed : %ld", static_cast<long>(status));
            return 0;
        }
    }
    return 1;
}

int RemoveUserFromLocalGroups(const std::wstring& user, const std::vector<std::wstring>& groups,
                              std::uint32_t& errorCode) {
    int result = 1;
    for (const std::wstring& group : groups) {
        const std::uint32_t status =
            Net().LocalGroupDelMembers(nullptr, group, kDomainAndNameLevel, {user});
        if (status != 0) {
            errorCode = Net().LastError();
            DllLogPrintf("NetLocalGroupDelMembers failed : %ld", static_cast<long>(status));
            result = 0;
        }
    }
    return result;
}

int RemoveUsersFromGroup(const std::wstring& group, const std::vector<std::wstring>& users,
                         std::uint32_t& errorCode) {
    int result = 1;
    for (const std::wstring& user : users) {
        if (Net().GroupDelUser(nullptr, group, user) != 0) {
            errorCode = Net().LastError();
            result = 0;
        }
    }
    return result;
}

std::vector<std::wstring> LocalGroupMemberNames(const std::wstring& group) {
    std::vector<std::wstring> names;
    std::uintptr_t resumeHandle = 0;
    std::uint32_t status = 0;
    do {
        NetBatch<std::wstring> batch;
        status = Net().LocalGroupGetMembers(nullptr, group, kMemberNamesLevel,
                                            vagent::os::kMaxPreferredLength, resumeHandle, batch);
        if (status != 0 && status != vagent::os::kMoreData) {
            break;
        }
        for (std::uint32_t i = 0; i < batch.entriesRead && i < batch.entries.size(); ++i) {
            names.push_back(batch.entries[i]);
        }
    } while (status == vagent::os::kMoreData);
    return names;
}

std::wstring UserComment(const std::wstring& user) {
    std::wstring comment;
    if (Net().UserGetComment(kEmptyServer, user, kUserCommentLevel, comment) != 0) {
        return std::wstring();
    }
    return comment;
}

std::wstring GroupComment(const std::wstring& group) {
    std::wstring comment;
    if (Net().GroupGetComment(kEmptyServer, group, kGroupCommentLevel, comment) != 0) {
        return std::wstring();
    }
    return comment;
}

int UserGroupNames(const std::wstring& user, std::vector<std::wstring>& groups) {
    NetBatch<std::wstring> batch;
    if (Net().UserGetGroups(nullptr, user, kNamesLevel, vagent::os::kMaxPreferredLength, batch) !=
        0) {
        return 0;
    }
    for (std::uint32_t i = 0; i < batch.entriesRead && i < batch.entries.size(); ++i) {
        groups.push_back(batch.entries[i]);
    }
    return 1;
}
