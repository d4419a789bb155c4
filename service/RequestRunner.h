#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "RequestFrame.h"
#include "os/Sockets.h"

class VTask;

namespace vagent::service {

// Rebuilds the task a request names, runs it and makes the answer:
// CreateVTask, SetWorkEnv, SetRequest with the block and the connection,
// DoTask. The request's root site is installed process-wide only for the
// tasks that read it, one such task at a time; no other task reads it, so
// they neither install it nor wait for a directory task to finish.
class RequestRunner {
public:
    // The answer to write on the connection; empty when the task has already
    // answered on the connection itself (the streamed transfers).
    std::vector<std::uint8_t> Run(RequestFrame& frame, os::SocketHandle connection,
                                  const std::string& peer);

    // Tasks that read the process-wide root site while they run: the user
    // and group families and the directory-object test.
    static bool ReadsRootSite(std::uint32_t taskId);
    // Tasks that stream their outcome on the request's connection and end it
    // with their own end frame.
    static bool Streams(std::uint32_t taskId);

private:
    std::vector<std::uint8_t> RunTask(VTask& task, RequestFrame& frame, os::SocketHandle connection,
                                      const std::string& peer);

    // Held by a task that reads the root site from installing it to the end
    // of its DoTask, so that it sees the root site its own request brought.
    std::mutex rootSiteLock_;
};

}  // namespace vagent::service
