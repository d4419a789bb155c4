#pragma once

#include <cstdint>
#include <string>

#include "facade/RequestBlock.h"
#include "vagent/HttpFun.h"
#include "vagent/VTaskClient.h"

namespace vagent::facade {

// Where a remote call goes and what travels with every request: the agent's
// address fields read as text, its work environment and its root site.
struct AgentTarget {
    std::string host;
    std::string port;
    std::int32_t workEnv = 0;
    std::string rootSite;
};

// The connection and hooks a request is sent with: a new connection and no
// hooks, unless the caller supplied both.
struct CallerLink {
    std::uintptr_t connection;
    HTTP_FUN* callbacks;
};
CallerLink NewConnection();
CallerLink CallerConnection(unsigned int connection, HTTP_FUN* callbacks);

// One remote call: a task client for the method's task id, the request
// block, the send, the reply. The error code is the agent's own: a failure
// before anything was sent leaves it alone, a failed send stores the
// socket's status, a reply stores the code it carried.
class RemoteCall {
public:
    RemoteCall(const AgentTarget& target, std::uint32_t& errorCode);
    RemoteCall(const RemoteCall&) = delete;
    RemoteCall& operator=(const RemoteCall&) = delete;

    bool Send(std::uint32_t taskId, const RequestBlock& request, const CallerLink& link);
    // Decodes the reply into output; true when the code is 0.
    bool Receive(void* output, HTTP_FUN* callbacks);
    std::uintptr_t Connection() const { return client_.GetConnection(); }

private:
    const AgentTarget target_;
    std::uint32_t& errorCode_;
    VTaskClient client_;
};

enum class Reply { kNotSent, kFailed, kSucceeded };

// A whole exchange: send, then receive the reply into output.
Reply Exchange(const AgentTarget& target, std::uint32_t& errorCode, std::uint32_t taskId,
               const RequestBlock& request, void* output, const CallerLink& link = NewConnection());

// The methods whose answer is 1 when the code is 0.
int CodeZeroCall(const AgentTarget& target, std::uint32_t& errorCode, std::uint32_t taskId,
                 const RequestBlock& request, void* output,
                 const CallerLink& link = NewConnection());
// The methods whose answer is 1 when the code is 0 and the acknowledgement
// carried a non-zero value.
int AcknowledgedCall(const AgentTarget& target, std::uint32_t& errorCode, std::uint32_t taskId,
                     const RequestBlock& request);

}  // namespace vagent::facade
