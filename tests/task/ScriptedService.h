#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "os/Sockets.h"

namespace vagent::test {

// What the service read of one request frame.
struct ReceivedFrame {
    bool complete = false;
    std::uint32_t taskId = 0;
    std::uint32_t workEnv = 0;
    std::string rootSite;
    std::vector<std::uint8_t> block;
    std::vector<std::uint8_t> bytes;
};

// The reply bytes of a service: the status word in little-endian order, then
// the payload length in network order and the payload.
std::vector<std::uint8_t> StatusWord(std::uint32_t status);
std::vector<std::uint8_t> Reply(std::uint32_t status, std::int32_t length,
                                const std::vector<std::uint8_t>& payload);

// An agent service on 127.0.0.1 at a port the system chose, through the real
// socket library. It serves one connection: reads one request frame, sends
// the scripted reply pieces (each with its own send), then waits until the
// client closes its side (or its own 10-second receive limit passes) and
// closes. It stops when the object goes, also when no client ever came.
class ScriptedService {
public:
    explicit ScriptedService(std::vector<std::vector<std::uint8_t>> replyPieces);
    ~ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;

    std::string Port() const { return std::to_string(port_); }
    // Waits for the exchange to end; the frame as it was read.
    const ReceivedFrame& Frame();
    // The bytes that arrived after the frame, before the client closed.
    const std::vector<std::uint8_t>& Trailing();

private:
    void Serve();
    void Finish();

    std::vector<std::vector<std::uint8_t>> replyPieces_;
    bool started_ = false;
    os::SocketHandle listener_ = os::kInvalidSocket;
    std::uint16_t port_ = 0;
    std::atomic<bool> accepted_{false};
    ReceivedFrame frame_;
    std::vector<std::uint8_t> trailing_;
    std::thread thread_;
};

}  // namespace vagent::test
