#pragma once

#include <vector>

#include "AgentDriver.h"
#include "AgentTarget.h"
#include "vagent/FileRecords.h"

namespace vagentctl {

// AgentDriver over one facade class (VAgent or VAgentW) and the codec that
// turns UTF-8 into that class's text.
template <class Agent, class Codec>
class FacadeDriver final : public AgentDriver {
public:
    using Text = typename Codec::Text;

    explicit FacadeDriver(const AgentTarget& target)
        : codec_(target.address.empty() ? 0 : target.codePage) {
        if (!target.address.empty()) {
            agent_.SetAgentSite(codec_.LocalPath(target.address), codec_.LocalPath(target.port));
        }
        agent_.SetWorkEnv(target.workEnv, nullptr);
        if (target.hasRootSite) {
            Text site = codec_.ToTarget(target.rootSite);
            agent_.SetLDAPRootSite(site);
        }
    }

    std::uint32_t ErrorCode() override { return static_cast<std::uint32_t>(agent_.GetErrorCode()); }
    std::string ErrorText() override {
        Text text;
        agent_.GetErrorMessage(text);
        return codec_.FromTarget(text);
    }

    int GetUser(const std::string& base, int subtree, std::vector<Account>& users) override {
        Text target = In(base);
        std::vector<typename Codec::UserInfo> records;
        const int result = agent_.GetUser(target, records, subtree);
        users = Accounts(records);
        return result;
    }
    int AddUser(const Names& names, const Names& passwords) override {
        auto targetNames = In(names);
        auto targetPasswords = In(passwords);
        return agent_.AddUser(targetNames, targetPasswords);
    }
    int DeleteUser(const Names& names) override {
        auto targetNames = In(names);
        return agent_.DeleteUser(targetNames);
    }
    int ChangePasswd(const Names& names, const Names& oldPasswords,
                     const Names& newPasswords) override {
        auto targetNames = In(names);
        auto targetOld = In(oldPasswords);
        auto targetNew = In(newPasswords);
        return agent_.ChangePasswd(targetNames, targetOld, targetNew);
    }
    int GetUserGroup(const std::string& user, Names& groups) override {
        std::vector<typename Codec::UserGroup> records;
        const int result = agent_.GetUserGroup(In(user), records);
        groups.clear();
        for (const auto& record : records) {
            groups.push_back(Out(record.name));
        }
        return result;
    }
    int AddUserToGroups(const std::string& user, const Names& groups) override {
        auto targetGroups = In(groups);
        return agent_.AddUserToGroups(In(user), targetGroups);
    }
    int AddUserToBuiltinGroups(const std::string& user, const Names& groups) override {
        auto targetGroups = In(groups);
        return agent_.AddUserToBuiltinGroups(In(user), targetGroups);
    }
    int RemoveUserFromBuiltinGroups(const std::string& user, const Names& groups) override {
        auto targetGroups = In(groups);
        return agent_.RemoveUserFromBuiltinGroups(In(user), targetGroups);
    }
    int RemoveUserFromGroups(const std::string& user, const Names& groups) override {
        auto targetGroups = In(groups);
        return agent_.RemoveUserFromGroups(In(user), targetGroups);
    }
    int GetUserLoginName(const std::string& user, std::string& accountName,
                         std::string& principalName) override {
        Text account;
        Text principal;
        const int result = agent_.GetUserLoginName(In(user), account, principal);
        accountName = Out(account);
        principalName = Out(principal);
        return result;
    }

    int GetGroup(const std::string& name, int flag, std::vector<Account>& groups) override {
        Text target = In(name);
        std::vector<typename Codec::UserInfo> records;
        const int result = agent_.GetGroup(target, records, flag);
        groups = Accounts(records);
        return result;
    }
    int AddGroup(const Names& groups) override {
        auto targetGroups = In(groups);
        return agent_.AddGroup(targetGroups);
    }
    int RemoveGroup(const Names& groups) override {
        auto targetGroups = In(groups);
        return agent_.RemoveGroup(targetGroups);
    }
    int AddGroupUsers(const std::string& group, const Names& users) override {
        auto targetUsers = In(users);
        return agent_.AddGroupUsers(In(group), targetUsers);
    }
    int RemoveGroupUsers(const std::string& group, const Names& users) override {
        auto targetUsers = In(users);
        return agent_.RemoveGroupUsers(In(group), targetUsers);
    }
    int ShowGroupUsers(const std::string& group, Names& users) override {
        std::vector<Text> members;
        const int result = agent_.ShowGroupUsers(In(group), members);
        users = Out(members);
        return result;
    }
    int GetGroupUsersInfo(const std::string& group, std::vector<Account>& users) override {
        std::vector<typename Codec::UserInfo> records;
        const int result = agent_.GetGroupUsersInfo(In(group), records);
        users = Accounts(records);
        return result;
    }

