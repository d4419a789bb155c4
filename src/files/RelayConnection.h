#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Sockets.h"

namespace vagent::files {

// A connection to a second agent service that streams files to this one:
// the task request goes out as any client sends it (task id, work
// environment, root site, one request block of the given strings, all
// integers in network order), and the frames that follow are read on
// Socket(). The connection is closed, and the socket library stopped, when
// the object goes. Failures are logged as the task client logs them.
class RelayConnection {
public:
    RelayConnection();
    ~RelayConnection();
    RelayConnection(const RelayConnection&) = delete;
    RelayConnection& operator=(const RelayConnection&) = delete;

    // Connects to host (dotted IPv4 text) and port (decimal text) and sends
    // the request. Returns 0 or the failure status.
    std::uint32_t SendRequest(const std::string& host, const std::string& port,
                              std::uint32_t taskId, std::int32_t workEnv,
                              const std::vector<std::string>& items);
    os::SocketHandle Socket() const { return socket_; }

private:
    std::uint32_t Connect(const std::string& host, const std::string& port);

    os::Sockets& sockets_;
    std::uint32_t startup_;
    os::SocketHandle socket_ = os::kInvalidSocket;
};

}  // namespace vagent::files
