#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/HttpFun.h"

namespace vagentctl {

using Names = std::vector<std::string>;

struct Account {
    std::string name;
    std::string comment;
};

struct SessionEntry {
    int id = 0;
    std::string info1;
    std::string macAddress;
    std::string info3;
    std::string clientAddress;
};

struct PrinterEntry {
    int sessionId = 0;
    std::string name;
};

struct DirectoryEntry {
    std::string name;
    bool directory = false;
};

struct Existence {
    bool exists = false;
    bool directory = false;
};

// One agent object seen with UTF-8 text: each operation converts its texts
// for the facade in use, calls it and converts the answers back, returning
// what the facade returned. A text that the target's code page cannot hold
// throws TextNotRepresentable before anything is sent. Local paths (the
// source of an upload, the place a download lands) are this machine's text.
class AgentDriver {
public:
    virtual ~AgentDriver() = default;

    virtual std::uint32_t ErrorCode() = 0;
    virtual std::string ErrorText() = 0;

    virtual int GetUser(const std::string& base, int subtree, std::vector<Account>& users) = 0;
    virtual int AddUser(const Names& names, const Names& passwords) = 0;
    virtual int DeleteUser(const Names& names) = 0;
    virtual int ChangePasswd(const Names& names, const Names& oldPasswords,
                             const Names& newPasswords) = 0;
    virtual int GetUserGroup(const std::string& user, Names& groups) = 0;
    virtual int AddUserToGroups(const std::string& user, const Names& groups) = 0;
    virtual int AddUserToBuiltinGroups(const std::string& user, const Names& groups) = 0;
    virtual int RemoveUserFromBuiltinGroups(const std::string& user, const Names& groups) = 0;
    virtual int RemoveUserFromGroups(const std::string& user, const Names& groups) = 0;
    virtual int GetUserLoginName(const std::string& user, std::string& accountName,
                                 std::string& principalName) = 0;

    virtual int GetGroup(const std::string& name, int flag, std::vector<Account>& groups) = 0;
    virtual int AddGroup(const Names& groups) = 0;
    virtual int RemoveGroup(const Names& groups) = 0;
    virtual int AddGroupUsers(const std::string& group, const Names& users) = 0;
    virtual int RemoveGroupUsers(const std::string& group, const Names& users) = 0;
    virtual int ShowGroupUsers(const std::string& group, Names& users) = 0;
    virtual int GetGroupUsersInfo(const std::string& group, std::vector<Account>& users) = 0;

    virtual int GetSessionCounts() = 0;
    virtual int GetSessionCountsAll() = 0;
    virtual int GetSessionInfo(std::vector<SessionEntry>& sessions) = 0;
    virtual int GetSysSetting(long key, long& value) = 0;
    virtual int SetSysSetting(long key, long value) = 0;
    virtual int SessionLogoff(int sessionId, int flag) = 0;
    virtual int EnableSSO(int enable) = 0;
    virtual int EnableZ9SSO(int enable) = 0;
    virtual int BroadcastMessage(const std::string& title, const std::string& message) = 0;

    virtual int GetPrinterInfo(std::vector<PrinterEntry>& printers) = 0;

    virtual int DirList(const std::string& path, std::vector<DirectoryEntry>& entries) = 0;
    virtual int IsFileExist(const Names& paths, std::vector<Existence>& answers) = 0;
    virtual int CreateIcons(const Names& exeFiles, const Names& iconFiles) = 0;
    virtual int GetImageDirectory(std::string& directory) = 0;
    virtual int GetHostName(std::string& name) = 0;
    virtual int GetHostVersion(int& version) = 0;
    virtual int IsProcess32(const std::string& name, int& result) = 0;
    virtual int IsLDAPObjectExist(const std::string& path, int flag) = 0;
    // With local 0 the target is a path of this machine that the source's
    // tree streams into; otherwise both are paths of the target's host (the
    // files relayed from the copy site when one is set).
    virtual int FilesCopy(const std::string& source, const std::string& target, int recursive,
                          int local, HTTP_FUN* hooks) = 0;
    virtual int SetFilesCopySite(const std::string& site, int number) = 0;
    virtual int UploadFiles(const std::string& localSource, const std::string& destination,
                            int remoteWindow, HTTP_FUN* hooks) = 0;
    virtual int GetServiceUserName(const std::string& service, std::string& user) = 0;
    virtual int ChangeServiceUserPasswd(const std::string& service, const std::string& account,
                                        const std::string& password) = 0;

    virtual int IsDnCtrl(int& result) = 0;
    virtual int IsComputer(int& result) = 0;
    virtual int GetDnCtrl(std::string& name) = 0;
};

}  // namespace vagentctl
