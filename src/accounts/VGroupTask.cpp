#include "vagent/VGroupTask.h"

#include <cstdlib>
#include <new>

#include "task/TaskIds.h"
#include "vagent/ErrorCodes.h"
#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VPrivilege.h"

using namespace vagent::task;

namespace {

bool IsGroupTaskId(std::uint32_t id) {
    return (id >= kGetGroup && id <= kShowGroupPrivilege) || id == kGetGroupUsersInfo;
}

std::string FirstOrEmpty(const std::vector<std::string>& list) {
    return list.empty() ? std::string() : list.front();
}

// Group records travel as one flat list: name, then comment, per record.
std::vector<std::string> Flatten(const std::vector<_VXUserInfoA>& records) {
    std::vector<std::string> flat;
    for (const _VXUserInfoA& record : records) {
        flat.push_back(record.name);
        flat.push_back(record.comment);
    }
    return flat;
}

// Rebuilds the records from whole pairs; an odd last string is dropped.
int DecodeGroupRecords(const std::uint8_t* payload, std::uint32_t length,
                       std::vector<_VXUserInfoA>& records) {
    std::vector<std::string> flat;
    if (Data2VecTString(payload, length, flat) == 0) {
        return 0;
    }
    for (std::size_t i = 0; i + 1 < flat.size(); i += 2) {
        records.push_back(_VXUserInfoA{flat[i], flat[i + 1]});
    }
    return 1;
}

}  // namespace

VGroupTask::VGroupTask(std::uint32_t taskId) : VTask(taskId) {}

int VGroupTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (!PrepareResultOutputs(resultData, resultLength, "DoTask : Parameter Error")) {
        return 0;
    }
    if (!IsGroupTaskId(taskId_)) {
        return 0;
    }
    return RunOnRequestPayload(
        resultData, resultLength,
        [this](const std::uint8_t* payload, std::uint32_t length, std::uint8_t*& data,
               std::uint32_t& size) { return RunTask(payload, length, data, size); });
}

int VGroupTask::RunTask(const std::uint8_t* payload, std::uint32_t length, std::uint8_t*& data,
                        std::uint32_t& size) {
    std::vector<std::string> first;
    std::vector<std::string> second;
    std::string name;
    switch (taskId_) {
        case kGetGroup: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            if (first.size() < 2) {
                return 1;
            }
            std::vector<_VXUserInfoA> groups;
            const int found = GetGroup(first[0], groups, std::atoi(first[1].c_str()));
            if (found != 0) {
                VecTStringToResult(Flatten(groups), data, size);
            }
            return found;
        }
        case kAddGroup:
            return Data2VecTString(payload, length, first) != 0 ? AddGroup(first) : 0;
        case kRemoveGroup:
            return Data2VecTString(payload, length, first) != 0 ? RemoveGroup(first) : 0;
        case kRenameGroup:
            return Data2VecTString2(payload, length, first, second);
        case kAddGroupUsers:
            return Data2GroupUser(payload, length, name, first) != 0 ? AddGroupUsers(name, first)
                                                                     : 0;
        case kRemoveGroupUsers:
            return Data2GroupUser(payload, length, name, first) != 0 ? RemoveGroupUsers(name, first)
                                                                     : 0;
        case kShowGroupUsers: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            const int found = ShowGroupUsers(FirstOrEmpty(first), second);
            if (found != 0) {
                VecTStringToResult(second, data, size);
            }
            return found;
        }
        case kAddGroupPrivilege:
        case kRemoveGroupPrivilege: {
            VPrivilege privilege;
            return Data2Privilege(payload, length, name, privilege);
        }
        case kShowGroupPrivilege: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            const std::vector<VPrivilege*> privileges;
            Privilege2Result(privileges, data, size);
            return 1;
        }
        case kGetGroupUsersInfo: {
            if (Data2VecTString(payload, length, first) == 0) {
                return 0;
            }
            std::vector<_VXUserInfoA> users;
            const int found = GetGroupUsersInfo(FirstOrEmpty(first), users);
            if (found != 0) {
                VecUser2Result(users, data, size);
            }
            return found;
        }
        default:
            return 0;
    }
}

int VGroupTask::Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) {
    if (!CheckResultArguments(payload, length, output)) {
        return 0;
    }
    try {
        switch (taskId_) {
            case kGetGroup:
                return DecodeGroupRecords(payload, length,
                                          *static_cast<std::vector<_VXUserInfoA>*>(output));
            case kShowGroupUsers:
                return Data2VecTString(payload, length,
                                       *static_cast<std::vector<std::string>*>(output));
            case kGetGroupUsersInfo:
                return Data2VecUser(payload, length,
                                    *static_cast<std::vector<_VXUserInfoA>*>(output));
            default:
                if (!IsGroupTaskId(taskId_)) {
                    return 0;
                }
                return Result2Ack(payload, length, *static_cast<std::uint32_t*>(output));
        }
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}
