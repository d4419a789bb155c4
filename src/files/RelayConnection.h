#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Sockets.h"
#include "vagent/VTaskClient.h"

namespace vagent::files {

// A connection to a second agent service that streams files to this one:
// the task request goes out through the task client, exactly as any client
// sends it (one request block of the given strings, this process's root
// site), and the frames that follow are read on Socket(). The connection is
// closed, and the socket library stopped, when the object goes. Failures are
// logged by the task client.
class RelayConnection {
public:
    RelayConnection() = default;
    RelayConnection(const RelayConnection&) = delete;
    RelayConnection& operator=(const RelayConnection&) = delete;

    // Connects to host (dotted IPv4 text) and port (decimal text) and sends
    // the request. Returns 0 or the failure status.
    std::uint32_t SendRequest(const std::string& host, const std::string& port,
                              std::uint32_t taskId, std::int32_t workEnv,
                              const std::vector<std::string>& items);
    os::SocketHandle Socket() const { return client_.GetConnection(); }

private:
    VTaskClient client_;
};

}  // namespace vagent::files
