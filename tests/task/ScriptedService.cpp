#include "task/ScriptedService.h"

#include <gtest/gtest.h>

#include "task/ByteOrder.h"

namespace vagent::test {
namespace {

// Long enough for every test, short enough that a broken exchange ends.
constexpr std::uint32_t kServiceReceiveLimit = 10000;
// A test frame never carries more; anything larger is a broken frame.
constexpr std::uint32_t kLargestTestField = 1 << 20;

os::Sockets& Sockets() {
    return os::Installed<os::Sockets>();
}

bool ReadExactly(os::SocketHandle socket, std::vector<std::uint8_t>& into, std::uint32_t count) {
    const std::size_t start = into.size();
    into.resize(start + count);
    std::uint32_t done = 0;
    while (done < count) {
        int received = 0;
        if (Sockets().Receive(socket, into.data() + start + done, static_cast<int>(count - done), 0,
                              received) != 0 ||
            received <= 0) {
            into.resize(start + done);
            return false;
        }
        done += static_cast<std::uint32_t>(received);
    }
    return true;
}

bool ReadWord(os::SocketHandle socket, std::vector<std::uint8_t>& bytes, std::uint32_t& word) {
    if (!ReadExactly(socket, bytes, 4)) {
        return false;
    }
    word = ReadBigEndian32(bytes.data() + bytes.size() - 4);
    return true;
}

bool ReadField(os::SocketHandle socket, std::vector<std::uint8_t>& bytes,
               std::vector<std::uint8_t>& field) {
    std::uint32_t length = 0;
    if (!ReadWord(socket, bytes, length) || length > kLargestTestField ||
        !ReadExactly(socket, bytes, length)) {
        return false;
    }
    field.assign(bytes.end() - length, bytes.end());
    return true;
}

ReceivedFrame ReadFrame(os::SocketHandle socket) {
    ReceivedFrame frame;
    std::vector<std::uint8_t> rootSite;
    frame.complete = ReadWord(socket, frame.bytes, frame.taskId) &&
                     ReadWord(socket, frame.bytes, frame.workEnv) &&
                     ReadField(socket, frame.bytes, rootSite) &&
                     ReadField(socket, frame.bytes, frame.block);
    frame.rootSite.assign(rootSite.begin(), rootSite.end());
    return frame;
}

void SendAll(os::SocketHandle socket, const std::vector<std::uint8_t>& piece) {
    int sent = 0;
    EXPECT_EQ(Sockets().Send(socket, piece.data(), static_cast<int>(piece.size()), 0, sent), 0u);
    EXPECT_EQ(sent, static_cast<int>(piece.size()));
}

std::vector<std::uint8_t> ReadUntilClosed(os::SocketHandle socket) {
    std::vector<std::uint8_t> bytes;
    std::uint8_t buffer[256];
    int received = 0;
    while (Sockets().Receive(socket, buffer, sizeof buffer, 0, received) == 0 && received > 0) {
        bytes.insert(bytes.end(), buffer, buffer + received);
    }
    return bytes;
}

}  // namespace

std::vector<std::uint8_t> StatusWord(std::uint32_t status) {
    std::vector<std::uint8_t> word(4);
    WriteLittleEndian32(word.data(), status);
    return word;
}

std::vector<std::uint8_t> Reply(std::uint32_t status, std::int32_t length,
                                const std::vector<std::uint8_t>& payload) {
    std::vector<std::uint8_t> bytes = StatusWord(status);
    bytes.resize(8);
    WriteBigEndian32(bytes.data() + 4, static_cast<std::uint32_t>(length));
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

ScriptedService::ScriptedService(std::vector<std::vector<std::uint8_t>> replyPieces)
    : replyPieces_(std::move(replyPieces)), started_(Sockets().Startup() == 0) {
    EXPECT_TRUE(started_);
    EXPECT_EQ(Sockets().OpenStream(listener_), 0u);
    EXPECT_EQ(Sockets().Bind(listener_, "127.0.0.1", 0), 0u);
    EXPECT_EQ(Sockets().Listen(listener_, 4), 0u);
    EXPECT_EQ(Sockets().LocalPort(listener_, port_), 0u);
    thread_ = std::thread([this] { Serve(); });
}

ScriptedService::~ScriptedService() {
    Finish();
    Sockets().Close(listener_);
    if (started_) {
        Sockets().Cleanup();
    }
}

void ScriptedService::Serve() {
    os::SocketHandle connection = os::kInvalidSocket;
    if (Sockets().Accept(listener_, connection) != 0) {
        return;
    }
    accepted_ = true;
    Sockets().SetReceiveTimeout(connection, kServiceReceiveLimit);
    frame_ = ReadFrame(connection);
    if (frame_.complete) {
        for (const auto& piece : replyPieces_) {
            SendAll(connection, piece);
        }
    }
    trailing_ = ReadUntilClosed(connection);
    Sockets().Close(connection);
}

// A service that no client reached is woken by a connection of its own,
// which it reads as an empty frame.
void ScriptedService::Finish() {
    if (!thread_.joinable()) {
        return;
    }
    if (!accepted_) {
        os::SocketHandle wake = os::kInvalidSocket;
        if (Sockets().OpenStream(wake) == 0) {
            Sockets().Connect(wake, "127.0.0.1", port_);
            Sockets().Close(wake);
        }
    }
    thread_.join();
}

const ReceivedFrame& ScriptedService::Frame() {
    Finish();
    return frame_;
}

const std::vector<std::uint8_t>& ScriptedService::Trailing() {
    Finish();
    return trailing_;
}

}  // namespace vagent::test
