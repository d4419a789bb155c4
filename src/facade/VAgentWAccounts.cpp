#include "vagent/VAgentW.h"

#include "accounts/TextConversion.h"
#include "facade/VAgentWCall.h"
#include "facade/WideText.h"
#include "vagent/DllLog.h"

int VAgentW::NotOffered() {
    return 0;
}

int VAgentW::AddUserPrivilege(std::wstring&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgentW::RemoveUserPrivilege(std::wstring&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgentW::ShowUserPrivilege(std::wstring&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgentW::AddGroupPrivlege(std::wstring&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgentW::RemoveGroupPrivlege(std::wstring&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgentW::ShowGroupPrivilege(std::wstring&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgentW::RenameUser(std::vector<std::wstring>&, std::vector<std::wstring>&) {
    return NotOffered();
}

int VAgentW::RenameGroup(std::vector<std::wstring>&, std::vector<std::wstring>&) {
    return NotOffered();
}

int VAgentW::GetUser(std::wstring& name, std::vector<_VXUserInfoW>& users, int flag) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowName = Narrow(name);
        std::vector<_VXUserInfoA> found;
        const int result = agent.GetUser(narrowName, found, flag);
        ReplaceWithWidened(found, users);
        return result;
    });
}

// Lists of different lengths are refused before any conversion, so that the
// caller's error code still describes the call before.
int VAgentW::AddUser(std::vector<std::wstring>& names, std::vector<std::wstring>& passwords) {
    if (names.size() != passwords.size()) {
        DllLogPrintf("AddUser : userNames.size != userPasswds.size");
        return 0;
    }
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowNames = NarrowList(names);
        std::vector<std::string> narrowPasswords = NarrowList(passwords);
        return agent.AddUser(narrowNames, narrowPasswords);
    });
}

int VAgentW::DeleteUser(std::vector<std::wstring>& names) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowNames = NarrowList(names);
        return agent.DeleteUser(narrowNames);
    });
}

int VAgentW::ChangePasswd(std::vector<std::wstring>& names, std::vector<std::wstring>& oldPasswords,
                          std::vector<std::wstring>& newPasswords) {
    if (names.size() != oldPasswords.size() || oldPasswords.size() != newPasswords.size()) {
        DllLogPrintf(
            "ChangePasswd : userNames.size != oldPasswds.size || oldPasswds.size != "
            "newPasswds.size");
        return 0;
    }
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowNames = NarrowList(names);
        std::vector<std::string> narrowOld = NarrowList(oldPasswords);
        std::vector<std::string> narrowNew = NarrowList(newPasswords);
        return agent.ChangePasswd(narrowNames, narrowOld, narrowNew);
    });
}

int VAgentW::GetUserGroup(const std::wstring& user, std::vector<_VXUserGroupW>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<_VXUserGroupA> found;
        const int result = agent.GetUserGroup(Narrow(user), found);
        ReplaceWithWidened(found, groups);
        return result;
    });
}

int VAgentW::AddUserToGroups(const std::wstring& user, std::vector<std::wstring>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowGroups = NarrowList(groups);
        return agent.AddUserToGroups(Narrow(user), narrowGroups);
    });
}

int VAgentW::AddUserToBuiltinGroups(const std::wstring& user, std::vector<std::wstring>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowGroups = NarrowList(groups);
        return agent.AddUserToBuiltinGroups(Narrow(user), narrowGroups);
    });
}

int VAgentW::RemoveUserFromBuiltinGroups(const std::wstring& user,
                                         std::vector<std::wstring>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowGroups = NarrowList(groups);
        return agent.RemoveUserFromBuiltinGroups(Narrow(user), narrowGroups);
    });
}

int VAgentW::RemoveUserFromGroups(const std::wstring& user, std::vector<std::wstring>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowGroups = NarrowList(groups);
        return agent.RemoveUserFromGroups(Narrow(user), narrowGroups);
    });
}

int VAgentW::GetUserLoginName(const std::wstring& user, std::wstring& accountName,
                              std::wstring& principalName) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowAccount;
        std::string narrowPrincipal;
        const int result = agent.GetUserLoginName(Narrow(user), narrowAccount, narrowPrincipal);
        ::string2wstring(narrowAccount, accountName);
        ::string2wstring(narrowPrincipal, principalName);
        return result;
    });
}

int VAgentW::GetGroup(std::wstring& name, std::vector<_VXUserInfoW>& groups, int flag) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowName = Narrow(name);
        std::vector<_VXUserInfoA> found;
        const int result = agent.GetGroup(narrowName, found, flag);
        ReplaceWithWidened(found, groups);
        return result;
    });
}

int VAgentW::AddGroup(std::vector<std::wstring>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowGroups = NarrowList(groups);
        return agent.AddGroup(narrowGroups);
    });
}

int VAgentW::RemoveGroup(std::vector<std::wstring>& groups) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowGroups = NarrowList(groups);
        return agent.RemoveGroup(narrowGroups);
    });
}

int VAgentW::AddGroupUsers(const std::wstring& group, std::vector<std::wstring>& users) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowUsers = NarrowList(users);
        return agent.AddGroupUsers(Narrow(group), narrowUsers);
    });
}

int VAgentW::RemoveGroupUsers(const std::wstring& group, std::vector<std::wstring>& users) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowUsers = NarrowList(users);
        return agent.RemoveGroupUsers(Narrow(group), narrowUsers);
    });
}

int VAgentW::ShowGroupUsers(const std::wstring& group, std::vector<std::wstring>& users) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> found;
        const int result = agent.ShowGroupUsers(Narrow(group), found);
        users = WideList(found);
        return result;
    });
}

int VAgentW::GetGroupUsersInfo(const std::wstring& group, std::vector<_VXUserInfoW>& users) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<_VXUserInfoA> found;
        const int result = agent.GetGroupUsersInfo(Narrow(group), found);
        ReplaceWithWidened(found, users);
        return result;
    });
}
