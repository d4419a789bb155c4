#include "accounts/LocalAccounts.h"

#include "accounts/DnsName.h"
#include "accounts/TextConversion.h"
#include "os/NetApi.h"
#include "os/Status.h"
#include "vagent/DllLog.h"

namespace {

using vagent::os::NetApi;
using vagent::os::NetBatch;

constexpr std::uint32_t kUserInfoLevel = 1;
constexpr std::uint32_t kPasswordLevel = 1003;
constexpr std::uint32_t kNamesLevel = 0;
constexpr std::uint32_t kDomainAndNameLevel = 3;

NetApi& Net() {
    return vagent::os::Installed<NetApi>();
}

vagent::os::UserInfo1 NewUserRecord(const std::wstring& name, const std::wstring& password) {
    vagent::os::UserInfo1 record;
    record.name = name;
    record.password = password;
    record.passwordAge = 0;
    record.privilege = vagent::os::kUserPrivUser;
    record.flags = vagent::os::kUserFlagScript | vagent::os::kUserFlagDontExpirePassword;
    return record;
}

const char* PasswordFailureName(std::uint32_t status) {
    switch (status) {
        case vagent::os::kNerrPasswordTooShort:
            return "NERR_PasswordTooShort";
        case vagent::os::kNerrInvalidComputer:
            return "NERR_InvalidComputer";
        case vagent::os::kNerrNotPrimary:
            return "NERR_NotPrimary";
        case vagent::os::kAccessDenied:
            return "ERROR_ACCESS_DENIED";
        case vagent::os::kErrorInvalidPassword:
            return "ERROR_INVALID_PASSWORD";
        case vagent::os::kNerrUserNotFound:
            return "NERR_UserNotFound";
        default:
            return "";
    }
}

// Pages through a level-0 name enumeration while it reports more data. The
// resume handle keeps the width the enumeration gives it.
template <class ResumeHandle, class Enumerate>
int CollectNames(Enumerate enumerate, std::vector<std::wstring>& names) {
    names.clear();
    int mark = 1;
    ResumeHandle resumeHandle = 0;
    std::uint32_t status = 0;
    do {
        NetBatch<std::wstring> batch;
        status = enumerate(resumeHandle, batch);
        if (status == 0 || status == vagent::os::kMoreData) {
            for (std::uint32_t i = 0; i < batch.entriesRead; ++i) {
                if (i >= batch.entries.size()) {
                    DllLogPrintf("An access violation has occurred\n");
                    mark = 0;
                    break;
                }
                names.push_back(batch.entries[i]);
            }
        } else {
            DllLogPrintf("A system error has occurred: %ld\n", static_cast<long>(status));
            mark = 0;
        }
    } while (status == vagent::os::kMoreData);
    return mark;
}

}  // namespace

int NetAddUsers(const std::wstring&, const std::vector<std::wstring>& users,
                const std::vector<std::wstring>& passwords) {
    if (users.size() != passwords.size()) {
        DllLogPrintf("AddUser : usrs.size != passwds.size");
        return 0;
    }
    for (std::size_t i = 0; i < users.size(); ++i) {
        const std::uint32_t added =
            Net().UserAdd(nullptr, kUserInfoLevel, NewUserRecord(users[i], passwords[i]));
        if (added == vagent::os::kNerrUserExists) {
            const std::uint32_t reset =
                Net().UserSetPassword(nullptr, users[i], kPasswordLevel, passwords[i]);
            if (reset != 0) {
                DllLogPrintf("Change Passwd failed: %ld", static_cast<long>(reset));
                return 0;
            }
        } else if (added != 0) {
            DllLogPrintf("NetUserAdd failed: %ld", static_cast<long>(added));
            return 0;
        }
    }
    return 1;
}

int NetDeleteUsers(const std::wstring&, const std::vector<std::wstring>& users) {
    for (const std::wstring& user : users) {
        const std::uint32_t status = Net().UserDel(nullptr, user);
        if (status != 0) {
            DllLogPrintf("NetUserDel failed: %ld", static_cast<long>(status));
            return 0;
        }
    }
    return 1;
}

int NetChangePasswords(const std::wstring&, const std::vector<std::wstring>& users,
                       const std::vector<std::wstring>& oldPasswords,
                       const std::vector<std::wstring>& newPasswords) {
    if (users.size() != oldPasswords.size() || oldPasswords.size() != newPasswords.size()) {
        DllLogPrintf(
            "ChangePasswd parameter error : usrs.size != passwdsOld.size || passwdsOld.size != "
            "passwdsNew.size");
        return 0;
    }
    for (std::size_t i = 0; i < users.size(); ++i) {
        const std::uint32_t status =
            Net().UserSetPassword(nullptr, users[i], kPasswordLevel, newPasswords[i]);
        if (status != 0) {
            DllLogPrintf("%s", PasswordFailureName(status));
            return 0;
        }
    }
    return 1;
}

int NetAddLocalGroups(const std::wstring& server, const std::vector<std::wstring>& groups) {
    for (const std::wstring& group : groups) {
        const std::uint32_t status = Net().LocalGroupAdd(server.c_str(), kNamesLevel, group);
        if (status != 0) {
            DllLogPrintf("NetLocalGroupAdd failed : %ld", static_cast<long>(status));
            return 0;
        }
    }
    return 1;
}

int NetDeleteLocalGroups(const std::wstring& server, const std::vector<std::wstring>& groups) {
    for (const std::wstring& group : groups) {
        const std::uint32_t status = Net().LocalGroupDel(server.c_str(), group);
        if (status != 0) {
            DllLogPrintf("NetLocalGroupDel failed : %ld", static_cast<long>(status));
            return 0;
        }
    }
    return 1;
}

int NetAddLocalGroupMembers(const std::wstring& server, const std::wstring& group,
                            const std::vector<std::string>& users) {
    std::uint32_t ignoredError = 0;
    std::string domain;
    if (!ReadDnsDomain("AddGroupUsers", ignoredError, domain)) {
        return 0;
    }
    for (const std::string& user : users) {
        const std::wstring member = Wide(domain + "\\" + user);
        const std::uint32_t status =
            Net().LocalGroupAddMembers(server.c_str(), group, kDomainAndNameLevel, {member});
        if (status != 0) {
            DllLogPrintf("NetLocalGroupAddMembers failed : %ld", static_cast<long>(status));
            return 0;
        }
    }
    return 1;
}

int NetEnumUsers(const std::wstring& server, std::vector<std::wstring>& names) {
    return CollectNames<std::uint32_t>(
        [&server](std::uint32_t& resumeHandle, NetBatch<std::wstring>& batch) {
            return Net().UserEnum(server.c_str(), kNamesLevel, vagent::os::kFilterNormalAccount,
                                  vagent::os::kMaxPreferredLength, resumeHandle, batch);
        },
        names);
}

int NetEnumLocalGroups(const std::wstring& server, std::vector<std::wstring>& names) {
    return CollectNames<std::uintptr_t>(
        [&server](std::uintptr_t& resumeHandle, NetBatch<std::wstring>& batch) {
            return Net().LocalGroupEnum(server.c_str(), kNamesLevel,
                                        vagent::os::kMaxPreferredLength, resumeHandle, batch);
        },
        names);
}
