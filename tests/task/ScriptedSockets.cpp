#include "task/ScriptedSockets.h"

#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>

namespace vagent::test {
namespace {

// The socket library's "operation not supported" status: what the fake
// answers for the listening side, which the task client never uses.
constexpr std::uint32_t kNotSupportedHere = 10045;

}  // namespace

std::uint32_t ScriptedSockets::Startup() {
    ++startups;
    return startupStatus;
}

void ScriptedSockets::Cleanup() {
    ++cleanups;
}

std::uint32_t ScriptedSockets::OpenStream(os::SocketHandle& socket) {
    ++opens;
    socket = openStatus == 0 ? kOpenedSocket : os::kInvalidSocket;
    return openStatus;
}

std::uint32_t ScriptedSockets::Connect(os::SocketHandle, const std::string& address,
                                       std::uint16_t port) {
    connectedAddress = address;
    connectedPort = port;
    return connectStatus;
}

std::uint32_t ScriptedSockets::Bind(os::SocketHandle, const std::string&, std::uint16_t) {
    ADD_FAILURE() << "the task client never binds";
    return kNotSupportedHere;
}

std::uint32_t ScriptedSockets::Listen(os::SocketHandle, int) {
    ADD_FAILURE() << "the task client never listens";
    return kNotSupportedHere;
}

std::uint32_t ScriptedSockets::Accept(os::SocketHandle, os::SocketHandle&) {
    ADD_FAILURE() << "the task client never accepts";
    return kNotSupportedHere;
}

std::uint32_t ScriptedSockets::LocalPort(os::SocketHandle, std::uint16_t&) {
    ADD_FAILURE() << "the task client never asks for its port";
    return kNotSupportedHere;
}

std::uint32_t ScriptedSockets::Send(os::SocketHandle socket, const void* data, int count, int,
                                    int& sent) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    sentOn.push_back(socket);
    sends.emplace_back(bytes, bytes + count);
    sent = std::max(count - sendShortBy, 0);
    return 0;
}

std::uint32_t ScriptedSockets::Receive(os::SocketHandle, void* buffer, int count, int,
                                       int& received) {
    ++receives;
    const std::size_t left = reply.size() - replyOffset;
    if (left == 0) {
        received = 0;
        return endOfReplyStatus;
    }
    const std::size_t taken =
        std::min({left, static_cast<std::size_t>(count), static_cast<std::size_t>(receiveChunk)});
    std::memcpy(buffer, reply.data() + replyOffset, taken);
    replyOffset += taken;
    received = static_cast<int>(taken);
    return 0;
}

std::uint32_t ScriptedSockets::SetReceiveTimeout(os::SocketHandle, std::uint32_t milliseconds) {
    receiveTimeLimit = milliseconds;
    return timeoutStatus;
}

std::uint32_t ScriptedSockets::Shutdown(os::SocketHandle) {
    ++shutdowns;
    return 0;
}

std::uint32_t ScriptedSockets::Close(os::SocketHandle socket) {
    closed.push_back(socket);
    return 0;
}

}  // namespace vagent::test
