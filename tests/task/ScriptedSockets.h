#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Sockets.h"

namespace vagent::test {

// A socket library without a network: it counts every call, keeps what was
// sent, serves receives from a script of reply bytes and fails where a test
// tells it to. Unused calls (the listening side) fail loudly.
class ScriptedSockets final : public os::Sockets {
public:
    static constexpr os::SocketHandle kOpenedSocket = 77;

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

    // What the test scripts.
    std::uint32_t startupStatus = 0;
    std::uint32_t openStatus = 0;
    std::uint32_t connectStatus = 0;
    std::uint32_t timeoutStatus = 0;
    // Bytes left out of every send's count.
    int sendShortBy = 0;
    std::vector<std::uint8_t> reply;
    // The most a single receive hands out.
    int receiveChunk = 1 << 20;
    // What a receive answers once the reply is used up: this status, or 0
    // bytes (the peer closed) when it is 0.
    std::uint32_t endOfReplyStatus = 0;

    // What the test reads back.
    int startups = 0;
    int cleanups = 0;
    int opens = 0;
    int receives = 0;
    int shutdowns = 0;
    std::vector<os::SocketHandle> closed;
    std::vector<os::SocketHandle> sentOn;
    std::vector<std::vector<std::uint8_t>> sends;
    std::string connectedAddress;
    std::uint16_t connectedPort = 0;
    std::uint32_t receiveTimeLimit = 0;
    std::size_t replyOffset = 0;
};

}  // namespace vagent::test
