#include "vagent/VAgent.h"

// The group operations: with a host they go to the agent service as tasks
// 14 to 20 and 42, without one the group family's workers run here.

#include "facade/LocalTask.h"
#include "facade/RemoteCall.h"
#include "facade/Shield.h"
#include "task/TaskIds.h"
#include "vagent/VGroupTask.h"

using namespace vagent::task;

using vagent::facade::AcknowledgedCall;
using vagent::facade::CodeZeroCall;
using vagent::facade::FlagText;
using vagent::facade::RequestBlock;
using vagent::facade::Shielded;

namespace {

using LocalGroupTask = vagent::facade::LocalTask<VGroupTask>;

}  // namespace

int VAgent::GetGroup(std::string& name, std::vector<_VXUserInfoA>& groups, int flag) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).GetGroup(name, groups, flag);
        }
        return CodeZeroCall(Target(), errorCode_, kGetGroup,
                            RequestBlock::List({name, FlagText(flag)}), &groups);
    });
}

int VAgent::AddGroup(std::vector<std::string>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).AddGroup(groups);
        }
        return AcknowledgedCall(Target(), errorCode_, kAddGroup, RequestBlock::List(groups));
    });
}

int VAgent::RemoveGroup(std::vector<std::string>& groups) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).RemoveGroup(groups);
        }
        return AcknowledgedCall(Target(), errorCode_, kRemoveGroup, RequestBlock::List(groups));
    });
}

int VAgent::AddGroupUsers(const std::string& group, std::vector<std::string>& users) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).AddGroupUsers(group, users);
        }
        return AcknowledgedCall(Target(), errorCode_, kAddGroupUsers,
                                RequestBlock::Headed(group, users));
    });
}

int VAgent::RemoveGroupUsers(const std::string& group, std::vector<std::string>& users) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).RemoveGroupUsers(group, users);
        }
        return AcknowledgedCall(Target(), errorCode_, kRemoveGroupUsers,
                                RequestBlock::Headed(group, users));
    });
}

int VAgent::ShowGroupUsers(const std::string& group, std::vector<std::string>& users) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).ShowGroupUsers(group, users);
        }
        return CodeZeroCall(Target(), errorCode_, kShowGroupUsers, RequestBlock::List({group}),
                            &users);
    });
}

int VAgent::GetGroupUsersInfo(const std::string& group, std::vector<_VXUserInfoA>& users) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalGroupTask(workEnv_).GetGroupUsersInfo(group, users);
        }
        return CodeZeroCall(Target(), errorCode_, kGetGroupUsersInfo, RequestBlock::List({group}),
                            &users);
    });
}
