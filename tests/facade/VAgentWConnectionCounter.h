#pragma once

#include <cstdint>

#include "os/Sockets.h"

namespace vagent::test {

// A loopback listener that nobody answers: it only counts who connected.
// Count() connects once itself and sends one marker byte; every connection
// accepted before that one is another party's.
class ConnectionCounter {
public:
    ConnectionCounter();
    ~ConnectionCounter();
    ConnectionCounter(const ConnectionCounter&) = delete;
    ConnectionCounter& operator=(const ConnectionCounter&) = delete;

    std::uint16_t Port() const { return port_; }
    // Connections made so far by others; -1 when the marker never arrived.
    int Count();

private:
    bool IsMarker(os::SocketHandle accepted);

    os::Sockets& sockets_;
    os::SocketHandle listener_ = os::kInvalidSocket;
    std::uint16_t port_ = 0;
};

}  // namespace vagent::test
