#include "files/Loopback.h"

#include <gtest/gtest.h>

namespace vagent::test {
namespace {

// Long enough for any test, short enough that a broken exchange ends.
constexpr std::uint32_t kReceiveTimeLimit = 10000;

os::Sockets& Sockets() {
    return os::Installed<os::Sockets>();
}

void CloseSocket(os::SocketHandle& socket) {
    if (socket != os::kInvalidSocket) {
        Sockets().Close(socket);
        socket = os::kInvalidSocket;
    }
}

}  // namespace

SocketLibrary::SocketLibrary() : started_(Sockets().Startup() == 0) {
    EXPECT_TRUE(started_);
}

SocketLibrary::~SocketLibrary() {
    if (started_) {
        Sockets().Cleanup();
    }
}

LoopbackListener::LoopbackListener() {
    EXPECT_EQ(Sockets().OpenStream(listener_), 0u);
    EXPECT_EQ(Sockets().Bind(listener_, "127.0.0.1", 0), 0u);
    EXPECT_EQ(Sockets().Listen(listener_, 8), 0u);
    EXPECT_EQ(Sockets().LocalPort(listener_, port_), 0u);
}

LoopbackListener::~LoopbackListener() {
    CloseSocket(listener_);
}

os::SocketHandle LoopbackListener::Accept() {
    os::SocketHandle accepted = os::kInvalidSocket;
    EXPECT_EQ(Sockets().Accept(listener_, accepted), 0u);
    if (accepted != os::kInvalidSocket) {
        Sockets().SetReceiveTimeout(accepted, kReceiveTimeLimit);
    }
    return accepted;
}

os::SocketHandle ConnectLoopback(std::uint16_t port) {
    os::SocketHandle socket = os::kInvalidSocket;
    if (Sockets().OpenStream(socket) != 0) {
        return os::kInvalidSocket;
    }
    if (Sockets().Connect(socket, "127.0.0.1", port) != 0) {
        CloseSocket(socket);
        return os::kInvalidSocket;
    }
    Sockets().SetReceiveTimeout(socket, kReceiveTimeLimit);
    return socket;
}

LoopbackPair::LoopbackPair() {
    client_ = ConnectLoopback(listener_.Port());
    EXPECT_NE(client_, os::kInvalidSocket);
    server_ = listener_.Accept();
}

LoopbackPair::~LoopbackPair() {
    CloseSocket(client_);
    CloseSocket(server_);
}

void LoopbackPair::CloseClient() {
    CloseSocket(client_);
}

}  // namespace vagent::test
