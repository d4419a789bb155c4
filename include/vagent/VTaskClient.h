#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "vagent/Export.h"
#include "vagent/HttpFun.h"

class VTask;

// One queued request block: the bytes as the encoder made them, its own
// 4-byte length prefix included.
struct REQUEST_DATA {
    std::uint8_t* data;
    std::int32_t length;
};

// Carries one task to an agent service and its answer back, over a TCP
// connection that lives as long as one call: construct, SetServer, SetTask,
// at most one AddRequest, SendRequest, GetTaskResult, destroy. The request
// frame's integers are in network order; the reply's status word is taken as
// it arrives (the service writes it little-endian).
class VAGENT_API VTaskClient {
public:
    // The socket library is started here and stopped by the destructor, once
    // each per client.
    VTaskClient();
    ~VTaskClient();
    VTaskClient(const VTaskClient&) = delete;
    VTaskClient& operator=(const VTaskClient&) = delete;

    int SetServer(const char* host, const char* port);
    int SetTask(std::uint32_t taskId);
    int AddRequest(const std::uint8_t* data, std::int32_t length);
    // connection is the invalid socket (all bits set) to open a new one.
    int SendRequest(std::int32_t workEnv, const std::string& rootSite, std::uintptr_t connection,
                    HTTP_FUN* callbacks);
    // 0 on success; otherwise the service's status, a socket or system
    // error, one of the library's own codes, or the task's error code.
    std::uint32_t GetTaskResult(void* output, HTTP_FUN* callbacks);

    static std::uintptr_t ConnectServer(std::string host, int port);
    static int RecvAll(std::uintptr_t socket, std::uint8_t* buffer, std::int32_t length, int flags,
                       unsigned limit);

    std::uint32_t GetTaskId() const { return taskId_; }
    VTask* GetTask() const { return task_; }
    std::uintptr_t GetConnection() const { return connection_; }
    // Why the last SendRequest that returned 0 failed: the socket status
    // (what the socket library's last-error value would read), 8 when the
    // frame could not be built, 10103 when pfnBeforeSend refused the send.
    std::uint32_t GetLastStatus() const { return lastStatus_; }

private:
    // ConnectServer, keeping the status of the call that failed.
    static std::uintptr_t OpenConnection(const std::string& host, int port, std::uint32_t& status);
    // RecvAll, keeping the receive's status; a connection closed before the
    // whole count arrived reads as 0xE6000003.
    static bool ReceiveExactly(std::uintptr_t socket, std::uint8_t* buffer, std::int32_t length,
                               int flags, std::uint32_t& status);
    // Receives length bytes, through the hooks when there are any; each
    // continuation lands at stride times the bytes already received.
    bool ReceivePiecewise(HTTP_FUN* callbacks, std::uint8_t* buffer, std::int32_t length,
                          std::int32_t stride, std::uint32_t& status) const;
    bool ReceiveHeaderWord(HTTP_FUN* callbacks, std::uint8_t (&word)[4],
                           std::uint32_t& status) const;
    std::uint32_t ReceiveAndDecodePayload(std::int32_t length, void* output, HTTP_FUN* callbacks);
    int SendFrame(const std::uint8_t* frame, std::int32_t length, std::uintptr_t connection,
                  HTTP_FUN* callbacks);
    void ReleaseRequests();

    std::uint32_t taskId_ = 0;
    VTask* task_ = nullptr;
    std::list<REQUEST_DATA*> requests_;
    std::string host_;
    std::string port_ = "1234";
    std::uintptr_t connection_ = ~static_cast<std::uintptr_t>(0);
    std::uint32_t startup_;
    std::uint32_t lastStatus_ = 0;
};
