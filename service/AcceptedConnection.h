#pragma once

#include <chrono>
#include <string>

#include "os/Sockets.h"

namespace vagent::service {

// A client connection the service has taken on.
struct AcceptedConnection {
    os::SocketHandle socket = os::kInvalidSocket;
    std::string peer;  // "address:port", for the log
    std::chrono::steady_clock::time_point acceptedAt;
};

}  // namespace vagent::service
