#pragma once

#include <cstdint>

#include "os/Sockets.h"

namespace vagent::test {

// The socket library started for the scope, as the agent service starts it.
class SocketLibrary {
public:
    SocketLibrary();
    ~SocketLibrary();
    SocketLibrary(const SocketLibrary&) = delete;
    SocketLibrary& operator=(const SocketLibrary&) = delete;

private:
    bool started_;
};

// A listening socket on 127.0.0.1 at a port the system chose.
class LoopbackListener {
public:
    LoopbackListener();
    ~LoopbackListener();
    LoopbackListener(const LoopbackListener&) = delete;
    LoopbackListener& operator=(const LoopbackListener&) = delete;

    std::uint16_t Port() const { return port_; }
    // Accepts one connection, closed by the caller.
    os::SocketHandle Accept();

private:
    SocketLibrary library_;
    os::SocketHandle listener_ = os::kInvalidSocket;
    std::uint16_t port_ = 0;
};

// Two connected TCP sockets over the loopback interface, each with a
// receive time limit, closed when the pair goes.
class LoopbackPair {
public:
    LoopbackPair();
    ~LoopbackPair();
    LoopbackPair(const LoopbackPair&) = delete;
    LoopbackPair& operator=(const LoopbackPair&) = delete;

    os::SocketHandle Client() const { return client_; }
    os::SocketHandle Server() const { return server_; }
    // Closes the client's side, so that the server's receives see the end.
    void CloseClient();

private:
    LoopbackListener listener_;
    os::SocketHandle client_ = os::kInvalidSocket;
    os::SocketHandle server_ = os::kInvalidSocket;
};

// Connects to 127.0.0.1 at port; the invalid socket on failure.
os::SocketHandle ConnectLoopback(std::uint16_t port);

}  // namespace vagent::test
