#include "platform/ServiceSockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>

namespace vagent::service::platform {
namespace {

constexpr std::uint32_t kWouldBlock = 10035;   // WSAEWOULDBLOCK
constexpr std::uint32_t kTooManyOpen = 10024;  // WSAEMFILE

int AsDescriptor(os::SocketHandle socket) {
    return static_cast<int>(socket);
}

std::uint32_t StatusOf(int error) {
    switch (error) {
        case EAGAIN:
            return kWouldBlock;
        case EMFILE:
        case ENFILE:
            return kTooManyOpen;
        case EINTR:
            return os::kSocketInterrupted;
        case ECONNABORTED:
        case ECONNRESET:
            return os::kSocketConnectionReset;
        default:
            return os::kSocketInvalidArgument;
    }
}

std::uint32_t StatusOfResult(int result) {
    return result == 0 ? 0 : StatusOf(errno);
}

}  // namespace

std::uint32_t WaitUntilReadable(std::vector<WaitEntry>& entries, int timeoutMilliseconds,
                                int& count) {
    std::vector<pollfd> polled(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        polled[i].fd = AsDescriptor(entries[i].socket);
        polled[i].events = POLLIN;
    }
    count = ::poll(polled.data(), polled.size(), timeoutMilliseconds);
    if (count < 0) {
        count = 0;
        return StatusOf(errno);
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i].ready = (polled[i].revents & (POLLIN | POLLHUP | POLLERR | POLLNVAL)) != 0;
    }
    return 0;
}

std::uint32_t AcceptPeer(os::SocketHandle listener, os::SocketHandle& accepted,
                         std::uint32_t& peerAddress, std::uint16_t& peerPort) {
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    const int taken = ::accept4(AsDescriptor(listener), reinterpret_cast<sockaddr*>(&peer), &size,
                                SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (taken < 0) {
        accepted = os::kInvalidSocket;
        return StatusOf(errno);
    }
    accepted = static_cast<os::SocketHandle>(taken);
    peerAddress = ntohl(peer.sin_addr.s_addr);
    peerPort = ntohs(peer.sin_port);
    return 0;
}

std::uint32_t WouldBlockStatus() {
    return kWouldBlock;
}

std::uint32_t SetNonBlocking(os::SocketHandle socket, bool nonBlocking) {
    const int flags = ::fcntl(AsDescriptor(socket), F_GETFL, 0);
    if (flags < 0) {
        return StatusOf(errno);
    }
    const int wanted = nonBlocking ? (flags | O_NONBLOCK) : (flags & ~O_NONBLOCK);
    return StatusOfResult(::fcntl(AsDescriptor(socket), F_SETFL, wanted));
}

std::uint32_t SetSendTimeout(os::SocketHandle socket, std::uint32_t milliseconds) {
    timeval limit{};
    limit.tv_sec = static_cast<time_t>(milliseconds / 1000);
    limit.tv_usec = static_cast<suseconds_t>((milliseconds % 1000) * 1000);
    return StatusOfResult(
        ::setsockopt(AsDescriptor(socket), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit));
}

std::uint32_t AllowAddressReuse(os::SocketHandle socket) {
    const int on = 1;
    return StatusOfResult(
        ::setsockopt(AsDescriptor(socket), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on));
}

ReadResult ReceiveAvailable(os::SocketHandle socket, std::uint8_t* buffer, std::size_t count,
                            std::size_t& received) {
    received = 0;
    const ssize_t result = ::recv(AsDescriptor(socket), buffer, count, 0);
    if (result > 0) {
        received = static_cast<std::size_t>(result);
        return ReadResult::Data;
    }
    if (result == 0) {
        return ReadResult::Closed;
    }
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR ? ReadResult::WouldBlock
                                                                     : ReadResult::Failed;
}

std::uint64_t RaiseOpenFileLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 0;
    }
    if (limit.rlim_cur < limit.rlim_max) {
        rlimit raised = limit;
        raised.rlim_cur = limit.rlim_max;
        if (::setrlimit(RLIMIT_NOFILE, &raised) == 0) {
            limit = raised;
        }
    }
    return static_cast<std::uint64_t>(limit.rlim_cur);
}

}  // namespace vagent::service::platform
