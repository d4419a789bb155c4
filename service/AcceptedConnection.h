#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "os/Sockets.h"

namespace vagent::service {

// A client connection the service has taken on.
struct AcceptedConnection {
    os::SocketHandle socket = os::kInvalidSocket;
    std::string peer;  // "address:port", for the log
    std::chrono::steady_clock::time_point acceptedAt;
    // The request bytes read from it and still held against the service's
    // budget; whoever ends the request gives them back.
    std::uint64_t heldBytes = 0;
};

}  // namespace vagent::service
