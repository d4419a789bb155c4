#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "AcceptedConnection.h"
#include "AllowList.h"
#include "FrameLimits.h"
#include "HeldBytes.h"
#include "RequestFrame.h"
#include "RequestFrameReader.h"
#include "os/Sockets.h"

namespace vagent::service {

struct CollectorSettings {
    static constexpr std::chrono::milliseconds kDefaultFrameTimeLimit{5000};

    AllowList allow;
    FrameLimits limits;
    unsigned maxConnections = 512;
    // How long after its acceptance a connection may take to deliver its
    // request frame.
    std::chrono::milliseconds frameTimeLimit = kDefaultFrameTimeLimit;
};

// The service's one reading thread: accepts connections from allowed
// addresses and waits on all of them at once, reading each request frame as
// its bytes arrive, so that an idle or slow client holds a socket and a small
// buffer, never a thread. A complete frame leaves with its connection for
// dispatch; a frame that breaks a limit, stops half-way or takes too long is
// dropped with a log line.
class FrameCollector {
public:
    using Dispatch = std::function<void(AcceptedConnection, RequestFrame)>;

    // openConnections counts the connections taken on and not yet closed,
    // here and after dispatch; whoever closes a dispatched connection counts
    // it down. Every byte read is taken from held; a dispatched connection
    // carries its count, for whoever ends its request to give back.
    FrameCollector(os::SocketHandle listener, CollectorSettings settings,
                   std::atomic<unsigned>& openConnections, HeldBytes& held, Dispatch dispatch);
    FrameCollector(const FrameCollector&) = delete;
    FrameCollector& operator=(const FrameCollector&) = delete;

    // Serves until stopping is set, then closes every connection still
    // being read. The listener stays the caller's.
    void Run(const std::atomic<bool>& stopping);

private:
    struct Pending {
        AcceptedConnection connection;
        RequestFrameReader reader;
        bool finished = false;
    };

    void WaitAndServe();
    void AcceptWaiting();
    void TakeOn(os::SocketHandle socket, std::uint32_t address, std::uint16_t port);
    void ReadFrom(Pending& pending);
    bool ReadOnce(Pending& pending);
    void EndFrame(Pending& pending);
    void DropExpired();
    void Drop(Pending& pending, const std::string& reason);
    void Close(Pending& pending);
    void RemoveFinished();

    os::SocketHandle listener_;
    CollectorSettings settings_;
    std::atomic<unsigned>& openConnections_;
    HeldBytes& held_;
    Dispatch dispatch_;
    std::vector<Pending> pending_;
    std::vector<std::uint8_t> scratch_;
    std::chrono::steady_clock::time_point acceptPausedUntil_;
};

}  // namespace vagent::service
