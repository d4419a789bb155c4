#include "FrameCollector.h"

#include <algorithm>
#include <utility>

#include "Ipv4Text.h"
#include "platform/ServiceSockets.h"
#include "vagent/DllLog.h"

namespace vagent::service {
namespace {

using Clock = std::chrono::steady_clock;

// Short enough that a stop request and an expired frame are seen promptly.
constexpr int kWaitMilliseconds = 100;
// Accepts per round, so that a flood of connections cannot starve the reads.
constexpr int kAcceptsPerRound = 64;
// How long the listener rests after an accept failed for want of resources,
// so that a full descriptor table does not turn the loop into a busy wait.
constexpr std::chrono::milliseconds kAcceptPause{100};
constexpr std::size_t kScratchSize = 64 * 1024;
// Reads per connection and round, so that one fast sender of a large block
// cannot starve the others.
constexpr int kReadsPerRound = 16;

std::string PeerText(std::uint32_t address, std::uint16_t port) {
    return FormatIpv4(address) + ":" + std::to_string(port);
}

std::string RefusalReason(const RequestFrameReader& reader) {
    const std::string length = std::to_string(reader.OffendingLength());
    switch (reader.State()) {
        case FrameState::RootSiteTooLong:
            return "root site length " + length + " over the limit";
        case FrameState::BlockTooLong:
            return "block length " + length + " over the limit";
        case FrameState::BlockTooShort:
            return "block length " + length + " shorter than its own prefix";
        case FrameState::BlockPrefixMismatch:
            return "block prefix " + length + " disagrees with the block length";
        case FrameState::Incomplete:
        case FrameState::Complete:
            break;
    }
    return "bad request";
}

}  // namespace

FrameCollector::FrameCollector(os::SocketHandle listener, CollectorSettings settings,
                               std::atomic<unsigned>& openConnections, HeldBytes& held,
                               Dispatch dispatch)
    : listener_(listener),
      settings_(std::move(settings)),
      openConnections_(openConnections),
      held_(held),
      dispatch_(std::move(dispatch)),
      scratch_(kScratchSize) {}

void FrameCollector::Run(const std::atomic<bool>& stopping) {
    while (!stopping.load()) {
        WaitAndServe();
        DropExpired();
        RemoveFinished();
    }
    for (Pending& pending : pending_) {
        if (!pending.finished) {
            Close(pending);
        }
    }
    pending_.clear();
}

void FrameCollector::WaitAndServe() {
    const bool listening = Clock::now() >= acceptPausedUntil_;
    std::vector<platform::WaitEntry> entries;
    entries.reserve(pending_.size() + 1);
    for (const Pending& pending : pending_) {
        entries.push_back({pending.connection.socket, false});
    }
    if (listening) {
        entries.push_back({listener_, false});
    }
    int count = 0;
    if (platform::WaitUntilReadable(entries, kWaitMilliseconds, count) != 0 || count == 0) {
        return;
    }
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        if (entries[i].ready) {
            ReadFrom(pending_[i]);
        }
    }
    if (listening && entries.back().ready) {
        AcceptWaiting();
    }
}

void FrameCollector::AcceptWaiting() {
    for (int i = 0; i < kAcceptsPerRound; ++i) {
        os::SocketHandle accepted = os::kInvalidSocket;
        std::uint32_t address = 0;
        std::uint16_t port = 0;
        const std::uint32_t status = platform::AcceptPeer(listener_, accepted, address, port);
        if (status == platform::WouldBlockStatus()) {
            return;
        }
        if (status != 0) {
            DllLogPrintf("vagentd : accept failed, status %u", status);
            acceptPausedUntil_ = Clock::now() + kAcceptPause;
            return;
        }
        TakeOn(accepted, address, port);
    }
}

// Refusals happen before a byte of the connection is read.
void FrameCollector::TakeOn(os::SocketHandle socket, std::uint32_t address, std::uint16_t port) {
    const std::string peer = PeerText(address, port);
    if (!settings_.allow.Allows(address)) {
        DllLogPrintf("vagentd : refused connection from %s : not on the allow-list", peer.c_str());
        os::Installed<os::Sockets>().Close(socket);
        return;
    }
    const unsigned open = openConnections_.load();
    if (open >= settings_.maxConnections) {
        DllLogPrintf("vagentd : refused connection from %s : %u connections open", peer.c_str(),
                     open);
        os::Installed<os::Sockets>().Close(socket);
        return;
    }
    ++openConnections_;
    pending_.push_back({AcceptedConnection{socket, peer, Clock::now()},
                        RequestFrameReader(settings_.limits), false});
    // A client sends its frame right after connecting: reading now spares
    // the request a round of waiting.
    ReadFrom(pending_.back());
}

// Reads what has arrived, never past the frame's end: what follows the
// frame on the connection belongs to the task (a streamed upload).
void FrameCollector::ReadFrom(Pending& pending) {
    for (int i = 0; i < kReadsPerRound && !pending.finished && ReadOnce(pending); ++i) {
    }
}

// False when nothing more can be read now.
bool FrameCollector::ReadOnce(Pending& pending) {
    const std::size_t wanted = std::min(pending.reader.BytesWanted(), scratch_.size());
    std::size_t received = 0;
    const platform::ReadResult result =
        platform::ReceiveAvailable(pending.connection.socket, scratch_.data(), wanted, received);
    switch (result) {
        case platform::ReadResult::WouldBlock:
            return false;
        case platform::ReadResult::Closed:
            Drop(pending, "closed before the request was complete");
            return false;
        case platform::ReadResult::Failed:
            Drop(pending, "receive failed");
            return false;
        case platform::ReadResult::Data:
            break;
    }
    if (!held_.TryTake(received)) {
        Drop(pending,
             "requests held over the budget of " + std::to_string(held_.Budget()) + " bytes");
        return false;
    }
    pending.connection.heldBytes += received;
    std::size_t consumed = 0;
    pending.reader.Feed(scratch_.data(), received, consumed);
    EndFrame(pending);
    return true;
}

void FrameCollector::EndFrame(Pending& pending) {
    switch (pending.reader.State()) {
        case FrameState::Incomplete:
            return;
        case FrameState::Complete:
            pending.finished = true;
            dispatch_(std::move(pending.connection), pending.reader.TakeFrame());
            return;
        default:
            Drop(pending, RefusalReason(pending.reader));
            return;
    }
}

void FrameCollector::DropExpired() {
    const Clock::time_point now = Clock::now();
    const std::string reason =
        "request not complete within " + std::to_string(settings_.frameTimeLimit.count()) + " ms";
    for (Pending& pending : pending_) {
        if (!pending.finished && now - pending.connection.acceptedAt >= settings_.frameTimeLimit) {
            Drop(pending, reason);
        }
    }
}

void FrameCollector::Drop(Pending& pending, const std::string& reason) {
    DllLogPrintf("vagentd : dropped connection from %s : %s", pending.connection.peer.c_str(),
                 reason.c_str());
    Close(pending);
    pending.finished = true;
}

void FrameCollector::Close(Pending& pending) {
    os::Installed<os::Sockets>().Close(pending.connection.socket);
    held_.Give(pending.connection.heldBytes);
    pending.connection.heldBytes = 0;
    --openConnections_;
}

void FrameCollector::RemoveFinished() {
    pending_.erase(std::remove_if(pending_.begin(), pending_.end(),
                                  [](const Pending& pending) { return pending.finished; }),
                   pending_.end());
}

}  // namespace vagent::service
