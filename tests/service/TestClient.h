#pragma once

#include <cstdint>
#include <string>

#include "os/Sockets.h"
#include "service/TestClientFrames.h"

namespace vagent::test {

// How a read from the service ended.
enum class ReadEnd {
    kComplete,  // every byte asked for arrived
    kClosed,    // the service closed its side
    kReset,     // the service dropped the connection with bytes unread
    kTimedOut,  // the time limit passed first
    kFailed,    // any other socket failure
};

struct Received {
    Bytes bytes;
    ReadEnd end = ReadEnd::kFailed;
    // The service ended the connection, whichever way it did so.
    bool Dropped() const { return end == ReadEnd::kClosed || end == ReadEnd::kReset; }
};

// A raw client of the agent service over loopback: sends literal bytes and
// reads the answer with a time limit, so that a test sees every byte the
// service writes and how the connection ends. One connection per client.
class TestClient {
public:
    TestClient();
    ~TestClient();
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    // Connects to 127.0.0.1 at port, from the local address `from` when it is
    // not empty (bound before the connect).
    bool Connect(std::uint16_t port, const std::string& from = "");
    bool Send(const Bytes& bytes);
    // Ends the sending side, as a peer that goes away mid-frame does.
    void Close();

    // Reads exactly count bytes unless the connection ends or the limit
    // passes first.
    Received ReadCount(std::size_t count, std::uint32_t limitMilliseconds);
    // Reads everything until the service ends the connection or the limit
    // passes.
    Received ReadUntilEnd(std::uint32_t limitMilliseconds);

    os::SocketHandle Socket() const { return socket_; }

private:
    ReadEnd ReceiveSome(Bytes& into, std::size_t wanted, std::uint32_t limitMilliseconds);

    bool started_ = false;
    os::SocketHandle socket_ = os::kInvalidSocket;
};

// One whole exchange: connect, send the frame, read until the service ends
// the connection (at most limitMilliseconds).
Received CallService(std::uint16_t port, const Bytes& frame, std::uint32_t limitMilliseconds);

}  // namespace vagent::test
