#include "files/TransferChannel.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "os/Clock.h"
#include "os/Sockets.h"
#include "task/ByteOrder.h"
#include "vagent/ErrorCodes.h"

namespace vagent::files {
namespace {

// Large enough that a send or a receive moves many pieces at once.
constexpr std::uint32_t kGatherCapacity = 256 * 1024;
constexpr std::uint32_t kLengthFieldSize = 4;
constexpr int kRetryAtOnce = 2;
// How long a receive may wait in all, and how long a file's pieces may go on
// failing with nothing arriving, before the peer is given up.
constexpr std::int64_t kReceiveLimitSeconds = 5;

std::int64_t Now() {
    return os::Installed<os::Clock>().SecondsSinceEpoch();
}

}  // namespace

TransferChannel::TransferChannel(std::uintptr_t socket, HTTP_FUN* callbacks)
    : socket_(socket),
      callbacks_(callbacks),
      gathering_(callbacks == nullptr),
      lastArrival_(Now()) {}

TransferChannel::~TransferChannel() = default;

bool TransferChannel::Fail(std::uint32_t status) {
    status_ = status != 0 ? status : kErrorNetReceiveData;
    return false;
}

bool TransferChannel::MaySend(std::uint32_t count) {
    return callbacks_ == nullptr || callbacks_->pfnBeforeSend == nullptr ||
           callbacks_->pfnBeforeSend(socket_, static_cast<int>(count)) != 0;
}

bool TransferChannel::SendFrame(const std::uint8_t* body, std::uint32_t length) {
    if (!MaySend(length + kLengthFieldSize)) {
        return Fail(kErrorInvalidParameter);
    }
    std::uint8_t prefix[kLengthFieldSize];
    WriteLittleEndian32(prefix, length);
    return Gather(prefix, kLengthFieldSize) && Gather(body, length);
}

bool TransferChannel::SendContent(const std::uint8_t* data, std::uint32_t count) {
    return Gather(data, count);
}

bool TransferChannel::HasGatheringBuffer() {
    if (gathering_ && !gathered_) {
        gathered_.reset(new (std::nothrow) std::uint8_t[kGatherCapacity]);
        gathering_ = gathered_ != nullptr;
    }
    return gathering_;
}

// Without a gathering buffer (hooks given, or no memory for one) every send
// goes out at once.
bool TransferChannel::Gather(const std::uint8_t* data, std::uint32_t count) {
    if (!HasGatheringBuffer()) {
        return SendAll(data, count);
    }
    if (count > kGatherCapacity - gatheredCount_ && !Flush()) {
        return false;
    }
    if (count >= kGatherCapacity) {
        return SendAll(data, count);
    }
    std::memcpy(gathered_.get() + gatheredCount_, data, count);
    gatheredCount_ += count;
    return true;
}

bool TransferChannel::Flush() {
    const std::uint32_t count = gatheredCount_;
    gatheredCount_ = 0;
    return count == 0 || SendAll(gathered_.get(), count);
}

bool TransferChannel::SendAll(const std::uint8_t* data, std::uint32_t count) {
    os::Sockets& sockets = os::Installed<os::Sockets>();
    while (count > 0) {
        int sent = 0;
        const std::uint32_t status = sockets.Send(socket_, data, static_cast<int>(count), 0, sent);
        if (status != 0 || sent <= 0) {
            return Fail(status);
        }
        data += sent;
        count -= static_cast<std::uint32_t>(sent);
    }
    return true;
}

bool TransferChannel::ReceiveExactly(std::uint8_t* buffer, std::uint32_t count) {
    if (callbacks_ != nullptr &&
        (callbacks_->pfnBeforeRecv != nullptr || callbacks_->pfnAfterRecv != nullptr)) {
        return ReceiveThroughHooks(buffer, count);
    }
    return ReceiveAll(buffer, count);
}

bool TransferChannel::CanStillDeliver() const {
    return !closed_ && Now() - lastArrival_ <= kReceiveLimitSeconds;
}

// A failing receive means the peer has closed or the socket has failed: no
// later receive will get anything.
bool TransferChannel::ReceiveAll(std::uint8_t* buffer, std::uint32_t count) {
    os::Sockets& sockets = os::Installed<os::Sockets>();
    std::uint32_t received = 0;
    while (received < count) {
        int got = 0;
        const std::uint32_t status =
            sockets.Receive(socket_, buffer + received, static_cast<int>(count - received), 0, got);
        if (status != 0 || got < 1) {
            closed_ = true;
            return Fail(status);
        }
        received += static_cast<std::uint32_t>(got);
        lastArrival_ = Now();
    }
    return true;
}

// Asks the receive hook for the count, again at once for as long as it
// answers 2, but not past the receive limit.
bool TransferChannel::AskBeforeReceive(int& wanted, std::int64_t started) {
    if (callbacks_->pfnBeforeRecv == nullptr) {
        return true;
    }
    int verdict = callbacks_->pfnBeforeRecv(socket_, &wanted);
    while (verdict == kRetryAtOnce) {
        if (Now() - started > kReceiveLimitSeconds) {
            return Fail(os::kSocketTimedOut);
        }
        verdict = callbacks_->pfnBeforeRecv(socket_, &wanted);
    }
    return verdict != 0 || Fail(kErrorNetReceiveData);
}

// The receive hook may lower each count; a count it raises beyond what is
// still wanted is held to it, and one it makes zero or negative fails.
bool TransferChannel::ReceiveThroughHooks(std::uint8_t* buffer, std::uint32_t count) {
    const std::int64_t started = Now();
    std::uint32_t received = 0;
    while (received < count) {
        int wanted = static_cast<int>(count - received);
        if (!AskBeforeReceive(wanted, started)) {
            return false;
        }
        if (wanted <= 0) {
            return Fail(kErrorNetReceiveData);
        }
        const std::uint32_t part = std::min(static_cast<std::uint32_t>(wanted), count - received);
        if (!ReceiveAll(buffer + received, part)) {
            return false;
        }
        if (callbacks_->pfnAfterRecv != nullptr) {
            callbacks_->pfnAfterRecv(static_cast<int>(part));
        }
        received += part;
    }
    return true;
}

}  // namespace vagent::files
