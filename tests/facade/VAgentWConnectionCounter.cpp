#include "facade/VAgentWConnectionCounter.h"

#include <gtest/gtest.h>

namespace vagent::test {
namespace {

constexpr char kMarker = 'M';
constexpr int kMostConnections = 8;
constexpr std::uint32_t kWaitMilliseconds = 2000;

}  // namespace

ConnectionCounter::ConnectionCounter() : sockets_(os::Installed<os::Sockets>()) {
    EXPECT_EQ(sockets_.Startup(), 0u);
    EXPECT_EQ(sockets_.OpenStream(listener_), 0u);
    EXPECT_EQ(sockets_.Bind(listener_, "127.0.0.1", 0), 0u);
    EXPECT_EQ(sockets_.Listen(listener_, kMostConnections), 0u);
    EXPECT_EQ(sockets_.LocalPort(listener_, port_), 0u);
}

ConnectionCounter::~ConnectionCounter() {
    sockets_.Close(listener_);
    sockets_.Cleanup();
}

int ConnectionCounter::Count() {
    os::SocketHandle marker = os::kInvalidSocket;
    int sent = 0;
    if (sockets_.OpenStream(marker) != 0 || sockets_.Connect(marker, "127.0.0.1", port_) != 0 ||
        sockets_.Send(marker, &kMarker, 1, 0, sent) != 0) {
        sockets_.Close(marker);
        return -1;
    }
    int others = -1;
    for (int accepted = 0; accepted < kMostConnections && others < 0; ++accepted) {
        os::SocketHandle connection = os::kInvalidSocket;
        if (sockets_.Accept(listener_, connection) != 0) {
            break;
        }
        if (IsMarker(connection)) {
            others = accepted;
        }
        sockets_.Close(connection);
    }
    sockets_.Close(marker);
    return others;
}

bool ConnectionCounter::IsMarker(os::SocketHandle accepted) {
    char first = 0;
    int received = 0;
    sockets_.SetReceiveTimeout(accepted, kWaitMilliseconds);
    return sockets_.Receive(accepted, &first, 1, 0, received) == 0 && received == 1 &&
           first == kMarker;
}

}  // namespace vagent::test
