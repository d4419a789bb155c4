#include "os/Sockets.h"

#include <gtest/gtest.h>

#include "os/Status.h"

using vagent::os::Installed;
using vagent::os::SocketHandle;
using vagent::os::Sockets;

namespace {

// The socket library for the scope of one test, and a listener on
// 127.0.0.1 at a port the system chose.
class SocketsContract : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(Sockets().Startup(), 0u);
        ASSERT_EQ(Sockets().OpenStream(listener_), 0u);
        ASSERT_EQ(Sockets().Bind(listener_, "127.0.0.1", 0), 0u);
        ASSERT_EQ(Sockets().Listen(listener_, 4), 0u);
        ASSERT_EQ(Sockets().LocalPort(listener_, port_), 0u);
        ASSERT_NE(port_, 0);
    }
    void TearDown() override {
        for (SocketHandle socket : {client_, server_, listener_}) {
            if (socket != vagent::os::kInvalidSocket) {
                Sockets().Close(socket);
            }
        }
        Sockets().Cleanup();
    }
    void Connect() {
        ASSERT_EQ(Sockets().OpenStream(client_), 0u);
        ASSERT_EQ(Sockets().Connect(client_, "127.0.0.1", port_), 0u);
        ASSERT_EQ(Sockets().Accept(listener_, server_), 0u);
    }
    static vagent::os::Sockets& Sockets() { return Installed<vagent::os::Sockets>(); }

    SocketHandle listener_ = vagent::os::kInvalidSocket;
    SocketHandle client_ = vagent::os::kInvalidSocket;
    SocketHandle server_ = vagent::os::kInvalidSocket;
    std::uint16_t port_ = 0;
};

}  // namespace

TEST_F(SocketsContract, BytesSentArriveInOrder) {
    Connect();
    int sent = 0;
    ASSERT_EQ(Sockets().Send(client_, "hello", 5, 0, sent), 0u);
    EXPECT_EQ(sent, 5);
    char buffer[8] = {};
    int received = 0;
    int total = 0;
    while (total < 5) {
        ASSERT_EQ(Sockets().Receive(server_, buffer + total, 5 - total, 0, received), 0u);
        ASSERT_GT(received, 0);
        total += received;
    }
    EXPECT_STREQ(buffer, "hello");
}

TEST_F(SocketsContract, ReceiveAfterThePeerClosedGivesZeroBytes) {
    Connect();
    ASSERT_EQ(Sockets().Shutdown(client_), 0u);
    char buffer[4];
    int received = -1;
    EXPECT_EQ(Sockets().Receive(server_, buffer, sizeof buffer, 0, received), 0u);
    EXPECT_EQ(received, 0);
}

TEST_F(SocketsContract, ReceiveTimeLimitEndsAReceiveWithTimedOut) {
    Connect();
    ASSERT_EQ(Sockets().SetReceiveTimeout(server_, 200), 0u);
    char buffer[4];
    int received = -1;
    EXPECT_EQ(Sockets().Receive(server_, buffer, sizeof buffer, 0, received),
              vagent::os::kSocketTimedOut);
    EXPECT_EQ(received, 0);
}

TEST_F(SocketsContract, ConnectionToAClosedPortIsRefused) {
    Sockets().Close(listener_);
    listener_ = vagent::os::kInvalidSocket;
    ASSERT_EQ(Sockets().OpenStream(client_), 0u);
    EXPECT_EQ(Sockets().Connect(client_, "127.0.0.1", port_), vagent::os::kSocketConnectionRefused);
}
