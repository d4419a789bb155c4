#pragma once

#include <cstdint>
#include <string>

#include "os/Sockets.h"

namespace vagent::test {

// Sockets on a host whose network is down (10050): no socket opens, no byte
// goes out or comes in, so code that runs under it never reaches the real
// network. Counts the calls it refused.
class RefusingSockets final : public os::Sockets {
public:
    static constexpr std::uint32_t kRefused = 10050;

    std::uint32_t Startup() override;
    void Cleanup() override;
    std::uint32_t OpenStream(os::SocketHandle& socket) override;
    std::uint32_t Connect(os::SocketHandle socket, const std::string& address,
                          std::uint16_t port) override;
    std::uint32_t Bind(os::SocketHandle socket, const std::string& address,
                       std::uint16_t port) override;
    std::uint32_t Listen(os::SocketHandle socket, int backlog) override;
    std::uint32_t Accept(os::SocketHandle listener, os::SocketHandle& accepted) override;
    std::uint32_t LocalPort(os::SocketHandle socket, std::uint16_t& port) override;
    std::uint32_t Send(os::SocketHandle socket, const void* data, int count, int flags,
                       int& sent) override;
    std::uint32_t Receive(os::SocketHandle socket, void* buffer, int count, int flags,
                          int& received) override;
    std::uint32_t SetReceiveTimeout(os::SocketHandle socket, std::uint32_t milliseconds) override;
    std::uint32_t Shutdown(os::SocketHandle socket) override;
    std::uint32_t Close(os::SocketHandle socket) override;

    std::uint64_t refused = 0;

private:
    std::uint32_t Refuse();
};

}  // namespace vagent::test
