#pragma once

#include "os/Sockets.h"

namespace vagent::os {

class PosixSockets final : public Sockets {
public:
    std::uint32_t Startup() override;
    void Cleanup() override;
    std::uint32_t OpenStream(SocketHandle& socket) override;
    std::uint32_t Connect(SocketHandle socket, const std::string& address,
                          std::uint16_t port) override;
    std::uint32_t Bind(SocketHandle socket, const std::string& address,
                       std::uint16_t port) override;
    std::uint32_t Listen(SocketHandle socket, int backlog) override;
    std::uint32_t Accept(SocketHandle listener, SocketHandle& accepted) override;
    std::uint32_t LocalPort(SocketHandle socket, std::uint16_t& port) override;
    std::uint32_t Send(SocketHandle socket, const void* data, int count, int flags,
                       int& sent) override;
    std::uint32_t Receive(SocketHandle socket, void* buffer, int count, int flags,
                          int& received) override;
    std::uint32_t SetReceiveTimeout(SocketHandle socket, std::uint32_t milliseconds) override;
    std::uint32_t Shutdown(SocketHandle socket) override;
    std::uint32_t Close(SocketHandle socket) override;
};

}  // namespace vagent::os
