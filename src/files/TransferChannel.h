#pragma once

#include <cstdint>
#include <memory>

#include "vagent/HttpFun.h"

namespace vagent::files {

// One side of a streamed transfer on a connection. With the caller's hooks
// every frame, piece and receive passes through them one by one; without
// hooks the bytes are gathered into large sends and read in large receives,
// the bytes on the wire staying the same.
class TransferChannel {
public:
    TransferChannel(std::uintptr_t socket, HTTP_FUN* callbacks);
    ~TransferChannel();
    TransferChannel(const TransferChannel&) = delete;
    TransferChannel& operator=(const TransferChannel&) = delete;

    bool Hooked() const { return callbacks_ != nullptr; }
    // The status of the last call that failed, 0 when none failed.
    std::uint32_t Status() const { return status_; }

    // Asks the send hook, when there is one, whether count bytes may go.
    bool MaySend(std::uint32_t count);
    // Sends one frame: its 4-byte little-endian length, then its body. With
    // hooks, the send hook sees the whole count first and may refuse.
    bool SendFrame(const std::uint8_t* body, std::uint32_t length);
    // Sends content bytes (gathered when there are no hooks).
    bool SendContent(const std::uint8_t* data, std::uint32_t count);
    // Sends whatever has been gathered.
    bool Flush();

    // Receives exactly count bytes, through the receive hooks when given. A
    // receive that has waited past the receive limit in all fails.
    bool ReceiveExactly(std::uint8_t* buffer, std::uint32_t count);
    // Whether a later receive may still get bytes: false once the peer has
    // closed, a receive has failed on the socket, or nothing has arrived for
    // longer than the receive limit.
    bool CanStillDeliver() const;

private:
    bool Gather(const std::uint8_t* data, std::uint32_t count);
    bool HasGatheringBuffer();
    bool SendAll(const std::uint8_t* data, std::uint32_t count);
    bool ReceiveAll(std::uint8_t* buffer, std::uint32_t count);
    bool ReceiveThroughHooks(std::uint8_t* buffer, std::uint32_t count);
    bool AskBeforeReceive(int& wanted, std::int64_t started);
    bool Fail(std::uint32_t status);

    std::uintptr_t socket_;
    HTTP_FUN* callbacks_;
    // Made at the first send, so that a channel that only receives never
    // pays for it; given up for good when there is no memory for it.
    bool gathering_;
    std::unique_ptr<std::uint8_t[]> gathered_;
    std::uint32_t gatheredCount_ = 0;
    std::uint32_t status_ = 0;
    bool closed_ = false;
    std::int64_t lastArrival_;
};

}  // namespace vagent::files