    int GetSessionCounts() override { return agent_.GetSessionCounts(); }
    int GetSessionCountsAll() override { return agent_.GetSessionCountsAll(); }
    int GetSessionInfo(std::vector<SessionEntry>& sessions) override {
        std::vector<typename Codec::Session> records;
        const int result = agent_.GetSessionInfo(records);
        sessions.clear();
        for (const auto& record : records) {
            sessions.push_back({record.sessionId, Out(record.info1), Out(record.macAddress),
                                Out(record.info3), Out(record.clientAddress)});
        }
        return result;
    }
    int GetSysSetting(long key, long& value) override { return agent_.GetSysSetting(key, &value); }
    int SetSysSetting(long key, long value) override { return agent_.SetSysSetting(key, value); }
    int SessionLogoff(int sessionId, int flag) override {
        return agent_.SessionLogoff(sessionId, flag);
    }
    int EnableSSO(int enable) override { return agent_.EnableSSO(enable); }
    int EnableZ9SSO(int enable) override { return agent_.EnableZ9SSO(enable); }
    int BroadcastMessage(const std::string& title, const std::string& message) override {
        Text targetTitle = In(title);
        Text targetMessage = In(message);
        return agent_.BroadcastMessage(targetTitle, targetMessage);
    }

    int GetPrinterInfo(std::vector<PrinterEntry>& printers) override {
        std::vector<typename Codec::Printer> records;
        const int result = agent_.GetPrinterInfo(records);
        printers.clear();
        for (const auto& record : records) {
            printers.push_back({record.sessionId, Out(record.printerName)});
        }
        return result;
    }

    int DirList(const std::string& path, std::vector<DirectoryEntry>& entries) override {
        std::vector<typename Codec::FileAttr> records;
        const int result = agent_.DirList(In(path), records);
        entries.clear();
        for (const auto& record : records) {
            entries.push_back({Out(record.name), record.attribute != 0});
        }
        return result;
    }
    int IsFileExist(const Names& paths, std::vector<Existence>& answers) override {
        auto targetPaths = In(paths);
        std::vector<ExistAttr> records;
        const int result = agent_.IsFileExist(targetPaths, records, kNewConnection, nullptr);
        answers.clear();
        for (const ExistAttr& record : records) {
            answers.push_back({record.exists != 0, record.directory != 0});
        }
        return result;
    }
    int CreateIcons(const Names& exeFiles, const Names& iconFiles) override {
        auto targetExes = In(exeFiles);
        auto targetIcons = In(iconFiles);
        return agent_.CreateIcons(targetExes, targetIcons);
    }
    int GetImageDirectory(std::string& directory) override {
        Text text;
        const int result = agent_.GetImageDirectory(text);
        directory = Out(text);
        return result;
    }
    int GetHostName(std::string& name) override {
        Text text;
        const int result = agent_.GetHostName(text);
        name = Out(text);
        return result;
    }
    int GetHostVersion(int& version) override { return agent_.GetHostVersion(version); }
    int IsProcess32(const std::string& name, int& result) override {
        Text target = In(name);
        return agent_.IsProcess32(target, result);
    }
    int IsLDAPObjectExist(const std::string& path, int flag) override {
        return agent_.IsLDAPObjectExist(In(path), flag);
    }
    int FilesCopy(const std::string& source, const std::string& target, int recursive, int local,
                  HTTP_FUN* hooks) override {
        Text targetSource = In(source);
        Text targetPath = local == 0 ? codec_.LocalPath(target) : In(target);
        return agent_.FilesCopy(targetSource, targetPath, recursive, local, kNewConnection, hooks);
    }
    int SetFilesCopySite(const std::string& site, int number) override {
        Text text = codec_.LocalPath(site);
        return agent_.SetFilesCopySite(text, number);
    }
    int UploadFiles(const std::string& localSource, const std::string& destination,
                    int remoteWindow, HTTP_FUN* hooks) override {
        Text source = codec_.LocalPath(localSource);
        Text target = In(destination);
        return agent_.UploadFiles(source, target, remoteWindow, kNewConnection, nullptr, hooks);
    }
    int GetServiceUserName(const std::string& service, std::string& user) override {
        Text targetService = In(service);
        Text text;
        const int result = agent_.GetServiceUserName(targetService, text);
        user = Out(text);
        return result;
    }
    int ChangeServiceUserPasswd(const std::string& service, const std::string& account,
                                const std::string& password) override {
        Text targetService = In(service);
        Text targetAccount = In(account);
        Text targetPassword = In(password);
        return agent_.ChangeServiceUserPasswd(targetService, targetAccount, targetPassword);
    }

    int IsDnCtrl(int& result) override { return Agent::IsDnCtrl(result); }
    int IsComputer(int& result) override { return Agent::IsComputer(result); }
    int GetDnCtrl(std::string& name) override {
        Text text;
        const int result = agent_.GetDnCtrl(text);
        name = Out(text);
        return result;
    }

private:
    // A connection of all bits set asks the facade to open its own.
    static constexpr unsigned int kNewConnection = ~0u;

    Text In(const std::string& text) const { return codec_.ToTarget(text); }
    std::vector<Text> In(const Names& texts) const {
        std::vector<Text> converted;
        for (const std::string& text : texts) {
            converted.push_back(In(text));
        }
        return converted;
    }
    std::string Out(const Text& text) const { return codec_.FromTarget(text); }
    Names Out(const std::vector<Text>& texts) const {
        Names converted;
        for (const Text& text : texts) {
            converted.push_back(Out(text));
        }
        return converted;
    }
    std::vector<Account> Accounts(const std::vector<typename Codec::UserInfo>& records) const {
        std::vector<Account> accounts;
        for (const auto& record : records) {
            accounts.push_back({Out(record.name), Out(record.comment)});
        }
        return accounts;
    }

    Codec codec_;
    Agent agent_;
};

}  // namespace vagentctl
