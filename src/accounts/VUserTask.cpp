#include "vagent/VUserTask.h"

#include <cstdlib>
#include <new>

#include "task/TaskIds.h"
#include "vagent/ErrorCodes.h"
#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VPrivilege.h"

using namespace vagent::task;

namespace {

bool IsUserTaskId(std::uint32_t id) {
    return (id >= kGetUser && id <= kShowUserPrivilege) || id == kGetUserLoginName;
}

const char kUsersContainer[] = "Users";

}  // namespace

VUserTask::VUserTask(std::uint32_t taskId) : VTask(taskId) {}

int VUserTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (request_ == nullptr) {
        errorCode_ = vagent::kErrorInvalidSetting;
        return 0;
    }
    if (resultData == nullptr || resultLength == nullptr) {
        return 0;
    }
    *resultData = nullptr;
    *resultLength = 0;
    if (!IsUserTaskId(taskId_)) {
        return 0;
    }
    return RunOnRequestPayload(
        resultData, resultLength,
        [this](const std::uint8_t* payload, std::uint32_t length, std::uint8_t*& data,
               std::uint32_t& size) { return RunTask(payload, length, data, size); });
}

int VUserTask::RunTask(const std::uint8_t* payload, std::uint32_t length, std::uint8_t*& data,
                       std::uint32_t& size) {
    std::vector<std::string> first;
    std::vector<std::string> second;
    std::vector<std::string> third;
    std::string name;
    switch (taskId_) {
        case kGetUser: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            if (first.size() < 2) {
                return 1;
            }
            std::vector<_VXUserInfoA> users;
            const int found = GetUser(first[0], users, std::atoi(first[1].c_str()));
            if (found != 0) {
                VecUser2Result(users, data, size);
            }
            return found;
        }
        case kAddUser:
            return Data2VecTString2(payload, length, first, second) != 0 ? AddUser(first, second)
                                                                         : 0;
        case kDeleteUser:
            return Data2VecTString(payload, length, first) != 0 ? DeleteUser(first) : 0;
        case kRenameUser:
            return Data2VecTString2(payload, length, first, second);
        case kChangePasswd:
            return Data2VecTString3(payload, length, first, second, third) != 0
                       ? ChangePasswd(first, second, third)
                       : 0;
        case kGetUserGroup: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            std::vector<_VXUserGroupA> groups;
            const int found = GetUserGroup(first.empty() ? std::string() : first[0], groups);
            if (found != 0) {
                VecUserGroup2Result(groups, data, size);
            }
            return found;
        }
        case kAddUserToGroups:
            return Data2GroupUser(payload, length, name, first) != 0
                       ? AddUserToGroupsEx(name, kUsersContainer, first)
                       : 0;
        case kAddUserToBuiltinGroups:
            return Data2GroupUser(payload, length, name, first) != 0
                       ? AddUserToBuiltinGroups(name, first)
                       : 0;
        case kRemoveUserFromBuiltinGroups:
            return Data2GroupUser(payload, length, name, first) != 0
                       ? RemoveUserFromBuiltinGroups(name, first)
                       : 0;
        case kRemoveUserFromGroups:
            return Data2GroupUser(payload, length, name, first) != 0
                       ? RemoveUserFromGroupsEx(name, kUsersContainer, first)
                       : 0;
        case kAddUserPrivilege:
        case kRemoveUserPrivilege: {
            VPrivilege privilege;
            return Data2Privilege(payload, length, name, privilege);
        }
        case kShowUserPrivilege: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            const std::vector<VPrivilege*> privileges;
            Privilege2Result(privileges, data, size);
            return 1;
        }
        case kGetUserLoginName: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            if (first.empty()) {
                return 1;
            }
            std::string accountName;
            std::string principalName;
            const int found = GetUserLoginName(first[0], accountName, principalName);
            if (found != 0) {
                VecTStringToResult({accountName, principalName}, data, size);
            }
            return found;
        }
        default:
            return 0;
    }
}

int VUserTask::Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) {
    if (!CheckResultArguments(payload, length, output)) {
        return 0;
    }
    try {
        switch (taskId_) {
            case kGetUser:
                return Data2VecUser(payload, length,
                                    *static_cast<std::vector<_VXUserInfoA>*>(output));
            case kGetUserGroup:
                return Data2VecUserGroup(payload, length,
                                         *static_cast<std::vector<_VXUserGroupA>*>(output));
            case kShowUserPrivilege:
                return Result2Privilege(payload, length,
                                        *static_cast<std::vector<VPrivilege*>*>(output));
            case kGetUserLoginName:
                return Data2VecTString(payload, length,
                                       *static_cast<std::vector<std::string>*>(output));
            default:
                if (!IsUserTaskId(taskId_)) {
                    return 0;
                }
                return Result2Ack(payload, length, *static_cast<std::uint32_t*>(output));
        }
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}
