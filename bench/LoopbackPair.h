#pragma once

#include <cstdint>

#include "BenchSockets.h"

namespace vagent::bench {

// A connected pair over 127.0.0.1: the connecting end and the end the
// listener accepted.
class LoopbackPair {
public:
    LoopbackPair() {
        os::SocketHandle listener = os::kInvalidSocket;
        std::uint16_t port = 0;
        Sockets().OpenStream(listener);
        Sockets().Bind(listener, "127.0.0.1", 0);
        Sockets().Listen(listener, 1);
        Sockets().LocalPort(listener, port);
        sender_ = ConnectTo(port);
        Sockets().Accept(listener, receiver_);
        Sockets().Close(listener);
    }
    ~LoopbackPair() {
        Sockets().Close(sender_);
        Sockets().Close(receiver_);
    }
    LoopbackPair(const LoopbackPair&) = delete;
    LoopbackPair& operator=(const LoopbackPair&) = delete;

    os::SocketHandle Sender() const { return sender_; }
    os::SocketHandle Receiver() const { return receiver_; }

private:
    os::SocketHandle sender_ = os::kInvalidSocket;
    os::SocketHandle receiver_ = os::kInvalidSocket;
};

}  // namespace vagent::bench
