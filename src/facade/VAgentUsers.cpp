#include "vagent/VAgent.h"

// The user operations: with a host they go to the agent service as tasks 1
// to 10 and 37, without one the user family's workers run here.

#include "facade/LocalTask.h"
#include "facade/RemoteCall.h"
#include "facade/Shield.h"
#include "task/TaskIds.h"
#include "vagent/VUserTask.h"

using namespace vagent::task;

using vagent::facade::AcknowledgedCall;
using vagent::facade::CodeZeroCall;
using vagent::facade::FlagText;
using vagent::facade::RequestBlock;
using vagent::facade::Shielded;

namespace {

using LocalUserTask = vagent::facade::LocalTask<VUserTask>;

}  // namespace

int VAgent::GetUser(std::string& name, std::vector<_VXUserInfoA>& users, int flag) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).GetUser(name, users, flag);
        }
        return CodeZeroCall(Target(), errorCode_, kGetUser,
                            RequestBlock::List({name, FlagText(flag)}), &users);
    });
}

int VAgent::AddUser(std::vector<std::string>& names, std::vector<std::string>& passwords) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).AddUser(names, passwords);
        }
        return AcknowledgedCall(Target(), errorCode_, kAddUser,
                                RequestBlock::Pairs(names, passwords));
    });
}

int VAgent::DeleteUser(std::vector<std::string>& names) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).DeleteUser(names);
        }
        return AcknowledgedCall(Target(), errorCode_, kDeleteUser, RequestBlock::List(names));
    });
}

int VAgent::ChangePasswd(std::vector<std::string>& names, std::vector<std::string>& oldPasswords,
                         std::vector<std::string>& newPasswords) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).ChangePasswd(names, oldPasswords, newPasswords);
        }
        return AcknowledgedCall(Target(), errorCode_, kChangePasswd,
                                RequestBlock::Triples(names, oldPasswords, newPasswords));
    });
}

int VAgent::GetUserGroup(const std::string& user, std::vector<_VXUserGroupA>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).GetUserGroup(user, groups);
        }
        return CodeZeroCall(Target(), errorCode_, kGetUserGroup, RequestBlock::List({user}),
                            &groups);
    });
}

int VAgent::AddUserToGroups(const std::string& user, std::vector<std::string>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).AddUserToGroupsEx(user, "Users", groups);
        }
        return AcknowledgedCall(Target(), errorCode_, kAddUserToGroups,
                                RequestBlock::Headed(user, groups));
    });
}

int VAgent::AddUserToBuiltinGroups(const std::string& user, std::vector<std::string>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).AddUserToBuiltinGroups(user, groups);
        }
        return AcknowledgedCall(Target(), errorCode_, kAddUserToBuiltinGroups,
                                RequestBlock::Headed(user, groups));
    });
}

int VAgent::RemoveUserFromBuiltinGroups(const std::string& user, std::vector<std::string>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).RemoveUserFromBuiltinGroups(user, groups);
        }
        return AcknowledgedCall(Target(), errorCode_, kRemoveUserFromBuiltinGroups,
                                RequestBlock::Headed(user, groups));
    });
}

int VAgent::RemoveUserFromGroups(const std::string& user, std::vector<std::string>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).RemoveUserFromGroupsEx(user, "Users", groups);
        }
        return AcknowledgedCall(Target(), errorCode_, kRemoveUserFromGroups,
                                RequestBlock::Headed(user, groups));
    });
}

// The service answers the two names as one list, account name first.
int VAgent::GetUserLoginName(const std::string& user, std::string& accountName,
                             std::string& principalName) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalUserTask(workEnv_).GetUserLoginName(user, accountName, principalName);
        }
        std::vector<std::string> names;
        const int answered = CodeZeroCall(Target(), errorCode_, kGetUserLoginName,
                                          RequestBlock::List({user}), &names);
        if (answered != 0) {
            accountName = names.size() > 0 ? names[0] : std::string();
            principalName = names.size() > 1 ? names[1] : std::string();
        }
        return answered;
    });
}
