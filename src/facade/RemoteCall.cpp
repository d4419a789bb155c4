#include "facade/RemoteCall.h"

#include "os/Sockets.h"

namespace vagent::facade {
namespace {

// A caller's connection arrives as a 32-bit number whose all-bits-set value
// asks for a new one, whatever the width of the system's sockets.
constexpr unsigned int kCallerNewConnection = ~0u;

}  // namespace

CallerLink NewConnection() {
    return CallerLink{os::kInvalidSocket, nullptr};
}

CallerLink CallerConnection(unsigned int connection, HTTP_FUN* callbacks) {
    if (connection == kCallerNewConnection || callbacks == nullptr) {
        return NewConnection();
    }
    return CallerLink{static_cast<std::uintptr_t>(connection), callbacks};
}

RemoteCall::RemoteCall(const AgentTarget& target, std::uint32_t& errorCode)
    : target_(target), errorCode_(errorCode) {}

bool RemoteCall::Send(std::uint32_t taskId, const RequestBlock& request, const CallerLink& link) {
    if (client_.SetServer(target_.host.c_str(), target_.port.c_str()) == 0 ||
        client_.SetTask(taskId) == 0 || request.Refused()) {
        return false;
    }
    if (request.HasBlock() && client_.AddRequest(request.Data(), request.Size()) == 0) {
        return false;
    }
    if (client_.SendRequest(target_.workEnv, target_.rootSite, link.connection, link.callbacks) ==
        0) {
        errorCode_ = client_.GetLastStatus();
        return false;
    }
    return true;
}

bool RemoteCall::Receive(void* output, HTTP_FUN* callbacks) {
    errorCode_ = client_.GetTaskResult(output, callbacks);
    return errorCode_ == 0;
}

Reply Exchange(const AgentTarget& target, std::uint32_t& errorCode, std::uint32_t taskId,
               const RequestBlock& request, void* output, const CallerLink& link) {
    RemoteCall call(target, errorCode);
    if (!call.Send(taskId, request, link)) {
        return Reply::kNotSent;
    }
    return call.Receive(output, link.callbacks) ? Reply::kSucceeded : Reply::kFailed;
}

int CodeZeroCall(const AgentTarget& target, std::uint32_t& errorCode, std::uint32_t taskId,
                 const RequestBlock& request, void* output, const CallerLink& link) {
    return Exchange(target, errorCode, taskId, request, output, link) == Reply::kSucceeded ? 1 : 0;
}

int AcknowledgedCall(const AgentTarget& target, std::uint32_t& errorCode, std::uint32_t taskId,
                     const RequestBlock& request) {
    std::uint32_t acknowledgement = 0;
    const Reply reply = Exchange(target, errorCode, taskId, request, &acknowledgement);
    return reply == Reply::kSucceeded && acknowledgement != 0 ? 1 : 0;
}

}  // namespace vagent::facade
