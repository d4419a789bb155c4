#include "CaptureServer.h"

namespace vagent::test {
namespace {

os::Sockets& Net() {
    return os::Installed<os::Sockets>();
}

bool ReceiveExactly(os::SocketHandle connection, std::uint8_t* buffer, std::uint32_t count) {
    std::uint32_t received = 0;
    while (received < count) {
        int got = 0;
        if (Net().Receive(connection, buffer + received, static_cast<int>(count - received), 0,
                          got) != 0 ||
            got <= 0) {
            return false;
        }
        received += static_cast<std::uint32_t>(got);
    }
    return true;
}

std::uint32_t BigEndian(const std::uint8_t* bytes) {
    return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) |
           (std::uint32_t{bytes[2]} << 8) | std::uint32_t{bytes[3]};
}

void PutBigEndian(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

// Lengths beyond these are not what this test server is for.
constexpr std::uint32_t kLargestRootSite = 1u << 16;
constexpr std::uint32_t kLargestBlock = 1u << 20;
constexpr std::uint32_t kReceiveLimitMs = 10000;

}  // namespace

CaptureServer::CaptureServer(std::vector<std::uint8_t> reply) : reply_(std::move(reply)) {
    started_ = Net().Startup() == 0;
    if (Net().OpenStream(listener_) != 0 || Net().Bind(listener_, "127.0.0.1", 0) != 0 ||
        Net().Listen(listener_, 4) != 0 || Net().LocalPort(listener_, port_) != 0) {
        return;
    }
    thread_ = std::thread([this] { Serve(); });
}

CaptureServer::~CaptureServer() {
    if (thread_.joinable()) {
        thread_.join();
    }
    if (listener_ != os::kInvalidSocket) {
        Net().Close(listener_);
    }
    if (started_) {
        Net().Cleanup();
    }
}

const CapturedFrame& CaptureServer::Frame() {
    if (thread_.joinable()) {
        thread_.join();
    }
    return frame_;
}

void CaptureServer::Serve() {
    os::SocketHandle connection = os::kInvalidSocket;
    if (Net().Accept(listener_, connection) != 0) {
        return;
    }
    Net().SetReceiveTimeout(connection, kReceiveLimitMs);
    frame_.complete = ReadFrame(connection);
    if (!reply_.empty()) {
        int sent = 0;
        Net().Send(connection, reply_.data(), static_cast<int>(reply_.size()), 0, sent);
    }
    // Whatever the client still sends is drained until it closes, so that
    // closing here never cuts off a reply it has not read yet.
    std::uint8_t drained[4096];
    int got = 1;
    while (Net().Receive(connection, drained, sizeof drained, 0, got) == 0 && got > 0) {
    }
    Net().Shutdown(connection);
    Net().Close(connection);
}

bool CaptureServer::ReadFrame(os::SocketHandle connection) {
    std::uint8_t header[12];
    if (!ReceiveExactly(connection, header, sizeof header)) {
        return false;
    }
    frame_.taskId = BigEndian(header);
    frame_.workEnv = static_cast<std::int32_t>(BigEndian(header + 4));
    const std::uint32_t rootLength = BigEndian(header + 8);
    if (rootLength > kLargestRootSite) {
        return false;
    }
    frame_.rootSite.resize(rootLength);
    std::uint8_t blockLength[4];
    if (!ReceiveExactly(connection, reinterpret_cast<std::uint8_t*>(&frame_.rootSite[0]),
                        rootLength) ||
        !ReceiveExactly(connection, blockLength, 4)) {
        return false;
    }
    const std::uint32_t size = BigEndian(blockLength);
    if (size > kLargestBlock) {
        return false;
    }
    frame_.block.resize(size);
    return ReceiveExactly(connection, frame_.block.data(), size);
}

std::vector<std::uint8_t> StatusReply(std::uint32_t status) {
    return {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(status >> 8),
            static_cast<std::uint8_t>(status >> 16), static_cast<std::uint8_t>(status >> 24)};
}

std::vector<std::uint8_t> PayloadReply(const std::vector<std::uint8_t>& payload) {
    std::vector<std::uint8_t> reply = StatusReply(0);
    PutBigEndian(reply, static_cast<std::uint32_t>(payload.size()));
    reply.insert(reply.end(), payload.begin(), payload.end());
    return reply;
}

std::vector<std::uint8_t> AckReply(std::uint32_t value) {
    std::vector<std::uint8_t> payload;
    PutBigEndian(payload, value);
    return PayloadReply(payload);
}

std::vector<std::uint8_t> Items(const std::vector<std::string>& items) {
    std::vector<std::uint8_t> payload;
    for (const std::string& item : items) {
        PutBigEndian(payload, static_cast<std::uint32_t>(item.size()));
        payload.insert(payload.end(), item.begin(), item.end());
    }
    return payload;
}

std::vector<std::uint8_t> ItemsReply(const std::vector<std::string>& items) {
    return PayloadReply(Items(items));
}

std::string NumberItem(std::uint32_t value) {
    std::vector<std::uint8_t> bytes;
    PutBigEndian(bytes, value);
    return std::string(bytes.begin(), bytes.end());
}

}  // namespace vagent::test
