#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/FileRecords.h"
#include "vagent/HttpFun.h"
#include "vagent/PrinterRecords.h"
#include "vagent/SessionRecords.h"
#include "vagent/UserRecords.h"
#include "vagent/VAgent.h"
#include "vagent/VPrivilege.h"

class VTask;

// VAgent for callers that hold their text as UTF-16. The object keeps its
// settings narrow, in the active code page, exactly as VAgent keeps them;
// each operation runs on a temporary VAgent built from these settings, with
// the arguments converted to narrow text and the results back to wide.
// The error code afterwards is the temporary's: a call that runs locally or
// fails before anything is sent leaves 0, whatever an earlier call left.
class VAGENT_API VAgentW {
public:
    // Local, work environment 0, error code 0.
    VAgentW();
    // Unlike VAgent, the port is kept even when the host is empty.
    VAgentW(int workEnv, const std::wstring& host, const std::wstring& port);
    VAgentW(const VAgentW& other);
    VAgentW& operator=(const VAgentW& other);
    ~VAgentW();

    // Conversions in the active code page, terminator counted in the result.
    // 0 when the text does not convert (out empty) or when no buffer could be
    // had (out untouched); the latter is logged by either direction as
    // "wstring2string : new [n] bytes".
    static int wstring2string(const std::wstring& in, std::string& out);
    static int string2wstring(const std::string& in, std::wstring& out);

    void SetAgentSite(const std::wstring& host, const std::wstring& port);
    void GetAgentSite(std::wstring& host, std::wstring& port);
    int SetWorkEnv(int env, int* previous);
    int GetWorkEnv();
    // Also replaces the process-wide root site.
    void SetLDAPRootSite(std::wstring& site);
    int SetFilesCopySite(std::wstring& site, int number);
    unsigned long GetErrorCode();
    // Returns the previous code.
    unsigned long SetErrorCode(unsigned long code);
    // The text of the current error code, as VAgent gives it. Always 1.
    int GetErrorMessage(std::wstring& text);

    // These always run on this machine, whatever the object holds.
    static int IsDnCtrl(int& result);
    static int IsComputer(int& result);
    static VTask* CreateVTask(unsigned long id);
    // Also keeps the system's last error of the lookup as the error code.
    int GetDnCtrl(std::wstring& name);

    // Privileges and renaming are not offered: each returns 0, sends nothing
    // and leaves the error code alone.
    int AddUserPrivilege(std::wstring& name, std::vector<VPrivilege*>& privileges);
    int RemoveUserPrivilege(std::wstring& name, std::vector<VPrivilege*>& privileges);
    int ShowUserPrivilege(std::wstring& name, std::vector<VPrivilege*>& privileges);
    int AddGroupPrivlege(std::wstring& name, std::vector<VPrivilege*>& privileges);
    int RemoveGroupPrivlege(std::wstring& name, std::vector<VPrivilege*>& privileges);
    int ShowGroupPrivilege(std::wstring& name, std::vector<VPrivilege*>& privileges);
    int RenameUser(std::vector<std::wstring>& oldNames, std::vector<std::wstring>& newNames);
    int RenameGroup(std::vector<std::wstring>& oldNames, std::vector<std::wstring>& newNames);

    // Users. AddUser and ChangePasswd refuse lists of different lengths
    // before anything else, error code unchanged.
    int GetUser(std::wstring& name, std::vector<_VXUserInfoW>& users, int flag);
    int AddUser(std::vector<std::wstring>& names, std::vector<std::wstring>& passwords);
    int DeleteUser(std::vector<std::wstring>& names);
    int ChangePasswd(std::vector<std::wstring>& names, std::vector<std::wstring>& oldPasswords,
                     std::vector<std::wstring>& newPasswords);
    int GetUserGroup(const std::wstring& user, std::vector<_VXUserGroupW>& groups);
    int AddUserToGroups(const std::wstring& user, std::vector<std::wstring>& groups);
    int AddUserToBuiltinGroups(const std::wstring& user, std::vector<std::wstring>& groups);
    int RemoveUserFromBuiltinGroups(const std::wstring& user, std::vector<std::wstring>& groups);
    int RemoveUserFromGroups(const std::wstring& user, std::vector<std::wstring>& groups);
    int GetUserLoginName(const std::wstring& user, std::wstring& accountName,
                         std::wstring& principalName);

    // Groups.
    int GetGroup(std::wstring& name, std::vector<_VXUserInfoW>& groups, int flag);
    int AddGroup(std::vector<std::wstring>& groups);
    int RemoveGroup(std::vector<std::wstring>& groups);
    int AddGroupUsers(const std::wstring& group, std::vector<std::wstring>& users);
    int RemoveGroupUsers(const std::wstring& group, std::vector<std::wstring>& users);
    int ShowGroupUsers(const std::wstring& group, std::vector<std::wstring>& users);
    int GetGroupUsersInfo(const std::wstring& group, std::vector<_VXUserInfoW>& users);

    // Sessions, settings and single sign-on.
    int GetSessionCounts();
    int GetSessionCountsAll();
    int GetSessionInfo(std::vector<_VXSessionW>& sessions);
    int GetSysSetting(long key, long* value);
    int SetSysSetting(long key, long value);
    int SessionLogoff(int sessionId, int flag);
    int EnableSSO(int enable);
    int EnableZ9SSO(int enable);
    int BroadcastMessage(std::wstring& title, std::wstring& message);

    int GetPrinterInfo(std::vector<_VXPrinterW>& printers);

    // Files and host facts.
    int DirList(const std::wstring& path, std::vector<FileAttrW>& entries);
    int IsFileExist(std::vector<std::wstring>& paths, std::vector<ExistAttr>& answers,
                    unsigned int connection, HTTP_FUN* callbacks);
    int CreateIcons(std::vector<std::wstring>& exeFiles, std::vector<std::wstring>& iconFiles);
    int GetImageDirectory(std::wstring& directory);
    int GetHostName(std::wstring& name);
    int GetHostVersion(int& version);
    int IsProcess32(std::wstring& name, int& result);
    int IsLDAPObjectExist(const std::wstring& path, int flag);
    int FilesCopy(std::wstring& source, std::wstring& target, int recursive, int local,
                  unsigned int connection, HTTP_FUN* callbacks);
    int UploadFiles(std::wstring& source, std::wstring& destination, int remoteWindow,
                    unsigned int connection, HWND window, HTTP_FUN* callbacks);
    int GetServiceUserName(std::wstring& service, std::wstring& user);
    int ChangeServiceUserPasswd(std::wstring& service, std::wstring& account,
                                std::wstring& password);

private:
    static int NotOffered();
    // Runs one operation on a temporary VAgent that carries this object's
    // target, work environment and root site, then takes over its error code.
    // Out of memory, the call answers `failure` with error code 8.
    template <class Operation>
    int ThroughNarrowAgent(Operation operation, int failure = 0);
    // The temporary, configured; throws std::bad_alloc when it cannot be had.
    std::unique_ptr<VAgent> NarrowAgent();
    // The two address fields read as terminated text, never past the port.
    std::string HostText() const;
    std::string PortText() const;

    // The same fields, order and widths as VAgent's.
    char agentHost_[24];
    char agentPort_[6];
    int workEnv_;
    std::string ldapRootSite_;
    std::uint32_t errorCode_;
    std::string filesCopySite_;
    int filesCopyNumber_;
};
