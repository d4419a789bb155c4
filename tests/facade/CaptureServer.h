#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "os/Sockets.h"

namespace vagent::test {

// One request frame as it arrived: the header fields and the data block
// byte for byte (its own length prefix included).
struct CapturedFrame {
    std::uint32_t taskId = 0;
    std::int32_t workEnv = 0;
    std::string rootSite;
    std::vector<std::uint8_t> block;
    bool complete = false;
};

// A one-shot agent service on 127.0.0.1: accepts one connection, reads one
// request frame, answers with the canned reply bytes and closes once the
// client has closed. An empty reply answers nothing.
class CaptureServer {
public:
    explicit CaptureServer(std::vector<std::uint8_t> reply);
    ~CaptureServer();
    CaptureServer(const CaptureServer&) = delete;
    CaptureServer& operator=(const CaptureServer&) = delete;

    std::string Port() const { return std::to_string(port_); }
    // Waits for the exchange to end and gives the frame.
    const CapturedFrame& Frame();

private:
    void Serve();
    bool ReadFrame(os::SocketHandle connection);

    std::vector<std::uint8_t> reply_;
    bool started_ = false;
    os::SocketHandle listener_ = os::kInvalidSocket;
    std::uint16_t port_ = 0;
    CapturedFrame frame_;
    std::thread thread_;
};

// Replies as the service writes them: the status word little-endian, the
// payload length in network order, then the payload.
std::vector<std::uint8_t> StatusReply(std::uint32_t status);
std::vector<std::uint8_t> PayloadReply(const std::vector<std::uint8_t>& payload);
std::vector<std::uint8_t> AckReply(std::uint32_t value);
std::vector<std::uint8_t> ItemsReply(const std::vector<std::string>& items);
// Payload bytes: each item a 4-byte length in network order and its bytes.
std::vector<std::uint8_t> Items(const std::vector<std::string>& items);
std::string NumberItem(std::uint32_t value);

}  // namespace vagent::test
