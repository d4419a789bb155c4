#include "service/TestClient.h"

#include <algorithm>
#include <chrono>

namespace vagent::test {
namespace {

using Clock = std::chrono::steady_clock;

os::Sockets& Sockets() {
    return os::Installed<os::Sockets>();
}

// A receive limit of 0 means none, so the remaining time never goes below 1.
std::uint32_t MillisecondsUntil(Clock::time_point deadline) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<std::uint32_t>(std::max<long long>(left, 1));
}

ReadEnd EndOfFailure(std::uint32_t status) {
    switch (status) {
        case os::kSocketTimedOut:
            return ReadEnd::kTimedOut;
        case os::kSocketConnectionReset:
            return ReadEnd::kReset;
        default:
            return ReadEnd::kFailed;
    }
}

}  // namespace

TestClient::TestClient() : started_(Sockets().Startup() == 0) {}

TestClient::~TestClient() {
    Close();
    if (started_) {
        Sockets().Cleanup();
    }
}

bool TestClient::Connect(std::uint16_t port, const std::string& from) {
    if (!started_ || Sockets().OpenStream(socket_) != 0) {
        return false;
    }
    if (!from.empty() && Sockets().Bind(socket_, from, 0) != 0) {
        Close();
        return false;
    }
    if (Sockets().Connect(socket_, "127.0.0.1", port) != 0) {
        Close();
        return false;
    }
    return true;
}

bool TestClient::Send(const Bytes& bytes) {
    std::size_t sentSoFar = 0;
    while (sentSoFar < bytes.size()) {
        int sent = 0;
        const int count =
            static_cast<int>(std::min<std::size_t>(bytes.size() - sentSoFar, 1 << 20));
        if (Sockets().Send(socket_, bytes.data() + sentSoFar, count, 0, sent) != 0 || sent <= 0) {
            return false;
        }
        sentSoFar += static_cast<std::size_t>(sent);
    }
    return true;
}

void TestClient::Close() {
    if (socket_ != os::kInvalidSocket) {
        Sockets().Close(socket_);
        socket_ = os::kInvalidSocket;
    }
}

ReadEnd TestClient::ReceiveSome(Bytes& into, std::size_t wanted, std::uint32_t limitMilliseconds) {
    if (Sockets().SetReceiveTimeout(socket_, limitMilliseconds) != 0) {
        return ReadEnd::kFailed;
    }
    const std::size_t before = into.size();
    into.resize(before + wanted);
    int received = 0;
    const std::uint32_t status =
        Sockets().Receive(socket_, into.data() + before, static_cast<int>(wanted), 0, received);
    into.resize(before + static_cast<std::size_t>(std::max(received, 0)));
    if (status != 0) {
        return EndOfFailure(status);
    }
    return received == 0 ? ReadEnd::kClosed : ReadEnd::kComplete;
}

Received TestClient::ReadCount(std::size_t count, std::uint32_t limitMilliseconds) {
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(limitMilliseconds);
    Received result;
    result.end = ReadEnd::kComplete;
    while (result.bytes.size() < count && result.end == ReadEnd::kComplete) {
        if (Clock::now() >= deadline) {
            result.end = ReadEnd::kTimedOut;
            break;
        }
        const std::size_t wanted = std::min<std::size_t>(count - result.bytes.size(), 1 << 16);
        result.end = ReceiveSome(result.bytes, wanted, MillisecondsUntil(deadline));
    }
    return result;
}

Received TestClient::ReadUntilEnd(std::uint32_t limitMilliseconds) {
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(limitMilliseconds);
    Received result;
    result.end = ReadEnd::kComplete;
    while (result.end == ReadEnd::kComplete) {
        if (Clock::now() >= deadline) {
            result.end = ReadEnd::kTimedOut;
            break;
        }
        result.end = ReceiveSome(result.bytes, 1 << 16, MillisecondsUntil(deadline));
    }
    return result;
}

Received CallService(std::uint16_t port, const Bytes& frame, std::uint32_t limitMilliseconds) {
    TestClient client;
    Received failed;
    if (!client.Connect(port) || !client.Send(frame)) {
        return failed;
    }
    return client.ReadUntilEnd(limitMilliseconds);
}

}  // namespace vagent::test
