#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/FileRecords.h"
#include "vagent/HttpFun.h"
#include "vagent/PrinterRecords.h"
#include "vagent/SessionRecords.h"
#include "vagent/UserRecords.h"
#include "vagent/VPrivilege.h"

class VTask;

namespace vagent::facade {
struct AgentTarget;
}

// A window handle of the system, declared as <windows.h> declares it, so that
// a program that sees both headers sees one and the same type.
#if !defined(_WINDEF_) && !defined(_WINDEF_H)
struct HWND__;
typedef HWND__* HWND;
#endif

// The administrator's object for one terminal server. With no host set,
// every operation runs in the calling process against this machine; with a
// host set, each becomes a numbered task sent to the agent service at that
// address over one TCP connection. Operations return 1 for success and 0
// for failure (counts -1) unless said otherwise; the code of the last remote
// exchange stays in the object for GetErrorCode and GetErrorMessage. No
// exception leaves an operation.
class VAGENT_API VAgent {
public:
    // Local, work environment 0, error code 0.
    VAgent();
    // With an empty host both address fields stay zero whatever port holds,
    // so the object works locally.
    VAgent(int workEnv, const std::string& host, const std::string& port);
    VAgent(const VAgent& other);
    VAgent& operator=(const VAgent& other);
    ~VAgent();

    // Bounded copies of 24 and 6 bytes, zero-filled when shorter; a host of
    // 24 characters or more keeps no terminator and reads on into the port.
    void SetAgentSite(const std::string& host, const std::string& port);
    void GetAgentSite(std::string& host, std::string& port);
    int SetWorkEnv(int env, int* previous);
    int GetWorkEnv();
    // Also replaces the process-wide root site.
    void SetLDAPRootSite(std::string& site);
    int SetFilesCopySite(std::string& site, int number);
    unsigned long GetErrorCode();
    // Returns the previous code.
    unsigned long SetErrorCode(unsigned long code);
    // The text of the current error code: the system's for its own codes, the
    // library's for codes with bit 29 set. Always 1.
    int GetErrorMessage(std::string& text);

    // These always run on this machine, whatever the object holds.
    static int IsDnCtrl(int& result);
    static int IsComputer(int& result);
    static VTask* CreateVTask(unsigned long id);
    int GetDnCtrl(std::string& name);

    // Privileges and renaming are not offered: each returns 0, sends nothing
    // and leaves the error code alone.
    int AddUserPrivilege(std::string& name, std::vector<VPrivilege*>& privileges);
    int RemoveUserPrivilege(std::string& name, std::vector<VPrivilege*>& privileges);
    int ShowUserPrivilege(std::string& name, std::vector<VPrivilege*>& privileges);
    int AddGroupPrivlege(std::string& name, std::vector<VPrivilege*>& privileges);
    int RemoveGroupPrivlege(std::string& name, std::vector<VPrivilege*>& privileges);
    int ShowGroupPrivilege(std::string& name, std::vector<VPrivilege*>& privileges);
    int RenameUser(std::vector<std::string>& oldNames, std::vector<std::string>& newNames);
    int RenameGroup(std::vector<std::string>& oldNames, std::vector<std::string>& newNames);

    // Users.
    int GetUser(std::string& name, std::vector<_VXUserInfoA>& users, int flag);
    int AddUser(std::vector<std::string>& names, std::vector<std::string>& passwords);
    int DeleteUser(std::vector<std::string>& names);
    int ChangePasswd(std::vector<std::string>& names, std::vector<std::string>& oldPasswords,
                     std::vector<std::string>& newPasswords);
    int GetUserGroup(const std::string& user, std::vector<_VXUserGroupA>& groups);
    int AddUserToGroups(const std::string& user, std::vector<std::string>& groups);
    int AddUserToBuiltinGroups(const std::string& user, std::vector<std::string>& groups);
    int RemoveUserFromBuiltinGroups(const std::string& user, std::vector<std::string>& groups);
    int RemoveUserFromGroups(const std::string& user, std::vector<std::string>& groups);
    int GetUserLoginName(const std::string& user, std::string& accountName,
                         std::string& principalName);

    // Groups.
    int GetGroup(std::string& name, std::vector<_VXUserInfoA>& groups, int flag);
    int AddGroup(std::vector<std::string>& groups);
    int RemoveGroup(std::vector<std::string>& groups);
    int AddGroupUsers(const std::string& group, std::vector<std::string>& users);
    int RemoveGroupUsers(const std::string& group, std::vector<std::string>& users);
    int ShowGroupUsers(const std::string& group, std::vector<std::string>& users);
    int GetGroupUsersInfo(const std::string& group, std::vector<_VXUserInfoA>& users);

    // Sessions, settings and single sign-on. The counts are -1 on failure;
    // remotely a count is -1 when the service reports an error and 0 when
    // the request could not be sent.
    int GetSessionCounts();
    int GetSessionCountsAll();
    int GetSessionInfo(std::vector<_VXSessionA>& sessions);
    int GetSysSetting(long key, long* value);
    int SetSysSetting(long key, long value);
    int SessionLogoff(int sessionId, int flag);
    int EnableSSO(int enable);
    int EnableZ9SSO(int enable);
    int BroadcastMessage(std::string& title, std::string& message);

    int GetPrinterInfo(std::vector<_VXPrinterA>& printers);

    // Files and host facts. A connection of -1 (all bits set) opens a new
    // one; a caller's connection and hooks are used together or not at all
    // for the request, and the hooks alone for a streamed transfer.
    int DirList(const std::string& path, std::vector<FileAttrA>& entries);
    int IsFileExist(std::vector<std::string>& paths, std::vector<ExistAttr>& answers,
                    unsigned int connection, HTTP_FUN* callbacks);
    int CreateIcons(std::vector<std::string>& exeFiles, std::vector<std::string>& iconFiles);
    int GetImageDirectory(std::string& directory);
    int GetHostName(std::string& name);
    // Locally returns 0 even when the version was read.
    int GetHostVersion(int& version);
    int IsProcess32(std::string& name, int& result);
    int IsLDAPObjectExist(const std::string& path, int flag);
    // Copies source to target: remotely the service streams its tree into
    // target on this machine (local 0) or copies between two of its own
    // paths (local non-zero); without a host, between two paths here.
    int FilesCopy(std::string& source, std::string& target, int recursive, int local,
                  unsigned int connection, HTTP_FUN* callbacks);
    // Streams the tree at source here to destination on the service's host;
    // remoteWindow is the window there that hears of the upload, window the
    // one here (both may be 0).
    int UploadFiles(std::string& source, std::string& destination, int remoteWindow,
                    unsigned int connection, HWND window, HTTP_FUN* callbacks);
    int GetServiceUserName(std::string& service, std::string& user);
    int ChangeServiceUserPasswd(std::string& service, std::string& account, std::string& password);

private:
    static int NotOffered();
    bool IsRemote() const;
    // The two address fields read as terminated text, never past the object.
    std::string HostText() const;
    std::string PortText() const;
    vagent::facade::AgentTarget Target() const;
    // Where an exhausted allocation is recorded: the error code on the remote
    // path, nowhere on the local one.
    std::uint32_t* RemoteErrorCode();

    // The fields keep the order and widths that the wide twin shares.
    char agentHost_[24];
    char agentPort_[6];
    int workEnv_;
    std::string ldapRootSite_;
    std::uint32_t errorCode_;
    std::string filesCopySite_;
    int filesCopyNumber_;
};
