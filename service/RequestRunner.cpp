#include "RequestRunner.h"

#include <memory>
#include <new>

#include "Reply.h"
#include "task/TaskIds.h"
#include "vagent/DllLog.h"
#include "vagent/ErrorCodes.h"
#include "vagent/LdapRootSite.h"
#include "vagent/TaskFactory.h"
#include "vagent/TaskRequest.h"
#include "vagent/VStreamException.h"
#include "vagent/VTask.h"

namespace vagent::service {
namespace {

struct DoTaskResult {
    int truth = 0;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
};

// The library throws only when memory runs out (the byte stream's
// VStreamException, the standard containers' exceptions); the service
// answers that as an allocation failure rather than losing the worker.
DoTaskResult DoTaskSafely(VTask& task, bool& outOfMemory) {
    DoTaskResult result;
    outOfMemory = false;
    try {
        result.truth = task.DoTask(&result.block, &result.size);
    } catch (const VStreamException&) {
        outOfMemory = true;
    } catch (const std::exception&) {
        outOfMemory = true;
    }
    return result;
}

}  // namespace

bool RequestRunner::ReadsRootSite(std::uint32_t taskId) {
    // The user tasks (1 to 13) and the group tasks (14 to 23) come in one
    // range.
    return (taskId >= task::kGetUser && taskId <= task::kShowGroupPrivilege) ||
           taskId == task::kGetUserLoginName || taskId == task::kGetGroupUsersInfo ||
           taskId == task::kIsLdapObjectExist;
}

bool RequestRunner::Streams(std::uint32_t taskId) {
    return taskId == task::kFilesCopy || taskId == task::kUploadFiles;
}

std::vector<std::uint8_t> RequestRunner::Run(RequestFrame& frame, os::SocketHandle connection,
                                             const std::string& peer) {
    const std::unique_ptr<VTask> task(CreateVTask(frame.taskId));
    if (!task) {
        DllLogPrintf("vagentd : unknown task id %u from %s", frame.taskId, peer.c_str());
        return StatusReply(kErrorInvalidParameter);
    }
    if (!ReadsRootSite(frame.taskId)) {
        return RunTask(*task, frame, connection, peer);
    }
    const std::lock_guard<std::mutex> lock(rootSiteLock_);
    std::string rootSite = frame.rootSite;
    SetLDAPRootSite(rootSite);
    return RunTask(*task, frame, connection, peer);
}

std::vector<std::uint8_t> RequestRunner::RunTask(VTask& task, RequestFrame& frame,
                                                 os::SocketHandle connection,
                                                 const std::string& peer) {
    task.SetWorkEnv(frame.workEnv, nullptr);
    TaskRequest request;
    request.length = static_cast<std::uint32_t>(frame.block.size());
    request.data = frame.block.empty() ? nullptr : frame.block.data();
    request.connection = connection;
    if (task.SetRequest(request) == 0) {
        DllLogPrintf("vagentd : task %u from %s failed, error code %u", frame.taskId, peer.c_str(),
                     static_cast<unsigned>(kErrorNotEnoughMemory));
        return StatusReply(kErrorNotEnoughMemory);
    }
    bool outOfMemory = false;
    const DoTaskResult result = DoTaskSafely(task, outOfMemory);
    const std::unique_ptr<std::uint8_t[]> block(result.block);
    const std::uint32_t errorCode = outOfMemory ? kErrorNotEnoughMemory : task.GetErrorCode();
    if (result.truth == 0) {
        DllLogPrintf("vagentd : task %u from %s failed, error code %u", frame.taskId, peer.c_str(),
                     errorCode);
    }
    if (Streams(frame.taskId)) {
        return {};
    }
    if (outOfMemory) {
        return StatusReply(kErrorNotEnoughMemory);
    }
    TaskOutcome outcome;
    outcome.truth = result.truth;
    outcome.errorCode = errorCode;
    outcome.block = result.block;
    outcome.blockSize = result.size;
    return ReplyForOutcome(outcome);
}

}  // namespace vagent::service
